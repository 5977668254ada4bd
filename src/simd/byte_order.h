// Orders within a register: bytes of a lane, lanes of a register. They move bits only, whatever the
// lanes mean.
#pragma once

#include <bit>
#include <cstdint>

#include "simd/block.h"

namespace zep::ZEP_VARIANT::simd {
namespace detail {

// Byte i of each 16 is byte order(i) of them; from SSSE3 on.
template <int N, class Order>
inline Block<N> shuffleBytes(Block<N> x, Order order) {
    alignas(N) std::uint8_t index[N];
    for (int i = 0; i < N; ++i) index[i] = static_cast<std::uint8_t>(order(i % 16));
    const auto indices = asInts(Block<N>::load(index).v);
    if constexpr (N == 16)
        return {bitsAs<typename Block<N>::R>(_mm_shuffle_epi8(asInts(x.v), indices))};
    else if constexpr (N == 32)
        return {bitsAs<typename Block<N>::R>(_mm256_shuffle_epi8(asInts(x.v), indices))};
    else
        return {bitsAs<typename Block<N>::R>(_mm512_shuffle_epi8(asInts(x.v), indices))};
}

inline __m128i swapPairsOfBytes(__m128i x) {
    return _mm_or_si128(_mm_slli_epi16(x, 8), _mm_srli_epi16(x, 8));
}

template <int i0, int i1, int i2, int i3>
inline __m128i orderWords(__m128i x) {
    constexpr int order = _MM_SHUFFLE(i3, i2, i1, i0);
    return _mm_shufflehi_epi16(_mm_shufflelo_epi16(x, order), order);
}

// All bytes of a word.
template <int N>
inline Block<N> reverseBytes(Block<N> x) {
    if constexpr (N == 8) return {__builtin_bswap64(x.v)};
    if constexpr (N == 4) return {__builtin_bswap32(x.v)};
    if constexpr (N == 2) return {__builtin_bswap16(x.v)};
    return x;
}

}  // namespace detail

// The bytes of every lane of laneBytes, in reverse.
template <int laneBytes, int N>
requires(N >= 16) inline Block<N> swapBytes(Block<N> x) {
    if constexpr (kHasSsse3) {
        return detail::shuffleBytes(x, [](int i) { return i ^ (laneBytes - 1); });
    } else {
        using R = typename Block<N>::R;
        const __m128i swapped = detail::swapPairsOfBytes(asInts(x.v));
        if constexpr (laneBytes == 2) return {bitsAs<R>(swapped)};
        if constexpr (laneBytes == 4) return {bitsAs<R>(detail::orderWords<1, 0, 3, 2>(swapped))};
        return {bitsAs<R>(detail::orderWords<3, 2, 1, 0>(swapped))};
    }
}

// Words: a lane wider than the word is never met and passes unchanged.
template <int laneBytes, int N>
requires(N <= 8) inline Block<N> swapBytes(Block<N> x) {
    if constexpr (laneBytes < N) {
        if constexpr (laneBytes == 4) return {std::rotl(__builtin_bswap64(x.v), 32)};
        using Word = typename Block<N>::Word;
        constexpr auto kLowBytes = static_cast<Word>(0x00FF00FF00FF00FF);
        return {static_cast<Word>(((x.v & kLowBytes) << 8) | ((x.v >> 8) & kLowBytes))};
    } else if constexpr (laneBytes == N) {
        return detail::reverseBytes(x);
    } else {
        return x;
    }
}

// The lanes of laneBytes, in reverse.
template <int laneBytes, int N>
requires(N <= 8) inline Block<N> reverseLanes(Block<N> x) {
    static_assert(laneBytes == 1 || laneBytes >= 4);
    if constexpr (laneBytes == 1) return detail::reverseBytes(x);
    if constexpr (laneBytes == 4 && N == 8) return {std::rotl(x.v, 32)};
    return x;
}
template <int laneBytes, int N>
requires(N >= 16) inline Block<N> reverseLanes(Block<N> x) {
    if constexpr (laneBytes == 8) {
        return blockOf(reverse(lanesOf<double>(x)));
    } else if constexpr (laneBytes == 4) {
        return blockOf(reverse(lanesOf<float>(x)));
    } else if constexpr (!kHasSsse3) {
        // Compilers spell this out byte by byte.
        return reverseLanes<8>(swapBytes<8>(x));
    } else if constexpr (N == 32) {
        return reverseLanes<8>(swapBytes<8>(x));
    } else {
        return blockOf(reverse(lanesOf<std::uint8_t>(x)));
    }
}

}  // namespace zep::ZEP_VARIANT::simd
