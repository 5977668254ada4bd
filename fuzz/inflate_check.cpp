// Every piece of input and of output room is a heap block of exactly its size, so that the address
// sanitizer sees the first byte too far. The model runs in lock-step; zlib has its say about whole
// streams.
#include "inflate_check.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "core/selection.h"
#include "deflate/zlib_peer.h"
#include "reference/deflate_model.h"
#include "support/machine.h"
#include "zeps.h"

namespace zep::fuzz {
namespace {

using reference::Bytes;
using reference::DecoderCall;
using reference::DeflateModel;

// Where output is given up: more than a window where room is ample, so that its end is passed; less
// where calls are many.
constexpr std::int64_t kMaxOutput = 36000, kMaxOutputInSmallPieces = 2000;
const Bytes kEmptyHistory(DeflateModel::kWindowBytes, 0);

[[noreturn]] void disagree(const std::string& what) {
    std::fprintf(stderr, "%s\n", what.c_str());
    std::abort();
}

void selectColumn(int choice) {
    static const std::vector<Column> columns = test::builtColumns();
    const Column& column = columns[static_cast<std::size_t>(choice) % columns.size()];
    if (test::runsHere(column))
        zepSelectColumn(column.slot);
    else
        zepSelectVariantAuto();
}

// Sizes of pieces: all that is left, one byte, up to 16, or up to the maximum with short ones
// preferred.
class Cutter {
public:
    Cutter(int mode, std::uint32_t seed, int max) : mode_(mode), state_(seed | 1), max_(max) {}

    int next() {
        switch (mode_) {
            case 0:
                return max_;
            case 1:
                return 1;
            case 2:
                return 1 + static_cast<int>(random() % 16);
            default:
                return 1 + static_cast<int>(
                               random() % (random() % 2 == 0 ? 300u : static_cast<unsigned>(max_)));
        }
    }

private:
    std::uint32_t random() {
        state_ = state_ * 1664525u + 1013904223u;
        return state_ >> 8;
    }
    int mode_;
    std::uint32_t state_;
    int max_;
};

class Run {
public:
    Run(std::span<const std::uint8_t> stream, bool withModel)
        : stream_(stream), withModel_(withModel), model_(kEmptyHistory) {
        if (zepsDecodeLZ77InitAlloc_8u(0, &state_) != zepStsNoErr) disagree("no state");
    }
    ~Run() { zepsLZ77Free_8u(state_); }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    // Returns the last status.
    int run(Cutter src, Cutter dst, std::int64_t maxOutput) {
        const auto end = static_cast<std::int64_t>(stream_.size());
        int type = -1;
        bool inBlock = false;
        for (std::int64_t calls = 0;; ++calls) {
            if (calls > 4 * (end + static_cast<std::int64_t>(out_.size())) + 100)
                disagree("no progress");
            if (!inBlock) {
                type = -1;
                const int status = blockType(src.next(), type);
                if (status == zepStsSrcSizeLessExpected && position_ < end) continue;
                if (status != zepStsNoErr) return status;
                if (type < 0) return zepStsSizeErr;
                inBlock = true;
            }
            const int status =
                decode(static_cast<DecoderCall>((type + 1) % 3), src.next(), dst.next());
            if (status == zepStsNoErr) {
                inBlock = false;
            } else if (status == zepStsSrcSizeLessExpected) {
                if (position_ == end) return status;
            } else if (status == zepStsDstSizeLessExpected) {
                if (static_cast<std::int64_t>(out_.size()) >= maxOutput) return status;
            } else {
                return status;
            }
        }
    }

    const Bytes& output() const { return out_; }
    const DeflateModel& model() const { return model_; }
    std::int64_t position() const { return position_; }

private:
    std::span<const std::uint8_t> piece(int bytes) const {
        const auto left = static_cast<std::int64_t>(stream_.size()) - position_;
        return stream_.subspan(static_cast<std::size_t>(position_),
                               static_cast<std::size_t>(std::min<std::int64_t>(bytes, left)));
    }

    int blockType(int srcBytes, int& type) {
        const auto src = piece(srcBytes);
        const auto in = std::make_unique<Zep8u[]>(src.size());
        std::copy(src.begin(), src.end(), in.get());
        Zep8u* pSrc = in.get();
        auto srcLen = static_cast<Zep32s>(src.size());
        const int status = zepsDecodeLZ77GetBlockType_8u(&pSrc, &srcLen, &type, state_);
        const std::int64_t taken = pSrc - in.get();
        if (withModel_) {
            int expected = -1;
            const std::string wrong = model_.blockType(src, {status, taken, 0}, expected);
            if (!wrong.empty()) disagree("block type: " + wrong);
            if (!model_.undefined() && expected != type) disagree("another block type");
        }
        position_ += taken;
        return status;
    }

