// Writes Deflate streams by hand, symbol by symbol, valid or not: the opposite of a compressor.
//
// RFC 1951, section 3.1.1: everything enters a byte from its low end, numbers with their low bit
// first and Huffman codes with their high bit first.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace zep::reference {

using Bytes = std::vector<std::uint8_t>;

class BitWriter {
public:
    void bits(std::uint64_t value, int count) {
        for (int n = 0; n < count; ++n) bit((value >> n) & 1);
    }
    void code(std::uint32_t code, int length) {
        for (int n = length - 1; n >= 0; --n) bit((code >> n) & 1);
    }
    void align() { bitsInLast_ = 0; }
    void byte(std::uint8_t value) { bits(value, 8); }
    std::int64_t bitLength() const {
        return 8 * static_cast<std::int64_t>(bytes_.size()) -
               (bitsInLast_ == 0 ? 0 : 8 - bitsInLast_);
    }
    const Bytes& bytes() const { return bytes_; }

private:
    void bit(std::uint64_t value) {
        if (bitsInLast_ == 0) bytes_.push_back(0);
        bytes_.back() = static_cast<std::uint8_t>(bytes_.back() | (value << bitsInLast_));
        bitsInLast_ = (bitsInLast_ + 1) % 8;
    }

    Bytes bytes_;
    int bitsInLast_ = 0;  // 0: the last byte is full
};

// Canonical codes (RFC 1951, section 3.2.2) of a set of code lengths; symbols of length 0 have
// none.
struct CanonicalCode {
    explicit CanonicalCode(std::vector<int> codeLengths);

    std::vector<int> lengths;
    std::vector<std::uint32_t> codes;
};

std::vector<int> fixedLiteralLengths();   // 288 symbols
std::vector<int> fixedDistanceLengths();  // 32 symbols

// A symbol with the extra bits that follow it.
struct CodedValue {
    int symbol;
    int extraBits;
    int extra;
};
CodedValue codeOfLength(int length);      // 3 .. 258
CodedValue codeOfDistance(int distance);  // 1 .. 32768
int baseOfLengthSymbol(int symbol);       // 257 .. 285
int extraOfLengthSymbol(int symbol);
int baseOfDistanceSymbol(int symbol);  // 0 .. 29
int extraOfDistanceSymbol(int symbol);

// One symbol of the code-length alphabet with its extra bits; extra is ignored below symbol 16.
struct LengthSymbol {
    int symbol;
    int extra = 0;
};

class DeflateWriter : public BitWriter {
public:
    DeflateWriter() : literal_(fixedLiteralLengths()), distance_(fixedDistanceLengths()) {}

    void header(bool final, int type) {
        bits(static_cast<std::uint64_t>(final), 1), bits(static_cast<std::uint64_t>(type), 2);
    }
    void stored(bool final, std::span<const std::uint8_t> data);
    void storedHeader(bool final, int len, int complement);  // up to and with NLEN

    // Opens a block; literal(), match() and endOfBlock() then use its codes.
    void fixed(bool final);
    void dynamic(bool final, const std::vector<int>& literalLengths,
                 const std::vector<int>& distanceLengths);
    // The same with the run-length coding of the lengths given by the caller, and its code.
    void dynamic(bool final, const std::vector<int>& literalLengths,
                 const std::vector<int>& distanceLengths, const std::vector<LengthSymbol>& coded,
                 const std::vector<int>& codeLengthLengths);

    void literal(int byte) { literalSymbol(byte); }
    void endOfBlock() { literalSymbol(256); }
    void match(int length, int distance);
    void literalSymbol(int symbol) { put(literal_, symbol); }
    void distanceSymbol(int symbol) { put(distance_, symbol); }

private:
    void put(const CanonicalCode& code, int symbol) {
        const auto n = static_cast<std::size_t>(symbol);
        this->code(code.codes[n], code.lengths[n]);
    }

    CanonicalCode literal_;
    CanonicalCode distance_;
};

// A complete code for the 19 code-length symbols: 0 to 12 take four bits, the others five.
std::vector<int> flatCodeLengthLengths();

}  // namespace zep::reference
