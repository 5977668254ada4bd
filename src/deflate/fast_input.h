// The bit buffer while the input cannot end: refilled eight bytes at a time.
//
// Refilling takes one unaligned load and no branch: the bits of the loaded word that are already
// held are or-ed in once more, so the bits above count are those of the stream, only not counted
// yet. Only the low six bits of count mean anything; that saves masking what is subtracted from it.
#pragma once

#include <cstddef>
#include <cstring>

#include "deflate/bit_input.h"
#include "deflate/table_format.h"

namespace zep::ZEP_VARIANT {

// A round of either loop takes at most 3 refills: 24 bytes.
inline constexpr std::ptrdiff_t kFastInput = 32;
// What a refill leaves at least.
inline constexpr int kRefilledBits = 56;

struct FastInput {
    Zep64u bits;
    unsigned count;
    Zep8u* next;
    Zep8u* end;  // of what the loop may begin a round with

    explicit FastInput(const BitInput& in)
        : bits(in.bits), count(in.count), next(in.next), end(in.end - kFastInput) {}

    [[gnu::always_inline]] void refill() {
        Zep64u word;
        std::memcpy(&word, next, 8);
        bits |= word << (count & 63);
        next += 7 - ((count >> 3) & 7);
        count |= 56;
    }
    [[gnu::always_inline]] void consume(TableEntry e) {
        bits >>= e & 63;
        count -= e;
    }
    // The entry in the subtable that a link leads to.
    [[gnu::always_inline]] TableEntry follow(const TableEntry* tables, TableEntry link,
                                             int rootBits) const {
        return tables[valueOf(link) +
                      (static_cast<unsigned>(bits >> rootBits) & ((1u << codeBitsOf(link)) - 1))];
    }
    void save(BitInput& in) const {
        in.bits = bits;
        in.count = count & 63;
        in.next = next;
        in.clearAboveCount();
    }
};

}  // namespace zep::ZEP_VARIANT
