// dst = op(src...) over the bytes of vectors, for operations that work alike on registers of every
// size. No tail is left to smaller and smaller steps: the first and last registers overlap what is
// beside them. They are loaded before the loop and stored after it, so that every operation may run
// in place, also one that undoes itself when it is done twice; and sources and destination may
// overlap as far as the order of the loop allows: mapSmall in any way, mapAscending where dst is
// not above a source inside it.
//
// op takes one Block<N> of each source, N = 1, 2, 4 ... up to the widest, and returns one.
#pragma once

#include <cstddef>
#include <cstdint>

#include "simd/block.h"

namespace zep::ZEP_VARIANT {

inline constexpr std::size_t kWide = simd::WideBlock::bytes;

inline std::size_t bytesBehindBoundary(const void* p, std::size_t boundary) {
    return reinterpret_cast<std::uintptr_t>(p) & (boundary - 1);
}

// B::bytes <= bytes <= 2 * B::bytes.
template <class B, class Op, class... Src>
inline void mapTwo(Op op, std::uint8_t* dst, std::size_t bytes, Src... src) {
    const std::size_t last = bytes - B::bytes;
    const auto a = op(B::load(src)...), b = op(B::load(src + last)...);
    a.store(dst), b.store(dst + last);
}

// 2 * B::bytes <= bytes <= 4 * B::bytes.
template <class B, class Op, class... Src>
inline void mapFour(Op op, std::uint8_t* dst, std::size_t bytes, Src... src) {
    constexpr std::size_t n = B::bytes;
    const std::size_t last = bytes - 2 * n;
    const auto a = op(B::load(src)...), b = op(B::load(src + n)...);
    const auto c = op(B::load(src + last)...), d = op(B::load(src + last + n)...);
    a.store(dst), b.store(dst + n), c.store(dst + last), d.store(dst + last + n);
}

// 1 <= bytes <= 4 * B::bytes.
template <class B = simd::WideBlock, class Op, class... Src>
inline void mapSmall(Op op, std::uint8_t* dst, std::size_t bytes, Src... src) {
    if (bytes >= 16) {
        if (bytes <= 32) return mapTwo<simd::Block<16>>(op, dst, bytes, src...);
        if constexpr (B::bytes >= 32)
            if (bytes <= 2 * B::bytes) return mapTwo<B>(op, dst, bytes, src...);
        return mapFour<B>(op, dst, bytes, src...);
    }
    if (bytes >= 8) return mapTwo<simd::Block<8>>(op, dst, bytes, src...);
    if (bytes >= 4) return mapTwo<simd::Block<4>>(op, dst, bytes, src...);
    if (bytes >= 2) return mapTwo<simd::Block<2>>(op, dst, bytes, src...);
    op(simd::Block<1>::load(src)...).store(dst);
}

// Results of four registers in a row.
template <class B>
struct FourBlocks {
    static constexpr std::size_t n = B::bytes;
    B a, b, c, d;

    template <class Op, class... Src>
    static FourBlocks map(Op op, Src... src) {
        return {op(B::load(src)...), op(B::load(src + n)...), op(B::load(src + 2 * n)...),
                op(B::load(src + 3 * n)...)};
    }
    void store(std::uint8_t* p) const {
        a.store(p), b.store(p + n), c.store(p + 2 * n), d.store(p + 3 * n);
    }
    void storeAligned(std::uint8_t* p) const {
        a.storeAligned(p), b.storeAligned(p + n), c.storeAligned(p + 2 * n),
            d.storeAligned(p + 3 * n);
    }
};

// bytes >= 4 * B::bytes. The loop starts at a boundary of dst where elements of elementBytes allow
// it; a vector need not be aligned to its elements.
template <class B = simd::WideBlock, std::size_t elementBytes = 1, class Op, class... Src>
inline void mapAscending(Op op, std::uint8_t* dst, std::size_t bytes, Src... src) {
    constexpr std::size_t step = 4 * B::bytes;
    const std::size_t tailAt = bytes - step;
    const auto head = op(B::load(src)...);
    const auto tail = FourBlocks<B>::map(op, src + tailAt...);
    const std::size_t wholeElementsBehind =
        bytesBehindBoundary(dst, B::bytes) & ~(elementBytes - 1);
    for (std::size_t n = B::bytes - wholeElementsBehind; n < tailAt; n += step) {
        const auto blocks = FourBlocks<B>::map(op, src + n...);
        if constexpr (elementBytes == 1)
            blocks.storeAligned(dst + n);
        else
            blocks.store(dst + n);
    }
    tail.store(dst + tailAt);
    head.store(dst);
}

// Both of them, by the size.
template <class B = simd::WideBlock, std::size_t elementBytes = 1, class Op, class... Src>
inline void mapBytes(Op op, std::uint8_t* dst, std::size_t bytes, Src... src) {
    if (bytes <= 4 * std::size_t{B::bytes}) return mapSmall<B>(op, dst, bytes, src...);
    mapAscending<B, elementBytes>(op, dst, bytes, src...);
}

}  // namespace zep::ZEP_VARIANT
