// 16-byte vectors of floating lanes.
#pragma once

#include <emmintrin.h>

namespace zep::ZEP_VARIANT::simd {

template <class T, int N>
struct Vec;

template <>
struct Vec<float, 4> {
    static constexpr int lanes = 4;
    using Scalar = float;
    __m128 v;

    static Vec load(const float* p) { return {_mm_loadu_ps(p)}; }
    static Vec loadAligned(const float* p) { return {_mm_load_ps(p)}; }
    static Vec broadcast(float x) { return {_mm_set1_ps(x)}; }
    static Vec zero() { return {_mm_setzero_ps()}; }
    void store(float* p) const { _mm_storeu_ps(p, v); }
    void storeAligned(float* p) const { _mm_store_ps(p, v); }
    void storeStream(float* p) const { _mm_stream_ps(p, v); }

    friend Vec operator+(Vec a, Vec b) { return {_mm_add_ps(a.v, b.v)}; }
    friend Vec operator-(Vec a, Vec b) { return {_mm_sub_ps(a.v, b.v)}; }
    friend Vec operator*(Vec a, Vec b) { return {_mm_mul_ps(a.v, b.v)}; }
    friend Vec operator/(Vec a, Vec b) { return {_mm_div_ps(a.v, b.v)}; }
    friend Vec operator&(Vec a, Vec b) { return {_mm_and_ps(a.v, b.v)}; }
    friend Vec operator|(Vec a, Vec b) { return {_mm_or_ps(a.v, b.v)}; }
    friend Vec operator^(Vec a, Vec b) { return {_mm_xor_ps(a.v, b.v)}; }
};

template <>
struct Vec<double, 2> {
    static constexpr int lanes = 2;
    using Scalar = double;
    __m128d v;

    static Vec load(const double* p) { return {_mm_loadu_pd(p)}; }
    static Vec loadAligned(const double* p) { return {_mm_load_pd(p)}; }
    static Vec broadcast(double x) { return {_mm_set1_pd(x)}; }
    static Vec zero() { return {_mm_setzero_pd()}; }
    void store(double* p) const { _mm_storeu_pd(p, v); }
    void storeAligned(double* p) const { _mm_store_pd(p, v); }
    void storeStream(double* p) const { _mm_stream_pd(p, v); }

    friend Vec operator+(Vec a, Vec b) { return {_mm_add_pd(a.v, b.v)}; }
    friend Vec operator-(Vec a, Vec b) { return {_mm_sub_pd(a.v, b.v)}; }
    friend Vec operator*(Vec a, Vec b) { return {_mm_mul_pd(a.v, b.v)}; }
    friend Vec operator/(Vec a, Vec b) { return {_mm_div_pd(a.v, b.v)}; }
    friend Vec operator&(Vec a, Vec b) { return {_mm_and_pd(a.v, b.v)}; }
    friend Vec operator|(Vec a, Vec b) { return {_mm_or_pd(a.v, b.v)}; }
    friend Vec operator^(Vec a, Vec b) { return {_mm_xor_pd(a.v, b.v)}; }
};

}  // namespace zep::ZEP_VARIANT::simd
