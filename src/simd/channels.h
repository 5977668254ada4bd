// Registers that hold one channel each, turned into registers that hold frames: one sample of every
// channel.
#pragma once

#include <cstddef>

#include "simd/block.h"

namespace zep::ZEP_VARIANT::simd {

namespace detail {

// Lanes of the floating kind have shuffles wherever they have registers.
template <int laneBytes>
using ShuffledLane = std::conditional_t<laneBytes == 4, float,
                                        std::conditional_t<laneBytes == 2, std::uint16_t, double>>;

}  // namespace detail

// Lanes of a and b in turn, from the lower and from the upper half of each 16 bytes.
template <int laneBytes, int N>
inline Block<N> interleaveLow(Block<N> a, Block<N> b) {
    using T = detail::ShuffledLane<laneBytes>;
    return blockOf(zipLow(lanesOf<T>(a), lanesOf<T>(b)));
}
template <int laneBytes, int N>
inline Block<N> interleaveHigh(Block<N> a, Block<N> b) {
    using T = detail::ShuffledLane<laneBytes>;
    return blockOf(zipHigh(lanesOf<T>(a), lanesOf<T>(b)));
}

// The same of whole registers.
template <int laneBytes, int N>
inline Block<N> interleaveFront(Block<N> a, Block<N> b) {
    using T = detail::ShuffledLane<laneBytes>;
    return blockOf(interleaveFront(lanesOf<T>(a), lanesOf<T>(b)));
}
template <int laneBytes, int N>
inline Block<N> interleaveBack(Block<N> a, Block<N> b) {
    using T = detail::ShuffledLane<laneBytes>;
    return blockOf(interleaveBack(lanesOf<T>(a), lanesOf<T>(b)));
}

// C registers, by name: compilers keep arrays of them in memory. load(k) gives register k, each(f)
// calls f(k, register) in order, deal() puts the two halves of the pack together as a perfect
// shuffle of cards does, lane by lane.
template <int laneBytes, class B, int C>
struct Pack;

template <int laneBytes, class B>
struct Pack<laneBytes, B, 2> {
    B a, b;

    static Pack load(auto load) { return {load(0), load(1)}; }
    void each(auto f) const { f(0, a), f(1, b); }
    Pack deal() const { return {interleaveLow<laneBytes>(a, b), interleaveHigh<laneBytes>(a, b)}; }
};

template <int laneBytes, class B>
struct Pack<laneBytes, B, 4> {
    using Half = Pack<laneBytes, B, 2>;
    B a, b, c, d;

    static Pack load(auto load) { return {load(0), load(1), load(2), load(3)}; }
    void each(auto f) const { f(0, a), f(1, b), f(2, c), f(3, d); }
    Pack deal() const {
        const auto x = Half{a, c}.deal(), y = Half{b, d}.deal();
        return {x.a, x.b, y.a, y.b};
    }
};

template <int laneBytes, class B>
struct Pack<laneBytes, B, 8> {
    using Half = Pack<laneBytes, B, 4>;
    B a, b, c, d, e, f, g, h;

    static Pack load(auto load) {
        return {load(0), load(1), load(2), load(3), load(4), load(5), load(6), load(7)};
    }
    void each(auto to) const {
        to(0, a), to(1, b), to(2, c), to(3, d), to(4, e), to(5, f), to(6, g), to(7, h);
    }
    Pack deal() const {
        const auto x = Half{a, b, e, f}.deal(), y = Half{c, d, g, h}.deal();
        return {x.a, x.b, x.c, x.d, y.a, y.b, y.c, y.d};
    }
};

// From C channels to frames of C lanes: after log2(C) rounds lane 0 of all channels stands in
// front.
template <int laneBytes, class B, int C>
inline Pack<laneBytes, B, C> toFrames(Pack<laneBytes, B, C> x) {
    if constexpr (C >= 8) x = x.deal();
    if constexpr (C >= 4) x = x.deal();
    return x.deal();
}

// The parts of a 16-byte register, in order from p in steps of stride bytes.
template <int partBytes>
inline void storeParts(Block<16> x, void* p, std::ptrdiff_t stride) {
    auto* to = static_cast<unsigned char*>(p);
    if constexpr (partBytes == 16) {
        x.store(to);
    } else if constexpr (partBytes == 8) {
        writeAny(reinterpret_cast<std::uint64_t*>(to), std::uint64_t{x.v[0]});
        writeAny(reinterpret_cast<std::uint64_t*>(to + stride), std::uint64_t{x.v[1]});
    } else {
        static_assert(partBytes == 4);
        for (int i = 0; i < 4; ++i) {
            Block<4>{static_cast<std::uint32_t>(_mm_cvtsi128_si32(asInts(x.v)))}.store(to +
                                                                                       i * stride);
            x.v = bitsAs<Block<16>::R>(_mm_srli_si128(asInts(x.v), 4));
        }
    }
}

}  // namespace zep::ZEP_VARIANT::simd
