// Complex elements as memory has them, the parts of an element side by side: half as many registers
// as with parts apart, nothing to shuffle where memory meets them, but a swap of the parts in every
// product with more than a real factor. Best where few elements would leave wide vectors half empty.
#pragma once

#include "simd/shuffle.h"
#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT::simd {

template <class V>
struct Pairs {
    using Scalar = typename V::Scalar;
    using Part = V;  // factors of both parts
    static constexpr int lanes = V::lanes / 2;
    static constexpr Scalar plus = 0, minus = -plus;  // signs by themselves
    V v;

    // A complex factor: (re, re), and the other parts with the sign that goes with them, (-im, im).
    struct Turn {
        V re, im;
        static Turn of(Pairs w) {
            return {dupEven(w.v), dupOdd(w.v) ^ V::broadcastPair(minus, plus)};
        }
        static Turn load(const Scalar* p) {
            return {V::loadAligned(p), V::loadAligned(p + V::lanes)};
        }
    };
    static Turn turn(Scalar re, Scalar im) { return {V::broadcast(re), V::broadcastPair(-im, im)}; }

    static Pairs load(const Scalar* p) { return {V::load(p)}; }
    static Pairs loadAligned(const Scalar* p) { return {V::loadAligned(p)}; }
    static Pairs loadPartial(const Scalar* p, int n) { return {V::loadPartial(p, 2 * n)}; }
    void store(Scalar* p) const { v.store(p); }
    void storeAligned(Scalar* p) const { v.storeAligned(p); }
    void storePartial(Scalar* p, int n) const { v.storePartial(p, 2 * n); }

    // One element; the others are left open.
    static Pairs loadOne(const Scalar* p) requires(sizeof(V) == 16) {
        if constexpr (lanes == 1)
            return load(p);
        else
            return {bitsIn<Scalar>(
                Vec<double, 2>::broadcast(readAny(reinterpret_cast<const double*>(p))))};
    }
    void storeOne(Scalar* p) const {
        if constexpr (lanes == 1)
            store(p);
        else
            writeAny(reinterpret_cast<double*>(p), first(bitsIn<double>(v)));
    }

    friend Pairs operator+(Pairs a, Pairs b) { return {a.v + b.v}; }
    friend Pairs operator-(Pairs a, Pairs b) { return {a.v - b.v}; }
    friend Pairs operator*(Pairs a, V s) { return {a.v * s}; }
};

template <class V>
[[gnu::always_inline]] inline Pairs<V> conjugate(Pairs<V> x) {
    return {x.v ^ V::broadcastPair(Pairs<V>::plus, Pairs<V>::minus)};
}
// The parts change places.
template <class V>
[[gnu::always_inline]] inline Pairs<V> exchanged(Pairs<V> x) {
    return {swapPairs(x.v)};
}

namespace detail {

// Lanes of complex elements of a and b: order(k) for element k of the result.
template <class F, class V>
[[gnu::always_inline]] inline Pairs<V> shuffleElements(Pairs<V> a, Pairs<V> b, F) {
    if constexpr (V::bytes == 16 * Pairs<V>::lanes) {
        return {shuffle(a.v, b.v, [](int k) { return F{}(k / 2) * 2 + k % 2; })};
    } else {
        const auto wa = bitsIn<double>(a.v), wb = bitsIn<double>(b.v);
        return {bitsIn<typename V::Scalar>(shuffle(wa, wb, F{}))};
    }
}

}  // namespace detail

// Squares of N rows and N elements, as many side by side as a vector holds: each is transposed.
template <int kStep = 1, class V, int N>
[[gnu::always_inline]] inline void transposeSquares(Pairs<V> (&x)[N]) {
    static_assert((N & (N - 1)) == 0 && N <= Pairs<V>::lanes);
    if constexpr (kStep < N) {
        unroll<N>([&](auto i) __attribute__((always_inline)) {
            if constexpr ((i & kStep) == 0) {
                const Pairs<V> a = x[i], b = x[i + kStep];
                x[i] = detail::shuffleElements(a, b, [](int k) {
                    return (k & kStep) != 0 ? Pairs<V>::lanes + (k ^ kStep) : k;
                });
                x[i + kStep] = detail::shuffleElements(
                    a, b, [](int k) { return (k & kStep) != 0 ? Pairs<V>::lanes + k : k ^ kStep; });
            }
        });
        transposeSquares<2 * kStep>(x);
    }
}

// The last element comes first.
template <class V>
[[gnu::always_inline]] inline Pairs<V> reversed(Pairs<V> x) {
    return detail::shuffleElements(x, x, [](int k) { return Pairs<V>::lanes - 1 - k; });
}

// N elements from element `from` on come first, N a power of two; what stands behind them is left
// open.
template <int from, int N, class V>
[[gnu::always_inline]] inline Pairs<V> shiftedDown(Pairs<V> x) {
    if constexpr (from == 0)
        return x;
    else
        return detail::shuffleElements(x, x, [](int k) { return k % N + from; });
}

}  // namespace zep::ZEP_VARIANT::simd
