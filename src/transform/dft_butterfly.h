// Butterflies of every length that has code of its own: primes to 13 by pairing points k and N-k,
// products of two factors from these and the powers of two.
#pragma once

#include "simd/look_up.h"
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

// 1 .. (N-1)/2 in ascending size of values[j*k]: a sum that begins with its small terms rounds less.
template <int N>
struct Order {
    int k[(N - 1) / 2];
};
template <int N, class T>
constexpr Order<N> ascending(const T (&values)[N], int j) {
    const auto size = [&](int k) {
        const T v = values[j * k % N];
        return v < 0 ? -v : v;
    };
    Order<N> order{};
    for (int k = 1; k <= (N - 1) / 2; ++k) {
        int at = k - 1;
        for (; at > 0 && size(order.k[at - 1]) > size(k); --at) order.k[at] = order.k[at - 1];
        order.k[at] = k;
    }
    return order;
}

// p + sum of a[k] * cos(j*k), k from 1 to (N-1)/2 but for one.
template <int N, int j, int without = 0, class C>
[[gnu::always_inline]] inline C addCosines(C p, const C (&a)[(N + 1) / 2]) {
    using V = typename C::Part;
    constexpr auto& cosine = kUnitRoots<typename V::Scalar, N>.cosine;
    constexpr Order<N> order = ascending<N>(cosine, j);
#pragma GCC unroll 16
    for (const int k : order.k)
        if (k != without) p = fft::addScaled(p, a[k], V::broadcast(cosine[j * k % N]));
    return p;
}

// The sines of j*k, k = 1 .. (N-1)/2, as products: that of j*n and ratios to it. n = 0: as they are.
template <class T>
struct Products {
    int n;
    T divisor;
    T ratio[8];
};
// Those of bin j that come out best. What the errors of sines and cosines have in common is a gain,
// which twiddles can take back (dft_gain.h); the rest counts like roundings. Fused, a divisor saves
// an operation and a rounding; else it has a rounding of its own.
template <class T, int N>
constexpr Products<T> bestProducts(int j) {
    constexpr auto& sine = kUnitRoots<long double, N>.sine;
    constexpr auto& cosine = kUnitRoots<long double, N>.cosine;
    constexpr int h = (N - 1) / 2;
    constexpr long double kUnit = sizeof(T) == 4 ? 0x1p-24L : 0x1p-53L;
    constexpr long double kRounding = 0.2L;  // mean square of a sum's, in units
    Products<T> best{};
    long double least = 1e9L;
    for (int n = simd::kFusedMulAdd ? 1 : 0; n <= h; ++n) {
        Products<T> r{n, n == 0 ? T{1} : static_cast<T>(sine[j * n % N]), {}};
        long double squares = 0, gain = 0, roundings = 0;
        for (int k = 1; k <= h; ++k) {
            const long double divisor = r.divisor, s = sine[j * k % N], c = cosine[j * k % N];
            r.ratio[k] = static_cast<T>(s / divisor);
            const long double error = (divisor * r.ratio[k] - s) / kUnit;
            squares += error * error;
            gain += error * s + (static_cast<T>(c) - c) / kUnit * c;
            if (!simd::kFusedMulAdd && n != 0 && k != n) roundings += kRounding * s * s;
        }
        const long double cost = squares + roundings - gain * gain * 2 / N;
        if (cost < least) {
            least = cost;
            best = r;
        }
    }
    return best;
}

// Bins j and N-j: p -+ i * sum of b[k] * sin(j*k).
template <Direction D, int N, int j, class C>
[[gnu::always_inline]] inline void addSines(C p, const C (&b)[(N + 1) / 2], C& low, C& high) {
    using V = typename C::Part;
    using T = typename V::Scalar;
    constexpr Order<N> order = ascending<N>(kUnitRoots<T, N>.sine, j);
    constexpr Products<T> sines = bestProducts<T, N>(j);
    constexpr int first = sines.n > 0 ? sines.n : order.k[0];
    C q = sines.n > 0 ? b[first] : b[first] * V::broadcast(sines.ratio[first]);
#pragma GCC unroll 16
    for (const int k : order.k)
        if (k != first) q = fft::addScaled(q, b[k], V::broadcast(sines.ratio[k]));
    if constexpr (simd::kFusedMulAdd) {
        low = fft::addQuarterScaled<D>(p, q, V::broadcast(sines.divisor));
        high = fft::subQuarterScaled<D>(p, q, V::broadcast(sines.divisor));
    } else {
        if constexpr (sines.n > 0) q = q * V::broadcast(sines.divisor);
        low = fft::addQuarter<D>(p, q);
        high = fft::subQuarter<D>(p, q);
    }
}

// With a = x[k] + x[N-k] and b = x[k] - x[N-k]: X[j] = x[0] + sum of a*cos -+ i * sum of b*sin.
template <Direction D, int N, class C>
[[gnu::always_inline]] inline void oddButterfly(C (&x)[N]) {
    constexpr int h = (N - 1) / 2;
    C a[h + 1], b[h + 1];
    const C x0 = x[0];
#pragma GCC unroll 16
    for (int k = 1; k <= h; ++k) {
        a[k] = x[k] + x[N - k];
        b[k] = x[k] - x[N - k];
        x[0] = x[0] + a[k];
    }
    simd::unroll<h>([&](auto i) __attribute__((always_inline)) {
        constexpr int j = i + 1;
        addSines<D, N, j>(addCosines<N, j>(x0, a), b, x[j], x[N - j]);
    });
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

// As those of a prime. Bins 3 and 6 see a third of a turn only, and so do points 3 and 6 in all
// others: three by three would need rotations, whose errors make up a quarter.
template <Direction D, class C>
[[gnu::always_inline]] inline void butterfly9(C (&x)[9]) {
    using V = typename C::Part;
    const V minusHalf = V::broadcast(-0.5f);
    const V sine3 = V::broadcast(kUnitRoots<typename V::Scalar, 9>.sine[3]);
    C a[5], b[5];
#pragma GCC unroll 16
    for (int k = 1; k <= 4; ++k) {
        a[k] = x[k] + x[9 - k];
        b[k] = x[k] - x[9 - k];
    }
    const C others = a[1] + a[2] + a[4], thirds = x[0] + a[3];
    const C p = fft::addScaled(x[0], a[3], minusHalf);
    const C p3 = fft::addScaled(thirds, others, minusHalf), q3 = b[1] - b[2] + b[4];
    x[0] = thirds + others;
    x[3] = fft::addQuarterScaled<D>(p3, q3, sine3);
    x[6] = fft::subQuarterScaled<D>(p3, q3, sine3);
    addSines<D, 9, 1>(addCosines<9, 1, 3>(p, a), b, x[1], x[8]);
    addSines<D, 9, 2>(addCosines<9, 2, 3>(p, a), b, x[2], x[7]);
    addSines<D, 9, 4>(addCosines<9, 4, 3>(p, a), b, x[4], x[5]);
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
