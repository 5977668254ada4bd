// What every vector of floating lanes gets from its own operations, whatever its width and type.
#pragma once

#include <concepts>
#include <type_traits>

#include "simd/vec_fwd.h"

namespace zep::ZEP_VARIANT::simd {

template <class V>
concept FloatVec = std::floating_point<typename V::Scalar> && !std::is_void_v<typename V::M>;

// The scalar may be of any type that converts to the lanes'.
template <FloatVec V>
inline V operator+(V a, std::type_identity_t<typename V::Scalar> b) {
    return a + V::broadcast(b);
}
template <FloatVec V>
inline V operator-(V a, std::type_identity_t<typename V::Scalar> b) {
    return a - V::broadcast(b);
}
template <FloatVec V>
inline V operator*(V a, std::type_identity_t<typename V::Scalar> b) {
    return a * V::broadcast(b);
}

template <FloatVec V>
inline V signBits() {
    return V::broadcast(-typename V::Scalar{0});
}
template <FloatVec V>
inline V operator-(V a) {
    return a ^ signBits<V>();
}
template <FloatVec V>
inline V abs(V a) {
    return clearBits(a, signBits<V>());
}

template <FloatVec V>
inline typename V::M operator>(V a, V b) {
    return b < a;
}
template <FloatVec V>
inline typename V::M operator>=(V a, V b) {
    return b <= a;
}

template <std::floating_point T, int N>
inline bool any(Mask<T, N> m) {
    return bits(m) != 0;
}
template <std::floating_point T, int N>
inline bool all(Mask<T, N> m) {
    return bits(m) == (1u << N) - 1;
}

}  // namespace zep::ZEP_VARIANT::simd
