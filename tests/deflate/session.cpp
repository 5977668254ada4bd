#include "deflate/session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "support/random.h"

// The object's layout is the same in every variant.
#define ZEP_VARIANT e9
#include "deflate/lz77_state.h"

namespace zep::test {
namespace {

// The decoder starts with a history of zeros.
const Bytes kEmptyHistory(reference::DeflateModel::kWindowBytes, 0);

int uniform(int low, int high) { return std::uniform_int_distribution<int>(low, high)(rng()); }

}  // namespace

StatePtr makeState() {
    ZepLZ77State* state = nullptr;
    EXPECT_EQ(zepsDecodeLZ77InitAlloc_8u(0, &state), zepStsNoErr);
    return StatePtr(state);
}

Cuts everyCall(int srcBytes, int dstBytes) {
    return {[=] { return srcBytes; }, [=] { return dstBytes; }};
}

// Short pieces are as likely as long ones.
Cuts randomCuts(int maxSrcBytes, int maxDstBytes) {
    const auto size = [](int max) {
        return uniform(0, 1) == 0 ? uniform(1, std::min(max, 40)) : uniform(1, max);
    };
    return {[=] { return size(maxSrcBytes); }, [=] { return size(maxDstBytes); }};
}

Session::Session(Bytes stream, LockStep lockStep, Placement placement)
    : stream_(std::move(stream)),
      placement_(placement),
      lockStep_(lockStep == LockStep::On),
      state_(makeState()),
      model_(kEmptyHistory) {}

std::span<const std::uint8_t> Session::piece(int srcBytes) const {
    const auto left = static_cast<std::int64_t>(stream_.size()) - position_;
    const auto bytes = static_cast<std::size_t>(std::clamp<std::int64_t>(srcBytes, 0, left));
    return std::span(stream_).subspan(static_cast<std::size_t>(position_), bytes);
}

void Session::fail(const std::string& what) {
    if (!failure_.empty()) return;
    failure_ = what + " (call " + std::to_string(calls_) + ", input at " +
               std::to_string(position_) + ", output " + std::to_string(out_.size()) + ")";
    ADD_FAILURE() << failure_;
}

int Session::blockType(int srcBytes) {
    const auto src = piece(srcBytes);
    GuardedBuffer<Zep8u> in(static_cast<int>(src.size()), placement_.src, placement_.srcSkew);
    std::copy(src.begin(), src.end(), in.begin());
    Zep8u* pSrc = in.data();
    Zep32s srcLen = in.size();
    ++calls_;
    const int status = zepsDecodeLZ77GetBlockType_8u(&pSrc, &srcLen, &type_, state_.get());
    const std::int64_t taken = pSrc - in.data();
    if (taken != in.size() - srcLen) fail("source pointer and length moved differently");
    if (lockStep_) {
        int expectedType = type_;
        const std::string wrong = model_.blockType(src, {status, taken, 0}, expectedType);
        if (!wrong.empty()) fail("block type: " + wrong);
        if (expectedType != type_) fail("block type " + std::to_string(type_));
        compareFields();
    }
    position_ += taken;
    return status;
}

int Session::decode(DecoderCall call, int srcBytes, int dstBytes) {
    const auto src = piece(srcBytes);
    GuardedBuffer<Zep8u> in(static_cast<int>(src.size()), placement_.src, placement_.srcSkew);
    std::copy(src.begin(), src.end(), in.begin());
    GuardedBuffer<Zep8u> room(dstBytes, placement_.dst, placement_.dstSkew);
    Zep8u *pSrc = in.data(), *pDst = room.data();
    Zep32s srcLen = in.size(), dstLen = dstBytes;
    ++calls_;
    const Fields before = fields();
    int status = 0;
    switch (call) {
        case DecoderCall::Stored:
            status = zepsDecodeLZ77StoredBlock_8u(&pSrc, &srcLen, &pDst, &dstLen, state_.get());
            break;
        case DecoderCall::Fixed:
            status = zepsDecodeLZ77FixedHuffFull_8u(&pSrc, &srcLen, &pDst, &dstLen, nullptr,
                                                    state_.get());
            break;
        case DecoderCall::Dynamic:
            status = zepsDecodeLZ77DynamicHuffFull_8u(&pSrc, &srcLen, &pDst, &dstLen, nullptr,
                                                      state_.get());
            break;
    }
    // Whole bytes held when a block's header has been read; LEN and its complement are four of
    // them.
    if (call == DecoderCall::Stored && (before.status == 8 || before.status == 9) &&
        pDst != room.data())
        drained_ += std::max(0, before.bitCount / 8 - 4);
    const std::int64_t taken = pSrc - in.data(), written = pDst - room.data();
    if (taken != in.size() - srcLen) fail("source pointer and length moved differently");
    if (status == zepStsSrcSizeLessExpected && srcLen != 0) fail("input left over");
    if (taken < -8) fail("more bytes returned than the bit buffer holds");
    if (written != dstBytes - dstLen) fail("destination pointer and length moved differently");
    // A pointer may go back over bytes of earlier calls, never beyond the first byte of the stream
    // or of the output.
    if (position_ + taken < 0 || taken > in.size()) fail("source pointer outside the stream");
    if (static_cast<std::int64_t>(out_.size()) + written < 0 || written > dstBytes)
        fail("destination pointer outside");
    if (!failure_.empty()) return zepStsErr;
    if (written >= 0)
        out_.insert(out_.end(), room.data(), room.data() + written);
    else
        out_.resize(out_.size() - static_cast<std::size_t>(-written));
    if (lockStep_) {
        const std::string wrong = model_.decode(call, src, dstBytes, {status, taken, written});
        if (!wrong.empty()) {
            fail(wrong);
        } else if (!model_.undefined()) {
            const Bytes& expected = model_.output();
            const auto compared =
                static_cast<std::ptrdiff_t>(std::clamp<std::int64_t>(written, 0, dstBytes));
            if (expected.size() != out_.size() ||
                !std::equal(out_.end() - compared, out_.end(), expected.end() - compared))
                fail("output differs");
        }
        compareFields();
    }
    position_ += taken;
    return status;
}

int Session::decodeBlock(int srcBytes, int dstBytes) {
    constexpr DecoderCall kCalls[3] = {DecoderCall::Fixed, DecoderCall::Dynamic,
                                       DecoderCall::Stored};
    return decode(kCalls[type_], srcBytes, dstBytes);
}

int Session::run(const Cuts& cuts, std::int64_t maxOutput) {
    const auto streamEnd = static_cast<std::int64_t>(stream_.size());
    bool inBlock = false;
    for (;;) {
        // Each call but a few takes a byte of input or fills its room.
        const std::int64_t callLimit =
            4 * (streamEnd + static_cast<std::int64_t>(out_.size())) + 100;
        if (calls_ > callLimit) fail("no progress");
        if (!failure_.empty()) return zepStsErr;
        if (!inBlock) {
            type_ = -1;
            const int status = blockType(cuts.src());
            if (status == zepStsSrcSizeLessExpected && position_ < streamEnd) continue;
            if (status != zepStsNoErr) return status;
            if (type_ < 0) return zepStsSizeErr;  // the reserved type
            inBlock = true;
        }
        const int status = decodeBlock(cuts.src(), cuts.dst());
        if (status == zepStsNoErr) {
            inBlock = false;
        } else if (status == zepStsSrcSizeLessExpected) {
            if (position_ == streamEnd) return status;
        } else if (status == zepStsDstSizeLessExpected) {
            if (static_cast<std::int64_t>(out_.size()) >= maxOutput) return status;
        } else {
            return status;
        }
    }
}

void Session::hold(int bytes) {
    const auto held = piece(bytes);
    for (const std::uint8_t value : held) {
        state_->bitBuffer |= Zep64u{value} << state_->bitCount;
        state_->bitCount += 8;
    }
    model_.hold(held);
    position_ += bytes;
}

Session::Fields Session::fields() const {
    const ZepLZ77State& s = *state_;
    return {s.status,
            s.bitCount,
            s.windowPos,
            s.storedRemaining,
            s.finalBlock,
            s.streamEnded,
            s.blockType,
            s.lengthsDecoded,
            s.codeLengthCount,
            s.literalCodeCount,
            s.distanceCodeCount,
            s.pendingMatchLength,
            s.pendingMatchDistance,
            s.initArgument,
            s.externalStatus,
            s.bitBuffer};
}

// What survives a stop must agree with the model, field by field.
void Session::compareFields() {
    if (!failure_.empty() || model_.undefined() || model_.refused()) return;
    const ZepLZ77State& s = *state_;
    const auto expect = [&](const char* name, std::int64_t seen, std::int64_t expected) {
        if (seen != expected)
            fail(std::string(name) + " is " + std::to_string(seen) + ", expected " +
                 std::to_string(expected));
    };
    expect("bitCount", s.bitCount, model_.bitCount());
    if (s.bitBuffer != model_.bitBuffer()) fail("bitBuffer differs");
    expect("status", s.status, model_.status());
    expect("windowPos", s.windowPos, model_.windowPos());
    expect("finalBlock", s.finalBlock, model_.finalBlock());
    expect("pendingMatchLength", s.pendingMatchLength, model_.pendingMatchLength());
    if (model_.pendingMatchLength() > 0)
        expect("pendingMatchDistance", s.pendingMatchDistance, model_.pendingMatchDistance());
    if (s.status >= 10) expect("storedRemaining", s.storedRemaining, model_.storedRemaining());
    if (s.status == 3) expect("lengthsDecoded", s.lengthsDecoded, model_.lengthsDecoded());
    // Comparing the whole history after every call would cost more than the decoding.
    if (calls_ < 50 || calls_ % 61 == 0)
        if (std::memcmp(s.window, model_.window().data(), model_.window().size()) != 0)
            fail("window differs");
}

}  // namespace zep::test
