#pragma once

#include <zeps.h>

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace mozep_program {

// Changes the sampling rate of one channel by a ratio of whole numbers. The stream comes in pieces of
// any length; how it is cut does not change a bit of the results.
//
// The lowpass has a Kaiser window: it is flat up to 0.91 of half the lower rate (20 kHz at 44100 Hz)
// and 120 dB down from half the lower rate on, so that nothing is mirrored. Sums are in single
// precision. Its delay is taken out: output n stands at the time n / toRate from the first input on.
// Before and behind the stream the signal counts as zero. All samples must be finite.
class RationalResampler {
public:
    // The rates, divided by their greatest common divisor, are at most so large. Memory: about 1.4 KB
    // for each unit of the larger one, and twice that while the filter is made.
    static constexpr int kLargestFactor = 65536;

    // Rates above 0. Throws Failure if the reduced rates are too large.
    RationalResampler(int fromRate, int toRate);

    // Appends to `out` what the inputs so far determine.
    void add(std::span<const float> in, std::vector<float>& out);
    // Appends the rest, when the stream has ended: lengthAfter() outputs in all.
    void finish(std::vector<float>& out);

    // How many outputs stand before the end of `length` inputs: length * toRate / fromRate, rounded
    // up. For lengths below 2^46.
    long long lengthAfter(long long length) const { return (length * up_ + down_ - 1) / down_; }

private:
    struct Free {
        void operator()(ZepFIRState* filter) const { zepsFIRFree_32f(filter); }
    };
    void filterWaiting(std::vector<float>& out);

    long long up_, down_;
    std::unique_ptr<ZepFIRState, Free> filter_;  // null where both rates are the same
    std::size_t room_ = 0;                       // for inputs that wait: a multiple of down_
    std::vector<float> waiting_;
    long long ahead_ = 0;  // outputs to come before the first input's time
    long long received_ = 0, produced_ = 0;
};

}  // namespace mozep_program
