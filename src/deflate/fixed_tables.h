// The tables of the fixed Huffman code, made by the compiler.
#pragma once

#include "deflate/careful_loop.h"
#include "deflate/huffman_tables.h"

namespace zep::ZEP_VARIANT {

struct FixedTables {
    TableEntry literal[1u << FixedCode::literalBits];
    TableEntry distance[1u << FixedCode::distanceBits];
};

constexpr FixedTables makeFixedTables() {
    // The codes of the four symbols without a meaning are consumed before they are refused, unlike
    // those of a dynamic block.
    const LiteralAlphabet literals = makeLiteralAlphabet(kBadLiteral);
    const DistanceAlphabet distances = makeDistanceAlphabet(kBadDistance);
    Zep16u literalLengths[kMaxLiteralCodes] = {};
    for (int s = 0; s < kMaxLiteralCodes; ++s)
        literalLengths[s] = s < 144 ? 8 : s < 256 ? 9 : s < 280 ? 7 : 8;
    Zep16u distanceLengths[kMaxDistanceCodes] = {};
    for (Zep16u& n : distanceLengths) n = 5;

    FixedTables t{};
    buildTable<kMaxLiteralCodes>(literalLengths, kMaxLiteralCodes, literals.entries, kNoLiteral,
                                 kLiteralLink, FixedCode::literalBits, t.literal);
    buildTable<kMaxDistanceCodes>(distanceLengths, kMaxDistanceCodes, distances.entries,
                                  kNoDistance, kDistanceLink, FixedCode::distanceBits, t.distance);
    return t;
}

}  // namespace zep::ZEP_VARIANT
