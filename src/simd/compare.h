// Comparisons and choices between vectors.
//
// Floating comparisons with NaN are false, but for !=.
#pragma once

#include "simd/vec_type.h"

namespace zep::ZEP_VARIANT::simd {

namespace detail {

// Predicates of floating compares under one name for all widths.
enum class Predicate { Equal, NotEqual, Less, LessEqual, Unordered };

template <Predicate p>
inline constexpr int kFloatPredicate = p == Predicate::Equal       ? _CMP_EQ_OQ
                                       : p == Predicate::NotEqual  ? _CMP_NEQ_UQ
                                       : p == Predicate::Less      ? _CMP_LT_OS
                                       : p == Predicate::LessEqual ? _CMP_LE_OS
                                                                   : _CMP_UNORD_Q;
// As the integer compares into mask registers encode them.
template <Predicate p>
inline constexpr int kIntPredicate = p == Predicate::Equal      ? 0
                                     : p == Predicate::NotEqual ? 4
                                     : p == Predicate::Less     ? 1
                                                                : 2;

// Into a mask register; a narrow vector's upper lanes are masked off.
template <Predicate p, Lane T, int N>
[[gnu::always_inline]] inline Mask<T, N> compareIntoMaskRegister(Vec<T, N> a, Vec<T, N> b) {
    using M = Mask<T, N>;
    const auto x = inZmm(a.v), y = inZmm(b.v);
    constexpr auto kAll = static_cast<std::uint64_t>(~std::uint64_t{0} >> (64 - N));
    constexpr bool kSigned = std::signed_integral<T>;
    std::uint64_t k;
    if constexpr (std::is_same_v<T, float>)
        k = _mm512_mask_cmp_ps_mask(kAll, bitsAs<__m512>(x), bitsAs<__m512>(y), kFloatPredicate<p>);
    else if constexpr (std::is_same_v<T, double>)
        k = _mm512_mask_cmp_pd_mask(kAll, bitsAs<__m512d>(x), bitsAs<__m512d>(y),
                                    kFloatPredicate<p>);
    else if constexpr (sizeof(T) == 1 && kSigned)
        k = _mm512_mask_cmp_epi8_mask(kAll, x, y, kIntPredicate<p>);
    else if constexpr (sizeof(T) == 1)
        k = _mm512_mask_cmp_epu8_mask(kAll, x, y, kIntPredicate<p>);
    else if constexpr (sizeof(T) == 2 && kSigned)
        k = _mm512_mask_cmp_epi16_mask(kAll, x, y, kIntPredicate<p>);
    else if constexpr (sizeof(T) == 2)
        k = _mm512_mask_cmp_epu16_mask(kAll, x, y, kIntPredicate<p>);
    else if constexpr (sizeof(T) == 4 && kSigned)
        k = _mm512_mask_cmp_epi32_mask(kAll, x, y, kIntPredicate<p>);
    else if constexpr (sizeof(T) == 4)
        k = _mm512_mask_cmp_epu32_mask(kAll, x, y, kIntPredicate<p>);
    else if constexpr (kSigned)
        k = _mm512_mask_cmp_epi64_mask(kAll, x, y, kIntPredicate<p>);
    else
        k = _mm512_mask_cmp_epu64_mask(kAll, x, y, kIntPredicate<p>);
    return {static_cast<typename M::R>(k)};
}

// 64-bit lanes have no compare below SSE4.2. Signed: the high halves decide, or, where they are
// equal, the sign of the difference (Hacker's Delight, 2-12).
template <class U>
[[gnu::always_inline]] inline U signedLess64(U a, U b) {
    using W = Register<std::int32_t, 4>;
    const U difference = (a & ~b) | (~(a ^ b) & (a - b));
    // The sign of each half, spread over it; then the upper one over both.
    const auto signs = bitsAs<SignedRegister<std::int32_t, 4>>(bitsAs<W>(difference)) >> 31;
    return bitsAs<U>(_mm_shuffle_epi32(asInts(signs), _MM_SHUFFLE(3, 3, 1, 1)));
}
template <class U>
[[gnu::always_inline]] inline U equal64(U a, U b) {
    const auto halves = _mm_cmpeq_epi32(asInts(a), asInts(b));
    return bitsAs<U>(_mm_and_si128(halves, _mm_shuffle_epi32(halves, _MM_SHUFFLE(2, 3, 0, 1))));
}

// Into a register.
template <Predicate p, Lane T, int N>
[[gnu::always_inline]] inline Mask<T, N> compareIntoRegister(Vec<T, N> a, Vec<T, N> b) {
    using U = UnsignedRegister<T, N>;
    if constexpr (std::is_same_v<T, float> && sizeof(U) == 32) {
        return {
            bitsAs<U>(_mm256_cmp_ps(bitsAs<__m256>(a.v), bitsAs<__m256>(b.v), kFloatPredicate<p>))};
    } else if constexpr (std::is_same_v<T, double> && sizeof(U) == 32) {
        return {bitsAs<U>(
            _mm256_cmp_pd(bitsAs<__m256d>(a.v), bitsAs<__m256d>(b.v), kFloatPredicate<p>))};
    } else if constexpr (p == Predicate::Unordered && std::is_same_v<T, float>) {
        return {bitsAs<U>(_mm_cmpunord_ps(bitsAs<__m128>(a.v), bitsAs<__m128>(b.v)))};
    } else if constexpr (p == Predicate::Unordered) {
        return {bitsAs<U>(_mm_cmpunord_pd(bitsAs<__m128d>(a.v), bitsAs<__m128d>(b.v)))};
    } else if constexpr (std::floating_point<T>) {
        if constexpr (p == Predicate::Equal) return {bitsAs<U>(a.v == b.v)};
        if constexpr (p == Predicate::NotEqual) return {bitsAs<U>(a.v != b.v)};
        if constexpr (p == Predicate::Less) return {bitsAs<U>(a.v < b.v)};
        return {bitsAs<U>(a.v <= b.v)};
    } else if constexpr (p == Predicate::NotEqual) {
        return !compareIntoRegister<Predicate::Equal>(a, b);
    } else if constexpr (p == Predicate::LessEqual) {
        return !compareIntoRegister<Predicate::Less>(b, a);
    } else if constexpr (p == Predicate::Equal) {
        if constexpr (sizeof(T) == 8 && !kHasSse41)
            return {equal64(a.v, b.v)};
        else
            return {bitsAs<U>(a.v == b.v)};
    } else {
        // Unsigned lanes are compared as signed ones with the top bit turned over.
        constexpr auto kTop = static_cast<UnsignedLane<T>>(
            std::unsigned_integral<T> ? std::uint64_t{1} << (8 * sizeof(T) - 1) : 0);
        const U x = a.v ^ Vec<UnsignedLane<T>, N>::broadcast(kTop).v;
        const U y = b.v ^ Vec<UnsignedLane<T>, N>::broadcast(kTop).v;
        using I = SignedRegister<T, N>;
        if constexpr (sizeof(T) == 8 && sizeof(U) == 16 && !kHasAvx)
            return {signedLess64(x, y)};
        else
            return {bitsAs<U>(bitsAs<I>(x) < bitsAs<I>(y))};
    }
}

template <Predicate p, Lane T, int N>
[[gnu::always_inline]] inline Mask<T, N> compare(Vec<T, N> a, Vec<T, N> b) {
    if constexpr (kHasAvx512)
        return compareIntoMaskRegister<p>(a, b);
    else
        return compareIntoRegister<p>(a, b);
}

}  // namespace detail

template <Lane T, int N>
[[gnu::always_inline]] inline Mask<T, N> operator==(Vec<T, N> a, Vec<T, N> b) {
    return detail::compare<detail::Predicate::Equal>(a, b);
}
template <Lane T, int N>
[[gnu::always_inline]] inline Mask<T, N> operator!=(Vec<T, N> a, Vec<T, N> b) {
    return detail::compare<detail::Predicate::NotEqual>(a, b);
}
template <Lane T, int N>
[[gnu::always_inline]] inline Mask<T, N> operator<(Vec<T, N> a, Vec<T, N> b) {
    return detail::compare<detail::Predicate::Less>(a, b);
}
template <Lane T, int N>
[[gnu::always_inline]] inline Mask<T, N> operator<=(Vec<T, N> a, Vec<T, N> b) {
    return detail::compare<detail::Predicate::LessEqual>(a, b);
}
template <Lane T, int N>
[[gnu::always_inline]] inline Mask<T, N> operator>(Vec<T, N> a, Vec<T, N> b) {
    return b < a;
}
template <Lane T, int N>
[[gnu::always_inline]] inline Mask<T, N> operator>=(Vec<T, N> a, Vec<T, N> b) {
    return b <= a;
}
// NaN in a or in b.
template <std::floating_point T, int N>
[[gnu::always_inline]] inline Mask<T, N> eitherNan(Vec<T, N> a, Vec<T, N> b) {
    return detail::compare<detail::Predicate::Unordered>(a, b);
}
template <std::floating_point T, int N>
[[gnu::always_inline]] inline Mask<T, N> isNan(Vec<T, N> a) {
    return eitherNan(a, a);
}

// a where m, else 0.
template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N> keepIf(Mask<T, N> m, Vec<T, N> a) {
    using R = Register<T, N>;
    if constexpr (!kHasAvx512)
        return {bitsAs<R>(m.m & bitsAs<UnsignedRegister<T, N>>(a.v))};
    else if constexpr (sizeof(T) == 1)
        return {fromZmm<R>(_mm512_maskz_mov_epi8(m.m, inZmm(a.v)))};
    else if constexpr (sizeof(T) == 2)
        return {fromZmm<R>(_mm512_maskz_mov_epi16(m.m, inZmm(a.v)))};
    else if constexpr (sizeof(T) == 4)
        return {fromZmm<R>(_mm512_maskz_mov_epi32(m.m, inZmm(a.v)))};
    else
        return {fromZmm<R>(_mm512_maskz_mov_epi64(m.m, inZmm(a.v)))};
}

// a where m, else b.
template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N> select(Mask<T, N> m, Vec<T, N> a, Vec<T, N> b) {
    using R = Register<T, N>;
    if constexpr (kHasAvx512) {
        if constexpr (sizeof(T) == 1)
            return {fromZmm<R>(_mm512_mask_blend_epi8(m.m, inZmm(b.v), inZmm(a.v)))};
        else if constexpr (sizeof(T) == 2)
            return {fromZmm<R>(_mm512_mask_blend_epi16(m.m, inZmm(b.v), inZmm(a.v)))};
        else if constexpr (sizeof(T) == 4)
            return {fromZmm<R>(_mm512_mask_blend_epi32(m.m, inZmm(b.v), inZmm(a.v)))};
        else
            return {fromZmm<R>(_mm512_mask_blend_epi64(m.m, inZmm(b.v), inZmm(a.v)))};
    } else if constexpr (sizeof(R) == 32 && !kHasAvx2) {
        // GCC takes the intrinsic for a choice by the integer sign of the mask, which AVX cannot
        // compare in 32 bytes, and goes through each lane by itself. It cannot see into this.
        R chosen;
        if constexpr (sizeof(T) == 8)
            asm("vblendvpd %3, %2, %1, %0" : "=x"(chosen) : "x"(b.v), "x"(a.v), "x"(m.m));
        else
            asm("vblendvps %3, %2, %1, %0" : "=x"(chosen) : "x"(b.v), "x"(a.v), "x"(m.m));
        return {chosen};
    } else if constexpr (sizeof(R) == 32 && sizeof(T) == 4) {
        return {bitsAs<R>(
            _mm256_blendv_ps(bitsAs<__m256>(b.v), bitsAs<__m256>(a.v), bitsAs<__m256>(m.m)))};
    } else if constexpr (sizeof(R) == 32 && sizeof(T) == 8) {
        return {bitsAs<R>(
            _mm256_blendv_pd(bitsAs<__m256d>(b.v), bitsAs<__m256d>(a.v), bitsAs<__m256d>(m.m)))};
    } else if constexpr (sizeof(R) == 32) {
        return {bitsAs<R>(_mm256_blendv_epi8(asInts(b.v), asInts(a.v), asInts(m.m)))};
    } else if constexpr (kHasSse41 && sizeof(T) == 4) {
        return {bitsAs<R>(
            _mm_blendv_ps(bitsAs<__m128>(b.v), bitsAs<__m128>(a.v), bitsAs<__m128>(m.m)))};
    } else if constexpr (kHasSse41 && sizeof(T) == 8) {
        return {bitsAs<R>(
            _mm_blendv_pd(bitsAs<__m128d>(b.v), bitsAs<__m128d>(a.v), bitsAs<__m128d>(m.m)))};
    } else if constexpr (kHasSse41) {
        return {bitsAs<R>(_mm_blendv_epi8(asInts(b.v), asInts(a.v), asInts(m.m)))};
    } else {
        using U = UnsignedRegister<T, N>;
        return {bitsAs<R>((m.m & bitsAs<U>(a.v)) | (~m.m & bitsAs<U>(b.v)))};
    }
}

}  // namespace zep::ZEP_VARIANT::simd
