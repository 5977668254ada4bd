// Conjugates, in order, in reverse order, and of a packed spectrum to a full one.
#include <cstdint>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "vector/shapes.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr auto conjugated = [](auto pairs) {
    using V = decltype(pairs);
    return pairs ^ V::broadcastPair(0.0f, -0.0f);
};

// Pairs in reverse, each in its order.
template <class V>
[[gnu::always_inline]] inline V reversePairs(V a) {
    return simd::bitsIn<float>(reverse(simd::bitsIn<double>(a)));
}

// The pairs at src, reversed and conjugated, to dst; the areas are apart. What a wide vector leaves
// over goes to narrower ones.
template <class V>
[[gnu::always_inline]] inline void conjFlip(const float* src, float* dst, std::ptrdiff_t pairs) {
    constexpr std::ptrdiff_t P = V::lanes / 2;
    const auto vector = [&](std::ptrdiff_t k) {
        conjugated(reversePairs(V::load(src + 2 * (pairs - (k + 1) * P)))).store(dst + 2 * k * P);
    };
    if constexpr (V::lanes == simd::Native<float>::lanes)
        for (; pairs >= 4 * P; pairs -= 4 * P, dst += 8 * P)
            simd::unroll<4>([&](auto k) { vector(k); });
    for (; pairs >= P; pairs -= P, dst += 2 * P) vector(0);
    if constexpr (!simd::isNarrow<V>) {
        conjFlip<simd::Half<V>>(src, dst, pairs);
    } else if (pairs != 0) {
        simd::writeAny(dst, simd::readAny(src));
        simd::writeAny(dst + 1, -simd::readAny(src + 1));
    }
}

inline void conjFlip(const float* src, Zep32fc* dst, std::ptrdiff_t len) {
    conjFlip<simd::Native<float>>(src, shape::parts(dst), len);
}

inline void setReal(Zep32fc* p, float re) { simd::writeAny(p, Zep32fc{re, 0.0f}); }

}  // namespace

ZepStatus zepsConj_32fc(const Zep32fc* pSrc, Zep32fc* pDst, int len) {
    return checkedMapComplex(conjugated, pDst, len, pSrc);
}
ZepStatus zepsConj_32fc_I(Zep32fc* pSrcDst, int len) {
    return checkedMapComplex(conjugated, pSrcDst, len, pSrcDst);
}

ZepStatus zepsConjFlip_32fc(const Zep32fc* pSrc, Zep32fc* pDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    conjFlip(shape::parts(pSrc), pDst, len);
    return zepStsNoErr;
}

ZepStatus zepsConjPerm_32fc(const Zep32f* pSrc, Zep32fc* pDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    const int half = (len - 1) / 2;
    const bool even = len % 2 == 0;
    const Zep32f* data = pSrc + 1;
    setReal(pDst, simd::readAny(pSrc));
    if (even) {
        setReal(pDst + half + 1, simd::readAny(pSrc + 1));
        ++data;
    }
    if (half == 0) return zepStsNoErr;
    zepsCopy_32f(data, shape::parts(pDst + 1), 2 * half);
    conjFlip(data, pDst + len - half, half);
    return zepStsNoErr;
}

// The upper half is filled first, from data that still stand where they were: it lies behind all
// of them.
ZepStatus zepsConjPerm_32fc_I(Zep32fc* pSrcDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrcDst); s != zepStsNoErr) return s;
    const int half = (len - 1) / 2;
    Zep32f* const packed = shape::parts(pSrcDst);
    if (len % 2 == 0) {
        // Bin k stands at 2 * k, which is its place in a complex vector.
        setReal(pSrcDst + half + 1, simd::readAny(packed + 1));
        conjFlip(packed + 2, pSrcDst + half + 2, half);
    } else if (half != 0) {
        // One real place below.
        conjFlip(packed + 1, pSrcDst + half + 1, half);
        zepsMove_32f(packed + 1, packed + 2, 2 * half);
    }
    simd::writeAny(packed + 1, 0.0f);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
