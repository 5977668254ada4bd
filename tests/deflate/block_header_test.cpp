#include <gtest/gtest.h>

#include "deflate/session.h"
#include "support/variant.h"

namespace zep::test {
namespace {

using reference::DeflateWriter;

class DeflateBlockHeader : public VariantTest {};

TEST_P(DeflateBlockHeader, ReportsItsOwnNumbersAndTakesOneByte) {
    constexpr int kReported[3] = {2, 0, 1};
    for (int type = 0; type < 3; ++type)
        for (const bool final : {false, true}) {
            DeflateWriter out;
            out.header(final, type);
            out.bits(0x5A5A5A, 24);
            Session session(out.bytes());
            ASSERT_EQ(session.blockType(4), zepStsNoErr);
            EXPECT_EQ(session.type(), kReported[type]);
            EXPECT_EQ(session.position(), 1);
        }
}

TEST_P(DeflateBlockHeader, AsksForInput) {
    Session session(Bytes{0x03, 0x00});
    EXPECT_EQ(session.blockType(0), zepStsSrcSizeLessExpected);
    EXPECT_EQ(session.blockType(0), zepStsSrcSizeLessExpected);
    EXPECT_EQ(session.blockType(1), zepStsNoErr);
    EXPECT_EQ(session.type(), 0);
}

TEST_P(DeflateBlockHeader, AskingTwiceIsHarmless) {
    DeflateWriter out;
    out.dynamic(true, reference::fixedLiteralLengths(), reference::fixedDistanceLengths());
    for (int n = 0; n < 50; ++n) out.literal(n);
    out.endOfBlock();
    Session session(out.bytes());
    int status = zepStsNoErr;
    while (status != zepStsStreamEnd) {
        // Between any two calls, at every stage of the block.
        for (int again = 0; again < 2; ++again) {
            ASSERT_EQ(session.blockType(1), zepStsNoErr);
            ASSERT_EQ(session.type(), 1);
        }
        status = session.decodeBlock(1, 1);
        ASSERT_GE(status, 0);
    }
    EXPECT_EQ(session.output().size(), 50u);
}

TEST_P(DeflateBlockHeader, AskingTwiceWithoutInputIsHarmlessToo) {
    DeflateWriter out;
    out.stored(true, Bytes{1, 2, 3});
    Session session(out.bytes());
    ASSERT_EQ(session.blockType(1), zepStsNoErr);
    EXPECT_EQ(session.blockType(0), zepStsNoErr);
    EXPECT_EQ(session.type(), 2);
}

TEST_P(DeflateBlockHeader, SwallowsTheReservedTypeAndLeavesTheCallersValue) {
    DeflateWriter out;
    out.header(false, 3);
    out.header(true, 3);
    out.header(true, 1);
    out.literal('z');
    out.endOfBlock();
    Session session(out.bytes());
    ASSERT_EQ(session.blockType(8), zepStsNoErr);
    EXPECT_EQ(session.type(), -1);
    ASSERT_EQ(session.blockType(8), zepStsNoErr);
    EXPECT_EQ(session.type(), -1);
    ASSERT_EQ(session.blockType(8), zepStsNoErr);
    EXPECT_EQ(session.type(), 0);
    EXPECT_EQ(session.decodeBlock(8, 8), zepStsStreamEnd);
    EXPECT_EQ(session.output(), (Bytes{'z'}));
}

TEST_P(DeflateBlockHeader, AnEarlierFinalBitIsClearedByTheNextHeader) {
    // The end of a stream leaves the decoder usable; what follows is read as another block, here
    // one that is not last.
    DeflateWriter first, second;
    first.fixed(true);
    first.literal('1');
    first.endOfBlock();
    second.fixed(false);
    second.literal('2');
    second.endOfBlock();
    Bytes stream = first.bytes();
    stream.insert(stream.end(), second.bytes().begin(), second.bytes().end());
    Session session(stream);
    ASSERT_EQ(session.run(everyCall(100, 100)), zepStsStreamEnd);
    EXPECT_EQ(session.position(), static_cast<std::int64_t>(first.bytes().size()));
    ASSERT_EQ(session.blockType(100), zepStsNoErr);
    EXPECT_EQ(session.decodeBlock(100, 100), zepStsNoErr);
    EXPECT_EQ(session.output(), (Bytes{'1', '2'}));
}

TEST_P(DeflateBlockHeader, HuffmanDecodersReadTheHeaderThemselves) {
    DeflateWriter out;
    out.fixed(false);
    out.literal('f');
    out.endOfBlock();
    out.dynamic(true, reference::fixedLiteralLengths(), reference::fixedDistanceLengths());
    out.literal('d');
    out.match(3, 2);
    out.endOfBlock();
    for (int srcBytes = 1; srcBytes <= static_cast<int>(out.bytes().size()); ++srcBytes) {
        Session session(out.bytes());
        int status = zepStsSrcSizeLessExpected;
        while (status == zepStsSrcSizeLessExpected)
            status = session.decode(DecoderCall::Fixed, srcBytes, 10);
        ASSERT_EQ(status, zepStsNoErr);
        status = zepStsSrcSizeLessExpected;
        while (status == zepStsSrcSizeLessExpected)
            status = session.decode(DecoderCall::Dynamic, srcBytes, 10);
        ASSERT_EQ(status, zepStsStreamEnd);
        ASSERT_EQ(session.output(), (Bytes{'f', 'd', 'f', 'd', 'f'}));
    }
}

ZEP_FOR_EACH_VARIANT(DeflateBlockHeader);

}  // namespace
}  // namespace zep::test
