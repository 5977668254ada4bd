// The loops under copies and moves. A block is moved by full registers only: the last ones overlap
// what went before instead of leaving a tail to smaller and smaller steps. Every routine reads
// whatever a store could overwrite before that store, so all of them are overlap-safe in their
// direction: moveSmall in both, moveAscending where dst is below src or the areas are apart,
// moveDescending where dst is above src.
#pragma once

#include <cstddef>
#include <cstdint>

#include "simd/block.h"

namespace zep::ZEP_VARIANT {

inline constexpr std::size_t kWide = simd::WideBlock::bytes;
inline constexpr std::size_t kStep = 4 * kWide;   // bytes of one turn of the loops
inline constexpr std::size_t kSmallMove = kStep;  // what moveSmall takes at most

// Registers first, first + sizeof(B) ... of the source, all loaded before the first is stored.
template <class B>
struct FourBlocks {
    B a, b, c, d;

    static FourBlocks load(const std::uint8_t* p) {
        constexpr int n = B::bytes;
        return {B::load(p), B::load(p + n), B::load(p + 2 * n), B::load(p + 3 * n)};
    }
    void store(std::uint8_t* p) const {
        constexpr int n = B::bytes;
        a.store(p), b.store(p + n), c.store(p + 2 * n), d.store(p + 3 * n);
    }
    void storeAligned(std::uint8_t* p) const {
        constexpr int n = B::bytes;
        a.storeAligned(p), b.storeAligned(p + n), c.storeAligned(p + 2 * n),
            d.storeAligned(p + 3 * n);
    }
};

// B::bytes <= bytes <= 2 * B::bytes.
template <class B>
inline void moveByTwo(std::uint8_t* dst, const std::uint8_t* src, std::size_t bytes) {
    const auto first = B::load(src), last = B::load(src + bytes - B::bytes);
    first.store(dst), last.store(dst + bytes - B::bytes);
}

// 2 * B::bytes <= bytes <= 4 * B::bytes.
template <class B>
inline void moveByFour(std::uint8_t* dst, const std::uint8_t* src, std::size_t bytes) {
    const std::size_t lastTwo = bytes - 2 * B::bytes;
    const auto a = B::load(src), b = B::load(src + B::bytes);
    const auto c = B::load(src + lastTwo), d = B::load(src + lastTwo + B::bytes);
    a.store(dst), b.store(dst + B::bytes);
    c.store(dst + lastTwo), d.store(dst + lastTwo + B::bytes);
}

// 1 <= bytes <= kSmallMove.
inline void moveSmall(std::uint8_t* dst, const std::uint8_t* src, std::size_t bytes) {
    if (bytes >= 16) {
        if (bytes <= 32) return moveByTwo<simd::Block<16>>(dst, src, bytes);
        if constexpr (kWide >= 32)
            if (bytes <= 2 * kWide) return moveByTwo<simd::WideBlock>(dst, src, bytes);
        return moveByFour<simd::WideBlock>(dst, src, bytes);
    }
    if (bytes >= 8) return moveByTwo<simd::Block<8>>(dst, src, bytes);
    if (bytes >= 4) return moveByTwo<simd::Block<4>>(dst, src, bytes);
    if (bytes >= 2) return moveByTwo<simd::Block<2>>(dst, src, bytes);
    *dst = *src;
}

inline std::size_t bytesBehindBoundary(const void* p, std::size_t boundary) {
    return reinterpret_cast<std::uintptr_t>(p) & (boundary - 1);
}

// bytes >= kStep.
inline void moveAscending(std::uint8_t* dst, const std::uint8_t* src, std::size_t bytes) {
    const auto head = simd::WideBlock::load(src);
    const auto tail = FourBlocks<simd::WideBlock>::load(src + bytes - kStep);
    std::uint8_t* const tailDst = dst + bytes - kStep;
    const std::size_t toBoundary = kWide - bytesBehindBoundary(dst, kWide);
    const std::uint8_t* s = src + toBoundary;
    for (std::uint8_t* d = dst + toBoundary; d < tailDst; d += kStep, s += kStep)
        FourBlocks<simd::WideBlock>::load(s).storeAligned(d);
    tail.store(tailDst);
    head.store(dst);
}

// bytes >= kStep.
inline void moveDescending(std::uint8_t* dst, const std::uint8_t* src, std::size_t bytes) {
    const auto last = simd::WideBlock::load(src + bytes - kWide);
    const auto front = FourBlocks<simd::WideBlock>::load(src);
    std::uint8_t* const dstEnd = dst + bytes;
    const std::size_t behind = bytesBehindBoundary(dstEnd - 1, kWide) + 1;
    const std::uint8_t* s = src + bytes - behind;
    // The part that is left when the loop ends is at most one step long: front covers it.
    for (std::uint8_t* d = dstEnd - behind; d > dst + kStep;) {
        d -= kStep, s -= kStep;
        FourBlocks<simd::WideBlock>::load(s).storeAligned(d);
    }
    front.store(dst);
    last.store(dstEnd - kWide);
}

}  // namespace zep::ZEP_VARIANT
