// Peers of vector mathematics, at each level.
#pragma once

#include "support/peer_levels.h"

namespace zep::bench {

// What a peer lacks is null. Powers of one exponent take it from b[0].
struct MathPeers {
    using One = void (*)(const float* x, const float* b, float* y, float* z, int n);
    One exp, ln, log10, sinCosShort, sinCosLong, pow, powx;
};

ZEP_PEER_TABLE(MathPeers, mathEigen)
ZEP_PEER_TABLE(MathPeers, mathSleef)
ZEP_PEER_TABLE(MathPeers, mathVectors)
ZEP_PEER_TABLE(MathPeers, mathScalar)

}  // namespace zep::bench
