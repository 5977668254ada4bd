// Sampled sinusoids by a recurrence.
//
// For any sinusoid x[k] = 2 cos(L*w) x[k - L] - x[k - 2*L]: L neighbouring samples advance together,
// as the lanes of several vectors, whose chains hide one another's latency. A block of 1024 samples
// starts from an anchor, the sinusoid's value and that of its quadrature at its first sample; the
// first 2*L samples are the anchor turned by a table of exp(i*k*w). Everything stays in double
// precision: in single precision the recurrence drifts where 2 cos(L*w) is near 2 or -2.
//
// The anchors of the accurate form are the C library's sine and cosine at every block; those of the
// fast form are turned from block to block, which costs one rounding a block.
#pragma once

#include <cmath>
#include <cstddef>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/complex.h"
#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT::tone {

using V = simd::Native<double>;

inline constexpr double kTwoPi = 6.283185307179586;
inline constexpr int kBlock = 1024;  // samples between anchors
inline constexpr int kVectors = 4;   // of a step
inline constexpr int kStep = kVectors * V::lanes;

struct Phasor {
    double re, im;

    friend Phasor operator*(Phasor a, Phasor b) {
        return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
    }
};

inline Phasor phasor(double magn, double angle) {
    return {magn * std::cos(angle), magn * std::sin(angle)};
}

// What a call generates: magn * exp(i * (2 pi * freq * n + phase)).
struct Signal {
    double magn;
    double freq;  // cycles per sample
    double phase;

    // At sample n, a multiple of kBlock. The turns are formed in two exact parts, so that only their
    // fraction is rounded, however long the signal.
    Phasor at(std::ptrdiff_t n) const {
        const auto count = static_cast<double>(n);
        const double coarse = static_cast<double>(static_cast<float>(freq));
        const double turns = count * coarse, rest = count * (freq - coarse);
        return phasor(magn, kTwoPi * (turns - std::floor(turns) + rest) + phase);
    }
};

// exp(i*k*w) for k = 0 .. 2 * kStep - 1, parts apart. Each doubling of the length is one rotation.
struct Turns {
    static constexpr int kCount = 2 * kStep;
    alignas(64) double cosines[kCount];
    alignas(64) double sines[kCount];
    double stepFactor;      // 2 cos(kStep * w)
    double halfStepFactor;  // 2 cos(kStep / 2 * w)

    explicit Turns(double w) {
        cosines[0] = 1.0, sines[0] = 0.0;
        Phasor turn = phasor(1.0, w);
        for (int length = 1; length < kCount; length *= 2) {
            for (int k = 0; k < length; ++k) {
                const Phasor next = Phasor{cosines[k], sines[k]} * turn;
                cosines[k + length] = next.re, sines[k + length] = next.im;
            }
            turn = turn * turn;
        }
        stepFactor = 2.0 * cosines[kStep];
        halfStepFactor = 2.0 * cosines[kStep / 2];
    }
};

// kStep doubles of the recurrence: as many samples of a real tone, half as many of a complex one.
struct Step {
    V x[kVectors];
};

// The first steps of a block, first = 0 or 1.
template <bool kComplex>
[[gnu::always_inline]] inline Step firstStep(const Turns& turns, Phasor anchor, int first) {
    const V re = V::broadcast(anchor.re), im = V::broadcast(anchor.im);
    Step step;
    if constexpr (kComplex) {
        simd::unroll<kVectors / 2>([&](auto k) {
            const int at = first * kStep / 2 + k * V::lanes;
            const V c = V::loadAligned(turns.cosines + at), s = V::loadAligned(turns.sines + at);
            const V x = c * re - s * im, y = c * im + s * re;
            step.x[2 * k] = interleaveFront(x, y);
            step.x[2 * k + 1] = interleaveBack(x, y);
        });
    } else {
        simd::unroll<kVectors>([&](auto k) {
            const int at = first * kStep + k * V::lanes;
            step.x[k] =
                V::loadAligned(turns.cosines + at) * re - V::loadAligned(turns.sines + at) * im;
        });
    }
    return step;
}

