// Logarithms of positive normal numbers: x = m 2^e with m about 1, and a factor F = d / c near d / m
// from a table of mantissa ranges, so that log m = log c + log(1 + z / d) with z = m F - d small.
// F has so few bits that z is exact (Tang 1990, "Table-driven implementation of the logarithm
// function", ACM TOMS 16).
//
// Where a level permutes by indices the table is a register of 16 entries and the polynomial longer;
// elsewhere 128 entries lie in memory.
#pragma once

#include <cstdint>

#include "simd/look_up.h"
#include "vmath/blocks.h"

namespace zep::ZEP_VARIANT::vmath {

using simd::DoublePair;
using Log10Entry = simd::FloatQuad;
#include "vmath/log_tables.inc"

// x = m 2^e with the bits of m from `least` on to those of twice it; offset has those of x past
// `least`, a whole number of table steps for each step of m.
template <simd::FloatVec W>
struct MantissaExponent {
    W m, e;
    IntsOf<W> offset;
};
template <simd::FloatVec W>
[[gnu::always_inline]] inline MantissaExponent<W> takeApart(W x, std::int32_t least) {
    const auto bits = simd::lanesAs<std::int32_t>(x);
    const auto offset = bits - least;
    const auto e = offset >> 23;
    return {simd::lanesAs<float>(bits - (e << 23)), toFloat(e), offset};
}

// log10(x) off by little more than its own rounding. With F = d / c for d near log10(e), z itself is
// the leading term; high parts are multiples of 2^-16, so that e and the table's entry add exactly.
template <simd::FloatVec W>
[[gnu::always_inline]] inline W log10Of(W x) {
    constexpr float kHigh = 0.3125f, kLow = -0.011470003984868526f;  // log10(2)
    const auto sum = [](W a, W z, W small) {
        // a + z + small, |a| > |z| unless it is 0: what a + z loses is kept.
        const W s = a + z;
        return s + ((z - (s - a)) + small);
    };
    if constexpr (simd::kRegisterTable<typename W::Scalar> == 16) {
        const auto [m, e, offset] = takeApart(x, 0x3F340000);
        const auto index = offset >> 19;
        const W z = exactMulSub(m, lookUp(kRegisterLog10Factor, index), W::broadcast(0.4375f));
        const W a = mulAdd(e, W::broadcast(kHigh), lookUp(kRegisterLog10High, index));
        const W b = mulAdd(e, W::broadcast(kLow), lookUp(kRegisterLog10Low, index));
        const auto at = [](int k) { return W::broadcast(kRegisterLog10Coefficients[k]); };
        const W q = mulAdd(mulAdd(mulAdd(z, at(4), at(3)), z, at(2)), z, at(1));
        return sum(a, z, mulAdd(mulAdd(q, z, at(0)), z, b));
    } else {
        const auto [m, e, offset] = takeApart(x, 0x3F3F8000);
        const auto index = ((offset >> 16) - 64) & IntsOf<W>::broadcast(127);
        const auto entry = entriesAt(kLog10, index);
        const W z = exactMulSub(m, entry.first, W::broadcast(0.43359375f));
        const W q =
            ((z * 6.923689842224121f + -3.0718326568603516f) * z + 1.7758978605270386f) * z +
            -1.1550167798995972f;
        const W small = (q * z + 0.00161610241048038f) * z + (e * kLow + entry.third);
        return sum(e * kHigh + entry.second, z, small);
    }
}

}  // namespace zep::ZEP_VARIANT::vmath
