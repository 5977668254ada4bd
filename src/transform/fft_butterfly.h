// Butterflies of 2, 4 and 8 points on complex vectors with parts apart.
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

template <Direction D, int R, class C>
[[gnu::always_inline]] inline void butterfly(C (&x)[R]) {
    static_assert(R == 2 || R == 4 || R == 8);
    if constexpr (R == 2) {
        const C a = x[0];
        x[0] = a + x[1];
        x[1] = a - x[1];
    } else if constexpr (R == 4) {
        butterfly4<D>(x[0], x[1], x[2], x[3]);
    } else {
        butterfly8<D>(x);
    }
}

}  // namespace zep::ZEP_VARIANT
