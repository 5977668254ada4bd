// Complex vectors with real and imaginary parts apart, and the shuffles between that form and
// interleaved memory.
//
// Two interleaved vectors hold `lanes` complex elements; one shuffle each splits them, and leaves
// the elements in slot order: slot s holds element slotElement<V>(s). Joining restores memory order
// at the same price. Work that treats all elements alike never sees the slot order; tables that go
// with it are stored in slot order too.
//
// A vector is seen as 16-byte blocks of kBlock lanes. Shuffles inside the blocks are cheap in every
// column; those across blocks are kept few.
#pragma once

#include <cstddef>

#include "simd/shuffle.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT::simd {

template <class V>
struct SplitComplex {
    using Scalar = typename V::Scalar;
    using Part = V;
    static constexpr int lanes = V::lanes;
    V re, im;

    // A complex factor of all lanes.
    static SplitComplex turn(Scalar re, Scalar im) { return {V::broadcast(re), V::broadcast(im)}; }
    // lanes real parts followed by lanes imaginary parts.
    static SplitComplex load(const Scalar* p) { return {V::load(p), V::load(p + lanes)}; }
    void store(Scalar* p) const {
        re.store(p);
        im.store(p + lanes);
    }

    friend SplitComplex operator+(SplitComplex a, SplitComplex b) {
        return {a.re + b.re, a.im + b.im};
    }
    friend SplitComplex operator-(SplitComplex a, SplitComplex b) {
        return {a.re - b.re, a.im - b.im};
    }
    friend SplitComplex operator*(SplitComplex a, V s) { return {a.re * s, a.im * s}; }
    friend void keepInRegister(SplitComplex& a) {
        simd::keepInRegister(a.re);
        simd::keepInRegister(a.im);
    }
};

// Elements of a 16-byte block, and blocks of a vector.
template <class V>
inline constexpr int kBlock = 16 / int{sizeof(typename V::Scalar)};
template <class V>
inline constexpr int kBlocks = V::lanes / kBlock<V>;

// Up to 32 bytes shuffles stay inside the blocks: 0 1 4 5 2 3 6 7 for eight lanes. The widest
// vectors have shuffles of two registers that reach every lane at the same price.
template <class V>
constexpr int slotElement(int slot) {
    if (sizeof(V) > 32) return slot;
    constexpr int half = kBlock<V> / 2;
    const int block = slot / kBlock<V>, i = slot % kBlock<V>;
    return block * half + i % half + i / half * (V::lanes / 2);
}
template <class V>
constexpr int elementSlot(int element) {
    int slot = 0;
    while (slotElement<V>(slot) != element) ++slot;
    return slot;
}

// Two vectors of pairs, apart.
template <class V>
[[gnu::always_inline]] inline SplitComplex<V> splitPairs(V a, V b) {
    return {shuffle(a, b, [](int s) { return 2 * slotElement<V>(s); }),
            shuffle(a, b, [](int s) { return 2 * slotElement<V>(s) + 1; })};
}

// Interleaved memory of V::lanes complex elements, any address.
template <class V>
[[gnu::always_inline]] inline SplitComplex<V> loadInterleaved(const typename V::Scalar* p) {
    return splitPairs(V::load(p), V::load(p + V::lanes));
}
// n of them, 0 < n <= V::lanes; the others are 0.
template <class V>
[[gnu::always_inline]] inline SplitComplex<V> loadInterleavedPartial(const typename V::Scalar* p,
                                                                     int n) {
    constexpr int W = V::lanes;
    if (2 * n <= W) return splitPairs(V::loadPartial(p, 2 * n), V::zero());
    return splitPairs(V::load(p), V::loadPartial(p + W, 2 * n - W));
}
template <class V>
[[gnu::always_inline]] inline void storeInterleaved(SplitComplex<V> x, typename V::Scalar* p) {
    constexpr int W = V::lanes;
    shuffle(x.re, x.im, [](int m) { return elementSlot<V>(m / 2) + m % 2 * W; }).store(p);
    shuffle(x.re, x.im, [](int m) { return elementSlot<V>((m + W) / 2) + m % 2 * W; }).store(p + W);
}

