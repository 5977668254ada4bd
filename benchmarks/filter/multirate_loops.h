// Rational rate changes as the compiler makes them: output q = m*up + p is the sum of K products of
// the taps p*down mod up, + up, + 2up, ... with the newest input m*down + p*down/up and those before.
#pragma once

#include "support/peer_levels.h"
#include "zeptypes.h"

namespace zep::bench {

template <class Tap>
struct PolyphaseOf {
    int up, down, K;
    // up rows of K taps, oldest input first, each padded in front with zeros to a multiple of 16.
    const Tap* rows;
    int rowLen;
};
using Polyphase = PolyphaseOf<Zep32f>;

struct MultirateLoops {
    // One dot product for each output; vectors of 4, 8 or 16 floats.
    void (*dots4)(const Polyphase& f, const Zep32f* x, Zep32f* y, int periods);
    void (*dots8)(const Polyphase& f, const Zep32f* x, Zep32f* y, int periods);
    void (*dots16)(const Polyphase& f, const Zep32f* x, Zep32f* y, int periods);
    // Phase by phase over inputs sorted by their place in the period: `room` holds them, each stream
    // of periods + rowLen elements, and one phase's outputs.
    void (*phases)(const Polyphase& f, const Zep32f* x, Zep32f* y, int periods, Zep32f* room);
    void (*dotsComplex)(const PolyphaseOf<Zep32fc>& f, const Zep32fc* x, Zep32fc* y, int periods);
    void (*phasesComplex)(const PolyphaseOf<Zep32fc>& f, const Zep32fc* x, Zep32fc* y, int periods,
                          Zep32fc* room);
};
ZEP_PEER_TABLE(MultirateLoops, multirateLoops)

}  // namespace zep::bench
