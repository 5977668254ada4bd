#include "design/design_loops.h"

#include <cmath>

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

constexpr double kPi = 3.141592653589793;

template <class F>
[[gnu::always_inline]] inline void scale(Zep32f* x, int n, F factor) {
    const float step = static_cast<float>(2 * kPi / (n - 1));
    for (int i = 0; i < n; ++i) x[i] *= factor(std::cos(static_cast<float>(i) * step));
}

void bartlett(Zep32f* x, int n) {
    const float step = 2.0f / static_cast<float>(n - 1);
    for (int i = 0; i < n; ++i) x[i] *= 1.0f - std::fabs(static_cast<float>(i) * step - 1.0f);
}
void hann(Zep32f* x, int n) {
    scale(x, n, [](float c) { return 0.5f - 0.5f * c; });
}
void hamming(Zep32f* x, int n) {
    scale(x, n, [](float c) { return 0.54f - 0.46f * c; });
}
void blackman(Zep32f* x, int n) {
    scale(x, n, [](float c) { return 0.34f - 0.5f * c + 0.16f * c * c; });
}
void hammingComplex(Zep32fc* x, int n) {
    const float step = static_cast<float>(2 * kPi / (n - 1));
    for (int i = 0; i < n; ++i) {
        const float w = 0.54f - 0.46f * std::cos(static_cast<float>(i) * step);
        x[i].re *= w;
        x[i].im *= w;
    }
}

double besselI0(double x) {
    const double q = x * x / 4;
    double sum = 1, term = 1;
    for (int k = 1; term > 1e-9 * sum; ++k) {
        term *= q / (static_cast<double>(k) * k);
        sum += term;
    }
    return sum;
}
void kaiser(Zep32f* x, int n, Zep32f alpha) {
    const double a = alpha, scale = 1 / besselI0(a * (n - 1) / 2);
    for (int i = 0; i < n / 2; ++i) {
        const auto w = static_cast<Zep32f>(
            scale * besselI0(a * std::sqrt(static_cast<double>(i) * (n - 1 - i))));
        x[i] *= w;
        x[n - 1 - i] *= w;
    }
}

void multiply(Zep32f* x, const Zep32f* window, int n) {
    for (int i = 0; i < n; ++i) x[i] *= window[i];
}

template <class Ideal>
[[gnu::always_inline]] inline void design(double* taps, int n, double centre, Ideal ideal) {
    const double middle = (n - 1) / 2.0, step = 2 * kPi / (n - 1);
    for (int i = 0; i < n; ++i) {
        const double m = i - middle;
        taps[i] = ideal(m) * (0.54 - 0.46 * std::cos(i * step));
    }
    if (n % 2 != 0) taps[n / 2] = centre;
}
void lowpass(double freq, double* taps, int n) {
    design(taps, n, 2 * freq,
           [=](double m) { return std::sin(2 * kPi * freq * m) / (kPi * m + 1e-300); });
    double sum = 0;
    for (int i = 0; i < n; ++i) sum += taps[i];
    for (int i = 0; i < n; ++i) taps[i] /= sum;
}
void bandpass(double low, double high, double* taps, int n) {
    design(taps, n, 2 * (high - low), [=](double m) {
        return (std::sin(2 * kPi * high * m) - std::sin(2 * kPi * low * m)) / (kPi * m + 1e-300);
    });
    double gain = 0;
    for (int i = 0; i < n; ++i)
        gain += taps[i] * std::cos(kPi * (low + high) * (i - (n - 1) / 2.0));
    for (int i = 0; i < n; ++i) taps[i] /= gain;
}

}  // namespace

extern const DesignPeers designLoops{bartlett, hann,     hamming, blackman, hammingComplex,
                                     kaiser,   multiply, lowpass, bandpass};

}  // namespace zep::bench::ZEP_PEER_LEVEL
