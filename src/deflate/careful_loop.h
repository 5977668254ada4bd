// Decoding the symbols of a Huffman block with every check, symbol by symbol: the end of the input
// and of the output.
#pragma once

#include "deflate/bit_input.h"
#include "deflate/match_copy.h"
#include "deflate/table_format.h"

namespace zep::ZEP_VARIANT {

// The tables of a block. Root widths are part of the type, so that the fixed code gets loops of its
// own.
template <int kLiteralBits, int kDistanceBits>
struct HuffmanCode {
    static constexpr unsigned literalBits = kLiteralBits;
    static constexpr unsigned distanceBits = kDistanceBits;
    const TableEntry* literal;
    const TableEntry* distance;
};
using DynamicCode = HuffmanCode<kLiteralRootBits, kDistanceRootBits>;
using FixedCode = HuffmanCode<9, 5>;

enum class Stop { none, inputEmpty, outputFull, endOfBlock, corrupt };

inline TableEntry lookUp(const TableEntry* table, unsigned rootBits, Zep64u bits) {
    const TableEntry e = table[static_cast<unsigned>(bits) & ((1u << rootBits) - 1)];
    if ((e & kLink) == 0) return e;
    return table[valueOf(e) +
                 (static_cast<unsigned>(bits >> rootBits) & ((1u << codeBitsOf(e)) - 1))];
}

// Decodes symbols until something runs out, or until mayRunFast(). A symbol is consumed whole or
// not at all; it is not started without room.
template <class Code>
Stop decodeCarefully(const Code& code, BitInput& in, Output& out, ZepLZ77State& state,
                     auto mayRunFast) {
    while (out.next < out.end) {
        if (mayRunFast()) return Stop::none;
        in.fill();
        if (in.count == 0) return Stop::inputEmpty;
        const TableEntry symbol = lookUp(code.literal, code.literalBits, in.bits);
        if (bitsOf(symbol) > in.count) return Stop::inputEmpty;
        if ((symbol & kMatch) == 0) {
            in.drop(bitsOf(symbol));
            *out.next++ = static_cast<Zep8u>(valueOf(symbol));
            continue;
        }
        if (symbol & kSpecial) {
            in.drop(bitsOf(symbol));
            return valueOf(symbol) == 0 ? Stop::endOfBlock : Stop::corrupt;
        }
        const Zep64u rest = in.bits >> bitsOf(symbol);
        const TableEntry offset = lookUp(code.distance, code.distanceBits, rest);
        if (bitsOf(symbol) + bitsOf(offset) > in.count) return Stop::inputEmpty;
        std::size_t length = lengthOf(symbol, in.bits);
        in.drop(bitsOf(symbol) + bitsOf(offset));
        if (offset & kSpecial) return Stop::corrupt;
        const std::size_t distance = distanceOf(offset, rest);
        if (length > out.room()) {
            state.pendingMatchLength = static_cast<Zep32s>(length - out.room());
            state.pendingMatchDistance = static_cast<Zep32s>(distance);
            length = out.room();
        }
        copyMatchExact(out, length, distance);
    }
    return Stop::outputFull;
}

}  // namespace zep::ZEP_VARIANT
