// Modulus of complex numbers, through the processor's estimate of 1 / sqrt(s).
#pragma once

#include "simd/vec.h"

namespace zep::ZEP_VARIANT {

// With the estimate r of s = re * re + im * im, and t = s * r, one Newton step gives (t * -0.5) *
// (t * r - 3). The estimate serves normal numbers. Of zero and denormals it is infinity, of infinity
// zero, and the step ends in a not-a-number or minus infinity: those take the true root.
template <class V>
[[gnu::always_inline]] inline V magnitude(V re, V im) {
    const V s = re * re + im * im;
    const V r = rsqrtEstimate(s);
    const V t = s * r;
    const V root = (t * -0.5f) * (t * r - 3.0f);
    const auto good = root >= V::zero();
    if (all(good)) [[likely]]
        return root;
    return select(good, root, sqrt(s));
}

}  // namespace zep::ZEP_VARIANT
