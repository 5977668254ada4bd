#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdint>
#include <cstring>
#include <numeric>
#include <type_traits>
#include <typeinfo>
#include <vector>

#include "mozep.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {
namespace {

using Interface = Interfaces::IQMOMemoryAllocator;
using Allocator = MOZEP::MOZEPMemoryAllocator;

// A word beside its table pointer would make it larger.
static_assert(sizeof(Allocator) == sizeof(void*));
static_assert(std::is_base_of_v<Interface, Allocator>);
static_assert(!std::has_virtual_destructor_v<Allocator>);
static_assert(!std::is_destructible_v<Interface> && std::is_abstract_v<Interface>);

// What the heap holds behind the block: the word below it is the heap's pointer.
std::size_t heapBytes(void* block) {
    void* raw = nullptr;
    std::memcpy(&raw, static_cast<void**>(block) - 1, sizeof raw);
    return malloc_usable_size(raw);
}

class AllocatorClass : public VariantTest {
protected:
    Allocator object;
    Interface& host = object;
};

TEST_P(AllocatorClass, GivesWholeWords) {
    for (const std::uint64_t size : {1, 2, 3, 4, 5, 31, 32, 1000, 100001}) {
        void* block = host.allocateMemory(size);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 32, 0u);
        const std::uint64_t whole = (size + 3) / 4 * 4;
        EXPECT_GE(heapBytes(block), whole + 40);
        std::memset(block, 1, whole);
        host.freeMemory(block);
    }
}

TEST_P(AllocatorClass, GivesNothingForNoBytesOrTooMany) {
    constexpr std::uint64_t kTwoToThe31 = std::uint64_t{1} << 31;
    for (const std::uint64_t size :
         {std::uint64_t{0}, kTwoToThe31, kTwoToThe31 - 3, kTwoToThe31 + 5, 2 * kTwoToThe31,
          ~std::uint64_t{0}, ~std::uint64_t{0} - 3})
        EXPECT_EQ(host.allocateMemory(size), nullptr) << size;
    void* block = host.allocateMemory(2 * kTwoToThe31 + 16);  // the low 32 bits count
    ASSERT_NE(block, nullptr);
    EXPECT_LT(heapBytes(block), 1000u);
    host.freeMemory(block);
}

TEST_P(AllocatorClass, SharesItsBlocksWithTheLibrary) {
    zepsFree(host.allocateMemory(10));
    host.freeMemory(zepMalloc(10));
    host.freeMemory(zepsMalloc_64fc(10));
    host.freeMemory(nullptr);
}

TEST_P(AllocatorClass, CopiesBytes) {
    std::vector<Zep8u> src(100), dst(101, 0xEE);
    std::iota(src.begin(), src.end(), Zep8u{1});
    host.copyMemory(src.data(), dst.data(), src.size());
    EXPECT_EQ(std::vector<Zep8u>(dst.begin(), dst.end() - 1), src);
    EXPECT_EQ(dst.back(), 0xEE);
    host.copyMemory(src.data() + 50, dst.data(), (std::uint64_t{1} << 32) + 1);  // the low 32 bits
    EXPECT_EQ(dst[0], src[50]);
    EXPECT_EQ(dst[1], src[1]);
}

TEST_P(AllocatorClass, CopiesNothingFromOrToNull) {
    std::vector<Zep8u> bytes(8, 7);
    const std::vector<Zep8u> before = bytes;
    host.copyMemory(nullptr, bytes.data(), 8);
    host.copyMemory(bytes.data(), nullptr, 8);
    host.copyMemory(nullptr, nullptr, 8);
    std::vector<Zep8u> other(8, 9);
    host.copyMemory(other.data(), bytes.data(), 0);
    host.copyMemory(other.data(), bytes.data(), std::uint64_t{1} << 31);  // a negative count
    EXPECT_EQ(bytes, before);
}

TEST_P(AllocatorClass, CopiesOfItAreAlike) {
    Allocator copy(object), assigned;
    EXPECT_EQ(&(assigned = object), &assigned);
    EXPECT_EQ(&(assigned = *&assigned), &assigned);
    Interface* through[] = {&object, &copy, &assigned};
    for (Interface* from : through)
        for (Interface* to : through) to->freeMemory(from->allocateMemory(8));
    EXPECT_EQ(typeid(*through[1]), typeid(Allocator));
    EXPECT_NE(dynamic_cast<Allocator*>(through[2]), nullptr);
}

ZEP_FOR_EACH_VARIANT(AllocatorClass);

// A host that was built against the interface calls by slot, not by name.
TEST(AllocatorTable, HoldsTheThreeOperationsInOrder) {
    Allocator object;
    void** table = nullptr;
    std::memcpy(&table, static_cast<const void*>(&object), sizeof table);
    using Allocate = void* (*)(Allocator*, std::uint64_t);
    using Free = void (*)(Allocator*, void*);
    using Copy = void (*)(Allocator*, const void*, void*, std::uint64_t);
    void* block = reinterpret_cast<Allocate>(table[0])(&object, 8);
    ASSERT_NE(block, nullptr);
    reinterpret_cast<Copy>(table[2])(&object, "seven..", block, 8);
    EXPECT_STREQ(static_cast<char*>(block), "seven..");
    reinterpret_cast<Free>(table[1])(&object, block);
}

}  // namespace
}  // namespace zep::test
