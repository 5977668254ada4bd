// Complex vectors taken apart into real and imaginary parts, and put together from them.
#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/deal.h"
#include "vector/shapes.h"
#include "vector/sweep.h"

namespace zep::ZEP_VARIANT {
namespace {

template <class C>
using PartOf = decltype(C::re);

// use(parts of `lanes` elements, n, store): store writes one vector to its place in a destination,
// as far as the elements go.
enum class Wanted { One, Both };
template <Wanted wanted, class C, class Use>
inline void forParts(const C* src, int len, Use use) {
    using V = simd::Native<PartOf<C>>;
    using Z = simd::Dealt<V>;
    const auto* p = shape::parts(src);
    sweep<V::lanes>(
        len,
        [=](std::ptrdiff_t n) {
            const Z z = wanted == Wanted::Both ? Z::load(p + 2 * n) : Z::loadForOne(p + 2 * n);
            use(z, [n](V v, auto* dst) { v.store(dst + n); });
        },
        [=](std::ptrdiff_t n, int count) {
            use(Z::loadPartial(p + 2 * n, count),
                [n, count](V v, auto* dst) { v.storePartial(dst + n, count); });
        });
}

template <class C>
inline ZepStatus checkedRe(const C* src, PartOf<C>* re, int len) {
    if (const ZepStatus s = checkVectors(len, src, re); s != zepStsNoErr) return s;
    forParts<Wanted::One>(src, len, [=](auto z, auto store) { store(z.re, re); });
    return zepStsNoErr;
}

template <class C>
inline ZepStatus checkedParts(const C* src, PartOf<C>* re, PartOf<C>* im, int len) {
    if (const ZepStatus s = checkVectors(len, src, re, im); s != zepStsNoErr) return s;
    forParts<Wanted::Both>(src, len, [=](auto z, auto store) {
        store(z.re, re);
        store(z.im, im);
    });
    return zepStsNoErr;
}

// dst from what re and im give: each returns `lanes` elements from n on, or `count`.
template <class C, class Re, class Im>
inline void join(C* dst, int len, Re re, Im im) {
    using V = simd::Native<PartOf<C>>;
    using Z = simd::Dealt<V>;
    auto* p = shape::parts(dst);
    sweep<V::lanes>(
        len,
        [=](std::ptrdiff_t n) {
            Z{re(n), im(n)}.store(p + 2 * n);
        },
        [=](std::ptrdiff_t n, int count) {
            Z{re(n, count), im(n, count)}.storePartial(p + 2 * n, count);
        });
}

template <class V>
struct Zeros {
    V operator()(std::ptrdiff_t) const { return V::zero(); }
    V operator()(std::ptrdiff_t, int) const { return V::zero(); }
};

template <class V>
struct Elements {
    const typename V::Scalar* src;
    V operator()(std::ptrdiff_t n) const { return V::load(src + n); }
    V operator()(std::ptrdiff_t n, int count) const { return V::loadPartial(src + n, count); }
};

template <class C>
inline ZepStatus checkedJoin(const PartOf<C>* re, const PartOf<C>* im, C* dst, int len) {
    if (const ZepStatus s = checkVectors(len, dst); s != zepStsNoErr) return s;
    using V = simd::Native<PartOf<C>>;
    if (re == nullptr && im == nullptr) return zepStsNullPtrErr;
    if (re == nullptr)
        join(dst, len, Zeros<V>{}, Elements<V>{im});
    else if (im == nullptr)
        join(dst, len, Elements<V>{re}, Zeros<V>{});
    else
        join(dst, len, Elements<V>{re}, Elements<V>{im});
    return zepStsNoErr;
}

}  // namespace

ZepStatus zepsReal_32fc(const Zep32fc* pSrc, Zep32f* pDstRe, int len) {
    return checkedRe(pSrc, pDstRe, len);
}
ZepStatus zepsReal_64fc(const Zep64fc* pSrc, Zep64f* pDstRe, int len) {
    return checkedRe(pSrc, pDstRe, len);
}
ZepStatus zepsImag_32fc(const Zep32fc* pSrc, Zep32f* pDstIm, int len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDstIm); s != zepStsNoErr) return s;
    forParts<Wanted::One>(pSrc, len, [=](auto z, auto store) { store(z.im, pDstIm); });
    return zepStsNoErr;
}

ZepStatus zepsCplxToReal_16sc(const Zep16sc* pSrc, Zep16s* pDstRe, Zep16s* pDstIm, int len) {
    return checkedParts(pSrc, pDstRe, pDstIm, len);
}
ZepStatus zepsCplxToReal_32fc(const Zep32fc* pSrc, Zep32f* pDstRe, Zep32f* pDstIm, int len) {
    return checkedParts(pSrc, pDstRe, pDstIm, len);
}
ZepStatus zepsCplxToReal_64fc(const Zep64fc* pSrc, Zep64f* pDstRe, Zep64f* pDstIm, int len) {
    return checkedParts(pSrc, pDstRe, pDstIm, len);
}

ZepStatus zepsRealToCplx_32f(const Zep32f* pSrcRe, const Zep32f* pSrcIm, Zep32fc* pDst, int len) {
    return checkedJoin(pSrcRe, pSrcIm, pDst, len);
}
ZepStatus zepsRealToCplx_64f(const Zep64f* pSrcRe, const Zep64f* pSrcIm, Zep64fc* pDst, int len) {
    return checkedJoin(pSrcRe, pSrcIm, pDst, len);
}

}  // namespace zep::ZEP_VARIANT
