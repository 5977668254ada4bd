// Generators as the compiler makes them.
#pragma once

#include "support/peer_levels.h"
#include "zeptypes.h"

namespace zep::bench {

struct GeneratePeers {
    // 64 phasors side by side, all turned by the same angle from step to step, in the type of the
    // samples; they drift.
    void (*rotate)(Zep32f* y, int n, double freq, double phase);
    void (*rotateComplex)(Zep32fc* y, int n, double freq, double phase);
    void (*rotateDouble)(Zep64f* y, int n, double freq, double phase);
    void (*rotateDoubleComplex)(Zep64fc* y, int n, double freq, double phase);
    void (*ramp)(Zep32f* y, int n, Zep32f offset, Zep32f slope);
    // Rounded to the nearest, halves away from zero, and saturated.
    void (*rampInteger)(Zep32s* y, int n, Zep32f offset, Zep32f slope);
    void (*slopeInteger)(Zep32s* y, int n, Zep64f offset, Zep64f slope);
    // std::normal_distribution<float> over std::mt19937, both kept from call to call.
    void (*normal)(Zep32f* y, int n);
};
ZEP_PEER_TABLE(GeneratePeers, generateLoops)

}  // namespace zep::bench
