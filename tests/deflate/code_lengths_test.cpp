// The header of a dynamic block: counts, code-length code, run-length coded lengths.
#include <gtest/gtest.h>

#include "deflate/session.h"
#include "support/variant.h"

namespace zep::test {
namespace {

using reference::DeflateWriter;
using reference::flatCodeLengthLengths;
using reference::LengthSymbol;

// Code lengths are read only with 14 bits in sight, so that the smallest blocks need something
// behind them.
Bytes padded(Bytes stream) {
    stream.insert(stream.end(), 2, 0xFF);
    return stream;
}

class DeflateCodeLengths : public VariantTest {
protected:
    void expectDecodes(const Bytes& block, const Bytes& expected) {
        const Bytes stream = padded(block);
        for (int srcBytes = 1; srcBytes <= static_cast<int>(stream.size()); ++srcBytes) {
            Session session(stream);
            ASSERT_EQ(session.run(everyCall(srcBytes, 100)), zepStsStreamEnd) << session.failure();
            ASSERT_EQ(session.output(), expected);
        }
    }
};

// Runs of the same length as (value, count), plainly coded.
std::vector<int> lengthsOf(std::initializer_list<std::pair<int, int>> runs) {
    std::vector<int> lengths;
    for (const auto& [value, count] : runs)
        lengths.insert(lengths.end(), static_cast<std::size_t>(count), value);
    return lengths;
}

// 'A' is 0, the end is 10, length 3 is 11.
std::vector<int> smallLiteral() { return lengthsOf({{0, 65}, {1, 1}, {0, 190}, {2, 2}}); }

TEST_P(DeflateCodeLengths, EveryCountOfCodes) {
    for (int literalCount = 258; literalCount <= 288; ++literalCount)
        for (const int distanceCount : {1, 2, 29, 30, 31, 32}) {
            std::vector<int> literal = smallLiteral(), distance{1};
            literal.resize(static_cast<std::size_t>(literalCount), 0);
            distance.resize(static_cast<std::size_t>(distanceCount), 0);
            DeflateWriter out;
            out.dynamic(true, literal, distance);
            out.literal('A');
            out.match(3, 1);
            out.endOfBlock();
            Session session(padded(out.bytes()));
            ASSERT_EQ(session.run(everyCall(1000, 100)), zepStsStreamEnd) << session.failure();
            ASSERT_EQ(session.output(), Bytes(4, 'A')) << literalCount << ' ' << distanceCount;
        }
}

TEST_P(DeflateCodeLengths, AllCodesWithLengths) {
    // 288 and 32 codes, all in use: HLIT and HDIST both 31.
    DeflateWriter out;
    out.dynamic(true, reference::fixedLiteralLengths(), reference::fixedDistanceLengths());
    out.literal('A');
    out.match(258, 1);
    out.endOfBlock();
    expectDecodes(out.bytes(), Bytes(259, 'A'));
}

TEST_P(DeflateCodeLengths, EveryCountOfCodeLengthCodes) {
    // The lengths used are 0, 1 and 2, so as many of the 19 as are in front of these can be left
    // out.
    std::vector<LengthSymbol> coded;
    for (const int length : smallLiteral()) coded.push_back({length});
    coded.push_back({1});
    for (const int extraSymbol : {16, 17, 18, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 14, 15}) {
        std::vector<int> codeLengths(19, 0);
        codeLengths[0] = codeLengths[1] = codeLengths[2] = 2;
        codeLengths[static_cast<std::size_t>(extraSymbol)] = 2;
        DeflateWriter out;
        out.dynamic(true, smallLiteral(), {1}, coded, codeLengths);
        out.literal('A');
        out.match(3, 1);
        out.endOfBlock();
        Session session(padded(out.bytes()));
        ASSERT_EQ(session.run(everyCall(1000, 100)), zepStsStreamEnd) << session.failure();
        ASSERT_EQ(session.output(), Bytes(4, 'A')) << extraSymbol;
    }
}

TEST_P(DeflateCodeLengths, EveryLengthOfCodeLengthCodes) {
    // A stair of 1 to 7 bits, rotated, so that each used symbol has each length.
    for (int turn = 0; turn < 8; ++turn) {
        constexpr int kSymbols[8] = {0, 1, 2, 3, 17, 18, 16, 15};
        std::vector<int> codeLengths(19, 0);
        for (int n = 0; n < 8; ++n)
            codeLengths[static_cast<std::size_t>(kSymbols[(n + turn) % 8])] = std::min(n + 1, 7);
        std::vector<LengthSymbol> coded;
        for (const int length : smallLiteral()) coded.push_back({length});
        coded.push_back({1});
        DeflateWriter out;
        out.dynamic(true, smallLiteral(), {1}, coded, codeLengths);
        out.literal('A');
        out.endOfBlock();
        Session session(padded(out.bytes()));
        ASSERT_EQ(session.run(everyCall(1000, 100)), zepStsStreamEnd) << session.failure();
        ASSERT_EQ(session.output(), (Bytes{'A'}));
    }
}

TEST_P(DeflateCodeLengths, EveryRepeat) {
    // 65 zeros before 'A' in all ways that one kind of repeat allows, the rest plain.
    for (int extra17 = 0; extra17 < 8; ++extra17)
        for (int extra18 = 0; extra18 < 128; extra18 += 3) {
            std::vector<LengthSymbol> coded;
            int zeros = 65;
            const auto repeat = [&](int symbol, int extra, int count) {
                if (count <= zeros) coded.push_back({symbol, extra}), zeros -= count;
            };
            repeat(17, extra17, 3 + extra17);
            repeat(18, extra18, 11 + extra18);
            for (; zeros > 0; --zeros) coded.push_back({0});
            coded.push_back({1});
            coded.push_back({18, 127}), coded.push_back({18, 190 - 138 - 11});
            coded.push_back({2}), coded.push_back({2});
            coded.push_back({1});
            DeflateWriter out;
            out.dynamic(true, smallLiteral(), {1}, coded, flatCodeLengthLengths());
            out.literal('A');
            out.endOfBlock();
            Session session(padded(out.bytes()));
            ASSERT_EQ(session.run(everyCall(1000, 100)), zepStsStreamEnd) << session.failure();
            ASSERT_EQ(session.output(), (Bytes{'A'})) << extra17 << ' ' << extra18;
        }
}

TEST_P(DeflateCodeLengths, EveryRepeatOfThePreviousLength) {
    // 16 literals of four bits would leave no room for the end, so 12 of four bits, written as 1 +
    // (3..6) + rest.
    for (int extra = 0; extra < 4; ++extra) {
        std::vector<int> literal(257, 0);
        for (std::size_t n = 0; n < 12; ++n) literal[n] = 4;
        literal[256] = 2;
        std::vector<LengthSymbol> coded{{4}, {16, extra}};
        for (int n = 4 + extra; n < 12; ++n) coded.push_back({4});
        coded.push_back({18, 127}), coded.push_back({18, 244 - 138 - 11}), coded.push_back({2}),
            coded.push_back({0});
        DeflateWriter out;
        out.dynamic(true, literal, {0}, coded, flatCodeLengthLengths());
        Bytes expected;
        for (int n = 0; n < 12; ++n)
            out.literal(n), expected.push_back(static_cast<std::uint8_t>(n));
        out.endOfBlock();
        expectDecodes(out.bytes(), expected);
    }
}

TEST_P(DeflateCodeLengths, ARepeatInFirstPlaceRepeatsAZero) {
    std::vector<LengthSymbol> coded{{16, 3}, {16, 0}};  // 9 zeros
    for (int n = 9; n < 65; ++n) coded.push_back({0});
    coded.push_back({1});
    coded.push_back({18, 127}), coded.push_back({18, 190 - 138 - 11});
    coded.push_back({2}), coded.push_back({2}), coded.push_back({1});
    DeflateWriter out;
    out.dynamic(true, smallLiteral(), {1}, coded, flatCodeLengthLengths());
    out.literal('A');
    out.match(3, 1);
    out.endOfBlock();
    expectDecodes(out.bytes(), Bytes(4, 'A'));
}

TEST_P(DeflateCodeLengths, ARepeatInFirstPlaceForgetsTheBlockBefore) {
    // The block before ended its lengths with ones and twos.
    DeflateWriter out;
    out.dynamic(false, smallLiteral(), {1});
    out.literal('A');
    out.endOfBlock();
    std::vector<LengthSymbol> coded{{16, 3}};
    for (int n = 6; n < 65; ++n) coded.push_back({0});
    coded.push_back({1});
    coded.push_back({18, 127}), coded.push_back({18, 190 - 138 - 11});
    coded.push_back({2}), coded.push_back({2}), coded.push_back({1});
    out.dynamic(true, smallLiteral(), {1}, coded, flatCodeLengthLengths());
    out.literal('A');
    out.endOfBlock();
    expectDecodes(out.bytes(), Bytes(2, 'A'));
}

TEST_P(DeflateCodeLengths, RepeatsCrossFromLiteralsToDistances) {
    // 257 literal lengths end with four bits for the end of block, and a repeat carries them on
    // over five distances.
    std::vector<int> literal(257, 0), distance(6, 4);
    for (std::size_t n = 0; n < 15; ++n) literal[n] = 4;
    literal[256] = 4;
    std::vector<LengthSymbol> coded{{4}, {16, 3}, {16, 3}, {4}, {4}};  // 1 + 6 + 6 + 2
    coded.push_back({18, 127}), coded.push_back({18, 241 - 138 - 11});
    coded.push_back({4}), coded.push_back({16, 3});
    DeflateWriter out;
    out.dynamic(true, literal, distance, coded, flatCodeLengthLengths());
    out.literal(3), out.literal(4);
    out.endOfBlock();
    expectDecodes(out.bytes(), (Bytes{3, 4}));
}

TEST_P(DeflateCodeLengths, ZeroRunsCrossFromLiteralsToDistances) {
    std::vector<int> literal(270, 0), distance(20, 0);
    literal['A'] = 1, literal[256] = 1;
    std::vector<LengthSymbol> coded;
    for (int n = 0; n < 65; ++n) coded.push_back({0});
    coded.push_back({1});
    coded.push_back({18, 127}), coded.push_back({18, 190 - 138 - 11});
    coded.push_back({1});
    coded.push_back({18, 33 - 11});  // 13 literals and 20 distances
    DeflateWriter out;
    out.dynamic(true, literal, distance, coded, flatCodeLengthLengths());
    out.literal('A');
    out.endOfBlock();
    expectDecodes(out.bytes(), (Bytes{'A'}));
}

TEST_P(DeflateCodeLengths, ARepeatPastTheEndIsAnError) {
    for (const LengthSymbol& last :
         {LengthSymbol{16, 0}, {17, 0}, {18, 0}, {18, 127}, {16, 3}, {17, 7}}) {
        std::vector<LengthSymbol> coded;
        for (const int length : smallLiteral()) coded.push_back({length});
        coded.push_back(last);  // one length is missing, three and more come
        DeflateWriter out;
        out.dynamic(true, smallLiteral(), {0}, coded, flatCodeLengthLengths());
        out.bits(0, 64);
        for (const int srcBytes : {1000, 1}) {
            Session session(out.bytes());
            ASSERT_EQ(session.run(everyCall(srcBytes, 100)), zepStsSizeErr);
            EXPECT_EQ(session.fields().status, 3);
            EXPECT_EQ(session.fields().lengthsDecoded, 258);
            EXPECT_TRUE(session.output().empty());
        }
    }
}

TEST_P(DeflateCodeLengths, ARepeatThatEndsExactlyAtTheEndIsNone) {
    std::vector<LengthSymbol> coded;
    for (const int length : smallLiteral()) coded.push_back({length});
    coded.push_back({17, 0});
    DeflateWriter out;
    out.dynamic(true, smallLiteral(), {0, 0, 0}, coded, flatCodeLengthLengths());
    out.literal('A');
    out.endOfBlock();
    expectDecodes(out.bytes(), (Bytes{'A'}));
}

TEST_P(DeflateCodeLengths, FourteenBitsAreAskedForBeforeEachLength) {
    DeflateWriter out;
    out.dynamic(true, smallLiteral(), {1});
    const std::int64_t headerBits = out.bitLength();
    out.literal('A');
    out.endOfBlock();
    // The lengths end with four bits for the last one. With fewer than 14 bits to go, they are not
    // looked at.
    for (int bytes = 1; bytes < static_cast<int>(out.bytes().size()); ++bytes) {
        Session session(out.bytes());
        ASSERT_EQ(session.blockType(1), zepStsNoErr);
        ASSERT_EQ(session.decodeBlock(bytes - 1, 100), zepStsSrcSizeLessExpected);
        if (8 * bytes < headerBits - 4 + 14) {
            ASSERT_LT(session.fields().status, 4) << bytes;
        }
        if (session.fields().status == 3) {
            ASSERT_LT(session.fields().bitCount, 14);
        }
    }
}

TEST_P(DeflateCodeLengths, AStreamThatEndsWithinFourteenBitsOfItsHeaderWaits) {
    // The last length takes four bits and the end of block one: five bits, at most 12 with the rest
    // of the byte.
    std::vector<int> literal(257, 0);
    literal[256] = 1;
    DeflateWriter out;
    out.dynamic(true, literal, {0});
    out.endOfBlock();
    Session session(out.bytes());
    EXPECT_EQ(session.run(everyCall(1000, 10)), zepStsSrcSizeLessExpected);
    EXPECT_EQ(session.fields().status, 3);
}

TEST_P(DeflateCodeLengths, TheFieldsTellTheCounts) {
    DeflateWriter out;
    out.dynamic(true, smallLiteral(), {1, 0, 0});
    out.literal('A');
    Session session(out.bytes());
    ASSERT_EQ(session.blockType(1), zepStsNoErr);
    ASSERT_EQ(session.decodeBlock(20, 100), zepStsSrcSizeLessExpected);
    EXPECT_EQ(session.fields().literalCodeCount, 258);
    EXPECT_EQ(session.fields().distanceCodeCount, 3);
    EXPECT_EQ(session.fields().codeLengthCount, 19);
    EXPECT_EQ(session.fields().blockType, 1);
    EXPECT_EQ(session.fields().finalBlock, 1);
}

ZEP_FOR_EACH_VARIANT(DeflateCodeLengths);

}  // namespace
}  // namespace zep::test
