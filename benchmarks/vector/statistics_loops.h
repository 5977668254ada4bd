// Reductions as plain loops that the compiler may reorder, and some of them as Eigen's.
#pragma once

#include "support/peer_levels.h"
#include "zeptypes.h"

namespace zep::bench {

struct StatisticsPeers {
    Zep32f (*sum)(const Zep32f* x, int n);  // in double precision
    Zep64f (*sum64)(const Zep64f* x, int n);
    Zep32s (*sum32s)(const Zep32s* x, int n);
    Zep32f (*meanStdDev)(const Zep32f* x, int n);
    Zep32f (*max)(const Zep32f* x, int n);
    Zep32f (*minMax)(const Zep32f* x, int n);
    int (*minMax8u)(const Zep8u* x, int n);
    int (*minMax16s)(const Zep16s* x, int n);
    int (*maxIndx)(const Zep32f* x, int n);
    Zep32f (*norm)(const Zep32f* x, int n);
    Zep32s (*max32s)(const Zep32s* x, int n);
    Zep64f (*max64)(const Zep64f* x, int n);
    Zep32s (*mean32s)(const Zep32s* x, int n);
    int (*order)(const Zep32f* x, int n);
    Zep64f (*dot64)(const Zep64f* x, const Zep64f* y, int n);
    Zep32f (*dotComplex)(const Zep32fc* x, const Zep32fc* y, int n);
    Zep64f (*dotComplex64)(const Zep64fc* x, const Zep64fc* y, int n);
    Zep32s (*dot32s)(const Zep32s* x, const Zep32s* y, int n);
    Zep32s (*dot16s32s)(const Zep16s* x, const Zep32s* y, int n);
    void (*maxEvery)(const Zep32f* x, Zep32f* y, int n);
    void (*threshold)(const Zep32f* x, Zep32f* y, int n, Zep32f level);
    void (*thresholdValue)(Zep32f* y, int n, Zep32f level, Zep32f value);
};
ZEP_PEER_TABLE(StatisticsPeers, statisticsLoops)

struct StatisticsEigenPeers {
    Zep64f (*sum64)(const Zep64f* x, int n);
    Zep32f (*max)(const Zep32f* x, int n);
    Zep32f (*minMax)(const Zep32f* x, int n);
    Zep32f (*norm)(const Zep32f* x, int n);
    Zep64f (*dot64)(const Zep64f* x, const Zep64f* y, int n);
};
ZEP_PEER_TABLE(StatisticsEigenPeers, statisticsEigen)

}  // namespace zep::bench
