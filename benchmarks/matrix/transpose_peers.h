// Transposition as blocked loops and as Eigen's. Rows are width and height elements apart.
#pragma once

#include "support/peer_levels.h"
#include "zeptypes.h"

namespace zep::bench {

struct TransposePeers {
    void (*loop32)(const Zep32f* src, int width, int height, Zep32f* dst);
    void (*loop64)(const Zep64f* src, int width, int height, Zep64f* dst);
    void (*eigen32)(const Zep32f* src, int width, int height, Zep32f* dst);
    void (*eigen64)(const Zep64f* src, int width, int height, Zep64f* dst);
};
ZEP_PEER_TABLE(TransposePeers, transposePeers)

}  // namespace zep::bench
