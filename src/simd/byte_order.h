// Orders within a register: bytes of a lane, lanes of a register. They move bits only, whatever the
// lanes mean.
#pragma once

#include <bit>
#include <cstdint>

#include "simd/block.h"

namespace zep::ZEP_VARIANT::simd {
namespace detail {

#if defined(__SSSE3__)
// Byte i of the result is byte order(i) of x.
template <class Order>
inline __m128i shuffleBytes(__m128i x, Order order) {
    alignas(16) std::uint8_t index[16];
    for (int i = 0; i < 16; ++i) index[i] = static_cast<std::uint8_t>(order(i));
    return _mm_shuffle_epi8(x, _mm_load_si128(reinterpret_cast<const __m128i*>(index)));
}
#endif

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
template <int laneBytes>
inline Block<16> swapBytes(Block<16> x) {
#if defined(__SSSE3__)
    return {detail::shuffleBytes(x.v, [](int i) { return i ^ (laneBytes - 1); })};
#else
    const __m128i swapped = detail::swapPairsOfBytes(x.v);
    if constexpr (laneBytes == 2) return {swapped};
    if constexpr (laneBytes == 4) return {detail::orderWords<1, 0, 3, 2>(swapped)};
    return {detail::orderWords<3, 2, 1, 0>(swapped)};
#endif
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
template <int laneBytes>
inline Block<16> reverseLanes(Block<16> x) {
    if constexpr (laneBytes == 8) return {_mm_shuffle_epi32(x.v, _MM_SHUFFLE(1, 0, 3, 2))};
    if constexpr (laneBytes == 4) return {_mm_shuffle_epi32(x.v, _MM_SHUFFLE(0, 1, 2, 3))};
    if constexpr (laneBytes == 1) {
#if defined(__SSSE3__)
        return {detail::shuffleBytes(x.v, [](int i) { return 15 - i; })};
#else
        return reverseLanes<8>(swapBytes<8>(x));
#endif
    }
}

#if defined(__AVX__)
template <int laneBytes>
requires(laneBytes >= 4) inline Block<32> reverseLanes(Block<32> x) {
    const __m256 halvesSwapped = _mm256_permute2f128_ps(x.v, x.v, 1);
    if constexpr (laneBytes == 8)
        return {_mm256_permute_ps(halvesSwapped, _MM_SHUFFLE(1, 0, 3, 2))};
    return {_mm256_permute_ps(halvesSwapped, _MM_SHUFFLE(0, 1, 2, 3))};
}
#endif

}  // namespace zep::ZEP_VARIANT::simd