// The last element of memory comes first.
template <class V>
[[gnu::always_inline]] inline SplitComplex<V> loadReversed(const typename V::Scalar* p) {
    constexpr int W = V::lanes;
    const V a = V::load(p), b = V::load(p + W);
    return {
        shuffle(b, a, [](int s) { return (2 * (W - 1 - slotElement<V>(s)) + W) % (2 * W); }),
        shuffle(b, a, [](int s) { return (2 * (W - 1 - slotElement<V>(s)) + 1 + W) % (2 * W); })};
}
template <class V>
[[gnu::always_inline]] inline void storeReversed(SplitComplex<V> x, typename V::Scalar* p) {
    constexpr int W = V::lanes;
    shuffle(x.re, x.im, [](int m) { return elementSlot<V>(W - 1 - m / 2) + m % 2 * W; }).store(p);
    shuffle(x.re, x.im, [](int m) {
        return elementSlot<V>(W - 1 - (m + W) / 2) + m % 2 * W;
    }).store(p + W);
}

#if defined(__AVX__)
// Reversed elements in slot order are the plain slots in reverse: whole blocks are swapped by the
// loads and stores.
template <>
[[gnu::always_inline]] inline SplitComplex<Vec<float, 8>> loadReversed<Vec<float, 8>>(
    const float* p) {
    const auto blocks = [](const float* low, const float* high) {
        return _mm256_insertf128_ps(_mm256_castps128_ps256(_mm_loadu_ps(low)), _mm_loadu_ps(high),
                                    1);
    };
    const __m256 a = blocks(p + 12, p + 8), b = blocks(p + 4, p);
    return {{_mm256_shuffle_ps(a, b, 0x22)}, {_mm256_shuffle_ps(a, b, 0x77)}};
}
template <>
[[gnu::always_inline]] inline void storeReversed<Vec<float, 8>>(SplitComplex<Vec<float, 8>> x,
                                                                float* p) {
    const auto storeBlocks = [](__m256 y, float* low, float* high) {
        _mm_storeu_ps(low, _mm256_castps256_ps128(y));
        _mm_storeu_ps(high, _mm256_extractf128_ps(y, 1));
    };
    const __m256d a = _mm256_castps_pd(_mm256_unpacklo_ps(x.re.v, x.im.v));
    const __m256d b = _mm256_castps_pd(_mm256_unpackhi_ps(x.re.v, x.im.v));
    storeBlocks(_mm256_castpd_ps(_mm256_permute_pd(a, 5)), p + 12, p + 8);
    storeBlocks(_mm256_castpd_ps(_mm256_permute_pd(b, 5)), p + 4, p);
}
#endif

// kBlock rows: the lanes of each block change places with the rows.
template <class V, int N>
[[gnu::always_inline]] inline void transposeLanes(V (&r)[N]) {
    static_assert(N == kBlock<V> && (N == 2 || N == 4));
    if constexpr (N == 2) {
        const V a = r[0];
        r[0] = zipLow(a, r[1]);
        r[1] = zipHigh(a, r[1]);
    } else {
        const V a = zipLow(r[0], r[1]), b = zipHigh(r[0], r[1]);
        const V c = zipLow(r[2], r[3]), d = zipHigh(r[2], r[3]);
        constexpr auto low = [](int s) { return s / 4 * 4 + s % 2 + (s % 4 / 2) * V::lanes; };
        constexpr auto high = [](int s) { return s / 4 * 4 + s % 2 + 2 + (s % 4 / 2) * V::lanes; };
        r[0] = shuffle(a, c, low);
        r[1] = shuffle(a, c, high);
        r[2] = shuffle(b, d, low);
        r[3] = shuffle(b, d, high);
    }
}

// Blocks i and j of a, then the same of b.
template <int i, int j, class V>
[[gnu::always_inline]] inline V pickBlocks(V a, V b) {
    return shuffle(a, b, [](int s) {
        constexpr int half = V::lanes / 2;
        const int block = s % half / kBlock<V> == 0 ? i : j;
        return s / half * V::lanes + block * kBlock<V> + s % kBlock<V>;
    });
}

