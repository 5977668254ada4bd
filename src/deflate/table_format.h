// Entries of the decoding tables.
//
// A table is looked up with the next bits of the stream. Its first 2^rootBits entries are the root;
// codes longer than rootBits continue in a subtable behind it, whose start and index width the root
// entry tells. One 32-bit entry holds all that a symbol needs, so that the bits of code and extra
// bits leave the bit buffer in a single shift:
//
//   bits 0-7    bits to consume, code and extra bits together; 0 in a link and in the entry of an
//   unassigned code bits 8-11   code length, that is where the extra bits begin; in a link: index
//   width of the subtable bits 16-30  literal byte, base of the match length, base of the distance
//   (which uses bit 31 too), start of the subtable bit 31      literal (in the literal table) bit
//   12      entry of a code that no symbol has bits 13-15  the exceptions: end of block, link,
//   neither of them: no such symbol
#pragma once

#include "zepcore.h"

namespace zep::ZEP_VARIANT {

using TableEntry = Zep32u;

inline constexpr TableEntry kLiteral = 0x80000000u;
inline constexpr TableEntry kExceptional = 0x8000;
inline constexpr TableEntry kLink = 0x4000;
inline constexpr TableEntry kEndOfBlock = 0x2000;

inline constexpr TableEntry kUnassigned = 0x1000;

// Codes that stand for nothing: a literal 0 or an impossible distance, at a cost of no bits.
inline constexpr TableEntry kNoLiteral = kLiteral | kUnassigned;
inline constexpr TableEntry kNoDistance = kExceptional | kUnassigned;

inline constexpr int kMaxCodeBits = 15;
inline constexpr int kMaxMatch = 258;

inline constexpr int kMaxLiteralCodes = 288;
inline constexpr int kMaxDistanceCodes = 32;
inline constexpr int kLiteralRootBits = 11;
inline constexpr int kDistanceRootBits = 9;

// Room for any set of code lengths. Codes of one length fill whole subtables but for the last of
// them, which alone may be widened for longer codes: so the subtables hold an entry for each symbol
// and one wide subtable for each length.
constexpr unsigned tableCapacity(int symbols, int rootBits) {
    const int deepest = kMaxCodeBits - rootBits;
    return (1u << rootBits) + static_cast<unsigned>(symbols) +
           (static_cast<unsigned>(deepest) << deepest);
}

constexpr unsigned bitsOf(TableEntry e) { return e & 0xff; }
constexpr unsigned codeBitsOf(TableEntry e) { return (e >> 8) & 15; }
constexpr unsigned valueOf(TableEntry e) { return e >> 16; }

// Value and extra bits of a match length or distance whose entry was found with these stream bits.
constexpr unsigned valueWithExtra(TableEntry e, Zep64u bits) {
    const unsigned extra = static_cast<unsigned>(bits) & ((1u << bitsOf(e)) - 1);
    return valueOf(e) + (extra >> codeBitsOf(e));
}

}  // namespace zep::ZEP_VARIANT
