// The two templates that every lane type specialises, access to single elements at any address, and
// a hint to the compiler.
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

// Makes the compiler hold a value in a register from here on, instead of loading it again.
template <class V>
[[gnu::always_inline]] inline void keepInRegister(V& a) {
    asm("" : "+x"(a.v));
}

// The value, made here and now: branches that all return it then end in a plain return, not in a
// jump to the one place where it is made.
template <class T>
[[gnu::always_inline]] inline T madeHere(T x) {
    asm("" : "+r"(x));
    return x;
}

}  // namespace zep::ZEP_VARIANT::simd
