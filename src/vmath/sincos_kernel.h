// Sine and cosine together: x = n pi/2 + r with |r| <= pi/4 (Cody and Waite's reduction, pi/2 in
// parts: products with a fused multiply-add are exact whatever their length, so that fewer and
// longer ones do), two polynomials in r^2, and the quadrant n turns one pair into the other.
#pragma once

#include <cstdint>

#include "simd/look_up.h"
#include "vmath/blocks.h"

namespace zep::ZEP_VARIANT::vmath {

template <simd::FloatVec W>
struct SinCos {
    W sin, cos;
};

// What the reduction serves; above it pi/2's parts are too short.
inline constexpr float kReducedTo = 10000.0f;

// Sine and cosine of the rest, by the quadrant in the low bits of n.
template <simd::FloatVec W, class I>
[[gnu::always_inline]] inline SinCos<W> turned(W sin, W cos, I n) {
    using T = typename W::Scalar;
    constexpr int kTop = 8 * int{sizeof(T)} - 1;
    const auto odd = simd::oddLanes<T>(n);
    const I sign = I::broadcast(static_cast<typename I::Scalar>(std::uint64_t{1} << kTop));
    // Bit 1 of n, and bit 1 of n + 1, as sign bits.
    const I turns = n << (kTop - 1);
    const I quarter = I::broadcast(static_cast<typename I::Scalar>(std::uint64_t{1} << (kTop - 1)));
    const W sinSign = simd::lanesAs<T>(turns & sign),
            cosSign = simd::lanesAs<T>((turns + quarter) & sign);
    return {select(odd, cos, sin) ^ sinSign, select(odd, sin, cos) ^ cosSign};
}

// pi/2 in as many parts as given, from the largest on.
template <simd::FloatVec W, std::same_as<float>... Part>
[[gnu::always_inline]] inline W reduced(W x, W f, Part... part) {
    ((x = negMulAdd(f, W::broadcast(part), x)), ...);
    return x;
}

// 11 bits: two coefficients past the leading one.
struct Short11 {
    template <simd::FloatVec W>
    [[gnu::always_inline]] static SinCos<W> of(W x) {
        const auto at = [](float c) { return W::broadcast(c); };
        const W t = mulAdd(x, at(0.6366197466850281f), at(12582912.0f));
        const W f = t - 12582912.0f;
        W r;
        if constexpr (simd::kFusedMulAdd)
            r = reduced(x, f, 0x1.921fb6p0f, -0x1.777a5cp-25f);
        else
            r = reduced(x, f, 1.5703125f, 0.0004837512969970703f, 7.549790126404332e-08f);
        const W s = r * r;
        const W p = mulAdd(s, at(0.008163281716406345f), at(-0.16663390398025513f));
        const W q = mulAdd(s, at(0.040458451956510544f), at(-0.49976056814193726f));
        return turned(mulAdd(s * r, p, r), mulAdd(s, q, at(1.0f)), simd::lanesAs<std::int32_t>(t));
    }
};

// 21 bits: three coefficients, and pi/2 in more parts.
struct Medium21 {
    template <simd::FloatVec W>
    [[gnu::always_inline]] static SinCos<W> of(W x) {
        const auto at = [](float c) { return W::broadcast(c); };
        const W t = mulAdd(x, at(0.6366197466850281f), at(12582912.0f));
        const W f = t - 12582912.0f;
        W r;
        if constexpr (simd::kFusedMulAdd)
            r = reduced(x, f, 0x1.921fb6p0f, -0x1.777a5cp-25f, -0x1.ee59dap-50f);
        else
            r = reduced(x, f, 1.5703125f, 0.0004837512969970703f, 7.549533620476723e-08f,
                        2.5633440682570896e-12f);
        const W s = r * r;
        const W p = mulAdd(mulAdd(s, at(-0.00019515282474458218f), at(0.00833216030150652f)), s,
                           at(-0.16666655242443085f));
        const W q = mulAdd(mulAdd(mulAdd(s, at(2.44331567955669e-05f), at(-0.0013887316454201937f)),
                                  s, at(0.04166664555668831f)),
                           s, at(-0.5f));
        return turned(mulAdd(s * r, p, r), mulAdd(s, q, at(1.0f)), simd::lanesAs<std::int32_t>(t));
    }
};

// In double precision, for |x| to kReducedTo; relative error below 2^-27.
template <simd::FloatVec W>
[[gnu::always_inline]] inline SinCos<W> doubleSinCos(W x) {
    const auto at = [](double c) { return W::broadcast(c); };
    constexpr double kRound = 6755399441055744.0;  // 1.5 * 2^52
    const W t = mulAdd(x, at(0.63661977236758134308), at(kRound));
    const W f = t - kRound;
    W r = mulAdd(f, at(-1.5707963267923333), x);
    r = negMulAdd(f, at(2.563344151594519e-12), r);
    const W s = r * r;
    const W p = mulAdd(mulAdd(s, at(-0.00019515283190447318), at(0.008332160761521766)), s,
                       at(-0.16666654612881793));
    const W q = mulAdd(mulAdd(mulAdd(s, at(2.443315705834904e-05), at(-0.0013887316254360454)), s,
                              at(0.04166664568297557)),
                       s, at(-0.5));
    return turned(mulAdd(s * r, p, r), mulAdd(s, q, at(1.0)), simd::lanesAs<std::int64_t>(t));
}

// 24 bits: the same polynomials in double precision.
struct Long24 {
    template <simd::FloatVec W>
    [[gnu::always_inline]] static SinCos<W> of(W x) {
        const auto lo = doubleSinCos(widenLow(x)), hi = doubleSinCos(widenHigh(x));
        return {narrow(lo.sin, hi.sin), narrow(lo.cos, hi.cos)};
    }
};

}  // namespace zep::ZEP_VARIANT::vmath
