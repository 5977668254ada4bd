// Arithmetic as plain loops and as Eigen expressions.
#pragma once

#include "support/peer_levels.h"
#include "zeptypes.h"

namespace zep::bench {

struct ArithmeticPeers {
    void (*add)(const Zep32f* a, const Zep32f* b, Zep32f* y, int n);
    void (*addDouble)(const Zep64f* a, const Zep64f* b, Zep64f* y, int n);
    void (*mul)(const Zep32f* a, const Zep32f* b, Zep32f* y, int n);
    void (*mulDouble)(const Zep64f* a, const Zep64f* b, Zep64f* y, int n);
    void (*mulComplex)(const Zep32fc* a, const Zep32fc* b, Zep32fc* y, int n);
    void (*div)(const Zep32f* d, const Zep32f* x, Zep32f* y, int n);
    void (*divComplex)(const Zep32fc* d, const Zep32fc* x, Zep32fc* y, int n);
    void (*mulConstant)(const Zep32f* a, Zep32f c, Zep32f* y, int n);
    void (*sqrt)(const Zep32f* a, Zep32f* y, int n);
    void (*sqrtComplex)(Zep32fc* y, int n);
    void (*abs)(const Zep32f* a, Zep32f* y, int n);
    void (*addProduct)(const Zep32f* a, const Zep32f* b, Zep32f* y, int n);
};
ZEP_PEER_TABLE(ArithmeticPeers, arithmeticLoops)
ZEP_PEER_TABLE(ArithmeticPeers, arithmeticEigen)

}  // namespace zep::bench
