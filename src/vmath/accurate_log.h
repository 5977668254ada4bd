// ln(x) in double precision, for the single elements that the block loops leave.
#pragma once

#include "vmath/log_kernel.h"
#include "vmath/single_bits.h"

namespace zep::ZEP_VARIANT::vmath {

// x positive, normal and finite; relative error below 2^-44. By the table of ln c and 1/c for
// c = 1 + i/256, so |f| <= 2^-9.
inline double accurateLn(double x) {
    const std::uint64_t bits = bitsOf(x);
    const auto e = static_cast<std::int64_t>(bits >> 52) - 1023;
    const double m = doubleOf((bits & 0x000F'FFFF'FFFF'FFFF) | 0x3FF0'0000'0000'0000);
    constexpr double kTo256ths = 17592186044416.0;  // 2^44
    const double shifted = m + kTo256ths;
    const DoublePair& entry = kPowerLog256[(bitsOf(shifted) & 1023) - 256];
    const double f = (m - (shifted - kTo256ths)) * entry.second;
    const double p = f + f * f * (-0.5 + f * (1.0 / 3 + f * (-0.25 + f * 0.2)));
    return (static_cast<double>(e) * 0.6931471805599453 + entry.first) + p;
}

}  // namespace zep::ZEP_VARIANT::vmath
