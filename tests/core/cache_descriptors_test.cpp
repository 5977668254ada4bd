#include "core/cache_descriptors.h"

#include <gtest/gtest.h>

#include "support/invented_cpu.h"

namespace zep::test {
namespace {

constexpr std::uint32_t kEmpty = 0x80000000;

TEST(CacheDescriptors, NamesTheSizeOfADescriptorInAnyRegister) {
    EXPECT_EQ(describedCacheBytes({0x00000001, kEmpty, kEmpty, 0x00EC0000}), 24 << 20);
    EXPECT_EQ(describedCacheBytes({0x00000001, kEmpty, 0x00004100, kEmpty}), 128 << 10);
    EXPECT_EQ(describedCacheBytes({0x00003A01, 0, 0, 0}), 192 << 10);
    EXPECT_EQ(describedCacheBytes({0x01, 0x3D, 0, 0}), 384 << 10);
}

TEST(CacheDescriptors, PrefersTheLargestCache) {
    EXPECT_EQ(describedCacheBytes({0x41454A01, 0, 0, 0}), 6 << 20);
    EXPECT_EQ(describedCacheBytes({0x4A454101, 0, 0, 0}), 6 << 20);
    // 0x4E and 0x4A are both of 6 MiB; 0x49 of 4 MiB.
    EXPECT_EQ(describedCacheBytes({0x01, 0x00490000, 0x4E, 0}), 6 << 20);
}

TEST(CacheDescriptors, DoesNotReadTheIterationCountAsADescriptor) {
    EXPECT_EQ(describedCacheBytes({0x45, 0, 0, 0}), kNoCacheDescriptor);
    EXPECT_EQ(describedCacheBytes({0x00004502, 0, 0, 0}), kNoCacheDescriptor);
    EXPECT_EQ(describedCacheBytes({0x00000001, 0, 0, 0}), kNoCacheDescriptor);
}

TEST(CacheDescriptors, IgnoresRegistersMarkedEmpty) {
    EXPECT_EQ(describedCacheBytes({0x01, 0x80000045, 0, 0}), kNoCacheDescriptor);
    EXPECT_EQ(describedCacheBytes({0x01, 0x80000045, 0x41, 0}), 128 << 10);
}

// Without EAX the search still looks at offsets count to 1, so the first byte of the first register
// stays out.
TEST(CacheDescriptors, SkipsOffsetZeroWhereEaxIsEmpty) {
    EXPECT_EQ(describedCacheBytes({0x80000001, 0x45, 0, 0}), kNoCacheDescriptor);
    EXPECT_EQ(describedCacheBytes({0x80000001, 0x4500, 0, 0}), 2 << 20);
    EXPECT_EQ(describedCacheBytes({0x80000001, kEmpty, kEmpty, 0x45000000}), 2 << 20);
    EXPECT_EQ(describedCacheBytes({0x80000001, kEmpty, kEmpty, 0x00000045}), kNoCacheDescriptor);
}

TEST(CacheDescriptors, AreProbedOnIntelProcessorsOnly) {
    {
        const InventedCpu cpu(
            {{0, InventedCpu::intelVendor(2)}, {2, InventedCpu::descriptor(0x45)}});
        EXPECT_EQ(probeDescribedCacheBytes(), 2 << 20);
    }
    const InventedCpu cpu({{0, InventedCpu::amdVendor(2)}, {2, InventedCpu::descriptor(0x45)}});
    EXPECT_EQ(probeDescribedCacheBytes(), kNoCacheDescriptor);
}

TEST(CacheDescriptors, AreSharedByLogicalProcessors) {
    const CpuidRegisters fourProcessors{3u << 26, 0, 0, 0};
    {
        const InventedCpu cpu({{0, InventedCpu::intelVendor(4)},
                               {2, InventedCpu::descriptor(0x45)},
                               {4, fourProcessors}});
        EXPECT_EQ(probeDescribedCacheBytesPerProcessor(), 512 << 10);
    }
    {
        const InventedCpu cpu({{0, InventedCpu::intelVendor(3)},
                               {2, InventedCpu::descriptor(0x45)},
                               {4, fourProcessors}});
        EXPECT_EQ(probeDescribedCacheBytesPerProcessor(), 2 << 20);
    }
    const InventedCpu cpu({{0, InventedCpu::intelVendor(4)}, {4, fourProcessors}});
    EXPECT_EQ(probeDescribedCacheBytesPerProcessor(), kNoCacheDescriptor);
}

}  // namespace
}  // namespace zep::test
