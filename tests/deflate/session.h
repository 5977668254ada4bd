// One decoder at work on one stream, with every piece of input and output in an exactly sized
// buffer of its own against an unreadable page, and the model in lock-step beside it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include "reference/deflate_model.h"
#include "support/guarded_buffer.h"
#include "zeps.h"

namespace zep::test {

using reference::Bytes;
using reference::DecoderCall;

struct StateDeleter {
    void operator()(ZepLZ77State* state) const { zepsLZ77Free_8u(state); }
};
using StatePtr = std::unique_ptr<ZepLZ77State, StateDeleter>;
StatePtr makeState();

enum class LockStep { Off, On };

struct Placement {
    Edge src = Edge::Back;
    Edge dst = Edge::Back;
    int srcSkew = 0;
    int dstSkew = 0;
};

// How many bytes of input and of room the next call gets; asked before each call.
struct Cuts {
    std::function<int()> src;
    std::function<int()> dst;
};
Cuts everyCall(int srcBytes, int dstBytes);
Cuts randomCuts(int maxSrcBytes, int maxDstBytes);

class Session {
public:
    explicit Session(Bytes stream, LockStep lockStep = LockStep::On, Placement placement = {});

    // One call each, with the next srcBytes of the stream (fewer at its end). Disagreement with the
    // model is a failure.
    int blockType(int srcBytes);
    int decode(DecoderCall call, int srcBytes, int dstBytes);
    // The call that type() asks for.
    int decodeBlock(int srcBytes, int dstBytes);

    // Calls until the stream ends, an error comes, the input is used up, or maxOutput is reached.
    // Returns the last status; maxOutput reached counts as zepStsDstSizeLessExpected.
    int run(const Cuts& cuts, std::int64_t maxOutput = std::int64_t{1} << 30);

    // Puts the next bytes of the stream into the bit buffer, as a decoder that reads ahead may
    // leave them there.
    void hold(int bytes);

    struct Fields {
        int status, bitCount, windowPos, storedRemaining, finalBlock, streamEnded, blockType,
            lengthsDecoded;
        int codeLengthCount, literalCodeCount, distanceCodeCount, pendingMatchLength,
            pendingMatchDistance;
        int initArgument, externalStatus;
        std::uint64_t bitBuffer;
    };
    Fields fields() const;

    int type() const { return type_; }
    std::int64_t position() const { return position_; }  // of the source pointer in the stream
    std::int64_t calls() const { return calls_; }
    const Bytes& output() const { return out_; }
    const reference::DeflateModel& model() const { return model_; }
    // Bytes of stored blocks that came out of the bit buffer. They are missing from the history, so
    // that matches behind them may differ from what other decoders make.
    std::int64_t drained() const { return drained_; }
    ZepLZ77State* state() const { return state_.get(); }
    // What went wrong so far; empty when nothing.
    const std::string& failure() const { return failure_; }

private:
    std::span<const std::uint8_t> piece(int srcBytes) const;
    void fail(const std::string& what);
    void compareFields();

    Bytes stream_;
    Placement placement_;
    bool lockStep_;
    StatePtr state_;
    reference::DeflateModel model_;
    Bytes out_;
    std::int64_t position_ = 0;
    std::int64_t calls_ = 0;
    std::int64_t drained_ = 0;
    int type_ = -1;
    std::string failure_;
};

}  // namespace zep::test
