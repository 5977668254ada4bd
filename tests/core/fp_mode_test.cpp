#include "core/fp_mode.h"

#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <limits>
#include <thread>

#include "core/cpu.h"
#include "support/invented_cpu.h"
#include "zepcore.h"

namespace zep::test {
namespace {

constexpr std::uint32_t kDefault = 0x1F80, kFlush = 0x8000, kDaz = 0x40, kUnderflow = 0x800;
constexpr std::uint32_t kStickyFlags = 0x3F;

class FpMode : public ::testing::Test {
protected:
    void SetUp() override { _mm_setcsr(kDefault); }
    void TearDown() override { _mm_setcsr(saved_); }

    static std::uint32_t control() { return _mm_getcsr() & ~kStickyFlags; }

private:
    std::uint32_t saved_ = _mm_getcsr();
};

TEST_F(FpMode, FlushStoresTheUnderflowMaskAndRestoresIt) {
    for (const std::uint32_t rest : {0x1780u, 0x0000u, 0x6780u, 0x0080u, 0x1040u})
        for (const std::uint32_t underflow : {kUnderflow, 0u}) {
            const std::uint32_t before = rest | underflow;
            _mm_setcsr(before);
            unsigned int mask = 77;
            EXPECT_EQ(zepSetFlushToZero(1, &mask), zepStsNoErr);
            EXPECT_EQ(mask, underflow);
            EXPECT_EQ(control(), before | kFlush | kUnderflow);
            EXPECT_EQ(zepSetFlushToZero(0, &mask), zepStsNoErr);
            EXPECT_EQ(mask, underflow);
            EXPECT_EQ(control(), before);
        }
}

TEST_F(FpMode, FlushOffOnlyClearsTheBitWithoutAStoredZero) {
    for (const std::uint32_t masks : {0x1F80u, 0x1780u}) {
        _mm_setcsr(masks | kFlush);
        EXPECT_EQ(zepSetFlushToZero(0, nullptr), zepStsNoErr);
        EXPECT_EQ(control(), masks);
        for (unsigned int stored : {1u, kUnderflow, ~0u}) {
            _mm_setcsr(masks | kFlush);
            const unsigned int given = stored;
            EXPECT_EQ(zepSetFlushToZero(0, &stored), zepStsNoErr);
            EXPECT_EQ(stored, given);
            EXPECT_EQ(control(), masks);
        }
    }
}

TEST_F(FpMode, AnyValueButZeroIsOn) {
    for (const int value : {1, 2, -1, 256, std::numeric_limits<int>::min()}) {
        _mm_setcsr(kDefault);
        EXPECT_EQ(zepSetFlushToZero(value, nullptr), zepStsNoErr);
        EXPECT_EQ(control(), kDefault | kFlush);
        EXPECT_EQ(zepSetDenormAreZeros(value), zepStsNoErr);
        EXPECT_EQ(control(), kDefault | kFlush | kDaz);
    }
    EXPECT_EQ(zepSetDenormAreZeros(0), zepStsNoErr);
    EXPECT_EQ(control(), kDefault | kFlush);
}

TEST_F(FpMode, TheModesDoWhatTheirNamesSay) {
    volatile float tiny = std::numeric_limits<float>::min(), denormal = tiny / 4, half = 0.5f,
                   big = 0x1p24f;
    ASSERT_GT(denormal, 0.0f);
    zepSetFlushToZero(1, nullptr);
    volatile float flushed = tiny * half, kept = denormal * big;
    zepSetFlushToZero(0, nullptr);
    EXPECT_EQ(flushed, 0.0f);
    EXPECT_GT(kept, 0.0f);
    zepSetDenormAreZeros(1);
    volatile float zeroed = denormal * big;
    zepSetDenormAreZeros(0);
    volatile float back = denormal * big;
    EXPECT_EQ(zeroed, 0.0f);
    EXPECT_GT(back, 0.0f);
}

TEST_F(FpMode, OtherThreadsKeepTheirs) {
    zepSetFlushToZero(1, nullptr);
    zepSetDenormAreZeros(1);
    std::thread([] {
        _mm_setcsr(kDefault);
        zepSetFlushToZero(0, nullptr);
        zepSetDenormAreZeros(0);
    }).join();
    EXPECT_EQ(control(), kDefault | kFlush | kDaz);
}

TEST_F(FpMode, ReplacesTheBitsOfTheMaskAlone) {
    zepFpSetControl(0xFFFFFFFF, kDaz);
    EXPECT_EQ(control(), kDefault | kDaz);
    zepFpSetControl(0, kDaz | 0x80);
    EXPECT_EQ(control(), kDefault & ~0x80u);
    EXPECT_EQ(zepFpGetControl(), _mm_getcsr());
}

TEST_F(FpMode, IsRefusedWithoutSse) {
    InventedCpu cpu({{0, InventedCpu::intelVendor(1)}, {1, {0, 0, ~0u, ~leaf1::kSse}}});
    unsigned int mask = 77;
    _mm_setcsr(kDefault | kFlush);
    for (const int value : {0, 1}) {
        EXPECT_EQ(zepSetFlushToZero(value, &mask), zepStsCpuNotSupportedErr);
        EXPECT_EQ(zepSetDenormAreZeros(value), zepStsCpuNotSupportedErr);
    }
    EXPECT_EQ(mask, 77u);
    EXPECT_EQ(control(), kDefault | kFlush);
}

TEST_F(FpMode, DenormalsAreZeroNeedsItsFeatureBit) {
    InventedCpu cpu({{0, InventedCpu::intelVendor(1)}, {1, {0, 0, 0, leaf1::kSse}}});
    for (const std::uint32_t without : {0u, 0xFFBFu}) {
        cpu.mxcsrFeatureMask(without);
        EXPECT_EQ(zepSetDenormAreZeros(1), zepStsCpuNotSupportedErr);
        EXPECT_EQ(control(), kDefault);
    }
    cpu.mxcsrFeatureMask(kDaz);
    EXPECT_EQ(zepSetDenormAreZeros(1), zepStsNoErr);
    EXPECT_EQ(control(), kDefault | kDaz);
    EXPECT_EQ(zepSetFlushToZero(1, nullptr), zepStsNoErr);
}

// Every 64-bit processor has the mode and says so.
TEST_F(FpMode, ThisProcessorHasDenormalsAreZero) {
    EXPECT_TRUE(zepCpuHasDenormalsAreZero());
    EXPECT_EQ(cpuSource->mxcsrFeatureMask() & 0xFFBF, 0xFFBFu);
}

TEST(Threads, AreOneAndStayOne) {
    for (const int numThr : {4, 1, 0, -1}) {
        EXPECT_EQ(zepSetNumThreads(numThr), zepStsNoOperation);
        int actual = 77;
        EXPECT_EQ(zepGetNumThreads(&actual), zepStsNoOperation);
        EXPECT_EQ(actual, 1);
    }
}

}  // namespace
}  // namespace zep::test
