// Stopping and going on: at every byte of input and of output, in the midst of matches, across
// calls.
#include <gtest/gtest.h>

#include "deflate/sample_data.h"
#include "deflate/session.h"
#include "deflate/zlib_peer.h"
#include "support/random.h"
#include "support/sweep.h"
#include "support/variant.h"

namespace zep::test {
namespace {

using reference::DeflateWriter;

// A dynamic block here has the lengths of the fixed code.
void beginBlock(DeflateWriter& out, bool dynamic, bool last) {
    if (dynamic)
        out.dynamic(last, reference::fixedLiteralLengths(), reference::fixedDistanceLengths());
    else
        out.fixed(last);
}

DeflateWriter blockOfLiterals(bool dynamic, bool last, int literals) {
    DeflateWriter out;
    beginBlock(out, dynamic, last);
    for (int n = 0; n < literals; ++n) out.literal(n & 0xFF);
    out.endOfBlock();
    return out;
}

class DeflateResume : public VariantTest {};

// Small streams of all kinds of block, with what they decode to.
struct Case {
    std::string name;
    Bytes stream;
    Bytes expected;
    std::int64_t end;        // of the stream; bytes may follow
    bool hasStored = false;  // stored blocks that are not alone
};

// Whatever the pieces were, unless a stored block came out of the bit buffer: the lock-step model
// has checked the output then.
void expectOutput(const Session& session, const Case& c, const std::string& how) {
    if (session.drained() > 0) return;
    ASSERT_EQ(session.output(), c.expected) << c.name << ' ' << how;
}

// Where the stream ended for the decoder. An empty stored block at the end leaves its bit buffer as
// it is, bytes behind the stream included.
std::int64_t endSeen(const Session& session) {
    return session.position() - session.fields().bitCount / 8;
}

// The model is slow: it is asked where it is needed, and now and then elsewhere.
LockStep lockStepFor(const Case& c, int n) {
    return c.hasStored || n % 7 == 0 ? LockStep::On : LockStep::Off;
}

std::vector<Case> smallCases() {
    std::vector<Case> cases;
    const auto add = [&](const std::string& name, const Bytes& stream, bool hasStored) {
        const auto inflated = zlibInflate(stream);
        ASSERT_TRUE(inflated.has_value()) << name;
        cases.push_back({name, stream, inflated->output, inflated->consumed, hasStored});
    };
    for (const Sample& sample : samples(700))
        for (const int strategy : {Z_DEFAULT_STRATEGY, Z_HUFFMAN_ONLY, Z_FIXED})
            add(sample.name + " strategy " + std::to_string(strategy),
                zlibDeflate(sample.data, {.level = 9, .strategy = strategy}), false);
    add("flushed text", zlibDeflate(textLike(500), {.flushEvery = 90}), true);
    for (int n = 0; n < 20; ++n) {
        const RandomStream s = randomStream(1 + n % 3, true);
        if (s.stream.size() < 1500 && zlibInflate(s.stream)->output.size() < 3000)
            add("random " + std::to_string(n), s.stream, true);
    }
    return cases;
}

TEST_P(DeflateResume, OneByteOfRoomAtATime) {
    for (const Case& c : smallCases()) {
        Session session(c.stream);
        const auto all = static_cast<int>(c.stream.size());
        int last = zepStsNoErr;
        while (last != zepStsStreamEnd) {
            ASSERT_EQ(session.blockType(all), zepStsNoErr);
            std::size_t before = session.output().size();
            while ((last = session.decodeBlock(all, 1)) == zepStsDstSizeLessExpected) {
                ASSERT_EQ(session.output().size(), ++before) << c.name;
                ASSERT_LE(before, c.expected.size());
            }
            ASSERT_TRUE(last == zepStsNoErr || last == zepStsStreamEnd)
                << c.name << ' ' << session.failure();
        }
        expectOutput(session, c, "");
    }
}

TEST_P(DeflateResume, OneByteOfInputAtATime) {
    for (const Case& c : smallCases()) {
        Session session(c.stream);
        const auto room = static_cast<int>(c.expected.size()) + 1;
        int last = zepStsNoErr;
        while (last != zepStsStreamEnd) {
            int status = zepStsSrcSizeLessExpected;
            while (status == zepStsSrcSizeLessExpected) status = session.blockType(1);
            ASSERT_EQ(status, zepStsNoErr);
            std::int64_t before = session.position();
            while ((last = session.decodeBlock(1, room)) == zepStsSrcSizeLessExpected)
                ASSERT_EQ(session.position(), ++before) << c.name;
            ASSERT_TRUE(last == zepStsNoErr || last == zepStsStreamEnd)
                << c.name << ' ' << session.failure();
        }
        expectOutput(session, c, "");
        ASSERT_EQ(endSeen(session), c.end);
    }
}

// One cut, at each place in turn: the first calls see the bytes before it, the others all the rest.
TEST_P(DeflateResume, EverySingleCutOfTheInput) {
    for (const Case& c : smallCases())
        for (int cut = 0; cut <= static_cast<int>(c.stream.size()); ++cut) {
            Session session(c.stream, lockStepFor(c, cut));
            const Cuts cuts{[&] {
                                return session.position() < cut
                                           ? cut - static_cast<int>(session.position())
                                           : 1 << 20;
                            },
                            [] { return 1000; }};
            ASSERT_EQ(session.run(cuts), zepStsStreamEnd)
                << c.name << " cut " << cut << ": " << session.failure();
            expectOutput(session, c, "cut " + std::to_string(cut));
        }
}

TEST_P(DeflateResume, EverySingleCutOfTheOutput) {
    for (const Case& c : smallCases())
        for (int cut = 1; cut <= static_cast<int>(c.expected.size()); ++cut) {
            Session session(c.stream, lockStepFor(c, cut));
            const Cuts cuts{[] { return 1 << 20; },
                            [&] {
                                const auto made = static_cast<int>(session.output().size());
                                return made < cut ? cut - made : 1000;
                            }};
            ASSERT_EQ(session.run(cuts), zepStsStreamEnd)
                << c.name << " cut " << cut << ": " << session.failure();
            expectOutput(session, c, "cut " + std::to_string(cut));
        }
}

TEST_P(DeflateResume, PiecesOfEverySize) {
    for (const Case& c : smallCases())
        for (int srcBytes = 1; srcBytes <= 20; ++srcBytes)
            for (const int dstBytes : {1, 2, 3, 7, 8, 9, 63, 64, 65, 257, 258, 259, 320, 1000}) {
                Session session(c.stream, lockStepFor(c, srcBytes));
                ASSERT_EQ(session.run(everyCall(srcBytes, dstBytes)), zepStsStreamEnd) << c.name;
                expectOutput(session, c, std::to_string(srcBytes) + ' ' + std::to_string(dstBytes));
                ASSERT_EQ(endSeen(session), c.end);
            }
}

TEST_P(DeflateResume, EveryMisalignment) {
    for (const Case& c : smallCases())
        for (const Edge edge : {Edge::Front, Edge::Back})
            for (int skew = 0; skew < 9; ++skew) {
                Session session(c.stream, lockStepFor(c, skew), {edge, edge, skew, 8 - skew});
                ASSERT_EQ(session.run(everyCall(64, 300)), zepStsStreamEnd) << c.name;
                expectOutput(session, c, "skew " + std::to_string(skew));
            }
}

TEST_P(DeflateResume, ARunIsContinuedAcrossAStop) {
    for (const bool dynamic : {false, true})
        for (int room = 1; room <= 258; ++room) {
            DeflateWriter out;
            beginBlock(out, dynamic, true);
            out.literal('r');
            out.match(258, 1);
            out.endOfBlock();
            Session session(out.bytes());
            ASSERT_EQ(session.blockType(1), zepStsNoErr);
            ASSERT_EQ(session.decodeBlock(1000, room), zepStsDstSizeLessExpected);
            ASSERT_EQ(session.fields().pendingMatchLength, room == 1 ? 0 : 259 - room);
            if (room > 1) {
                ASSERT_EQ(session.fields().pendingMatchDistance, 1);
            }
            ASSERT_EQ(session.fields().windowPos, room);
            ASSERT_EQ(session.decodeBlock(1000, 1000), zepStsStreamEnd);
            ASSERT_EQ(session.output(), Bytes(259, 'r'));
        }
}

TEST_P(DeflateResume, APendingMatchMayTakeManyCalls) {
    for (const int distance : {1, 2, 3, 4, 5, 8, 9, 100, 257, 258, 300}) {
        DeflateWriter out;
        out.fixed(true);
        Bytes expected = noise(300);
        for (const std::uint8_t value : expected) out.literal(value);
        out.match(258, distance);
        out.match(200, distance);
        out.endOfBlock();
        for (int n = 0; n < 458; ++n) expected.push_back(*(expected.end() - distance));
        for (const int room : {1, 2, 3, 5, 64, 200}) {
            Session session(out.bytes());
            ASSERT_EQ(session.run(everyCall(10000, room)), zepStsStreamEnd) << session.failure();
            ASSERT_EQ(session.output(), expected) << distance << ' ' << room;
        }
    }
}

TEST_P(DeflateResume, AMatchReachesOverTheCallBoundary) {
    // k bytes are written in the second call before a match that reaches k + back bytes back: its
    // first part comes from the history, its rest from this call's output.
    for (int k = 0; k <= 20; ++k)
        for (const int back : {1, 2, 3, 7, 8, 9, 16, 40})
            for (const int length : {3, 8, 17, 64, 258}) {
                DeflateWriter out;
                out.fixed(true);
                Bytes expected = noise(100 + k);
                for (const std::uint8_t value : expected) out.literal(value);
                out.match(length, k + back);
                out.endOfBlock();
                for (int n = 0; n < length; ++n) expected.push_back(*(expected.end() - k - back));
                Session session(out.bytes());
                ASSERT_EQ(session.blockType(1), zepStsNoErr);
                ASSERT_EQ(session.decodeBlock(10000, 100), zepStsDstSizeLessExpected);
                ASSERT_EQ(session.decodeBlock(10000, 600), zepStsStreamEnd) << session.failure();
                ASSERT_EQ(session.output(), expected) << k << ' ' << back << ' ' << length;
            }
}

TEST_P(DeflateResume, MatchesWrapAroundTheHistory) {
    // The history is filled to just before and behind its end, then matched across the wrap from
    // another call.
    for (const int filled : {32760, 32767, 32768, 32769, 32775, 65530, 65540, 98304})
        for (const int distance : {1, 5, 10, 250, 258, 32760, 32768}) {
            DeflateWriter out;
            Bytes expected = noise(filled);
            for (std::size_t at = 0; at < expected.size(); at += 60000)
                out.stored(false, std::span(expected).subspan(
                                      at, std::min<std::size_t>(60000, expected.size() - at)));
            out.fixed(true);
            for (int n = 0; n < 10; ++n) out.match(258, distance);
            out.endOfBlock();
            for (int n = 0; n < 2580; ++n)
                expected.push_back(distance <= static_cast<int>(expected.size())
                                       ? *(expected.end() - distance)
                                       : 0);
            for (const Cuts& cuts : {everyCall(1 << 20, 30000), everyCall(1 << 20, 32768),
                                     everyCall(9000, 100), everyCall(1 << 20, 1 << 20)}) {
                Session session(out.bytes());
                ASSERT_EQ(session.run(cuts), zepStsStreamEnd) << session.failure();
                ASSERT_EQ(session.output(), expected) << filled << ' ' << distance;
            }
        }
}

TEST_P(DeflateResume, TheEndReturnsWhatWasReadBeyondIt) {
    for (const Case& c : smallCases())
        for (int behind = 0; behind <= 20; behind += behind < 10 ? thinStep(3) : 5) {
            Bytes stream = c.stream;
            stream.insert(stream.end(), static_cast<std::size_t>(behind), 0xC7);
            Session session(stream);
            ASSERT_EQ(session.run(everyCall(1 << 20, 1 << 20)), zepStsStreamEnd) << c.name;
            ASSERT_EQ(endSeen(session), c.end) << c.name << ' ' << behind;
            if (session.type() != 2) {
                EXPECT_EQ(session.fields().bitCount, 0);
                EXPECT_EQ(session.fields().streamEnded, 1);
            }
            EXPECT_EQ(session.fields().status, 0);
        }
}

// What is read ahead of the end of a block that is not the last belongs to the next one: the bytes
// behind the block stay in the bit buffer, and the source pointer stands behind them.
TEST_P(DeflateResume, TheEndOfABlockKeepsWhatWasReadBeyondIt) {
    const Bytes next = noise(40);
    for (const bool dynamic : {false, true})
        for (const int literals : {1, 3, 200})  // the last ones are decoded without checks
            for (const int behind : {0, 1, 2, 4, 6, 40}) {
                DeflateWriter out = blockOfLiterals(dynamic, false, literals);
                const std::int64_t endBit = out.bitLength();
                out.align();
                for (int n = 0; n < behind; ++n) out.byte(next[static_cast<std::size_t>(n)]);
                Session session(out.bytes());
                ASSERT_EQ(session.blockType(1), zepStsNoErr);
                // Room for the whole block, and for the loops that want ample room.
                ASSERT_EQ(session.decodeBlock(1 << 20, 1000), zepStsNoErr);
                ASSERT_EQ(session.output().size(), static_cast<std::size_t>(literals));

                const Session::Fields after = session.fields();
                const int held = after.bitCount / 8;
                if (behind <= 6)
                    ASSERT_EQ(held, behind) << literals;  // all of them fit: up to 56 bits are held
                else
                    ASSERT_GE(held, 1) << literals;
                // The rest of the block's last byte and the whole bytes behind it, nothing else.
                ASSERT_EQ(8 * session.position() - after.bitCount, endBit);
                std::uint64_t expected = 0;
                for (int n = held; n > 0; --n)
                    expected = expected << 8 | next[static_cast<std::size_t>(n - 1)];
                ASSERT_EQ(after.bitBuffer, expected << after.bitCount % 8);
                ASSERT_EQ(after.status, 0);
                ASSERT_EQ(after.streamEnded, 0);
            }
}

TEST_P(DeflateResume, AFullOutputAtTheEndOfTheInputReturnsAByte) {
    // A caller that loops while there is input must not take a full output for the end.
    for (const bool dynamic : {false, true})
        for (int literals = 4; literals < 60; ++literals) {
            DeflateWriter out = blockOfLiterals(dynamic, true, literals);
            for (int room = 1; room < literals; ++room) {
                Session session(out.bytes());
                ASSERT_EQ(session.blockType(1), zepStsNoErr);
                ASSERT_EQ(session.decodeBlock(1000, room), zepStsDstSizeLessExpected);
                // With at least two literals and the end to go, more than a byte is left.
                const std::int64_t left =
                    static_cast<std::int64_t>(out.bytes().size()) - session.position();
                ASSERT_GE(left, 1);
                ASSERT_EQ(session.decodeBlock(1000, 1000), zepStsStreamEnd);
                ASSERT_EQ(static_cast<int>(session.output().size()), literals);
            }
        }
}

TEST_P(DeflateResume, TheEndOfABlockWaitsOrNotWhateverFollows) {
    // A block that fills the room exactly: its end is seen in the same call or in the next, but
    // always alike.
    for (const bool dynamic : {false, true}) {
        int waited = -1;
        for (const int literals : {1, 2, 5, 50, 300, 1000})
            for (int behind = 0; behind <= 20; ++behind) {
                DeflateWriter out = blockOfLiterals(dynamic, false, literals);
                for (int n = 0; n < behind; ++n) out.byte(0);
                Session session(out.bytes());
                ASSERT_EQ(session.blockType(1), zepStsNoErr);
                const int status = session.decodeBlock(1 << 20, literals);
                ASSERT_TRUE(status == zepStsNoErr || status == zepStsDstSizeLessExpected) << status;
                const int waits = status == zepStsDstSizeLessExpected;
                if (waited == -1) waited = waits;
                ASSERT_EQ(waits, waited) << literals << " literals, " << behind << " bytes behind";
                if (waits) {
                    ASSERT_EQ(session.decodeBlock(1 << 20, 1), zepStsNoErr);
                }
            }
    }
}

TEST_P(DeflateResume, InputOfNoneChangesNothing) {
    for (const Case& c : smallCases()) {
        Session session(c.stream);
        ASSERT_EQ(session.blockType(1), zepStsNoErr);
        int status = zepStsNoErr;
        // Until the block ends, each piece of three bytes is followed by two pieces of none.
        while (status == zepStsNoErr || status == zepStsSrcSizeLessExpected) {
            status = session.decodeBlock(3, 1 << 12);
            if (status != zepStsSrcSizeLessExpected) break;
            ASSERT_EQ(session.decodeBlock(0, 1 << 12), zepStsSrcSizeLessExpected) << c.name;
            ASSERT_EQ(session.decodeBlock(0, 1 << 12), zepStsSrcSizeLessExpected) << c.name;
        }
        ASSERT_TRUE(status == zepStsNoErr || status == zepStsStreamEnd) << c.name << ' ' << status;
    }
}

ZEP_FOR_EACH_VARIANT(DeflateResume);

}  // namespace
}  // namespace zep::test
