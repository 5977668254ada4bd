// Floating sums and means. Single precision is widened before it is added.
#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/load_as.h"
#include "simd/reduce_pairs.h"
#include "vector/reduce.h"
#include "vector/shapes.h"

namespace zep::ZEP_VARIANT {
namespace {

using F = simd::Native<Zep32f>;
using D = simd::Native<Zep64f>;

struct Total {
    D sum = D::zero();
    [[gnu::always_inline]] void add(D x) { sum = sum + x; }
    [[gnu::always_inline]] void merge(const Total& other) { sum = sum + other.sum; }
};

// Each half of a vector of floats has its own sum. Lanes keep their parity, so that it serves
// interleaved pairs too.
struct WideTotal {
    D low = D::zero(), high = D::zero();
    [[gnu::always_inline]] void merge(const WideTotal& other) {
        low = low + other.low;
        high = high + other.high;
    }
};

template <int kCount>
[[gnu::always_inline]] inline D widenedSums(const Zep32f* src, std::ptrdiff_t len) {
    const auto t = fold<kCount, F::lanes>(
        len, WideTotal{},
        [=](WideTotal & a, std::ptrdiff_t n) __attribute__((always_inline)) {
            a.low = a.low + simd::loadAs<D>(src + n);
            a.high = a.high + simd::loadAs<D>(src + n + D::lanes);
        },
        [=](WideTotal & a, std::ptrdiff_t n, int count) __attribute__((always_inline)) {
            const F x = F::loadPartial(src + n, count);
            a.low = a.low + widenLow(x);
            a.high = a.high + widenHigh(x);
        });
    return t.low + t.high;
}

inline D widenedSums(const Zep32f* src, std::ptrdiff_t len, int hint) {
    return hint == zepAlgHintFast ? widenedSums<4>(src, len) : widenedSums<2>(src, len);
}

inline Zep32f sumOf(const Zep32f* src, int len, int hint) {
    return static_cast<Zep32f>(reduceAdd(widenedSums(src, len, hint)));
}
inline Zep32fc sumOf(const Zep32fc* src, int len, int hint) {
    const auto sum = reduceAddPairs(widenedSums(shape::parts(src), std::ptrdiff_t{2} * len, hint));
    return {static_cast<Zep32f>(sum.even), static_cast<Zep32f>(sum.odd)};
}
// A call, so that the sum is rounded: GCC 12 vectorises the two parts of a complex mean and forgets
// to.
[[gnu::noinline]] Zep32f mean(Zep32f sum, int len) {
    return static_cast<Zep32f>(Zep64f{sum} / len);
}

}  // namespace

ZepStatus zepsSum_32f(const Zep32f* pSrc, int len, Zep32f* pSum, int hint) {
    if (const ZepStatus s = checkVectors(len, pSrc, pSum); s != zepStsNoErr) return s;
    simd::writeAny(pSum, sumOf(pSrc, len, hint));
    return zepStsNoErr;
}
ZepStatus zepsSum_32fc(const Zep32fc* pSrc, int len, Zep32fc* pSum, int hint) {
    if (const ZepStatus s = checkVectors(len, pSrc, pSum); s != zepStsNoErr) return s;
    simd::writeAny(pSum, sumOf(pSrc, len, hint));
    return zepStsNoErr;
}
ZepStatus zepsSum_64f(const Zep64f* pSrc, int len, Zep64f* pSum) {
    if (const ZepStatus s = checkVectors(len, pSrc, pSum); s != zepStsNoErr) return s;
    simd::writeAny(pSum, reduceAdd(foldSum<8>(len, Total{}, pSrc).sum));
    return zepStsNoErr;
}
ZepStatus zepsSum_64fc(const Zep64fc* pSrc, int len, Zep64fc* pSum) {
    if (const ZepStatus s = checkVectors(len, pSrc, pSum); s != zepStsNoErr) return s;
    const auto sum =
        reduceAddPairs(foldSum<8>(std::ptrdiff_t{2} * len, Total{}, shape::parts(pSrc)).sum);
    simd::writeAny(pSum, Zep64fc{sum.even, sum.odd});
    return zepStsNoErr;
}

ZepStatus zepsMean_32f(const Zep32f* pSrc, int len, Zep32f* pMean, int hint) {
    if (const ZepStatus s = checkVectors(len, pSrc, pMean); s != zepStsNoErr) return s;
    simd::writeAny(pMean, mean(sumOf(pSrc, len, hint), len));
    return zepStsNoErr;
}
ZepStatus zepsMean_32fc(const Zep32fc* pSrc, int len, Zep32fc* pMean, int hint) {
    if (const ZepStatus s = checkVectors(len, pSrc, pMean); s != zepStsNoErr) return s;
    const Zep32fc sum = sumOf(pSrc, len, hint);
    simd::writeAny(pMean, Zep32fc{mean(sum.re, len), mean(sum.im, len)});
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
