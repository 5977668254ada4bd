#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "deflate/sample_data.h"
#include "deflate/session.h"
#include "support/random.h"
#include "support/variant.h"

namespace zep::test {
namespace {

using reference::DeflateWriter;

class DeflateStoredBlock : public VariantTest {};

Bytes counting(int len, int first = 0) {
    Bytes out(static_cast<std::size_t>(len));
    std::iota(out.begin(), out.end(), static_cast<std::uint8_t>(first));
    return out;
}

TEST_P(DeflateStoredBlock, EmptyBlocksWriteNothing) {
    DeflateWriter out;
    out.stored(false, {});
    out.stored(true, {});
    Session session(out.bytes());
    ASSERT_EQ(session.blockType(100), zepStsNoErr);
    EXPECT_EQ(session.decodeBlock(100, 10), zepStsNoErr);
    ASSERT_EQ(session.blockType(100), zepStsNoErr);
    EXPECT_EQ(session.decodeBlock(100, 10), zepStsStreamEnd);
    EXPECT_TRUE(session.output().empty());
    EXPECT_EQ(session.position(), 10);
}

TEST_P(DeflateStoredBlock, EvenAnEmptyBlockAsksForRoom) {
    DeflateWriter out;
    out.stored(true, {});
    Session session(out.bytes());
    ASSERT_EQ(session.blockType(100), zepStsNoErr);
    EXPECT_EQ(session.decodeBlock(100, 0), zepStsDstSizeLessExpected);
    EXPECT_EQ(session.position(), 1);
    EXPECT_EQ(session.decodeBlock(100, 1), zepStsStreamEnd);
}

TEST_P(DeflateStoredBlock, CopiesBlocksOfEveryLength) {
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (const int skew : {0, 1, 3})
            for (int len = 1; len <= 70; ++len) {
                DeflateWriter out;
                const Bytes data = noise(len);
                out.stored(true, data);
                Session session(out.bytes(), LockStep::On, {edge, edge, skew, 2 * skew});
                ASSERT_EQ(session.run(everyCall(100, len)), zepStsStreamEnd);
                ASSERT_EQ(session.output(), data);
                ASSERT_EQ(session.position(), static_cast<std::int64_t>(out.bytes().size()));
            }
}

TEST_P(DeflateStoredBlock, CopiesLongBlocksWholeAndInPieces) {
    for (const int len : {32766, 32767, 32768, 32769, 40000, 65534, 65535}) {
        DeflateWriter out;
        const Bytes data = noise(len);
        out.stored(false, data);
        // The history must hold all of it afterwards, whatever the pieces were.
        out.fixed(true);
        for (const int distance : {1, 2, 100, 16384, 32767, 32768}) out.match(258, distance);
        out.endOfBlock();
        // Before the stream stands a history of zeros.
        Bytes expected(32768, 0);
        expected.insert(expected.end(), data.begin(), data.end());
        for (const int distance : {1, 2, 100, 16384, 32767, 32768})
            for (int n = 0; n < 258; ++n) expected.push_back(*(expected.end() - distance));
        expected.erase(expected.begin(), expected.begin() + 32768);
        for (const Cuts& cuts :
             {everyCall(100000, 100000), everyCall(32768 + 5, 100000), everyCall(100000, 32768),
              everyCall(1000, 777), everyCall(40000, 32767), randomCuts(50000, 50000)}) {
            Session session(out.bytes());
            ASSERT_EQ(session.run(cuts), zepStsStreamEnd) << session.failure();
            ASSERT_EQ(session.output(), expected) << len;
        }
    }
}

TEST_P(DeflateStoredBlock, ABlockOfAWindowOrMoreStartsTheHistoryAgain) {
    for (const int len : {32768, 32769, 50000, 65535}) {
        DeflateWriter out;
        out.stored(false, counting(100));
        out.stored(true, noise(len));
        Session session(out.bytes());
        ASSERT_EQ(session.blockType(1), zepStsNoErr);
        ASSERT_EQ(session.decodeBlock(1000, 100), zepStsNoErr);
        EXPECT_EQ(session.fields().windowPos, 100);
        ASSERT_EQ(session.blockType(1), zepStsNoErr);
        ASSERT_EQ(session.decodeBlock(100000, 100000), zepStsStreamEnd);
        EXPECT_EQ(session.fields().windowPos, 0);
    }
}

TEST_P(DeflateStoredBlock, OneByteOfInputAtATimeAsksForTheNextEachTime) {
    const Bytes data = counting(50);
    DeflateWriter out;
    out.stored(true, data);
    Session session(out.bytes());
    ASSERT_EQ(session.blockType(1), zepStsNoErr);
    const int last = static_cast<int>(out.bytes().size()) - 1;
    for (int n = 1; n < last; ++n)
        ASSERT_EQ(session.decodeBlock(1, 100), zepStsSrcSizeLessExpected) << n;
    ASSERT_EQ(session.decodeBlock(1, 100), zepStsStreamEnd);
    EXPECT_EQ(session.output(), data);
}

TEST_P(DeflateStoredBlock, OneByteOfRoomAtATimeAsksForTheNextEachTime) {
    const Bytes data = counting(50);
    DeflateWriter out;
    out.stored(true, data);
    Session session(out.bytes());
    ASSERT_EQ(session.blockType(1), zepStsNoErr);
    for (int n = 1; n < 50; ++n)
        ASSERT_EQ(session.decodeBlock(100, 1), zepStsDstSizeLessExpected) << n;
    ASSERT_EQ(session.decodeBlock(100, 1), zepStsStreamEnd);
    EXPECT_EQ(session.output(), data);
}

TEST_P(DeflateStoredBlock, RunningOutOfBothAtOnceIsMissingRoom) {
    DeflateWriter out;
    out.stored(true, counting(50));
    Session session(out.bytes());
    ASSERT_EQ(session.blockType(1), zepStsNoErr);
    EXPECT_EQ(session.decodeBlock(4 + 20, 20), zepStsDstSizeLessExpected);
    EXPECT_EQ(session.decodeBlock(10, 11), zepStsSrcSizeLessExpected);
    EXPECT_EQ(session.decodeBlock(11, 10), zepStsDstSizeLessExpected);
    EXPECT_EQ(session.decodeBlock(10, 10), zepStsStreamEnd);
}

TEST_P(DeflateStoredBlock, ABadLengthIsReportedAgainAndAgain) {
    for (const auto& [len, complement] :
         {std::pair{5, 65531}, {5, 5}, {0, 0}, {65535, 65535}, {256, 65024}}) {
        DeflateWriter out;
        out.storedHeader(true, len, complement);
        for (const std::uint8_t value : counting(20)) out.byte(value);
        Session session(out.bytes());
        ASSERT_EQ(session.blockType(1), zepStsNoErr);
        for (int again = 0; again < 3; ++again)
            EXPECT_EQ(session.decodeBlock(100, 100), zepStsSizeErr);
        EXPECT_EQ(session.position(), 5);
        EXPECT_TRUE(session.output().empty());
    }
}

TEST_P(DeflateStoredBlock, SkipsTheBitsUpToTheByteWhateverTheyAre) {
    for (int offset = 0; offset < 8; ++offset) {
        DeflateWriter out;
        // Ten-bit empty fixed blocks move the header through all bit positions.
        for (int n = 0; n < offset; ++n) {
            out.fixed(false);
            out.endOfBlock();
        }
        out.header(true, 0);
        while (out.bitLength() % 8 != 0) out.bits(1, 1);
        out.bits(3, 16);
        out.bits(65535 - 3, 16);
        for (const std::uint8_t value : {7, 8, 9}) out.byte(value);
        for (const int srcBytes : {1, 2, 3, 4, 5, 100}) {
            Session session(out.bytes());
            ASSERT_EQ(session.run(everyCall(srcBytes, 100)), zepStsStreamEnd) << offset;
            ASSERT_EQ(session.output(), (Bytes{7, 8, 9}));
        }
    }
}

// A stored block after some bytes of history, with a fixed block behind it whose matches reach into
// it.
struct HeldCase {
    Bytes stream;
    int blockAt;  // position of the stored block's header byte
};
HeldCase heldCase(int len, int before = 1000) {
    DeflateWriter out;
    for (int left = before; left >= 0; left -= 65535)
        out.stored(false, counting(std::min(left, 65535)));
    const int blockAt = static_cast<int>(out.bytes().size());
    out.stored(false, counting(len, 100));
    out.fixed(true);
    for (const int distance : {1, 2, 3, 4, 66, 70, 71, 200}) out.match(4, distance);
    out.endOfBlock();
    Bytes stream = out.bytes();
    stream.insert(stream.end(), 16, 0xEE);
    return {stream, blockAt};
}

// Brings the session to the beginning of the block, its header read, with held bytes of what
// follows in the buffer.
void standBefore(Session& session, const HeldCase& c, int held) {
    while (session.position() < c.blockAt) {
        ASSERT_EQ(session.blockType(1), zepStsNoErr);
        int status = zepStsDstSizeLessExpected;
        while (status == zepStsDstSizeLessExpected) status = session.decodeBlock(c.blockAt, 20000);
        ASSERT_EQ(status, zepStsNoErr);
    }
    ASSERT_EQ(session.blockType(1), zepStsNoErr);
    // Up to the byte boundary; LEN comes next.
    ASSERT_EQ(session.decodeBlock(0, 1), zepStsSrcSizeLessExpected);
    ASSERT_EQ(session.position(), c.blockAt + 1);
    session.hold(held);
}

TEST_P(DeflateStoredBlock, HeldBytesComeOutFirstAndStayOutOfTheHistory) {
    const HeldCase c = heldCase(70);
    Session session(c.stream);
    standBefore(session, c, 8);
    ASSERT_EQ(session.decodeBlock(100, 100), zepStsNoErr);
    ASSERT_EQ(session.model().drained(), 4);
    const Bytes before = session.output();
    EXPECT_EQ(Bytes(before.end() - 70, before.end()), counting(70, 100));
    ASSERT_EQ(session.blockType(100), zepStsNoErr);
    ASSERT_EQ(session.decodeBlock(100, 258), zepStsStreamEnd) << session.failure();
    // In the second call's eyes the history ends with bytes 4 to 69 of the block, and the older
    // data stands right before them. The last match begins with 28 bytes written and reaches 200
    // back: 172 into the history, 106 of them older.
    const auto oldest = session.output().begin() + 1070 + 28;
    EXPECT_EQ(Bytes(oldest, oldest + 4), counting(4, (1000 - 106) % 256));
}

TEST_P(DeflateStoredBlock, EveryNumberOfHeldBytesWithEveryShortLength) {
    std::int64_t drained = 0;
    for (int len = 0; len <= 12; ++len) {
        const HeldCase c = heldCase(len);
        for (int held = 0; held <= 8; ++held)
            for (const int srcBytes : {0, 1, 2, 5, 100})
                for (const int dstBytes : {1, 2, 3, 4, 100}) {
                    Session session(c.stream);
                    standBefore(session, c, held);
                    int status = zepStsSrcSizeLessExpected;
                    // Input of none at all first: what the buffer holds must be enough for what it
                    // can do.
                    for (int n = 0; n < 100 && status > 0; ++n)
                        status = session.decodeBlock(n == 0 ? srcBytes : std::max(srcBytes, 1),
                                                     dstBytes);
                    ASSERT_EQ(status, zepStsNoErr)
                        << "len " << len << " held " << held << ": " << session.failure();
                    ASSERT_EQ(session.output().size(), 1000u + static_cast<std::size_t>(len));
                    for (int n = 0; n < len; ++n)
                        ASSERT_EQ(session.output()[static_cast<std::size_t>(1000 + n)], 100 + n);
                    // The rest of the stream is found where it begins, unless held bytes behind an
                    // empty block are still in the buffer, which is fine as well.
                    ASSERT_EQ(session.run(everyCall(srcBytes + 1, dstBytes)), zepStsStreamEnd)
                        << session.failure();
                    drained += session.model().drained();
                }
    }
    EXPECT_GT(drained, 0);
}

TEST_P(DeflateStoredBlock, ABlockShorterThanWhatIsHeldReturnsTheSurplus) {
    const HeldCase c = heldCase(1);
    Session session(c.stream);
    standBefore(session, c, 7);
    // Three bytes are held behind LEN and NLEN; one belongs to the block.
    ASSERT_EQ(session.decodeBlock(100, 100), zepStsNoErr);
    EXPECT_EQ(session.position(), c.blockAt + 1 + 4 + 1);
    EXPECT_EQ(session.output().size(), 1001u);
    EXPECT_EQ(session.fields().windowPos, 1000 - 2);
    EXPECT_EQ(session.fields().storedRemaining, 0);
}

TEST_P(DeflateStoredBlock, TheSurplusMovesBackAcrossTheBeginningOfTheHistory) {
    for (const int whole : {0, 32768})
        for (int more = 0; more <= 3; ++more)
            for (int held = 5; held <= 8; ++held)
                for (int len = 1; len < held - 4; ++len) {
                    const HeldCase c = heldCase(len, whole + more);
                    Session session(c.stream);
                    standBefore(session, c, held);
                    const int before = session.fields().windowPos;
                    ASSERT_EQ(before, more);
                    ASSERT_EQ(session.decodeBlock(100, 100), zepStsNoErr);
                    ASSERT_EQ(session.fields().windowPos,
                              (before - (held - 4 - len) + 32768) % 32768);
                    ASSERT_EQ(session.run(everyCall(100, 100)), zepStsStreamEnd)
                        << session.failure();
                }
}

TEST_P(DeflateStoredBlock, TheSurplusNeverPassesTheRoom) {
    // The guard page behind each piece of room would catch it.
    for (int room = 1; room <= 4; ++room) {
        const HeldCase c = heldCase(1);
        Session session(c.stream);
        standBefore(session, c, 8);
        int status = zepStsDstSizeLessExpected;
        for (int n = 0; n < 10 && status == zepStsDstSizeLessExpected; ++n)
            status = session.decodeBlock(100, room);
        ASSERT_EQ(status, zepStsNoErr);
        EXPECT_EQ(session.output().size(), 1001u);
    }
}

TEST_P(DeflateStoredBlock, AnEmptyLastBlockKeepsWhatItHolds) {
    DeflateWriter out;
    out.stored(true, {});
    for (int n = 0; n < 8; ++n) out.byte(0xEE);
    Session session(out.bytes());
    ASSERT_EQ(session.blockType(1), zepStsNoErr);
    session.hold(7);
    EXPECT_EQ(session.decodeBlock(0, 10), zepStsStreamEnd);
    EXPECT_EQ(session.position(), 8);
    EXPECT_EQ(session.fields().bitCount, 24);
    EXPECT_EQ(session.fields().streamEnded, 0);
}

ZEP_FOR_EACH_VARIANT(DeflateStoredBlock);

}  // namespace
}  // namespace zep::test
