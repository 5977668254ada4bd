// Conversions as plain loops; floats are scaled by f, limited and rounded to nearest.
#pragma once

#include "support/peer_levels.h"
#include "zeptypes.h"

namespace zep::bench {

struct ConversionPeers {
    void (*from8s16s)(const Zep8s* x, Zep16s* y, int n);
    void (*from8s32f)(const Zep8s* x, Zep32f* y, int n);
    void (*from8u32f)(const Zep8u* x, Zep32f* y, int n);
    void (*from16s32f)(const Zep16s* x, Zep32f* y, int n);
    void (*from16u32f)(const Zep16u* x, Zep32f* y, int n);
    void (*from32s64f)(const Zep32s* x, Zep64f* y, int n);
    void (*from16s32fScaled)(const Zep16s* x, Zep32f* y, int n, Zep32f f);
    void (*from16s32s)(const Zep16s* x, Zep32s* y, int n);
    void (*from24s32f)(const Zep8u* x, Zep32f* y, int n);
    void (*from32s16s)(const Zep32s* x, Zep16s* y, int n);
    void (*from32s32f)(const Zep32s* x, Zep32f* y, int n);
    void (*from32f64f)(const Zep32f* x, Zep64f* y, int n);
    void (*from64f32f)(const Zep64f* x, Zep32f* y, int n);
    void (*from32f8s)(const Zep32f* x, Zep8s* y, int n, Zep32f f);
    void (*from32f16s)(const Zep32f* x, Zep16s* y, int n, Zep32f f);
    void (*from32f16sAway)(const Zep32f* x, Zep16s* y, int n, Zep32f f);
    void (*from32f32s)(const Zep32f* x, Zep32s* y, int n, Zep32f f);
    void (*from32f24s)(const Zep32f* x, Zep8u* y, int n, Zep32f f);
};
ZEP_PEER_TABLE(ConversionPeers, conversionLoops)

}  // namespace zep::bench
