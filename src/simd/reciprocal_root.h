// Reciprocal square root of one float.
#pragma once

#include <xmmintrin.h>

namespace zep::ZEP_VARIANT::simd {

// The processor's 12-bit estimate and one Newton step: about 22 bits.
inline float refinedReciprocalRoot(float x) {
    const float estimate = _mm_cvtss_f32(_mm_rsqrt_ss(_mm_set_ss(x)));
    return estimate * (x * estimate * estimate - 3.0f) * -0.5f;
}

}  // namespace zep::ZEP_VARIANT::simd
