// Autocorrelation: direct sums for few lags, else the inverse transform of the power spectrum.
#include "core/checks.h"
#include "filter/correlate.h"
#include "filter/spectrum.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT {
namespace {

using filter::TransformOf;

void sums(const Zep32f* src, int len, Zep32f* dst, int lags) {
    filter::correlate(src, len, src, len, 0, dst, lags);
}
void sums(const Zep32fc* src, int len, Zep32fc* dst, int lags) {
    filter::correlateConjugate(src, len, src, len, 0, dst, lags);
}

void squareBins(Zep32f* x, int N) { filter::multiplyConjugatePacked(x, x, N); }
void squareBins(Zep32fc* x, int N) { TransformOf<Zep32fc>::multiplyConjugate(x, x, N); }

template <class T>
constexpr int kDirectLags = sizeof(T) == sizeof(Zep32f) ? 856 : 152;

template <class T>
ZepStatus byTransform(const T* src, int len, T* dst, int lags) {
    filter::CallTransform<T> fft;
    // What wraps around meets none of these lags.
    const std::int64_t least = std::int64_t{len} + lags - 1;
    if (const ZepStatus s = fft.create(filter::orderFor(least, 2), 1); s != zepStsNoErr) return s;
    T* x = fft.buffer(0);
    TransformOf<T>::copy(src, x, len);
    TransformOf<T>::zero(x + len, fft.length() - len);
    if (const ZepStatus s = fft.forward(x); s != zepStsNoErr) return s;
    squareBins(x, fft.length());
    if (const ZepStatus s = fft.inverse(x); s != zepStsNoErr) return s;
    TransformOf<T>::copy(x, dst, lags);
    return zepStsNoErr;
}

template <class T>
ZepStatus autoCorrelate(const T* src, int srcLen, T* dst, int dstLen) {
    if (anyNull(src, dst)) return zepStsNullPtrErr;
    if (srcLen < 1 || dstLen < 1) return zepStsSizeErr;
    const int lags = srcLen < dstLen ? srcLen : dstLen;
    if (lags < kDirectLags<T>)
        sums(src, srcLen, dst, lags);
    else if (const ZepStatus s = byTransform(src, srcLen, dst, lags); s != zepStsNoErr)
        return s;
    TransformOf<T>::zero(dst + lags, dstLen - lags);
    return zepStsNoErr;
}

template <class T>
constexpr int kParts = sizeof(T) / sizeof(Zep32f);

template <class T>
ZepStatus normA(const T* src, int srcLen, T* dst, int dstLen) {
    if (const ZepStatus s = autoCorrelate(src, srcLen, dst, dstLen); s != zepStsNoErr) return s;
    const int lags = srcLen < dstLen ? srcLen : dstLen;
    const float factor = 1.0f / static_cast<float>(srcLen);
    auto* x = reinterpret_cast<Zep32f*>(dst);
    // Part by part, so that the count of floats stays an int.
    for (int part = 0; part < kParts<T>; ++part)
        ZEP_VARIANT::zepsMulC_32f_I(factor, x + static_cast<std::ptrdiff_t>(part) * lags, lags);
    return zepStsNoErr;
}

template <class T>
ZepStatus normB(const T* src, int srcLen, T* dst, int dstLen) {
    if (const ZepStatus s = autoCorrelate(src, srcLen, dst, dstLen); s != zepStsNoErr) return s;
    const int lags = srcLen < dstLen ? srcLen : dstLen;
    filter::Scratch<Zep32f> denominators;
    const auto count = static_cast<std::ptrdiff_t>(lags) * kParts<T>;
    if (!denominators.allocate(static_cast<std::size_t>(count))) return zepStsMemAllocErr;
    Zep32f* d = denominators.data();
    for (int k = 0; k < lags; ++k)
        for (int part = 0; part < kParts<T>; ++part) *d++ = static_cast<float>(srcLen - k);
    ZEP_VARIANT::zepsDiv_32f_I(denominators.data(), reinterpret_cast<Zep32f*>(dst),
                               static_cast<int>(count));
    return zepStsNoErr;
}

}  // namespace

ZepStatus zepsAutoCorr_32f(const Zep32f* pSrc, int srcLen, Zep32f* pDst, int dstLen) {
    return autoCorrelate(pSrc, srcLen, pDst, dstLen);
}
ZepStatus zepsAutoCorr_NormA_32f(const Zep32f* pSrc, int srcLen, Zep32f* pDst, int dstLen) {
    return normA(pSrc, srcLen, pDst, dstLen);
}
ZepStatus zepsAutoCorr_NormB_32f(const Zep32f* pSrc, int srcLen, Zep32f* pDst, int dstLen) {
    return normB(pSrc, srcLen, pDst, dstLen);
}
ZepStatus zepsAutoCorr_32fc(const Zep32fc* pSrc, int srcLen, Zep32fc* pDst, int dstLen) {
    return autoCorrelate(pSrc, srcLen, pDst, dstLen);
}
ZepStatus zepsAutoCorr_NormA_32fc(const Zep32fc* pSrc, int srcLen, Zep32fc* pDst, int dstLen) {
    return normA(pSrc, srcLen, pDst, dstLen);
}
ZepStatus zepsAutoCorr_NormB_32fc(const Zep32fc* pSrc, int srcLen, Zep32fc* pDst, int dstLen) {
    return normB(pSrc, srcLen, pDst, dstLen);
}

}  // namespace zep::ZEP_VARIANT
