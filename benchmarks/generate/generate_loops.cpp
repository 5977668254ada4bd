#include "generate/generate_loops.h"

#include <cmath>
#include <random>

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

constexpr double kTwoPi = 6.283185307179586;
constexpr int kPhasors = 64;

template <class T>
struct Phasors {
    alignas(64) T re[kPhasors], im[kPhasors];
    T c, s;

    Phasors(double freq, double phase)
        : c(static_cast<T>(std::cos(kTwoPi * freq * kPhasors))),
          s(static_cast<T>(std::sin(kTwoPi * freq * kPhasors))) {
        for (int k = 0; k < kPhasors; ++k) {
            re[k] = static_cast<T>(std::cos(kTwoPi * freq * k + phase));
            im[k] = static_cast<T>(std::sin(kTwoPi * freq * k + phase));
        }
    }
    [[gnu::always_inline]] void turn(int k) {
        const T next = re[k] * c - im[k] * s;
        im[k] = re[k] * s + im[k] * c;
        re[k] = next;
    }
};

template <class T>
void rotate(T* y, int n, double freq, double phase) {
    Phasors<T> p(freq, phase);
    int i = 0;
    for (; i + kPhasors <= n; i += kPhasors)
        for (int k = 0; k < kPhasors; ++k) {
            y[i + k] = p.re[k];
            p.turn(k);
        }
    for (int k = 0; i < n; ++i, ++k) y[i] = p.re[k];
}
template <class T, class C>
void rotateComplex(C* y, int n, double freq, double phase) {
    Phasors<T> p(freq, phase);
    int i = 0;
    for (; i + kPhasors <= n; i += kPhasors)
        for (int k = 0; k < kPhasors; ++k) {
            y[i + k].re = p.re[k];
            y[i + k].im = p.im[k];
            p.turn(k);
        }
    for (int k = 0; i < n; ++i, ++k) y[i] = C{p.re[k], p.im[k]};
}

void ramp(Zep32f* y, int n, Zep32f offset, Zep32f slope) {
    for (int i = 0; i < n; ++i) y[i] = static_cast<Zep32f>(i) * slope + offset;
}

[[gnu::always_inline]] inline Zep32s rounded(double x) {
    x = x > 0 ? x + 0.5 : x - 0.5;
    return static_cast<Zep32s>(x > 2147483647.0    ? 2147483647.0
                               : x < -2147483648.0 ? -2147483648.0
                                                   : x);
}
void rampInteger(Zep32s* y, int n, Zep32f offset, Zep32f slope) {
    for (int i = 0; i < n; ++i)
        y[i] = rounded(static_cast<double>(static_cast<Zep32f>(i) * slope + offset));
}
void slopeInteger(Zep32s* y, int n, Zep64f offset, Zep64f slope) {
    for (int i = 0; i < n; ++i) y[i] = rounded(i * slope + offset);
}

void normal(Zep32f* y, int n) {
    static std::mt19937 engine{12345};
    static std::normal_distribution<float> distribution{0.5f, 2.0f};
    for (int i = 0; i < n; ++i) y[i] = distribution(engine);
}

}  // namespace

extern const GeneratePeers generateLoops{rotate<Zep32f>, rotateComplex<Zep32f, Zep32fc>,
                                         rotate<Zep64f>, rotateComplex<Zep64f, Zep64fc>,
                                         ramp,           rampInteger,
                                         slopeInteger,   normal};

}  // namespace zep::bench::ZEP_PEER_LEVEL
