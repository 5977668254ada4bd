// Decoding the symbols of a Huffman block with every check, symbol by symbol: the end of the input
// and of the output.
#pragma once

#include "deflate/bit_input.h"
#include "deflate/match_copy.h"
#include "deflate/table_format.h"

namespace zep::ZEP_VARIANT {

enum class Stop { none, inputEmpty, outputFull, endOfBlock, corrupt };

// The entry of the symbol that starts with these bits, in the literal table (start 0) or the
// distance table.
template <class Layout>
TableEntry lookUp(const TableEntry* tables, unsigned start, Zep64u bits) {
    const TableEntry e = tables[start + (static_cast<unsigned>(bits) & (Layout::rootSize - 1))];
    if (!isLink(e)) return e;
    return tables[valueOf(e) +
                  (static_cast<unsigned>(bits >> Layout::rootBits) & ((1u << codeBitsOf(e)) - 1))];
}

// Bits without which the entry may belong to another code: look-ups take bits that have not arrived
// for zeros. A code without a meaning consumes none, but may begin like one that has. Codes that no
// symbol has come last: bits that lead to one of them, with zeros behind, lead to no other.
constexpr unsigned bitsInSight(TableEntry e) {
    return bitsOf(e) > codeBitsOf(e) ? bitsOf(e) : codeBitsOf(e);
}

// Decodes symbols until something runs out, or until mayRunFast(). A symbol is consumed whole or
// not at all; it is not started without room.
template <class Layout>
Stop decodeCarefully(const TableEntry* tables, BitInput& in, Output& out, ZepLZ77State& state,
                     auto mayRunFast) {
    while (out.next < out.end) {
        if (mayRunFast()) return Stop::none;
        in.fill();
        if (in.count == 0) return Stop::inputEmpty;
        const TableEntry symbol = lookUp<Layout>(tables, 0, in.bits);
        if (bitsInSight(symbol) > in.count) return Stop::inputEmpty;
        if (symbol & kLiteral) {
            in.drop(bitsOf(symbol));
            *out.next++ = static_cast<Zep8u>(valueOf(symbol));
            continue;
        }
        if (symbol & kSpecial) {
            in.drop(bitsOf(symbol));
            return valueOf(symbol) == valueOf(kEndOfBlock) ? Stop::endOfBlock : Stop::corrupt;
        }
        const Zep64u rest = in.bits >> bitsOf(symbol);
        const TableEntry offset = lookUp<Layout>(tables, Layout::distance, rest);
        if (bitsOf(symbol) + bitsInSight(offset) > in.count) return Stop::inputEmpty;
        const std::size_t length = valueWithExtra(symbol, in.bits);
        in.drop(bitsOf(symbol) + bitsOf(offset));
        if (offset & kSpecial) return Stop::corrupt;
        copyMatch(out, length, valueWithExtra(offset, rest), state);
    }
    return Stop::outputFull;
}

}  // namespace zep::ZEP_VARIANT
