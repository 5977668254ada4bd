// Two-argument arctangent of vectors.
//
// t = min(|x|, |y|) / max(|x|, |y|) is in 0 .. 1, and atan(t) = t + t^3 * p(t^2), with p the
// polynomial of degree 7 that minimises the relative error, 2^-25.8 (Remez exchange, coefficients
// rounded to single precision). Where |y| > |x| the angle is pi/2 less that, where x is negative pi
// less that again, and y signs it.
#pragma once

#include <limits>

#include "simd/vec.h"
#include "vector/polynomial.h"

namespace zep::ZEP_VARIANT {

namespace detail {

template <class V>
[[gnu::always_inline]] inline V arctangentUpToOne(V t) {
    const V z = t * t;
    const V p = polynomial(z, 0x1.7ed08cp-9f, -0x1.0c2b12p-6f, 0x1.61fcdap-5f, -0x1.355634p-4f,
                           0x1.b4e0e0p-4f, -0x1.230ad0p-3f, 0x1.9978f2p-3f, -0x1.5554dcp-2f);
    return mulAdd(t * z, p, t);
}

}  // namespace detail

// In radians, -pi .. pi; of zeros and infinities as the C library's. A not-a-number gives one.
template <class V>
[[gnu::always_inline]] inline V arctangent2(V y, V x) {
    const V ax = abs(x), ay = abs(y);
    // The order of operands lets a not-a-number through to one of the two.
    const V smaller = min(ax, ay), larger = max(ay, ax);
    V t = smaller / larger;
    if (any(isNan(t))) [[unlikely]] {
        const V infinity = V::broadcast(std::numeric_limits<float>::infinity());
        t = select((smaller == V::zero()) & (larger == V::zero()), V::zero(), t);
        t = select((smaller == infinity) & (larger == infinity), V::broadcast(1.0f), t);
    }
    const V a = detail::arctangentUpToOne(t);
    // The angle is base + a or base - a; base is 0, pi/2 or pi.
    const V sign = V::broadcast(-0.0f);
    const auto steep = ay > ax;
    const auto left = ((x & sign) | V::broadcast(1.0f)) < V::zero();
    const V base =
        select(steep, V::broadcast(0x1.921fb6p+0f), keepIf(left, V::broadcast(0x1.921fb6p+1f)));
    const V part = a ^ keepIf(steep ^ left, sign);
    // What the base lacks of its multiple of pi/2, as a fraction of it.
    const V exact = mulAdd(base, V::broadcast(-0x1.777a5cp-25f / 0x1.921fb6p+0f), part);
    return (exact + base) | (y & sign);
}

}  // namespace zep::ZEP_VARIANT
