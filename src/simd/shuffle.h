// Lanes in another order: halves, pairs, and the two halves of a deal. Constant orders go through
// the compilers' own shuffle, which finds the instruction of the level.
#pragma once

#include "simd/vec_type.h"

namespace zep::ZEP_VARIANT::simd {

namespace detail {

template <class F, Lane T, int N, int... k>
[[gnu::always_inline]] inline Vec<T, N> shuffled(Vec<T, N> a, Vec<T, N> b,
                                                 std::integer_sequence<int, k...>) {
    return {__builtin_shufflevector(a.v, b.v, F{}(k)...)};
}

}  // namespace detail

// Lane k of the result is lane order(k) of a followed by b; order is a captureless lambda.
template <class F, Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N> shuffle(Vec<T, N> a, Vec<T, N> b, F) {
    return detail::shuffled<F>(a, b, std::make_integer_sequence<int, N>{});
}

// Lane k and those behind it of a followed by b. The compiler's own choice is an instruction that
// overwrites its table.
template <int k, Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N> lanesFrom(Vec<T, N> a, Vec<T, N> b) {
    if constexpr (kHasAvx512 && sizeof(a) == 64 && sizeof(T) >= 4 && 2 * k != N) {
        if constexpr (sizeof(T) == 4)
            return {bitsAs<Register<T, N>>(_mm512_alignr_epi32(asInts(b.v), asInts(a.v), k))};
        else
            return {bitsAs<Register<T, N>>(_mm512_alignr_epi64(asInts(b.v), asInts(a.v), k))};
    } else {
        return shuffle(a, b, [](int i) { return k + i; });
    }
}

// The lower and the upper half, and both put together.
template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N / 2> low(Vec<T, N> a) {
    using R = Register<T, N / 2>;
    if constexpr (sizeof(a) == 32)
        return {bitsAs<R>(_mm256_castpd256_pd128(bitsAs<__m256d>(a.v)))};
    else
        return {bitsAs<R>(_mm512_castpd512_pd256(bitsAs<__m512d>(a.v)))};
}
template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N / 2> high(Vec<T, N> a) {
    using R = Register<T, N / 2>;
    if constexpr (sizeof(a) == 32)
        return {bitsAs<R>(_mm256_extractf128_pd(bitsAs<__m256d>(a.v), 1))};
    else
        return {bitsAs<R>(_mm512_extractf64x4_pd(bitsAs<__m512d>(a.v), 1))};
}
template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, 2 * N> join(Vec<T, N> lower, Vec<T, N> upper) {
    using R = Register<T, 2 * N>;
    if constexpr (sizeof(lower) == 16)
        return {bitsAs<R>(_mm256_insertf128_pd(_mm256_castpd128_pd256(bitsAs<__m128d>(lower.v)),
                                               bitsAs<__m128d>(upper.v), 1))};
    else
        return {bitsAs<R>(_mm512_insertf64x4(_mm512_castpd256_pd512(bitsAs<__m256d>(lower.v)),
                                             bitsAs<__m256d>(upper.v), 1))};
}

// The first lane.
template <Lane T, int N>
[[gnu::always_inline]] inline T first(Vec<T, N> a) {
    return static_cast<T>(a.v[0]);
}

// All lanes in reverse.
template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N> reverse(Vec<T, N> a) {
    return shuffle(a, a, [](int k) { return N - 1 - k; });
}

// Interleaved pairs (e, o): (e, e), (o, o), (o, e).
template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N> dupEven(Vec<T, N> a) {
    return shuffle(a, a, [](int k) { return k & ~1; });
}
template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N> dupOdd(Vec<T, N> a) {
    return shuffle(a, a, [](int k) { return k | 1; });
}
template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N> swapPairs(Vec<T, N> a) {
    return shuffle(a, a, [](int k) { return k ^ 1; });
}

namespace detail {

// Lanes in 16 bytes.
template <class T>
inline constexpr int kQuad = 16 / int{sizeof(T)};

}  // namespace detail

// The even and the odd elements of a followed by b, within each 16 bytes, and their inverse: in
// every 16 bytes the lower half of the result is from a, the upper from b.
template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N> evens(Vec<T, N> a, Vec<T, N> b) {
    return shuffle(a, b, [](int k) {
        constexpr int Q = detail::kQuad<T>;
        const int i = k % Q, base = k - i;
        return i < Q / 2 ? base + 2 * i : N + base + 2 * i - Q;
    });
}
template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N> odds(Vec<T, N> a, Vec<T, N> b) {
    return shuffle(a, b, [](int k) {
        constexpr int Q = detail::kQuad<T>;
        const int i = k % Q, base = k - i;
        return i < Q / 2 ? base + 2 * i + 1 : N + base + 2 * i + 1 - Q;
    });
}
template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N> zipLow(Vec<T, N> even, Vec<T, N> odd) {
    return shuffle(even, odd, [](int k) {
        constexpr int Q = detail::kQuad<T>;
        const int i = k % Q, base = k - i;
        return base + i / 2 + (i % 2 == 0 ? 0 : N);
    });
}
template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N> zipHigh(Vec<T, N> even, Vec<T, N> odd) {
    return shuffle(even, odd, [](int k) {
        constexpr int Q = detail::kQuad<T>;
        const int i = k % Q, base = k - i;
        return base + Q / 2 + i / 2 + (i % 2 == 0 ? 0 : N);
    });
}

// Lanes of a and b in turn, in the order of memory: the first and the second half of them.
template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N> interleaveFront(Vec<T, N> a, Vec<T, N> b) {
    return shuffle(a, b, [](int k) { return k / 2 + (k % 2 == 0 ? 0 : N); });
}
template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N> interleaveBack(Vec<T, N> a, Vec<T, N> b) {
    return shuffle(a, b, [](int k) { return N / 2 + k / 2 + (k % 2 == 0 ? 0 : N); });
}
// Their inverse: the even and the odd lanes of a followed by b, in the order of memory.
template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N> allEvens(Vec<T, N> a, Vec<T, N> b) {
    return shuffle(a, b, [](int k) { return 2 * k; });
}
template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N> allOdds(Vec<T, N> a, Vec<T, N> b) {
    return shuffle(a, b, [](int k) { return 2 * k + 1; });
}

}  // namespace zep::ZEP_VARIANT::simd
