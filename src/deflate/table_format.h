// Entries of the decoding tables.
//
// A table is looked up with the next bits of the stream. Its root has 2^rootBits entries; longer
// codes continue in a subtable. One 32-bit entry holds all that a symbol needs, so that the bits of
// code and extra bits leave the bit buffer in a single shift, and the loop that decodes it needs no
// branch to tell literals, lengths and distances apart:
//
//   bits 0-7    bits to consume, code and extra bits together; 0 in a link and where there is no
//               symbol with a meaning
//   bits 8-11   length of the code, behind which the extra bits begin; 0 where no symbol has one;
//               in a link: index width of the subtable
//   bits 12-15  kNear, kLength, kSpecial, kDistance
//   bits 16-30  literal, or base of the match length or of the distance; in a link: index of the
//               subtable
//   bit 31      kLiteral
#pragma once

#include "zepcore.h"

namespace zep::ZEP_VARIANT {

using TableEntry = Zep32u;

inline constexpr TableEntry kLiteral = 0x80000000;
inline constexpr TableEntry kNear = 0x1000;    // a distance that wide copies cannot serve
inline constexpr TableEntry kLength = 0x2000;  // in bytes, leads to the distance table
inline constexpr TableEntry kDistance = 0x8000;
inline constexpr TableEntry kSpecial = 0x4000;
inline constexpr TableEntry kLink = kSpecial | kNear;

inline constexpr TableEntry kEndOfBlock = kSpecial;
inline constexpr TableEntry kBad = kSpecial | 1u << 16;

// Codes without a symbol that has a meaning: a literal 0 or an impossible distance, at a cost of no
// bits.
inline constexpr TableEntry kNoLiteral = kLiteral;
inline constexpr TableEntry kNoDistance = kBad;

inline constexpr int kMaxCodeBits = 15;
inline constexpr int kMinMatch = 3;
inline constexpr int kMaxMatch = 258;
inline constexpr int kMaxLiteralCodes = 288;
inline constexpr int kMaxDistanceCodes = 32;

// Wide copies move vectors of 16 bytes, so a distance must be at least that; the eight lowest
// symbols end at 16.
inline constexpr unsigned kNearDistanceSymbols = 8;

constexpr bool isLink(TableEntry e) { return (e & kLink) == kLink; }
constexpr unsigned bitsOf(TableEntry e) { return e & 255; }
constexpr unsigned codeBitsOf(TableEntry e) { return (e >> 8) & 15; }
constexpr unsigned valueOf(TableEntry e) { return (e >> 16) & 0x7fff; }

// Match length or distance, from the stream bits that its entry was found with.
constexpr unsigned valueWithExtra(TableEntry e, Zep64u bits) {
    const unsigned own = static_cast<unsigned>(bits) & ((1u << bitsOf(e)) - 1);
    return valueOf(e) + (own >> codeBitsOf(e));
}

// Room for the subtables of any set of code lengths. Codes of one length fill whole subtables but
// for the last of them, which alone may be widened for longer codes: so the subtables hold an entry
// for each symbol and one wide subtable for each length.
constexpr unsigned subtableCapacity(int symbols, int rootBits) {
    const int deepest = kMaxCodeBits - rootBits;
    return static_cast<unsigned>(symbols) + (static_cast<unsigned>(deepest) << deepest);
}

// Where the parts of both tables stand in one array: literal root, distance root, subtables.
template <int kRootBits>
struct TableLayout {
    static constexpr int rootBits = kRootBits;
    static constexpr unsigned rootSize = 1u << kRootBits;
    static constexpr unsigned distance = rootSize;
    static constexpr unsigned literalSubtables = 2 * rootSize;
    static constexpr unsigned distanceSubtables =
        literalSubtables + subtableCapacity(kMaxLiteralCodes, kRootBits);
    static constexpr unsigned size =
        distanceSubtables + subtableCapacity(kMaxDistanceCodes, kRootBits);
};
using DynamicLayout = TableLayout<11>;
using FixedLayout = TableLayout<9>;  // its codes need no subtables

}  // namespace zep::ZEP_VARIANT
