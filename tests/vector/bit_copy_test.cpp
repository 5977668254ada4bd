#include <gtest/gtest.h>

#include "support/variant.h"
#include "vector/movement_cases.h"
#include "zeps.h"

namespace zep::test {
namespace {

class BitCopy : public VariantTest {};

// Bit n, counted from the most significant bit of the first byte.
int bit(const std::uint8_t* p, int n) { return (p[n / 8] >> (7 - n % 8)) & 1; }
void setBit(std::uint8_t* p, int n, int value) {
    const int mask = 0x80 >> (n % 8);
    p[n / 8] = static_cast<std::uint8_t>(value != 0 ? p[n / 8] | mask : p[n / 8] & ~mask);
}
int bytesOfBits(int bits) { return (bits + 7) / 8; }

// Both buffers hold no byte more than the run touches.
void expectCopies(int srcOffset, int dstOffset, int len, Edge edge) {
    const int srcFirst = srcOffset % 8, dstFirst = dstOffset % 8;
    GuardedBuffer<std::uint8_t> src(bytesOfBits(srcFirst + len), edge),
        dst(bytesOfBits(dstFirst + len), edge);
    fillRandom(src, dst);
    Bytes expected(dst.begin(), dst.end());
    for (int n = 0; n < len; ++n)
        setBit(expected.data(), dstFirst + n, bit(src.data(), srcFirst + n));
    ASSERT_EQ(zepsCopy_1u(src.data(), srcOffset, dst.data(), dstOffset, len), zepStsNoErr);
    expectBytes(dst.data(), expected.data(), expected.size(), "bits");
    ASSERT_FALSE(testing::Test::HasFailure())
        << len << " bits from offset " << srcOffset << " to offset " << dstOffset;
}

TEST_P(BitCopy, CopiesEveryLengthAtEveryOffset) {
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (int srcOffset = 0; srcOffset < 8; ++srcOffset)
            for (int dstOffset = 0; dstOffset < 8; ++dstOffset) {
                for (int len = 1; len <= 300; ++len) expectCopies(srcOffset, dstOffset, len, edge);
                for (const int len : {511, 512, 513, 1000, 1024, 4095, 4096, 4097, 30011})
                    expectCopies(srcOffset, dstOffset, len, edge);
            }
}

TEST_P(BitCopy, TakesOffsetsModuloEight) {
    for (const int srcOffset : {8, 9, 15, 16, 0x7FFFFFF9})
        for (const int dstOffset : {1, 9, 0x7FFFFFF8})
            for (const int len : {3, 20, 100}) expectCopies(srcOffset, dstOffset, len, Edge::Back);
}

TEST_P(BitCopy, KeepsTheOtherBitsOfTheByte) {
    const Zep8u src = 0xFF;
    Zep8u dst = 0;
    ASSERT_EQ(zepsCopy_1u(&src, 0, &dst, 2, 3), zepStsNoErr);
    EXPECT_EQ(dst, 0x38);
    const Zep8u none = 0;
    dst = 0xFF;
    ASSERT_EQ(zepsCopy_1u(&none, 5, &dst, 2, 3), zepStsNoErr);
    EXPECT_EQ(dst, 0xC7);
}

TEST_P(BitCopy, TestsItsArgumentsInOrder) {
    Zep8u src[2] = {0xFF, 0xFF}, dst[2] = {0, 0};
    EXPECT_EQ(zepsCopy_1u(nullptr, -1, dst, -1, 0), zepStsNullPtrErr);
    EXPECT_EQ(zepsCopy_1u(src, -1, nullptr, -1, 0), zepStsNullPtrErr);
    EXPECT_EQ(zepsCopy_1u(src, 0, dst, 0, 0), zepStsSizeErr);
    EXPECT_EQ(zepsCopy_1u(src, 0, dst, 0, -8), zepStsSizeErr);
    EXPECT_EQ(zepsCopy_1u(src, -1, dst, 0, 8), zepStsSizeErr);
    EXPECT_EQ(zepsCopy_1u(src, 0, dst, -8, 8), zepStsSizeErr);
    EXPECT_EQ(dst[0], 0);
}

ZEP_FOR_EACH_VARIANT(BitCopy);

}  // namespace
}  // namespace zep::test
