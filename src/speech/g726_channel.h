// What the G.726 encoder and decoder have in common: the adaptive quantizer, its scale factor and
// speed control, and the step from one sample to the next.
#pragma once

#include <cstdint>

#include "simd/compare.h"
#include "simd/vec.h"
#include "speech/fixed_point.h"
#include "speech/g726_predictor.h"
#include "speech/g726_state.h"
#include "speech/g726_tables.h"
#include "speech/state_memory.h"

namespace zep::ZEP_VARIANT::g726 {

template <int rateIndex>
class Channel {
public:
    static constexpr const Rate& kRate = kRates[rateIndex];

    explicit Channel(const StateWords& s)
        : predictor_(s), yl_(s.yl), yu_(s.yu), ap_(s.ap), dms_(s.dms), dml_(s.dml), td_(s.td != 0) {
        predict();
    }

    void save(StateWords& s) const {
        predictor_.save(s);
        s.yl = yl_;
        s.yu = wrap16(yu_), s.ap = wrap16(ap_), s.dms = wrap16(dms_), s.dml = wrap16(dml_);
        s.td = td_;
    }

    // The estimate of the next sample.
    int estimate() const { return estimate_.all >> 1; }

    // The code of a difference from the estimate, in 16 bits.
    [[gnu::always_inline]] int quantize(int difference) const {
        const int d = wrap16(difference), minus = d >> 31;
        const int m = d == -32768 ? 32767 : magnitude(d);
        const int exponent = bitLength(static_cast<std::uint32_t>(m | 1)) - 1;
        const int logarithm = exponent << 7 | ((m << 7 >> exponent) & 127);
        const int code = level(logarithm - (y_ >> 2)) ^ (minus & kRate.codeMask());
        // At the higher rates all ones is the code of nothing, whatever the sign.
        return kRate.bits > 2 && code == 0 ? kRate.codeMask() : code;
    }

    // The reconstructed signal, if the sample has this code.
    std::int16_t reconstruct(int code) const {
        return wrap16(estimate() + withSign(difference(code), minusOf(code)));
    }

    // Moves on by a sample of this code.
    [[gnu::always_inline]] void advance(int code) {
        const int m = difference(code), minus = minusOf(code), dq = withSign(m, minus);
        const bool transition = td_ && m > transitionThreshold();

        yu_ = clamp(y_ + ((kRate.w32[code] - y_) >> 5), 544, 5120);
        yl_ += yu_ + (-yl_ >> 6);

        const bool tone = predictor_.template update<kRate.leakShift>(
            m, minus, wrap16(estimate() + dq), wrap16((estimate_.zeros >> 1) + dq), transition);
        td_ = tone && !transition;

        dms_ += (kRate.f512[code] - dms_) >> 5;
        dml_ += (4 * kRate.f512[code] - dml_) >> 7;
        const int fast = (y_ < 1536) | (magnitude(4 * dms_ - dml_) >= dml_ >> 3) | tone;
        ap_ = transition ? 256 : ap_ + ((fast * 512 - ap_) >> 4);
        predict();
    }

private:
    // Estimate and scale factor of the coming sample.
    [[gnu::always_inline]] void predict() {
        estimate_ = predictor_.estimate();
        const int al = ap_ >= 256 ? 64 : ap_ >> 2, slow = yl_ >> 6, difference = yu_ - slow;
        const int step = al * magnitude(difference) >> 6;
        y_ = slow + withSign(step, difference >> 31);
    }

    // The magnitude code of a normalised logarithm: how many decisions it reaches.
    static int level(int normalised) {
        if constexpr (kRate.bits == 2) return normalised >= kRate.decisions[0];
        using Words = simd::Vec<std::int16_t, 8>;
        const Words x = Words::broadcast(static_cast<std::int16_t>(normalised));
        auto reached = bits(x >= Words::load(kRate.decisions));
        if constexpr (kRate.bits == 5) reached |= bits(x >= Words::load(kRate.decisions + 8)) << 8;
        return __builtin_ctz(~static_cast<std::uint32_t>(reached));
    }

    // -1 where the code's sign is that of a negative difference.
    static int minusOf(int code) { return -(code >> (kRate.bits - 1) & 1); }

    // The magnitude of the quantized difference.
    int difference(int code) const {
        const int log = kRate.output[code] + (y_ >> 2), notBelow = log < 0 ? 0 : log;
        const int m = ((notBelow & 127) + 128) << 7 >> (14 - (notBelow >> 7));
        return log < 0 ? 0 : m;
    }

    // Three quarters of what the slow scale factor lets expect.
    int transitionThreshold() const {
        const int exponent = yl_ >> 15, fraction = yl_ >> 10 & 31;
        const int threshold = exponent > 9 ? 31 << 10 : (32 + fraction) << exponent;
        return (threshold + (threshold >> 1)) >> 1;
    }

    Predictor predictor_;
    Estimate estimate_;
    int yl_, yu_, ap_, dms_, dml_;
    bool td_;
    int y_;
};

// Runs f with the channel of the state's rate, then keeps what it has become.
template <class F>
inline void withChannel(ZepG726State* pState, F f) {
    auto s = fetch<StateWords>(pState);
    const auto run = [&]<int rateIndex>() {
        Channel<rateIndex> channel(s);
        f(channel, s);
        channel.save(s);
    };
    switch (s.rateIndex) {
        case 0:
            run.template operator()<0>();
            break;
        case 1:
            run.template operator()<1>();
            break;
        case 2:
            run.template operator()<2>();
            break;
        default:
            run.template operator()<3>();
            break;
    }
    put(s, pState);
}

}  // namespace zep::ZEP_VARIANT::g726