// kBlocks rows: the blocks change places with the rows.
template <class V, int N>
[[gnu::always_inline]] inline void transposeBlocks(V (&r)[N]) {
    static_assert(N == kBlocks<V> && (N == 1 || N == 2 || N == 4));
    if constexpr (N == 2) {
        const V a = r[0], b = r[1];
        constexpr int half = V::lanes / 2;
        r[0] = shuffle(a, b, [](int s) { return s % half + s / half * V::lanes; });
        r[1] = shuffle(a, b, [](int s) { return s % half + half + s / half * V::lanes; });
    } else if constexpr (N == 4) {
        const V a = pickBlocks<0, 1>(r[0], r[1]), b = pickBlocks<0, 1>(r[2], r[3]);
        const V c = pickBlocks<2, 3>(r[0], r[1]), d = pickBlocks<2, 3>(r[2], r[3]);
        r[0] = pickBlocks<0, 2>(a, b);
        r[1] = pickBlocks<1, 3>(a, b);
        r[2] = pickBlocks<0, 2>(c, d);
        r[3] = pickBlocks<1, 3>(c, d);
    }
}

// As many rows as lanes become columns.
template <class V, int N>
[[gnu::always_inline]] inline void transpose(V (&r)[N]) {
    static_assert(N == V::lanes);
    constexpr int B = kBlocks<V>, P = kBlock<V>;
#pragma GCC unroll 16
    for (int b = 0; b < B; ++b) {
        V row[P];
#pragma GCC unroll 16
        for (int i = 0; i < P; ++i) row[i] = r[b * P + i];
        transposeLanes(row);
#pragma GCC unroll 16
        for (int i = 0; i < P; ++i) r[b * P + i] = row[i];
    }
#pragma GCC unroll 16
    for (int i = 0; i < P; ++i) {
        V row[B];
#pragma GCC unroll 16
        for (int b = 0; b < B; ++b) row[b] = r[b * P + i];
        transposeBlocks(row);
#pragma GCC unroll 16
        for (int b = 0; b < B; ++b) r[b * P + i] = row[b];
    }
}

// A transposition in two steps lets half of the rows go through the first one before the others are
// known. pairColumns takes the rows of the even slots, or those of the odd ones; zipLow and
// zipHigh of the two r[i] are the columns of slots pairedSlot(i) and pairedSlot(i) + 1.
template <class V>
constexpr int pairedSlot(int i) {
    return i % kBlocks<V> * kBlock<V> + 2 * (i / kBlocks<V>);
}
template <class V, int N>
[[gnu::always_inline]] inline void pairColumns(V (&r)[N]) {
    static_assert(2 * N == V::lanes);
    constexpr int B = kBlocks<V>, halves = kBlock<V> / 2;
    V row[halves][B];
#pragma GCC unroll 16
    for (int b = 0; b < B; ++b)
        if constexpr (halves == 1) {
            row[0][b] = r[b];
        } else {
            row[0][b] = zipLow(r[2 * b], r[2 * b + 1]);
            row[1][b] = zipHigh(r[2 * b], r[2 * b + 1]);
        }
#pragma GCC unroll 16
    for (int h = 0; h < halves; ++h) {
        transposeBlocks(row[h]);
#pragma GCC unroll 16
        for (int b = 0; b < B; ++b) r[h * B + b] = row[h][b];
    }
}

// Four blocks of four lanes as a matrix: column d of the blocks, four complex elements, goes to
// p + d * stride.
template <class V>
[[gnu::always_inline]] inline void storeBlockColumns(SplitComplex<V> x, typename V::Scalar* p,
                                                     std::ptrdiff_t stride) {
    static_assert(kBlock<V> == 4 && kBlocks<V> == 4);
    const V low = shuffle(x.re, x.im, [](int m) { return m / 2 % 4 * 4 + m / 8 + m % 2 * 16; });
    const V high =
        shuffle(x.re, x.im, [](int m) { return m / 2 % 4 * 4 + m / 8 + 2 + m % 2 * 16; });
    if (stride == 8) {
        low.store(p);
        high.store(p + 16);
        return;
    }
    simd::low(low).store(p);
    simd::high(low).store(p + stride);
    simd::low(high).store(p + 2 * stride);
    simd::high(high).store(p + 3 * stride);
}

}  // namespace zep::ZEP_VARIANT::simd
