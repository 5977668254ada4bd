// Preemphasis, bit for bit against its recurrence on the unfiltered samples.
#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/sweep.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {
namespace {

class Preemphasis : public VariantTest {};

TEST_P(Preemphasis, SubtractsTheScaledNeighbour) {
    std::vector<int> lengths = sweepLengths(70);
    for (const int more : {127, 128, 129, 130, 256, 257, 385, 1000}) lengths.push_back(more);
    for (const int len : lengths)
        for (const int skew : {0, 1, 4})
            for (const Edge edge : {Edge::Front, Edge::Back}) {
                const auto bytes = static_cast<std::size_t>(len) * sizeof(Zep32f);
                std::vector<Zep32f> x(static_cast<std::size_t>(len));
                fillRandom(x);
                const Zep32f val = randomValue<Zep32f>();
                std::vector<Zep32f> expected = x, got = x;
                for (std::size_t n = 1; n < x.size(); ++n) {
                    const Zep32f product = val * x[n - 1];
                    expected[n] = x[n] - product;
                }
                GuardedBuffer<Zep32f> data(len, edge, skew);
                std::memcpy(data.data(), x.data(), bytes);
                ASSERT_EQ(zepsPreemphasize_32f(data.data(), len, val), zepStsNoErr);
                std::memcpy(got.data(), data.data(), bytes);
                ASSERT_EQ(std::memcmp(got.data(), expected.data(), bytes), 0) << "length " << len;
            }
}

TEST_P(Preemphasis, LeavesTheFirstSampleWhateverTheFactor) {
    constexpr Zep32f inf = std::numeric_limits<Zep32f>::infinity();
    for (const Zep32f val : {inf, std::numeric_limits<Zep32f>::quiet_NaN()}) {
        Zep32f x[3] = {-0.0f, 1, 2};
        ASSERT_EQ(zepsPreemphasize_32f(x, 3, val), zepStsNoErr);
        EXPECT_TRUE(x[0] == 0 && std::signbit(x[0]));
        EXPECT_FALSE(std::isfinite(x[2]));
    }
}

TEST_P(Preemphasis, TestsThePointerThenTheLength) {
    Zep32f x[2] = {1, 2};
    EXPECT_EQ(zepsPreemphasize_32f(nullptr, 0, 1), zepStsNullPtrErr);
    for (const int bad : {0, -1, std::numeric_limits<int>::min()})
        EXPECT_EQ(zepsPreemphasize_32f(x, bad, 1), zepStsSizeErr);
    EXPECT_EQ(x[1], 2);
}

ZEP_FOR_EACH_VARIANT(Preemphasis);

}  // namespace
}  // namespace zep::test
