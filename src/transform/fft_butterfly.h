// Butterflies of 2, 4, 8 and 16 points on complex vectors with parts apart.
//
// x holds the points in natural order and receives the bins in natural order. The direction decides
// the sign of the imaginary unit: exp(-2*pi*i/R) forward, its conjugate inverse. Products are fused
// with sums where the column can.
#pragma once

#include "simd/unroll.h"
#include "transform/fft_sine_constants.h"
#include "transform/fft_turns.h"

namespace zep::ZEP_VARIANT::fft {

template <Direction D, class C>
[[gnu::always_inline]] inline void butterfly4(C& x0, C& x1, C& x2, C& x3) {
    const C a = x0 + x2, c = x0 - x2, d = x1 + x3, e = x1 - x3;
    x0 = a + d;
    x1 = addQuarter<D>(c, e);
    x2 = a - d;
    x3 = subQuarter<D>(c, e);
}

template <class T>
inline constexpr T kSqrtHalf = constantCosine<T>(1, 8);

template <Direction D, class C>
[[gnu::always_inline]] inline void butterfly8(C (&x)[8]) {
    using V = typename C::Part;
    const V sqrtHalf = V::broadcast(kSqrtHalf<typename V::Scalar>);
    butterfly4<D>(x[1], x[3], x[5], x[7]);
    // exp(-3*pi*i/4) is exp(-pi*i/4) times -i; the -i is left to the join.
    x[3] = turnEighth<D>(x[3]);
    x[7] = turnEighth<D>(x[7]);
    butterfly4<D>(x[0], x[2], x[4], x[6]);
    // Now x[0], x[2], x[4], x[6] are the bins of the even points, x[1], x[3], x[5], x[7] those of
    // the odd ones.
    const C e0 = x[0], e1 = x[2], e2 = x[4], e3 = x[6];
    const C o0 = x[1], o1 = x[3], o2 = x[5], o3 = x[7];
    x[0] = e0 + o0;
    x[4] = e0 - o0;
    x[1] = addScaled(e1, o1, sqrtHalf);
    x[5] = subScaled(e1, o1, sqrtHalf);
    x[2] = addQuarter<D>(e2, o2);
    x[6] = subQuarter<D>(e2, o2);
    x[3] = addQuarterScaled<D>(e3, o3, sqrtHalf);
    x[7] = subQuarterScaled<D>(e3, o3, sqrtHalf);
}

// The second stage of four points from sums and differences of its pairs: a, c = b0 +- b2 and
// d, e = b1 +- b3, d and e without their factor s.
template <Direction D, class C, class V>
[[gnu::always_inline]] inline void joinPairsScaled(C a, C c, C d, C e, V s, C& x0, C& x1, C& x2,
                                                   C& x3) {
    x0 = addScaled(a, d, s);
    x1 = addQuarterScaled<D>(c, e, s);
    x2 = subScaled(a, d, s);
    x3 = subQuarterScaled<D>(c, e, s);
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
    using V = typename C::Part;
    const V sqrtHalf = V::broadcast(kSqrtHalf<typename V::Scalar>);
    const C o1 = turnEighth<D>(d[1]), o3 = turnEighth<D>(d[3]);  // and a quarter
    joinPairsScaled<D>(addQuarter<D>(d[0], d[2]), subQuarter<D>(d[0], d[2]), addQuarter<D>(o1, o3),
                       subQuarter<D>(o1, o3), sqrtHalf, d[0], d[1], d[2], d[3]);
}

// Sixteen points are four by four: points n, n + 4, n + 8, n + 12 for n = 0 .. 3, bin k of each
// rotated by n*k sixteenths of a turn (quarterOf16), then the four bins of one k (binsOf16). Four
// points at a time are what the registers hold. Quarters and halves of a turn are left to the
// second step, and so are the factors of eighths.
template <Direction D, int n, class C>
[[gnu::always_inline]] inline void quarterOf16(C& b0, C& b1, C& b2, C& b3) {
    using T = typename C::Scalar;
    const auto sixteenth = C::turn(constantCosine<T>(1, 16), -constantSine<T>(1, 16));
    const auto threeSixteenths = C::turn(constantCosine<T>(3, 16), -constantSine<T>(3, 16));
    butterfly4<D>(b0, b1, b2, b3);
    if constexpr (n == 1) {
        b1 = rotate<D>(b1, sixteenth);
        b2 = turnEighth<D>(b2);
        b3 = rotate<D>(b3, threeSixteenths);
    } else if constexpr (n == 2) {
        b1 = turnEighth<D>(b1);
        b3 = turnEighth<D>(b3);  // and a quarter
    } else if constexpr (n == 3) {
        b1 = rotate<D>(b1, threeSixteenths);
        b2 = turnEighth<D>(b2);         // and a quarter
        b3 = rotate<D>(b3, sixteenth);  // and a half
    }
}
// b[n], n = 0 .. 3, become bins k + 4*n.
template <Direction D, int k, class C>
[[gnu::always_inline]] inline void binsOf16(C (&b)[4]) {
    using V = typename C::Part;
    const V sqrtHalf = V::broadcast(kSqrtHalf<typename V::Scalar>);
    if constexpr (k == 0) {
        butterfly4<D>(b[0], b[1], b[2], b[3]);
    } else if constexpr (k == 2) {
        joinPairsScaled<D>(addQuarter<D>(b[0], b[2]), subQuarter<D>(b[0], b[2]),
                           addQuarter<D>(b[1], b[3]), subQuarter<D>(b[1], b[3]), sqrtHalf, b[0],
                           b[1], b[2], b[3]);
    } else {
        const C a =
            k == 1 ? addScaled(b[0], b[2], sqrtHalf) : addQuarterScaled<D>(b[0], b[2], sqrtHalf);
        const C c =
            k == 1 ? subScaled(b[0], b[2], sqrtHalf) : subQuarterScaled<D>(b[0], b[2], sqrtHalf);
        const C sum = b[1] + b[3], difference = b[1] - b[3];
        const C d = k == 1 ? sum : difference, e = k == 1 ? difference : sum;
        b[0] = a + d;
        b[1] = addQuarter<D>(c, e);
        b[2] = a - d;
        b[3] = subQuarter<D>(c, e);
    }
}

template <Direction D, class C>
[[gnu::always_inline]] inline void butterfly16(C (&x)[16]) {
    C b[4][4];  // by k, then n
    simd::unroll<4>([&](auto n) __attribute__((always_inline)) {
#pragma GCC unroll 16
        for (int k = 0; k < 4; ++k) b[k][n] = x[n + 4 * k];
        quarterOf16<D, n>(b[0][n], b[1][n], b[2][n], b[3][n]);
    });
    simd::unroll<4>([&](auto k) __attribute__((always_inline)) { binsOf16<D, k>(b[k]); });
#pragma GCC unroll 16
    for (int k = 0; k < 4; ++k)
#pragma GCC unroll 16
        for (int m = 0; m < 4; ++m) x[k + 4 * m] = b[k][m];
}

template <Direction D, int R, class C>
[[gnu::always_inline]] inline void butterfly(C (&x)[R]) {
    static_assert(R == 1 || R == 2 || R == 4 || R == 8 || R == 16);
    if constexpr (R == 2) {
        const C a = x[0];
        x[0] = a + x[1];
        x[1] = a - x[1];
    } else if constexpr (R == 4) {
        butterfly4<D>(x[0], x[1], x[2], x[3]);
    } else if constexpr (R == 8) {
        butterfly8<D>(x);
    } else if constexpr (R == 16) {
        butterfly16<D>(x);
    }
}

}  // namespace zep::ZEP_VARIANT::fft
