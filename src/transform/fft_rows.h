// Straight-line transforms of R rows of W adjacent elements, W the lanes of a vector, without
// tables in the object.
//
// A butterfly over the rows, a twiddle for each column and transforms of the W columns leave bins
// k1 + R*k2, k1 the row and k2 the column's bin. All input is read before any output is written.
#pragma once

#include "transform/fft_passes.h"
#include "transform/fft_sine_constants.h"

namespace zep::ZEP_VARIANT::fft {

// Twiddles of straight-line code: cosines of a vector, then its negated sines.
template <class V, int R>
struct RowTwiddles {
    alignas(64) typename V::Scalar w[R][2 * V::lanes];
};

// W(k1, column) for rows k1 = 1 .. R-1, columns in slot order.
template <class V, int R>
constexpr RowTwiddles<V, R> makeRowTwiddles() {
    using T = typename V::Scalar;
    RowTwiddles<V, R> table{};
#pragma GCC unroll 16
    for (int k = 0; k < R; ++k)
        for (int s = 0; s < V::lanes; ++s) {
            table.w[k][s] = constantCosine<T>(k * simd::slotElement<V>(s), R * V::lanes);
            table.w[k][s + V::lanes] = -constantSine<T>(k * simd::slotElement<V>(s), R * V::lanes);
        }
    return table;
}
template <class V, int R>
constexpr RowTwiddles<V, R> kRowTwiddles = makeRowTwiddles<V, R>();

// W(d, b) of 16 points as four by four: b the lane within a block.
template <class V>
constexpr RowTwiddles<V, 4> makeQuarterTwiddles() {
    using T = typename V::Scalar;
    RowTwiddles<V, 4> table{};
    for (int d = 0; d < 4; ++d)
        for (int s = 0; s < V::lanes; ++s) {
            table.w[d][s] = constantCosine<T>(d * (s % 4), 16);
            table.w[d][s + V::lanes] = -constantSine<T>(d * (s % 4), 16);
        }
    return table;
}
template <class V>
constexpr RowTwiddles<V, 4> kQuarterTwiddles = makeQuarterTwiddles<V>();

template <bool kScaled, class C, class V>
[[gnu::always_inline]] inline C scaledIf(C x, V scale) {
    if constexpr (kScaled)
        return x * scale;
    else
        return x;
}

// The columns of W rows x[0 .. W-1] by a transposition: a butterfly over the columns.
template <Direction D, int R, bool kScaled, class V>
[[gnu::always_inline]] inline void columnsTransposed(const simd::SplitComplex<V>* x,
                                                     typename V::Scalar* dst, V scale) {
    constexpr int W = V::lanes;
    V re[W], im[W];
#pragma GCC unroll 16
    for (int s = 0; s < W; ++s) {
        re[s] = x[simd::slotElement<V>(s)].re;
        im[s] = x[simd::slotElement<V>(s)].im;
    }
    simd::transpose(re);
    simd::transpose(im);
    simd::SplitComplex<V> y[W];
#pragma GCC unroll 16
    for (int s = 0; s < W; ++s) y[simd::slotElement<V>(s)] = {re[s], im[s]};
    butterfly<D, W>(y);
#pragma GCC unroll 16
    for (int k2 = 0; k2 < W; ++k2)
        simd::storeInterleaved(scaledIf<kScaled>(y[k2], scale), dst + 2 * R * k2);
}

// Sixteen columns of four rows as four by four: column 4a + b, bin 4c + d. Block a of the rows
// becomes a vector, a butterfly gives d; lane b of the blocks becomes a vector, another gives c.
template <Direction D, int R, bool kScaled, class V>
[[gnu::always_inline]] inline void columnsByQuarters(const simd::SplitComplex<V>* x,
                                                     typename V::Scalar* dst, V scale) {
    using C = simd::SplitComplex<V>;
    static_assert(V::lanes == 16 && simd::kBlock<V> == 4 && simd::slotElement<V>(5) == 5);
    V re[4] = {x[0].re, x[1].re, x[2].re, x[3].re}, im[4] = {x[0].im, x[1].im, x[2].im, x[3].im};
    simd::transposeBlocks(re);
    simd::transposeBlocks(im);
    C y[4];
#pragma GCC unroll 16
    for (int a = 0; a < 4; ++a) y[a] = {re[a], im[a]};
    butterfly<D, 4>(y);
#pragma GCC unroll 16
    for (int d = 0; d < 4; ++d) {
        if (d > 0) y[d] = rotate<D>(y[d], C::load(kQuarterTwiddles<V>.w[d]));
        re[d] = y[d].re;
        im[d] = y[d].im;
    }
    simd::transposeLanes(re);
    simd::transposeLanes(im);
#pragma GCC unroll 16
    for (int b = 0; b < 4; ++b) y[b] = {re[b], im[b]};
    butterfly<D, 4>(y);
    // Lane d of block k1 is bin k1 + R * (4c + d).
#pragma GCC unroll 16
    for (int c = 0; c < 4; ++c)
        simd::storeBlockColumns(scaledIf<kScaled>(y[c], scale), dst + 8 * R * c, 2 * R);
}

template <Direction D, class V, int R, bool kScaled>
[[gnu::always_inline]] inline void transformRows(const typename V::Scalar* src,
                                                 typename V::Scalar* dst,
                                                 typename V::Scalar scale) {
    using C = simd::SplitComplex<V>;
    constexpr int W = V::lanes, kRows = W == 16 ? 4 : W;
    static_assert(R % kRows == 0);
    C x[R];
#pragma GCC unroll 16
    for (int n = 0; n < R; ++n) x[n] = simd::loadInterleaved<V>(src + 2 * W * n);
    butterfly<D, R>(x);
#pragma GCC unroll 16
    for (int k = 1; k < R; ++k) x[k] = rotate<D>(x[k], C::load(kRowTwiddles<V, R>.w[k]));
#pragma GCC unroll 16
    for (int k1 = 0; k1 < R; k1 += kRows)
        if constexpr (W == 16)
            columnsByQuarters<D, R, kScaled>(x + k1, dst + 2 * k1, V::broadcast(scale));
        else
            columnsTransposed<D, R, kScaled>(x + k1, dst + 2 * k1, V::broadcast(scale));
}

}  // namespace zep::ZEP_VARIANT::fft
