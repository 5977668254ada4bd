// The radix index sort against std::stable_sort on bit patterns.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/sweep.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {
namespace {

// Place in the descending order: not-a-numbers by their sign at the ends, +0 before -0.
std::int64_t rank(Zep32f x) {
    std::int32_t bits;
    std::memcpy(&bits, &x, sizeof bits);
    return bits >= 0 ? -std::int64_t{bits} - 1 : std::int64_t{bits & 0x7FFFFFFF};
}

std::vector<Zep32f> keysOf(int len, int pattern) {
    std::vector<Zep32f> x;
    for (int n = 0; n < len; ++n) {
        const auto bits = static_cast<std::uint32_t>(rng()());
        Zep32f any;
        std::memcpy(&any, &bits, sizeof any);
        x.push_back(pattern == 0   ? any
                    : pattern == 1 ? static_cast<Zep32f>(bits % 3) - 1.0f
                    : pattern == 2 ? 0.0f * (bits % 2 == 0 ? 1.0f : -1.0f)
                                   : static_cast<Zep32f>(n));
    }
    return x;
}

// The keys `stride` bytes apart in a buffer that ends, or begins, at an unreadable page; a negative
// stride starts at the last one.
void checkSort(const std::vector<Zep32f>& x, int stride, Edge edge) {
    const int len = static_cast<int>(x.size());
    const int step = std::abs(stride);
    GuardedBuffer<unsigned char> bytes((len - 1) * step + 4, edge);
    const auto place = [&](int n) { return bytes.data() + (stride > 0 ? n : len - 1 - n) * step; };
    for (int n = 0; n < len; ++n) std::memcpy(place(n), &x[static_cast<std::size_t>(n)], 4);
    GuardedBuffer<Zep32s> index(len, edge), scratch(len, edge);
    ASSERT_EQ(zepsSortRadixIndexDescend_32f(reinterpret_cast<const Zep32f*>(place(0)), stride,
                                            index.data(), scratch.data(), len),
              zepStsNoErr);
    std::vector<int> expected(x.size());
    std::iota(expected.begin(), expected.end(), 0);
    std::stable_sort(expected.begin(), expected.end(), [&](int a, int b) {
        return rank(x[static_cast<std::size_t>(a)]) < rank(x[static_cast<std::size_t>(b)]);
    });
    for (int n = 0; n < len; ++n)
        ASSERT_EQ(index[n], expected[static_cast<std::size_t>(n)]) << "len " << len << " n " << n;
}

class SortRadixIndex : public VariantTest {};

TEST_P(SortRadixIndex, IsStableAndOrdersBitPatterns) {
    for (int pattern = 0; pattern < 4; ++pattern) {
        for (const int len : sweepLengths())
            checkSort(keysOf(len, pattern), 4, len % 2 == 0 ? Edge::Front : Edge::Back);
        for (const int len :
             {64, 100, 127, 128, 129, 255, 500, 511, 512, 513, 1000, 4095, 4096, 5000})
            checkSort(keysOf(len, pattern), 4, Edge::Back);
        if (HasFatalFailure()) return;
    }
}

TEST_P(SortRadixIndex, ReadsThroughAnyStride) {
    for (const int stride : {5, 8, 11, 64, -4, -7, -8})
        for (const int len : {1, 2, 24, 49, 128, 129, 300, 512, 513})
            checkSort(keysOf(len, 0), stride, len % 2 == 0 ? Edge::Front : Edge::Back);
}

TEST_P(SortRadixIndex, SmallExample) {
    const Zep32f x[] = {1.0f, -1.0f, 1.0f};
    Zep32s index[3], scratch[3];
    ASSERT_EQ(zepsSortRadixIndexDescend_32f(x, 4, index, scratch, 3), zepStsNoErr);
    EXPECT_EQ(index[0], 0);
    EXPECT_EQ(index[1], 2);
    EXPECT_EQ(index[2], 1);
}

TEST_P(SortRadixIndex, Errors) {
    const Zep32f x[2] = {};
    Zep32s index[2] = {7, 7}, scratch[2] = {7, 7};
    for (const int len : {2, 0}) {
        EXPECT_EQ(zepsSortRadixIndexDescend_32f(nullptr, 3, index, scratch, len), zepStsNullPtrErr);
        EXPECT_EQ(zepsSortRadixIndexDescend_32f(x, 3, nullptr, scratch, len), zepStsNullPtrErr);
        EXPECT_EQ(zepsSortRadixIndexDescend_32f(x, 3, index, nullptr, len), zepStsNullPtrErr);
    }
    for (const int stride : {0, 1, 2, 3})
        EXPECT_EQ(zepsSortRadixIndexDescend_32f(x, stride, index, scratch, 2), zepStsSizeErr);
    for (const int len : {0, -1})
        EXPECT_EQ(zepsSortRadixIndexDescend_32f(x, 4, index, scratch, len), zepStsSizeErr);
    EXPECT_EQ(index[0], 7);
    EXPECT_EQ(scratch[0], 7);
}

ZEP_FOR_EACH_VARIANT(SortRadixIndex);

}  // namespace
}  // namespace zep::test
