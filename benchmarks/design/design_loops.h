// Windows and filter designs as plain loops over the C library's functions, which the compiler may
// vectorise.
#pragma once

#include "support/peer_levels.h"
#include "zeptypes.h"

namespace zep::bench {

struct DesignPeers {
    // A cosine for every sample.
    void (*bartlett)(Zep32f* x, int n);
    void (*hann)(Zep32f* x, int n);
    void (*hamming)(Zep32f* x, int n);
    void (*blackman)(Zep32f* x, int n);
    void (*hammingComplex)(Zep32fc* x, int n);
    // The power series of I0, to the last bit of single precision.
    void (*kaiser)(Zep32f* x, int n, Zep32f alpha);
    // The product with a window that stands ready.
    void (*multiply)(Zep32f* x, const Zep32f* window, int n);
    // Two sines a tap; Hamming's window, taps that add up to 1.
    void (*lowpass)(double freq, double* taps, int n);
    void (*bandpass)(double low, double high, double* taps, int n);
};
ZEP_PEER_TABLE(DesignPeers, designLoops)

}  // namespace zep::bench
