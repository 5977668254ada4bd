#include <gtest/gtest.h>

#include <chrono>

#include "support/invented_cpu.h"
#include "zepcore.h"

namespace zep::test {
namespace {

// A machine of countsPerSecond, whose clock is read every `step` counts.
int measuredMhz(std::uint64_t countsPerSecond, std::uint64_t step, std::uint64_t start = 0) {
    InventedCpu cpu({});
    cpu.clock(countsPerSecond, step, start);
    int mhz = -77;
    EXPECT_EQ(zepGetCpuFreqMhz(&mhz), zepStsNoErr);
    return mhz;
}

TEST(CpuFreqMhz, MeasuresWholeSeconds) {
    EXPECT_EQ(measuredMhz(3000000000, 1000000), 3000);
    EXPECT_EQ(measuredMhz(1000000, 1000), 1);
    EXPECT_EQ(measuredMhz(2500000000, 1000000, 1234567890), 2500);
}

// From whatever moment of a second the call starts: the fraction is not part of the result.
TEST(CpuFreqMhz, DiscardsTheFirstFraction) {
    for (std::uint64_t start = 0; start < 2000000000; start += 150000000)
        EXPECT_EQ(measuredMhz(2000000000, 1000000, start), 2000) << start;
}

TEST(CpuFreqMhz, CutsTheFraction) {
    EXPECT_EQ(measuredMhz(2999999000, 1000), 2999);
    EXPECT_EQ(measuredMhz(999999, 1), 0);
}

// Each difference is rounded to single precision before they are added.
TEST(CpuFreqMhz, AddsInSinglePrecision) {
    // 2999999999 becomes 3000000000, the nearest multiple of 256.
    EXPECT_EQ(measuredMhz(2999999999, 2999999999 / 7, 0), 3000);
}

TEST(CpuFreqMhz, StaysDefinedWhereTheCounterJumps) {
    EXPECT_EQ(measuredMhz(std::uint64_t{1} << 62, std::uint64_t{1} << 60), 2147483647);
}

TEST(CpuFreqMhz, NullIsAnErrorAtOnce) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(zepGetCpuFreqMhz(nullptr), zepStsNullPtrErr);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(900));
}

TEST(CpuFreqMhz, AgreesWithTheCounterOfThisMachine) {
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    const Zep64u first = zepGetCpuClocks();
    int mhz = 0;
    ASSERT_EQ(zepGetCpuFreqMhz(&mhz), zepStsNoErr);
    const double counts = static_cast<double>(zepGetCpuClocks() - first);
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    EXPECT_GE(seconds, 1.9);
    // A busy machine may see each second's boundary late, by a scheduler's time slice or a few.
    EXPECT_NEAR(mhz, counts / seconds / 1e6, 0.1 * mhz);
}

TEST(CpuClocks, Advance) {
    const Zep64u first = zepGetCpuClocks();
    volatile int work = 0;
    for (int i = 0; i < 10000; ++i) work = work + i;
    EXPECT_GT(zepGetCpuClocks(), first);
}

}  // namespace
}  // namespace zep::test
