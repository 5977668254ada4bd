// What the G.726 encoder and decoder have in common: the adaptive quantizer, its scale factor and
// speed control, and the step from one sample to the next.
#pragma once

#include <cstdint>

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
    int quantize(int difference) const {
        const int d = wrap16(difference);
        const int m = d == -32768 ? 32767 : magnitude(d);
        const int exponent = m == 0 ? 0 : bitLength(static_cast<std::uint32_t>(m)) - 1;
        const int logarithm = exponent << 7 | ((m << 7 >> exponent) & 127);
        const int normalised = logarithm - (y_ >> 2);
        int code = 0;
        for (int i = 0; i + 1 < kRate.signBit(); ++i) code += normalised >= kRate.decisions[i];
        if (d < 0) code ^= kRate.codeMask();
        // At the higher rates all ones is the code of nothing, whatever the sign.
        return kRate.bits > 2 && code == 0 ? kRate.codeMask() : code;
    }

    // The reconstructed signal, if the sample has this code.
    std::int16_t reconstruct(int code) const { return wrap16(estimate() + difference(code)); }

    // Moves on by a sample of this code.
    void advance(int code) {
        const int dqSign = (code & kRate.signBit()) != 0;
        const int dq = difference(code), dqMagnitude = magnitude(dq);
        const bool transition = td_ && dqMagnitude > transitionThreshold();

        const int rise = y_ + ((kRate.w32[code] - y_) >> 5);
        yu_ = rise < 544 ? 544 : rise > 5120 ? 5120 : rise;
        yl_ += yu_ + (-yl_ >> 6);

        const bool tone = predictor_.template update<kRate.leakShift>(
            dq, dqSign, reconstruct(code), wrap16((estimate_.zeros >> 1) + dq), transition);
        td_ = tone && !transition;

        dms_ += (kRate.f512[code] - dms_) >> 5;
        dml_ += (4 * kRate.f512[code] - dml_) >> 7;
        const bool fast = y_ < 1536 || magnitude(4 * dms_ - dml_) >= dml_ >> 3 || tone;
        ap_ = transition ? 256 : ap_ + (((fast ? 512 : 0) - ap_) >> 4);
        predict();
    }

private:
    // Estimate and scale factor of the coming sample.
    void predict() {
        estimate_ = predictor_.estimate();
        const int al = ap_ >= 256 ? 64 : ap_ >> 2, slow = yl_ >> 6, difference = yu_ - slow;
        const int step = al * magnitude(difference) >> 6;
        y_ = slow + (difference < 0 ? -step : step);
    }

    // The quantized difference.
    int difference(int code) const {
        const int log = kRate.output[code] + (y_ >> 2);
        const int m = log < 0 ? 0 : ((log & 127) + 128) << 7 >> (14 - (log >> 7));
        return code & kRate.signBit() ? -m : m;
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
