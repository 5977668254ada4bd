#include "core/cache_size.h"

#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <thread>
#include <vector>

#include "support/invented_cpu.h"
#include "zepcore.h"

namespace zep::test {
namespace {

constexpr std::uint32_t kDataCache = 1, kInstructionCache = 2, kUnifiedCache = 3;

// Leaf 4.
CpuidRegisters cache(std::uint32_t type, std::uint32_t ways, std::uint32_t partitions,
                     std::uint32_t lineBytes, std::uint32_t sets) {
    return {type | 0xFFFFFFE0, (ways - 1) << 22 | (partitions - 1) << 12 | (lineBytes - 1),
            sets - 1, 0};
}

struct Answer {
    ZepStatus status;
    int bytes;
    friend bool operator==(const Answer&, const Answer&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Answer& a) {
        return out << "status " << a.status << ", " << a.bytes << " bytes";
    }
};

Answer ask() {
    int bytes = -77;
    const ZepStatus status = zepGetMaxCacheSizeB(&bytes);
    return {status, bytes};
}

Answer byDescriptors(const CpuidRegisters& leaf2, std::uint32_t maxLeaf = 2) {
    InventedCpu cpu({{0, InventedCpu::intelVendor(maxLeaf)}, {2, leaf2}});
    return ask();
}

Answer byGeometry(const std::vector<CpuidRegisters>& caches) {
    InventedCpu cpu({{0, InventedCpu::intelVendor(4)}, {2, InventedCpu::descriptor(0x45)}});
    cpu.set(4, 999, {});
    for (std::size_t i = 0; i < caches.size(); ++i)
        cpu.set(4, static_cast<std::uint32_t>(i), caches[i]);
    return ask();
}

constexpr Answer kUnknown{zepStsUnknownCacheSize, 0};

TEST(MaxCacheSize, ComesFromTheDescriptorsBelowLeafFour) {
    EXPECT_EQ(byDescriptors(InventedCpu::descriptor(0x45)), (Answer{zepStsNoErr, 2097152}));
    EXPECT_EQ(byDescriptors(InventedCpu::descriptor(0xEC), 3), (Answer{zepStsNoErr, 25165824}));
    EXPECT_EQ(byDescriptors({0x39410001, 0, 0, 0x007B0000}), (Answer{zepStsNoErr, 524288}));
    EXPECT_EQ(byDescriptors(InventedCpu::descriptor(0x40)), kUnknown);
    EXPECT_EQ(byDescriptors({0x4502, 0, 0, 0}), kUnknown);
    EXPECT_EQ(byDescriptors({0x01, 0x80004545, 0x80004545, 0x80004545}), kUnknown);
}

TEST(MaxCacheSize, KnowsEveryDescriptor) {
    struct Row {
        std::uint8_t key;
        int bytes;
    };
    static constexpr Row kRows[] = {
        {0xEC, 25165824}, {0xEB, 18874368}, {0x4D, 16777216}, {0xEA, 12582912}, {0x4C, 12582912},
        {0xE4, 8388608},  {0xDE, 8388608},  {0x4B, 8388608},  {0x47, 8388608},  {0x4E, 6291456},
        {0x4A, 6291456},  {0xE3, 4194304},  {0xDD, 4194304},  {0xD8, 4194304},  {0x49, 4194304},
        {0x29, 4194304},  {0x46, 4194304},  {0x48, 3145728},  {0xE2, 2097152},  {0xDC, 2097152},
        {0xD7, 2097152},  {0xD2, 2097152},  {0x25, 2097152},  {0x7D, 2097152},  {0x85, 2097152},
        {0x45, 2097152},  {0xD6, 1048576},  {0xD1, 1048576},  {0x23, 1048576},  {0x87, 1048576},
        {0x7C, 1048576},  {0x78, 1048576},  {0x84, 1048576},  {0x44, 1048576},  {0xD0, 524288},
        {0x22, 524288},   {0x7B, 524288},   {0x80, 524288},   {0x86, 524288},   {0x3E, 524288},
        {0x7F, 524288},   {0x83, 524288},   {0x43, 524288},   {0x3D, 393216},   {0x21, 262144},
        {0x7A, 262144},   {0x82, 262144},   {0x3C, 262144},   {0x3F, 262144},   {0x42, 262144},
        {0x3A, 196608},   {0x79, 131072},   {0x39, 131072},   {0x3B, 131072},   {0x41, 131072},
    };
    ASSERT_EQ(std::size(kRows), 55u);
    std::map<int, int> sizes;
    for (const Row& r : kRows) sizes[r.key] = r.bytes;
    for (int key = 0; key < 256; ++key) {
        const auto it = sizes.find(key);
        const Answer expected = it == sizes.end() ? kUnknown : Answer{zepStsNoErr, it->second};
        EXPECT_EQ(byDescriptors(InventedCpu::descriptor(static_cast<std::uint8_t>(key))), expected)
            << "key " << key;
    }
}

TEST(MaxCacheSize, IsTheLargestOfLeafFour) {
    const CpuidRegisters l1d = cache(kDataCache, 8, 1, 64, 64);
    const CpuidRegisters l1i = cache(kInstructionCache, 4, 1, 64, 128);
    const CpuidRegisters l2 = cache(kUnifiedCache, 8, 1, 64, 512);
    const CpuidRegisters l3 = cache(kUnifiedCache, 16, 2, 64, 4096);
    EXPECT_EQ(byGeometry({l1d, l1i, l2, l3}), (Answer{zepStsNoErr, 16 * 2 * 64 * 4096}));
    EXPECT_EQ(byGeometry({l3, l2, l1i, l1d}), (Answer{zepStsNoErr, 16 * 2 * 64 * 4096}));
    EXPECT_EQ(byGeometry({l1d}), (Answer{zepStsNoErr, 32768}));
    EXPECT_EQ(byGeometry({cache(kDataCache, 1024, 1024, 1, 1)}), (Answer{zepStsNoErr, 1 << 20}));
    EXPECT_EQ(byGeometry({cache(kDataCache, 1, 1, 4096, 3)}), (Answer{zepStsNoErr, 12288}));
}

TEST(MaxCacheSize, DoesNotCountInstructionCaches) {
    const CpuidRegisters big = cache(kInstructionCache, 16, 1, 64, 1 << 16);
    EXPECT_EQ(byGeometry({big, cache(kDataCache, 1, 1, 64, 2)}), (Answer{zepStsNoErr, 128}));
    EXPECT_EQ(byGeometry({big}), kUnknown);
}

TEST(MaxCacheSize, StopsAtTheFirstEmptySubleaf) {
    const CpuidRegisters small = cache(kDataCache, 1, 1, 64, 1);
    EXPECT_EQ(byGeometry({small, CpuidRegisters{}, cache(kUnifiedCache, 1, 1, 64, 99)}),
              (Answer{zepStsNoErr, 64}));
    // Leaf 2 is not consulted where leaf 4 exists.
    EXPECT_EQ(byGeometry({}), kUnknown);
}

TEST(MaxCacheSize, LooksAtThirtyTwoSubleaves) {
    std::vector<CpuidRegisters> caches(40, cache(kInstructionCache, 1, 1, 64, 1));
    caches[31] = cache(kUnifiedCache, 1, 1, 64, 5);
    caches[32] = cache(kUnifiedCache, 1, 1, 64, 500);
    EXPECT_EQ(byGeometry(caches), (Answer{zepStsNoErr, 320}));
    caches[31] = cache(kInstructionCache, 1, 1, 64, 1);
    EXPECT_EQ(byGeometry(caches), kUnknown);
}

TEST(MaxCacheSize, ComparesSignedAndIgnoresSizesBeyondThirtyOneBits) {
    const CpuidRegisters tooBig = cache(kUnifiedCache, 1, 1, 64, 1u << 25);  // 2^31
    EXPECT_EQ(byGeometry({cache(kDataCache, 1, 1, 64, 1), tooBig}), (Answer{zepStsNoErr, 64}));
    EXPECT_EQ(byGeometry({tooBig}), kUnknown);
}

TEST(MaxCacheSize, IsNotSupportedWithoutLeafTwoOrOnAnotherVendor) {
    constexpr Answer kNotSupported{zepStsNotSupportedCpu, 0};
    EXPECT_EQ(byDescriptors(InventedCpu::descriptor(0x45), 1), kNotSupported);
    InventedCpu cpu({{0, InventedCpu::amdVendor(13)}, {2, InventedCpu::descriptor(0x45)}});
    cpu.set(4, 0, cache(kDataCache, 1, 1, 64, 1));
    for (int call = 0; call < 3; ++call) EXPECT_EQ(ask(), kNotSupported);
}

TEST(MaxCacheSize, IsRememberedAlsoAsAFailure) {
    for (const std::uint8_t key : {0x45, 0x40}) {
        InventedCpu cpu({{0, InventedCpu::intelVendor(2)}, {2, InventedCpu::descriptor(key)}});
        const Answer first = ask();
        const int queries = cpu.queries();
        EXPECT_GT(queries, 0);
        for (int call = 0; call < 3; ++call) EXPECT_EQ(ask(), first);
        EXPECT_EQ(cpu.queries(), queries);
    }
}

TEST(MaxCacheSize, NullIsAnErrorAtEveryCallAndDisturbsNothing) {
    InventedCpu cpu({{0, InventedCpu::intelVendor(2)}, {2, InventedCpu::descriptor(0x45)}});
    EXPECT_EQ(zepGetMaxCacheSizeB(nullptr), zepStsNullPtrErr);
    EXPECT_EQ(cpu.queries(), 0);
    EXPECT_EQ(ask(), (Answer{zepStsNoErr, 2097152}));
    EXPECT_EQ(zepGetMaxCacheSizeB(nullptr), zepStsNullPtrErr);
    EXPECT_EQ(ask(), (Answer{zepStsNoErr, 2097152}));
}

TEST(MaxCacheSize, AgreesAmongThreadsThatAskFirst) {
    for (int round = 0; round < 50; ++round) {
        resetCacheSize();
        Answer answers[4];
        std::vector<std::thread> threads;
        for (Answer& a : answers) threads.emplace_back([&a] { a = ask(); });
        for (std::thread& t : threads) t.join();
        for (const Answer& a : answers) ASSERT_EQ(a, ask());
    }
}

}  // namespace
}  // namespace zep::test
