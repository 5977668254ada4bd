// Input that ends within a code. Bits that have not arrived must not be taken for zeros: codes may
// belong to symbols without a meaning (286, 287; 30, 31), and such a code may begin as others do.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "deflate/session.h"
#include "support/variant.h"

namespace zep::test {
namespace {

using reference::DeflateWriter;

class DeflateCutCodes : public VariantTest {};

struct Codes {
    std::vector<int> literal, distance;
};

// 0 for A, 100 and 101 for 286 and 287, and 11.. for B, C, the end and length 3, which so share the
// first bit with 286. The same with distances: 0 for 1, 100 and 101 for 30 and 31, 11.. for others.
Codes shortCodes() {
    Codes c{std::vector<int>(288, 0), std::vector<int>(32, 0)};
    c.literal['A'] = c.distance[0] = 1;
    for (const std::size_t s : {286, 287}) c.literal[s] = 3;
    for (const std::size_t s : {66, 67, 256, 257}) c.literal[s] = 4;
    for (const std::size_t s : {30, 31}) c.distance[s] = 3;
    for (const std::size_t s : {1, 2, 3, 4}) c.distance[s] = 4;
    return c;
}

// The same behind eleven ones, which makes codes of 13 and 15 bits.
Codes longCodes() {
    Codes c{std::vector<int>(288, 0), std::vector<int>(32, 0)};
    c.literal['A'] = c.distance[0] = 1;
    for (int length = 2; length <= 11; ++length) {
        c.literal[static_cast<std::size_t>('a' + length)] = length;
        c.distance[static_cast<std::size_t>(length + 1)] = length;
    }
    for (const std::size_t s : {286, 287}) c.literal[s] = 13;
    for (const std::size_t s : {66, 67, 68, 69, 70, 71, 256, 257}) c.literal[s] = 15;
    for (const std::size_t s : {30, 31}) c.distance[s] = 13;
    for (const std::size_t s : {1, 2, 13, 14, 15, 16, 17, 18}) c.distance[s] = 15;
    return c;
}

struct Stream {
    Bytes bytes, expected;
};

// All the symbols that share their first bits with one without a meaning, behind shift more bits.
Stream validStream(const Codes& codes, int shift) {
    DeflateWriter out;
    Bytes expected;
    const auto literal = [&](int value) {
        out.literal(value);
        expected.push_back(static_cast<std::uint8_t>(value));
    };
    out.dynamic(true, codes.literal, codes.distance);
    for (int n = 0; n < 4 + shift; ++n) literal('A');
    for (int round = 0; round < 3; ++round)
        for (int distance = 1; distance <= 3; ++distance) {
            literal('B');
            literal('C');
            out.match(3, distance);
            for (int n = 0; n < 3; ++n) expected.push_back(*(expected.end() - distance));
            literal('A');
        }
    out.endOfBlock();
    out.bits(0xFFFF, 16);  // code lengths are read only with 14 bits in sight
    return {out.bytes(), expected};
}

TEST_P(DeflateCutCodes, AreWaitedForWhereTheInputPauses) {
    for (const Codes& codes : {shortCodes(), longCodes()})
        for (int shift = 0; shift < 8; ++shift) {
            const Stream s = validStream(codes, shift);
            const auto size = static_cast<int>(s.bytes.size());
            for (int cut = 0; cut <= size; ++cut) {
                Session session(s.bytes);
                const Cuts cuts{[&] {
                                    const auto at = static_cast<int>(session.position());
                                    return at < cut ? cut - at : size;
                                },
                                [] { return 1000; }};
                ASSERT_EQ(session.run(cuts), zepStsStreamEnd) << "cut " << cut;
                ASSERT_EQ(session.output(), s.expected) << "cut " << cut;
            }
            for (const int bytes : {1, 2, 3, 7}) {
                Session session(s.bytes);
                ASSERT_EQ(session.run(everyCall(bytes, 1000)), zepStsStreamEnd) << bytes;
                ASSERT_EQ(session.output(), s.expected) << bytes;
            }
        }
}

TEST_P(DeflateCutCodes, AreWaitedForWhereTheInputEnds) {
    for (const Codes& codes : {shortCodes(), longCodes()})
        for (int shift = 0; shift < 8; ++shift) {
            const Stream s = validStream(codes, shift);
            for (std::size_t cut = 0; cut + 3 <= s.bytes.size(); ++cut) {
                Session session(
                    Bytes(s.bytes.begin(), s.bytes.begin() + static_cast<std::ptrdiff_t>(cut)));
                ASSERT_EQ(session.run(everyCall(1000, 1000)), zepStsSrcSizeLessExpected) << cut;
                ASSERT_LE(session.output().size(), s.expected.size());
                ASSERT_TRUE(std::equal(session.output().begin(), session.output().end(),
                                       s.expected.begin()))
                    << cut;
            }
        }
}

// Without a meaning, but whole: known for what they are as soon as their last bit is there.
TEST_P(DeflateCutCodes, WithoutAMeaningAreWaitedForToo) {
    for (const bool distance : {false, true})
        for (const Codes& codes : {shortCodes(), longCodes()})
            for (int shift = 0; shift < 8; ++shift)
                for (const int last : {0, 1}) {
                    DeflateWriter out;
                    out.dynamic(true, codes.literal, codes.distance);
                    for (int n = 0; n < 16 + shift; ++n) out.literal('A');
                    if (distance) {
                        out.literalSymbol(257);
                        out.distanceSymbol(30 + last);
                    } else {
                        out.literalSymbol(286 + last);
                    }
                    const std::int64_t bits = out.bitLength();
                    out.bits(0, 40);
                    Session session(out.bytes());
                    ASSERT_EQ(session.blockType(1), zepStsNoErr);
                    const auto before = static_cast<int>((bits - 1) / 8) - 1;
                    ASSERT_EQ(session.decodeBlock(before, 100), zepStsSrcSizeLessExpected);
                    ASSERT_EQ(session.output(), Bytes(session.output().size(), 'A'));
                    const auto made = static_cast<int>(session.output().size());
                    ASSERT_LE(made, 16 + shift);
                    const int room = 16 + shift - made + 5;
                    Bytes expected(static_cast<std::size_t>(16 + shift), 'A');
                    if (distance) {
                        ASSERT_EQ(session.decodeBlock(1, room), zepStsSizeErr);
                    } else {
                        // Zeros that cost no bits.
                        ASSERT_EQ(session.decodeBlock(1, room), zepStsDstSizeLessExpected);
                        expected.insert(expected.end(), 5, 0);
                    }
                    ASSERT_EQ(session.output(), expected);
                }
}

// A code that no symbol has: as soon as the bits there are cannot begin any other.
TEST_P(DeflateCutCodes, ThatNoSymbolHasNeedNotBeWhole) {
    std::vector<int> literal(257, 0);
    literal['A'] = 1, literal[256] = 3;  // 0 and 100; 11 and 101 begin no code
    DeflateWriter out;
    out.dynamic(true, literal, {0});
    do out.literal('A');
    while ((out.bitLength() + 2) % 8 != 0);
    for (int n = 0; n < 8; ++n) out.literal('A');
    out.bits(3, 2);
    Session session(out.bytes());
    ASSERT_EQ(session.blockType(1), zepStsNoErr);
    ASSERT_EQ(session.decodeBlock(1000, 100), zepStsDstSizeLessExpected);
    ASSERT_EQ(session.output().size(), 100u);
    ASSERT_EQ(session.output().back(), 0);
}

ZEP_FOR_EACH_VARIANT(DeflateCutCodes);

}  // namespace
}  // namespace zep::test
