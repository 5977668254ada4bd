#include <gtest/gtest.h>

#include "support/guarded_buffer.h"
#include "support/invented_cpu.h"
#include "support/random.h"
#include "support/variant.h"
#include "vector/movement_cases.h"
#include "zeps.h"

namespace zep::test {
namespace {

class Copy : public VariantTest {};

template <class T>
using CopyFunction = ZepStatus (*)(const T*, T*, int);

template <class T>
void expectCopies(CopyFunction<T> copy) {
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (const int bytes : byteLengths(sizeof(T)))
            for (const int skew : {0, 1, 17}) {
                const int len = bytes / int{sizeof(T)};
                GuardedBuffer<std::uint8_t> src(bytes, edge, skew), dst(bytes, edge);
                fillRandom(src);
                const Bytes expected(src.begin(), src.end());
                ASSERT_EQ(copy(reinterpret_cast<const T*>(src.data()),
                               reinterpret_cast<T*>(dst.data()), len),
                          zepStsNoErr);
                expectBytes(dst.data(), expected.data(), expected.size(), "copy");
                expectBytes(src.data(), expected.data(), expected.size(), "source");
                ASSERT_FALSE(testing::Test::HasFailure()) << "bytes " << bytes << " skew " << skew;
            }
}

template <class T>
void expectChecks(CopyFunction<T> copy) {
    T src[4]{}, dst[4];
    std::memset(dst, 0x5A, sizeof dst);
    const Bytes before(reinterpret_cast<std::uint8_t*>(dst),
                       reinterpret_cast<std::uint8_t*>(dst) + sizeof dst);
    EXPECT_EQ(copy(nullptr, dst, 4), zepStsNullPtrErr);
    EXPECT_EQ(copy(src, nullptr, 4), zepStsNullPtrErr);
    EXPECT_EQ(copy(nullptr, dst, 0), zepStsNullPtrErr);
    EXPECT_EQ(copy(src, dst, 0), zepStsSizeErr);
    EXPECT_EQ(copy(src, dst, -1), zepStsSizeErr);
    EXPECT_EQ(copy(src, dst, INT32_MIN), zepStsSizeErr);
    EXPECT_EQ(copy(src, dst, INT32_MIN + 1),
              zepStsSizeErr);  // times 4 and 8 it wraps to a positive number
    expectBytes(dst, before.data(), before.size(), "written on an error");
}

template <class T>
void expectCopyOf(CopyFunction<T> copy) {
    expectCopies(copy);
    expectChecks(copy);
}

TEST_P(Copy, KeepsEveryByteOfEveryType) {
    expectCopyOf<Zep8u>(zepsCopy_8u);
    expectCopyOf<Zep16s>(zepsCopy_16s);
    expectCopyOf<Zep32s>(zepsCopy_32s);
    expectCopyOf<Zep32f>(zepsCopy_32f);
    expectCopyOf<Zep32fc>(zepsCopy_32fc);
    expectCopyOf<Zep64f>(zepsCopy_64f);
}

TEST_P(Copy, WritesNothingOutsideTheDestinationAtAnyAlignment) {
    for (const std::size_t bytes : {100u, 129u, 257u, 1000u, 2047u, 2049u, 5000u})
        for (std::size_t srcSkew = 0; srcSkew < 64; srcSkew += 3)
            for (std::size_t dstSkew = 0; dstSkew < 64; ++dstSkew) {
                Framed src(bytes, srcSkew), dst(bytes, dstSkew);
                ASSERT_EQ(zepsCopy_8u(src.data(), dst.data(), static_cast<int>(bytes)),
                          zepStsNoErr);
                expectBytes(dst.data(), src.original(), bytes, "copy");
                ASSERT_TRUE(dst.frameIntact() && src.frameIntact());
                ASSERT_FALSE(HasFailure())
                    << bytes << " bytes, skews " << srcSkew << ", " << dstSkew;
            }
}

// The direction of a copy may depend on the offsets within the page: 1, 160, 161, 0, -1, -3936,
// -3937 are limits.
TEST_P(Copy, DoesNotDependOnThePageOffsets) {
    constexpr std::size_t kPage = 4096, kBytes = 700;
    Bytes area = randomBytes(8 * kPage);
    const std::uintptr_t misalignment = reinterpret_cast<std::uintptr_t>(area.data()) % kPage;
    std::uint8_t* const base = area.data() + (kPage - misalignment);
    for (std::size_t srcOffset = 0; srcOffset < kPage; srcOffset += 16)
        for (const std::size_t dstOffset : {0u, 16u, 160u, 2048u, 3936u, 3952u, 4080u}) {
            std::uint8_t* src = base + srcOffset;
            std::uint8_t* dst = base + 3 * kPage + dstOffset;
            for (std::size_t n = 0; n < kBytes; ++n) src[n] = static_cast<std::uint8_t>(rng()());
            dst[-1] = 0x11, dst[kBytes] = 0x22;
            ASSERT_EQ(zepsCopy_8u(src, dst, int{kBytes}), zepStsNoErr);
            expectBytes(dst, src, kBytes, "copy");
            ASSERT_TRUE(dst[-1] == 0x11 && dst[kBytes] == 0x22);
            ASSERT_FALSE(HasFailure()) << "source " << srcOffset << " destination " << dstOffset;
        }
}

void expectLargeCopies() {
    for (const int around : {0x20000, 0x40000, 0x80000, 0x100000, 0x200000})
        for (const int extra : {-65, -1, 0, 1, 33, 200})
            for (const int skew : {0, 5}) {
                const int bytes = around + extra;
                GuardedBuffer<std::uint8_t> src(bytes, Edge::Back, skew),
                    dst(bytes, Edge::Front, 3 * skew);
                const Bytes pattern =
                    randomBytes(4099);  // prime, so that a block copied to a wrong place shows
                for (int n = 0; n < bytes; ++n)
                    src[n] = pattern[static_cast<std::size_t>(n) % pattern.size()];
                ASSERT_EQ(zepsCopy_8u(src.data(), dst.data(), bytes), zepStsNoErr);
                ASSERT_EQ(std::memcmp(src.data(), dst.data(), static_cast<std::size_t>(bytes)), 0)
                    << bytes << " bytes, skew " << skew;
            }
}

TEST_P(Copy, KeepsEveryByteOfLargeBlocks) { expectLargeCopies(); }

TEST_P(Copy, KeepsEveryByteWhereTheCacheIsSmall) {
    for (const std::uint32_t logicalProcessors : {1u, 2u}) {
        const InventedCpu cpu = smallCacheCpu(logicalProcessors);
        expectLargeCopies();
    }
}

int queriesOfCopy(int bytes) {
    const InventedCpu cpu({{0, InventedCpu::amdVendor(0xD)}});
    Bytes src(static_cast<std::size_t>(bytes)), dst(static_cast<std::size_t>(bytes));
    EXPECT_EQ(zepsCopy_8u(src.data(), dst.data(), bytes), zepStsNoErr);
    return cpu.queries();
}

TEST_P(Copy, AsksForTheCacheOnlyAboveItsThreshold) {
    const std::string tag = GetParam().tag;
    const int threshold = tag == "m7" ? 0x80000 : tag == "u8" || tag == "n8" ? 0x20000 : 0x100000;
    EXPECT_EQ(queriesOfCopy(threshold), 0);
    EXPECT_GT(queriesOfCopy(threshold + 1), 0);
}

ZEP_FOR_EACH_VARIANT(Copy);

}  // namespace
}  // namespace zep::test
