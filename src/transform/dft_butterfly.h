// Butterflies of every length that has code of its own: primes to 13 by pairing points k and N-k,
// products of two factors from these and the powers of two.
#pragma once

#include "transform/fft_butterfly.h"

namespace zep::ZEP_VARIANT::dft {

using fft::Direction;

// cos(2*pi*k/N) and sin(2*pi*k/N) for any k from 0 and N.
constexpr long double unitCosine(long long k, long long N) {
    constexpr long double kPi = 3.14159265358979323846264338327950288L;
    k %= N;
    if (2 * k > N) k = N - k;
    const long double x = 2 * kPi * static_cast<long double>(k) / static_cast<long double>(N);
    if (8 * k <= N) return fft::seriesCosine(x);
    if (8 * k >= 3 * N) return -fft::seriesCosine(kPi - x);
    return fft::seriesSine(kPi / 2 - x);
}
constexpr long double unitSine(long long k, long long N) {
    return unitCosine(4 * (k % N) + 3 * N, 4 * N);  // cos(x - pi/2)
}

// Cosines and sines of N points, as they stand in the code.
template <class T, int N>
struct UnitRoots {
    T cosine[N], sine[N];
};
template <class T, int N>
constexpr UnitRoots<T, N> makeUnitRoots() {
    UnitRoots<T, N> r{};
    for (int k = 0; k < N; ++k) {
        r.cosine[k] = static_cast<T>(unitCosine(k, N));
        r.sine[k] = static_cast<T>(unitSine(k, N));
    }
    return r;
}
template <class T, int N>
inline constexpr UnitRoots<T, N> kUnitRoots = makeUnitRoots<T, N>();

// With a = x[k] + x[N-k] and b = x[k] - x[N-k]: X[j] = x[0] + sum of a*cos -+ i * sum of b*sin.
template <Direction D, int N, class C>
[[gnu::always_inline]] inline void oddButterfly(C (&x)[N]) {
    using V = decltype(x[0].re);
    using T = typename V::Scalar;
    constexpr int h = (N - 1) / 2;
    C a[h], b[h];
    C sum = x[0];
#pragma GCC unroll 16
    for (int k = 1; k <= h; ++k) {
        a[k - 1] = x[k] + x[N - k];
        b[k - 1] = x[k] - x[N - k];
        sum = sum + a[k - 1];
    }
    const C x0 = x[0];
    x[0] = sum;
#pragma GCC unroll 16
    for (int j = 1; j <= h; ++j) {
        C p = fft::addScaled(x0, a[0], V::broadcast(kUnitRoots<T, N>.cosine[j]));
        C q = b[0] * V::broadcast(kUnitRoots<T, N>.sine[j]);
#pragma GCC unroll 16
        for (int k = 2; k <= h; ++k) {
            p = fft::addScaled(p, a[k - 1], V::broadcast(kUnitRoots<T, N>.cosine[j * k % N]));
            q = fft::addScaled(q, b[k - 1], V::broadcast(kUnitRoots<T, N>.sine[j * k % N]));
        }
        x[j] = fft::addQuarter<D>(p, q);
        x[N - j] = fft::subQuarter<D>(p, q);
    }
}

template <Direction D, int N, class C>
[[gnu::always_inline]] inline void butterfly(C (&x)[N]);

constexpr int inverseModulo(int a, int modulus) {
    for (int i = 1; i < modulus; ++i)
        if (a * i % modulus == 1) return i;
    return 1;
}

// A * B points, A and B without a common factor: point B*a + A*b, and no twiddles (Good 1958).
template <Direction D, int A, int B, class C>
[[gnu::always_inline]] inline void primeFactorButterfly(C (&x)[A * B]) {
    constexpr int N = A * B;
    C z[A][B];
#pragma GCC unroll 16
    for (int b = 0; b < B; ++b) {
        C y[A];
#pragma GCC unroll 16
        for (int a = 0; a < A; ++a) y[a] = x[(B * a + A * b) % N];
        butterfly<D, A>(y);
#pragma GCC unroll 16
        for (int a = 0; a < A; ++a) z[a][b] = y[a];
    }
    constexpr int ofA = B * inverseModulo(B % A, A), ofB = A * inverseModulo(A % B, B);
#pragma GCC unroll 16
    for (int a = 0; a < A; ++a) {
        butterfly<D, B>(z[a]);
#pragma GCC unroll 16
        for (int b = 0; b < B; ++b) x[(a * ofA + b * ofB) % N] = z[a][b];
    }
}

template <Direction D, class C>
[[gnu::always_inline]] inline void butterfly9(C (&x)[9]) {
    using V = decltype(x[0].re);
    using T = typename V::Scalar;
    C z[3][3];
#pragma GCC unroll 16
    for (int n = 0; n < 3; ++n) {
        C y[3] = {x[n], x[n + 3], x[n + 6]};
        oddButterfly<D, 3>(y);
#pragma GCC unroll 16
        for (int k = 0; k < 3; ++k) {
            const C w{V::broadcast(kUnitRoots<T, 9>.cosine[n * k]),
                      V::broadcast(-kUnitRoots<T, 9>.sine[n * k])};
            z[k][n] = n * k == 0 ? y[k] : fft::rotate<D>(y[k], w);
        }
    }
#pragma GCC unroll 16
    for (int k = 0; k < 3; ++k) {
        oddButterfly<D, 3>(z[k]);
#pragma GCC unroll 16
        for (int m = 0; m < 3; ++m) x[k + 3 * m] = z[k][m];
    }
}

template <Direction D, int N, class C>
[[gnu::always_inline]] inline void butterfly(C (&x)[N]) {
    static_assert(N <= 16);
    if constexpr ((N & (N - 1)) == 0)
        fft::butterfly<D, N>(x);
    else if constexpr (N == 9)
        butterfly9<D>(x);
    else if constexpr (N == 6 || N == 10 || N == 14)
        primeFactorButterfly<D, N / 2, 2>(x);
    else if constexpr (N == 12)
        primeFactorButterfly<D, 3, 4>(x);
    else if constexpr (N == 15)
        primeFactorButterfly<D, 3, 5>(x);
    else
        oddButterfly<D, N>(x);
}

}  // namespace zep::ZEP_VARIANT::dft
