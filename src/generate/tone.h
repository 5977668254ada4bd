// Sampled sinusoids by sums and differences of angles.
//
// Around a centre whose samples x and quadratures y are known, L neighbouring ones as the lanes of a
// vector, the samples at the distances d and -d are
//     cos(d*w) x - sin(d*w) y    and    cos(d*w) x + sin(d*w) y :
// one product and one sum each, of which none waits for another one. A group takes as many distances
// as the table holds to both sides; its centre is turned on to that of the next group, and after a
// number of groups it comes from the C library's sine and cosine again. Everything stays in double
// precision up to the sample.
//
// The accurate form asks the library every 8192 samples, the fast one four times as seldom.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/complex.h"
#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT::tone {

using V = simd::Native<double>;

inline constexpr double kTwoPi = 6.283185307179586;
inline constexpr int kDistances = 32;  // to either side of a centre
inline constexpr int kGroup = 2 * kDistances * V::lanes;
inline constexpr int kToAnchorAccurate = 8192, kToAnchorFast = 32768;
static_assert(kToAnchorAccurate % kGroup == 0);

struct Phasor {
    double re, im;

    friend Phasor operator*(Phasor a, Phasor b) {
        return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
    }
};

// What a call generates: magn * exp(i * (2 pi * freq * n + phase)).
class Signal {
public:
    Signal(double magn, double freq, double phase) : magn_(magn), phase_(phase) {
        // Of a NaN only the rest is one, which is enough.
        const double scaled = freq < 0.5 ? freq * 0x1p64 : 0.0;
        turns_ = static_cast<std::uint64_t>(scaled);
        rest_ = freq - static_cast<double>(turns_) * 0x1p-64;
    }
    // At sample n. Whole turns drop out of the integer product, so that only their fraction is
    // rounded, however long the signal.
    Phasor at(std::ptrdiff_t n) const {
        const auto fraction = static_cast<std::int64_t>(turns_ * static_cast<std::uint64_t>(n));
        const double turns =
            static_cast<double>(fraction) * 0x1p-64 + rest_ * static_cast<double>(n);
        const double angle = kTwoPi * turns + phase_;
        return {magn_ * std::cos(angle), magn_ * std::sin(angle)};
    }

private:
    double magn_, phase_;
    std::uint64_t turns_;  // per sample, in units of 2^-64
    double rest_;          // and what is below them
};

// Fills cosines and sines with the phasors first * step^k, k < count. Each doubling of their number
// is one turn.
inline void fillTurns(double* cosines, double* sines, int count, Phasor first, Phasor step) {
    cosines[0] = first.re, sines[0] = first.im;
    for (int have = 1; have < count; have *= 2) {
        for (int k = 0; k < have && k + have < count; ++k) {
            const Phasor next = Phasor{cosines[k], sines[k]} * step;
            cosines[k + have] = next.re, sines[k + have] = next.im;
        }
        step = step * step;
    }
}

// A vector of neighbouring samples and their quadratures.
struct Samples {
    V re, im;

    [[gnu::always_inline]] Samples turned(V c, V s) const {
        return {re * c - im * s, re * s + im * c};
    }
};

// The frequency's own: what does not depend on where a signal stands.
struct Turns {
    alignas(64) double laneCosines[V::lanes];
    alignas(64) double laneSines[V::lanes];
    // Of the distances (k + 1/2) * L.
    alignas(64) double cosines[kDistances];
    alignas(64) double sines[kDistances];

    Turns(const Signal& unit, int distances) {
        constexpr int L = V::lanes;
        fillTurns(laneCosines, laneSines, L, {1.0, 0.0}, unit.at(1));
        fillTurns(cosines, sines, distances, {laneCosines[L / 2], laneSines[L / 2]}, unit.at(L));
    }
    Samples neighbours(Phasor first) const {
        const V re = V::broadcast(first.re), im = V::broadcast(first.im);
        return Samples{re, im}.turned(V::loadAligned(laneCosines), V::loadAligned(laneSines));
    }
};

// Two vectors of samples, one behind the other; kParts is 2 where samples are complex.
template <int kParts>
[[gnu::always_inline]] inline void put(Samples a, Samples b, double* dst) {
    constexpr int L = V::lanes;
    if constexpr (kParts == 1) {
        a.re.store(dst);
        b.re.store(dst + L);
    } else {
        interleaveFront(a.re, a.im).store(dst);
        interleaveBack(a.re, a.im).store(dst + L);
        interleaveFront(b.re, b.im).store(dst + 2 * L);
        interleaveBack(b.re, b.im).store(dst + 3 * L);
    }
}
template <int kParts>
[[gnu::always_inline]] inline void put(Samples a, Samples b, float* dst) {
    const auto re = narrow(a.re, b.re);
    if constexpr (kParts == 1) {
        re.store(dst);
    } else {
        const auto im = narrow(a.im, b.im);
        interleaveFront(re, im).store(dst);
        interleaveBack(re, im).store(dst + 2 * V::lanes);
    }
}

