// The adaptive predictor of G.726: six zeros over the quantized differences, two poles over the
// reconstructed signal, in the recommendation's short floating form (blocks FMULT, ACCUM, FLOATA,
// FLOATB, UPA1, UPA2, UPB, LIMC, LIMD, TRIGB).
#pragma once

#include <cstdint>

#include "speech/fixed_point.h"
#include "speech/g726_state.h"

namespace zep::ZEP_VARIANT::g726 {

constexpr std::int16_t wrap16(int v) { return static_cast<std::int16_t>(v); }

// |v| for the logarithm and the floating form: the magnitude of -32768 is 32767, or 0.
constexpr int magnitude(int v) { return v < 0 ? -v : v; }

struct Estimate {
    std::int16_t zeros, all;  // sums of the zero section and of all eight products, doubled
};

class Predictor {
public:
    explicit Predictor(const StateWords& s) : pk1_(s.pk1), pk2_(s.pk2) {
        for (int i = 0; i < 8; ++i) {
            coefficient_[i] = s.coefficients[i];
            exponent_[i] = s.samples[i] >> 6 & 15;
            mantissa_[i] = s.samples[i] & 63;
            sign_[i] = s.signs[i] & 1;
        }
    }

    void save(StateWords& s) const {
        s.pk1 = wrap16(pk1_), s.pk2 = wrap16(pk2_);
        for (int i = 0; i < 8; ++i) {
            s.coefficients[i] = coefficient_[i];
            s.samples[i] = wrap16(exponent_[i] << 6 | mantissa_[i]);
            s.signs[i] = wrap16(sign_[i]);
        }
    }

    Estimate estimate() const {
        int zeros = 0, poles = 0;
        for (int i = 0; i < 6; ++i) zeros += product(i);
        for (int i = 6; i < 8; ++i) poles += product(i);
        return {wrap16(zeros), wrap16(zeros + poles)};
    }

    // Adapts to the quantized difference dq, whose code has the sign given, and the reconstructed
    // signal sr. `partial` is the reconstruction from the zero section alone. Returns whether a
    // narrow band signal is recognised, which a transition does not hide.
    template <int leakShift>
    bool update(int dq, int dqSign, int sr, std::int16_t partial, bool transition) {
        const int pk0 = partial < 0;
        const bool tone = updatePoles(partial, pk0, transition);
        pk2_ = pk1_, pk1_ = pk0;
        for (int i = 5; i >= 0; --i) {
            const int b = coefficient_[i];
            const int step = dq == 0 ? 0 : sign_[i] == dqSign ? 128 : -128;
            coefficient_[i] = transition ? std::int16_t{0} : wrap16(b - (b >> leakShift) + step);
        }
        for (int i = 5; i > 0; --i) moveTap(i, i - 1);
        setTap(0, magnitude(dq), dqSign);
        moveTap(7, 6);
        setTap(6, magnitude(sr) & 0x7FFF, sr < 0);
        return tone;
    }

private:
    int product(int i) const {
        const int m = magnitude(coefficient_[i] >> 2) & 0x1FFF;
        const int length = bitLength(static_cast<std::uint32_t>(m));
        const int normalised = m == 0 ? 32 : (m << 6) >> length;
        const int word = (normalised * mantissa_[i] + 48) >> 4;
        // An exponent above 26 shifts left, and what leaves 15 bits is lost.
        const int value = (word << 9) >> (28 - length - exponent_[i]) & 0x7FFF;
        return (coefficient_[i] < 0) != sign_[i] ? -value : value;
    }

    bool updatePoles(std::int16_t partial, int pk0, bool transition) {
        const int a1 = coefficient_[6], a2 = coefficient_[7];
        int newA1 = a1 - (a1 >> 8), newA2 = a2 - (a2 >> 7);
        if (partial != 0) {
            const int limited = a1 < -8191 ? -8191 : a1 > 8191 ? 8191 : a1;
            const int correlation = pk0 == pk1_ ? -4 * limited : 4 * limited;
            newA2 += (correlation + (pk0 == pk2_ ? 16384 : -16384)) >> 7;
            newA1 += pk0 == pk1_ ? 192 : -192;
        }
        newA2 = newA2 < -12288 ? -12288 : newA2 > 12288 ? 12288 : newA2;
        const int bound = 15360 - newA2;
        newA1 = newA1 < -bound ? -bound : newA1 > bound ? bound : newA1;
        coefficient_[6] = transition ? std::int16_t{0} : wrap16(newA1);
        coefficient_[7] = transition ? std::int16_t{0} : wrap16(newA2);
        return newA2 < -11776;
    }

    void moveTap(int to, int from) {
        exponent_[to] = exponent_[from];
        mantissa_[to] = mantissa_[from];
        sign_[to] = sign_[from];
    }

    void setTap(int to, int m, int sign) {
        exponent_[to] = bitLength(static_cast<std::uint32_t>(m));
        mantissa_[to] = m == 0 ? 32 : (m << 6) >> exponent_[to];
        sign_[to] = sign;
    }

    std::int16_t coefficient_[8];
    int exponent_[8], mantissa_[8], sign_[8];
    int pk1_, pk2_;
};

}  // namespace zep::ZEP_VARIANT::g726
