// Complex and polar operations as plain loops; angles through SLEEF, 3.5 units.
#pragma once

#include "support/peer_levels.h"
#include "zeptypes.h"

namespace zep::bench {

struct ComplexPeers {
    void (*magnitude)(const Zep32fc* x, Zep32f* y, int n);
    void (*power)(const Zep32fc* x, Zep32f* y, int n);
    void (*phase)(const Zep32fc* x, Zep32f* y, int n);  // n a multiple of 16, as below
    void (*toPolar)(const Zep32fc* x, Zep32f* magnitude, Zep32f* phase, int n);
    void (*toCartesian)(const Zep32f* magnitude, const Zep32f* phase, Zep32fc* y, int n);
    void (*real)(const Zep32fc* x, Zep32f* y, int n);
    void (*parts)(const Zep32fc* x, Zep32f* re, Zep32f* im, int n);
    void (*join)(const Zep32f* re, const Zep32f* im, Zep32fc* y, int n);
    void (*conj)(const Zep32fc* x, Zep32fc* y, int n);
    void (*conjFlip)(const Zep32fc* x, Zep32fc* y, int n);
    void (*magnitudeOfParts)(const Zep32f* re, const Zep32f* im, Zep32f* y, int n);
    void (*real64)(const Zep64fc* x, Zep64f* y, int n);
    void (*parts64)(const Zep64fc* x, Zep64f* re, Zep64f* im, int n);
    void (*parts16)(const Zep16sc* x, Zep16s* re, Zep16s* im, int n);
    void (*join64)(const Zep64f* re, const Zep64f* im, Zep64fc* y, int n);
};
ZEP_PEER_TABLE(ComplexPeers, complexLoops)

}  // namespace zep::bench
