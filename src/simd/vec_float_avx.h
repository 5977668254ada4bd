// 32-byte vector of single-precision lanes.
#pragma once

#include <immintrin.h>

#include "simd/vec_float.h"

namespace zep::ZEP_VARIANT::simd {

// Loading 8 of these at offset 8 - n sets the first n lanes.
alignas(64) inline constexpr int kFirstLanes32[16] = {-1, -1, -1, -1, -1, -1, -1, -1};

template <>
struct Mask<float, 8> {
    __m256 m;

    // The lanes before lane n, 0 <= n <= 8.
    static Mask first(int n) {
        return {_mm256_loadu_ps(reinterpret_cast<const float*>(kFirstLanes32 + 8 - n))};
    }
    friend Mask operator&(Mask a, Mask b) { return {_mm256_and_ps(a.m, b.m)}; }
    friend Mask operator|(Mask a, Mask b) { return {_mm256_or_ps(a.m, b.m)}; }
    friend Mask operator!(Mask a) {
        return {_mm256_xor_ps(a.m, _mm256_castsi256_ps(_mm256_set1_epi32(-1)))};
    }
    // Bit n is lane n.
    friend unsigned bits(Mask a) { return static_cast<unsigned>(_mm256_movemask_ps(a.m)); }
};

template <>
struct Vec<float, 8> {
    static constexpr int lanes = 8;
    using Scalar = float;
    using M = Mask<float, 8>;
    __m256 v;

    static Vec load(const float* p) { return {_mm256_loadu_ps(p)}; }
    static Vec loadAligned(const float* p) { return {_mm256_load_ps(p)}; }
    static Vec broadcast(float x) { return {_mm256_set1_ps(x)}; }
    static Vec broadcastPair(float even, float odd) {
        return {_mm256_setr_ps(even, odd, even, odd, even, odd, even, odd)};
    }
    static Vec zero() { return {_mm256_setzero_ps()}; }
    void store(float* p) const { _mm256_storeu_ps(p, v); }
    void storeAligned(float* p) const { _mm256_store_ps(p, v); }
    void storeStream(float* p) const { _mm256_stream_ps(p, v); }

    // n elements, 0 <= n <= lanes; the lanes behind them become 0, or fill.
    static Vec loadPartial(const float* p, int n) {
        return {_mm256_maskload_ps(p, _mm256_castps_si256(M::first(n).m))};
    }
    static Vec loadPartial(const float* p, int n, float fill) {
        return select(M::first(n), loadPartial(p, n), broadcast(fill));
    }
    // Masked stores are slow on several processors; two or three narrow ones are not.
    void storePartial(float* p, int n) const {
        const Vec<float, 4> low{_mm256_castps256_ps128(v)}, high{_mm256_extractf128_ps(v, 1)};
        if (n < 4) return low.storePartial(p, n);
        low.store(p);
        high.storePartial(p + 4, n - 4);
    }

    friend Vec operator+(Vec a, Vec b) { return {_mm256_add_ps(a.v, b.v)}; }
    friend Vec operator-(Vec a, Vec b) { return {_mm256_sub_ps(a.v, b.v)}; }
    friend Vec operator*(Vec a, Vec b) { return {_mm256_mul_ps(a.v, b.v)}; }
    friend Vec operator/(Vec a, Vec b) { return {_mm256_div_ps(a.v, b.v)}; }
    friend Vec operator&(Vec a, Vec b) { return {_mm256_and_ps(a.v, b.v)}; }
    friend Vec operator|(Vec a, Vec b) { return {_mm256_or_ps(a.v, b.v)}; }
    friend Vec operator^(Vec a, Vec b) { return {_mm256_xor_ps(a.v, b.v)}; }
    // a with the bits of b cleared.
    friend Vec clearBits(Vec a, Vec b) { return {_mm256_andnot_ps(b.v, a.v)}; }

    friend M operator==(Vec a, Vec b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_EQ_OQ)}; }
    friend M operator!=(Vec a, Vec b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_NEQ_UQ)}; }
    friend M operator<(Vec a, Vec b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_LT_OS)}; }
    friend M operator<=(Vec a, Vec b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_LE_OS)}; }
    friend M isNan(Vec a) { return {_mm256_cmp_ps(a.v, a.v, _CMP_UNORD_Q)}; }
    // NaN in a or in b.
    friend M eitherNan(Vec a, Vec b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_UNORD_Q)}; }

    friend Vec keepIf(M m, Vec a) { return {_mm256_and_ps(m.m, a.v)}; }
    friend Vec select(M m, Vec a, Vec b) { return {_mm256_blendv_ps(b.v, a.v, m.m)}; }

    friend Vec sqrt(Vec a) { return {_mm256_sqrt_ps(a.v)}; }
    // The second operand where either is NaN or both are zero.
    friend Vec min(Vec a, Vec b) { return {_mm256_min_ps(a.v, b.v)}; }
    friend Vec max(Vec a, Vec b) { return {_mm256_max_ps(a.v, b.v)}; }
    // Relative error at most 1.5 * 2^-12; a denormal counts as zero.
    friend Vec reciprocalEstimate(Vec a) { return {_mm256_rcp_ps(a.v)}; }
    friend Vec rsqrtEstimate(Vec a) { return {_mm256_rsqrt_ps(a.v)}; }

    // Interleaved pairs (e, o): (e, e), (o, o), (o, e); and a - b in even lanes, a + b in odd ones.
    friend Vec dupEven(Vec a) { return {_mm256_moveldup_ps(a.v)}; }
    friend Vec dupOdd(Vec a) { return {_mm256_movehdup_ps(a.v)}; }
    friend Vec swapPairs(Vec a) { return {_mm256_permute_ps(a.v, _MM_SHUFFLE(2, 3, 0, 1))}; }
    friend Vec subAdd(Vec a, Vec b) { return {_mm256_addsub_ps(a.v, b.v)}; }

    // The even and the odd elements of a followed by b, within each 16 bytes, and their inverse.
    friend Vec evens(Vec a, Vec b) {
        return {_mm256_shuffle_ps(a.v, b.v, _MM_SHUFFLE(2, 0, 2, 0))};
    }
    friend Vec odds(Vec a, Vec b) { return {_mm256_shuffle_ps(a.v, b.v, _MM_SHUFFLE(3, 1, 3, 1))}; }
    friend Vec zipLow(Vec even, Vec odd) { return {_mm256_unpacklo_ps(even.v, odd.v)}; }
    friend Vec zipHigh(Vec even, Vec odd) { return {_mm256_unpackhi_ps(even.v, odd.v)}; }
};

}  // namespace zep::ZEP_VARIANT::simd
