// exp(x) in double precision, for the single elements that the block loops leave.
#pragma once

#include "vmath/exp_kernel.h"
#include "vmath/single_bits.h"

namespace zep::ZEP_VARIANT::vmath {

// exp(x) in double precision, relative error below 2^-48, for |x| up to 700: 2^(j/64) from a table
// in two parts, and a polynomial for the rest.
inline double accurateExp(double x) {
    constexpr double kRound = 6755399441055744.0;  // 1.5 * 2^52
    const double t = x * 92.33248261689366 + kRound;
    const auto j = static_cast<std::int32_t>(bitsOf(t));
    const double f = t - kRound;
    const double r = x - f * 2.572804622327669e-14 - f * 0.010830424696223417;
    const double p =
        ((((r * 0.0013888870459233254 + 0.008333341995140497) * r + 0.04166666666677052) * r +
          0.1666666666665788) *
             r +
         0.5) *
            (r * r) +
        r;
    const DoublePair& entry = kExp64[j & 63];
    const double y = entry.first + (entry.second + entry.first * p);
    return doubleOf(bitsOf(y) + (static_cast<std::uint64_t>(j >> 6) << 52));
}

}  // namespace zep::ZEP_VARIANT::vmath
