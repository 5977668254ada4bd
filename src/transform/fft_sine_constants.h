// Sines and cosines at compile time.
#pragma once

namespace zep::ZEP_VARIANT {

constexpr double kTwoPi = 6.283185307179586;

// Taylor series; up to an eighth of a turn the terms left out are below 2^-70.
constexpr double seriesSine(double x) {
    double term = x, sum = x;
    for (int n = 2; n <= 20; n += 2) sum += term *= -x * x / (n * (n + 1));
    return sum;
}
constexpr double seriesCosine(double x) {
    double term = 1.0, sum = 1.0;
    for (int n = 1; n <= 21; n += 2) sum += term *= -x * x / (n * (n + 1));
    return sum;
}

// sin(2*pi*k/T) for k = 0 .. T/4, the entry of a quarter-wave table.
constexpr float quarterSine(int k, int T) {
    const double step = kTwoPi / T;
    return static_cast<float>(k <= T / 8 ? seriesSine(k * step) : seriesCosine((T / 4 - k) * step));
}

// cos(2*pi*k/T) and sin(2*pi*k/T), T a multiple of 8, k from 0.
constexpr float constantSine(int k, int T) {
    k %= T;
    if (k >= T / 2) return -constantSine(k - T / 2, T);
    return quarterSine(k <= T / 4 ? k : T / 2 - k, T);
}
constexpr float constantCosine(int k, int T) { return constantSine(k + T / 4, T); }

}  // namespace zep::ZEP_VARIANT
