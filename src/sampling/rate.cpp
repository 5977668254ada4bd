// Samples kept, or zeros put in between, at an integer step. A complex sample moves as one double.
#include <cstddef>
#include <cstdint>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/shuffle.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT {
namespace {

inline ZepStatus checkRate(const auto* src, int srcLen, const auto* dst, const int* dstLen,
                           int factor, const int* phase) {
    if (const ZepStatus s = checkVectors(srcLen, src, dst, dstLen, phase); s != zepStsNoErr)
        return s;
    if (factor < 1) return zepStsSampleFactorErr;
    const int p = simd::readAny(phase);
    return p < 0 || p >= factor ? zepStsSamplePhaseErr : zepStsNoErr;
}

inline void copy(const Zep32f* src, Zep32f* dst, int len) { zepsCopy_32f(src, dst, len); }
inline void copy(const Zep64f* src, Zep64f* dst, int len) { zepsCopy_64f(src, dst, len); }

// dst[n] = src[2 * n], n < count.
template <class T>
void takeEverySecond(const T* src, T* dst, std::ptrdiff_t count) {
    using V = simd::Native<T>;
    constexpr std::ptrdiff_t L = V::lanes;
    std::ptrdiff_t n = 0;
    // The odd element behind the last one need not exist.
    for (; n + L < count; n += L)
        allEvens(V::load(src + 2 * n), V::load(src + 2 * n + L)).store(dst + n);
    for (; n < count; ++n) simd::writeAny(dst + n, simd::readAny(src + 2 * n));
}

template <class T>
void takeEvery(std::ptrdiff_t factor, const T* src, T* dst, std::ptrdiff_t count) {
    std::ptrdiff_t n = 0;
    for (; n + 4 <= count; n += 4) {
        const T* p = src + n * factor;
        const T a = simd::readAny(p), b = simd::readAny(p + factor);
        const T c = simd::readAny(p + 2 * factor), d = simd::readAny(p + 3 * factor);
        simd::writeAny(dst + n, a);
        simd::writeAny(dst + n + 1, b);
        simd::writeAny(dst + n + 2, c);
        simd::writeAny(dst + n + 3, d);
    }
    for (; n < count; ++n) simd::writeAny(dst + n, simd::readAny(src + n * factor));
}

template <class T>
void sampleDown(const T* src, int srcLen, T* dst, int* dstLen, int factor, int* phase) {
    if (factor == 1) {
        copy(src, dst, srcLen);
        simd::writeAny(dstLen, srcLen);
        return;
    }
    const int p = simd::readAny(phase);
    const int count = p < srcLen ? (srcLen - 1 - p) / factor + 1 : 0;
    if (count > 0) {
        if (factor == 2)
            takeEverySecond(src + p, dst, count);
        else
            takeEvery(factor, src + p, dst, count);
    }
    simd::writeAny(dstLen, count);
    simd::writeAny(phase, static_cast<int>(p + std::int64_t{count} * factor - srcLen));
}

using D = simd::Native<Zep64f>;

// dst[2 * n + phase] = src[n], zeros between.
void putEverySecond(int phase, const Zep64f* src, Zep64f* dst, std::ptrdiff_t len) {
    constexpr std::ptrdiff_t L = D::lanes;
    const auto put = [dst](std::ptrdiff_t n, D even, D odd) {
        interleaveFront(even, odd).store(dst + 2 * n);
        interleaveBack(even, odd).store(dst + 2 * n + L);
    };
    std::ptrdiff_t n = 0;
    if (phase == 0)
        for (; n + L <= len; n += L) put(n, D::load(src + n), D::zero());
    else
        for (; n + L <= len; n += L) put(n, D::zero(), D::load(src + n));
    for (; n < len; ++n) {
        simd::writeAny(dst + 2 * n + 1 - phase, Zep64f{0});
        simd::writeAny(dst + 2 * n + phase, simd::readAny(src + n));
    }
}

// A group is cleared by vectors that may overlap, then its sample is written.
template <int lanes>
void putEvery(std::ptrdiff_t factor, int phase, const Zep64f* src, Zep64f* dst,
              std::ptrdiff_t len) {
    using V = simd::Vec<Zep64f, lanes>;
    for (std::ptrdiff_t n = 0; n < len; ++n, dst += factor) {
        for (std::ptrdiff_t k = 0; k < factor - lanes; k += lanes) V::zero().store(dst + k);
        V::zero().store(dst + factor - lanes);
        simd::writeAny(dst + phase, simd::readAny(src + n));
    }
}

}  // namespace

ZepStatus zepsSampleUp_32fc(const Zep32fc* pSrc, int srcLen, Zep32fc* pDst, int* pDstLen,
                            int factor, int* pPhase) {
    if (const ZepStatus s = checkRate(pSrc, srcLen, pDst, pDstLen, factor, pPhase);
        s != zepStsNoErr)
        return s;
    const int phase = simd::readAny(pPhase);
    const auto* const src = reinterpret_cast<const Zep64f*>(pSrc);
    auto* const dst = reinterpret_cast<Zep64f*>(pDst);
    simd::writeAny(pDstLen,
                   static_cast<int>(static_cast<unsigned>(srcLen) * static_cast<unsigned>(factor)));
    if (factor == 1)
        copy(src, dst, srcLen);
    else if (factor == 2)
        putEverySecond(phase, src, dst, srcLen);
    else if (factor < D::lanes)
        putEvery<2>(factor, phase, src, dst, srcLen);
    else
        putEvery<D::lanes>(factor, phase, src, dst, srcLen);
    return zepStsNoErr;
}

ZepStatus zepsSampleDown_32f(const Zep32f* pSrc, int srcLen, Zep32f* pDst, int* pDstLen, int factor,
                             int* pPhase) {
    if (const ZepStatus s = checkRate(pSrc, srcLen, pDst, pDstLen, factor, pPhase);
        s != zepStsNoErr)
        return s;
    sampleDown(pSrc, srcLen, pDst, pDstLen, factor, pPhase);
    return zepStsNoErr;
}
ZepStatus zepsSampleDown_32fc(const Zep32fc* pSrc, int srcLen, Zep32fc* pDst, int* pDstLen,
                              int factor, int* pPhase) {
    if (const ZepStatus s = checkRate(pSrc, srcLen, pDst, pDstLen, factor, pPhase);
        s != zepStsNoErr)
        return s;
    sampleDown(reinterpret_cast<const Zep64f*>(pSrc), srcLen, reinterpret_cast<Zep64f*>(pDst),
               pDstLen, factor, pPhase);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
