// Loads and stores of the first n elements of a vector, touching exactly those.
//
// Where the level has masked memory this is one instruction, elsewhere two or three narrow ones.
#pragma once

#include "simd/compare.h"
#include "simd/shuffle.h"

namespace zep::ZEP_VARIANT::simd {

namespace detail {

template <class W>
[[gnu::always_inline]] inline std::uint64_t word(const void* p) {
    return readAny(static_cast<const W*>(p));
}

// k bytes at the bottom of a 16-byte register, 0 <= k < 16, in two words that overlap. Elements of
// `unit` bytes leave some cases out.
template <int unit>
[[gnu::always_inline]] inline __m128i loadBytes(const void* from, int k) {
    const auto* p = static_cast<const unsigned char*>(from);
    if constexpr (unit >= 4) {
        if (k == 0) return _mm_setzero_si128();
        if constexpr (unit == 4) {
            if (k == 4) return _mm_cvtsi32_si128(static_cast<int>(word<std::uint32_t>(p)));
        }
        const __m128i low = _mm_loadl_epi64(reinterpret_cast<const __m128i_u*>(p));
        if constexpr (unit == 4) {
            if (k == 12) {
                const auto high = _mm_cvtsi32_si128(static_cast<int>(word<std::uint32_t>(p + 8)));
                return _mm_unpacklo_epi64(low, high);
            }
        }
        return low;
    } else {
        if (k >= 8) {
            // The upper word, less the bytes that the lower one has; a shift by 64 in two steps.
            const std::uint64_t high = word<std::uint64_t>(p + k - 8) >> 1 >> (127 - 8 * k);
            return _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i_u*>(p)),
                                      _mm_cvtsi64_si128(static_cast<long long>(high)));
        }
        std::uint64_t w = 0;
        if (k >= 4)
            w = word<std::uint32_t>(p) | word<std::uint32_t>(p + k - 4) << (8 * k - 32);
        else if (k >= 2)
            w = word<std::uint16_t>(p) | word<std::uint16_t>(p + k - 2) << (8 * k - 16);
        else if (unit == 1 && k == 1)
            w = *p;
        return _mm_cvtsi64_si128(static_cast<long long>(w));
    }
}

template <int unit>
[[gnu::always_inline]] inline void storeBytes(void* to, __m128i x, int k) {
    auto* p = static_cast<unsigned char*>(to);
    if (k & 8) {
        _mm_storel_epi64(reinterpret_cast<__m128i_u*>(p), x);
        x = _mm_unpackhi_epi64(x, x);
        p += 8;
    }
    if constexpr (unit <= 4)
        if (k & 4) {
            writeAny(reinterpret_cast<std::int32_t*>(p), _mm_cvtsi128_si32(x));
            if constexpr (unit < 4) x = _mm_srli_epi64(x, 32);
            p += 4;
        }
    if constexpr (unit <= 2) {
        auto w = static_cast<unsigned>(_mm_cvtsi128_si32(x));
        if (k & 2) {
            writeAny(reinterpret_cast<std::uint16_t*>(p), static_cast<std::uint16_t>(w));
            w >>= 16;
            p += 2;
        }
        if constexpr (unit == 1)
            if (k & 1) *p = static_cast<unsigned char>(w);
    }
}

// Bytes of narrow elements are no slower to mask than wide ones.
template <class R>
[[gnu::always_inline]] inline R maskedLoad(const void* p, std::uint64_t byteMask) {
    if constexpr (sizeof(R) == 16)
        return bitsAs<R>(_mm_maskz_loadu_epi8(static_cast<__mmask16>(byteMask), p));
    else if constexpr (sizeof(R) == 32)
        return bitsAs<R>(_mm256_maskz_loadu_epi8(static_cast<__mmask32>(byteMask), p));
    else
        return bitsAs<R>(_mm512_maskz_loadu_epi8(byteMask, p));
}
template <class R>
[[gnu::always_inline]] inline void maskedStore(void* p, std::uint64_t byteMask, R x) {
    if constexpr (sizeof(R) == 16)
        _mm_mask_storeu_epi8(p, static_cast<__mmask16>(byteMask), asInts(x));
    else if constexpr (sizeof(R) == 32)
        _mm256_mask_storeu_epi8(p, static_cast<__mmask32>(byteMask), asInts(x));
    else
        _mm512_mask_storeu_epi8(p, byteMask, asInts(x));
}

}  // namespace detail

template <AnyVec V>
[[gnu::always_inline]] inline V loadFirst(const typename V::Scalar* p, int n) {
    using T = typename V::Scalar;
    using R = typename V::R;
    if constexpr (kHasAvx512) {
        return {detail::maskedLoad<R>(p, lowBits(n * int{sizeof(T)}))};
    } else if constexpr (V::bytes == 16) {
        if (n >= V::lanes) return V::load(p);
        return {bitsAs<R>(detail::loadBytes<sizeof(T)>(p, n * int{sizeof(T)}))};
    } else if constexpr (sizeof(T) == 4) {
        const auto m = asInts(V::M::first(n).m);
        return {bitsAs<R>(_mm256_maskload_ps(reinterpret_cast<const float*>(p), m))};
    } else if constexpr (sizeof(T) == 8) {
        const auto m = asInts(V::M::first(n).m);
        return {bitsAs<R>(_mm256_maskload_pd(reinterpret_cast<const double*>(p), m))};
    } else {
        using H = Vec<T, V::lanes / 2>;
        if (n < H::lanes) return join(loadFirst<H>(p, n), H::zero());
        return join(H::load(p), loadFirst<H>(p + H::lanes, n - H::lanes));
    }
}

template <AnyVec V>
[[gnu::always_inline]] inline void storeFirst(V x, typename V::Scalar* p, int n) {
    using T = typename V::Scalar;
    if constexpr (kHasAvx512) {
        detail::maskedStore(p, lowBits(n * int{sizeof(T)}), x.v);
    } else if constexpr (V::bytes == 16) {
        if (n >= V::lanes) return x.store(p);
        detail::storeBytes<sizeof(T)>(p, asInts(x.v), n * int{sizeof(T)});
    } else {
        // Masked stores are slow on several processors; two or three narrow ones are not.
        using H = Vec<T, V::lanes / 2>;
        if (n < H::lanes) return storeFirst(low(x), p, n);
        low(x).store(p);
        storeFirst(high(x), p + H::lanes, n - H::lanes);
    }
}

template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N> Vec<T, N>::loadPartial(const T* p, int n) {
    return loadFirst<Vec>(p, n);
}
template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N> Vec<T, N>::loadPartial(const T* p, int n, T fill) {
    return select(M::first(n), loadPartial(p, n), broadcast(fill));
}
template <Lane T, int N>
[[gnu::always_inline]] inline void Vec<T, N>::storePartial(T* p, int n) const {
    storeFirst(*this, p, n);
}

}  // namespace zep::ZEP_VARIANT::simd
