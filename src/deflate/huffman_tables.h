// Decoding tables from code lengths.
//
// Canonical codes rise with (length, symbol), so walking the symbols in that order visits the codes
// in order, and the root grows with them: it is written at the size of the current length and
// doubled when the length goes up. A code is kept bit-reversed, as it lies in the stream. Codes are
// never validated: codes that no symbol has keep the entry for "nothing", and symbols for which an
// over-subscribed set leaves no code get none.
#pragma once

#include <bit>
#include <cstring>
#include <type_traits>

#include "deflate/table_format.h"

namespace zep::ZEP_VARIANT {

// A symbol that must not get an entry, whatever its length.
inline constexpr TableEntry kNoSymbol = ~TableEntry{0};

// What a symbol's entry holds before the code length is known: value, flags and extra-bit count in
// bits 0-7.
struct LiteralAlphabet {
    TableEntry entries[kMaxLiteralCodes];
};
struct DistanceAlphabet {
    TableEntry entries[kMaxDistanceCodes];
};

constexpr LiteralAlphabet makeLiteralAlphabet(TableEntry unassigned) {
    LiteralAlphabet a{};
    for (unsigned s = 0; s < 256; ++s) a.entries[s] = kLiteral | s << 16;
    a.entries[256] = kEndOfBlock;
    unsigned base = kMinMatch;
    for (unsigned s = 257; s < 285; ++s) {
        const unsigned extra = s < 265 ? 0 : (s - 261) / 4;
        a.entries[s] = kLength | base << 16 | extra;
        base += 1u << extra;
    }
    a.entries[285] = kLength | unsigned{kMaxMatch} << 16;
    a.entries[286] = a.entries[287] = unassigned;
    return a;
}

constexpr DistanceAlphabet makeDistanceAlphabet(TableEntry unassigned) {
    DistanceAlphabet a{};
    unsigned base = 1;
    for (unsigned s = 0; s < 30; ++s) {
        const unsigned extra = s < 4 ? 0 : (s - 2) / 2;
        a.entries[s] = kDistance | base << 16 | extra | (s < kNearDistanceSymbols ? kNear : 0);
        base += 1u << extra;
    }
    a.entries[30] = a.entries[31] = unassigned;
    return a;
}

// The next code of the same length in canonical order, bits reversed; false after the last one.
constexpr bool nextCode(unsigned& code, int length) {
    const unsigned zeros = code ^ ((1u << length) - 1);
    if (zeros == 0) return false;
    const unsigned highest = std::bit_floor(zeros);
    code = (code & (highest - 1)) | highest;
    return true;
}

// Fills table (tableCapacity entries) for the given code lengths. nothing is the entry of codes
// without a symbol; link is the flags of a link.
template <int kMaxSymbols>
constexpr void buildTable(const Zep16u* lengths, int symbols, const TableEntry* alphabet,
                          TableEntry nothing, int rootBits, TableEntry* base, TableEntry* table,
                          unsigned start) {
    unsigned count[kMaxCodeBits + 1] = {};
    for (int s = 0; s < symbols; ++s) ++count[lengths[s]];
    count[0] = 0;

    unsigned first[kMaxCodeBits + 2] = {};  // where the symbols of a length start in sorted order
    unsigned space = 0;                     // code space in use, of 2^15
    int longest = 0;
    for (int n = 1; n <= kMaxCodeBits; ++n) {
        first[n + 1] = first[n] + count[n];
        space += count[n] << (kMaxCodeBits - n);
        if (count[n] != 0) longest = n;
    }
    Zep16u sorted[kMaxSymbols] = {};
    for (int s = 0; s < symbols; ++s)
        if (lengths[s] != 0) sorted[first[lengths[s]]++] = static_cast<Zep16u>(s);

    const unsigned rootSize = 1u << rootBits;
    const auto entryOf = [&](unsigned symbol, int length) {
        const TableEntry e = alphabet[symbol];
        const unsigned n = static_cast<unsigned>(length);
        // A code without a meaning has its length in sight all the same.
        return e == kNoSymbol ? nothing | n << 8 : e + (n << 8) + n;
    };

    // The root, doubled from length to length.
    const Zep16u* next = sorted;
    unsigned code = 0;
    bool free = true;  // is there a code left?
    const bool incomplete = space < 1u << kMaxCodeBits;
    if (incomplete) table[0] = nothing;
    unsigned size = 1;
    for (int n = 1; n <= rootBits; ++n) {
        if (std::is_constant_evaluated())
            for (unsigned i = 0; i < size; ++i) table[size + i] = table[i];
        else
            std::memcpy(table + size, table, size * sizeof(TableEntry));
        size *= 2;
        for (unsigned i = 0; i < count[n]; ++i, ++next) {
            if (!free) continue;
            table[code] = entryOf(*next, n);
            free = nextCode(code, n);
        }
    }

    // Subtables, each as wide as the longest code with its prefix.
    unsigned prefix = rootSize;
    unsigned subSize = 0;
    for (int n = rootBits + 1; n <= longest; ++n) {
        for (unsigned left = count[n]; left > 0; --left, ++next) {
            if (!free) return;
            if ((code & (rootSize - 1)) != prefix) {
                start += subSize;
                prefix = code & (rootSize - 1);
                int width = n - rootBits;
                for (unsigned used = left; used < 1u << width && rootBits + width < longest;
                     ++width)
                    used = 2 * used + count[rootBits + width + 1];
                subSize = 1u << width;
                if (incomplete)
                    for (unsigned i = 0; i < subSize; ++i) base[start + i] = nothing;
                table[prefix] = kLink | start << 16 | static_cast<unsigned>(width) << 8;
            }
            const TableEntry e = entryOf(*next, n);
            for (unsigned i = code >> rootBits; i < subSize; i += 1u << (n - rootBits))
                base[start + i] = e;
            free = nextCode(code, n);
        }
    }
}

}  // namespace zep::ZEP_VARIANT
