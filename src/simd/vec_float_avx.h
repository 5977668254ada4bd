// 32-byte vectors of floating lanes.
#pragma once

#include <immintrin.h>

#include "simd/vec_float.h"

namespace zep::ZEP_VARIANT::simd {

template <>
struct Vec<float, 8> {
    static constexpr int lanes = 8;
    using Scalar = float;
    __m256 v;

    static Vec load(const float* p) { return {_mm256_loadu_ps(p)}; }
    static Vec loadAligned(const float* p) { return {_mm256_load_ps(p)}; }
    static Vec broadcast(float x) { return {_mm256_set1_ps(x)}; }
    static Vec zero() { return {_mm256_setzero_ps()}; }
    void store(float* p) const { _mm256_storeu_ps(p, v); }
    void storeAligned(float* p) const { _mm256_store_ps(p, v); }
    void storeStream(float* p) const { _mm256_stream_ps(p, v); }

    friend Vec operator+(Vec a, Vec b) { return {_mm256_add_ps(a.v, b.v)}; }
    friend Vec operator-(Vec a, Vec b) { return {_mm256_sub_ps(a.v, b.v)}; }
    friend Vec operator*(Vec a, Vec b) { return {_mm256_mul_ps(a.v, b.v)}; }
    friend Vec operator/(Vec a, Vec b) { return {_mm256_div_ps(a.v, b.v)}; }
    friend Vec operator&(Vec a, Vec b) { return {_mm256_and_ps(a.v, b.v)}; }
    friend Vec operator|(Vec a, Vec b) { return {_mm256_or_ps(a.v, b.v)}; }
    friend Vec operator^(Vec a, Vec b) { return {_mm256_xor_ps(a.v, b.v)}; }
};

template <>
struct Vec<double, 4> {
    static constexpr int lanes = 4;
    using Scalar = double;
    __m256d v;

    static Vec load(const double* p) { return {_mm256_loadu_pd(p)}; }
    static Vec loadAligned(const double* p) { return {_mm256_load_pd(p)}; }
    static Vec broadcast(double x) { return {_mm256_set1_pd(x)}; }
    static Vec zero() { return {_mm256_setzero_pd()}; }
    void store(double* p) const { _mm256_storeu_pd(p, v); }
    void storeAligned(double* p) const { _mm256_store_pd(p, v); }
    void storeStream(double* p) const { _mm256_stream_pd(p, v); }

    friend Vec operator+(Vec a, Vec b) { return {_mm256_add_pd(a.v, b.v)}; }
    friend Vec operator-(Vec a, Vec b) { return {_mm256_sub_pd(a.v, b.v)}; }
    friend Vec operator*(Vec a, Vec b) { return {_mm256_mul_pd(a.v, b.v)}; }
    friend Vec operator/(Vec a, Vec b) { return {_mm256_div_pd(a.v, b.v)}; }
    friend Vec operator&(Vec a, Vec b) { return {_mm256_and_pd(a.v, b.v)}; }
    friend Vec operator|(Vec a, Vec b) { return {_mm256_or_pd(a.v, b.v)}; }
    friend Vec operator^(Vec a, Vec b) { return {_mm256_xor_pd(a.v, b.v)}; }
};

}  // namespace zep::ZEP_VARIANT::simd