// The samples within `distances` vectors of the centre, an even number; the centre stands half a
// vector before their middle, so that vectors before it mirror those behind it.
template <int kParts, class T>
[[gnu::always_inline]] inline void group(const Turns& turns, Samples centre, int distances,
                                         T* dst) {
    constexpr int kAhead = 2 * V::lanes * kParts;
    T *up = dst + distances / 2 * kAhead, *down = up;
    for (int k = 0; k < distances; k += 2, up += kAhead) {
        Samples before[2], behind[2];
        simd::unroll<2>([&](auto i) {
            const V c = V::broadcast(turns.cosines[k + i]), s = V::broadcast(turns.sines[k + i]);
            const V re = c * centre.re;
            behind[i].re = negMulAdd(s, centre.im, re);
            before[i].re = mulAdd(s, centre.im, re);
            if constexpr (kParts == 2) {
                const V im = c * centre.im;
                behind[i].im = mulAdd(s, centre.re, im);
                before[i].im = negMulAdd(s, centre.re, im);
            }
        });
        put<kParts>(behind[0], behind[1], up);
        down -= kAhead;
        put<kParts>(before[1], before[0], down);
    }
}

template <int kParts, class T>
inline void generate(double magn, double freq, double phase, T* dst, std::ptrdiff_t len,
                     int toAnchor) {
    constexpr int L = V::lanes;
    const Signal signal(magn, freq, phase), unit(1.0, freq, 0.0);
    const auto distancesFor = [](std::ptrdiff_t count) {
        return count >= kGroup ? kDistances : static_cast<int>((count + 4 * L - 1) / (4 * L)) * 2;
    };
    const Turns turns(unit, distancesFor(len));
    const auto centreOf = [&](std::ptrdiff_t n, int distances) {
        return turns.neighbours(signal.at(n + distances * L - L / 2));
    };
    std::ptrdiff_t n = 0;
    if (len >= kGroup) {
        const Phasor turn = unit.at(kGroup);
        const V c = V::broadcast(turn.re), s = V::broadcast(turn.im);
        while (len - n >= kGroup) {
            Samples centre = centreOf(n, kDistances);
            const std::ptrdiff_t left = (len - n) / kGroup * kGroup;
            const std::ptrdiff_t end = n + (left < toAnchor ? left : toAnchor);
            for (; n < end; n += kGroup) {
                group<kParts>(turns, centre, kDistances, dst + n * kParts);
                centre = centre.turned(c, s);
            }
        }
    }
    if (const std::ptrdiff_t rest = len - n; rest > 0) {
        T last[kGroup * kParts];
        const int distances = distancesFor(rest);
        group<kParts>(turns, centreOf(n, distances), distances, last);
        __builtin_memcpy(dst + n * kParts, last,
                         static_cast<std::size_t>(rest) * kParts * sizeof(T));
    }
}

// The entry of every form: T is the real type, D the element.
template <class T, class D>
inline ZepStatus tone(D* pDst, int len, T magn, T rFreq, T* pPhase, ZepHintAlgorithm hint) {
    if (pPhase == nullptr) return zepStsNullPtrErr;
    // A NaN fails none of these comparisons and gives NaN throughout.
    if (magn <= 0) return zepStsToneMagnErr;
    if (rFreq < 0 || rFreq >= T(0.5)) return zepStsToneFreqErr;
    const auto phase = static_cast<double>(simd::readAny(pPhase));
    if (phase < 0 || phase >= kTwoPi) return zepStsTonePhaseErr;
    if (pDst == nullptr) return zepStsNullPtrErr;
    if (len < 1) return zepStsSizeErr;

    const auto freq = static_cast<double>(rFreq);
    const double end = len * (freq * kTwoPi) + phase;
    const T next = static_cast<T>(end - std::floor(0.15915494309189535 * end) * kTwoPi);
    simd::writeAny(pPhase, next < 0 || static_cast<double>(next) >= kTwoPi ? T{0} : next);
    constexpr int kParts = sizeof(D) / sizeof(T);
    // The value of that name is the one that asks for the accurate form here.
    generate<kParts>(static_cast<double>(magn), freq, phase, reinterpret_cast<T*>(pDst), len,
                     hint == zepAlgHintFast ? kToAnchorAccurate : kToAnchorFast);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT::tone
