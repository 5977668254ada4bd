// Every symbol of the fixed code and of dynamic codes, valid and invalid.
#include <gtest/gtest.h>

#include <numeric>

#include "deflate/sample_data.h"
#include "deflate/session.h"
#include "deflate/zlib_peer.h"
#include "support/random.h"
#include "support/sweep.h"
#include "support/variant.h"

namespace zep::test {
namespace {

using reference::DeflateWriter;

constexpr int kWindow = 32768;

class DeflateSymbols : public VariantTest {
protected:
    // Decodes in one piece, in pieces that the tail loop must manage, and byte by byte; all must
    // give the same. behind: bytes that follow the stream. A dynamic header is read only with 14
    // bits in sight, so tiny blocks need some.
    void expectDecodes(Bytes stream, const Bytes& expected, int behind = 0) {
        const auto end = static_cast<std::int64_t>(stream.size());
        stream.insert(stream.end(), static_cast<std::size_t>(behind), 0xFF);
        const auto all = static_cast<int>(stream.size());
        const auto room = static_cast<int>(expected.size()) + 1;
        for (const Cuts& cuts :
             {everyCall(all, room), everyCall(7, room), everyCall(all, 13), everyCall(1, 1)}) {
            Session session(stream);
            ASSERT_EQ(session.run(cuts), zepStsStreamEnd) << session.failure();
            ASSERT_EQ(session.position(), end);
            ASSERT_EQ(session.output(), expected);
        }
    }
};

void appendMatch(Bytes& out, int length, int distance) {
    for (int n = 0; n < length; ++n)
        out.push_back(distance <= static_cast<int>(out.size())
                          ? out[out.size() - static_cast<std::size_t>(distance)]
                          : 0);
}

// Writes the same symbols into a fixed or a dynamic block and into the expected output.
struct Block {
    DeflateWriter writer;
    Bytes expected;

