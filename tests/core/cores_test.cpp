#include <gtest/gtest.h>

#include "support/invented_cpu.h"
#include "zepcore.h"

namespace zep::test {
namespace {

CpuidRegisters coreIds(std::uint32_t cores) { return {(cores - 1) << 26 | 0x03FFFFFF, 0, 0, 0}; }

TEST(CoresOnDie, AreOneBelowLeafFour) {
    for (const std::uint32_t maxLeaf : {0u, 1u, 3u}) {
        InventedCpu cpu({{0, InventedCpu::intelVendor(maxLeaf)}, {4, coreIds(8)}});
        EXPECT_EQ(zepGetNumCoresOnDie(), 1);
    }
}

TEST(CoresOnDie, ComeFromLeafFourBelowLeafEleven) {
    for (const std::uint32_t cores : {1u, 2u, 6u, 64u}) {
        InventedCpu cpu({{0, InventedCpu::intelVendor(10)}, {11, {0, 4, 0, 0}}});
        cpu.set(4, 0, coreIds(cores));
        EXPECT_EQ(zepGetNumCoresOnDie(), static_cast<int>(cores));
    }
}

TEST(CoresOnDie, ComeFromTheTopologyLeaf) {
    const auto cores = [](std::uint32_t maxLeaf, std::uint32_t firstLevel,
                          std::uint32_t secondLevel) {
        InventedCpu cpu({{0, InventedCpu::intelVendor(maxLeaf)}});
        cpu.set(4, 0, coreIds(16));
        cpu.set(11, 0, {0, firstLevel, 0, 0}).set(11, 1, {0, secondLevel, 0, 0});
        return zepGetNumCoresOnDie();
    };
    EXPECT_EQ(cores(11, 1, 4), 4);
    EXPECT_EQ(cores(11, 2, 8), 4);  // two share a core
    EXPECT_EQ(cores(22, 3, 9), 4);
    EXPECT_EQ(cores(22, 4, 9), 9);
    EXPECT_EQ(cores(22, 0x10000, 0xABCD000C), 12);  // the low 16 bits alone
    EXPECT_EQ(cores(22, 1, 0xFFFF), 0xFFFF);
    EXPECT_EQ(cores(11, 0, 4), 16);  // an empty leaf
}

TEST(CoresOnDie, ComeFromTheSizeLeafOnAmd) {
    const auto cores = [](CpuidRegisters vendor, std::uint32_t maxExtended, std::uint32_t ecx) {
        InventedCpu cpu({{0, vendor},
                         {0x80000000, {maxExtended, 0, 0, 0}},
                         {0x80000008, {0, 0, ecx, 0}},
                         {4, coreIds(32)}});
        return zepGetNumCoresOnDie();
    };
    const CpuidRegisters amd = InventedCpu::amdVendor(13);
    EXPECT_EQ(cores(amd, 0x80000008, 0xFFFFFF03), 4);
    EXPECT_EQ(cores(amd, 0x80000008, 0), 1);
    EXPECT_EQ(cores(amd, 0x8000000F, 0xFF), 256);
    EXPECT_EQ(cores(amd, 0x80000007, 3), 1);
    EXPECT_EQ(cores(amd, 0x80000020, 3), 1);  // the low four bits decide
    CpuidRegisters other = amd;
    other.ecx ^= 1;
    EXPECT_EQ(cores(other, 0x80000008, 3), 1);
}

TEST(CoresOnDie, AreAtLeastOneHere) { EXPECT_GE(zepGetNumCoresOnDie(), 1); }

}  // namespace
}  // namespace zep::test
