// Complex vectors with real and imaginary parts apart, and the shuffles between that form and
// interleaved memory.
//
// Two interleaved vectors hold `lanes` complex elements; one shuffle each splits them, and leaves
// the elements in slot order: slot s holds element slotElement<V>(s). Joining restores memory order
// at the same price. Work that treats all elements alike never sees the slot order; tables that go
// with it are stored in slot order too.
#pragma once

#include <immintrin.h>

#include "simd/vec.h"

namespace zep::ZEP_VARIANT::simd {

template <class V>
struct SplitComplex {
    static constexpr int lanes = V::lanes;
    V re, im;

    // lanes real parts followed by lanes imaginary parts.
    static SplitComplex load(const float* p) { return {V::load(p), V::load(p + lanes)}; }
    void store(float* p) const {
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

// The shuffles of one width.
//
// transpose turns `lanes` rows into columns, both in slot order. The same in two steps lets half of
// the rows go through the first one before the others are known: pairColumns takes the rows of the
// even slots, or those of the odd ones, and leaves their elements 2*i and 2*i + 1 in r[i]; zipLow
// and zipHigh of the two r[i] are columns 2*i and 2*i + 1.
template <class V>
struct ComplexShuffle;

template <>
struct ComplexShuffle<Vec<float, 4>> {
    using V = Vec<float, 4>;
    using C = SplitComplex<V>;

    static constexpr int slotElement(int slot) { return slot; }

    static C loadInterleaved(const float* p) {
        const __m128 a = _mm_loadu_ps(p), b = _mm_loadu_ps(p + 4);
        return {V{_mm_shuffle_ps(a, b, 0x88)}, V{_mm_shuffle_ps(a, b, 0xDD)}};
    }
    static void storeInterleaved(C x, float* p) {
        _mm_storeu_ps(p, _mm_unpacklo_ps(x.re.v, x.im.v));
        _mm_storeu_ps(p + 4, _mm_unpackhi_ps(x.re.v, x.im.v));
    }
    // Element 3 of memory comes first.
    static C loadReversed(const float* p) {
        const __m128 a = _mm_loadu_ps(p + 4), b = _mm_loadu_ps(p);
        return {V{_mm_shuffle_ps(a, b, 0x22)}, V{_mm_shuffle_ps(a, b, 0x77)}};
    }
    static void storeReversed(C x, float* p) {
        const __m128 a = _mm_unpacklo_ps(x.re.v, x.im.v), b = _mm_unpackhi_ps(x.re.v, x.im.v);
        _mm_storeu_ps(p + 4, _mm_shuffle_ps(a, a, 0x4E));
        _mm_storeu_ps(p, _mm_shuffle_ps(b, b, 0x4E));
    }
    static void transpose(V (&r)[4]) { _MM_TRANSPOSE4_PS(r[0].v, r[1].v, r[2].v, r[3].v); }
    static void pairColumns(V (&r)[2]) {
        const V a = r[0], b = r[1];
        r[0] = zipLow(a, b);
        r[1] = zipHigh(a, b);
    }
};

#if defined(__AVX__)
template <>
struct ComplexShuffle<Vec<float, 8>> {
    using V = Vec<float, 8>;
    using C = SplitComplex<V>;

    // 0 1 4 5 2 3 6 7: shuffles stay inside the 16-byte halves.
    static constexpr int slotElement(int slot) {
        return (slot & 1) | (slot & 2) << 1 | (slot & 4) >> 1;
    }

    static C loadInterleaved(const float* p) {
        const __m256 a = _mm256_loadu_ps(p), b = _mm256_loadu_ps(p + 8);
        return {V{_mm256_shuffle_ps(a, b, 0x88)}, V{_mm256_shuffle_ps(a, b, 0xDD)}};
    }
    static void storeInterleaved(C x, float* p) {
        _mm256_storeu_ps(p, _mm256_unpacklo_ps(x.re.v, x.im.v));
        _mm256_storeu_ps(p + 8, _mm256_unpackhi_ps(x.re.v, x.im.v));
    }
    // Reversed elements in slot order are the plain slots in reverse.
    static C loadReversed(const float* p) {
        const __m256 a = halves(p + 12, p + 8), b = halves(p + 4, p);
        return {V{_mm256_shuffle_ps(a, b, 0x22)}, V{_mm256_shuffle_ps(a, b, 0x77)}};
    }
    static void storeReversed(C x, float* p) {
        const __m256d a = _mm256_castps_pd(_mm256_unpacklo_ps(x.re.v, x.im.v));
        const __m256d b = _mm256_castps_pd(_mm256_unpackhi_ps(x.re.v, x.im.v));
        storeHalves(_mm256_castpd_ps(_mm256_permute_pd(a, 5)), p + 12, p + 8);
        storeHalves(_mm256_castpd_ps(_mm256_permute_pd(b, 5)), p + 4, p);
    }
    static void transpose(V (&r)[8]) {
        __m256 t[8], u[8];
#pragma GCC unroll 16
        for (int i = 0; i < 4; ++i) {
            // Rows 2i and 2i + 1, interleaved within the 16-byte halves.
            t[2 * i] = _mm256_unpacklo_ps(r[2 * i].v, r[2 * i + 1].v);
            t[2 * i + 1] = _mm256_unpackhi_ps(r[2 * i].v, r[2 * i + 1].v);
        }
#pragma GCC unroll 16
        for (int i = 0; i < 2; ++i) {
            // Quadruples of rows 4i .. 4i + 3.
            u[4 * i] = _mm256_shuffle_ps(t[4 * i], t[4 * i + 2], 0x44);
            u[4 * i + 1] = _mm256_shuffle_ps(t[4 * i], t[4 * i + 2], 0xEE);
            u[4 * i + 2] = _mm256_shuffle_ps(t[4 * i + 1], t[4 * i + 3], 0x44);
            u[4 * i + 3] = _mm256_shuffle_ps(t[4 * i + 1], t[4 * i + 3], 0xEE);
        }
#pragma GCC unroll 16
        for (int i = 0; i < 4; ++i) {
            r[i].v = _mm256_permute2f128_ps(u[i], u[i + 4], 0x20);
            r[i + 4].v = _mm256_permute2f128_ps(u[i], u[i + 4], 0x31);
        }
    }
    static void pairColumns(V (&r)[4]) {
        const V a = zipLow(r[0], r[1]), b = zipHigh(r[0], r[1]);
        const V c = zipLow(r[2], r[3]), d = zipHigh(r[2], r[3]);
        r[0].v = _mm256_permute2f128_ps(a.v, c.v, 0x20);
        r[1].v = _mm256_permute2f128_ps(a.v, c.v, 0x31);
        r[2].v = _mm256_permute2f128_ps(b.v, d.v, 0x20);
        r[3].v = _mm256_permute2f128_ps(b.v, d.v, 0x31);
    }

private:
    static __m256 halves(const float* low, const float* high) {
        return _mm256_insertf128_ps(_mm256_castps128_ps256(_mm_loadu_ps(low)), _mm_loadu_ps(high),
                                    1);
    }
    static void storeHalves(__m256 x, float* low, float* high) {
        _mm_storeu_ps(low, _mm256_castps256_ps128(x));
        _mm_storeu_ps(high, _mm256_extractf128_ps(x, 1));
    }
};
#endif

template <class V>
constexpr int slotElement(int slot) {
    return ComplexShuffle<V>::slotElement(slot);
}

}  // namespace zep::ZEP_VARIANT::simd
