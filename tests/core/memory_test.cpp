#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "support/failing_heap.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {
namespace {

void expectAligned(const void* p) { EXPECT_EQ(reinterpret_cast<std::uintptr_t>(p) % 32, 0u) << p; }

void* rawOf(const void* block) {
    void* raw = nullptr;
    std::memcpy(&raw, static_cast<void* const*>(block) - 1, sizeof raw);
    return raw;
}

TEST(Malloc, GivesNothingForNoBytes) {
    FailingHeap heap(0);
    for (const int length : {0, -1, -1000, -0x7FFFFFFF - 1}) EXPECT_EQ(zepMalloc(length), nullptr);
    EXPECT_EQ(heap.asked(), 0);
}

TEST(Malloc, GivesAlignedBlocksOfEveryLength) {
    std::vector<char*> blocks;
    for (int length = 1; length <= 4100; length = length < 300 ? length + 1 : length * 3 / 2) {
        char* block = static_cast<char*>(zepMalloc(length));
        ASSERT_NE(block, nullptr);
        expectAligned(block);
        std::memset(block, length & 0xFF, static_cast<std::size_t>(length));
        // The first boundary that leaves room for the word below it, inside the heap's block.
        const auto gap = block - static_cast<char*>(rawOf(block));
        EXPECT_GE(gap, 8);
        EXPECT_LE(gap, 39);
        EXPECT_GE(malloc_usable_size(rawOf(block)), static_cast<std::size_t>(length) + 40);
        blocks.push_back(block);
    }
    for (char* block : blocks) zepFree(block);
}

TEST(Malloc, ReportsALackOfMemoryByNull) {
    FailingHeap heap(0);
    EXPECT_EQ(zepMalloc(100), nullptr);
    EXPECT_EQ(zepsMalloc_64f(100), nullptr);
    EXPECT_EQ(heap.asked(), 2);
}

TEST(Malloc, TakesTheGreatestLength) {
    void* block = zepMalloc(0x7FFFFFFF);  // length + 40 does not overflow
    if (block == nullptr) GTEST_SKIP() << "the machine has no 2 GiB to give";
    expectAligned(block);
    static_cast<char*>(block)[0x7FFFFFFE] = 1;
    zepFree(block);
}

TEST(Free, IgnoresNullAndReturnsEveryBlock) {
    FailingHeap heap(10);
    zepFree(nullptr);
    EXPECT_EQ(heap.live(), 0);
    void* block = zepMalloc(10);
    EXPECT_EQ(heap.live(), 1);
    zepFree(block);
    EXPECT_EQ(heap.live(), 0);
}

TEST(AlignPtr, GivesTheFirstMultipleAtOrAbove) {
    for (int align = 1; align <= 4096; align *= 2)
        for (std::uintptr_t address = 0; address < 9000; address += 7) {
            const std::uintptr_t expected = (address + align - 1) / align * align;
            ASSERT_EQ(zepAlignPtr(reinterpret_cast<void*>(address), align),
                      reinterpret_cast<void*>(expected))
                << address << " to " << align;
        }
}

TEST(AlignPtr, LeavesAnAlignedAddressAlone) {
    for (const std::uintptr_t address : {std::uintptr_t{0}, std::uintptr_t{0x7FFFFFFFFFC0}})
        EXPECT_EQ(zepAlignPtr(reinterpret_cast<void*>(address), 64),
                  reinterpret_cast<void*>(address));
    EXPECT_EQ(zepAlignPtr(reinterpret_cast<void*>(0x700000000001), 1 << 30),
              reinterpret_cast<void*>(0x700040000000));
}

class TypedMemory : public VariantTest {};

template <class T>
void expectTyped(T* (*allocate)(int), int elementBytes) {
    EXPECT_EQ(sizeof(T), static_cast<std::size_t>(elementBytes));
    FailingHeap heap(10);
    for (const int len : {0, -1, -0x7FFFFFFF - 1}) EXPECT_EQ(allocate(len), nullptr);
    EXPECT_EQ(heap.asked(), 0);
    for (const int len : {1, 77}) {
        T* block = allocate(len);
        ASSERT_NE(block, nullptr);
        expectAligned(block);
        const std::size_t bytes = static_cast<std::size_t>(len) * sizeof(T);
        std::memset(static_cast<void*>(block), 0x5A, bytes);
        const std::size_t usable = malloc_usable_size(rawOf(block));
        EXPECT_GE(usable, bytes + 40);
        EXPECT_LT(usable, bytes + 40 + 32);  // no more than it takes, but for the heap's rounding
        zepsFree(block);
    }
    EXPECT_EQ(heap.live(), 0);
}

TEST_P(TypedMemory, HoldsElementsOfItsType) {
    expectTyped(zepsMalloc_8u, 1);
    expectTyped(zepsMalloc_8s, 1);
    expectTyped(zepsMalloc_16u, 2);
    expectTyped(zepsMalloc_16s, 2);
    expectTyped(zepsMalloc_8sc, 2);
    expectTyped(zepsMalloc_32u, 4);
    expectTyped(zepsMalloc_32s, 4);
    expectTyped(zepsMalloc_32f, 4);
    expectTyped(zepsMalloc_16sc, 4);
    expectTyped(zepsMalloc_64s, 8);
    expectTyped(zepsMalloc_64f, 8);
    expectTyped(zepsMalloc_32sc, 8);
    expectTyped(zepsMalloc_32fc, 8);
    expectTyped(zepsMalloc_64sc, 16);
    expectTyped(zepsMalloc_64fc, 16);
}

TEST_P(TypedMemory, CountsBytesInThirtyTwoBits) {
    EXPECT_EQ(zepsMalloc_32f(1073741824), nullptr);  // 2^32 bytes: 0
    EXPECT_EQ(zepsMalloc_32f(536870912), nullptr);   // 2^31 bytes: negative
    EXPECT_EQ(zepsMalloc_64fc(0x7FFFFFFF), nullptr);
    EXPECT_EQ(zepsMalloc_64fc(0x10000000), nullptr);
    Zep64fc* small = zepsMalloc_64fc(0x10000001);  // 2^32 + 16 bytes: 16
    ASSERT_NE(small, nullptr);
    EXPECT_LT(malloc_usable_size(rawOf(small)), 16u + 40 + 32);
    zepsFree(small);
    Zep32f* large = zepsMalloc_32f(1342177280);  // 2^32 + 2^30 bytes: 2^30
    if (large == nullptr) GTEST_SKIP() << "the machine has no 1 GiB to give";
    EXPECT_GE(malloc_usable_size(rawOf(large)), std::size_t{1073741824} + 40);
    EXPECT_LT(malloc_usable_size(rawOf(large)), std::size_t{1073741824} + 40 + 65536);
    zepsFree(large);
}

TEST_P(TypedMemory, BothFreesReleaseAnyBlockAndIgnoreNull) {
    FailingHeap heap(10);
    zepsFree(nullptr);
    zepiFree(nullptr);
    zepsFree(zepMalloc(9));
    zepiFree(zepsMalloc_32f(9));
    zepFree(zepsMalloc_8u(9));
    EXPECT_EQ(heap.asked(), 3);
    EXPECT_EQ(heap.live(), 0);
}

ZEP_FOR_EACH_VARIANT(TypedMemory);

}  // namespace
}  // namespace zep::test
