// A slow model of the resumable Deflate decoder: bit by bit, no tables, no read-ahead.
//
// It runs in lock-step with the decoder under test. What a call must do follows from the bits
// alone, with three freedoms that the model takes from what it observed and then checks for being
// lawful: how far the decoder read ahead into its bit buffer, whether an end of block waits for
// output room, and which of two statuses comes first when input and output end at the same bit. The
// decoder's held bits are known nevertheless: bytes taken minus bits used.
//
// Codes with more members than they have room for have no defined meaning; once one appears,
// undefined() is true and every answer counts as right.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "reference/deflate_writer.h"
#include "zepcore.h"

namespace zep::reference {

enum class DecoderCall { Stored, Fixed, Dynamic };

// What one call of the decoder under test did; both counts may be negative.
struct ObservedCall {
    int status;
    std::int64_t srcTaken;
    std::int64_t written;
};

class DeflateModel {
public:
    static constexpr int kWindowBytes = 32768;

    // window: the window's content after initialisation, which is whatever the allocation held.
    explicit DeflateModel(std::span<const std::uint8_t> window);

    // Each returns what is wrong with the observed call, or nothing.
    std::string blockType(std::span<const std::uint8_t> src, const ObservedCall& seen, int& type);
    std::string decode(DecoderCall call, std::span<const std::uint8_t> src, int dstLen,
                       const ObservedCall& seen);

    // The decoder has come to hold these bytes in its bit buffer.
    void hold(std::span<const std::uint8_t> bytes) {
        taken_.insert(taken_.end(), bytes.begin(), bytes.end());
    }

    const Bytes& output() const { return out_; }
    bool undefined() const { return undefined_; }
    // A repeat ran past the code lengths: which bits of it are gone is left open, so nothing can
    // follow.
    bool refused() const { return refused_; }
    // Bytes of stored blocks that came out of the bit buffer, so far; the window does not know
    // them.
    std::int64_t drained() const { return drained_; }

    // The decoder's fields, by the same names.
    int status() const { return status_; }
    int bitCount() const {
        return static_cast<int>(8 * static_cast<std::int64_t>(taken_.size()) - bitPos_);
    }
    std::uint64_t bitBuffer() const;
    int windowPos() const { return windowPos_; }
    int storedRemaining() const { return storedRemaining_; }
    int finalBlock() const { return finalBlock_; }
    int pendingMatchLength() const { return pendingLength_; }
    int pendingMatchDistance() const { return pendingDistance_; }
    int lengthsDecoded() const { return lengthsDecoded_; }
    const Bytes& window() const { return window_; }

private:
    static constexpr int kContinue =
        -1000;  // in place of a status: nothing has stopped the call yet

    // A canonical code: how many members each length has, and the members in the order of their
    // codes.
    struct Code {
        void assign(std::span<const int> lengths);
        bool oversubscribed() const;
        std::array<int, 16> count{};
        std::vector<int> members;
    };
    struct Symbol {
        int value;    // -1: unassigned
        int length;   // bits; 0 when unassigned
        int inSight;  // bits without which it cannot be told from another symbol
    };
    struct Lookup {
        int symbol = -1;
        int length = -1;  // -1: not written yet, so unknown
    };

    std::int64_t available() const {
        return 8 * static_cast<std::int64_t>(taken_.size()) - bitPos_;
    }
    std::uint64_t peek(int count, std::int64_t skip = 0) const;
    std::uint64_t take(int count);
    Symbol find(const Code& code, std::int64_t skip, int firstUnused) const;

    std::string stored(std::span<const std::uint8_t> src, int dstLen, const ObservedCall& seen);
    std::string huffman(bool dynamic, std::span<const std::uint8_t> src, int dstLen,
                        const ObservedCall& seen);
    int dynamicHeader();
    int symbols(bool dynamic, int dstLen, int observedStatus);
    void buildCodeLengthLookup();
    void copyMatch(int length, int distance);
    void emit(std::uint8_t value);
    void enterWindow(std::size_t from);
    std::string check(int expectedStatus, const ObservedCall& seen, std::size_t outBefore) const;

    Bytes taken_;                // every byte taken from the caller so far
    std::int64_t bitPos_ = 0;    // bits of them that are used up
    Bytes out_;                  // everything written so far
    std::size_t callBegin_ = 0;  // size of out_ when the present call began
    Bytes window_;
    int windowPos_ = 0;
    int status_ = 0;
    int storedRemaining_ = 0;
    int finalBlock_ = 0;
    int blockType_ = 0;
    int pendingLength_ = 0;
    int pendingDistance_ = 0;
    int literalCount_ = 0;
    int distanceCount_ = 0;
    int codeLengthCount_ = 0;
    int lengthsDecoded_ = 0;
    std::vector<int> lengths_;
    std::array<int, 19> codeLengthLengths_{};
    std::array<Lookup, 128> lookup_{};
    Code literal_, distance_;
    std::int64_t drained_ = 0;
    bool undefined_ = false;
    bool refused_ = false;
};

}  // namespace zep::reference
