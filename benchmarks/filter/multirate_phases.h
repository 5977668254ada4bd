// Inputs sorted by their place in the period of a rate change. Stream d at m is x[m*down + d]; what
// lies before x[0] belongs to it too.
#pragma once

#include "filter/multirate_loops.h"

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

struct PhaseStreams {
    int up, down, before, periods, stride;

    // A vector loop may read `behind` elements more than there are periods.
    template <class Filter>
    PhaseStreams(const Filter& f, int count, int behind)
        : up(f.up),
          down(f.down),
          before((f.K + f.down - 1) / f.down),
          periods(count),
          stride(before + count + behind) {}
    // Of the input that product k of output p meets in the first period.
    int place(int p, int k) const {
        const int at = p * down / up - k;
        const int turn = at >= 0 ? at / down : -((down - 1 - at) / down);
        return (at - turn * down) * stride + before + turn;
    }
};

template <class From, class To>
void sortPhases(const PhaseStreams& s, const From* x, To* __restrict room) {
    for (int d = 0; d < s.down; ++d)
        for (int m = -s.before; m < s.periods; ++m)
            room[d * s.stride + s.before + m] = To(x[m * s.down + d]);
}

}  // namespace
}  // namespace zep::bench::ZEP_PEER_LEVEL
