// Magnitudes, phases and power of complex vectors.
#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/deal.h"
#include "vector/arctangent.h"
#include "vector/magnitude.h"
#include "vector/shapes.h"
#include "vector/sweep.h"

namespace zep::ZEP_VARIANT {
namespace {

using V = simd::Native<Zep32f>;
using Z = simd::Dealt<V>;

// dst[n] = op(re, im) of src[n].
template <int kUnroll = 4, class Op>
inline ZepStatus checkedOfParts(Op op, const Zep32fc* src, Zep32f* dst, int len) {
    if (const ZepStatus s = checkVectors(len, src, dst); s != zepStsNoErr) return s;
    const auto* p = shape::parts(src);
    sweep<V::lanes, kUnroll>(
        len,
        [=](std::ptrdiff_t n) {
            const Z z = Z::load(p + 2 * n);
            op(z.re, z.im).store(dst + n);
        },
        [=](std::ptrdiff_t n, int count) {
            const Z z = Z::loadPartial(p + 2 * n, count);
            op(z.re, z.im).storePartial(dst + n, count);
        });
    return zepStsNoErr;
}

constexpr auto modulus = [](V re, V im) { return magnitude(re, im); };
constexpr auto argument = [](V re, V im) { return arctangent2(im, re); };
constexpr auto power = [](V re, V im) { return re * re + im * im; };

}  // namespace

ZepStatus zepsMagnitude_32fc(const Zep32fc* pSrc, Zep32f* pDst, int len) {
    return checkedOfParts<2>(modulus, pSrc, pDst, len);
}
ZepStatus zepsMagnitude_32f(const Zep32f* pSrcRe, const Zep32f* pSrcIm, Zep32f* pDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrcRe, pSrcIm, pDst); s != zepStsNoErr) return s;
    sweep<V::lanes, 2>(
        len,
        [=](std::ptrdiff_t n) {
            magnitude(V::load(pSrcRe + n), V::load(pSrcIm + n)).store(pDst + n);
        },
        [=](std::ptrdiff_t n, int count) {
            magnitude(V::loadPartial(pSrcRe + n, count), V::loadPartial(pSrcIm + n, count))
                .storePartial(pDst + n, count);
        });
    return zepStsNoErr;
}

ZepStatus zepsPhase_32fc(const Zep32fc* pSrc, Zep32f* pDst, int len) {
    return checkedOfParts<1>(argument, pSrc, pDst, len);
}
ZepStatus zepsPowerSpectr_32fc(const Zep32fc* pSrc, Zep32f* pDst, int len) {
    return checkedOfParts(power, pSrc, pDst, len);
}

// Two calls, each with its own checks: the second runs whatever the first returns.
ZepStatus zepsCartToPolar_32fc(const Zep32fc* pSrc, Zep32f* pDstMagn, Zep32f* pDstPhase, int len) {
    const ZepStatus magnitudes = ZEP_VARIANT::zepsMagnitude_32fc(pSrc, pDstMagn, len);
    const ZepStatus phases = ZEP_VARIANT::zepsPhase_32fc(pSrc, pDstPhase, len);
    return magnitudes != zepStsNoErr ? magnitudes : phases;
}

}  // namespace zep::ZEP_VARIANT
