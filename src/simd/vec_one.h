// A vector of one lane, so that short straight-line kernels share the code of the wide ones.
#pragma once

#include "simd/vec.h"

namespace zep::ZEP_VARIANT::simd {

template <std::floating_point T>
struct Vec<T, 1> {
    static constexpr int lanes = 1;
    using Scalar = T;
    T v;

    static Vec load(const T* p) { return {readAny(p)}; }
    static Vec broadcast(T x) { return {x}; }
    void store(T* p) const { writeAny(p, v); }

    friend Vec operator+(Vec a, Vec b) { return {a.v + b.v}; }
    friend Vec operator-(Vec a, Vec b) { return {a.v - b.v}; }
    friend Vec operator*(Vec a, Vec b) { return {a.v * b.v}; }
    friend Vec mulAdd(Vec a, Vec b, Vec c) { return a * b + c; }
    friend Vec negMulAdd(Vec a, Vec b, Vec c) { return c - a * b; }
};

}  // namespace zep::ZEP_VARIANT::simd
