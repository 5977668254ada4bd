// Entries of the decoding tables.
//
// A table is looked up with the next bits of the stream. Its first 2^rootBits entries are the root;
// codes longer than rootBits continue in a subtable behind it, whose start and index width the root
// entry tells. One 32-bit entry holds all that a symbol needs, so that the bits of code and extra
// bits leave the bit buffer in a single shift:
//
//   bits 0-5    bits to consume, code and extra bits together; 0 in a link and in the entry of an
//   unassigned code bits 6-7    literal table: number of literals, 0 to 2 bits 8-11   where the
//   extra bits begin; in a link: index width of the subtable bit 12      no symbol has the code: it
//   consumes nothing bits 13-15  kSpecial, kLink, kMatch bits 16-31  literal table: first literal,
//   then second literal or match length - 3;
//               distance table: base of the distance; in a link: start of the subtable
//
// Root entries of the literal table may hold two symbols, where the codes of both fit: two
// literals, or a literal and the match length behind it.
#pragma once

#include "zepcore.h"

namespace zep::ZEP_VARIANT {

using TableEntry = Zep32u;

inline constexpr TableEntry kOneLiteral = 1u << 6;
inline constexpr TableEntry kUnassigned = 0x1000;
inline constexpr TableEntry kSpecial = 0x2000;  // not a match length or distance
inline constexpr TableEntry kLink = 0x4000;
inline constexpr TableEntry kMatch = 0x8000;  // literal table: not literals alone

inline constexpr TableEntry kEndOfBlock = kMatch | kSpecial;
inline constexpr TableEntry kBadLiteral = kMatch | kSpecial | 1u << 16;
inline constexpr TableEntry kBadDistance = kSpecial;
inline constexpr TableEntry kLiteralLink = kMatch | kSpecial | kLink;
inline constexpr TableEntry kDistanceLink = kSpecial | kLink;

// Codes that no symbol has: a literal 0 or an impossible distance, at a cost of no bits.
inline constexpr TableEntry kNoLiteral = kOneLiteral | kUnassigned;
inline constexpr TableEntry kNoDistance = kSpecial | kUnassigned;

inline constexpr int kMaxCodeBits = 15;
inline constexpr int kMinMatch = 3;
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

constexpr unsigned bitsOf(TableEntry e) { return e & 63; }
constexpr unsigned literalsOf(TableEntry e) { return (e >> 6) & 3; }
constexpr unsigned codeBitsOf(TableEntry e) { return (e >> 8) & 15; }
constexpr unsigned valueOf(TableEntry e) { return e >> 16; }

// The extra bits behind the code whose entry was found with these stream bits.
constexpr unsigned extraOf(TableEntry e, Zep64u bits) {
    return (static_cast<unsigned>(bits) & ((1u << bitsOf(e)) - 1)) >> codeBitsOf(e);
}
constexpr unsigned lengthOf(TableEntry e, Zep64u bits) {
    return kMinMatch + (e >> 24) + extraOf(e, bits);
}
constexpr unsigned distanceOf(TableEntry e, Zep64u bits) { return (e >> 16) + extraOf(e, bits); }

}  // namespace zep::ZEP_VARIANT
