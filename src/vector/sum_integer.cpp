// Sums and means of 32-bit integers, exact in 64 bits.
//
// Widening every element would cost more than adding it. Instead each lane keeps two 32-bit sums:
// `wrapped` of the elements, modulo 2^32, and `upper` of their upper halves x >> 16. With x = 65536
// * (x >> 16) + rest, 0 <= rest < 65536, the sum of the rests is wrapped - 65536 * upper modulo
// 2^32. Up to 65535 elements a lane, upper stays within 32 signed bits and the sum of rests within
// 32 unsigned ones, so both are exact. Putting the two together at the end would cost short vectors
// more than they save: they are widened.
#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/load_as.h"
#include "vector/reduce.h"
#include "vector/scale_total.h"

namespace zep::ZEP_VARIANT {
namespace {

using V = simd::Native<Zep32s>;
using W = simd::Native<Zep64s>;

constexpr std::ptrdiff_t kShort = 8 * V::lanes;

constexpr std::ptrdiff_t kVectorsAtOnce = 32768;
static_assert(kVectorsAtOnce + 1 <= 65535);

struct HalvesTotal {
    V wrapped = V::zero(), upper = V::zero();
    [[gnu::always_inline]] void add(V x) {
        simd::keepInRegister(x);
        wrapped = wrapped + x;
        upper = upper + (x >> 16);
    }
    [[gnu::always_inline]] void merge(const HalvesTotal& other) {
        wrapped = wrapped + other.wrapped;
        upper = upper + other.upper;
    }
};

// Of both halves, lane by lane.
template <class T>
[[gnu::always_inline]] inline auto widened(simd::Vec<T, V::lanes> x) {
    return simd::bitsIn<Zep64s>(widenLow(x)) + simd::bitsIn<Zep64s>(widenHigh(x));
}

struct WideTotal {
    W sum = W::zero();
    [[gnu::always_inline]] void merge(const WideTotal& other) { sum = sum + other.sum; }
};
inline std::int64_t shortSum(const Zep32s* src, std::ptrdiff_t len) {
    const auto t = fold<4, W::lanes>(
        len, WideTotal{},
        [=](WideTotal & a, std::ptrdiff_t n)
            __attribute__((always_inline)) { a.sum = a.sum + simd::loadAs<W>(src + n); },
        [=](WideTotal & a, std::ptrdiff_t n, int count) __attribute__((always_inline)) {
            a.sum = a.sum + simd::loadPartialAs<W>(src + n, count);
        });
    return reduceAdd(t.sum);
}

inline std::int64_t exactSum(const Zep32s* src, std::ptrdiff_t len) {
    if (len <= kShort) return shortSum(src, len);
    std::int64_t sum = 0;
    while (true) {
        const std::ptrdiff_t now =
            len < kVectorsAtOnce * V::lanes ? len : kVectorsAtOnce * V::lanes;
        const HalvesTotal t = foldSum<4>(now, HalvesTotal{}, src);
        const auto rests = lanesAs<Zep32u>(t.wrapped - (t.upper << 16));
        sum += reduceAdd((widened(t.upper) << 16) + widened(rests));
        if (now == len) return sum;
        src += now;
        len -= now;
    }
}

inline std::int32_t scaledMean(std::int64_t sum, int len, int scaleFactor) {
    // |sum / len| <= 2^31, and half of one rounds to 0.
    if (scaleFactor >= 32) return 0;
    if (scaleFactor >= 0) return saturateTo32(divideRounded(sum, std::int64_t{len} << scaleFactor));
    if (scaleFactor >= -31) {
        const std::int64_t factor = std::int64_t{1} << -scaleFactor;
        // Where the sum is wide the shift comes last, so that it cannot overflow.
        if (sum == saturateTo32(sum)) return saturateTo32(divideRounded(sum * factor, len));
        return saturateTo32(divideRounded(sum, len) * factor);
    }
    const std::int64_t mean = divideRounded(sum, len);
    return mean > 0 ? INT32_MAX : mean < 0 ? INT32_MIN : 0;
}

}  // namespace

ZepStatus zepsSum_32s_Sfs(const Zep32s* pSrc, int len, Zep32s* pSum, int scaleFactor) {
    if (const ZepStatus s = checkVectors(len, pSrc, pSum); s != zepStsNoErr) return s;
    const int factor = scaleFactor > 63 ? 63 : scaleFactor < -31 ? -31 : scaleFactor;
    simd::writeAny(pSum, scaleTotal(exactSum(pSrc, len), factor));
    return zepStsNoErr;
}

ZepStatus zepsMean_32s_Sfs(const Zep32s* pSrc, int len, Zep32s* pMean, int scaleFactor) {
    if (const ZepStatus s = checkVectors(len, pSrc, pMean); s != zepStsNoErr) return s;
    simd::writeAny(pMean, scaledMean(exactSum(pSrc, len), len, scaleFactor));
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
