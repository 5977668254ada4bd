// Filters of float samples with double taps and sums as the compiler makes them. At one rate h holds
// the taps reversed and x begins taps-1 samples before the first output's own; rate changes are those
// of multirate_loops.h.
#pragma once

#include "filter/multirate_loops.h"
#include "support/peer_levels.h"
#include "zeptypes.h"

namespace zep::bench {

struct DoubleLoops {
    // 32 outputs in registers, tap by tap; samples widened where they are loaded, or all before.
    void (*block)(const Zep64f* h, int taps, const Zep32f* x, Zep32f* y, int n);
    void (*blockWide)(const Zep64f* h, int taps, const Zep64f* x, Zep32f* y, int n);
    void (*widen)(const Zep32f* x, Zep64f* y, int n);
    void (*narrow)(const Zep64f* x, Zep32f* y, int n);
    // One dot product for each output.
    void (*dots)(const PolyphaseOf<Zep64f>& f, const Zep32f* x, Zep32f* y, int periods);
    // Phase by phase over inputs widened and sorted by their place in the period.
    void (*phases)(const PolyphaseOf<Zep64f>& f, const Zep32f* x, Zep32f* y, int periods,
                   Zep64f* room);
};
ZEP_PEER_TABLE(DoubleLoops, doubleLoops)

}  // namespace zep::bench