// Stores n of the step's doubles, 1 <= n <= kStep.
inline void put(const Step& step, double* dst, std::ptrdiff_t n) {
    if (n >= kStep) {
        simd::unroll<kVectors>([&](auto k) { step.x[k].store(dst + k * V::lanes); });
        return;
    }
    simd::unroll<kVectors>([&](auto k) {
        const std::ptrdiff_t rest = n - k * V::lanes;
        if (rest > 0)
            step.x[k].storePartial(dst + k * V::lanes,
                                   static_cast<int>(rest < V::lanes ? rest : V::lanes));
    });
}
inline void put(const Step& step, float* dst, std::ptrdiff_t n) {
    using F = simd::Vec<float, 2 * V::lanes>;
    simd::unroll<kVectors / 2>([&](auto k) {
        const F x = narrow(step.x[2 * k], step.x[2 * k + 1]);
        const std::ptrdiff_t rest = n - k * F::lanes;
        if (rest >= F::lanes)
            x.store(dst + k * F::lanes);
        else if (rest > 0)
            x.storePartial(dst + k * F::lanes, static_cast<int>(rest));
    });
}

// One block: count doubles of the recurrence, at most kBlock samples.
template <bool kComplex, class T>
[[gnu::always_inline]] inline void block(const Turns& turns, Phasor anchor, T* dst,
                                         std::ptrdiff_t count) {
    const V factor = V::broadcast(kComplex ? turns.halfStepFactor : turns.stepFactor);
    Step older = firstStep<kComplex>(turns, anchor, 0);
    Step newer = firstStep<kComplex>(turns, anchor, 1);
    for (; count > kStep; count -= kStep, dst += kStep) {
        put(older, dst, kStep);
        simd::unroll<kVectors>([&](auto k) {
            const V next = factor * newer.x[k] - older.x[k];
            older.x[k] = newer.x[k];
            newer.x[k] = next;
        });
    }
    put(older, dst, count);
}

template <bool kComplex, class T>
inline void generate(const Signal& signal, T* dst, std::ptrdiff_t len, bool accurate) {
    constexpr int kParts = kComplex ? 2 : 1;
    const double w = signal.freq * kTwoPi;
    const Turns turns(w);
    Phasor anchor = signal.at(0);
    const Phasor blockTurn = Signal{1.0, signal.freq, 0.0}.at(kBlock);
    for (std::ptrdiff_t n = 0; n < len; n += kBlock) {
        if (accurate && n != 0) anchor = signal.at(n);
        const std::ptrdiff_t count = len - n < kBlock ? len - n : kBlock;
        block<kComplex>(turns, anchor, dst + n * kParts, count * kParts);
        if (!accurate) anchor = anchor * blockTurn;
    }
}

// The entry of every form: T is the real type, D the element.
template <class T, class D>
inline ZepStatus tone(D* pDst, int len, T magn, T rFreq, T* pPhase, ZepHintAlgorithm hint) {
    constexpr bool kComplex = sizeof(D) != sizeof(T);
    if (pPhase == nullptr) return zepStsNullPtrErr;
    // A NaN fails none of these comparisons and gives NaN throughout.
    if (magn <= 0) return zepStsToneMagnErr;
    if (rFreq < 0 || rFreq >= T(0.5)) return zepStsToneFreqErr;
    const auto phase = static_cast<double>(simd::readAny(pPhase));
    if (phase < 0 || phase >= kTwoPi) return zepStsTonePhaseErr;
    if (pDst == nullptr) return zepStsNullPtrErr;
    if (len < 1) return zepStsSizeErr;

    const Signal signal{magn, rFreq, phase};
    const double end = len * (signal.freq * kTwoPi) + phase;
    const T next = static_cast<T>(end - std::floor(0.15915494309189535 * end) * kTwoPi);
    simd::writeAny(pPhase, next < 0 || static_cast<double>(next) >= kTwoPi ? T{0} : next);
    generate<kComplex>(signal, reinterpret_cast<T*>(pDst), len, hint == zepAlgHintFast);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT::tone
