// Access to single elements at any address, casts of registers, and hints to the compiler.
#pragma once

#include <cstddef>
#include <cstdint>

#include "simd/level.h"

namespace zep::ZEP_VARIANT::simd {

// Callers' arrays need no alignment, not even to their elements.
template <class T>
[[gnu::always_inline]] inline T readAny(const T* p) {
    T x;
    __builtin_memcpy(&x, p, sizeof(T));
    return x;
}
template <class T>
[[gnu::always_inline]] inline void writeAny(T* p, T x) {
    __builtin_memcpy(p, &x, sizeof(T));
}

// A register of the same size under another type.
template <class To, class From>
[[gnu::always_inline]] inline To bitsAs(From x) {
    static_assert(sizeof(To) == sizeof(From));
    return __builtin_bit_cast(To, x);
}

// Makes the compiler hold a value in a register from here on, instead of loading it again.
template <class V>
[[gnu::always_inline]] inline void keepInRegister(V& a) {
#if defined(__AVX512F__)
    asm("" : "+v"(a.v));
#else
    asm("" : "+x"(a.v));
#endif
}

// The value, made here and now: branches that all return it then end in a plain return, not in a
// jump to the one place where it is made.
template <class T>
[[gnu::always_inline]] inline T madeHere(T x) {
    asm("" : "+r"(x));
    return x;
}

}  // namespace zep::ZEP_VARIANT::simd