    void literal(int value) {
        writer.literal(value);
        expected.push_back(static_cast<std::uint8_t>(value));
    }
    void match(int length, int distance) {
        writer.match(length, distance);
        appendMatch(expected, length, distance);
    }
};

// All 286 and 30 symbols, in lengths of 8 and 9 and of 4 and 5 bits.
std::vector<int> flatLiteralLengths() {
    std::vector<int> lengths(286, 8);
    for (std::size_t n = 0; n < 60; ++n) lengths[n] = 9;
    return lengths;  // 226 / 256 + 60 / 512 = 1
}
std::vector<int> flatDistanceLengths() {
    std::vector<int> lengths(30, 5);
    lengths[0] = lengths[1] = 4;
    return lengths;  // 28 / 32 + 2 / 16 = 1
}

// Lengths 1, 2, ..., 14, 15, 15 on symbols chosen by the caller; the others have none.
std::vector<int> stairs(std::vector<int> symbols, int alphabet) {
    std::vector<int> lengths(static_cast<std::size_t>(alphabet), 0);
    int length = 0;
    for (const int symbol : symbols)
        lengths[static_cast<std::size_t>(symbol)] = std::min(++length, 15);
    return lengths;
}

TEST_P(DeflateSymbols, EveryLiteralOfTheFixedCode) {
    Block block;
    block.writer.fixed(true);
    for (int value = 0; value < 256; ++value) block.literal(value);
    block.writer.endOfBlock();
    expectDecodes(block.writer.bytes(), block.expected);
}

TEST_P(DeflateSymbols, EveryLengthInBothKindsOfBlock) {
    for (const bool dynamic : {false, true}) {
        Block block;
        if (dynamic)
            block.writer.dynamic(true, flatLiteralLengths(), flatDistanceLengths());
        else
            block.writer.fixed(true);
        for (int value = 0; value < 20; ++value) block.literal(7 * value + 1);
        for (int length = 3; length <= 258; ++length) block.match(length, 1 + length % 19);
        // 258 has a second spelling: symbol 284 with all extra bits set.
        block.writer.literalSymbol(284);
        block.writer.bits(31, 5);
        block.writer.distanceSymbol(2);
        appendMatch(block.expected, 258, 3);
        block.writer.endOfBlock();
        expectDecodes(block.writer.bytes(), block.expected);
    }
}

TEST_P(DeflateSymbols, EveryDistanceSymbolWithItsFirstAndLastDistance) {
    for (const bool dynamic : {false, true}) {
        Block block;
        const Bytes history = noise(kWindow);
        block.writer.stored(false, history);
        block.expected = history;
        if (dynamic)
            block.writer.dynamic(true, flatLiteralLengths(), flatDistanceLengths());
        else
            block.writer.fixed(true);
        for (int symbol = 0; symbol < 30; ++symbol) {
            const int first = reference::baseOfDistanceSymbol(symbol);
            const int last = first + (1 << reference::extraOfDistanceSymbol(symbol)) - 1;
            for (const int distance : {first, (first + last) / 2, last}) block.match(5, distance);
        }
        block.writer.endOfBlock();
        expectDecodes(block.writer.bytes(), block.expected);
    }
}

// The same alphabet with short codes of lengths, so that the decoder takes matches for frequent; in
// flatLiteralLengths they are rare.
std::vector<int> frequentMatchLengths() {
    std::vector<int> lengths(286, 9);
    std::fill(lengths.begin(), lengths.begin() + 23, 8);
    std::fill(lengths.begin() + 257, lengths.end(), 6);
    return lengths;  // 23 / 256 + 234 / 512 + 29 / 64 = 1
}

// The middle of the block is decoded by the loops that check nothing.
TEST_P(DeflateSymbols, EverySmallDistanceWithEveryLength) {
    // Overlapping copies repeat the pattern: all lengths over distances up to 70.
    for (int kind = 0; kind < 3; ++kind)
        for (int distance = 1; distance <= 70;
             distance += kind == 0 ? thinStep(3) : thinStep(2) * 3) {
            Block block;
            if (kind == 0)
                block.writer.fixed(true);
            else
                block.writer.dynamic(true,
                                     kind == 1 ? flatLiteralLengths() : frequentMatchLengths(),
                                     flatDistanceLengths());
            for (const std::uint8_t value : noise(distance)) block.literal(value);
            for (int length = 3; length <= 258; length += length < 80 ? 1 : 17) {
                block.match(length, distance);
                // Runs of all lengths from none on.
                for (int n = 0; n < (length + distance) % 6; ++n) block.literal((length + n) & 255);
            }
            block.writer.endOfBlock();
            const auto room = static_cast<int>(block.expected.size());
            for (const int slack : {0, 1, 7, 300}) {
                Session session(block.writer.bytes(), LockStep::Off);
                int status = session.run(everyCall(1 << 20, room + slack));
                ASSERT_EQ(status, zepStsStreamEnd)
                    << "distance " << distance << ' ' << session.failure();
                ASSERT_EQ(session.output(), block.expected) << distance;
            }
            // Pieces of output: the history, matches across its end and out of it.
            for (const int most : {200, 1000}) {
                Session session(block.writer.bytes());
                ASSERT_EQ(session.run(randomCuts(1000, most)), zepStsStreamEnd)
                    << session.failure();
                ASSERT_EQ(session.output(), block.expected) << distance;
            }
        }
}

TEST_P(DeflateSymbols, CodesOfEveryLengthUpTo15) {
    // Sixteen literals and sixteen distances on a stair, so that all lengths occur, the end of
    // block among the longest.
    const std::vector<int> literal = stairs(
        {'a', 'b', 260, 'c', 'd', 284, 'e', 'f', 'g', 270, 'h', 'i', 'j', 285, 'k', 256}, 286);
    const std::vector<int> distance =
        stairs({0, 1, 5, 2, 9, 3, 13, 17, 21, 4, 25, 27, 6, 28, 29, 7}, 30);
    Block block;
    block.writer.stored(false, noise(kWindow));
    block.expected = Bytes(block.writer.bytes().begin() + 5, block.writer.bytes().end());
    block.writer.dynamic(true, literal, distance);
    std::vector<int> distances;
    for (int symbol = 0; symbol < 30; ++symbol)
        if (distance[static_cast<std::size_t>(symbol)] > 0)
            distances.push_back(reference::baseOfDistanceSymbol(symbol));
    for (int n = 0; n < 300; ++n) {
        block.literal("abcdefghijk"[n % 11]);
        const int symbol = std::vector{260, 284, 270, 285}[static_cast<std::size_t>(n % 4)];
        block.match(reference::baseOfLengthSymbol(symbol),
                    distances[static_cast<std::size_t>(n) % distances.size()]);
    }
    block.writer.endOfBlock();
    expectDecodes(block.writer.bytes(), block.expected);
}

TEST_P(DeflateSymbols, ASingleCodeOfOneBit) {
    // The only literal code is the end of block: an empty block.
    std::vector<int> literal(257, 0);
    literal[256] = 1;
    DeflateWriter out;
    out.dynamic(true, literal, {0});
    out.endOfBlock();
    expectDecodes(out.bytes(), {}, 2);
    // The only distance code has one bit; the other value of the bit stands for nothing.
    std::vector<int> pair(286, 0);
    pair['x'] = 2, pair[256] = 2, pair[257] = 1;
    Block block;
    block.writer.dynamic(true, pair, {1});
    block.literal('x');
    for (int n = 0; n < 20; ++n) block.match(3, 1);
    block.writer.endOfBlock();
    expectDecodes(block.writer.bytes(), block.expected);
}

TEST_P(DeflateSymbols, ReservedSymbolsOfTheFixedCodeAreErrorsAndConsumed) {
    for (const int symbol : {286, 287})
        for (const int behind : {0, 3, 40}) {
            DeflateWriter out;
            out.fixed(true);
            out.literal('a');
            out.literalSymbol(symbol);
            out.literal('b');
            out.endOfBlock();
            Bytes stream = out.bytes();
            stream.insert(stream.end(), static_cast<std::size_t>(behind), 0);
            Session session(stream);
            ASSERT_EQ(session.blockType(1), zepStsNoErr);
            EXPECT_EQ(session.decodeBlock(100, 100), zepStsSizeErr);
            EXPECT_EQ(session.output(), (Bytes{'a'}));
            EXPECT_EQ(session.fields().status, 4);
            // The symbol is gone: decoding could go on behind it.
            EXPECT_EQ(session.decodeBlock(100, 100), zepStsStreamEnd);
            EXPECT_EQ(session.output(), (Bytes{'a', 'b'}));
        }
}

TEST_P(DeflateSymbols, ReservedDistancesOfTheFixedCodeAreErrorsAndBothCodesConsumed) {
    for (const int symbol : {30, 31})
        for (const int behind : {0, 3, 40}) {
            DeflateWriter out;
            out.fixed(true);
            out.literal('a');
            out.literalSymbol(266);
            out.bits(1, 1);
            out.distanceSymbol(symbol);
            out.literal('b');
            out.endOfBlock();
            Bytes stream = out.bytes();
            stream.insert(stream.end(), static_cast<std::size_t>(behind), 0);
            Session session(stream);
            ASSERT_EQ(session.blockType(1), zepStsNoErr);
            EXPECT_EQ(session.decodeBlock(100, 100), zepStsSizeErr);
            EXPECT_EQ(session.output(), (Bytes{'a'}));
            EXPECT_EQ(session.decodeBlock(100, 100), zepStsStreamEnd);
            EXPECT_EQ(session.output(), (Bytes{'a', 'b'}));
        }
}

TEST_P(DeflateSymbols, OutputBeforeAnErrorEntersTheHistory) {
    DeflateWriter out;
    out.fixed(true);
    for (const char c : {'o', 'u', 't'}) out.literal(c);
    out.literalSymbol(286);
    out.match(6, 3);
    out.endOfBlock();
    Session session(out.bytes());
    ASSERT_EQ(session.blockType(1), zepStsNoErr);
    ASSERT_EQ(session.decodeBlock(100, 100), zepStsSizeErr);
    ASSERT_EQ(session.decodeBlock(100, 100), zepStsStreamEnd);
    EXPECT_EQ(session.output(), (Bytes{'o', 'u', 't', 'o', 'u', 't', 'o', 'u', 't'}));
}

TEST_P(DeflateSymbols, UnassignedLiteralsAreZerosThatCostNoBits) {
    // 'A' is 0, the end is 10, and 11 stands for nothing.
    std::vector<int> literal(257, 0);
    literal['A'] = 1, literal[256] = 2;
    for (const int behind : {1, 2, 20}) {
        DeflateWriter out;
        out.dynamic(true, literal, {0});
        out.literal('A');
        out.bits(3, 2);
        out.endOfBlock();
        Bytes stream = out.bytes();
        stream.insert(stream.end(), static_cast<std::size_t>(behind), 0xFF);
        Session session(stream);
        ASSERT_EQ(session.blockType(1), zepStsNoErr);
        for (int n = 0; n < 5; ++n)
            ASSERT_EQ(session.decodeBlock(200, 1000), zepStsDstSizeLessExpected);
        Bytes expected(5000, 0);
        expected[0] = 'A';
        EXPECT_EQ(session.output(), expected);
    }
}

TEST_P(DeflateSymbols, UnassignedDistancesAreErrors) {
    // One distance code, 0; the bit 1 stands for nothing. Decoded by every loop: with input and
    // room behind or without.
    std::vector<int> literal(286, 0);
    literal['A'] = 1, literal[256] = 2, literal[260] = 2;
    for (const int behind : {0, 1, 20, 400})
        for (const int room : {10, 1000}) {
            DeflateWriter out;
            out.dynamic(true, literal, {1});
            out.literal('A');
            out.literalSymbol(260);
            out.bits(1, 1);
            for (int n = 0; n < behind; ++n) out.byte(0);
            Session session(out.bytes());
            ASSERT_EQ(session.blockType(1), zepStsNoErr);
            EXPECT_EQ(session.decodeBlock(1000, room), zepStsSizeErr) << behind;
            EXPECT_EQ(session.output(), (Bytes{'A'}));
        }
}

TEST_P(DeflateSymbols, UnassignedEntriesBehindLongCodesToo) {
    // All of 0 and 10 to 1111111111 0000, so that the first ten ones lead to the second level,
    // which is mostly empty.
    std::vector<int> literal(257, 0);
    for (int n = 1; n <= 10; ++n) literal[static_cast<std::size_t>('a' + n)] = n;
    literal[256] = 14;
    DeflateWriter out;
    out.dynamic(true, literal, {0});
    out.literal('b');
    out.bits(0x3FFF, 14);
    Bytes stream = out.bytes();
    stream.insert(stream.end(), 20, 0xFF);
    Session session(stream);
    ASSERT_EQ(session.blockType(1), zepStsNoErr);
    ASSERT_EQ(session.decodeBlock(1000, 100), zepStsDstSizeLessExpected);
    Bytes expected(100, 0);
    expected[0] = 'b';
    EXPECT_EQ(session.output(), expected);
}

TEST_P(DeflateSymbols, ABlockWithoutAnyCodeIsAllZeros) {
    DeflateWriter out;
    out.dynamic(true, std::vector<int>(257, 0), {0});
    out.bits(0, 32);
    Session session(out.bytes());
    ASSERT_EQ(session.blockType(1), zepStsNoErr);
    for (int n = 0; n < 3; ++n) ASSERT_EQ(session.decodeBlock(200, 500), zepStsDstSizeLessExpected);
    EXPECT_EQ(session.output(), Bytes(1500, 0));
}

TEST_P(DeflateSymbols, Symbols286And287OfADynamicBlockAreUnassigned) {
    for (const int symbol : {286, 287}) {
        std::vector<int> literal(288, 0);
        literal['A'] = 2, literal[256] = 2, literal[286] = 2, literal[287] = 2;
        DeflateWriter out;
        out.dynamic(true, literal, {0});
        out.literal('A');
        out.literalSymbol(symbol);
        out.bits(0, 64);
        Session session(out.bytes());
        ASSERT_EQ(session.blockType(1), zepStsNoErr);
        ASSERT_EQ(session.decodeBlock(1000, 50), zepStsDstSizeLessExpected);
        Bytes expected(50, 0);
        expected[0] = 'A';
        EXPECT_EQ(session.output(), expected) << symbol;
    }
}

TEST_P(DeflateSymbols, Symbols30And31OfADynamicBlockAreUnassigned) {
    for (const int symbol : {30, 31}) {
        std::vector<int> literal(286, 0), distance(32, 0);
        literal['A'] = 1, literal[256] = 2, literal[257] = 2;
        distance[0] = 2, distance[1] = 2, distance[30] = 2, distance[31] = 2;
        DeflateWriter out;
        out.dynamic(true, literal, distance);
        out.literal('A');
        out.literalSymbol(257);
        out.distanceSymbol(symbol);
        out.bits(0, 64);
        Session session(out.bytes());
        ASSERT_EQ(session.blockType(1), zepStsNoErr);
        EXPECT_EQ(session.decodeBlock(1000, 50), zepStsSizeErr);
        EXPECT_EQ(session.output(), (Bytes{'A'}));
    }
}

TEST_P(DeflateSymbols, DistancesBeyondTheStartReadTheEmptyHistory) {
    Block block;
    block.writer.fixed(true);
    block.literal('a');
    block.match(10, 2);
    block.match(20, 32768);
    block.match(258, 300);
    block.writer.endOfBlock();
    expectDecodes(block.writer.bytes(), block.expected);
}

ZEP_FOR_EACH_VARIANT(DeflateSymbols);

}  // namespace
}  // namespace zep::test
