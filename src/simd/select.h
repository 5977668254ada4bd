// Choices between two values that must not become branches: where the outcome is close to random, a
// mispredicted branch costs ten times as much as computing both. Compilers undo a plain conditional
// expression as they see fit.
#pragma once

#include <cstdint>

namespace zep::ZEP_VARIANT::simd {

// key < 0 ? ifNegative : otherwise
[[nodiscard]] inline std::uintptr_t selectNegative(std::int32_t key, std::uintptr_t ifNegative,
                                                   std::uintptr_t otherwise) {
#if defined(__x86_64__)
    asm("testl %1, %1\n\tcmovs %2, %0" : "+r"(otherwise) : "r"(key), "r"(ifNegative) : "cc");
    return otherwise;
#else
    const std::uintptr_t mask = static_cast<std::uintptr_t>(std::int64_t{key} >> 63);
    return otherwise ^ ((otherwise ^ ifNegative) & mask);
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

}  // namespace zep::ZEP_VARIANT::simd
