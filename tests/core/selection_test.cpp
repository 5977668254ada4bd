#include "core/selection.h"

#include <gtest/gtest.h>

#include "core/columns.h"
#include "mozep.h"
#include "support/invented_cpu.h"
#include "zeps.h"

namespace zep::test {
namespace {

using namespace leaf1;

constexpr std::uint32_t kBaseEdx = kMmx | kSse | kSse2;
constexpr std::uint64_t kXmmYmm = 6;

CpuidRegisters features(std::uint32_t ecx, std::uint32_t edx = kBaseEdx) {
    return {0, 0, ecx, edx};
}

// Every test leaves the machine's own selection behind.
class Selection : public ::testing::Test {
protected:
    void TearDown() override {
        avxAllowed = 1;
        zepSelectVariantAuto();
    }

    static void expectAuto(std::uint32_t ecx, std::uint64_t xcr0, ZepStatus status, int index,
                           std::uint64_t mask) {
        InventedCpu cpu({{0, InventedCpu::intelVendor(1)}, {1, features(ecx)}});
        cpu.xcr0(xcr0);
        n8Selected = 77;
        EXPECT_EQ(zepSelectVariantAuto(), status);
        EXPECT_EQ(variantIndex, index);
        EXPECT_EQ(n8Selected, index == 3 ? 1 : 0);
        EXPECT_EQ(enabledFeatures, mask);
    }
};

constexpr std::uint32_t kUpToSsse3 = kSse3 | kSsse3;
constexpr std::uint32_t kUpToSse42 = kUpToSsse3 | kSse41 | kSse42 | kAes | kPclmulqdq;
constexpr std::uint32_t kUpToAvx = kUpToSse42 | kOsxsave | kAvx;

TEST_F(Selection, TakesTheBestVariantThatTheFeaturesEarn) {
    expectAuto(kUpToAvx | kMovbe, kXmmYmm, zepStsNoErr, 5, 0xFDF);
    expectAuto(kUpToAvx, kXmmYmm | 0xE1, zepStsNoErr, 5, 0xFDF);
    expectAuto(kUpToSse42 | kMovbe, 0, zepStsNoErr, 4, 0xCDF);
    expectAuto(kUpToSsse3 | kSse41, 0, zepStsNoErr, 4, 0x5F);
    expectAuto(kSse41, 0, zepStsNoErr, 4, 0x47);
    expectAuto(kUpToSsse3 | kMovbe, 0, zepStsNoErr, 3, 0x3F);
    expectAuto(kUpToSsse3 | kAes, 0, zepStsNoErr, 2, 0x1F);
    expectAuto(kSsse3, 0, zepStsNoErr, 2, 0x17);
    expectAuto(kSse3 | kPclmulqdq, 0, zepStsNoErr, 1, 0xF);
    expectAuto(0, 0, zepStsNotSupportedCpu, 0, 0x7);
}

TEST_F(Selection, TakesSse41WhereTheSystemDoesNotSaveTheAvxState) {
    for (const std::uint64_t xcr0 : {0, 1, 2, 4})
        expectAuto(kUpToAvx, xcr0, zepStsNoErr, 4, 0xCDF | 0);
    // XGETBV is out of reach without OSXSAVE, whatever it would say.
    expectAuto(kUpToAvx & ~kOsxsave, kXmmYmm, zepStsNoErr, 4, 0xCDF);
    expectAuto(kUpToAvx & ~kAvx, kXmmYmm, zepStsNoErr, 4, 0xCDF);
}

TEST_F(Selection, NeedsSsse3BesideMovbeForTheAtomVariant) {
    expectAuto(kMovbe, 0, zepStsNotSupportedCpu, 0, 0x7);
    expectAuto(kSse3 | kMovbe, 0, zepStsNoErr, 1, 0xF);
}

TEST_F(Selection, ReportsAnotherVendorAndStillEarnsTheVariant) {
    const auto expectOther = [](std::uint32_t ecx, std::uint64_t xcr0, int index) {
        InventedCpu cpu({{0, InventedCpu::amdVendor(1)}, {1, features(ecx)}});
        cpu.xcr0(xcr0);
        EXPECT_EQ(zepSelectVariantAuto(), zepStsNonIntelCpu);
        EXPECT_EQ(variantIndex, index);
    };
    expectOther(kUpToAvx, kXmmYmm, 5);
    expectOther(kUpToSsse3, 0, 2);
    expectOther(0, 0, 0);  // in place of zepStsNotSupportedCpu too
}

TEST_F(Selection, EveryLetterOfTheVendorCounts) {
    for (int word = 0; word < 3; ++word) {
        CpuidRegisters vendor = InventedCpu::intelVendor(1);
        (word == 0 ? vendor.ebx : word == 1 ? vendor.ecx : vendor.edx) ^= 1u << 24;
        InventedCpu cpu({{0, vendor}, {1, features(kUpToSsse3)}});
        EXPECT_EQ(zepSelectVariantAuto(), zepStsNonIntelCpu);
    }
}

TEST_F(Selection, VetoOfAvxFallsBackToSse41) {
    EXPECT_EQ(avxAllowed, 1);
    avxAllowed = 0;
    EXPECT_EQ(zepFeatureAllowed(kAvxFeatureId), 0);
    EXPECT_EQ(zepFeatureAllowed(kAvxFeatureId - 1), 1);
    expectAuto(kUpToAvx, kXmmYmm, zepStsNoErr, 4, 0xCDF);
    zepAllowFeature(kAvxFeatureId - 1);
    EXPECT_EQ(avxAllowed, 0);
    zepAllowFeature(kAvxFeatureId);
    EXPECT_EQ(avxAllowed, 1);
    expectAuto(kUpToAvx, kXmmYmm, zepStsNoErr, 5, 0xFDF & ~0x20);
}

TEST_F(Selection, WithoutIdentificationRunsTheFallback) {
    static constexpr CpuSource kNone{nullptr, [](std::uint32_t) { return std::uint64_t{0}; },
                                     nullptr, nullptr, nullptr};
    InventedCpu restore({});
    cpuSource = &kNone;
    enabledFeatures = 0;
    std::uint64_t mask = 5;
    EXPECT_EQ(zepQueryFeatures(&mask, nullptr), zepStsNotSupportedCpu);
    EXPECT_EQ(zepQueryFeatures(nullptr, nullptr), zepStsNotSupportedCpu);
    EXPECT_EQ(mask, 5u);
    EXPECT_EQ(zepSelectVariantAuto(), zepStsNonIntelCpu);  // no vendor either
    EXPECT_EQ(variantIndex, 0);
    EXPECT_EQ(enabledFeatures, 0x7u);
    EXPECT_EQ(zepGetCpuType(), zepCpuTypeUnknown);
}

struct Forced {
    int cpu, index;
    std::uint64_t mask;
};

TEST_F(Selection, ForcesTheVariantOfAProcessorType) {
    static constexpr Forced kForced[] = {
        {0, 1, 0xF},   {32, 1, 0xF},   {66, 1, 0xF},   {33, 2, 0x1F},  {34, 2, 0x1F},
        {67, 2, 0x1F}, {36, 3, 0x3F},  {35, 4, 0x5F},  {68, 4, 0x5F},  {37, 4, 0xDF},
        {69, 4, 0xDF}, {38, 4, 0xCDF}, {71, 4, 0xCDF}, {70, 5, 0xFDF},
    };
    for (const Forced& f : kForced) {
        n8Selected = 77;
        variantIndex = 0;
        EXPECT_EQ(zepSelectVariantForCpu(f.cpu), zepStsNoErr) << f.cpu;
        EXPECT_EQ(variantIndex, f.index) << f.cpu;
        EXPECT_EQ(enabledFeatures, f.mask) << f.cpu;
        EXPECT_EQ(n8Selected, f.cpu == 36 ? 1 : 0) << f.cpu;
    }
}

TEST_F(Selection, RefusesEveryOtherTypeAndChangesNothing) {
    const auto isForced = [](int cpu) {
        return cpu == -1 || cpu == 0 || (cpu >= 32 && cpu <= 38) || (cpu >= 66 && cpu <= 71);
    };
    const auto isTooOld = [](int cpu) {
        return (cpu >= 1 && cpu <= 11) || cpu == 64 || cpu == 65 || cpu == 96;
    };
    for (int cpu = -300; cpu <= 300; ++cpu) {
        if (isForced(cpu)) continue;
        variantIndex = 2;
        n8Selected = 77;
        enabledFeatures = 0x123;
        EXPECT_EQ(zepSelectVariantForCpu(cpu),
                  isTooOld(cpu) ? zepStsNotSupportedCpu : zepStsCpuMismatch)
            << cpu;
        EXPECT_EQ(variantIndex, 2);
        EXPECT_EQ(n8Selected, 77);
        EXPECT_EQ(enabledFeatures, 0x123u);
    }
    EXPECT_EQ(zepSelectVariantForCpu(0x7FFFFFFF), zepStsCpuMismatch);
    EXPECT_EQ(zepSelectVariantForCpu(-0x7FFFFFFF - 1), zepStsCpuMismatch);
}

TEST_F(Selection, MinusOneSelectsAsAtLoad) {
    InventedCpu cpu({{0, InventedCpu::intelVendor(1)}, {1, features(kUpToSsse3 | kMovbe)}});
    EXPECT_EQ(zepSelectVariantForCpu(-1), zepStsNoErr);
    EXPECT_EQ(variantIndex, 3);
}

TEST_F(Selection, EnabledFeaturesMustAllBeSet) {
    enabledFeatures = 0xDF;
    EXPECT_EQ(zepFeaturesEnabled(0x80), 1);
    EXPECT_EQ(zepFeaturesEnabled(0xDF), 1);
    EXPECT_EQ(zepFeaturesEnabled(0), 1);
    EXPECT_EQ(zepFeaturesEnabled(0xA0), 0);
    EXPECT_EQ(zepFeaturesEnabled(0x100), 0);
}

// The program has been selected for before main: the status is that of this machine.
TEST_F(Selection, HasRunAtLoad) {
    const ZepStatus expected = zepSelectVariantAuto();
    EXPECT_EQ(staticInitResult, expected);
    EXPECT_EQ(MOZEP::mozepStaticInitResult(), expected);
    EXPECT_NE(expected, zepStsNoOperation);
    staticInitResult = zepStsNoOperation;
    EXPECT_EQ(MOZEP::mozepStaticInitResult(), zepStsNoOperation);
    staticInitResult = expected;
}

TEST_F(Selection, StubsFollowTheIndexInEverySlot) {
    static constexpr const char* kTags[] = {"m7", "m7", "u8", "n8", "y8", "e9", "e9", "e9"};
    for (int slot = 0; slot < kVariantSlots; ++slot) {
        if (slot > 0 && !kColumns[slot - 1].isBuilt()) continue;
        variantIndex = slot;
        EXPECT_STREQ(zepsGetLibVersion()->targetTag, kTags[slot]);
    }
}

}  // namespace
}  // namespace zep::test
