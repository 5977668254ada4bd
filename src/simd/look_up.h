// One table entry per lane: from a table that fits into registers where the level permutes by a
// vector of indices, else from memory, entry by entry.
#pragma once

#include <cstdint>

#include "simd/vec.h"

namespace zep::ZEP_VARIANT::simd {

// mulAdd and its like round once.
inline constexpr bool kFusedMulAdd = kHasAvx2;

// Entries that lookUp takes from registers. 0: not at this level.
template <class T>
inline constexpr int kRegisterTable = sizeof(T) == 4 ? (kHasAvx2  ? 16
                                                        : kHasAvx ? 4
                                                                  : 0)
                                                     : (kHasAvx512 ? 16 : 0);

// Lane k is table[index & 15] of lane k. The table is aligned to 64 bytes.
template <int N>
requires(kRegisterTable<float> == 16)
    [[gnu::always_inline]] inline Vec<float, N> lookUp(const float (&table)[16],
                                                       Vec<std::int32_t, N> index) {
    using R = Register<float, N>;
    if constexpr (N == 16) {
        return {bitsAs<R>(_mm512_permutexvar_ps(asInts(index.v), _mm512_load_ps(table)))};
    } else {
        static_assert(N == 8);
        const auto i = asInts(index.v);
        const auto lower = _mm256_permutevar8x32_ps(_mm256_load_ps(table), i);
        const auto upper = _mm256_permutevar8x32_ps(_mm256_load_ps(table + 8), i);
        const auto choose = _mm256_castsi256_ps(_mm256_slli_epi32(i, 28));
        return {bitsAs<R>(_mm256_blendv_ps(lower, upper, choose))};
    }
}
template <int N>
requires(kRegisterTable<float> == 16)
    [[gnu::always_inline]] inline Vec<std::int32_t, N> lookUp(const std::int32_t (&table)[16],
                                                              Vec<std::int32_t, N> index) {
    using R = Register<std::int32_t, N>;
    if constexpr (N == 16) {
        return {bitsAs<R>(_mm512_permutexvar_epi32(asInts(index.v), _mm512_load_si512(table)))};
    } else {
        static_assert(N == 8);
        const auto i = asInts(index.v);
        const auto entries = [&](int from) {
            const auto* p = reinterpret_cast<const __m256i*>(table + from);
            return _mm256_castsi256_ps(_mm256_permutevar8x32_epi32(_mm256_load_si256(p), i));
        };
        const auto choose = _mm256_castsi256_ps(_mm256_slli_epi32(i, 28));
        return {bitsAs<R>(_mm256_blendv_ps(entries(0), entries(8), choose))};
    }
}
template <int N>
requires(kRegisterTable<double> == 16)
    [[gnu::always_inline]] inline Vec<double, N> lookUp(const double (&table)[16],
                                                        Vec<std::int64_t, N> index) {
    static_assert(N == 8);
    return {bitsAs<Register<double, N>>(
        _mm512_permutex2var_pd(_mm512_load_pd(table), asInts(index.v), _mm512_load_pd(table + 8)))};
}
template <int N>
requires(kRegisterTable<double> == 16)
    [[gnu::always_inline]] inline Vec<std::int64_t, N> lookUp(const std::int64_t (&table)[16],
                                                              Vec<std::int64_t, N> index) {
    static_assert(N == 8);
    return {bitsAs<Register<std::int64_t, N>>(_mm512_permutex2var_epi64(
        _mm512_load_si512(table), asInts(index.v), _mm512_load_si512(table + 8)))};
}

// The same with 4 entries and the index modulo 4.
template <int N>
requires(kRegisterTable<float> == 4)
    [[gnu::always_inline]] inline Vec<float, N> lookUp(const float (&table)[4],
                                                       Vec<std::int32_t, N> index) {
    static_assert(N == 8);
    const auto entries = _mm256_broadcast_ps(reinterpret_cast<const __m128*>(table));
    return {bitsAs<Register<float, N>>(_mm256_permutevar_ps(entries, asInts(index.v)))};
}

// Entries of several values, in memory.
struct FloatPair {
    float first, second;
};
struct DoublePair {
    double first, second;
};
struct FloatQuad {
    float first, second, third, fourth;
};

// What an entry holds, over the lanes.
template <class V>
struct LookedPair {
    V first, second;
};
template <class V>
struct LookedTriple {
    V first, second, third;
};

namespace detail {

[[gnu::always_inline]] inline __m128 twoPairs(const FloatPair& a, const FloatPair& b) {
    const auto* p = reinterpret_cast<const __m64*>(&a);
    const auto* q = reinterpret_cast<const __m64*>(&b);
    return _mm_loadh_pi(_mm_loadl_pi(_mm_setzero_ps(), p), q);
}

}  // namespace detail

// Indices are whole and within the table.
template <int N>
[[gnu::always_inline]] inline LookedPair<Vec<float, N>> entriesAt(const FloatPair* table,
                                                                  Vec<std::int32_t, N> index) {
    if constexpr (N == 4) {
        using R = Register<float, 4>;
        const auto i = index.v;
        const auto x = detail::twoPairs(table[i[0]], table[i[1]]);
        const auto y = detail::twoPairs(table[i[2]], table[i[3]]);
        return {{bitsAs<R>(_mm_shuffle_ps(x, y, _MM_SHUFFLE(2, 0, 2, 0)))},
                {bitsAs<R>(_mm_shuffle_ps(x, y, _MM_SHUFFLE(3, 1, 3, 1)))}};
    } else {
        const auto x = entriesAt(table, low(index)), y = entriesAt(table, high(index));
        return {join(x.first, y.first), join(x.second, y.second)};
    }
}
// The first, third and fourth value.
template <int N>
[[gnu::always_inline]] inline LookedTriple<Vec<float, N>> entriesAt(const FloatQuad* table,
                                                                    Vec<std::int32_t, N> index) {
    if constexpr (N == 4) {
        using R = Register<float, 4>;
        const auto i = index.v;
        const auto entry = [&](unsigned k) { return _mm_loadu_ps(&table[k].first); };
        const auto a = entry(i[0]), b = entry(i[1]), c = entry(i[2]), d = entry(i[3]);
        const auto ab = _mm_unpackhi_ps(a, b), cd = _mm_unpackhi_ps(c, d);
        const auto first = _mm_movelh_ps(_mm_unpacklo_ps(a, b), _mm_unpacklo_ps(c, d));
        return {{bitsAs<R>(first)},
                {bitsAs<R>(_mm_movelh_ps(ab, cd))},
                {bitsAs<R>(_mm_movehl_ps(cd, ab))}};
    } else {
        const auto x = entriesAt(table, low(index)), y = entriesAt(table, high(index));
        return {join(x.first, y.first), join(x.second, y.second), join(x.third, y.third)};
    }
}
template <int N>
[[gnu::always_inline]] inline LookedPair<Vec<double, N>> entriesAt(const DoublePair* table,
                                                                   Vec<std::int64_t, N> index) {
    if constexpr (N == 2) {
        using R = Register<double, 2>;
        const auto i = index.v;
        const auto a = _mm_loadu_pd(&table[i[0]].first), b = _mm_loadu_pd(&table[i[1]].first);
        return {{bitsAs<R>(_mm_unpacklo_pd(a, b))}, {bitsAs<R>(_mm_unpackhi_pd(a, b))}};
    } else {
        const auto x = entriesAt(table, low(index)), y = entriesAt(table, high(index));
        return {join(x.first, y.first), join(x.second, y.second)};
    }
}
template <int N>
[[gnu::always_inline]] inline Vec<double, N> entriesAt(const double* table,
                                                       Vec<std::int64_t, N> index) {
    if constexpr (N == 2) {
        const auto i = index.v;
        return {bitsAs<Register<double, 2>>(_mm_loadh_pd(_mm_load_sd(table + i[0]), table + i[1]))};
    } else {
        return join(entriesAt(table, low(index)), entriesAt(table, high(index)));
    }
}

// The lanes that hold no positive normal number: zero, denormal, negative, infinite, NaN.
template <int N>
[[gnu::always_inline]] inline Mask<float, N> notPositiveNormal(Vec<float, N> a) {
    if constexpr (kHasAvx512 && N == 16) {
        return {_mm512_fpclass_ps_mask(detail::in(a), 0xFF)};
    } else {
        const auto least = Vec<float, N>::broadcast(0x1p-126f);
        const auto largest = Vec<float, N>::broadcast(0x1.fffffep127f);
        return !((least <= a) & (a <= largest));
    }
}

// The lanes of n that are odd, as a mask for lanes of T.
template <Lane T, Lane I, int N>
requires(sizeof(T) == sizeof(I)) [[gnu::always_inline]] inline Mask<T, N> oddLanes(Vec<I, N> n) {
    if constexpr (kHasAvx512 && sizeof(n) == 64) {
        if constexpr (sizeof(I) == 4)
            return {_mm512_test_epi32_mask(asInts(n.v), _mm512_set1_epi32(1))};
        else
            return {_mm512_test_epi64_mask(asInts(n.v), _mm512_set1_epi64(1))};
    } else if constexpr (kHasSse41) {
        // A blend looks at the top bit alone.
        return {(n << (8 * int{sizeof(I)} - 1)).v};
    } else {
        using V = Vec<I, N>;
        return {(V::zero() - (n & V::broadcast(1))).v};
    }
}

// a * b - c for factors b of at most 12 bits where the result is a single precision number.
template <int N>
[[gnu::always_inline]] inline Vec<float, N> exactMulSub(Vec<float, N> a, Vec<float, N> b,
                                                        Vec<float, N> c) {
    if constexpr (kHasAvx2) {
        return mulSub(a, b, c);
    } else {
        // The upper 12 bits of a and the rest: both products are exact.
        const auto upper =
            a &
            lanesAs<float>(Vec<std::int32_t, N>::broadcast(static_cast<std::int32_t>(0xFFFFF000)));
        return (upper * b - c) + (a - upper) * b;
    }
}

}  // namespace zep::ZEP_VARIANT::simd
