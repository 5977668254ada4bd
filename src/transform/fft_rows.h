// Straight-line transforms of R rows of W adjacent elements, W the lanes of a vector, without
// tables.
//
// A butterfly over the rows, a twiddle for each column, a transposition and a butterfly over the W
// columns leave bins k1 + R*k2 in row k2, in natural order. All input is read before any output is
// written.
#pragma once

#include "transform/fft_passes.h"
#include "transform/fft_sine_constants.h"

namespace zep::ZEP_VARIANT {

// W(k1, column) for rows k1 = 1 .. R-1: cosines, then negated sines, columns in slot order.
template <class V, int R>
struct RowTwiddles {
    alignas(32) float w[R][2 * V::lanes];
};
template <class V, int R>
constexpr RowTwiddles<V, R> makeRowTwiddles() {
    RowTwiddles<V, R> table{};
#pragma GCC unroll 16
    for (int k = 0; k < R; ++k)
        for (int s = 0; s < V::lanes; ++s) {
            table.w[k][s] = constantCosine(k * simd::slotElement<V>(s), R * V::lanes);
            table.w[k][s + V::lanes] = -constantSine(k * simd::slotElement<V>(s), R * V::lanes);
        }
    return table;
}
template <class V, int R>
constexpr RowTwiddles<V, R> kRowTwiddles = makeRowTwiddles<V, R>();

template <bool kScaled, class C, class V>
inline C scaledIf(C x, V scale) {
    if constexpr (kScaled)
        return x * scale;
    else
        return x;
}

template <Direction D, class V, int R, bool kScaled>
inline void directRows(const float* src, float* dst, float scale) {
    using C = simd::SplitComplex<V>;
    using S = simd::ComplexShuffle<V>;
    constexpr int W = V::lanes;
    static_assert(R % W == 0);
    C x[R];
#pragma GCC unroll 16
    for (int n = 0; n < R; ++n) x[n] = S::loadInterleaved(src + 2 * W * n);
    butterfly<D, R>(x);
#pragma GCC unroll 16
    for (int k = 1; k < R; ++k) x[k] = rotate<D>(x[k], C::load(kRowTwiddles<V, R>.w[k]));
#pragma GCC unroll 16
    for (int k1 = 0; k1 < R; k1 += W) {
        V re[W], im[W];
#pragma GCC unroll 16
        for (int s = 0; s < W; ++s) {
            re[s] = x[k1 + simd::slotElement<V>(s)].re;
            im[s] = x[k1 + simd::slotElement<V>(s)].im;
        }
        S::transpose(re);
        S::transpose(im);
        C y[W];
#pragma GCC unroll 16
        for (int s = 0; s < W; ++s) y[simd::slotElement<V>(s)] = {re[s], im[s]};
        butterfly<D, W>(y);
#pragma GCC unroll 16
        for (int k2 = 0; k2 < W; ++k2)
            S::storeInterleaved(scaledIf<kScaled>(y[k2], V::broadcast(scale)),
                                dst + 2 * (k1 + R * k2));
    }
}

}  // namespace zep::ZEP_VARIANT
