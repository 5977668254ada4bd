// The scalar counterparts of vector operations, so that one generic lambda serves a vector and a
// single element.
#pragma once

#include "simd/vec_float.h"

namespace zep::ZEP_VARIANT::simd {

inline float abs(float x) { return __builtin_fabsf(x); }
inline double abs(double x) { return __builtin_fabs(x); }

inline float sqrt(float x) { return _mm_cvtss_f32(_mm_sqrt_ss(_mm_set_ss(x))); }
inline double sqrt(double x) {
    const __m128d v = _mm_set_sd(x);
    return _mm_cvtsd_f64(_mm_sqrt_sd(v, v));
}

// As minps and maxps: the second operand where either is NaN or both are zero.
template <class T>
inline T min(T a, T b) {
    return a < b ? a : b;
}
template <class T>
inline T max(T a, T b) {
    return a > b ? a : b;
}

template <class T>
inline T select(bool m, T a, T b) {
    return m ? a : b;
}

}  // namespace zep::ZEP_VARIANT::simd
