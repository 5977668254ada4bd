// Sines and cosines at compile time.
#pragma once

namespace zep::ZEP_VARIANT::fft {

constexpr double kTwoPi = 6.283185307179586;

// Taylor series in extended precision, so that a rounding to double is right too; up to an eighth
// of a turn the terms left out are below 2^-70.
constexpr long double seriesSine(long double x) {
    long double term = x, sum = x;
    for (int n = 2; n <= 20; n += 2) sum += term *= -x * x / (n * (n + 1));
    return sum;
}
constexpr long double seriesCosine(long double x) {
    long double term = 1, sum = 1;
    for (int n = 1; n <= 21; n += 2) sum += term *= -x * x / (n * (n + 1));
    return sum;
}

// sin(2*pi*k/N) for k = 0 .. N/4, the entry of a quarter-wave table.
template <class T>
constexpr T quarterSine(int k, int N) {
    const long double step = 6.283185307179586476925286766559L / N;
    return static_cast<T>(k <= N / 8 ? seriesSine(k * step) : seriesCosine((N / 4 - k) * step));
}

// cos(2*pi*k/N) and sin(2*pi*k/N), N a multiple of 8, k from 0.
template <class T>
constexpr T constantSine(int k, int N) {
    k %= N;
    if (k >= N / 2) return -constantSine<T>(k - N / 2, N);
    return quarterSine<T>(k <= N / 4 ? k : N / 2 - k, N);
}
template <class T>
constexpr T constantCosine(int k, int N) {
    return constantSine<T>(k + N / 4, N);
}

}  // namespace zep::ZEP_VARIANT::fft
