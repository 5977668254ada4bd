// Sums of products as the compiler makes them: y[i] = sum over j < taps of h[j] * x[i + j], so that h
// holds the taps reversed and x begins taps-1 samples before the first output's own.
#pragma once

#include "support/peer_levels.h"
#include "zeptypes.h"

namespace zep::bench {

struct FilterLoops {
    // One output at a time, as written; the compiler may take several side by side.
    void (*plain)(const Zep32f* h, int taps, const Zep32f* x, Zep32f* y, int n);
    // 32 and 64 outputs in registers, tap by tap.
    void (*block32)(const Zep32f* h, int taps, const Zep32f* x, Zep32f* y, int n);
    void (*block64)(const Zep32f* h, int taps, const Zep32f* x, Zep32f* y, int n);
    void (*plainComplex)(const Zep32fc* h, int taps, const Zep32fc* x, Zep32fc* y, int n);
    void (*blockComplex)(const Zep32fc* h, int taps, const Zep32fc* x, Zep32fc* y, int n);
    // Bins of two spectra: x *= h, x = x * conj(h).
    void (*multiply)(const Zep32fc* h, Zep32fc* x, int n);
    void (*multiplyConjugate)(const Zep32fc* h, Zep32fc* x, int n);
    void (*multiplyDouble)(const Zep64fc* h, Zep64fc* x, int n);
    // Between 16-bit samples and floats; times a scale, rounded and saturated.
    void (*widen16)(const Zep16s* x, Zep32f* y, int n);
    void (*narrow16)(const Zep32f* x, Zep16s* y, int n, float scale);
};
ZEP_PEER_TABLE(FilterLoops, filterLoops)

// The same as expressions over whole vectors.
struct FilterEigen {
    void (*convolve)(const Zep32f* a, int aLen, const Zep32f* b, int bLen, Zep32f* y);
    // Lags 0 .. n-1 of b against a, both of one length.
    void (*correlate)(const Zep32f* a, const Zep32f* b, int len, Zep32f* y, int n);
    void (*correlateComplex)(const Zep32fc* a, const Zep32fc* b, int len, Zep32fc* y, int n);
};
ZEP_PEER_TABLE(FilterEigen, filterEigen)

}  // namespace zep::bench
