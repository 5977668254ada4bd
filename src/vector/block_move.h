// The loops under copies and moves, overlap-safe in their direction: moveSmall in both,
// moveAscending where dst is below src or the areas are apart, moveDescending where dst is above
// src.
#pragma once

#include "vector/block_map.h"

namespace zep::ZEP_VARIANT {

inline constexpr std::size_t kStep = 4 * kWide;   // bytes of one turn of the loops
inline constexpr std::size_t kSmallMove = kStep;  // what moveSmall takes at most

inline constexpr auto unchanged = [](auto block) { return block; };

// 1 <= bytes <= kSmallMove.
inline void moveSmall(std::uint8_t* dst, const std::uint8_t* src, std::size_t bytes) {
    mapSmall(unchanged, dst, bytes, src);
}

// bytes >= kStep.
inline void moveAscending(std::uint8_t* dst, const std::uint8_t* src, std::size_t bytes) {
    mapAscending(unchanged, dst, bytes, src);
}

// bytes >= kStep. Addresses fall; what the loop leaves in front is at most one step long.
inline void moveDescending(std::uint8_t* dst, const std::uint8_t* src, std::size_t bytes) {
    using Blocks = FourBlocks<simd::WideBlock>;
    const auto last = simd::WideBlock::load(src + bytes - kWide);
    const auto front = Blocks::map(unchanged, src);
    const std::size_t behindBoundary = bytesBehindBoundary(dst + bytes - 1, kWide) + 1;
    for (std::size_t n = bytes - behindBoundary; n > kStep;) {
        n -= kStep;
        Blocks::map(unchanged, src + n).storeAligned(dst + n);
    }
    front.store(dst);
    last.store(dst + bytes - kWide);
}

}  // namespace zep::ZEP_VARIANT
