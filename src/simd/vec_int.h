// Operations of integer lanes that have an instruction of their own. Arithmetic wraps; shifts take
// one count for all lanes.
#pragma once

#include "simd/compare.h"
#include "simd/shuffle.h"

namespace zep::ZEP_VARIANT::simd {

namespace detail {

template <IntVec V>
[[gnu::always_inline]] inline V shiftLeft(V a, __m128i n) {
    using R = typename V::R;
    constexpr int kLane = sizeof(typename V::Scalar);
    const auto x = asInts(a.v);
    if constexpr (V::bytes == 16) {
        if constexpr (kLane == 2)
            return {bitsAs<R>(_mm_sll_epi16(x, n))};
        else if constexpr (kLane == 4)
            return {bitsAs<R>(_mm_sll_epi32(x, n))};
        else
            return {bitsAs<R>(_mm_sll_epi64(x, n))};
    } else if constexpr (V::bytes == 32) {
        if constexpr (kLane == 2)
            return {bitsAs<R>(_mm256_sll_epi16(x, n))};
        else if constexpr (kLane == 4)
            return {bitsAs<R>(_mm256_sll_epi32(x, n))};
        else
            return {bitsAs<R>(_mm256_sll_epi64(x, n))};
    } else {
        if constexpr (kLane == 2)
            return {bitsAs<R>(_mm512_sll_epi16(x, n))};
        else if constexpr (kLane == 4)
            return {bitsAs<R>(_mm512_sll_epi32(x, n))};
        else
            return {bitsAs<R>(_mm512_sll_epi64(x, n))};
    }
}

}  // namespace detail

// A count beyond the lane gives 0.
template <IntVec V>
requires(sizeof(typename V::Scalar) >= 2) [[gnu::always_inline]] inline V operator<<(V a,
                                                                                     int count) {
    if constexpr (sizeof(V) == 32 && !kHasAvx2) {
        return join(low(a) << count, high(a) << count);  // the companion of AVX's floats
    } else {
        return detail::shiftLeft(a, _mm_cvtsi32_si128(count));
    }
}

namespace detail {

template <IntVec V>
[[gnu::always_inline]] inline V shiftRightLogical(V a, __m128i n) {
    using R = typename V::R;
    constexpr int kLane = sizeof(typename V::Scalar);
    const auto x = asInts(a.v);
    if constexpr (V::bytes == 16) {
        if constexpr (kLane == 2)
            return {bitsAs<R>(_mm_srl_epi16(x, n))};
        else if constexpr (kLane == 4)
            return {bitsAs<R>(_mm_srl_epi32(x, n))};
        else
            return {bitsAs<R>(_mm_srl_epi64(x, n))};
    } else if constexpr (V::bytes == 32) {
        if constexpr (kLane == 2)
            return {bitsAs<R>(_mm256_srl_epi16(x, n))};
        else if constexpr (kLane == 4)
            return {bitsAs<R>(_mm256_srl_epi32(x, n))};
        else
            return {bitsAs<R>(_mm256_srl_epi64(x, n))};
    } else {
        if constexpr (kLane == 2)
            return {bitsAs<R>(_mm512_srl_epi16(x, n))};
        else if constexpr (kLane == 4)
            return {bitsAs<R>(_mm512_srl_epi32(x, n))};
        else
            return {bitsAs<R>(_mm512_srl_epi64(x, n))};
    }
}

template <IntVec V>
[[gnu::always_inline]] inline V shiftRightArithmetic(V a, int count) {
    using R = typename V::R;
    using T = typename V::Scalar;
    constexpr int kLane = sizeof(T);
    const __m128i n = _mm_cvtsi32_si128(count);
    const auto x = asInts(a.v);
    if constexpr (kLane == 8 && !kHasAvx512) {
        // The sign is turned into a carry that the subtraction spreads upwards.
        const int limited = count > 63 ? 63 : count;
        const V top = V::broadcast(static_cast<T>(std::uint64_t{1} << 63));
        const __m128i m = _mm_cvtsi32_si128(limited);
        const V sign = shiftRightLogical(top, m);
        return (shiftRightLogical(a, m) ^ sign) - sign;
    } else if constexpr (V::bytes == 16) {
        if constexpr (kLane == 2)
            return {bitsAs<R>(_mm_sra_epi16(x, n))};
        else if constexpr (kLane == 4)
            return {bitsAs<R>(_mm_sra_epi32(x, n))};
        else
            return {bitsAs<R>(_mm_sra_epi64(x, n))};
    } else if constexpr (V::bytes == 32) {
        if constexpr (kLane == 2)
            return {bitsAs<R>(_mm256_sra_epi16(x, n))};
        else if constexpr (kLane == 4)
            return {bitsAs<R>(_mm256_sra_epi32(x, n))};
        else
            return {bitsAs<R>(_mm256_sra_epi64(x, n))};
    } else {
        if constexpr (kLane == 2)
            return {bitsAs<R>(_mm512_sra_epi16(x, n))};
        else if constexpr (kLane == 4)
            return {bitsAs<R>(_mm512_sra_epi32(x, n))};
        else
            return {bitsAs<R>(_mm512_sra_epi64(x, n))};
    }
}

}  // namespace detail

// Arithmetic for signed lanes, logical for unsigned ones; a count beyond the lane counts as its
// width.
template <IntVec V>
requires(sizeof(typename V::Scalar) >= 2) [[gnu::always_inline]] inline V operator>>(V a,
                                                                                     int count) {
    if constexpr (sizeof(V) == 32 && !kHasAvx2)
        return join(low(a) >> count, high(a) >> count);
    else if constexpr (std::signed_integral<typename V::Scalar>)
        return detail::shiftRightArithmetic(a, count);
    else
        return detail::shiftRightLogical(a, _mm_cvtsi32_si128(count));
}

namespace detail {

// The compilers know this pattern as the instruction, where there is one.
template <IntVec V>
[[gnu::always_inline]] inline V lesser(V a, V b) {
    using I = typename detail::RegisterOf<typename V::Scalar, V::lanes>::type;
    const I x = bitsAs<I>(a.v), y = bitsAs<I>(b.v);
    return {bitsAs<typename V::R>(x < y ? x : y)};
}
template <IntVec V>
[[gnu::always_inline]] inline V greater(V a, V b) {
    using I = typename detail::RegisterOf<typename V::Scalar, V::lanes>::type;
    const I x = bitsAs<I>(a.v), y = bitsAs<I>(b.v);
    return {bitsAs<typename V::R>(x > y ? x : y)};
}
template <IntVec V>
inline constexpr bool kComparesWhole = sizeof(typename V::Scalar) < 8 || kHasAvx512;

}  // namespace detail

template <IntVec V>
[[gnu::always_inline]] inline V min(V a, V b) {
    if constexpr (detail::kComparesWhole<V>)
        return detail::lesser(a, b);
    else
        return select(a < b, a, b);
}
template <IntVec V>
[[gnu::always_inline]] inline V max(V a, V b) {
    if constexpr (detail::kComparesWhole<V>)
        return detail::greater(a, b);
    else
        return select(b < a, a, b);
}

// The most negative value stays as it is.
template <IntVec V>
requires std::signed_integral<typename V::Scalar>
[[gnu::always_inline]] inline V abs(V a) {
    using R = typename V::R;
    constexpr int kLane = sizeof(typename V::Scalar);
    const auto x = asInts(a.v);
    if constexpr (V::bytes == 16 && kHasSsse3 && kLane < 8) {
        if constexpr (kLane == 1)
            return {bitsAs<R>(_mm_abs_epi8(x))};
        else if constexpr (kLane == 2)
            return {bitsAs<R>(_mm_abs_epi16(x))};
        else
            return {bitsAs<R>(_mm_abs_epi32(x))};
    } else if constexpr (V::bytes == 32 && kLane < 8) {
        if constexpr (kLane == 1)
            return {bitsAs<R>(_mm256_abs_epi8(x))};
        else if constexpr (kLane == 2)
            return {bitsAs<R>(_mm256_abs_epi16(x))};
        else
            return {bitsAs<R>(_mm256_abs_epi32(x))};
    } else if constexpr (V::bytes == 64) {
        if constexpr (kLane == 1)
            return {bitsAs<R>(_mm512_abs_epi8(x))};
        else if constexpr (kLane == 2)
            return {bitsAs<R>(_mm512_abs_epi16(x))};
        else if constexpr (kLane == 4)
            return {bitsAs<R>(_mm512_abs_epi32(x))};
        else
            return {bitsAs<R>(_mm512_abs_epi64(x))};
    } else {
        return select(a < V::zero(), -a, a);
    }
}

namespace detail {

enum class Saturating { Add, Sub };

template <Saturating op, IntVec V>
[[gnu::always_inline]] inline V saturating(V a, V b) {
    using R = typename V::R;
    using T = typename V::Scalar;
    static_assert(sizeof(T) <= 2);
    constexpr bool kAdd = op == Saturating::Add;
    constexpr bool kByte = sizeof(T) == 1;
    const auto x = asInts(a.v), y = asInts(b.v);
    if constexpr (std::signed_integral<T>) {
        if constexpr (V::bytes == 16) {
            if constexpr (kByte)
                return {bitsAs<R>(kAdd ? _mm_adds_epi8(x, y) : _mm_subs_epi8(x, y))};
            else
                return {bitsAs<R>(kAdd ? _mm_adds_epi16(x, y) : _mm_subs_epi16(x, y))};
        } else if constexpr (V::bytes == 32) {
            if constexpr (kByte)
                return {bitsAs<R>(kAdd ? _mm256_adds_epi8(x, y) : _mm256_subs_epi8(x, y))};
            else
                return {bitsAs<R>(kAdd ? _mm256_adds_epi16(x, y) : _mm256_subs_epi16(x, y))};
        } else {
            if constexpr (kByte)
                return {bitsAs<R>(kAdd ? _mm512_adds_epi8(x, y) : _mm512_subs_epi8(x, y))};
            else
                return {bitsAs<R>(kAdd ? _mm512_adds_epi16(x, y) : _mm512_subs_epi16(x, y))};
        }
    } else {
        if constexpr (V::bytes == 16) {
            if constexpr (kByte)
                return {bitsAs<R>(kAdd ? _mm_adds_epu8(x, y) : _mm_subs_epu8(x, y))};
            else
                return {bitsAs<R>(kAdd ? _mm_adds_epu16(x, y) : _mm_subs_epu16(x, y))};
        } else if constexpr (V::bytes == 32) {
            if constexpr (kByte)
                return {bitsAs<R>(kAdd ? _mm256_adds_epu8(x, y) : _mm256_subs_epu8(x, y))};
            else
                return {bitsAs<R>(kAdd ? _mm256_adds_epu16(x, y) : _mm256_subs_epu16(x, y))};
        } else {
            if constexpr (kByte)
                return {bitsAs<R>(kAdd ? _mm512_adds_epu8(x, y) : _mm512_subs_epu8(x, y))};
            else
                return {bitsAs<R>(kAdd ? _mm512_adds_epu16(x, y) : _mm512_subs_epu16(x, y))};
        }
    }
}

}  // namespace detail

// Of 8- and 16-bit lanes; what leaves the range becomes its nearer end.
template <IntVec V>
[[gnu::always_inline]] inline V addSaturated(V a, V b) {
    return detail::saturating<detail::Saturating::Add>(a, b);
}
template <IntVec V>
[[gnu::always_inline]] inline V subSaturated(V a, V b) {
    return detail::saturating<detail::Saturating::Sub>(a, b);
}

// The upper halves of the 32-bit products of 16-bit lanes.
template <int N>
[[gnu::always_inline]] inline Vec<std::int16_t, N> mulHigh(Vec<std::int16_t, N> a,
                                                           Vec<std::int16_t, N> b) {
    using R = Register<std::int16_t, N>;
    const auto x = asInts(a.v), y = asInts(b.v);
    if constexpr (N == 8)
        return {bitsAs<R>(_mm_mulhi_epi16(x, y))};
    else if constexpr (N == 16)
        return {bitsAs<R>(_mm256_mulhi_epi16(x, y))};
    else
        return {bitsAs<R>(_mm512_mulhi_epi16(x, y))};
}
// Sums of two neighbouring products, in 32 bits.
template <int N>
[[gnu::always_inline]] inline Vec<std::int32_t, N / 2> mulAddPairs(Vec<std::int16_t, N> a,
                                                                   Vec<std::int16_t, N> b) {
    using R = Register<std::int32_t, N / 2>;
    const auto x = asInts(a.v), y = asInts(b.v);
    if constexpr (N == 8)
        return {bitsAs<R>(_mm_madd_epi16(x, y))};
    else if constexpr (N == 16)
        return {bitsAs<R>(_mm256_madd_epi16(x, y))};
    else
        return {bitsAs<R>(_mm512_madd_epi16(x, y))};
}

// The 64-bit products of the even 32-bit lanes.
template <int N>
[[gnu::always_inline]] inline Vec<std::uint64_t, N / 2> mulEven(Vec<std::uint32_t, N> a,
                                                                Vec<std::uint32_t, N> b) {
    using R = Register<std::uint64_t, N / 2>;
    const auto x = asInts(a.v), y = asInts(b.v);
    if constexpr (N == 4)
        return {bitsAs<R>(_mm_mul_epu32(x, y))};
    else if constexpr (N == 8)
        return {bitsAs<R>(_mm256_mul_epu32(x, y))};
    else
        return {bitsAs<R>(_mm512_mul_epu32(x, y))};
}
template <int N>
[[gnu::always_inline]] inline Vec<std::int64_t, N / 2> mulEven(Vec<std::int32_t, N> a,
                                                               Vec<std::int32_t, N> b) {
    using R = Register<std::int64_t, N / 2>;
    const auto x = asInts(a.v), y = asInts(b.v);
    if constexpr (N == 8)
        return {bitsAs<R>(_mm256_mul_epi32(x, y))};
    else if constexpr (N == 16)
        return {bitsAs<R>(_mm512_mul_epi32(x, y))};
    else if constexpr (kHasSse41)
        return {bitsAs<R>(_mm_mul_epi32(x, y))};
    else {
        // Less what a negative operand adds to the unsigned product: the other one, 2^32 up.
        const auto p = mulEven(lanesAs<std::uint32_t>(a), lanesAs<std::uint32_t>(b));
        const auto correction = ((a >> 31) & b) + ((b >> 31) & a);
        return lanesAs<std::int64_t>(p - (bitsIn<std::uint64_t>(correction) << 32));
    }
}

}  // namespace zep::ZEP_VARIANT::simd
