// The two templates that every lane type specialises, and access to single elements at any address.
#pragma once

namespace zep::ZEP_VARIANT::simd {

// N lanes of T.
template <class T, int N>
struct Vec;

// N truth values, one for each lane of a Vec<T, N>.
template <class T, int N>
struct Mask;

// Callers' arrays need no alignment, not even to their elements.
template <class T>
inline T readAny(const T* p) {
    T x;
    __builtin_memcpy(&x, p, sizeof(T));
    return x;
}
template <class T>
inline void writeAny(T* p, T x) {
    __builtin_memcpy(p, &x, sizeof(T));
}

}  // namespace zep::ZEP_VARIANT::simd
