// The tables of the fixed Huffman code, made by the compiler.
#pragma once

#include "deflate/careful_loop.h"
#include "deflate/huffman_tables.h"

namespace zep::ZEP_VARIANT {

struct FixedTables {
    TableEntry entries[2 * FixedLayout::rootSize];
};

constexpr FixedTables makeFixedTables() {
    // The codes of the four symbols without a meaning are consumed before they are refused, unlike
    // those of a dynamic block.
    const LiteralAlphabet literals = makeLiteralAlphabet(kBad);
    const DistanceAlphabet distances = makeDistanceAlphabet(kBad);
    Zep16u literalLengths[kMaxLiteralCodes] = {};
    for (int s = 0; s < kMaxLiteralCodes; ++s)
        literalLengths[s] = s < 144 ? 8 : s < 256 ? 9 : s < 280 ? 7 : 8;
    Zep16u distanceLengths[kMaxDistanceCodes] = {};
    for (Zep16u& n : distanceLengths) n = 5;

    FixedTables t{};
    buildTable<kMaxLiteralCodes>(literalLengths, kMaxLiteralCodes, literals.entries, kNoLiteral,
                                 FixedLayout::rootBits, t.entries, t.entries, 0);
    buildTable<kMaxDistanceCodes>(distanceLengths, kMaxDistanceCodes, distances.entries,
                                  kNoDistance, FixedLayout::rootBits, t.entries,
                                  t.entries + FixedLayout::distance, 0);
    return t;
}

}  // namespace zep::ZEP_VARIANT
