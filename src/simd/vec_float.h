// 16-byte vector of single-precision lanes.
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
struct Mask<float, 4> {
    __m128 m;

    // The lanes before lane n, 0 <= n <= 4.
    static Mask first(int n) {
        const __m128i lane = _mm_setr_epi32(0, 1, 2, 3);
        return {_mm_castsi128_ps(_mm_cmpgt_epi32(_mm_set1_epi32(n), lane))};
    }
    friend Mask operator&(Mask a, Mask b) { return {_mm_and_ps(a.m, b.m)}; }
    friend Mask operator|(Mask a, Mask b) { return {_mm_or_ps(a.m, b.m)}; }
    friend Mask operator!(Mask a) {
        return {_mm_xor_ps(a.m, _mm_castsi128_ps(_mm_set1_epi32(-1)))};
    }
    // Bit n is lane n.
    friend unsigned bits(Mask a) { return static_cast<unsigned>(_mm_movemask_ps(a.m)); }
};

template <>
struct Vec<float, 4> {
    static constexpr int lanes = 4;
    using Scalar = float;
    using M = Mask<float, 4>;
    __m128 v;

    static Vec load(const float* p) { return {_mm_loadu_ps(p)}; }
    static Vec loadAligned(const float* p) { return {_mm_load_ps(p)}; }
    static Vec broadcast(float x) { return {_mm_set1_ps(x)}; }
    static Vec broadcastPair(float even, float odd) { return {_mm_setr_ps(even, odd, even, odd)}; }
    static Vec zero() { return {_mm_setzero_ps()}; }
    void store(float* p) const { _mm_storeu_ps(p, v); }
    void storeAligned(float* p) const { _mm_store_ps(p, v); }
    void storeStream(float* p) const { _mm_stream_ps(p, v); }

    // Two elements; the upper lanes become 0.
    static Vec loadPair(const float* p) {
        return {_mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i_u*>(p)))};
    }
    void storePair(float* p) const { _mm_storel_pi(reinterpret_cast<__m64*>(p), v); }

    // n elements, 0 <= n <= lanes; the lanes behind them become 0, or fill.
    static Vec loadPartial(const float* p, int n) {
        switch (n) {
            case 0:
                return zero();
            case 1:
                return {_mm_set_ss(readAny(p))};
            case 2:
                return loadPair(p);
            case 3:
                return {_mm_movelh_ps(loadPair(p).v, _mm_set_ss(readAny(p + 2)))};
            default:
                return load(p);
        }
    }
    static Vec loadPartial(const float* p, int n, float fill) {
        return select(M::first(n), loadPartial(p, n), broadcast(fill));
    }
    void storePartial(float* p, int n) const {
        if (n >= 4) return store(p);
        __m128 rest = v;
        if (n & 2) {
            storePair(p);
            rest = _mm_movehl_ps(v, v);
        }
        if (n & 1) writeAny(p + (n & 2), _mm_cvtss_f32(rest));
    }

    friend Vec operator+(Vec a, Vec b) { return {_mm_add_ps(a.v, b.v)}; }
    friend Vec operator-(Vec a, Vec b) { return {_mm_sub_ps(a.v, b.v)}; }
    friend Vec operator*(Vec a, Vec b) { return {_mm_mul_ps(a.v, b.v)}; }
    friend Vec operator/(Vec a, Vec b) { return {_mm_div_ps(a.v, b.v)}; }
    friend Vec operator&(Vec a, Vec b) { return {_mm_and_ps(a.v, b.v)}; }
    friend Vec operator|(Vec a, Vec b) { return {_mm_or_ps(a.v, b.v)}; }
    friend Vec operator^(Vec a, Vec b) { return {_mm_xor_ps(a.v, b.v)}; }
    // a with the bits of b cleared.
    friend Vec clearBits(Vec a, Vec b) { return {_mm_andnot_ps(b.v, a.v)}; }

    friend M operator==(Vec a, Vec b) { return {_mm_cmpeq_ps(a.v, b.v)}; }
    friend M operator!=(Vec a, Vec b) { return {_mm_cmpneq_ps(a.v, b.v)}; }
    friend M operator<(Vec a, Vec b) { return {_mm_cmplt_ps(a.v, b.v)}; }
    friend M operator<=(Vec a, Vec b) { return {_mm_cmple_ps(a.v, b.v)}; }
    friend M isNan(Vec a) { return {_mm_cmpunord_ps(a.v, a.v)}; }
    // NaN in a or in b.
    friend M eitherNan(Vec a, Vec b) { return {_mm_cmpunord_ps(a.v, b.v)}; }

    friend Vec keepIf(M m, Vec a) { return {_mm_and_ps(m.m, a.v)}; }
    friend Vec select(M m, Vec a, Vec b) {
#if defined(__SSE4_1__)
        return {_mm_blendv_ps(b.v, a.v, m.m)};
#else
        return {_mm_or_ps(_mm_and_ps(m.m, a.v), _mm_andnot_ps(m.m, b.v))};
#endif
    }

    friend Vec sqrt(Vec a) { return {_mm_sqrt_ps(a.v)}; }
    // The second operand where either is NaN or both are zero.
    friend Vec min(Vec a, Vec b) { return {_mm_min_ps(a.v, b.v)}; }
    friend Vec max(Vec a, Vec b) { return {_mm_max_ps(a.v, b.v)}; }
    // Relative error at most 1.5 * 2^-12; a denormal counts as zero.
    friend Vec reciprocalEstimate(Vec a) { return {_mm_rcp_ps(a.v)}; }
    friend Vec rsqrtEstimate(Vec a) { return {_mm_rsqrt_ps(a.v)}; }

    // Interleaved pairs (e, o): (e, e), (o, o), (o, e); and a - b in even lanes, a + b in odd ones.
    friend Vec dupEven(Vec a) { return {_mm_shuffle_ps(a.v, a.v, _MM_SHUFFLE(2, 2, 0, 0))}; }
    friend Vec dupOdd(Vec a) { return {_mm_shuffle_ps(a.v, a.v, _MM_SHUFFLE(3, 3, 1, 1))}; }
    friend Vec swapPairs(Vec a) { return {_mm_shuffle_ps(a.v, a.v, _MM_SHUFFLE(2, 3, 0, 1))}; }
    friend Vec subAdd(Vec a, Vec b) {
#if defined(__SSE3__)
        return {_mm_addsub_ps(a.v, b.v)};
#else
        return a + (b ^ broadcastPair(-0.0f, 0.0f));
#endif
    }

    // The even and the odd elements of a followed by b, and their inverse: a = lower half, b =
    // upper half.
    friend Vec evens(Vec a, Vec b) { return {_mm_shuffle_ps(a.v, b.v, _MM_SHUFFLE(2, 0, 2, 0))}; }
    friend Vec odds(Vec a, Vec b) { return {_mm_shuffle_ps(a.v, b.v, _MM_SHUFFLE(3, 1, 3, 1))}; }
    friend Vec zipLow(Vec even, Vec odd) { return {_mm_unpacklo_ps(even.v, odd.v)}; }
    friend Vec zipHigh(Vec even, Vec odd) { return {_mm_unpackhi_ps(even.v, odd.v)}; }
};

}  // namespace zep::ZEP_VARIANT::simd
