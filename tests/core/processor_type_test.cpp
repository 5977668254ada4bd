#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <string_view>

#include "core/cpuid_summary.h"
#include "mozep.h"
#include "support/invented_cpu.h"

namespace zep::test {
namespace {

using namespace leaf1;

constexpr std::uint32_t kAllSse = kSse3 | kSsse3 | kSse41 | kSse42;
constexpr std::uint32_t kBaseEdx = kMmx | kSse | kSse2;

int typeOf(std::uint32_t family, std::uint32_t model, std::uint32_t ecx,
           std::uint32_t edx = kBaseEdx, std::uint32_t cores = 1, bool intel = true) {
    InventedCpu cpu({{0, intel ? InventedCpu::intelVendor(11) : InventedCpu::amdVendor(11)},
                     {1, {InventedCpu::signature(family, model), 0, ecx, edx}}});
    cpu.set(4, 0, {(cores - 1) << 26, 0, 0, 0});
    return zepGetCpuType();
}

TEST(CpuType, TellsTwoCoresFromFour) {
    EXPECT_EQ(typeOf(6, 15, kSse3 | kSsse3, kBaseEdx, 1), 33);
    EXPECT_EQ(typeOf(6, 15, kSse3 | kSsse3, kBaseEdx, 2), 33);
    EXPECT_EQ(typeOf(6, 15, kSse3 | kSsse3, kBaseEdx, 3), 34);
    EXPECT_EQ(typeOf(6, 15, kSse3 | kSsse3, kBaseEdx, 4), 34);
    EXPECT_EQ(typeOf(6, 15, kAllSse | kAvx, kBaseEdx, 4), 34);
    EXPECT_EQ(typeOf(6, 15, kSse3, kBaseEdx, 4), 66);
}

TEST(CpuType, TakesCoresAsOneWithoutLeafFour) {
    InventedCpu cpu({{0, InventedCpu::intelVendor(3)},
                     {1, {InventedCpu::signature(6, 15), 0, kSsse3, kBaseEdx}},
                     {4, {63u << 26, 0, 0, 0}}});
    EXPECT_EQ(zepGetCpuType(), 33);
}

TEST(CpuType, KnowsFourModelsOfFamilySix) {
    EXPECT_EQ(typeOf(6, 23, kSse3 | kSsse3 | kSse41), 35);
    EXPECT_EQ(typeOf(6, 23, kAllSse | kAvx), 35);
    EXPECT_EQ(typeOf(6, 23, kSse3 | kSsse3), 67);
    EXPECT_EQ(typeOf(6, 26, kAllSse), 37);
    EXPECT_EQ(typeOf(6, 26, kAllSse | kAvx), 70);
    EXPECT_EQ(typeOf(6, 26, kSse3 | kSsse3 | kSse41), 68);
    EXPECT_EQ(typeOf(6, 26, kSse3), 66);
    EXPECT_EQ(typeOf(6, 28, kSse3 | kSsse3 | kMovbe), 36);
    EXPECT_EQ(typeOf(6, 28, kSse3 | kSsse3), 67);
    EXPECT_EQ(typeOf(6, 28, kSse3 | kMovbe), 66);
    EXPECT_EQ(typeOf(6, 42, kAllSse | kMovbe), 69);
    EXPECT_EQ(typeOf(6, 31, kSse3 | kSsse3), 67);  // 15 in the low half of the model
}

TEST(CpuType, FamilyFifteenIsSse3WhateverTheFeatures) {
    EXPECT_EQ(typeOf(15, 2, 0), 66);
    EXPECT_EQ(typeOf(15, 15, kAllSse | kAvx), 66);
    EXPECT_EQ(typeOf(15, 15, kAllSse, 0), 66);
    // Beyond 15 the extended family counts, and the features with it.
    EXPECT_EQ(typeOf(16, 2, kAllSse), 69);
    EXPECT_EQ(typeOf(15 + 255, 2, kAllSse | kAvx), 70);
}

TEST(CpuType, IgnoresTheExtendedModelOfOtherFamilies) {
    EXPECT_EQ(typeOf(5, 15, kSse3 | kSsse3, kBaseEdx, 4), 67);
    InventedCpu cpu({{0, InventedCpu::intelVendor(11)},
                     {1, {InventedCpu::signature(5, 0x1A) | 0x0FF00000, 0, kAllSse, kBaseEdx}}});
    EXPECT_EQ(zepGetCpuType(), 69);
}

TEST(CpuType, GoesByFeaturesOtherwise) {
    for (const bool intel : {true, false}) {
        const auto generic = [&](std::uint32_t ecx, std::uint32_t edx) {
            return typeOf(6, 60, ecx, edx, 4, intel);
        };
        EXPECT_EQ(generic(kAllSse | kAvx, kBaseEdx), 70);
        EXPECT_EQ(generic(kAvx, 0), 70);  // no matter what the operating system saves
        EXPECT_EQ(generic(kAllSse, kBaseEdx), 69);
        EXPECT_EQ(generic(kSse41, kBaseEdx), 68);
        EXPECT_EQ(generic(kSsse3, kBaseEdx), 67);
        EXPECT_EQ(generic(kSse3, kBaseEdx), 66);
        EXPECT_EQ(generic(0, kBaseEdx), 65);
        EXPECT_EQ(generic(0, kSse), 64);
        EXPECT_EQ(generic(0, kMmx), 0);
    }
    EXPECT_EQ(typeOf(6, 15, kSse3 | kSsse3, kBaseEdx, 4, false), 67);
    EXPECT_EQ(typeOf(15, 2, kAllSse, kBaseEdx, 4, false), 69);
}

TEST(CpuType, LongModeAloneNeedsItsLeaf) {
    const auto withExtended = [](std::uint32_t maxExtended, std::uint32_t edx) {
        InventedCpu cpu({{0, InventedCpu::intelVendor(1)},
                         {0x80000000, {maxExtended, 0, 0, 0}},
                         {0x80000001, {0, 0, 0, edx}}});
        return static_cast<int>(zepGetCpuType());
    };
    EXPECT_EQ(withExtended(0x80000001, 1u << 29), 96);
    EXPECT_EQ(withExtended(0x80000008, 1u << 29), 96);
    EXPECT_EQ(withExtended(0x80000001, ~(1u << 29)), 0);
    EXPECT_EQ(withExtended(0x80000000, 1u << 29), 0);
    EXPECT_EQ(withExtended(0, 1u << 29), 0);
}

TEST(CpuidSummary, TakesEachFieldFromItsBits) {
    InventedCpu cpu(
        {{0, InventedCpu::intelVendor(4)},
         {1, {0x0AB31F5C, 0x00020000, kSse41 | kMovbe | kOsxsave, kHyperThreading | kSse}},
         {2, {0x11223301, 0, 0, 0x44556677}}});
    cpu.set(4, 0, {7u << 26, 0, 0, 0});
    CpuidSummary s{};
    s.reservedFlag = 1234;
    zepCpuidSummary(&s);
    EXPECT_EQ(s.stepping, 0xC);
    EXPECT_EQ(s.model, 0x5);
    EXPECT_EQ(s.family, 0xF);
    EXPECT_EQ(s.processorType, 3);  // bits 11 and 12
    EXPECT_EQ(s.extendedModel, 3);
    EXPECT_EQ(s.extendedFamily, 0xAB);
    EXPECT_EQ(s.featureEdx, static_cast<int>(kHyperThreading | kSse));
    EXPECT_EQ(s.cacheDescEax, 0x11223301);
    EXPECT_EQ(s.cacheDescEdx, 0x44556677);
    EXPECT_EQ(s.hasMmx, 0);
    EXPECT_EQ(s.reservedFlag, 1234);
    EXPECT_EQ(s.hasSse, 1);
    EXPECT_EQ(s.hasSse2, 0);
    EXPECT_EQ(s.hasHyperThreading, 1);
    EXPECT_EQ(s.hasSse3, 0);
    EXPECT_EQ(s.hasLongMode, 0);
    EXPECT_EQ(s.hasSsse3, 0);
    EXPECT_EQ(s.coresPerPackage, 8);
    EXPECT_EQ(s.hasSse41, 1);
    EXPECT_EQ(s.hasSse42, 0);
    EXPECT_EQ(s.hasMovbe, 1);
    EXPECT_EQ(s.hasAvx, 0);
    EXPECT_EQ(s.hasOsxsave, 1);
    EXPECT_EQ(sizeof s, 23 * 4u);
}

TEST(CpuidSummary, HyperThreadingNeedsMoreThanOneLogicalProcessor) {
    const auto hyperThreading = [](std::uint32_t ebx, std::uint32_t edx) {
        InventedCpu cpu({{0, InventedCpu::intelVendor(1)}, {1, {0, ebx, 0, edx}}});
        CpuidSummary s{};
        zepCpuidSummary(&s);
        return s.hasHyperThreading;
    };
    EXPECT_EQ(hyperThreading(2u << 16, kHyperThreading), 1);
    EXPECT_EQ(hyperThreading(0x80u << 16, kHyperThreading), 1);
    EXPECT_EQ(hyperThreading(0xFF01FFFF, kHyperThreading), 0);
    EXPECT_EQ(hyperThreading(2u << 16, ~kHyperThreading), 0);
}

TEST(CpuTypeString, HasATextForEveryValue) {
    const std::map<int, std::string_view> texts{
        {0, "Unknown CPU Type"},
        {1, "Pentium(R) processor"},
        {2, "Pentium(R) processor with MMX(TM) technology"},
        {3, "Pentium(R) Pro processor"},
        {4, "Pentium(R) II processor"},
        {5, "Pentium(R) III processor and Pentium(R) III Xeon(R) processor"},
        {6, "Pentium(R) 4 processor and Intel(R) Xeon(R) processor"},
        {7, "Pentium(R) 4 Processor with HT Technology"},
        {8, "Pentium(R) 4 processor with Streaming SIMD Extensions 3"},
        {9, "Intel(R) Centrino(TM) mobile technology"},
        {10, "Intel(R) Core(TM) Solo processor"},
        {11, "Intel(R) Core(TM) Duo processor"},
        {16, "Intel(R) Itanium(R) processor"},
        {17, "Intel(R) Itanium(R) 2 processor"},
        {32, "Intel(R) 64 Instruction Set Architecture (ISA)"},
        {33, "Intel(R) Core(TM) 2 Duo processor"},
        {34, "Intel(R) Core(TM) 2 Quad processor"},
        {35, "Intel(R) Core(TM) 2 processor with Intel(R) SSE4.1"},
        {36, "Intel(R) Atom(TM) processor"},
        {37, "Intel(R) Core(TM) i7 processor"},
        {38, "CPU Next"},
        {64, "Processor supports Pentium(R) III processor instruction set"},
        {65, "Processor supports Streaming SIMD Extensions 2 instruction set"},
        {66, "Processor supports Streaming SIMD Extensions 3 instruction set"},
        {67, "Processor supports Supplemental Streaming SIMD Extension 3 instruction set"},
        {68, "Processor supports Streaming SIMD Extensions 4.1 instruction set"},
        {69, "Processor supports Streaming SIMD Extensions 4.2 instruction set"},
        {70, "Processor supports Advanced Vector Extensions instruction set"},
        {71, "Processor supports 64 bit extension"},
        {96, "Processor supports 64 bit extension"},
    };
    for (int value = -200; value <= 2000; ++value) {
        const auto it = texts.find(value);
        EXPECT_EQ(MOZEP::mozepCpuType2String(static_cast<ZepCpuType>(value)),
                  it != texts.end() ? it->second : "Newer CPU Type")
            << value;
    }
    for (const int value :
         {std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), 256, 65536})
        EXPECT_STREQ(MOZEP::mozepCpuType2String(static_cast<ZepCpuType>(value)), "Newer CPU Type");
}

TEST(CpuTypeString, IsThatOfThisProcessor) {
    EXPECT_STREQ(MOZEP::mozepCpuTypeString(), MOZEP::mozepCpuType2String(zepGetCpuType()));
    EXPECT_GE(zepGetCpuType(), 33);  // any 64-bit machine has SSE2
    InventedCpu cpu({{0, InventedCpu::intelVendor(1)},
                     {1, {InventedCpu::signature(6, 28), 0, kSsse3 | kMovbe, kBaseEdx}}});
    EXPECT_STREQ(MOZEP::mozepCpuTypeString(), "Intel(R) Atom(TM) processor");
}

}  // namespace
}  // namespace zep::test
