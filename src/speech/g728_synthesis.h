// The synthesis filter of G.728, order 50, in block floating point (Annex G blocks 9, 10, 22, 32):
// ringing, response to an excitation, and the memory of ten vectors with one exponent each.
#pragma once

#include <cstdint>

#include "speech/fixed_point.h"
#include "speech/g728_sums.h"
#include "speech/state_memory.h"

namespace zep::ZEP_VARIANT::g728 {

constexpr int kVectors = 10;
using SynthesisCoefficients = Words<5 * kVectors>;

struct ScaledVector {
    Vector5 x;
    int exponent;

    int peak() const {
        Extremes e;
        for (const int v : x.at) e.take(v);
        return e.peak();
    }

    // Shifts by so many places to the left, or to the right for a negative count.
    void shift(int count) {
        for (std::int16_t& v : x.at) v = sat16(shiftLeftSat32(v, count));
        exponent += count;
    }

    // A sample in Q2. More than 14 places to the right leave the sign.
    std::int16_t inQ2(int n) const { return sat16(shiftLeftSat32(x[n], 2 - exponent)); }
};

struct SynthesisMemory {
    Vector5 vectors[kVectors];  // newest vector first, each oldest sample first
    int exponents[kVectors];

    ScaledVector vector(int j) const { return {vectors[j], exponents[j]}; }

    void replaceNewest(const ScaledVector& v) {
        vectors[0] = v.x;
        exponents[0] = v.exponent;
    }

    void push(const ScaledVector& v) {
        for (int j = kVectors - 1; j > 0; --j) {
            vectors[j] = vectors[j - 1];
            exponents[j] = exponents[j - 1];
        }
        replaceNewest(v);
    }
};

// Brings the peak to 8192 .. 16383; zeros move 14 places. A negative peak of -16384 is in place.
inline void normaliseRinging(ScaledVector& z) {
    int peak = z.peak(), count = 0;
    if (peak == 0) {
        z.exponent += 14;
        return;
    }
    for (; peak >= 16384 || peak < -16384; peak >>= 1) --count;
    for (; peak < 8192 && peak > -8192; peak *= 2) ++count;
    z.shift(count);
}

// Response to no input. The past is aligned to its smallest exponent, each vector's sum on its own.
inline ScaledVector ringing(const SynthesisCoefficients& a, const SynthesisMemory& memory) {
    ScaledVector z{{}, memory.exponents[0]};
    for (int j = 1; j < kVectors; ++j)
        if (memory.exponents[j] < z.exponent) z.exponent = memory.exponents[j];
    for (int n = 0; n < 5; ++n) {
        Accumulator sum;
        for (int k = 0; k < n; ++k) sum.subtract(a[k], z.x[n - 1 - k]);
        for (int j = 0; j < kVectors; ++j) {
            const bool oldest = j == kVectors - 1;
            const int shift = memory.exponents[j] - z.exponent;
            if (oldest && shift >= 30) break;
            std::int64_t part = 0;
            for (int i = 0; i < (oldest ? 5 - n : 5); ++i)
                part -= a[n + 5 * j + i] * memory.vectors[j][4 - i];
            sum.addTerm(shiftRight(part, shift));
        }
        z.x[n] = sum.fromQ14();
    }
    normaliseRinging(z);
    return z;
}

// Response from rest. Where a sum leaves 28 bits and sign, excitation and response are halved.
inline ScaledVector responseFromRest(const SynthesisCoefficients& a, ScaledVector e) {
    constexpr std::int64_t limit = std::int64_t{1} << 28;
    ScaledVector u{{}, 0};
    for (int n = 0; n < 5;) {
        std::int64_t sum = e.x[n] * 16384;
        for (int k = 0; k < n; ++k) sum -= a[k] * u.x[n - 1 - k];
        if (sum < -limit || sum >= limit) {
            e.shift(-1);
            n = 0;
        } else {
            u.x[n++] = static_cast<std::int16_t>(sum >> 14);
        }
    }
    u.exponent = e.exponent;
    return u;
}

// Ringing plus response, limited to +-4095 and normalised to 14 bits: quantized speech.
inline ScaledVector quantizedSpeech(const ScaledVector& z, const ScaledVector& u) {
    const int e = z.exponent < u.exponent ? z.exponent : u.exponent;
    const std::int32_t high = shiftLeftSat32(4095, e);
    ScaledVector s{{}, e};
    for (int n = 0; n < 5; ++n) {
        const std::int64_t sum =
            shiftRight(z.x[n], z.exponent - e) + shiftRight(u.x[n], u.exponent - e);
        s.x[n] = sat16(sum > high ? high : sum < -high ? -high : sum);
    }
    s.shift(normShift(s.peak(), 14));
    return s;
}

}  // namespace zep::ZEP_VARIANT::g728
