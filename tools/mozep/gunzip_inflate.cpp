// The loop around the block decoders.
//
// Two habits of the decoder need care, both about whole bytes that its bit buffer holds when a
// stored block begins:
// - they go to the output but not into the decoder's history, so that later matches would miss
//   them. It shows in the block making more output than it takes input; the decoder is then handed
//   the true history again, as a stored block of 32 KiB whose output is thrown away.
// - behind an empty last block they stay in the buffer. How many of them there are cannot be asked;
//   the reader of the trailer finds out.
#include "gunzip_inflate.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "commands.h"

namespace mozep_program {
namespace {

constexpr int kHistory = 32768;
constexpr int kRoom = 256 * 1024;
// The bit buffer holds eight bytes, less the bits of a block header; LEN and its complement take
// four.
constexpr int kHeldBytes = 3;

}  // namespace

Inflater::Inflater(GunzipInput& in, Sink sink)
    : in_(in), sink_(std::move(sink)), buffer_(kHistory + kRoom), madeUp_(5 + kHistory) {}

void Inflater::corrupt(const char* what) const { throw Failure(in_.name() + ": corrupt: " + what); }

void Inflater::needInput() {
    if (!in_.refill()) throw Failure(in_.name() + ": ends too early");
}

void Inflater::flush() {
    const auto made = static_cast<std::size_t>(kRoom - room_);
    // A valid symbol takes two bits or more and makes at most 258 bytes, so this much output needs
    // input. A corrupt block may hold codes that cost no bits, and would go on for ever.
    const double used = in_.consumed() - consumedAtFlush_;
    if (static_cast<double>(made) > 258 * 4 * (used + 64)) corrupt("endless output");
    consumedAtFlush_ = in_.consumed();
    sink_(buffer_.data() + kHistory, made);
    std::memmove(buffer_.data(), dst_ - kHistory, kHistory);
    dst_ = buffer_.data() + kHistory;
    room_ = kRoom;
}

ZepStatus Inflater::huffmanBlock(HuffmanDecoder decode) {
    for (;;) {
        const ZepStatus status = decode(&in_.next, &in_.left, &dst_, &room_, nullptr, state_.get());
        if (status == zepStsSrcSizeLessExpected)
            needInput();
        else if (status == zepStsDstSizeLessExpected)
            flush();
        else if (status == zepStsNoErr || status == zepStsStreamEnd)
            return status;
        else
            corrupt("invalid code");
    }
}

ZepStatus Inflater::storedBlock() {
    // Held bytes may be more than the block has; the decoder then writes and takes back the
    // surplus, which must not have gone to the sink.
    if (room_ < kHeldBytes) flush();
    Zep32s made = 0, taken = 0;
    for (;;) {
        made += room_;
        taken += in_.left;
        const ZepStatus status =
            zepsDecodeLZ77StoredBlock_8u(&in_.next, &in_.left, &dst_, &room_, state_.get());
        made -= room_;
        taken -= in_.left;
        if (status == zepStsSrcSizeLessExpected) {
            needInput();
        } else if (status == zepStsDstSizeLessExpected) {
            flush();
        } else if (status == zepStsNoErr) {
            if (made > taken) repairHistory();
            return status;
        } else if (status == zepStsStreamEnd) {
            if (made == 0 && taken == 0) mayBeUnreturned_ = kHeldBytes;
            return status;
        } else {
            corrupt("invalid stored block");
        }
    }
}

// The decoder stands between two blocks, with an empty bit buffer.
void Inflater::repairHistory() {
    static_assert(kHistory == 0x8000);
    // Stored, not the last; LEN and its complement. It is written over itself.
    static constexpr Zep8u kHeader[5] = {0x00, 0x00, 0x80, 0xFF, 0x7F};
    std::copy(std::begin(kHeader), std::end(kHeader), madeUp_.begin());
    Zep8u *src = madeUp_.data(), *dst = src + sizeof kHeader;
    std::memcpy(dst, dst_ - kHistory, kHistory);
    Zep32s srcLen = sizeof kHeader + kHistory, dstLen = kHistory, type = -1;
    ZepStatus status = zepsDecodeLZ77GetBlockType_8u(&src, &srcLen, &type, state_.get());
    if (status == zepStsNoErr)
        status = zepsDecodeLZ77StoredBlock_8u(&src, &srcLen, &dst, &dstLen, state_.get());
    if (status != zepStsNoErr) throw Failure("internal: the history cannot be restored");
}

void Inflater::inflate() {
    ZepLZ77State* state = nullptr;
    if (zepsDecodeLZ77InitAlloc_8u(0, &state) != zepStsNoErr) throw Failure("out of memory");
    state_.reset(state);
    std::fill_n(buffer_.begin(), kHistory, Zep8u{0});
    dst_ = buffer_.data() + kHistory;
    room_ = kRoom;
    consumedAtFlush_ = in_.consumed();
    mayBeUnreturned_ = 0;
    ZepStatus status = zepStsNoErr;
    while (status != zepStsStreamEnd) {
        int type = -1;  // stays when the block's type is the reserved one
        while (zepsDecodeLZ77GetBlockType_8u(&in_.next, &in_.left, &type, state) ==
               zepStsSrcSizeLessExpected)
            needInput();
        switch (type) {
            case 0:
                status = huffmanBlock(zepsDecodeLZ77FixedHuffFull_8u);
                break;
            case 1:
                status = huffmanBlock(zepsDecodeLZ77DynamicHuffFull_8u);
                break;
            case 2:
                status = storedBlock();
                break;
            default:
                corrupt("invalid block type");
        }
    }
    flush();
}

}  // namespace mozep_program
