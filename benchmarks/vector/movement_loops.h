// The plain loops that movement is compared with.
#pragma once

#include "support/peer_levels.h"
#include "zeptypes.h"

namespace zep::bench {

struct MovementPeers {
    void (*set)(Zep32f val, Zep32f* y, int n);
    void (*set64)(Zep64s val, Zep64s* y, int n);
    void (*flip)(const Zep32f* x, Zep32f* y, int n);
    void (*flipDouble)(const Zep64f* x, Zep64f* y, int n);
    void (*flipInPlace)(Zep32f* x, int n);
    void (*flipBytes)(Zep8u* x, int n);
    void (*interleave2)(const Zep32f* const* x, int n, Zep32f* y);
    void (*interleave)(const Zep32f* const* x, int ch, int n, Zep32f* y);
    void (*interleave2Short)(const Zep16s* const* x, int n, Zep16s* y);
    void (*interleaveShort)(const Zep16s* const* x, int ch, int n, Zep16s* y);
    void (*swapBytes16)(Zep16u* x, int n);
    void (*swapBytes32)(Zep32u* x, int n);
    void (*swapBytes64)(Zep64u* x, int n);
    void (*xorBytes)(const Zep8u* x, Zep8u* y, int n);
    void (*andConstant)(const Zep16u* x, Zep16u val, Zep16u* y, int n);
    void (*complement)(Zep32u* x, int n);
    void (*shiftLeft)(const Zep32s* x, int val, Zep32s* y, int n);
    // Whole bytes from bit offset of *x on, 0 < offset < 8.
    void (*copyBits)(const Zep8u* x, int offset, Zep8u* y, int bytes);
};
ZEP_PEER_TABLE(MovementPeers, movementLoops)

}  // namespace zep::bench
