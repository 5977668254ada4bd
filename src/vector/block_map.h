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
#include <utility>

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

// 4 * B::bytes <= bytes <= 8 * B::bytes.
template <class B, class Op, class... Src>
inline void mapEight(Op op, std::uint8_t* dst, std::size_t bytes, Src... src) {
    constexpr std::size_t n = B::bytes;
    const std::size_t last = bytes - 4 * n;
    const auto a = op(B::load(src)...), b = op(B::load(src + n)...);
    const auto c = op(B::load(src + 2 * n)...), d = op(B::load(src + 3 * n)...);
    const auto e = op(B::load(src + last)...), f = op(B::load(src + last + n)...);
    const auto g = op(B::load(src + last + 2 * n)...), h = op(B::load(src + last + 3 * n)...);
    a.store(dst), b.store(dst + n), c.store(dst + 2 * n), d.store(dst + 3 * n);
    e.store(dst + last), f.store(dst + last + n);
    g.store(dst + last + 2 * n), h.store(dst + last + 3 * n);
}

// The one ladder of short lengths: two.operator()<W>() with the widest W up to B that bytes fills
// and two of which cover it, or four.operator()<B>() above that; 1 <= bytes <= 4 * B::bytes.
template <class B, class Two>
[[gnu::always_inline]] inline void widestBlock(std::size_t bytes, Two two) {
    if constexpr (B::bytes > 16)
        if (bytes <= B::bytes) return widestBlock<simd::HalfBlock<B>>(bytes, two);
    two.template operator()<B>();
}
template <class B, class Two, class Four>
[[gnu::always_inline]] inline void byLadder(std::size_t bytes, Two two, Four four) {
    if (bytes >= 16) {
        if (bytes <= 2 * B::bytes) return widestBlock<B>(bytes, two);
        return four.template operator()<B>();
    }
    if (bytes >= 8) return two.template operator()<simd::Block<8>>();
    if (bytes >= 4) return two.template operator()<simd::Block<4>>();
    if (bytes >= 2) return two.template operator()<simd::Block<2>>();
    two.template operator()<simd::Block<1>>();
}

// 1 <= bytes <= 4 * B::bytes.
template <class B = simd::WideBlock, class Op, class... Src>
[[gnu::always_inline]] inline void mapSmall(Op op, std::uint8_t* dst, std::size_t bytes,
                                            Src... src) {
    if constexpr (simd::kMaskedMemory)
        // A masked access to a whole register would be in the way of those that follow.
        if (bytes < B::bytes) {
            const auto n = static_cast<int>(bytes);
            return op(B::loadPartial(src, n)...).storePartial(dst, n);
        }
    byLadder<B>(
        bytes, [=]<class W> { mapTwo<W>(op, dst, bytes, src...); },
        [=]<class W> { mapFour<W>(op, dst, bytes, src...); });
}

inline constexpr std::size_t kLine = 64;

// Whole cache lines in registers. Their stores ascend: see zep_kernels_in_store_order.
template <class B, int kLines = 1, class = std::make_index_sequence<kLines * kLine / B::bytes>>
struct Line;

template <class B, int kLines, std::size_t... I>
struct Line<B, kLines, std::index_sequence<I...>> {
    B blocks[sizeof...(I)];

    template <class Op, class... Src>
    static Line map(Op op, Src... src) {
        return {mapBlock<I>(op, src...)...};
    }
    void store(std::uint8_t* p) const { (blocks[I].store(p + I * B::bytes), ...); }
    void storeAligned(std::uint8_t* p) const { (blocks[I].storeAligned(p + I * B::bytes), ...); }
    void storeStream(std::uint8_t* p) const { (blocks[I].storeStream(p + I * B::bytes), ...); }

private:
    template <std::size_t i, class Op, class... Src>
    static B mapBlock(Op op, Src... src) {
        return op(B::load(src + i * B::bytes)...);
    }
};

// Four registers a step, so that loads run ahead of the stores and the loop's own work is shared;
// below AVX a line is that much.
template <class B>
inline constexpr int kLinesOfStep = B::bytes == 64 ? 4 : 1;

// bytes > kLine. The loop starts at a line of dst where elements of elementBytes allow it; a vector
// need not be aligned to its elements. It takes kLines a step. ahead: how many bytes before they are needed the sources are
// fetched, 0 to leave it to the processor.
template <class B = simd::WideBlock, std::size_t elementBytes = 1, int kLines = kLinesOfStep<B>,
          int ahead = 0, class Op, class... Src>
[[gnu::always_inline]] inline void mapAscending(Op op, std::uint8_t* dst, std::size_t bytes,
                                                Src... src) {
    const auto tailAt = static_cast<std::ptrdiff_t>(bytes - kLine);
    const auto head = Line<B>::map(op, src...);
    const auto tail = Line<B>::map(op, src + tailAt...);
    const std::size_t wholeElementsBehind = bytesBehindBoundary(dst, kLine) & ~(elementBytes - 1);
    const auto put = [=](const auto& lines, std::ptrdiff_t n) __attribute__((always_inline)) {
        if constexpr (elementBytes == 1)
            lines.storeAligned(dst + n);
        else
            lines.store(dst + n);
    };
    auto n = static_cast<std::ptrdiff_t>(kLine - wholeElementsBehind);
    if constexpr (kLines > 1)
        for (; n < tailAt - (kLines - 1) * std::ptrdiff_t{kLine}; n += kLines * kLine) {
            if constexpr (ahead != 0) (simd::fetch<kLines * kLine>(src + n + ahead), ...);
            put(Line<B, kLines>::map(op, src + n...), n);
        }
    for (; n < tailAt; n += kLine) put(Line<B>::map(op, src + n...), n);
    tail.store(dst + tailAt);
    head.store(dst);
}

template <class B, std::size_t elementBytes, class Op, class... Src>
[[gnu::noinline]] void mapLong(Op op, std::uint8_t* dst, std::size_t bytes, Src... src) {
    mapAscending<B, elementBytes>(op, dst, bytes, src...);
}

// Both of them, by the size; what is short costs no call more.
template <class B = simd::WideBlock, std::size_t elementBytes = 1, class Op, class... Src>
[[gnu::always_inline]] inline void mapBytes(Op op, std::uint8_t* dst, std::size_t bytes,
                                            Src... src) {
    if (bytes > 4 * std::size_t{B::bytes}) return mapLong<B, elementBytes>(op, dst, bytes, src...);
    mapSmall<B>(op, dst, bytes, src...);
}

}  // namespace zep::ZEP_VARIANT
