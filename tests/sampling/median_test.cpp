// Running median against a sort of every window.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "support/failing_heap.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/sweep.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {
namespace {

using Samples = std::vector<Zep32f>;

// Windows of the clamped input, each sorted.
Samples model(const Samples& x, int maskSize) {
    const int h = (maskSize - 1) / 2, last = static_cast<int>(x.size()) - 1;
    Samples y;
    for (int n = 0; n <= last; ++n) {
        Samples w;
        for (int k = n - h; k <= n + h; ++k)
            w.push_back(x[static_cast<std::size_t>(std::clamp(k, 0, last))]);
        std::nth_element(w.begin(), w.begin() + h, w.end());
        y.push_back(w[static_cast<std::size_t>(h)]);
    }
    return y;
}

// Few different values, so that windows have equal ones.
Samples signal(int len, bool coarse) {
    Samples x(static_cast<std::size_t>(len));
    for (Zep32f& v : x) {
        v = randomValue<Zep32f>() * 8;
        if (coarse) v = std::floor(v) + 0.5f;
    }
    return x;
}

void checkMedian(const Samples& x, int maskSize, Edge edge, int skew) {
    const int len = static_cast<int>(x.size());
    const Samples expected = model(x, maskSize);
    const ZepStatus status = maskSize % 2 == 0 ? zepStsEvenMedianMaskSize : zepStsNoErr;
    const auto bytes = static_cast<std::size_t>(len) * sizeof(Zep32f);
    GuardedBuffer<Zep32f> src(len, edge, skew), dst(len, edge, skew);
    std::memcpy(src.data(), x.data(), bytes);
    ASSERT_EQ(zepsFilterMedian_32f(src.data(), dst.data(), len, maskSize), status);
    Samples got(x.size());
    std::memcpy(got.data(), dst.data(), bytes);
    ASSERT_EQ(got, expected) << "length " << len << " mask " << maskSize;
    ASSERT_EQ(std::memcmp(src.data(), x.data(), bytes), 0);
    ASSERT_EQ(zepsFilterMedian_32f_I(src.data(), len, maskSize), status);
    std::memcpy(got.data(), src.data(), bytes);
    ASSERT_EQ(got, expected) << "in place, length " << len << " mask " << maskSize;
}

class Median : public VariantTest {};

TEST_P(Median, EqualsTheSortedWindow) {
    for (const int len : sweepLengths(70))
        for (const int mask : {1, 2, 3, 4, 5, 7, 8, 9, 11, 12, 31, 32, 33, 63, 101, 141, 200})
            checkMedian(signal(len, len % 2 != 0), mask, len % 3 == 0 ? Edge::Front : Edge::Back,
                        len % 4 == 1 ? 1 + len % 3 : 0);
}

// Each number of registers, and the width from which the window stays in memory; several blocks.
TEST_P(Median, EqualsTheSortedWindowAtEveryWidth) {
    for (int mask = 11; mask <= 141; mask += thinStep(10) * 2)
        checkMedian(signal(300, mask % 4 == 1), mask, Edge::Back, 0);
    for (const int mask : {3, 9, 15, 77}) checkMedian(signal(4500, false), mask, Edge::Front, 0);
    checkMedian(signal(2050, true), 131, Edge::Back, 4);
}

// More samples than a block of the widest form has.
TEST_P(Median, GoesOnOverBlocksOfWideMasks) {
    constexpr int kLen = 66000, kMask = 151;
    Samples x(kLen);
    for (int n = 0; n < kLen; ++n) x[static_cast<std::size_t>(n)] = static_cast<Zep32f>(n);
    Samples y = x;
    // A spike in every hundred disappears; what is left is a straight line, shifted by a spike.
    for (std::size_t n = 50; n < x.size(); n += 1000) y[n] = -1e9f;
    Samples z = y;
    ASSERT_EQ(zepsFilterMedian_32f_I(z.data(), kLen, kMask), zepStsNoErr);
    for (int n = 65400; n < 65700; ++n) {
        Samples w(y.begin() + n - kMask / 2, y.begin() + n + kMask / 2 + 1);
        std::nth_element(w.begin(), w.begin() + kMask / 2, w.end());
        ASSERT_EQ(z[static_cast<std::size_t>(n)], w[kMask / 2]) << n;
    }
}

// Masks that reach over both ends from everywhere.
TEST_P(Median, TakesMasksLongerThanTheData) {
    for (const int len : {1, 2, 3, 4, 5, 6, 9, 20})
        for (int mask = 2 * len - 6; mask <= 2 * len + 9; ++mask)
            if (mask > 0) checkMedian(signal(len, mask % 3 == 0), mask, Edge::Back, 0);
    Samples x{5, 1, 2, 3, 4};
    ASSERT_EQ(zepsFilterMedian_32f_I(x.data(), 5, std::numeric_limits<int>::max()), zepStsNoErr);
    // Nearly as many of the first value as of the last one; the three others are below both.
    EXPECT_EQ(x, (Samples{5, 4, 4, 4, 4}));
}

TEST_P(Median, HoldsInfinitiesAndZeros) {
    constexpr Zep32f inf = std::numeric_limits<Zep32f>::infinity();
    for (const int mask : {3, 5, 7, 9, 13, 141}) {
        Samples x = signal(150, false);
        for (std::size_t n = 0; n < x.size(); n += 3) x[n] = n % 2 == 0 ? inf : -inf;
        for (std::size_t n = 1; n < x.size(); n += 5) x[n] = n % 2 == 0 ? 0.0f : -0.0f;
        checkMedian(x, mask, Edge::Back, 0);
    }
}

// A not-a-number spoils the outputs that it takes part in, and no others.
TEST_P(Median, ConfinesNotANumbers) {
    const Zep32f nan = std::numeric_limits<Zep32f>::quiet_NaN();
    for (const Zep32f bad : {nan, -nan})
        for (const int mask : {3, 5, 7, 9, 11, 31, 101, 141}) {
            Samples x = signal(400, true), y = x;
            const Samples clean = model(x, mask);
            x[200] = y[200] = bad;
            ASSERT_EQ(zepsFilterMedian_32f_I(y.data(), 400, mask), zepStsNoErr);
            for (int n = 0; n < 400; ++n)
                if (std::abs(n - 200) > mask / 2) {
                    ASSERT_EQ(y[static_cast<std::size_t>(n)], clean[static_cast<std::size_t>(n)]);
                }
            // And all of them.
            Samples all(100, bad);
            ASSERT_EQ(zepsFilterMedian_32f_I(all.data(), 100, mask), zepStsNoErr);
            for (const Zep32f v : all) ASSERT_TRUE(std::isnan(v));
        }
}

TEST_P(Median, TestsPointersThenSizesAndWritesNothing) {
    Zep32f x[4] = {4, 1, 3, 2};
    Zep32f y[4] = {9, 9, 9, 9};
    EXPECT_EQ(zepsFilterMedian_32f(nullptr, y, 0, 0), zepStsNullPtrErr);
    EXPECT_EQ(zepsFilterMedian_32f(x, nullptr, 0, 0), zepStsNullPtrErr);
    EXPECT_EQ(zepsFilterMedian_32f_I(nullptr, 0, 0), zepStsNullPtrErr);
    for (const int bad : {0, -1, std::numeric_limits<int>::min()}) {
        EXPECT_EQ(zepsFilterMedian_32f(x, y, bad, 3), zepStsSizeErr);
        EXPECT_EQ(zepsFilterMedian_32f(x, y, 4, bad), zepStsSizeErr);
        EXPECT_EQ(zepsFilterMedian_32f_I(x, bad, 3), zepStsSizeErr);
        EXPECT_EQ(zepsFilterMedian_32f_I(x, 4, bad), zepStsSizeErr);
    }
    for (const Zep32f v : y) EXPECT_EQ(v, 9);
    EXPECT_EQ(x[1], 1);
}

TEST_P(Median, ReportsMissingMemoryAndReleasesItsOwn) {
    const Samples x = signal(200, false);
    for (const int mask : {11, 141, 1001}) {
        Samples y(200, 9), z = x;
        {
            FailingHeap heap(0);
            EXPECT_EQ(zepsFilterMedian_32f(x.data(), y.data(), 200, mask), zepStsMemAllocErr);
            EXPECT_EQ(zepsFilterMedian_32f_I(z.data(), 200, mask), zepStsMemAllocErr);
        }
        EXPECT_EQ(y, x);
        EXPECT_EQ(z, x);
        FailingHeap heap(1000);
        EXPECT_EQ(zepsFilterMedian_32f_I(z.data(), 200, mask), zepStsNoErr);
        EXPECT_GT(heap.asked(), 0);
        EXPECT_EQ(heap.live(), 0);
    }
    FailingHeap heap(0);
    Samples z = x;
    for (const int mask : {1, 2, 3, 5, 7, 9})
        EXPECT_GE(zepsFilterMedian_32f_I(z.data(), 200, mask), zepStsNoErr);
}

ZEP_FOR_EACH_VARIANT(Median);

}  // namespace
}  // namespace zep::test
