#pragma once

#include <optional>
#include <span>
#include <vector>

#include "channel_stream.h"
#include "fir_stream.h"

namespace mozep_program {

// Changes the sampling rate of one channel by a ratio of whole numbers. How the stream is cut does
// not change a bit of the results.
//
// The lowpass has a Kaiser window: it is flat up to 0.94 of half the lower rate (20.7 kHz at 44100 Hz)
// and 130 dB down from half the lower rate on, so that nothing is mirrored; that is also how far down
// the rounding of its sums is, which are in single precision. Its delay is taken out: output n stands at the time n / toRate from the first input on.
// Before and behind the stream the signal counts as zero. All samples must be finite.
class RationalResampler final : public ChannelStream {
public:
    // The rates, divided by their greatest common divisor, are at most so large. Memory: about 2.5 KB
    // for each unit of the larger one, and twice that while the filter is made.
    static constexpr int kLargestFactor = 65536;

    // Rates above 0. Throws Failure if the reduced rates are too large.
    RationalResampler(int fromRate, int toRate);

    void add(std::span<const float> in, std::vector<float>& out) override;
    void finish(std::vector<float>& out) override;
    // Those that stand before the end of the inputs: length * toRate / fromRate, rounded up.
    long long lengthAfter(long long length) const override {
        return filter_ ? filter_->lengthAfter(length) : length;
    }

private:
    std::optional<FirStream> filter_;  // none where both rates are the same
};

}  // namespace mozep_program
