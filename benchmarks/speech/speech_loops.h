// Companding and the G.728 codebook as the compiler makes them: SpanDSP's inline functions, tables,
// and plain loops.
#pragma once

#include <cstdint>

#include "support/peer_levels.h"

namespace zep::bench {

struct SpeechLoops {
    void (*alawCompress)(const std::int16_t*, std::uint8_t*, int);
    void (*mulawCompress)(const std::int16_t*, std::uint8_t*, int);
    void (*alawExpand)(const std::uint8_t*, std::int16_t*, int);
    void (*mulawExpand)(const std::uint8_t*, std::int16_t*, int);
    // From a table of all 65536 samples, or all 256 codes.
    void (*tableCompress)(const std::uint8_t* table, const std::int16_t*, std::uint8_t*, int);
    void (*tableExpand)(const std::int16_t* table, const std::uint8_t*, std::int16_t*, int);
    // 128 shapes of 5 samples.
    void (*energy)(const std::int16_t (*shapes)[5], const std::int16_t* h, std::uint16_t* energy);
    int (*search)(const std::int16_t (*shapes)[5], const std::int16_t* corr,
                  const std::uint16_t* energy);
};
ZEP_PEER_TABLE(SpeechLoops, speechLoops)

}  // namespace zep::bench
