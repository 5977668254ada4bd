// Running medians, preemphasis and rate stepping as the compiler makes them.
#pragma once

#include "support/peer_levels.h"
#include "zeptypes.h"

namespace zep::bench {

struct SamplingPeers {
    // y[n] = median of x[n - h] to x[n + h] for h <= n < len - h, by networks of minima and maxima.
    void (*networkMedian3)(const Zep32f* x, Zep32f* y, int len);
    void (*networkMedian5)(const Zep32f* x, Zep32f* y, int len);
    void (*networkMedian9)(const Zep32f* x, Zep32f* y, int len);
    // A sorted window, of which one value leaves and into which one comes with every step.
    void (*slidingMedian)(const Zep32f* x, Zep32f* y, int len, int mask);
    // std::nth_element for every window.
    void (*selectedMedian)(const Zep32f* x, Zep32f* y, int len, int mask);
    void (*preemphasize)(Zep32f* x, int n, Zep32f val);
    void (*up)(const Zep32fc* x, int n, Zep32fc* y, int factor, int phase);
    void (*down)(const Zep32f* x, int n, Zep32f* y, int factor, int phase);
    void (*downComplex)(const Zep32fc* x, int n, Zep32fc* y, int factor, int phase);
};
ZEP_PEER_TABLE(SamplingPeers, samplingLoops)

}  // namespace zep::bench
