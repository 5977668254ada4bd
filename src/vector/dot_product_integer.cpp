// Scaled dot products of integers.
#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/load_as.h"
#include "vector/reduce.h"
#include "vector/scale_total.h"

namespace zep::ZEP_VARIANT {
namespace {

using V16 = simd::Native<Zep16s>;
using V32 = simd::Native<Zep32s>;
using V64 = simd::Native<Zep64s>;
using D = simd::Native<Zep64f>;

struct DoubleTotal {
    D sum = D::zero();
    [[gnu::always_inline]] void merge(const DoubleTotal& other) { sum = sum + other.sum; }
};

// Doubles have more lanes than 32-bit integers where only the floating unit is wide.
constexpr int kStep = D::lanes;

inline double doubleDot(const Zep32s* a, const Zep32s* b, int len) {
    const auto sum = fold<4, kStep>(
        len, DoubleTotal{},
        [=](DoubleTotal & t, std::ptrdiff_t n) __attribute__((always_inline)) {
            t.sum = mulAdd(simd::loadAs<D>(a + n), simd::loadAs<D>(b + n), t.sum);
        },
        [=](DoubleTotal & t, std::ptrdiff_t n, int count) __attribute__((always_inline)) {
            Zep32s x[kStep] = {}, y[kStep] = {};
            for (int k = 0; k < count; ++k) {
                x[k] = simd::readAny(a + n + k);
                y[k] = simd::readAny(b + n + k);
            }
            t.sum = mulAdd(simd::loadAs<D>(x), simd::loadAs<D>(y), t.sum);
        });
    return reduceAdd(sum.sum);
}

// To nearest, ties to even, whatever the rounding mode; saturated. x is no not-a-number.
inline std::int32_t roundedTo32(double x) {
    using One = simd::Narrow<double>;
    const double rounded = first(roundEven(One::broadcast(x)));
    if (rounded >= 2147483647.0) return INT32_MAX;
    if (rounded <= -2147483648.0) return INT32_MIN;
    return static_cast<std::int32_t>(rounded);
}

// 2^exponent, of a normal number.
inline double powerOfTwo(int exponent) {
    return __builtin_bit_cast(double, static_cast<std::int64_t>(1023 + exponent) << 52);
}

// Products of 16 by 32 bits in 64. Even and odd lanes multiply apart.
struct LongTotal {
    V64 sum = V64::zero();
    [[gnu::always_inline]] void add(V32 a, V32 b) {
        const auto odd = [](V32 x) { return simd::bitsIn<Zep32s>(simd::bitsIn<Zep64u>(x) >> 32); };
        sum = sum + (mulEven(a, b) + mulEven(odd(a), odd(b)));
    }
    [[gnu::always_inline]] void merge(const LongTotal& other) { sum = sum + other.sum; }
};

inline std::int64_t longDot(const Zep16s* a, const Zep32s* b, int len) {
    const auto t = fold<4, V16::lanes>(
        len, LongTotal{},
        [=](LongTotal & s, std::ptrdiff_t n) __attribute__((always_inline)) {
            const V16 x = V16::load(a + n);
            s.add(widenLow(x), V32::load(b + n));
            s.add(widenHigh(x), V32::load(b + n + V32::lanes));
        },
        [=](LongTotal & s, std::ptrdiff_t n, int count) __attribute__((always_inline)) {
            const V16 x = V16::loadPartial(a + n, count);
            const int low = count < V32::lanes ? count : V32::lanes;
            s.add(widenLow(x), V32::loadPartial(b + n, low));
            s.add(widenHigh(x), V32::loadPartial(b + n + low, count - low));
        });
    return reduceAdd(t.sum);
}

}  // namespace

ZepStatus zepsDotProd_32s_Sfs(const Zep32s* pSrc1, const Zep32s* pSrc2, int len, Zep32s* pDp,
                              int scaleFactor) {
    if (const ZepStatus s = checkVectors(len, pSrc1, pSrc2, pDp); s != zepStsNoErr) return s;
    const int factor = scaleFactor > 93 ? 93 : scaleFactor < -31 ? -31 : scaleFactor;
    simd::writeAny(pDp, roundedTo32(doubleDot(pSrc1, pSrc2, len) * powerOfTwo(-factor)));
    return zepStsNoErr;
}

ZepStatus zepsDotProd_16s32s_Sfs(const Zep16s* pSrc1, const Zep32s* pSrc2, int len, Zep32s* pDp,
                                 int scaleFactor) {
    if (const ZepStatus s = checkVectors(len, pSrc1, pSrc2, pDp); s != zepStsNoErr) return s;
    const int factor = scaleFactor > 31 ? 31 : scaleFactor < -31 ? -31 : scaleFactor;
    simd::writeAny(pDp, scaleTotal(longDot(pSrc1, pSrc2, len), factor));
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
