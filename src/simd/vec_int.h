// 16-byte vectors of integer lanes. Arithmetic wraps; shifts take one count for all lanes.
#pragma once

#include <immintrin.h>

#include <concepts>
#include <cstdint>

#include "simd/vec_float.h"

namespace zep::ZEP_VARIANT::simd {

template <std::integral T, int N>
requires(N* int{sizeof(T)} == 16) struct Vec<T, N> {
    static constexpr int lanes = N;
    using Scalar = T;
    __m128i v;

    static Vec load(const T* p) { return {_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))}; }
    static Vec loadAligned(const T* p) {
        return {_mm_load_si128(reinterpret_cast<const __m128i*>(p))};
    }
    static Vec broadcast(T x) {
        if constexpr (sizeof(T) == 1)
            return {_mm_set1_epi8(static_cast<char>(x))};
        else if constexpr (sizeof(T) == 2)
            return {_mm_set1_epi16(static_cast<short>(x))};
        else if constexpr (sizeof(T) == 4)
            return {_mm_set1_epi32(static_cast<int>(x))};
        else
            return {_mm_set1_epi64x(static_cast<long long>(x))};
    }
    static Vec zero() { return {_mm_setzero_si128()}; }
    void store(T* p) const { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }
    void storeAligned(T* p) const { _mm_store_si128(reinterpret_cast<__m128i*>(p), v); }
    void storeStream(T* p) const { _mm_stream_si128(reinterpret_cast<__m128i*>(p), v); }

    friend Vec operator&(Vec a, Vec b) { return {_mm_and_si128(a.v, b.v)}; }
    friend Vec operator|(Vec a, Vec b) { return {_mm_or_si128(a.v, b.v)}; }
    friend Vec operator^(Vec a, Vec b) { return {_mm_xor_si128(a.v, b.v)}; }

    friend Vec operator+(Vec a, Vec b) {
        if constexpr (sizeof(T) == 1)
            return {_mm_add_epi8(a.v, b.v)};
        else if constexpr (sizeof(T) == 2)
            return {_mm_add_epi16(a.v, b.v)};
        else if constexpr (sizeof(T) == 4)
            return {_mm_add_epi32(a.v, b.v)};
        else
            return {_mm_add_epi64(a.v, b.v)};
    }
    friend Vec operator-(Vec a, Vec b) {
        if constexpr (sizeof(T) == 1)
            return {_mm_sub_epi8(a.v, b.v)};
        else if constexpr (sizeof(T) == 2)
            return {_mm_sub_epi16(a.v, b.v)};
        else if constexpr (sizeof(T) == 4)
            return {_mm_sub_epi32(a.v, b.v)};
        else
            return {_mm_sub_epi64(a.v, b.v)};
    }

    // A count beyond the lane gives 0.
    friend Vec operator<<(Vec a, int count) requires(sizeof(T) >= 2) {
        const __m128i n = _mm_cvtsi32_si128(count);
        if constexpr (sizeof(T) == 2)
            return {_mm_sll_epi16(a.v, n)};
        else if constexpr (sizeof(T) == 4)
            return {_mm_sll_epi32(a.v, n)};
        else
            return {_mm_sll_epi64(a.v, n)};
    }
    // Arithmetic for signed lanes of 2 and 4 bytes, logical for unsigned ones.
    friend Vec operator>>(Vec a, int count) requires(sizeof(T) >= 2 &&
                                                     (std::unsigned_integral<T> || sizeof(T) < 8)) {
        const __m128i n = _mm_cvtsi32_si128(count);
        if constexpr (sizeof(T) == 2)
            return {std::signed_integral<T> ? _mm_sra_epi16(a.v, n) : _mm_srl_epi16(a.v, n)};
        else if constexpr (sizeof(T) == 4)
            return {std::signed_integral<T> ? _mm_sra_epi32(a.v, n) : _mm_srl_epi32(a.v, n)};
        else
            return {_mm_srl_epi64(a.v, n)};
    }
};

}  // namespace zep::ZEP_VARIANT::simd
