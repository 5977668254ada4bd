// The other end of the range for floats too large for an integer: the conversion gives the most
// negative one for all that does not fit.
#pragma once

#include <limits>

#include "simd/vec.h"

namespace zep::ZEP_VARIANT::simd {

// `converted` from x, with the largest integer where x is 2^31 or more, infinity, or a NaN without
// the sign bit: where the bits of x, as an integer, exceed those of the largest float below 2^31.
template <int N>
[[gnu::always_inline]] inline Vec<std::int32_t, N> saturateAbove(Vec<std::int32_t, N> converted,
                                                                 Vec<float, N> x) {
    // AVX compares integers by halves only. As a float: a NaN becomes infinity of its sign.
    if constexpr (kHasAvx && !kHasAvx2 && N == 8) {
        using F = Vec<float, N>;
        const F infinity = F::broadcast(std::numeric_limits<float>::infinity());
        const F ordered = min(x, infinity) | (x & signBits<F>());
        const F ones = F::broadcast(bitsAs<float>(-1));
        return lanesAs<std::int32_t>(lanesAs<float>(converted) ^
                                     keepIf(ordered >= F::broadcast(0x1p31f), ones));
    }
    using I = Vec<std::int32_t, N>;
    constexpr std::int32_t kLargestBelow = 0x4EFFFFFF, kMost = 0x7FFFFFFF;
    return select(lanesAs<std::int32_t>(x) > I::broadcast(kLargestBelow), I::broadcast(kMost),
                  converted);
}

}  // namespace zep::ZEP_VARIANT::simd
