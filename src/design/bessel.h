// The modified Bessel function I0 by the polynomials of Abramowitz and Stegun, Handbook of
// Mathematical Functions, 9.8.1 and 9.8.2, on vectors of doubles.
#pragma once

#include <cstdint>

#include "design/rotation.h"

namespace zep::ZEP_VARIANT::design {

template <std::size_t N>
[[gnu::always_inline]] inline D polynomial(D t, const double (&c)[N]) {
    D p = D::broadcast(c[N - 1]);
    simd::unroll<static_cast<int>(N) - 1>(
        [&](auto k) { p = p * t + D::broadcast(c[static_cast<int>(N) - 2 - k]); });
    return p;
}

// exp(x) for 0 <= x < 700, relative error below 10^-11: 2^n * exp(r), |r| <= ln 2 / 2, and
// Taylor's polynomial.
[[gnu::always_inline]] inline D expOf(D x) {
    static constexpr double kTaylor[] = {1,        1,        1. / 2,    1. / 6,     1. / 24,
                                         1. / 120, 1. / 720, 1. / 5040, 1. / 40320, 1. / 362880};
    constexpr double kRounder = 6755399441055744.0;  // 1.5 * 2^52
    const D t = x * D::broadcast(1.4426950408889634) + D::broadcast(kRounder);
    const D n = t - D::broadcast(kRounder);
    // ln 2 in two parts, of which the first has few enough bits for an exact product.
    const D r = x - n * D::broadcast(0.693147180369123816490) -
                n * D::broadcast(1.90821492927058770002e-10);
    const auto bits = simd::lanesAs<std::int64_t>(polynomial(r, kTaylor));
    return simd::lanesAs<Zep64f>(bits + (simd::lanesAs<std::int64_t>(t) << 52));
}

[[gnu::always_inline]] inline D besselI0(D x) {
    static constexpr double kSmall[] = {1,         3.5156229, 3.0899424, 1.2067492,
                                        0.2659732, 0.0360768, 0.0045813};
    static constexpr double kLarge[] = {0.39894228,  0.01328592,  0.00225319,
                                        -0.00157565, 0.00916281,  -0.02057706,
                                        0.02635537,  -0.01647633, 0.00392377};
    const D split = D::broadcast(3.75);
    const auto small = x < split;
    D y = D::zero();
    if (any(small)) {
        const D t = x / split;
        y = polynomial(t * t, kSmall);
        if (all(small)) return y;
    }
    const D t = split / x;
    return select(small, y, expOf(x) / sqrt(x) * polynomial(t, kLarge));
}

}  // namespace zep::ZEP_VARIANT::design
