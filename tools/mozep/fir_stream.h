#pragma once

#include <zeps.h>

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "channel_stream.h"

namespace mozep_program {

// A finite impulse response filter that raises the sampling rate by a whole number before and lowers
// it by another one behind, with its delay taken out. Before and behind the stream the signal counts
// as zero. Where a rate changes, the cuts of the stream do not change a bit of the results; at equal
// rates they do so within rounding. Where a rate is lowered by a whole number, results come when some
// 16384 inputs, or four times the taps, are together.
class FirStream final : public ChannelStream {
public:
    // Output n is the sum over i of in[i] * taps[n * down + delay - i * up]. up, down: at least 1.
    // delay: at least 0.
    FirStream(const std::vector<float>& taps, int up, int down, int delay);

    void add(std::span<const float> in, std::vector<float>& out) override;
    void finish(std::vector<float>& out) override;
    // Those that stand before the end of the inputs: length * up / down, rounded up.
    long long lengthAfter(long long length) const override {
        return (length * up_ + down_ - 1) / down_;
    }

private:
    struct Free {
        void operator()(ZepFIRState* filter) const { zepsFIRFree_32f(filter); }
    };
    void filterWaiting(std::vector<float>& out);
    void appendResults(std::size_t turns, std::vector<float>& out);

    long long up_, down_;
    bool thinned_;  // filtered at the higher rate, of whose outputs every down_-th remains
    std::unique_ptr<ZepFIRState, Free> filter_;
    std::size_t room_;  // for inputs that wait: a multiple of down_
    std::vector<float> waiting_, all_;
    int phase_;        // of the outputs that remain
    long long ahead_;  // outputs to come before the first input's time
    long long received_ = 0, produced_ = 0;
};

}  // namespace mozep_program
