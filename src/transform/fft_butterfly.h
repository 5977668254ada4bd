// Butterflies of 2, 4, 8 and 16 points on complex vectors with parts apart.
//
// x holds the points in natural order and receives the bins in natural order. The direction decides
// the sign of the imaginary unit: exp(-2*pi*i/R) forward, its conjugate inverse.
#pragma once

#include "simd/split_complex.h"

namespace zep::ZEP_VARIANT {

enum class Direction { Forward, Inverse };

// x * w forward, x * conj(w) inverse: one table of twiddles serves both directions.
template <Direction D, class C>
[[gnu::always_inline]] inline C rotate(C x, C w) {
    if constexpr (D == Direction::Forward)
        return {x.re * w.re - x.im * w.im, x.re * w.im + x.im * w.re};
    else
        return {x.re * w.re + x.im * w.im, x.im * w.re - x.re * w.im};
}

// a + b * (-i) forward, a + b * i inverse; and the difference.
template <Direction D, class C>
[[gnu::always_inline]] inline C addQuarter(C a, C b) {
    if constexpr (D == Direction::Forward)
        return {a.re + b.im, a.im - b.re};
    else
        return {a.re - b.im, a.im + b.re};
}
template <Direction D, class C>
[[gnu::always_inline]] inline C subQuarter(C a, C b) {
    if constexpr (D == Direction::Forward)
        return {a.re - b.im, a.im + b.re};
    else
        return {a.re + b.im, a.im - b.re};
}

template <Direction D, class C>
[[gnu::always_inline]] inline void butterfly4(C& x0, C& x1, C& x2, C& x3) {
    const C a = x0 + x2, c = x0 - x2, d = x1 + x3, e = x1 - x3;
    x0 = a + d;
    x1 = addQuarter<D>(c, e);
    x2 = a - d;
    x3 = subQuarter<D>(c, e);
}

// x * exp(-pi*i/4) forward, x * exp(pi*i/4) inverse.
template <Direction D, class C, class V>
[[gnu::always_inline]] inline C rotateEighth(C x, V sqrtHalf) {
    if constexpr (D == Direction::Forward)
        return C{x.re + x.im, x.im - x.re} * sqrtHalf;
    else
        return C{x.re - x.im, x.im + x.re} * sqrtHalf;
}

// The odd half, rotated: joined with the even half by joinHalves8.
template <Direction D, class C, class V>
[[gnu::always_inline]] inline void rotateOdd8(C& o1, C& o3, V sqrtHalf) {
    o1 = rotateEighth<D>(o1, sqrtHalf);
    // exp(-3*pi*i/4) is exp(-pi*i/4) times -i; the -i is left to the join.
    o3 = rotateEighth<D>(o3, sqrtHalf);
}

template <Direction D, class C>
[[gnu::always_inline]] inline void butterfly8(C (&x)[8]) {
    using V = decltype(x[0].re);
    const V sqrtHalf = V::broadcast(0.70710678f);
    butterfly4<D>(x[1], x[3], x[5], x[7]);
    rotateOdd8<D>(x[3], x[7], sqrtHalf);
    butterfly4<D>(x[0], x[2], x[4], x[6]);
    // Now x[0], x[2], x[4], x[6] are the bins of the even points, x[1], x[3], x[5], x[7] those of
    // the odd ones.
    const C e0 = x[0], e1 = x[2], e2 = x[4], e3 = x[6];
    const C o0 = x[1], o1 = x[3], o2 = x[5], o3 = x[7];
    x[0] = e0 + o0;
    x[4] = e0 - o0;
    x[1] = e1 + o1;
    x[5] = e1 - o1;
    x[2] = addQuarter<D>(e2, o2);
    x[6] = subQuarter<D>(e2, o2);
    x[3] = addQuarter<D>(e3, o3);
    x[7] = subQuarter<D>(e3, o3);
}

// The second stage of four points from sums and differences of its pairs: a, c = b0 +- b2 and
// d, e = b1 +- b3.
template <Direction D, class C>
[[gnu::always_inline]] inline void joinPairs(C a, C c, C d, C e, C& x0, C& x1, C& x2, C& x3) {
    x0 = a + d;
    x1 = addQuarter<D>(c, e);
    x2 = a - d;
    x3 = subQuarter<D>(c, e);
}

// The odd bins of 4 or 8 points from the differences of points half a row apart; the even ones are
// the butterfly of the sums.
template <Direction D, class C>
[[gnu::always_inline]] inline void oddButterfly(C (&d)[2]) {
    const C a = d[0], b = d[1];
    d[0] = addQuarter<D>(a, b);
    d[1] = subQuarter<D>(a, b);
}
template <Direction D, class C>
[[gnu::always_inline]] inline void oddButterfly(C (&d)[4]) {
    rotateOdd8<D>(d[1], d[3], decltype(d[0].re)::broadcast(0.70710678f));
    joinPairs<D>(addQuarter<D>(d[0], d[2]), subQuarter<D>(d[0], d[2]), addQuarter<D>(d[1], d[3]),
                 subQuarter<D>(d[1], d[3]), d[0], d[1], d[2], d[3]);
}

// Four by four: points n, n + 4, n + 8, n + 12 for n = 0 .. 3, bin k of each rotated by n*k
// sixteenths of a turn, then the four bins of one k. Four points at a time are what the registers
// hold. Quarters and halves of a turn are left to the joins.
template <Direction D, class C>
[[gnu::always_inline]] inline void butterfly16(C (&x)[16]) {
    using V = decltype(x[0].re);
    const V sqrtHalf = V::broadcast(0.70710678f);
    const C sixteenth{V::broadcast(0.92387953f), V::broadcast(-0.38268343f)};
    const C threeSixteenths{V::broadcast(0.38268343f), V::broadcast(-0.92387953f)};
    C b[4][4];  // by k, then n
#pragma GCC unroll 16
    for (int n = 0; n < 4; ++n) {
        b[0][n] = x[n];
        b[1][n] = x[n + 4];
        b[2][n] = x[n + 8];
        b[3][n] = x[n + 12];
        butterfly4<D>(b[0][n], b[1][n], b[2][n], b[3][n]);
        if (n == 1) {
            b[1][n] = rotate<D>(b[1][n], sixteenth);
            b[2][n] = rotateEighth<D>(b[2][n], sqrtHalf);
            b[3][n] = rotate<D>(b[3][n], threeSixteenths);
        } else if (n == 2) {
            b[1][n] = rotateEighth<D>(b[1][n], sqrtHalf);
            b[3][n] = rotateEighth<D>(b[3][n], sqrtHalf);  // and a quarter
        } else if (n == 3) {
            b[1][n] = rotate<D>(b[1][n], threeSixteenths);
            b[2][n] = rotateEighth<D>(b[2][n], sqrtHalf);  // and a quarter
            b[3][n] = rotate<D>(b[3][n], sixteenth);       // and a half
        }
    }
    butterfly4<D>(b[0][0], b[0][1], b[0][2], b[0][3]);
    butterfly4<D>(b[1][0], b[1][1], b[1][2], b[1][3]);
    joinPairs<D>(addQuarter<D>(b[2][0], b[2][2]), subQuarter<D>(b[2][0], b[2][2]),
                 addQuarter<D>(b[2][1], b[2][3]), subQuarter<D>(b[2][1], b[2][3]), b[2][0], b[2][1],
                 b[2][2], b[2][3]);
    joinPairs<D>(addQuarter<D>(b[3][0], b[3][2]), subQuarter<D>(b[3][0], b[3][2]),
                 b[3][1] - b[3][3], b[3][1] + b[3][3], b[3][0], b[3][1], b[3][2], b[3][3]);
#pragma GCC unroll 16
    for (int k = 0; k < 4; ++k)
#pragma GCC unroll 16
        for (int m = 0; m < 4; ++m) x[k + 4 * m] = b[k][m];
}

template <Direction D, int R, class C>
[[gnu::always_inline]] inline void butterfly(C (&x)[R]) {
    static_assert(R == 2 || R == 4 || R == 8 || R == 16);
    if constexpr (R == 2) {
        const C a = x[0];
        x[0] = a + x[1];
        x[1] = a - x[1];
    } else if constexpr (R == 4) {
        butterfly4<D>(x[0], x[1], x[2], x[3]);
    } else if constexpr (R == 8) {
        butterfly8<D>(x);
    } else {
        butterfly16<D>(x);
    }
}

}  // namespace zep::ZEP_VARIANT
