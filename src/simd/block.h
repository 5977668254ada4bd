// Registers as plain bytes, for code that moves, fills or combines bits and does not care what they
// mean. Block<N> is N bytes; the widest is WideBlock, which with AVX is 32 bytes although integer
// lanes are not.
//
// load and store take any address; storeAligned and storeStream need one that is a multiple of N.
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zep::ZEP_VARIANT::simd {

template <int N>
struct Block;

// Sizes below a vector: one general register.
template <class Word>
struct WordBlock {
    static constexpr int bytes = int{sizeof(Word)};
    Word v;

    static WordBlock load(const void* p) {
        WordBlock b;
        std::memcpy(&b.v, p, sizeof b.v);
        return b;
    }
    void store(void* p) const { std::memcpy(p, &v, sizeof v); }
};

template <>
struct Block<1> : WordBlock<std::uint8_t> {};
template <>
struct Block<2> : WordBlock<std::uint16_t> {};
template <>
struct Block<4> : WordBlock<std::uint32_t> {};
template <>
struct Block<8> : WordBlock<std::uint64_t> {};

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

}  // namespace zep::ZEP_VARIANT::simd
