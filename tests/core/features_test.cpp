#include "core/features.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "support/invented_cpu.h"

namespace zep::test {
namespace {

using namespace leaf1;

std::uint64_t detected(const CpuidRegisters& leaf, std::uint64_t xcr0 = 0,
                       std::uint32_t extendedEdx = 0) {
    InventedCpu cpu(
        {{0, InventedCpu::intelVendor(1)}, {1, leaf}, {0x20000001, {0, 0, 0, extendedEdx}}});
    cpu.xcr0(xcr0);
    std::uint64_t mask = 0;
    EXPECT_EQ(zepQueryFeatures(&mask, nullptr), zepStsNoErr);
    return mask;
}

TEST(Features, EachBitHasItsSource) {
    EXPECT_EQ(detected({0, 0, 0, 0}), 0u);
    EXPECT_EQ(detected({0, 0, 0, kMmx}), 0x1u);
    EXPECT_EQ(detected({0, 0, 0, kSse}), 0x2u);
    EXPECT_EQ(detected({0, 0, 0, kSse2}), 0x4u);
    EXPECT_EQ(detected({0, 0, kSse3, 0}), 0x8u);
    EXPECT_EQ(detected({0, 0, kSsse3, 0}), 0x10u);
    EXPECT_EQ(detected({0, 0, kMovbe, 0}), 0x20u);
    EXPECT_EQ(detected({0, 0, kSse41, 0}), 0x40u);
    EXPECT_EQ(detected({0, 0, kSse42, 0}), 0x80u);
    EXPECT_EQ(detected({0, 0, kAvx, 0}, 6), 0x100u);
    EXPECT_EQ(detected({0, 0, kAvx | kOsxsave, 0}, 6), 0x300u);
    EXPECT_EQ(detected({0, 0, kAvx | kOsxsave, 0}, 2), 0x100u);
    EXPECT_EQ(detected({0, 0, kAes, 0}), 0x400u);
    EXPECT_EQ(detected({0, 0, kPclmulqdq, 0}), 0x800u);
    EXPECT_EQ(detected({0xFFFFFFFF, 0xFFFFFFFF,
                        ~(kSse3 | kSsse3 | kMovbe | kSse41 | kSse42 | kAvx | kAes | kPclmulqdq),
                        ~(kMmx | kSse | kSse2)}),
              0u);
}

TEST(Features, AsksForTheExtendedFamilyWhereTheFamilyIsEleven) {
    EXPECT_EQ(detected({0xB00, 0, 0, 0}, 0, 2), 0x1000u);
    EXPECT_EQ(detected({0xB00, 0, 0, 0}, 0, ~2u), 0u);
    EXPECT_EQ(detected({0x600, 0, 0, 0}, 0, 2), 0u);
    EXPECT_EQ(detected({0xF00, 0, 0, 0}, 0, 2), 0u);
}

TEST(Features, AreDetectedOnce) {
    InventedCpu cpu({{0, InventedCpu::intelVendor(1)}, {1, {0, 0, kSsse3, 0}}});
    std::uint64_t mask = 0;
    zepQueryFeatures(&mask, nullptr);
    const int queries = cpu.queries();
    EXPECT_GT(queries, 0);
    mask = 0;
    zepQueryFeatures(&mask, nullptr);
    EXPECT_EQ(mask, 0x10u);
    EXPECT_EQ(cpu.queries(), queries);
}

TEST(Features, NullMaskIsAnError) {
    std::uint32_t regs[4] = {1, 2, 3, 4};
    EXPECT_EQ(zepQueryFeatures(nullptr, regs), zepStsNullPtrErr);
    EXPECT_EQ(regs[0], 1u);
    EXPECT_EQ(regs[3], 4u);
}

TEST(Features, RegistersAreThoseOfLeafOneOrOfTheLeafAskedFor) {
    InventedCpu cpu({{0, InventedCpu::intelVendor(7)}, {1, {11, 12, 13, 14}}});
    cpu.set(7, 3, {21, 22, 23, 24});
    const auto registers = [](std::uint64_t request) {
        std::uint32_t r[4] = {7, 0, 3, 0};
        EXPECT_EQ(zepQueryFeatures(&request, r), zepStsNoErr);
        return std::vector<std::uint32_t>(r, r + 4);
    };
    EXPECT_EQ(registers(0), (std::vector<std::uint32_t>{11, 12, 13, 14}));
    EXPECT_EQ(registers(kGetInfoRequest), (std::vector<std::uint32_t>{21, 22, 23, 24}));
    EXPECT_EQ(registers(kGetInfoRequest + 1), (std::vector<std::uint32_t>{11, 12, 13, 14}));
    std::uint64_t asText = 0;
    std::memcpy(&asText, "getinfoa", 8);
    EXPECT_EQ(kGetInfoRequest, asText);
}

}  // namespace
}  // namespace zep::test
