#include "reference/deflate_model.h"

#include <algorithm>

namespace zep::reference {
namespace {

constexpr int kWindowMask = DeflateModel::kWindowBytes - 1;
constexpr int kBitBufferBits = 64;

}  // namespace

DeflateModel::DeflateModel(std::span<const std::uint8_t> window)
    : window_(window.begin(), window.end()) {}

std::uint64_t DeflateModel::peek(int count, std::int64_t skip) const {
    // Bits that have not arrived yet read as zeros.
    const auto end = static_cast<std::int64_t>(taken_.size());
    const std::int64_t at = bitPos_ + skip;
    std::uint64_t value = 0;
    int have = 0;
    for (std::int64_t byte = at / 8; byte < end && have < count; ++byte) {
        const int unused = byte == at / 8 ? static_cast<int>(at % 8) : 0;
        value |= static_cast<std::uint64_t>(taken_[static_cast<std::size_t>(byte)] >> unused)
                 << have;
        have += 8 - unused;
    }
    if (count < 64) value &= (std::uint64_t{1} << count) - 1;
    return value;
}

std::uint64_t DeflateModel::take(int count) {
    const std::uint64_t value = peek(count);
    bitPos_ += count;
    return value;
}

std::uint64_t DeflateModel::bitBuffer() const { return peek(bitCount()); }

std::string DeflateModel::check(int expectedStatus, const ObservedCall& seen,
                                std::size_t outBefore) const {
    if (seen.status != expectedStatus)
        return "status " + std::to_string(seen.status) + ", expected " +
               std::to_string(expectedStatus);
    const std::int64_t written =
        static_cast<std::int64_t>(out_.size()) - static_cast<std::int64_t>(outBefore);
    if (seen.written != written)
        return "wrote " + std::to_string(seen.written) + ", expected " + std::to_string(written);
    if (bitCount() < 0 || bitCount() > kBitBufferBits)
        return "bits held, by the bytes taken: " + std::to_string(bitCount());
    return {};
}

std::string DeflateModel::blockType(std::span<const std::uint8_t> src, const ObservedCall& seen,
                                    int& type) {
    if (undefined_) return {};
    const std::size_t outBefore = out_.size();
    std::int64_t srcTaken = 0;
    int expected = zepStsNoErr;
    if (status_ != 0) {
        type = blockType_;
    } else {
        if (bitCount() < 3) {
            if (src.empty()) {
                expected = zepStsSrcSizeLessExpected;
            } else {
                taken_.push_back(src[0]);
                srcTaken = 1;
            }
        }
        if (expected == zepStsNoErr) {
            const auto bits = take(3);
            finalBlock_ = static_cast<int>(bits & 1);
            constexpr int kTypes[4] = {2, 0, 1, -1};
            constexpr int kStatus[4] = {8, 4, 1, 0};
            if (kTypes[bits >> 1] >= 0) type = blockType_ = kTypes[bits >> 1];
            status_ = kStatus[bits >> 1];
            if (status_ == 4) {
                literal_.assign(fixedLiteralLengths());
                distance_.assign(fixedDistanceLengths());
            }
        }
    }
    if (seen.srcTaken != srcTaken)
        return "block header took " + std::to_string(seen.srcTaken) + " bytes";
    return check(expected, seen, outBefore);
}

std::string DeflateModel::decode(DecoderCall call, std::span<const std::uint8_t> src, int dstLen,
                                 const ObservedCall& seen) {
    if (undefined_) return {};
    callBegin_ = out_.size();
    return call == DecoderCall::Stored ? stored(src, dstLen, seen)
                                       : huffman(call == DecoderCall::Dynamic, src, dstLen, seen);
}

void DeflateModel::emit(std::uint8_t value) { out_.push_back(value); }

std::string DeflateModel::stored(std::span<const std::uint8_t> src, int dstLen,
                                 const ObservedCall& seen) {
    std::int64_t srcTaken = 0;
    const auto run = [&]() -> int {
        if (dstLen == 0) return zepStsDstSizeLessExpected;
        std::int64_t room = dstLen;
        if (status_ == 8) {
            bitPos_ += bitCount() % 8;
            status_ = 9;
        }
        if (status_ != 9 && status_ != 10 && status_ != 11) return zepStsErr;
        if (status_ == 9) {
            while (bitCount() < 32 && srcTaken < static_cast<std::int64_t>(src.size()))
                taken_.push_back(src[static_cast<std::size_t>(srcTaken++)]);
            if (bitCount() < 32) return zepStsSrcSizeLessExpected;
            const auto header = peek(32);
            if ((header & 0xFFFF) != 0xFFFF - (header >> 16)) return zepStsSizeErr;
            bitPos_ += 32;
            storedRemaining_ = static_cast<int>(header & 0xFFFF) - bitCount() / 8;
            status_ = (header & 0xFFFF) == 0 ? 0 : 10;
        }
        if (status_ == 10) {
            for (; bitCount() > 0 && room > 0; --room, ++drained_)
                emit(static_cast<std::uint8_t>(take(8)));
            if (bitCount() > 0) return zepStsDstSizeLessExpected;
            status_ = 11;
        }
        if (status_ == 11) {
            const std::int64_t n =
                std::min({std::int64_t{storedRemaining_},
                          static_cast<std::int64_t>(src.size()) - srcTaken, room});
            if (n < 0) {
                // More bytes were drained than the block has: they go back where they came from.
                out_.resize(out_.size() - static_cast<std::size_t>(-n));
                taken_.resize(taken_.size() - static_cast<std::size_t>(-n));
                bitPos_ += 8 * n;
                srcTaken += n;
                windowPos_ = static_cast<int>((windowPos_ + n) & kWindowMask);
            } else {
                for (std::int64_t i = 0; i < n; ++i) {
                    const std::uint8_t value = src[static_cast<std::size_t>(srcTaken++)];
                    taken_.push_back(value);
                    bitPos_ += 8;
                    emit(value);
                }
                if (n >= kWindowBytes) {
                    std::copy(out_.end() - kWindowBytes, out_.end(), window_.begin());
                    windowPos_ = 0;
                } else {
                    for (std::int64_t i = 0; i < n; ++i) {
                        window_[static_cast<std::size_t>(windowPos_)] =
                            *(out_.end() - static_cast<std::ptrdiff_t>(n - i));
                        windowPos_ = (windowPos_ + 1) & kWindowMask;
                    }
                }
            }
            room -= n;
            storedRemaining_ -= static_cast<int>(n);
            if (storedRemaining_ != 0)
                return room > 0 ? zepStsSrcSizeLessExpected : zepStsDstSizeLessExpected;
            status_ = 0;
        }
        return finalBlock_ == 1 ? zepStsStreamEnd : zepStsNoErr;
    };
    const int expected = run();
    if (seen.srcTaken != srcTaken)
        return "stored block took " + std::to_string(seen.srcTaken) + ", expected " +
               std::to_string(srcTaken);
    return check(expected, seen, callBegin_);
}

void DeflateModel::enterWindow(std::size_t from) {
    const std::size_t written = out_.size() - from;
    if (written >= kWindowBytes) {
        std::copy(out_.end() - kWindowBytes, out_.end(), window_.begin());
        windowPos_ = 0;
        return;
    }
    for (std::size_t n = from; n < out_.size(); ++n) {
        window_[static_cast<std::size_t>(windowPos_)] = out_[n];
        windowPos_ = (windowPos_ + 1) & kWindowMask;
    }
}

// Distances beyond what this call has written reach into the window, which stands as the call found
// it.
void DeflateModel::copyMatch(int length, int distance) {
    const auto d = static_cast<std::size_t>(distance);
    for (int n = 0; n < length; ++n) {
        const std::size_t written = out_.size() - callBegin_;
        emit(d <= written
                 ? out_[out_.size() - d]
                 : window_[static_cast<std::size_t>(windowPos_ - static_cast<int>(d - written)) &
                           kWindowMask]);
    }
}

std::string DeflateModel::huffman(bool dynamic, std::span<const std::uint8_t> src, int dstLen,
                                  const ObservedCall& seen) {
    if (dstLen == 0) {
        if (seen.srcTaken != 0) return "took input without output room";
        return check(zepStsDstSizeLessExpected, seen, callBegin_);
    }
    const std::size_t takenBefore = taken_.size();
    taken_.insert(taken_.end(), src.begin(), src.end());

    int expected = kContinue;
    if (pendingLength_ > 0) {
        const int n = std::min(pendingLength_, dstLen);
        copyMatch(n, pendingDistance_);
        pendingLength_ -= n;
        if (pendingLength_ == 0) pendingDistance_ = 0;
        if (!dynamic && n == dstLen) expected = zepStsDstSizeLessExpected;
    }
    if (expected == kContinue && status_ == 0) {
        const auto bits = peek(3);
        if (available() < 3) {
            expected = zepStsSrcSizeLessExpected;
        } else if ((bits >> 1) != (dynamic ? 2u : 1u)) {
            expected = zepStsErr;
        } else {
            bitPos_ += 3;
            blockType_ = dynamic ? 1 : 0;
            if ((bits & 1) != 0) finalBlock_ = 1;
            status_ = dynamic ? 1 : 4;
            if (!dynamic) {
                literal_.assign(fixedLiteralLengths());
                distance_.assign(fixedDistanceLengths());
            }
        }
    }
    if (expected == kContinue && dynamic && status_ < 4) expected = dynamicHeader();
    if (undefined_) return {};
    if (expected == kContinue) expected = symbols(dynamic, dstLen, seen.status);
    if (undefined_) return {};

    const std::size_t used = static_cast<std::size_t>((bitPos_ + 7) / 8);
    if (expected == zepStsNoErr || expected == zepStsStreamEnd) status_ = 0;
    if (expected == zepStsStreamEnd) {
        taken_.resize(used);
        bitPos_ = 8 * static_cast<std::int64_t>(used);
        const std::int64_t srcTaken =
            static_cast<std::int64_t>(used) - static_cast<std::int64_t>(takenBefore);
        if (seen.srcTaken != srcTaken)
            return "stream end took " + std::to_string(seen.srcTaken) + ", expected " +
                   std::to_string(srcTaken);
    } else {
        enterWindow(callBegin_);
        const auto srcLen = static_cast<std::int64_t>(src.size());
        if (seen.srcTaken > srcLen) return "took more input than there is";
        const std::int64_t taken = static_cast<std::int64_t>(takenBefore) + seen.srcTaken;
        if (taken < static_cast<std::int64_t>(used)) return "took fewer bytes than it used";
        taken_.resize(static_cast<std::size_t>(taken));
        if (expected == zepStsSrcSizeLessExpected && seen.srcTaken != srcLen)
            return "asks for input with some left";
        if (expected == zepStsDstSizeLessExpected && seen.srcTaken == srcLen && bitCount() >= 8)
            return "output full and input used up with a whole byte held back";
    }
    return check(expected, seen, callBegin_);
}

}  // namespace zep::reference
