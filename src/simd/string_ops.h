// The processor's own block instructions. They are ordinary stores, but the processor knows the
// length beforehand and fetches no line that it is going to overwrite, and its microcode moves as
// many bytes a step as the caches take, whatever the instruction level of the code around. Starting
// one costs some 30 cycles: for blocks, not for tails.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zep::ZEP_VARIANT::simd {

// Ascending; the areas must not overlap unless dst is below src.
inline void repeatMove(void* dst, const void* src, std::size_t bytes) {
    asm volatile("rep movsb" : "+D"(dst), "+S"(src), "+c"(bytes) : : "memory");
}

inline void repeatStore(void* dst, std::uint64_t pattern, std::size_t words) {
    asm volatile("rep stosq" : "+D"(dst), "+c"(words) : "a"(pattern) : "memory");
}

}  // namespace zep::ZEP_VARIANT::simd
