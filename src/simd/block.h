// Registers as plain bytes, for code that moves, fills or combines bits and does not care what they
// mean. Block<N> is N bytes; the widest is WideBlock, which with AVX is 32 bytes although integer
// lanes are not.
//
// broadcast repeats 8 bytes, or as many of their low ones as the block has. load and store take any
// address; storeAligned and storeStream need one that is a multiple of N.
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace zep::ZEP_VARIANT::simd {

template <int N>
struct Block;

namespace detail {
template <int N>
struct WordOfBytes;
template <>
struct WordOfBytes<1> : std::type_identity<std::uint8_t> {};
template <>
struct WordOfBytes<2> : std::type_identity<std::uint16_t> {};
template <>
struct WordOfBytes<4> : std::type_identity<std::uint32_t> {};
template <>
struct WordOfBytes<8> : std::type_identity<std::uint64_t> {};
}  // namespace detail

// Below a vector: one general register.
template <int N>
requires(N <= 8) struct Block<N> {
    static constexpr int bytes = N;
    using Word = typename detail::WordOfBytes<N>::type;
    Word v;

    static Block load(const void* p) {
        Block b;
        std::memcpy(&b.v, p, sizeof b.v);
        return b;
    }
    static Block zero() { return {0}; }
    static Block broadcast(std::uint64_t x) { return {static_cast<Word>(x)}; }
    void store(void* p) const { std::memcpy(p, &v, sizeof v); }

    friend Block operator&(Block a, Block b) { return {static_cast<Word>(a.v & b.v)}; }
    friend Block operator|(Block a, Block b) { return {static_cast<Word>(a.v | b.v)}; }
    friend Block operator^(Block a, Block b) { return {static_cast<Word>(a.v ^ b.v)}; }
};

template <>
struct Block<16> {
    static constexpr int bytes = 16;
    __m128i v;

    static Block load(const void* p) { return {_mm_loadu_si128(static_cast<const __m128i*>(p))}; }
    static Block zero() { return {_mm_setzero_si128()}; }
    static Block broadcast(std::uint64_t x) { return {_mm_set1_epi64x(static_cast<long long>(x))}; }
    void store(void* p) const { _mm_storeu_si128(static_cast<__m128i*>(p), v); }
    void storeAligned(void* p) const { _mm_store_si128(static_cast<__m128i*>(p), v); }
    void storeStream(void* p) const { _mm_stream_si128(static_cast<__m128i*>(p), v); }

    friend Block operator&(Block a, Block b) { return {_mm_and_si128(a.v, b.v)}; }
    friend Block operator|(Block a, Block b) { return {_mm_or_si128(a.v, b.v)}; }
    friend Block operator^(Block a, Block b) { return {_mm_xor_si128(a.v, b.v)}; }
};

#if defined(__AVX__)
// AVX has the bit operations at this width in the floating domain only; they and the moves keep
// every bit pattern.
template <>
struct Block<32> {
    static constexpr int bytes = 32;
    __m256 v;

    static Block load(const void* p) { return {_mm256_loadu_ps(static_cast<const float*>(p))}; }
    static Block loadHalves(const void* low, const void* high) {
        const __m256 lower = _mm256_castps128_ps256(_mm_loadu_ps(static_cast<const float*>(low)));
        return {_mm256_insertf128_ps(lower, _mm_loadu_ps(static_cast<const float*>(high)), 1)};
    }
    static Block zero() { return {_mm256_setzero_ps()}; }
    static Block broadcast(std::uint64_t x) {
        return {_mm256_castsi256_ps(_mm256_set1_epi64x(static_cast<long long>(x)))};
    }
    void store(void* p) const { _mm256_storeu_ps(static_cast<float*>(p), v); }
    void storeAligned(void* p) const { _mm256_store_ps(static_cast<float*>(p), v); }
    void storeStream(void* p) const { _mm256_stream_ps(static_cast<float*>(p), v); }

    friend Block operator&(Block a, Block b) { return {_mm256_and_ps(a.v, b.v)}; }
    friend Block operator|(Block a, Block b) { return {_mm256_or_ps(a.v, b.v)}; }
    friend Block operator^(Block a, Block b) { return {_mm256_xor_ps(a.v, b.v)}; }
};
using WideBlock = Block<32>;
#else
using WideBlock = Block<16>;
#endif

// Asks for the cache lines from p on before they are needed. Any address will do, one outside the
// caller's memory, too.
template <std::size_t bytes>
inline void fetch(const std::uint8_t* p) {
    for (std::size_t n = 0; n < bytes; n += 64) _mm_prefetch(p + n, _MM_HINT_T0);
}

}  // namespace zep::ZEP_VARIANT::simd
