// The model's reader of a Huffman block: its header, its code lengths and its symbols.
#include <array>

#include "reference/deflate_model.h"

namespace zep::reference {
namespace {

constexpr int kCodeLengthOrder[19] = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                      11, 4,  12, 3, 13, 2, 14, 1, 15};
constexpr int kEndOfBlock = 256;
constexpr int kLookupBits = 7;

}  // namespace

void DeflateModel::Code::assign(std::span<const int> lengths) {
    count = {};
    members.clear();
    for (int length = 1; length <= 15; ++length)
        for (std::size_t n = 0; n < lengths.size(); ++n)
            if (lengths[n] == length) {
                ++count[static_cast<std::size_t>(length)];
                members.push_back(static_cast<int>(n));
            }
}

bool DeflateModel::Code::oversubscribed() const {
    int room = 1 << 15;
    for (int length = 1; length <= 15; ++length)
        room -= count[static_cast<std::size_t>(length)] << (15 - length);
    return room < 0;
}

// Reads a code bit by bit. Symbols from firstUnused on take code space but have no meaning.
DeflateModel::Symbol DeflateModel::find(const Code& code, std::int64_t skip,
                                        int firstUnused) const {
    const std::uint64_t next = peek(15, skip);
    int first = 0, word = 0;
    std::size_t shorter = 0;  // members of all lengths before
    for (int length = 1; length <= 15; ++length) {
        word = 2 * word + static_cast<int>((next >> (length - 1)) & 1);
        first *= 2;
        const int count = code.count[static_cast<std::size_t>(length)];
        if (word < first + count) {
            const int symbol = code.members[shorter + static_cast<std::size_t>(word - first)];
            return symbol < firstUnused ? Symbol{symbol, length, length} : Symbol{-1, 0, length};
        }
        first += count;
        shorter += static_cast<std::size_t>(count);
    }
    // No code begins with these bits, nor with any that could follow: codes without a member come
    // last.
    return {-1, 0, 0};
}

// Entries that no code reaches keep what an earlier block left there.
void DeflateModel::buildCodeLengthLookup() {
    const CanonicalCode code{
        std::vector<int>(codeLengthLengths_.begin(), codeLengthLengths_.end())};
    Code sizes;
    sizes.assign(code.lengths);
    if (sizes.oversubscribed()) {
        undefined_ = true;
        return;
    }
    for (std::size_t symbol = 0; symbol < code.lengths.size(); ++symbol) {
        const int length = code.lengths[symbol];
        if (length == 0) continue;
        unsigned reversed = 0;
        for (int n = 0; n < length; ++n)
            reversed |= ((code.codes[symbol] >> n) & 1u) << (length - 1 - n);
        for (unsigned at = reversed; at < (1u << kLookupBits); at += 1u << length)
            lookup_[at] = {static_cast<int>(symbol), length};
    }
}