    int decode(DecoderCall call, int srcBytes, int dstBytes) {
        const auto src = piece(srcBytes);
        const auto in = std::make_unique<Zep8u[]>(src.size());
        std::copy(src.begin(), src.end(), in.get());
        const auto room = std::make_unique<Zep8u[]>(static_cast<std::size_t>(dstBytes));
        Zep8u *pSrc = in.get(), *pDst = room.get();
        auto srcLen = static_cast<Zep32s>(src.size());
        Zep32s dstLen = dstBytes;
        int status = 0;
        switch (call) {
            case DecoderCall::Stored:
                status = zepsDecodeLZ77StoredBlock_8u(&pSrc, &srcLen, &pDst, &dstLen, state_);
                break;
            case DecoderCall::Fixed:
                status =
                    zepsDecodeLZ77FixedHuffFull_8u(&pSrc, &srcLen, &pDst, &dstLen, nullptr, state_);
                break;
            case DecoderCall::Dynamic:
                status = zepsDecodeLZ77DynamicHuffFull_8u(&pSrc, &srcLen, &pDst, &dstLen, nullptr,
                                                          state_);
                break;
        }
        const std::int64_t taken = pSrc - in.get(), written = pDst - room.get();
        if (taken != static_cast<std::int64_t>(src.size()) - srcLen || written != dstBytes - dstLen)
            disagree("pointers and lengths moved differently");
        if (position_ + taken < 0 || srcLen < 0 || dstLen < 0 ||
            static_cast<std::int64_t>(out_.size()) + written < 0)
            disagree("a pointer left its array");
        if (written >= 0)
            out_.insert(out_.end(), room.get(), room.get() + written);
        else
            out_.resize(out_.size() - static_cast<std::size_t>(-written));
        if (withModel_) {
            const std::string wrong = model_.decode(call, src, dstBytes, {status, taken, written});
            if (!wrong.empty()) disagree(wrong);
            if (!model_.undefined() && model_.output().size() != out_.size())
                disagree("output of another length");
            if (!model_.undefined() && written > 0 &&
                !std::equal(out_.end() - written, out_.end(), model_.output().end() - written))
                disagree("other output");
        }
        position_ += taken;
        return status;
    }

    std::span<const std::uint8_t> stream_;
    bool withModel_;
    DeflateModel model_;
    ZepLZ77State* state_ = nullptr;
    Bytes out_;
    std::int64_t position_ = 0;
};

}  // namespace

void checkInflate(std::span<const std::uint8_t> input) {
    if (input.size() < kChoiceBytes) return;
    selectColumn(input[0] & 7);
    const bool withModel = (input[0] & 8) == 0;
    const std::uint32_t seed = input[2] + 256u * input[3];
    // Code lengths are read only with 14 bits in sight: two bytes behind the stream let the
    // smallest blocks end.
    Bytes stream(input.begin() + kChoiceBytes, input.end());
    stream.insert(stream.end(), 2, 0);

    // Without the model, single bytes of input: nothing but a header is ever read ahead then, so
    // that no stored block comes out of the bit buffer and the history has no holes.
    const int dstMode = (input[1] >> 2) & 3;
    const std::int64_t maxOutput = dstMode % 3 == 0 ? kMaxOutput : kMaxOutputInSmallPieces;
    Run run(stream, withModel);
    const int status = run.run(Cutter(withModel ? input[1] & 3 : 1, seed, 1 << 16),
                               Cutter(dstMode, seed * 31, 34000), maxOutput);

    const auto expected = test::zlibInflate(stream, maxOutput);
    if (!expected.has_value() || static_cast<std::int64_t>(expected->output.size()) >= maxOutput)
        return;
    if (status != zepStsStreamEnd)
        disagree("status " + std::to_string(status) + " where zlib accepts");
    if (run.output().size() != expected->output.size())
        disagree("zlib's output has another length");
    if (run.model().drained() == 0 && run.output() != expected->output)
        disagree("zlib's output differs");
    if (run.position() < expected->consumed) disagree("zlib has read further");
}

}  // namespace zep::fuzz
