// Decoding symbols while neither the input nor the output can end within one of them: no check but
// for the end of the block.
//
// Refilling takes one unaligned load and no branch: the bits of the loaded word that are already
// held are or-ed in once more, so bits above count are not garbage but simply not counted yet. Only
// the low six bits of count mean anything; that saves masking what is subtracted from it. After a
// refill 56 to 63 bits are held: two root look-ups of literals and a match length, or a whole
// distance after another refill. The next entry is looked up before the match is copied, so that
// the copy overlaps the latency of the load.
#pragma once

#include <cstring>

#include "deflate/bit_input.h"
#include "deflate/careful_loop.h"
#include "deflate/match_copy.h"
#include "deflate/table_format.h"

namespace zep::ZEP_VARIANT {

// An iteration loads at most 3 words and moves on by 21 bytes.
inline constexpr std::ptrdiff_t kFastInput = 32;
// Six literals and the longest match, which is written in whole vectors.
inline constexpr std::ptrdiff_t kFastOutput = 6 + kMaxMatch + kCopyOvershoot;

template <class Code, bool kHistory>
Stop decodeFast(const Code& code, BitInput& in, Output& out) {
    const TableEntry* const literalTable = code.literal;
    const TableEntry* const distanceTable = code.distance;
    Zep64u bits = in.bits;
    unsigned count = in.count;
    Zep8u* next = in.next;
    Zep8u* dst = out.next;
    Zep8u* const inEnd = in.end - kFastInput;
    Zep8u* const outEnd = out.end - kFastOutput;
    Stop stop = Stop::none;

    const auto refill = [&] {
        Zep64u word;
        std::memcpy(&word, next, 8);
        bits |= word << (count & 63);
        next += 7 - ((count >> 3) & 7);
        count |= 56;
    };
    const auto root = [&] {
        return literalTable[static_cast<unsigned>(bits) & ((1u << Code::literalBits) - 1)];
    };
    const auto consume = [&](TableEntry e) {
        bits >>= e & 63;
        count -= e;
    };
    const auto putLiterals = [&](TableEntry e) { *dst++ = static_cast<Zep8u>(e >> 16); };

    refill();
    TableEntry e = root();
    do {
        Zep64u before = bits;
        consume(e);
        if ((e & kMatch) == 0) {
            putLiterals(e);
            e = root();
            before = bits;
            consume(e);
            if ((e & kMatch) == 0) {
                putLiterals(e);
                e = root();
                before = bits;
                consume(e);
                if ((e & kMatch) == 0) {
                    putLiterals(e);
                    e = root();
                    refill();
                    continue;
                }
            }
        }
        if (e & kSpecial) [[unlikely]] {
            if (e & kLink) {
                e = literalTable[valueOf(e) + (static_cast<unsigned>(bits >> Code::literalBits) &
                                               ((1u << codeBitsOf(e)) - 1))];
                consume(e);
                if ((e & kMatch) == 0) {
                    putLiterals(e);
                    e = root();
                    refill();
                    continue;
                }
            }
            if (e & kSpecial) {
                stop = valueOf(e) == 0 ? Stop::endOfBlock : Stop::corrupt;
                break;
            }
        }
        std::size_t length = lengthOf(e, before);

        e = distanceTable[static_cast<unsigned>(bits) & ((1u << Code::distanceBits) - 1)];
        refill();
        if (e & kSpecial) [[unlikely]] {
            if (e & kLink)
                e = distanceTable[valueOf(e) + (static_cast<unsigned>(bits >> Code::distanceBits) &
                                                ((1u << codeBitsOf(e)) - 1))];
            if (e & kSpecial) {
                consume(e);
                stop = Stop::corrupt;
                break;
            }
        }
        const std::size_t distance = distanceOf(e, bits);
        consume(e);
        e = root();
        refill();

        if (kHistory && distance > static_cast<std::size_t>(dst - out.begin)) {
            const std::size_t back = distance - static_cast<std::size_t>(dst - out.begin);
            if (back >= length) {
                copyDisjoint(dst, out.window + ((out.windowPos - back) & (kWindowBytes - 1)),
                             length);
                dst += length;
            } else {
                out.next = dst;
                copyMatchExact(out, length, distance);
                dst = out.next;
            }
        } else {
            copyWithin(dst, distance, length);
            dst += length;
        }
    } while (next < inEnd && dst < outEnd);

    in.bits = bits;
    in.count = count & 63;
    in.next = next;
    in.clearAboveCount();
    out.next = dst;
    return stop;
}

}  // namespace zep::ZEP_VARIANT
