// Choices between two values that must not become branches: where the outcome is close to random, a
// mispredicted branch costs ten times as much as computing both. Compilers undo a plain conditional
// expression as they see fit.
#pragma once

#include <immintrin.h>

#include <cstdint>

namespace zep::ZEP_VARIANT::simd {

// (key & kBits) != 0 ? ifSet : otherwise
template <std::uint32_t kBits>
[[nodiscard]] inline std::uintptr_t selectIfSet(std::uint32_t key, std::uintptr_t ifSet,
                                                std::uintptr_t otherwise) {
#if defined(__x86_64__)
    asm("testl %2, %1\n\tcmovne %3, %0"
        : "+r"(otherwise)
        : "r"(key), "i"(kBits), "r"(ifSet)
        : "cc");
    return otherwise;
#else
    const std::uintptr_t mask = 0 - static_cast<std::uintptr_t>((key & kBits) != 0);
    return otherwise ^ ((otherwise ^ ifSet) & mask);
#endif
}

// a < b ? ifBelow : otherwise, unsigned
[[nodiscard]] inline std::uintptr_t selectBelow(std::uintptr_t a, std::uintptr_t b,
                                                std::uintptr_t ifBelow, std::uintptr_t otherwise) {
#if defined(__x86_64__)
    asm("cmpq %2, %1\n\tcmovb %3, %0" : "+r"(otherwise) : "r"(a), "rm"(b), "rm"(ifBelow) : "cc");
    return otherwise;
#else
    const std::uintptr_t mask = 0 - static_cast<std::uintptr_t>(a < b);
    return otherwise ^ ((otherwise ^ ifBelow) & mask);
#endif
}

// The n lowest bits of x, n below 64. Only the low byte of n counts where the level has an
// instruction for it, only its low six bits elsewhere: both must be n.
[[nodiscard]] inline std::uint64_t lowBits(std::uint64_t x, unsigned n) {
#if defined(__BMI2__)
    return _bzhi_u64(x, n);
#else
    return x & ~(~std::uint64_t{0} << (n & 63));
#endif
}

// Makes the compiler compute a value here, rather than fold what it comes from into each use.
template <class T>
[[nodiscard]] inline T computed(T value) {
    asm("" : "+r"(value));
    return value;
}

}  // namespace zep::ZEP_VARIANT::simd
