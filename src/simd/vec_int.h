// 16-byte vectors of integer lanes.
#pragma once

#include <emmintrin.h>

#include <cstdint>

#include "simd/vec_float.h"

namespace zep::ZEP_VARIANT::simd {

// What all integer lane types share: a register is 16 bytes whatever it holds.
template <class T>
struct IntVec16 {
    static constexpr int lanes = 16 / int{sizeof(T)};
    using Scalar = T;
    __m128i v;
};

}  // namespace zep::ZEP_VARIANT::simd
