#include <gtest/gtest.h>

#include "support/guarded_buffer.h"
#include "support/invented_cpu.h"
#include "support/random.h"
#include "support/variant.h"
#include "vector/movement_cases.h"
#include "zeps.h"

namespace zep::test {
namespace {

class Zero : public VariantTest {};
class Set : public VariantTest {};

template <class T>
using FillFunction = ZepStatus (*)(T, T*, int);

template <class T>
Bytes repeated(T val, int bytes) {
    Bytes expected(static_cast<std::size_t>(bytes));
    for (std::size_t n = 0; n < expected.size(); n += sizeof(T))
        std::memcpy(&expected[n], &val, sizeof(T));
    return expected;
}

template <class T>
void expectFill(FillFunction<T> fill, T val, int bytes, Edge edge, int skew) {
    GuardedBuffer<std::uint8_t> dst(bytes, edge, skew);
    ASSERT_EQ(fill(val, reinterpret_cast<T*>(dst.data()), bytes / int{sizeof(T)}), zepStsNoErr);
    const Bytes expected = repeated(val, bytes);
    expectBytes(dst.data(), expected.data(), expected.size(), "fill");
    ASSERT_FALSE(testing::Test::HasFailure()) << "bytes " << bytes << " skew " << skew;
}

// Every byte of val differs, so that a pattern out of phase shows; skews below the element size
// leave the elements themselves misaligned.
template <class T>
void expectFills(FillFunction<T> fill, T val) {
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (const int bytes : byteLengths(sizeof(T)))
            for (const int skew : {0, 1, 3, 6, 16, 27}) expectFill(fill, val, bytes, edge, skew);
}

template <class T>
void expectFillsInFrames(FillFunction<T> fill, T val) {
    for (const std::size_t elements : {24u, 40u, 100u, 300u, 700u})
        for (std::size_t skew = 0; skew < 64; ++skew) {
            Framed dst(elements * sizeof(T), skew);
            ASSERT_EQ(fill(val, reinterpret_cast<T*>(dst.data()), static_cast<int>(elements)),
                      zepStsNoErr);
            const Bytes expected = repeated(val, static_cast<int>(elements * sizeof(T)));
            expectBytes(dst.data(), expected.data(), expected.size(), "fill");
            ASSERT_TRUE(dst.frameIntact()) << elements << " elements, skew " << skew;
        }
}

template <class T>
void expectLargeFills(FillFunction<T> fill, T val) {
    for (const int around : {0x20000, 0x40000, 0x80000, 0x100000, 0x200000})
        for (const int extra : {-16, 0, 16, 80})
            for (const int skew : {0, 5}) expectFill(fill, val, around + extra, Edge::Back, skew);
}

template <class T>
void expectChecks(FillFunction<T> fill, T val) {
    T dst[4];
    std::memset(dst, 0x5A, sizeof dst);
    EXPECT_EQ(fill(val, nullptr, 4), zepStsNullPtrErr);
    EXPECT_EQ(fill(val, nullptr, 0), zepStsNullPtrErr);
    EXPECT_EQ(fill(val, dst, 0), zepStsSizeErr);
    EXPECT_EQ(fill(val, dst, -1), zepStsSizeErr);
    EXPECT_EQ(fill(val, dst, INT32_MIN + 1), zepStsSizeErr);
    const Bytes before(sizeof dst, 0x5A);
    expectBytes(dst, before.data(), before.size(), "written on an error");
}

template <class T, ZepStatus (*zero)(T*, int)>
ZepStatus zeroAsFill(T, T* pDst, int len) {
    return zero(pDst, len);
}

// Runs check(function, value) for all forms.
void forEachZero(auto check) {
    check.template operator()<Zep8u>(zeroAsFill<Zep8u, zepsZero_8u>, Zep8u{});
    check.template operator()<Zep16s>(zeroAsFill<Zep16s, zepsZero_16s>, Zep16s{});
    check.template operator()<Zep32s>(zeroAsFill<Zep32s, zepsZero_32s>, Zep32s{});
    check.template operator()<Zep32f>(zeroAsFill<Zep32f, zepsZero_32f>, Zep32f{});
    check.template operator()<Zep32fc>(zeroAsFill<Zep32fc, zepsZero_32fc>, Zep32fc{});
    check.template operator()<Zep64f>(zeroAsFill<Zep64f, zepsZero_64f>, Zep64f{});
    check.template operator()<Zep64fc>(zeroAsFill<Zep64fc, zepsZero_64fc>, Zep64fc{});
}

template <class T>
T ofBits(std::uint64_t bits) {
    T val;
    std::memcpy(&val, &bits, sizeof val);
    return val;
}

void forEachSet(auto check) {
    constexpr std::uint64_t kBits = 0x0123456789ABCDEF;
    check.template operator()<Zep8u>(zepsSet_8u, ofBits<Zep8u>(kBits));
    check.template operator()<Zep16s>(zepsSet_16s, ofBits<Zep16s>(kBits));
    check.template operator()<Zep32s>(zepsSet_32s, ofBits<Zep32s>(kBits));
    check.template operator()<Zep32f>(zepsSet_32f, ofBits<Zep32f>(kBits));
    check.template operator()<Zep32fc>(zepsSet_32fc, ofBits<Zep32fc>(kBits));
    check.template operator()<Zep64f>(zepsSet_64f, ofBits<Zep64f>(kBits));
    check.template operator()<Zep64s>(zepsSet_64s, ofBits<Zep64s>(kBits));
}

constexpr auto fills = []<class T>(FillFunction<T> fill, T val) { expectFills(fill, val); };
constexpr auto fillsInFrames = []<class T>(FillFunction<T> fill, T val) {
    expectFillsInFrames(fill, val);
};
constexpr auto largeFills = []<class T>(FillFunction<T> fill, T val) {
    expectLargeFills(fill, val);
};
constexpr auto checks = []<class T>(FillFunction<T> fill, T val) { expectChecks(fill, val); };

TEST_P(Zero, ClearsEveryByteOfEveryType) { forEachZero(fills); }
TEST_P(Zero, WritesNothingOutsideAtAnyAlignment) { forEachZero(fillsInFrames); }
TEST_P(Zero, ClearsLargeBlocks) { forEachZero(largeFills); }
TEST_P(Zero, ChecksPointerThenLength) { forEachZero(checks); }

TEST_P(Set, FillsEveryElementOfEveryType) { forEachSet(fills); }
TEST_P(Set, WritesNothingOutsideAtAnyAlignment) { forEachSet(fillsInFrames); }
TEST_P(Set, FillsLargeBlocks) { forEachSet(largeFills); }
TEST_P(Set, ChecksPointerThenLength) { forEachSet(checks); }

TEST_P(Zero, ClearsBlocksBeyondTheCache) {
    const InventedCpu cpu = smallCacheCpu(2);
    forEachZero(largeFills);
}

TEST_P(Set, FillsBlocksBeyondTheCache) {
    const InventedCpu cpu = smallCacheCpu(1);
    forEachSet(largeFills);
}

template <class T>
int queriesOfFill(FillFunction<T> fill, int len) {
    const InventedCpu cpu({{0, InventedCpu::amdVendor(0xD)}});
    std::vector<T> dst(static_cast<std::size_t>(len));
    EXPECT_EQ(fill(T{}, dst.data(), len), zepStsNoErr);
    return cpu.queries();
}

TEST_P(Set, AsksForTheCacheOnlyAboveItsThreshold) {
    const auto expectThreshold = []<class T>(FillFunction<T> fill, int elements) {
        EXPECT_EQ(queriesOfFill(fill, elements), 0);
        EXPECT_GT(queriesOfFill(fill, elements + 1), 0);
    };
    const bool e9 = std::string(GetParam().tag) == "e9";
    expectThreshold(zepsSet_8u, e9 ? 0x200000 : 0x80000);
    expectThreshold(zepsSet_16s, e9 ? 0x100000 : 0x80000);
    expectThreshold(zepsSet_32f, e9 ? 0x200000 : 0x40000);
    expectThreshold(zepsSet_64f, 0x20000);
    expectThreshold(zeroAsFill<Zep64f, zepsZero_64f>, (e9 ? 0x200000 : 0x80000) / 8);
}

ZEP_FOR_EACH_VARIANT(Zero);
ZEP_FOR_EACH_VARIANT(Set);

}  // namespace
}  // namespace zep::test
