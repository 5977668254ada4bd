// A vector of one lane, so that short straight-line kernels share the code of the wide ones.
#pragma once

#include "simd/vec.h"

namespace zep::ZEP_VARIANT::simd {

template <>
struct Vec<float, 1> {
    static constexpr int lanes = 1;
    using Scalar = float;
    float v;

    static Vec load(const float* p) { return {*p}; }
    static Vec broadcast(float x) { return {x}; }
    void store(float* p) const { *p = v; }

    friend Vec operator+(Vec a, Vec b) { return {a.v + b.v}; }
    friend Vec operator-(Vec a, Vec b) { return {a.v - b.v}; }
    friend Vec operator*(Vec a, Vec b) { return {a.v * b.v}; }
};

}  // namespace zep::ZEP_VARIANT::simd
