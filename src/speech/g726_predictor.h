// The adaptive predictor of G.726: six zeros over the quantized differences, two poles over the
// reconstructed signal, in the recommendation's short floating form (blocks FMULT, ACCUM, FLOATA,
// FLOATB, UPA1, UPA2, LIMC, LIMD, TRIGB; speech/g726_zeros.h).
//
// Zeros stand in vectors and poles in integers, whose chains are shorter: a sample waits for both.
// Signs are random, so nothing jumps on them.
#pragma once

#include <cstdint>

#include "speech/fixed_point.h"
#include "speech/g726_state.h"
#include "speech/g726_zeros.h"

namespace zep::ZEP_VARIANT::g726 {

constexpr std::int16_t wrap16(int v) { return static_cast<std::int16_t>(v); }

// |v| for the logarithm and the floating form: the magnitude of -32768 is 32767, or 0.
constexpr int magnitude(int v) { return v < 0 ? -v : v; }

// v, or -v where `minus` is -1: what a jump on random signs would cost more.
constexpr int withSign(int v, int minus) { return (v ^ minus) - minus; }

constexpr int clamp(int v, int low, int high) {
    const int notBelow = v < low ? low : v;
    return notBelow > high ? high : notBelow;
}

// The floating form of a sample of magnitude m: exponent of 4 bits, mantissa of 6.
constexpr int floatWord(int m) {
    const int exponent = bitLength(static_cast<std::uint32_t>(m));
    return exponent << 6 | (m == 0 ? 32 : (m << 6) >> exponent);
}

struct Estimate {
    std::int16_t zeros, all;  // sums of the zero section and of all eight products, doubled
};

class Predictor {
public:
    explicit Predictor(const StateWords& s) : zeros_(s), pk1_(s.pk1 & 1), pk2_(s.pk2 & 1) {
        for (int i = 0; i < 2; ++i) {
            a_[i] = s.coefficients[ZeroSection::kTaps + i];
            samples_[i] = s.samples[ZeroSection::kTaps + i] & 0x3FF;
            minus_[i] = -(s.signs[ZeroSection::kTaps + i] & 1);
        }
    }

    void save(StateWords& s) const {
        zeros_.save(s);
        s.pk1 = wrap16(pk1_), s.pk2 = wrap16(pk2_);
        for (int i = 0; i < 2; ++i) {
            s.coefficients[ZeroSection::kTaps + i] = wrap16(a_[i]);
            s.samples[ZeroSection::kTaps + i] = wrap16(samples_[i]);
            s.signs[ZeroSection::kTaps + i] = wrap16(minus_[i] & 1);
        }
    }

    [[gnu::always_inline]] Estimate estimate() const {
        const int zeros = zeros_.sum();
        return {wrap16(zeros), wrap16(zeros + (poleProduct(0) + poleProduct(1)))};
    }

    // Adapts to the quantized difference, of magnitude `dq` and with the sign of its code, and the
    // reconstructed signal sr. `partial` is the reconstruction from the zero section alone. Returns
    // whether a narrow band signal is recognised, which a transition does not hide.
    template <int leakShift>
    [[gnu::always_inline]] bool update(int dq, int dqMinus, int sr, std::int16_t partial,
                                       bool transition) {
        zeros_.adapt<leakShift>(withSign(dq == 0 ? 0 : 128, dqMinus));
        zeros_.push((dqMinus & 0x8000) | floatWord(dq));
        const bool tone = updatePoles(partial);
        if (transition) {
            zeros_.clear();
            a_[0] = a_[1] = 0;
        }
        pk2_ = pk1_, pk1_ = partial < 0;
        samples_[1] = samples_[0], minus_[1] = minus_[0];
        samples_[0] = floatWord(magnitude(sr) & 0x7FFF), minus_[0] = sr >> 31;
        return tone;
    }

private:
    int poleProduct(int i) const {
        const int m = magnitude(a_[i] >> 2) & 0x1FFF;
        const int length = bitLength(static_cast<std::uint32_t>(m));
        const int normalised = m == 0 ? 32 : (m << 6) >> length;
        const int word = (normalised * (samples_[i] & 63) + 48) >> 4;
        // An exponent above 26 shifts left, and what leaves 15 bits is lost.
        const int value = (word << 9) >> (28 - length - (samples_[i] >> 6)) & 0x7FFF;
        return withSign(value, (a_[i] >> 31) ^ minus_[i]);
    }

    bool updatePoles(std::int16_t partial) {
        const int a1 = a_[0], a2 = a_[1];
        int newA1 = a1 - (a1 >> 8), newA2 = a2 - (a2 >> 7);
        if (partial != 0) {
            // -1 where the signs differ.
            const int pk0 = partial < 0, minus1 = -(pk0 ^ pk1_), minus2 = -(pk0 ^ pk2_);
            const int correlation = withSign(-4 * clamp(a1, -8191, 8191), minus1);
            newA2 += (correlation + withSign(16384, minus2)) >> 7;
            newA1 += withSign(192, minus1);
        }
        newA2 = clamp(newA2, -12288, 12288);
        const int bound = 15360 - newA2;
        a_[0] = clamp(newA1, -bound, bound);
        a_[1] = newA2;
        return newA2 < -11776;
    }

    ZeroSection zeros_;
    int a_[2], samples_[2], minus_[2];  // of the poles
    int pk1_, pk2_;
};

}  // namespace zep::ZEP_VARIANT::g726
