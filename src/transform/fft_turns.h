// Products and sums with turns of complex vectors: what butterflies are made of, for parts apart and
// for parts side by side.
#pragma once

#include "simd/pairs.h"
#include "simd/split_complex.h"

namespace zep::ZEP_VARIANT::fft {

enum class Direction { Forward, Inverse };

// x * w forward, x * conj(w) inverse: one table of twiddles serves both directions.
template <Direction D, class C>
[[gnu::always_inline]] inline C rotate(C x, C w) {
    if constexpr (D == Direction::Forward)
        return {negMulAdd(x.im, w.im, x.re * w.re), mulAdd(x.im, w.re, x.re * w.im)};
    else
        return {mulAdd(x.im, w.im, x.re * w.re), negMulAdd(x.re, w.im, x.im * w.re)};
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

// a + s * b and a - s * b; the same with b turned by a quarter.
template <class C, class V>
[[gnu::always_inline]] inline C addScaled(C a, C b, V s) {
    return {mulAdd(b.re, s, a.re), mulAdd(b.im, s, a.im)};
}
template <class C, class V>
[[gnu::always_inline]] inline C subScaled(C a, C b, V s) {
    return {negMulAdd(b.re, s, a.re), negMulAdd(b.im, s, a.im)};
}
template <Direction D, class C, class V>
[[gnu::always_inline]] inline C addQuarterScaled(C a, C b, V s) {
    if constexpr (D == Direction::Forward)
        return {mulAdd(b.im, s, a.re), negMulAdd(b.re, s, a.im)};
    else
        return {negMulAdd(b.im, s, a.re), mulAdd(b.re, s, a.im)};
}
template <Direction D, class C, class V>
[[gnu::always_inline]] inline C subQuarterScaled(C a, C b, V s) {
    if constexpr (D == Direction::Forward)
        return {negMulAdd(b.im, s, a.re), mulAdd(b.re, s, a.im)};
    else
        return {mulAdd(b.im, s, a.re), negMulAdd(b.re, s, a.im)};
}

// x * exp(-pi*i/4) forward, x * exp(pi*i/4) inverse, but for a factor of sqrt(1/2), which is left to
// the sums that follow.
template <Direction D, class C>
[[gnu::always_inline]] inline C turnEighth(C x) {
    if constexpr (D == Direction::Forward)
        return {x.re + x.im, x.im - x.re};
    else
        return {x.re - x.im, x.im + x.re};
}

// The same on elements as memory has them.
template <Direction D, class V>
[[gnu::always_inline]] inline simd::Pairs<V> rotate(simd::Pairs<V> x,
                                                    typename simd::Pairs<V>::Turn w) {
    if constexpr (D == Direction::Forward)
        return {mulAdd(exchanged(x).v, w.im, x.v * w.re)};
    else
        return {negMulAdd(exchanged(x).v, w.im, x.v * w.re)};
}
// x * (-i) forward, x * i inverse.
template <Direction D, class V>
[[gnu::always_inline]] inline simd::Pairs<V> quarter(simd::Pairs<V> x) {
    return D == Direction::Forward ? conjugate(exchanged(x)) : exchanged(conjugate(x));
}
template <Direction D, class V>
[[gnu::always_inline]] inline simd::Pairs<V> addQuarter(simd::Pairs<V> a, simd::Pairs<V> b) {
    return a + quarter<D>(b);
}
template <Direction D, class V>
[[gnu::always_inline]] inline simd::Pairs<V> subQuarter(simd::Pairs<V> a, simd::Pairs<V> b) {
    return a - quarter<D>(b);
}
template <class V>
[[gnu::always_inline]] inline simd::Pairs<V> addScaled(simd::Pairs<V> a, simd::Pairs<V> b, V s) {
    return {mulAdd(b.v, s, a.v)};
}
template <class V>
[[gnu::always_inline]] inline simd::Pairs<V> subScaled(simd::Pairs<V> a, simd::Pairs<V> b, V s) {
    return {negMulAdd(b.v, s, a.v)};
}
template <Direction D, class V>
[[gnu::always_inline]] inline simd::Pairs<V> addQuarterScaled(simd::Pairs<V> a, simd::Pairs<V> b,
                                                              V s) {
    return addScaled(a, quarter<D>(b), s);
}
template <Direction D, class V>
[[gnu::always_inline]] inline simd::Pairs<V> subQuarterScaled(simd::Pairs<V> a, simd::Pairs<V> b,
                                                              V s) {
    return subScaled(a, quarter<D>(b), s);
}
template <Direction D, class V>
[[gnu::always_inline]] inline simd::Pairs<V> turnEighth(simd::Pairs<V> x) {
    return x + quarter<D>(x);
}

}  // namespace zep::ZEP_VARIANT::fft
