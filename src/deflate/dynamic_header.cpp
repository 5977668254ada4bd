// The header of a dynamic block. It can stop between any two of its items: what is decoded stays in
// the state, what is not stays in the bit buffer.

#include "deflate/dynamic_header.h"

#include "core/variant_exports.h"
#include "deflate/huffman_tables.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr int kCodeLengthMaxBits = 7;
constexpr int kEndOfBlockSymbol = 256;
// The longest code with the longest repeat count behind it.
constexpr unsigned kCodeLengthItemBits = 14;

constexpr Zep8u kCodeLengthOrder[kCodeLengthSymbols] = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                        11, 4,  12, 3, 13, 2, 14, 1, 15};

constexpr LiteralAlphabet kLiteralAlphabet = makeLiteralAlphabet(kNoSymbol);
constexpr DistanceAlphabet kDistanceAlphabet = makeDistanceAlphabet(kNoSymbol);

// Entries that no code reaches keep what they held.
void buildCodeLengthTable(ZepLZ77State& state) {
    unsigned count[kCodeLengthMaxBits + 1] = {};
    for (const Zep32u n : state.codeLengthCodeLengths) ++count[n];
    unsigned next[kCodeLengthMaxBits + 1] = {};
    unsigned code = 0;
    for (int n = 1; n <= kCodeLengthMaxBits; ++n) {
        next[n] = code;
        code = (code + count[n]) << 1;
    }
    for (unsigned symbol = 0; symbol < kCodeLengthSymbols; ++symbol) {
        const unsigned n = state.codeLengthCodeLengths[symbol];
        if (n == 0) continue;
        unsigned reversed = 0, c = next[n]++;
        for (unsigned i = 0; i < n; ++i, c >>= 1) reversed = reversed << 1 | (c & 1);
        for (unsigned i = reversed; i < 1u << kCodeLengthMaxBits; i += 1u << n) {
            state.codeLengthSymbols[i] = static_cast<Zep8u>(symbol);
            state.codeLengthBits[i] = static_cast<Zep8u>(n);
        }
    }
}

ZepStatus decodeCodeLengths(BitInput& in, ZepLZ77State& state) {
    const int total = state.literalCodeCount + state.distanceCodeCount;
    Zep16u* const lengths = state.codeLengths;
    int done = state.lengthsDecoded;
    while (done < total) {
        if (in.count < kCodeLengthItemBits) {
            in.fill();
            if (in.count < kCodeLengthItemBits) {
                state.lengthsDecoded = done;
                return zepStsSrcSizeLessExpected;
            }
        }
        const unsigned index = in.peek(kCodeLengthMaxBits);
        const unsigned symbol = state.codeLengthSymbols[index],
                       codeBits = state.codeLengthBits[index];
        if (symbol < 16) {
            in.drop(codeBits);
            lengths[done++] = static_cast<Zep16u>(symbol);
            continue;
        }
        constexpr struct { Zep8u extraBits, base; } kRepeats[3] = {{2, 3}, {3, 3}, {7, 11}};
        const auto [extraBits, base] = kRepeats[symbol - 16];
        const int repeat = base + static_cast<int>((in.bits >> codeBits) & ((1u << extraBits) - 1));
        if (repeat > total - done) {
            // Left in the bit buffer, so that every further call finds it again.
            state.lengthsDecoded = done;
            return zepStsSizeErr;
        }
        in.drop(codeBits + extraBits);
        const Zep16u value = symbol == 16 && done > 0 ? lengths[done - 1] : Zep16u{0};
        for (int i = 0; i < repeat; ++i) lengths[done++] = value;
    }
    state.lengthsDecoded = done;
    return zepStsNoErr;
}

// A code of n bits has been made for a symbol that comes once in 2^n. Where fewer than one symbol
// in six is a match, a branch on the kind of each costs less than doing without.
bool matchesAreRare(const ZepLZ77State& state) {
    constexpr unsigned kAll = 1u << kMaxCodeBits;
    unsigned matches = 0;
    for (int s = kEndOfBlockSymbol + 1; s < state.literalCodeCount; ++s)
        if (const unsigned n = state.codeLengths[s]; n != 0) matches += kAll >> n;
    return 6 * matches < kAll;
}

}  // namespace

ZepStatus decodeDynamicHeader(BitInput& in, ZepLZ77State& state) {
    if (state.status == kCodeCounts) {
        if (!in.gather(14)) return zepStsSrcSizeLessExpected;
        state.literalCodeCount = static_cast<Zep32s>(in.take(5)) + 257;
        state.distanceCodeCount = static_cast<Zep32s>(in.take(5)) + 1;
        state.codeLengthCount = static_cast<Zep32s>(in.take(4)) + 4;
        state.status = kCodeLengthLengths;
    }
    if (state.status == kCodeLengthLengths) {
        if (!in.gather(3 * static_cast<unsigned>(state.codeLengthCount)))
            return zepStsSrcSizeLessExpected;
        for (int i = 0; i < kCodeLengthSymbols; ++i)
            state.codeLengthCodeLengths[kCodeLengthOrder[i]] =
                i < state.codeLengthCount ? in.take(3) : 0;
        buildCodeLengthTable(state);
        state.lengthsDecoded = 0;
        state.status = kCodeLengths;
    }
    if (const ZepStatus status = decodeCodeLengths(in, state); status != zepStsNoErr) return status;
    using Layout = DynamicLayout;
    TableEntry* const table = state.tables;
    buildTable<kMaxLiteralCodes>(state.codeLengths, state.literalCodeCount,
                                 kLiteralAlphabet.entries, kNoLiteral, Layout::rootBits, table,
                                 table, Layout::literalSubtables);
    buildTable<kMaxDistanceCodes>(state.codeLengths + state.literalCodeCount,
                                  state.distanceCodeCount, kDistanceAlphabet.entries, kNoDistance,
                                  Layout::rootBits, table, table + Layout::distance,
                                  Layout::distanceSubtables);
    state.literalRuns = matchesAreRare(state) ? 1 : 0;
    state.status = kSymbols;
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
