// The loops under copies and moves, overlap-safe in their direction: moveSmall in both,
// moveAscending where dst is below src or the areas are apart, moveDescending where dst is above
// src.
#pragma once

#include "simd/vec_fwd.h"
#include "vector/block_map.h"
#include "vector/byte_count.h"

namespace zep::ZEP_VARIANT {

inline constexpr std::size_t kSmallMove = 4 * kWide;  // what moveSmall takes at most

inline constexpr auto unchanged = [](auto block) { return block; };

// 1 <= bytes <= kSmallMove.
[[gnu::always_inline]] inline void moveSmall(std::uint8_t* dst, const std::uint8_t* src,
                                             std::size_t bytes) {
    mapSmall(unchanged, dst, bytes, src);
}

// bytes > kLine, here and below; ahead as in mapAscending.
template <int ahead = 0>
[[gnu::always_inline]] inline void moveAscending(std::uint8_t* dst, const std::uint8_t* src,
                                                 std::size_t bytes) {
    constexpr int kLines = simd::WideBlock::bytes == 32 ? 2 : kLinesOfStep<simd::WideBlock>;
    mapAscending<simd::WideBlock, 1, kLines, ahead>(unchanged, dst, bytes, src);
}

// Addresses fall; what the loop leaves in front is at most one line long.
template <int ahead = 0>
inline void moveDescending(std::uint8_t* dst, const std::uint8_t* src, std::size_t bytes) {
    using WideLine = Line<simd::WideBlock>;
    const std::size_t tailAt = bytes - kLine;
    const auto front = WideLine::map(unchanged, src);
    const auto tail = WideLine::map(unchanged, src + tailAt);
    const std::size_t behindBoundary = bytesBehindBoundary(dst + bytes - 1, kLine) + 1;
    std::size_t n = bytes - behindBoundary;
    constexpr int kLines = kLinesOfStep<simd::WideBlock>;
    if constexpr (kLines > 1)
        while (n > kLines * kLine) {
            n -= kLines * kLine;
            if constexpr (ahead != 0) simd::fetch<kLines * kLine>(src + n - ahead);
            Line<simd::WideBlock, kLines>::map(unchanged, src + n).storeAligned(dst + n);
        }
    while (n > kLine) {
        n -= kLine;
        if constexpr (ahead != 0) simd::fetch<kLine>(src + n - ahead);
        WideLine::map(unchanged, src + n).storeAligned(dst + n);
    }
    front.store(dst);
    tail.store(dst + tailAt);
}

// The entry of every typed form: what is small is done in it, the rest by
// kLarge(src, dst, bytes).
template <auto kLarge, class T>
inline ZepStatus checkedMoveOfBytes(const T* pSrc, T* pDst, int len) {
    const auto move = [=](std::size_t bytes) {
        const auto* src = reinterpret_cast<const std::uint8_t*>(pSrc);
        auto* dst = reinterpret_cast<std::uint8_t*>(pDst);
        if (bytes > kSmallMove) return kLarge(src, dst, bytes);
        const ZepStatus done = simd::madeHere(zepStsNoErr);
        moveSmall(dst, src, bytes);
        return done;
    };
    return withByteCount<T>(len, move, pSrc, pDst);
}

}  // namespace zep::ZEP_VARIANT
