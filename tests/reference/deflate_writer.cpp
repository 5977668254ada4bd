#include "reference/deflate_writer.h"

#include <utility>

namespace zep::reference {
namespace {

constexpr int kCodeLengthOrder[19] = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                      11, 4,  12, 3, 13, 2, 14, 1, 15};

}  // namespace

CanonicalCode::CanonicalCode(std::vector<int> codeLengths)
    : lengths(std::move(codeLengths)), codes(lengths.size(), 0) {
    std::uint32_t next = 0;
    for (int length = 1; length <= 15; ++length) {
        next <<= 1;
        for (std::size_t n = 0; n < lengths.size(); ++n)
            if (lengths[n] == length) codes[n] = next++;
    }
}

std::vector<int> fixedLiteralLengths() {
    std::vector<int> lengths(288, 8);
    for (std::size_t n = 144; n < 256; ++n) lengths[n] = 9;
    for (std::size_t n = 256; n < 280; ++n) lengths[n] = 7;
    return lengths;
}

std::vector<int> fixedDistanceLengths() { return std::vector<int>(32, 5); }

int extraOfLengthSymbol(int symbol) {
    return symbol < 265 || symbol == 285 ? 0 : (symbol - 261) / 4;
}

int baseOfLengthSymbol(int symbol) {
    if (symbol == 285) return 258;
    int base = 3;
    for (int n = 257; n < symbol; ++n) base += 1 << extraOfLengthSymbol(n);
    return base;
}

int extraOfDistanceSymbol(int symbol) { return symbol < 4 ? 0 : symbol / 2 - 1; }

int baseOfDistanceSymbol(int symbol) {
    int base = 1;
    for (int n = 0; n < symbol; ++n) base += 1 << extraOfDistanceSymbol(n);
    return base;
}

CodedValue codeOfLength(int length) {
    int symbol = 285;
    while (baseOfLengthSymbol(symbol) > length) --symbol;
    return {symbol, extraOfLengthSymbol(symbol), length - baseOfLengthSymbol(symbol)};
}

CodedValue codeOfDistance(int distance) {
    int symbol = 29;
    while (baseOfDistanceSymbol(symbol) > distance) --symbol;
    return {symbol, extraOfDistanceSymbol(symbol), distance - baseOfDistanceSymbol(symbol)};
}

std::vector<int> flatCodeLengthLengths() {
    std::vector<int> lengths(19, 4);
    for (std::size_t n = 13; n < 19; ++n) lengths[n] = 5;
    return lengths;
}

void DeflateWriter::storedHeader(bool final, int len, int complement) {
    header(final, 0);
    align();
    bits(static_cast<std::uint64_t>(len), 16);
    bits(static_cast<std::uint64_t>(complement), 16);
}

void DeflateWriter::stored(bool final, std::span<const std::uint8_t> data) {
    const int len = static_cast<int>(data.size());
    storedHeader(final, len, 65535 - len);
    for (const std::uint8_t value : data) byte(value);
}

void DeflateWriter::fixed(bool final) {
    header(final, 1);
    literal_ = CanonicalCode(fixedLiteralLengths());
    distance_ = CanonicalCode(fixedDistanceLengths());
}

void DeflateWriter::dynamic(bool final, const std::vector<int>& literalLengths,
                            const std::vector<int>& distanceLengths) {
    std::vector<LengthSymbol> coded;
    for (const int length : literalLengths) coded.push_back({length});
    for (const int length : distanceLengths) coded.push_back({length});
    dynamic(final, literalLengths, distanceLengths, coded, flatCodeLengthLengths());
}

void DeflateWriter::dynamic(bool final, const std::vector<int>& literalLengths,
                            const std::vector<int>& distanceLengths,
                            const std::vector<LengthSymbol>& coded,
                            const std::vector<int>& codeLengthLengths) {
    header(final, 2);
    bits(literalLengths.size() - 257, 5);
    bits(distanceLengths.size() - 1, 5);
    int given = 19;
    while (given > 4 &&
           codeLengthLengths[static_cast<std::size_t>(kCodeLengthOrder[given - 1])] == 0)
        --given;
    bits(static_cast<std::uint64_t>(given - 4), 4);
    for (int n = 0; n < given; ++n)
        bits(static_cast<std::uint64_t>(
                 codeLengthLengths[static_cast<std::size_t>(kCodeLengthOrder[n])]),
             3);
    const CanonicalCode code{codeLengthLengths};
    for (const LengthSymbol& s : coded) {
        put(code, s.symbol);
        constexpr int kExtraBits[3] = {2, 3, 7};
        if (s.symbol >= 16) bits(static_cast<std::uint64_t>(s.extra), kExtraBits[s.symbol - 16]);
    }
    literal_ = CanonicalCode(literalLengths);
    distance_ = CanonicalCode(distanceLengths);
}

void DeflateWriter::match(int length, int distance) {
    const CodedValue l = codeOfLength(length);
    literalSymbol(l.symbol);
    bits(static_cast<std::uint64_t>(l.extra), l.extraBits);
    const CodedValue d = codeOfDistance(distance);
    distanceSymbol(d.symbol);
    bits(static_cast<std::uint64_t>(d.extra), d.extraBits);
}

}  // namespace zep::reference