int DeflateModel::dynamicHeader() {
    if (status_ == 1) {
        if (available() < 14) return zepStsSrcSizeLessExpected;
        literalCount_ = static_cast<int>(take(5)) + 257;
        distanceCount_ = static_cast<int>(take(5)) + 1;
        codeLengthCount_ = static_cast<int>(take(4)) + 4;
        status_ = 2;
    }
    if (status_ == 2) {
        if (available() < 3 * codeLengthCount_) return zepStsSrcSizeLessExpected;
        codeLengthLengths_.fill(0);
        for (int n = 0; n < codeLengthCount_; ++n)
            codeLengthLengths_[static_cast<std::size_t>(kCodeLengthOrder[n])] =
                static_cast<int>(take(3));
        buildCodeLengthLookup();
        lengths_.assign(static_cast<std::size_t>(literalCount_ + distanceCount_), 0);
        lengthsDecoded_ = 0;
        status_ = 3;
    }
    const int total = literalCount_ + distanceCount_;
    while (lengthsDecoded_ < total && !undefined_) {
        if (available() < 14) return zepStsSrcSizeLessExpected;
        const Lookup found = lookup_[peek(kLookupBits)];
        if (found.length < 0) {
            undefined_ = true;
            break;
        }
        bitPos_ += found.length;
        int repeat = 1, value = found.symbol;
        if (found.symbol == 16) {
            repeat = 3 + static_cast<int>(take(2));
            value =
                lengthsDecoded_ == 0 ? 0 : lengths_[static_cast<std::size_t>(lengthsDecoded_ - 1)];
        } else if (found.symbol == 17) {
            repeat = 3 + static_cast<int>(take(3)), value = 0;
        } else if (found.symbol == 18) {
            repeat = 11 + static_cast<int>(take(7)), value = 0;
        }
        if (lengthsDecoded_ + repeat > total) {
            refused_ = true;
            return zepStsSizeErr;
        }
        for (; repeat > 0; --repeat) lengths_[static_cast<std::size_t>(lengthsDecoded_++)] = value;
    }
    const std::span<const int> lengths(lengths_);
    literal_.assign(lengths.first(static_cast<std::size_t>(literalCount_)));
    distance_.assign(lengths.subspan(static_cast<std::size_t>(literalCount_)));
    if (literal_.oversubscribed() || distance_.oversubscribed()) undefined_ = true;
    status_ = 4;
    return kContinue;
}

int DeflateModel::symbols(bool dynamic, int dstLen, int observedStatus) {
    const auto room = [&] {
        return static_cast<std::int64_t>(callBegin_) + dstLen -
               static_cast<std::int64_t>(out_.size());
    };
    while (pendingLength_ == 0) {
        const std::int64_t bits = available();
        Symbol symbol = find(literal_, 0, 286);
        // Without room and without a whole code, both statuses tell the truth.
        if (bits == 0 || symbol.inSight > bits)
            return room() == 0 && observedStatus == zepStsDstSizeLessExpected
                       ? zepStsDstSizeLessExpected
                       : zepStsSrcSizeLessExpected;
        if (symbol.value == -1 && !dynamic) {
            // 286 and 287 of the fixed code, eight bits each.
            if (room() == 0 && observedStatus == zepStsDstSizeLessExpected)
                return zepStsDstSizeLessExpected;
            bitPos_ += symbol.inSight;
            return zepStsSizeErr;
        }
        if (symbol.value == kEndOfBlock) {
            if (room() == 0 && observedStatus == zepStsDstSizeLessExpected)
                return zepStsDstSizeLessExpected;
            bitPos_ += symbol.length;
            return finalBlock_ == 1 ? zepStsStreamEnd : zepStsNoErr;
        }
        if (room() == 0) return zepStsDstSizeLessExpected;
        if (symbol.value < kEndOfBlock) {
            bitPos_ += symbol.length;
            emit(static_cast<std::uint8_t>(symbol.value == -1 ? 0 : symbol.value));
            continue;
        }
        const int lengthExtra = extraOfLengthSymbol(symbol.value);
        std::int64_t used = symbol.length + lengthExtra;
        if (used > bits) return zepStsSrcSizeLessExpected;
        const int length =
            baseOfLengthSymbol(symbol.value) + static_cast<int>(peek(lengthExtra, symbol.length));
        const Symbol far = find(distance_, used, 30);
        if (far.value == -1) {
            if (used + far.inSight > bits) return zepStsSrcSizeLessExpected;
            bitPos_ += used + (dynamic ? 0 : far.inSight);
            return zepStsSizeErr;
        }
        const int distanceExtra = extraOfDistanceSymbol(far.value);
        if (used + far.length + distanceExtra > bits) return zepStsSrcSizeLessExpected;
        const int distance = baseOfDistanceSymbol(far.value) +
                             static_cast<int>(peek(distanceExtra, used + far.length));
        bitPos_ += used + far.length + distanceExtra;
        if (length > room()) {
            pendingLength_ = length - static_cast<int>(room());
            pendingDistance_ = distance;
        }
        copyMatch(length - pendingLength_, distance);
    }
    return zepStsDstSizeLessExpected;
}

}  // namespace zep::reference
