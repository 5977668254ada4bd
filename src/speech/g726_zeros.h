// The zero section of G.726's predictor: six coefficients over the quantized differences. The products
// of a sample are formed side by side, in the recommendation's short floating form (blocks FMULT,
// UPB, XOR).
//
// A tap is a word of 16 bits: sign, exponent of 4 bits, mantissa of 6. A coefficient's exponent and
// mantissa are those of the float that its magnitude converts to.
#pragma once

#include <cstdint>

#include "simd/convert.h"
#include "simd/reduce.h"
#include "simd/shuffle.h"
#include "simd/vec.h"
#include "speech/g726_state.h"

namespace zep::ZEP_VARIANT::g726 {

class ZeroSection {
    using Words = simd::Vec<std::int16_t, 8>;
    using Ints = simd::Vec<std::int32_t, 4>;
    using Floats = simd::Vec<float, 4>;

public:
    static constexpr int kTaps = 6;

    explicit ZeroSection(const StateWords& s) {
        std::int16_t b[8] = {}, taps[8] = {};
        for (int i = 0; i < kTaps; ++i) {
            b[i] = s.coefficients[i];
            taps[i] = static_cast<std::int16_t>((s.samples[i] & 0x3FF) | (s.signs[i] & 1) << 15);
        }
        b_ = Words::load(b);
        taps_ = Words::load(taps);
    }
    void save(StateWords& s) const {
        std::int16_t b[8], taps[8];
        b_.store(b);
        taps_.store(taps);
        for (int i = 0; i < kTaps; ++i) {
            s.coefficients[i] = b[i];
            s.samples[i] = static_cast<std::int16_t>(taps[i] & 0x3FF);
            s.signs[i] = taps[i] < 0;
        }
    }

    // The sum of the products, modulo 2^16 what it should be.
    int sum() const {
        alignas(16) static constexpr std::int16_t kOnes[8] = {1, 1, 1, 1, 1, 1, 0, 0};
        const Words sign = b_ >> 15;
        const Words m = (((b_ >> 2) ^ sign) - sign) & Words::broadcast(0x1FFF);
        const Words mantissa = taps_ & Words::broadcast(63);
        const Words exponent = (taps_ >> 6) & Words::broadcast(15);
        const Words magnitude = simd::narrowSaturated<std::int16_t>(
            product(lower(m), lower(mantissa), lower(exponent)),
            product(upper(m), upper(mantissa), upper(exponent)));
        const Words minus = sign ^ (taps_ >> 15);
        return reduceAdd(mulAddPairs((magnitude ^ minus) - minus, Words::loadAligned(kOnes)));
    }

    // The coefficients move by `step`, which is 128 with the sign of the quantized difference, or
    // 0 without one, towards taps of the same sign.
    template <int leakShift>
    void adapt(int step) {
        const Words minus = taps_ >> 15;
        const Words steps = Words::broadcast(static_cast<std::int16_t>(step));
        b_ = b_ - (b_ >> leakShift) + ((steps ^ minus) - minus);
    }
    void clear() { b_ = Words::zero(); }
    // The newest tap; the oldest one leaves.
    void push(int tap) {
        const Words newest = Words::broadcast(static_cast<std::int16_t>(tap));
        taps_ = shuffle(newest, taps_, [](int lane) { return lane == 0 ? 0 : 7 + lane; });
    }

private:
    static Ints lower(Words a) { return simd::bitsIn<std::int32_t>(zipLow(a, Words::zero())); }
    static Ints upper(Words a) { return simd::bitsIn<std::int32_t>(zipHigh(a, Words::zero())); }
    static Ints product(Ints m, Ints mantissa, Ints exponent) {
        // Of 0 the exponent is that of a fraction of one half, and the mantissa its own.
        const Ints bits =
            simd::lanesAs<std::int32_t>(simd::max(toFloat(m), Floats::broadcast(0.5f)));
        const Ints normalised = ((bits >> 18) & Ints::broadcast(31)) | Ints::broadcast(32);
        const Ints word = (mulAddPairs(simd::bitsIn<std::int16_t>(normalised),
                                       simd::bitsIn<std::int16_t>(mantissa)) +
                           Ints::broadcast(48)) >>
                          4;
        // word * 2^(length + exponent - 19), exact; what leaves 15 bits is lost.
        const Floats half = simd::lanesAs<float>(bits & Ints::broadcast(0x7F800000));
        const Floats scale = simd::lanesAs<float>((exponent + Ints::broadcast(127 - 18)) << 23);
        return toIntTruncated(toFloat(word) * (half * scale)) & Ints::broadcast(0x7FFF);
    }

    Words b_, taps_;
};

}  // namespace zep::ZEP_VARIANT::g726
