// 16-byte vector of double-precision lanes.
#pragma once

#include <emmintrin.h>
#if defined(__SSE3__)
#include <pmmintrin.h>
#endif
#if defined(__SSE4_1__)
#include <smmintrin.h>
#endif

#include "simd/vec_derived.h"
#include "simd/vec_fwd.h"

namespace zep::ZEP_VARIANT::simd {

template <>
struct Mask<double, 2> {
    __m128d m;

    // The lanes before lane n, 0 <= n <= 2.
    static Mask first(int n) {
        return {_mm_castsi128_pd(_mm_cmpgt_epi32(_mm_set1_epi32(n), _mm_setr_epi32(0, 0, 1, 1)))};
    }
    friend Mask operator&(Mask a, Mask b) { return {_mm_and_pd(a.m, b.m)}; }
    friend Mask operator|(Mask a, Mask b) { return {_mm_or_pd(a.m, b.m)}; }
    friend Mask operator!(Mask a) {
        return {_mm_xor_pd(a.m, _mm_castsi128_pd(_mm_set1_epi32(-1)))};
    }
    // Bit n is lane n.
    friend unsigned bits(Mask a) { return static_cast<unsigned>(_mm_movemask_pd(a.m)); }
};

template <>
struct Vec<double, 2> {
    static constexpr int lanes = 2;
    using Scalar = double;
    using M = Mask<double, 2>;
    __m128d v;

    static Vec load(const double* p) { return {_mm_loadu_pd(p)}; }
    static Vec loadAligned(const double* p) { return {_mm_load_pd(p)}; }
    static Vec broadcast(double x) { return {_mm_set1_pd(x)}; }
    static Vec broadcastPair(double even, double odd) { return {_mm_setr_pd(even, odd)}; }
    static Vec zero() { return {_mm_setzero_pd()}; }
    void store(double* p) const { _mm_storeu_pd(p, v); }
    void storeAligned(double* p) const { _mm_store_pd(p, v); }
    void storeStream(double* p) const { _mm_stream_pd(p, v); }

    static Vec loadPair(const double* p) { return load(p); }
    void storePair(double* p) const { store(p); }

    // n elements, 0 <= n <= lanes; the lanes behind them become 0, or fill.
    static Vec loadPartial(const double* p, int n) {
        switch (n) {
            case 0:
                return zero();
            case 1:
                return {_mm_set_sd(readAny(p))};
            default:
                return load(p);
        }
    }
    static Vec loadPartial(const double* p, int n, double fill) {
        return select(M::first(n), loadPartial(p, n), broadcast(fill));
    }
    void storePartial(double* p, int n) const {
        if (n >= 2) return store(p);
        if (n == 1) writeAny(p, _mm_cvtsd_f64(v));
    }

    friend Vec operator+(Vec a, Vec b) { return {_mm_add_pd(a.v, b.v)}; }
    friend Vec operator-(Vec a, Vec b) { return {_mm_sub_pd(a.v, b.v)}; }
    friend Vec operator*(Vec a, Vec b) { return {_mm_mul_pd(a.v, b.v)}; }
    friend Vec operator/(Vec a, Vec b) { return {_mm_div_pd(a.v, b.v)}; }
    friend Vec operator&(Vec a, Vec b) { return {_mm_and_pd(a.v, b.v)}; }
    friend Vec operator|(Vec a, Vec b) { return {_mm_or_pd(a.v, b.v)}; }
    friend Vec operator^(Vec a, Vec b) { return {_mm_xor_pd(a.v, b.v)}; }
    // a with the bits of b cleared.
    friend Vec clearBits(Vec a, Vec b) { return {_mm_andnot_pd(b.v, a.v)}; }

    friend M operator==(Vec a, Vec b) { return {_mm_cmpeq_pd(a.v, b.v)}; }
    friend M operator!=(Vec a, Vec b) { return {_mm_cmpneq_pd(a.v, b.v)}; }
    friend M operator<(Vec a, Vec b) { return {_mm_cmplt_pd(a.v, b.v)}; }
    friend M operator<=(Vec a, Vec b) { return {_mm_cmple_pd(a.v, b.v)}; }
    friend M isNan(Vec a) { return {_mm_cmpunord_pd(a.v, a.v)}; }
    // NaN in a or in b.
    friend M eitherNan(Vec a, Vec b) { return {_mm_cmpunord_pd(a.v, b.v)}; }

    friend Vec keepIf(M m, Vec a) { return {_mm_and_pd(m.m, a.v)}; }
    friend Vec select(M m, Vec a, Vec b) {
#if defined(__SSE4_1__)
        return {_mm_blendv_pd(b.v, a.v, m.m)};
#else
        return {_mm_or_pd(_mm_and_pd(m.m, a.v), _mm_andnot_pd(m.m, b.v))};
#endif
    }

    friend Vec sqrt(Vec a) { return {_mm_sqrt_pd(a.v)}; }
    // The second operand where either is NaN or both are zero.
    friend Vec min(Vec a, Vec b) { return {_mm_min_pd(a.v, b.v)}; }
    friend Vec max(Vec a, Vec b) { return {_mm_max_pd(a.v, b.v)}; }

    // Interleaved pairs (e, o): (e, e), (o, o), (o, e); and a - b in even lanes, a + b in odd ones.
    friend Vec dupEven(Vec a) { return {_mm_unpacklo_pd(a.v, a.v)}; }
    friend Vec dupOdd(Vec a) { return {_mm_unpackhi_pd(a.v, a.v)}; }
    friend Vec swapPairs(Vec a) { return {_mm_shuffle_pd(a.v, a.v, 1)}; }
    friend Vec subAdd(Vec a, Vec b) {
#if defined(__SSE3__)
        return {_mm_addsub_pd(a.v, b.v)};
#else
        return a + (b ^ broadcastPair(-0.0, 0.0));
#endif
    }

    // The even and the odd elements of a followed by b, and their inverse: a = lower half, b =
    // upper half.
    friend Vec evens(Vec a, Vec b) { return {_mm_unpacklo_pd(a.v, b.v)}; }
    friend Vec odds(Vec a, Vec b) { return {_mm_unpackhi_pd(a.v, b.v)}; }
    friend Vec zipLow(Vec even, Vec odd) { return {_mm_unpacklo_pd(even.v, odd.v)}; }
    friend Vec zipHigh(Vec even, Vec odd) { return {_mm_unpackhi_pd(even.v, odd.v)}; }
};

}  // namespace zep::ZEP_VARIANT::simd
