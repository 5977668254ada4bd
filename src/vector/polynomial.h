// Polynomials of vectors by Horner's rule.
#pragma once

#include "simd/vec.h"

namespace zep::ZEP_VARIANT {

// highest * z^n + ... + lowest; the last coefficient is the lowest.
template <class V, class... Coefficient>
[[gnu::always_inline]] inline V polynomial(V z, float highest, Coefficient... others) {
    V p = V::broadcast(highest);
    ((p = mulAdd(p, z, V::broadcast(others))), ...);
    return p;
}

}  // namespace zep::ZEP_VARIANT
