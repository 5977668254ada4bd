// Registers that hold one channel each, turned into registers that hold frames: one sample of every
// channel.
#pragma once

#include <array>
#include <cstddef>

#include "simd/block.h"

namespace zep::ZEP_VARIANT::simd {

// Lanes of a and b in turn, from the lower and from the upper half; with 32 bytes, of each 16-byte
// half by itself.
template <int laneBytes>
inline Block<16> interleaveLow(Block<16> a, Block<16> b) {
    static_assert(laneBytes == 2 || laneBytes == 4);
    return {laneBytes == 2 ? _mm_unpacklo_epi16(a.v, b.v) : _mm_unpacklo_epi32(a.v, b.v)};
}
template <int laneBytes>
inline Block<16> interleaveHigh(Block<16> a, Block<16> b) {
    static_assert(laneBytes == 2 || laneBytes == 4);
    return {laneBytes == 2 ? _mm_unpackhi_epi16(a.v, b.v) : _mm_unpackhi_epi32(a.v, b.v)};
}

#if defined(__AVX__)
template <int laneBytes>
requires(laneBytes == 4) inline Block<32> interleaveLow(Block<32> a, Block<32> b) {
    return {_mm256_unpacklo_ps(a.v, b.v)};
}
template <int laneBytes>
requires(laneBytes == 4) inline Block<32> interleaveHigh(Block<32> a, Block<32> b) {
    return {_mm256_unpackhi_ps(a.v, b.v)};
}
#endif

// From C channels to frames of C lanes, C a power of two. Each round deals two halves of the pack
// together, as a perfect shuffle of cards does; after log2(C) rounds lane 0 of all channels stands
// in front.
template <int laneBytes, class B, std::size_t C>
inline std::array<B, C> toFrames(std::array<B, C> x) {
    for (std::size_t round = 1; round < C; round *= 2) {
        std::array<B, C> y;
        for (std::size_t k = 0; k < C / 2; ++k) {
            y[2 * k] = interleaveLow<laneBytes>(x[k], x[k + C / 2]);
            y[2 * k + 1] = interleaveHigh<laneBytes>(x[k], x[k + C / 2]);
        }
        x = y;
    }
    return x;
}

// The parts of a 16-byte register, in order from p in steps of stride bytes.
template <int partBytes>
inline void storeParts(Block<16> x, void* p, std::ptrdiff_t stride) {
    auto* to = static_cast<unsigned char*>(p);
    if constexpr (partBytes == 16) {
        x.store(to);
    } else if constexpr (partBytes == 8) {
        _mm_storel_epi64(reinterpret_cast<__m128i*>(to), x.v);
        _mm_storeh_pd(reinterpret_cast<double*>(to + stride), _mm_castsi128_pd(x.v));
    } else {
        static_assert(partBytes == 4);
        for (int i = 0; i < 4; ++i) {
            Block<4>{static_cast<std::uint32_t>(_mm_cvtsi128_si32(x.v))}.store(to + i * stride);
            x.v = _mm_srli_si128(x.v, 4);
        }
    }
}

}  // namespace zep::ZEP_VARIANT::simd
