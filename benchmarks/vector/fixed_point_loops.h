// Scaled fixed-point arithmetic as plain loops over 64-bit integers, or floats in quotients.
#pragma once

#include "support/peer_levels.h"
#include "zeptypes.h"

namespace zep::bench {

struct FixedPointPeers {
    void (*add)(const Zep32s* a, const Zep32s* b, Zep32s* y, int n, int k);
    void (*sub)(const Zep32s* a, const Zep32s* b, Zep32s* y, int n);
    void (*addConstant)(Zep32s val, Zep32s* y, int n, int k);
    void (*mulConstant)(Zep32s val, Zep32s* y, int n, int k);
    void (*mul16)(const Zep16s* a, const Zep16s* b, Zep16s* y, int n);
    void (*divConstant16)(Zep16s val, Zep16s* y, int n);
};
ZEP_PEER_TABLE(FixedPointPeers, fixedPointLoops)

}  // namespace zep::bench
