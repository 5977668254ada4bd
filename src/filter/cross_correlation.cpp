// Cross-correlation over a range of lags. The shorter sequence plays the taps. Where that is the
// second one, the sums come out by falling lag (and conjugate): they are computed in the reverse
// order and turned round at the end.
#include "core/checks.h"
#include "filter/correlate.h"
#include "filter/spectrum.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT {
namespace {

using filter::TransformOf;

void sums(const Zep32f* h, std::int64_t taps, const Zep32f* x, std::int64_t samples,
          std::int64_t lag, Zep32f* y, std::int64_t count) {
    filter::correlate(h, taps, x, samples, lag, y, count);
}
void sums(const Zep32fc* h, std::int64_t taps, const Zep32fc* x, std::int64_t samples,
          std::int64_t lag, Zep32fc* y, std::int64_t count) {
    filter::correlateConjugate(h, taps, x, samples, lag, y, count);
}

void turnRound(Zep32f* y, int n) { ZEP_VARIANT::zepsFlip_32f_I(y, n); }
void turnRound(Zep32fc* y, int n) {
    for (std::ptrdiff_t i = 0, k = n - 1; i < k; ++i, --k) {
        const Zep32fc a = simd::readAny(y + i);
        simd::writeAny(y + i, simd::readAny(y + k));
        simd::writeAny(y + k, a);
    }
    ZEP_VARIANT::zepsConj_32fc_I(y, n);
}

template <class T>
constexpr float kDirectBelow = sizeof(T) == sizeof(Zep32f) ? 384 : 256;

template <class T>
struct Sequences {
    const T* a;
    std::int64_t aLen;
    const T* b;
    std::int64_t bLen;
};

// Lag l stands at l mod N. N is at least what keeps the lags that wrap around apart from those that
// are wanted.
template <class T>
ZepStatus whole(const Sequences<T>& s, std::int64_t lowLag, T* dst, int count) {
    using Of = TransformOf<T>;
    std::int64_t least = s.aLen > s.bLen ? s.aLen : s.bLen;
    if (least < s.bLen - lowLag) least = s.bLen - lowLag;
    if (least < s.aLen + lowLag + count - 1) least = s.aLen + lowLag + count - 1;
    filter::CallTransform<T> fft;
    if (const ZepStatus status = fft.create(filter::orderFor(least, 2), 2); status != zepStsNoErr)
        return status;
    const std::int64_t N = fft.length();
    T *a = fft.buffer(0), *b = fft.buffer(1);
    Of::copy(s.a, a, s.aLen);
    Of::zero(a + s.aLen, N - s.aLen);
    Of::copy(s.b, b, s.bLen);
    Of::zero(b + s.bLen, N - s.bLen);
    if (const ZepStatus status = fft.forward(a); status != zepStsNoErr) return status;
    if (const ZepStatus status = fft.forward(b); status != zepStsNoErr) return status;
    Of::multiplyConjugate(a, b, static_cast<int>(N));
    if (const ZepStatus status = fft.inverse(b); status != zepStsNoErr) return status;
    const std::int64_t negative = lowLag < 0 ? (count < -lowLag ? count : -lowLag) : 0;
    Of::copy(b + (N + lowLag), dst, negative);
    Of::copy(b + (lowLag + negative), dst + negative, count - negative);
    return zepStsNoErr;
}

// Overlap-save with the shorter sequence h: dst[i] = c[first + i], where c[m] is the sum over k of
// conj(h[k]) * x[k + m - (taps-1)].
template <class T>
ZepStatus blocked(const T* h, std::int64_t taps, const T* x, std::int64_t samples,
                  std::int64_t first, T* dst, std::int64_t count) {
    using Of = TransformOf<T>;
    filter::CallTransform<T> fft;
    if (const ZepStatus s = fft.create(filter::orderFor(2 * taps, 0) + 1, 2); s != zepStsNoErr)
        return s;
    const std::int64_t N = fft.length(), step = N - taps + 1, before = taps - 1;
    T *spectrum = fft.buffer(0), *data = fft.buffer(1);
    Of::copy(h, spectrum, taps);
    Of::zero(spectrum + taps, N - taps);
    if (const ZepStatus s = fft.forward(spectrum); s != zepStsNoErr) return s;
    // Blocks in front of the wanted stretch have nothing to give.
    for (std::int64_t begin = first / step * step; begin < first + count; begin += step) {
        const std::int64_t from = begin - before;
        const std::int64_t lead = from < 0 ? -from : 0;
        std::int64_t n = samples - (from + lead);
        if (n > N - lead) n = N - lead;
        Of::zero(data, lead);
        Of::copy(x + (from + lead), data + lead, n);
        Of::zero(data + (lead + n), N - lead - n);
        if (const ZepStatus s = fft.forward(data); s != zepStsNoErr) return s;
        Of::multiplyConjugate(spectrum, data, static_cast<int>(N));
        if (const ZepStatus s = fft.inverse(data); s != zepStsNoErr) return s;
        const std::int64_t low = begin < first ? first : begin;
        const std::int64_t high = begin + step < first + count ? begin + step : first + count;
        Of::copy(data + (low - begin), dst + (low - first), high - low);
    }
    return zepStsNoErr;
}

template <class T>
ZepStatus overlapping(const Sequences<T>& s, std::int64_t lowLag, T* dst, int count) {
    const bool firstShorter = s.aLen < s.bLen;
    const std::int64_t shorter = firstShorter ? s.aLen : s.bLen;
    const std::int64_t longer = firstShorter ? s.bLen : s.aLen;
    const std::int64_t offset = s.aLen + lowLag - 1;
    const float work =
        static_cast<float>(shorter) * static_cast<float>(count) / static_cast<float>(longer);
    if (work < kDirectBelow<T>) {
        if (s.aLen <= s.bLen) {
            sums(s.a, s.aLen, s.b, s.bLen, lowLag, dst, count);
            return zepStsNoErr;
        }
        sums(s.b, s.bLen, s.a, s.aLen, -(lowLag + count - 1), dst, count);
    } else if (longer < 3 * shorter || shorter < offset) {
        return whole(s, lowLag, dst, count);
    } else if (firstShorter) {
        return blocked(s.a, s.aLen, s.b, s.bLen, offset, dst, count);
    } else {
        const std::int64_t first = s.aLen + s.bLen - 1 - offset - count;
        if (const ZepStatus status = blocked(s.b, s.bLen, s.a, s.aLen, first, dst, count);
            status != zepStsNoErr)
            return status;
    }
    turnRound(dst, count);
    return zepStsNoErr;
}

template <class T>
ZepStatus crossCorrelate(const T* src1, int len1, const T* src2, int len2, T* dst, int dstLen,
                         std::int64_t lowLag) {
    if (anyNull(src1, src2, dst)) return zepStsNullPtrErr;
    if (len1 < 1 || len2 < 1 || dstLen < 1) return zepStsSizeErr;
    // Lags 1-len1 .. len2-1 overlap; the others, at either end of the range, give zeros.
    std::int64_t count = dstLen;
    if (const std::int64_t lead = 1 - std::int64_t{len1} - lowLag; lead > 0) {
        const std::int64_t zeros = lead < count ? lead : count;
        TransformOf<T>::zero(dst, zeros);
        dst += zeros;
        count -= zeros;
        lowLag += lead;
        if (count == 0) return zepStsNoErr;
    }
    const std::int64_t lags = len2 > lowLag ? len2 - lowLag : 0;
    if (count > lags) {
        TransformOf<T>::zero(dst + lags, count - lags);
        count = lags;
        if (count == 0) return zepStsNoErr;
    }
    return overlapping(Sequences<T>{src1, len1, src2, len2}, lowLag, dst, static_cast<int>(count));
}

}  // namespace

ZepStatus zepsCrossCorr_32f(const Zep32f* pSrc1, int src1Len, const Zep32f* pSrc2, int src2Len,
                            Zep32f* pDst, int dstLen, int lowLag) {
    return crossCorrelate(pSrc1, src1Len, pSrc2, src2Len, pDst, dstLen, lowLag);
}
ZepStatus zepsCrossCorr_32fc(const Zep32fc* pSrc1, int src1Len, const Zep32fc* pSrc2, int src2Len,
                             Zep32fc* pDst, int dstLen, int lowLag) {
    return crossCorrelate(pSrc1, src1Len, pSrc2, src2Len, pDst, dstLen, lowLag);
}

}  // namespace zep::ZEP_VARIANT
