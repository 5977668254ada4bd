// Loads that widen: V::lanes elements of a narrower type S become lanes of V on their way into the
// register. Integers keep their value (extended by the sign where S has one), floats and integers
// become doubles exactly. They read those elements and nothing else.
#pragma once

#include "simd/vec.h"

namespace zep::ZEP_VARIANT::simd {

namespace detail {

// `bytes` bytes at the bottom of a register, the rest of its 16 bytes zero.
template <int bytes>
[[gnu::always_inline]] inline auto loadLow(const void* p) {
    if constexpr (bytes == 4)
        return _mm_cvtsi32_si128(readAny(static_cast<const std::int32_t*>(p)));
    else if constexpr (bytes == 8)
        return _mm_loadl_epi64(static_cast<const __m128i_u*>(p));
    else if constexpr (bytes == 16)
        return _mm_loadu_si128(static_cast<const __m128i_u*>(p));
    else
        return _mm256_loadu_si256(static_cast<const __m256i_u*>(p));
}

// Below SSE4.1: each lane goes below the bits of its sign.
template <class V, class S>
[[gnu::always_inline]] inline V extendByZips(__m128i x) {
    constexpr bool kSigned = std::signed_integral<S>;
    const __m128i zero = _mm_setzero_si128();
    if constexpr (sizeof(S) == 1) {
        x = _mm_unpacklo_epi8(x, kSigned ? _mm_cmpgt_epi8(zero, x) : zero);
        if constexpr (sizeof(typename V::Scalar) == 2) return {bitsAs<typename V::R>(x)};
    }
    if constexpr (sizeof(S) == 4)
        return {bitsAs<typename V::R>(
            _mm_unpacklo_epi32(x, kSigned ? _mm_cmpgt_epi32(zero, x) : zero))};
    return {
        bitsAs<typename V::R>(_mm_unpacklo_epi16(x, kSigned ? _mm_cmpgt_epi16(zero, x) : zero))};
}

template <class V, std::integral S>
[[gnu::always_inline]] inline V loadIntegers(const S* p) {
    using R = typename V::R;
    constexpr bool kSigned = std::signed_integral<S>;
    constexpr int kFrom = sizeof(S), kTo = sizeof(typename V::Scalar);
    constexpr int kBytes = kFrom * V::lanes;
    static_assert(kTo == 2 * kFrom || (kTo == 4 && kFrom == 1), "no such load is needed yet");
    if constexpr (V::bytes == 64) {
        const auto x = loadLow<kBytes>(p);
        if constexpr (kTo == 2)
            return {bitsAs<R>(kSigned ? _mm512_cvtepi8_epi16(x) : _mm512_cvtepu8_epi16(x))};
        else if constexpr (kTo == 8)
            return {bitsAs<R>(kSigned ? _mm512_cvtepi32_epi64(x) : _mm512_cvtepu32_epi64(x))};
        else if constexpr (kFrom == 1)
            return {bitsAs<R>(kSigned ? _mm512_cvtepi8_epi32(x) : _mm512_cvtepu8_epi32(x))};
        else
            return {bitsAs<R>(kSigned ? _mm512_cvtepi16_epi32(x) : _mm512_cvtepu16_epi32(x))};
    } else if constexpr (V::bytes == 32 && kHasAvx2) {
        const auto x = loadLow<kBytes>(p);
        if constexpr (kTo == 2)
            return {bitsAs<R>(kSigned ? _mm256_cvtepi8_epi16(x) : _mm256_cvtepu8_epi16(x))};
        else if constexpr (kTo == 8)
            return {bitsAs<R>(kSigned ? _mm256_cvtepi32_epi64(x) : _mm256_cvtepu32_epi64(x))};
        else if constexpr (kFrom == 1)
            return {bitsAs<R>(kSigned ? _mm256_cvtepi8_epi32(x) : _mm256_cvtepu8_epi32(x))};
        else
            return {bitsAs<R>(kSigned ? _mm256_cvtepi16_epi32(x) : _mm256_cvtepu16_epi32(x))};
    } else if constexpr (V::bytes == 32) {
        using H = Vec<typename V::Scalar, V::lanes / 2>;
        return join(loadIntegers<H>(p), loadIntegers<H>(p + H::lanes));
    } else if constexpr (kHasSse41) {
        const auto x = loadLow<kBytes>(p);
        if constexpr (kTo == 2)
            return {bitsAs<R>(kSigned ? _mm_cvtepi8_epi16(x) : _mm_cvtepu8_epi16(x))};
        else if constexpr (kTo == 8)
            return {bitsAs<R>(kSigned ? _mm_cvtepi32_epi64(x) : _mm_cvtepu32_epi64(x))};
        else if constexpr (kFrom == 1)
            return {bitsAs<R>(kSigned ? _mm_cvtepi8_epi32(x) : _mm_cvtepu8_epi32(x))};
        else
            return {bitsAs<R>(kSigned ? _mm_cvtepi16_epi32(x) : _mm_cvtepu16_epi32(x))};
    } else {
        return extendByZips<V, S>(loadLow<kBytes>(p));
    }
}

template <class V, class S>
[[gnu::always_inline]] inline V loadDoubles(const S* p) {
    using R = typename V::R;
    const auto x = loadLow<V::bytes / 2>(p);
    if constexpr (std::floating_point<S>) {
        if constexpr (V::bytes == 64)
            return {bitsAs<R>(_mm512_cvtps_pd(bitsAs<__m256>(x)))};
        else if constexpr (V::bytes == 32)
            return {bitsAs<R>(_mm256_cvtps_pd(bitsAs<__m128>(x)))};
        else
            return {bitsAs<R>(_mm_cvtps_pd(bitsAs<__m128>(x)))};
    } else {
        if constexpr (V::bytes == 64)
            return {bitsAs<R>(_mm512_cvtepi32_pd(x))};
        else if constexpr (V::bytes == 32)
            return {bitsAs<R>(_mm256_cvtepi32_pd(x))};
        else
            return {bitsAs<R>(_mm_cvtepi32_pd(x))};
    }
}

}  // namespace detail

template <AnyVec V, Lane S>
requires(sizeof(S) < sizeof(typename V::Scalar)) [[gnu::always_inline]] inline V
    loadAs(const S* p) {
    if constexpr (std::floating_point<typename V::Scalar>)
        return detail::loadDoubles<V>(p);
    else
        return detail::loadIntegers<V>(p);
}

// n elements, 0 <= n <= lanes; the lanes behind them become 0.
template <AnyVec V, Lane S>
requires(sizeof(S) < sizeof(typename V::Scalar)) [[gnu::always_inline]] inline V
    loadPartialAs(const S* p, int n) {
    constexpr int kSmallest = 16 / int{sizeof(S)};
    using W = Vec<S, (V::lanes > kSmallest ? V::lanes : kSmallest)>;
    S elements[W::lanes];
    W::loadPartial(p, n).store(elements);
    return loadAs<V>(elements);
}

}  // namespace zep::ZEP_VARIANT::simd
