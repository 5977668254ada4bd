// sqrt(-2 ln s / s) for 2^-63 < s < 1 on vectors.
//
// s = m * 2^e with m between sqrt(1/2) and sqrt(2), and ln m = 2 artanh(z), z = (m - 1) / (m + 1), by
// its power series up to z^17: with |z| < 0.1716 the rest is below 1e-15 of the sum. The two
// divisions share one reciprocal. Against the same in exact arithmetic the result is off by less than
// 12 roundings, 1.4e-15.
#pragma once

#include <cstdint>

#include "core/variant_exports.h"
#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT {

// How far a product with the factor may be from what the C library gives, as a part of it: ten times
// the sum of both errors.
inline constexpr double kMargin = 0x1p-46;

template <class D>
[[gnu::always_inline]] inline D nearFactor(D s) {
    using U = simd::Vec<std::uint64_t, D::lanes>;
    constexpr std::uint64_t kRootOfHalf = 0x3FE6A09E667F3BCD, kBias = 1024;
    // The exponent counts from 1 at the least, as an integer and, below 2^52, as a fraction.
    const U bits = simd::lanesAs<std::uint64_t>(s);
    const U shifted = (bits - U::broadcast(kRootOfHalf)) + U::broadcast(kBias << 52);
    const U exponent = shifted >> 52;
    const D m = simd::lanesAs<double>(bits - (exponent << 52) + U::broadcast(kBias << 52));
    const D e = simd::lanesAs<double>(exponent | U::broadcast(0x4330000000000000)) -
                D::broadcast(0x1p52 + static_cast<double>(kBias));

    const D one = D::broadcast(1.0), sum = m + one;
    const D reciprocal = one / (s * sum);
    const D z = (m - one) * s * reciprocal, q = z * z;
    // The even and the odd terms side by side.
    const D q2 = q * q;
    D even = D::broadcast(1.0 / 17), odd = D::broadcast(1.0 / 15);
    simd::unroll<4>([&](auto k) { even = mulAdd(even, q2, D::broadcast(1.0 / (13 - 4 * k))); });
    simd::unroll<3>([&](auto k) { odd = mulAdd(odd, q2, D::broadcast(1.0 / (11 - 4 * k))); });
    const D series = mulAdd(odd, q, even);
    const D logarithm = mulAdd(e, D::broadcast(0.6931471805599453), (z + z) * series);
    return sqrt(D::broadcast(-2.0) * logarithm * (sum * reciprocal));
}

}  // namespace zep::ZEP_VARIANT
