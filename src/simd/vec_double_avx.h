// 32-byte vector of double-precision lanes.
#pragma once

#include <immintrin.h>

#include "simd/vec_double.h"

namespace zep::ZEP_VARIANT::simd {

// Loading 4 of these at offset 4 - n sets the first n lanes.
alignas(64) inline constexpr long long kFirstLanes64[8] = {-1, -1, -1, -1};

template <>
struct Mask<double, 4> {
    __m256d m;

    // The lanes before lane n, 0 <= n <= 4.
    static Mask first(int n) {
        return {_mm256_loadu_pd(reinterpret_cast<const double*>(kFirstLanes64 + 4 - n))};
    }
    friend Mask operator&(Mask a, Mask b) { return {_mm256_and_pd(a.m, b.m)}; }
    friend Mask operator|(Mask a, Mask b) { return {_mm256_or_pd(a.m, b.m)}; }
    friend Mask operator!(Mask a) {
        return {_mm256_xor_pd(a.m, _mm256_castsi256_pd(_mm256_set1_epi32(-1)))};
    }
    // Bit n is lane n.
    friend unsigned bits(Mask a) { return static_cast<unsigned>(_mm256_movemask_pd(a.m)); }
};

template <>
struct Vec<double, 4> {
    static constexpr int lanes = 4;
    using Scalar = double;
    using M = Mask<double, 4>;
    __m256d v;

    static Vec load(const double* p) { return {_mm256_loadu_pd(p)}; }
    static Vec loadAligned(const double* p) { return {_mm256_load_pd(p)}; }
    static Vec broadcast(double x) { return {_mm256_set1_pd(x)}; }
    static Vec broadcastPair(double even, double odd) {
        return {_mm256_setr_pd(even, odd, even, odd)};
    }
    static Vec zero() { return {_mm256_setzero_pd()}; }
    void store(double* p) const { _mm256_storeu_pd(p, v); }
    void storeAligned(double* p) const { _mm256_store_pd(p, v); }
    void storeStream(double* p) const { _mm256_stream_pd(p, v); }

    // n elements, 0 <= n <= lanes; the lanes behind them become 0, or fill.
    static Vec loadPartial(const double* p, int n) {
        return {_mm256_maskload_pd(p, _mm256_castpd_si256(M::first(n).m))};
    }
    static Vec loadPartial(const double* p, int n, double fill) {
        return select(M::first(n), loadPartial(p, n), broadcast(fill));
    }
    // Masked stores are slow on several processors; two narrow ones are not.
    void storePartial(double* p, int n) const {
        const Vec<double, 2> low{_mm256_castpd256_pd128(v)}, high{_mm256_extractf128_pd(v, 1)};
        if (n < 2) return low.storePartial(p, n);
        low.store(p);
        high.storePartial(p + 2, n - 2);
    }

    friend Vec operator+(Vec a, Vec b) { return {_mm256_add_pd(a.v, b.v)}; }
    friend Vec operator-(Vec a, Vec b) { return {_mm256_sub_pd(a.v, b.v)}; }
    friend Vec operator*(Vec a, Vec b) { return {_mm256_mul_pd(a.v, b.v)}; }
    friend Vec operator/(Vec a, Vec b) { return {_mm256_div_pd(a.v, b.v)}; }
    friend Vec operator&(Vec a, Vec b) { return {_mm256_and_pd(a.v, b.v)}; }
    friend Vec operator|(Vec a, Vec b) { return {_mm256_or_pd(a.v, b.v)}; }
    friend Vec operator^(Vec a, Vec b) { return {_mm256_xor_pd(a.v, b.v)}; }
    // a with the bits of b cleared.
    friend Vec clearBits(Vec a, Vec b) { return {_mm256_andnot_pd(b.v, a.v)}; }

    friend M operator==(Vec a, Vec b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_EQ_OQ)}; }
    friend M operator!=(Vec a, Vec b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_NEQ_UQ)}; }
    friend M operator<(Vec a, Vec b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_LT_OS)}; }
    friend M operator<=(Vec a, Vec b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_LE_OS)}; }
    friend M isNan(Vec a) { return {_mm256_cmp_pd(a.v, a.v, _CMP_UNORD_Q)}; }
    // NaN in a or in b.
    friend M eitherNan(Vec a, Vec b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_UNORD_Q)}; }

    friend Vec keepIf(M m, Vec a) { return {_mm256_and_pd(m.m, a.v)}; }
    friend Vec select(M m, Vec a, Vec b) { return {_mm256_blendv_pd(b.v, a.v, m.m)}; }

    friend Vec sqrt(Vec a) { return {_mm256_sqrt_pd(a.v)}; }
    // The second operand where either is NaN or both are zero.
    friend Vec min(Vec a, Vec b) { return {_mm256_min_pd(a.v, b.v)}; }
    friend Vec max(Vec a, Vec b) { return {_mm256_max_pd(a.v, b.v)}; }

    // Interleaved pairs (e, o): (e, e), (o, o), (o, e); and a - b in even lanes, a + b in odd ones.
    friend Vec dupEven(Vec a) { return {_mm256_movedup_pd(a.v)}; }
    friend Vec dupOdd(Vec a) { return {_mm256_permute_pd(a.v, 0xF)}; }
    friend Vec swapPairs(Vec a) { return {_mm256_permute_pd(a.v, 0x5)}; }
    friend Vec subAdd(Vec a, Vec b) { return {_mm256_addsub_pd(a.v, b.v)}; }

    // The even and the odd elements of a followed by b, within each 16 bytes, and their inverse.
    friend Vec evens(Vec a, Vec b) { return {_mm256_unpacklo_pd(a.v, b.v)}; }
    friend Vec odds(Vec a, Vec b) { return {_mm256_unpackhi_pd(a.v, b.v)}; }
    friend Vec zipLow(Vec even, Vec odd) { return {_mm256_unpacklo_pd(even.v, odd.v)}; }
    friend Vec zipHigh(Vec even, Vec odd) { return {_mm256_unpackhi_pd(even.v, odd.v)}; }
};

}  // namespace zep::ZEP_VARIANT::simd
