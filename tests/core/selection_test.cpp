#include "core/selection.h"

#include <gtest/gtest.h>

#include <string>

#include "core/columns.h"
#include "mozep.h"
#include "support/invented_cpu.h"
#include "support/machine.h"
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

// A processor that has all the widest column needs; each need can be taken away by its place.
struct Place {
    const char* name;
    std::uint32_t leaf;
    std::uint32_t CpuidRegisters::*reg;
    int bit;
};
constexpr auto kEbx = &CpuidRegisters::ebx, kEcx = &CpuidRegisters::ecx;
constexpr std::uint32_t kExtendedLeaf = 0x80000001;
constexpr std::uint64_t kWideStates = 0xE6;  // XMM, YMM, masks, upper ZMM, ZMM16 to 31
constexpr Place kNeedsOfSix[] = {
    {"FMA", 1, kEcx, 12},
    {"MOVBE", 1, kEcx, 22},
    {"F16C", 1, kEcx, 29},
    {"BMI1", 7, kEbx, 3},
    {"AVX2", 7, kEbx, 5},
    {"BMI2", 7, kEbx, 8},
    {"LZCNT", kExtendedLeaf, kEcx, 5},
};
constexpr Place kNeedsOfSeven[] = {
    {"AVX512F", 7, kEbx, 16},     {"AVX512DQ", 7, kEbx, 17}, {"AVX512CD", 7, kEbx, 28},
    {"AVX512BW", 7, kEbx, 30},    {"AVX512VL", 7, kEbx, 31}, {"AVX512_VBMI", 7, kEcx, 1},
    {"AVX512_VBMI2", 7, kEcx, 6},
};

InventedCpu::Leaves widestProcessor() {
    InventedCpu::Leaves leaves{{0, InventedCpu::intelVendor(7)},
                               {1, features(kUpToAvx)},
                               {7, {}},
                               {0x80000000, {kExtendedLeaf, 0, 0, 0}},
                               {kExtendedLeaf, {}}};
    for (const Place& p : kNeedsOfSix) leaves[p.leaf].*p.reg |= 1u << p.bit;
    for (const Place& p : kNeedsOfSeven) leaves[p.leaf].*p.reg |= 1u << p.bit;
    return leaves;
}
InventedCpu::Leaves widestWithout(const Place& p) {
    InventedCpu::Leaves leaves = widestProcessor();
    leaves[p.leaf].*p.reg &= ~(1u << p.bit);
    return leaves;
}

// To a caller every slot from 5 on is e9.
void expectAvxSlot(const InventedCpu::Leaves& leaves, std::uint64_t xcr0, int slot,
                   const std::string& why, std::uint64_t mask = 0xFDF) {
    InventedCpu cpu(leaves);
    cpu.xcr0(xcr0);
    n8Selected = 77;
    EXPECT_EQ(zepSelectVariantAuto(), zepStsNoErr) << why;
    EXPECT_EQ(variantIndex, slot) << why;
    EXPECT_EQ(n8Selected, 0) << why;
    EXPECT_EQ(enabledFeatures, mask) << why;
}

TEST_F(Selection, TakesTheWidestColumnThatProcessorAndSystemHave) {
    expectAvxSlot(widestProcessor(), kWideStates | 1, 7, "all of it");
    for (const Place& p : kNeedsOfSeven) {
        expectAvxSlot(widestWithout(p), kWideStates, 6, std::string("without ") + p.name);
        expectAvxSlot(widestWithout(p), kXmmYmm, 6,
                      std::string("without the states and ") + p.name);
    }
    for (const Place& p : kNeedsOfSix)
        for (const std::uint64_t xcr0 : {kWideStates, kXmmYmm})
            expectAvxSlot(widestWithout(p), xcr0, 5, std::string("without ") + p.name);
}

TEST_F(Selection, TakesAWiderColumnOnlyWhereTheSystemSavesItsRegisters) {
    expectAvxSlot(widestProcessor(), kXmmYmm, 6, "no state of AVX-512");
    for (const int bit : {5, 6, 7})
        expectAvxSlot(widestProcessor(), kWideStates & ~(1u << bit), 6,
                      "state " + std::to_string(bit));
    for (const int bit : {1, 2})
        expectAvxSlot(widestProcessor(), kWideStates & ~(1u << bit), 4,
                      "state " + std::to_string(bit), 0xCDF);
    InventedCpu::Leaves hidden = widestProcessor();
    hidden[1].ecx &= ~kOsxsave;
    expectAvxSlot(hidden, kWideStates, 4, "no XGETBV", 0xCDF);
}

TEST_F(Selection, BelievesNoLeafThatTheProcessorDoesNotHave) {
    InventedCpu::Leaves leaves = widestProcessor();
    leaves[0] = InventedCpu::intelVendor(6);
    expectAvxSlot(leaves, kWideStates, 5, "leaf 7 beyond the last");
    leaves = widestProcessor();
    leaves[0x80000000] = {0x80000000, 0, 0, 0};
    expectAvxSlot(leaves, kWideStates, 5, "no extended features");
    leaves[0x80000000] = {7, 0, 0, 0};
    expectAvxSlot(leaves, kWideStates, 5, "no extended leaves at all");
}

TEST_F(Selection, VetoOfAvxFallsBackFromTheWiderColumnsToo) {
    avxAllowed = 0;
    expectAvxSlot(widestProcessor(), kWideStates, 4, "vetoed", 0xCDF);
}

TEST_F(Selection, GivesAnotherVendorTheWidestColumnToo) {
    InventedCpu::Leaves leaves = widestProcessor();
    leaves[0] = InventedCpu::amdVendor(7);
    InventedCpu cpu(leaves);
    cpu.xcr0(kWideStates);
    EXPECT_EQ(zepSelectVariantAuto(), zepStsNonIntelCpu);
    EXPECT_EQ(variantIndex, 7);
}

TEST_F(Selection, ForcesTheColumnOfASlot) {
    static constexpr std::uint64_t kMasks[] = {0x7, 0xF, 0x1F, 0x3F, 0xCDF, 0xFDF, 0xFDF, 0xFDF};
    for (int slot = 0; slot < kVariantSlots; ++slot) {
        n8Selected = 77;
        EXPECT_EQ(zepSelectColumn(slot), zepStsNoErr);
        EXPECT_EQ(variantIndex, slot);
        EXPECT_EQ(enabledFeatures, kMasks[slot]);
        EXPECT_EQ(n8Selected, slot == 3 ? 1 : 0);
    }
    for (const int slot : {-1, kVariantSlots, -0x7FFFFFFF - 1, 0x7FFFFFFF}) {
        EXPECT_EQ(zepSelectColumn(slot), zepStsCpuMismatch);
        EXPECT_EQ(variantIndex, kVariantSlots - 1);
    }
}

// The library's account of this machine and the operating system's are independent of each other.
TEST_F(Selection, TakesTheBestColumnThatRunsHere) {
    int best = 0;
    for (const Column& c : kColumns)
        if (runsHere(c)) best = c.slot;
    zepSelectVariantAuto();
    EXPECT_EQ(variantIndex, best);
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
