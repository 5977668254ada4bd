// The exponential function: exp(x) = 2^(n/N) * exp(r), n = x N / ln 2 rounded, |r| <= ln 2 / 2N.
//
// Where a level permutes by indices 2^(j/N) is a register of 16 entries and exp(r) a cubic;
// elsewhere N = 128, the table lies in memory and exp(r) is a parabola (Tang 1989, "Table-driven
// implementation of the exponential function", ACM TOMS 15). What rounding an entry left over is
// added with the polynomial, so that the result is off by little more than its own rounding.
#pragma once

#include <cstdint>

#include "simd/look_up.h"
#include "vmath/blocks.h"

namespace zep::ZEP_VARIANT::vmath {

using simd::DoublePair;
using simd::FloatPair;
#include "vmath/exp_tables.inc"

// Adding it rounds to a whole number, which then stands in the low bits.
inline constexpr float kRounder = 12582912.0f;  // 1.5 * 2^23

// For |x| up to 89.
template <simd::FloatVec W>
[[gnu::always_inline]] inline W expOf(W x) {
    if constexpr (simd::kRegisterTable<float> == 16) {
        const W t = mulAdd(x, W::broadcast(kInverse16), W::broadcast(kRounder));
        const W f = t - kRounder;
        const W r0 = negMulAdd(f, W::broadcast(kStep16), x);
        const W r = negMulAdd(f, W::broadcast(kStepLow16), r0);
        const auto n = simd::lanesAs<std::int32_t>(t);
        const W scale = simd::lanesAs<float>(lookUp(kRegisterExp16, n) + (n << 19));
        const auto& c = kRegisterExpCoefficients16;
        const W q = mulAdd(r, W::broadcast(c[1]), W::broadcast(c[0]));
        const W p = mulAdd(q, r * r, r + lookUp(kRegisterExpLow16, n));
        return mulAdd(scale, p, scale);
    } else if constexpr (simd::kRegisterTable<float> == 4) {
        // The upper part of ln 2 / 4 has 14 bits: its product with f is exact.
        const W t = x * kInverse4 + kRounder;
        const W f = t - kRounder;
        const W r = x - f * kStep4 - f * kStepLow4;
        const auto n = simd::lanesAs<std::int32_t>(t);
        const auto& c = kRegisterExpCoefficients4;
        const W p = ((r * c[2] + c[1]) * r + c[0]) * (r * r) + (r + lookUp(kRegisterExpLow4, n));
        const W entry = lookUp(kRegisterExp4, n);
        const W y = entry * p + entry;
        const auto exponent = clearBits(n, IntsOf<W>::broadcast(3)) << 21;
        return simd::lanesAs<float>(simd::lanesAs<std::int32_t>(y) + exponent);
    } else {
        const W t = x * 184.6649627685547f + kRounder;
        const W f = t - kRounder;
        const W r = x - f * 0.0054168701171875f - f * -1.6577690757912933e-06f;
        const auto n = simd::lanesAs<std::int32_t>(t);
        const auto low = IntsOf<W>::broadcast(127);
        const auto entry = entriesAt(kExp128, n & low);
        const W y = (r * r * 0.49999908f + r) * entry.first + entry.second + entry.first;
        return simd::lanesAs<float>(simd::lanesAs<std::int32_t>(y) + (clearBits(n, low) << 16));
    }
}

}  // namespace zep::ZEP_VARIANT::vmath
