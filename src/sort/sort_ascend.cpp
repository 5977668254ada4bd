// Sort in place: quicksort on vectors, with sorting networks for what is left.
//
// Pivot: the median of a sample of vectors from all over the range. Where a quarter of the sample
// equals it, or nothing is above it, the elements that equal it are parted off too, and are done:
// few different values end soon. The smaller side is sorted first, so the stack stays within log2
// of the length; a range whose pivots have been bad too often goes to a heap sort, which bounds
// the time for any data.
//
// Floats are sorted as integers: in a negative one all bits below the sign are complemented, and
// the order of the integers is that of the numbers, with -0 before +0 and not-a-numbers at the ends.
#include <cstdint>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "sort/heap_sort.h"
#include "sort/network.h"
#include "sort/partition.h"

namespace zep::ZEP_VARIANT {
namespace {

using T = std::int32_t;
using V = simd::Native<T>;
constexpr std::ptrdiff_t L = V::lanes;

static_assert(network::kMost >= Partition::kLeast, "what is not for the network can be parted");

struct Pivot {
    T value;
    bool repeated;  // by a quarter of the sample
};

// len > network::kMost.
inline Pivot choosePivot(const T* p, std::ptrdiff_t len) {
    constexpr int kMostVectors = 8;
    T sample[kMostVectors * L];
    const int vectors = len < 4 * network::kMost ? kMostVectors / 2 : kMostVectors;
    const std::ptrdiff_t apart = (len - L) / (vectors - 1);
    for (int k = 0; k < vectors; ++k) V::load(p + k * apart).store(sample + k * L);
    const int n = vectors * static_cast<int>(L);
    network::sort(sample, n);
    const T median = sample[n / 2];
    return {median, sample[n / 4] == median || sample[n - 1 - n / 4] == median};
}

void sortRange(T* p, std::ptrdiff_t len, int badPivots) {
    while (len > network::kMost) {
        const Pivot pivot = choosePivot(p, len);
        const std::ptrdiff_t notAbove = Partition::run(p, len, pivot.value);
        std::ptrdiff_t below = notAbove;
        if ((pivot.repeated || notAbove == len) && notAbove >= Partition::kLeast)
            below = pivot.value == INT32_MIN ? 0 : Partition::run(p, notAbove, pivot.value - 1);
        T* const behind = p + notAbove;
        const std::ptrdiff_t above = len - notAbove;
        const std::ptrdiff_t larger = above > below ? above : below;
        if (larger > len - len / 8 && badPivots-- == 0) return heapSort(p, len);
        if (above > below) {
            if (below > 1) sortRange(p, below, badPivots);
            p = behind;
        } else if (above > 1) {
            sortRange(behind, above, badPivots);
        }
        len = larger;
    }
    if (len > 1) network::sort(p, static_cast<int>(len));
}

// True where no element stands before a smaller one, or a larger one.
template <class Wrong>
inline bool inOrder(const T* p, std::ptrdiff_t len, Wrong wrong) {
    std::ptrdiff_t n = 0;
    for (; n + L < len; n += L)
        if (any(wrong(V::load(p + n), V::load(p + n + 1)))) return false;
    for (; n + 1 < len; ++n)
        if (any(wrong(V::broadcast(simd::readAny(p + n)), V::broadcast(simd::readAny(p + n + 1)))))
            return false;
    return true;
}

inline void sortIntegers(T* p, std::ptrdiff_t len) {
    if (len <= network::kMost) return network::sort(p, static_cast<int>(len));
    if (inOrder(p, len, [](V a, V b) { return a > b; })) return;
    if (inOrder(p, len, [](V a, V b) { return a < b; })) {
        zepsFlip_32f_I(reinterpret_cast<Zep32f*>(p), static_cast<int>(len));
        return;
    }
    constexpr int kBadPivots = 8;
    sortRange(p, len, kBadPivots);
}

// Between the bits of floats and integers in the same order; its own inverse.
inline void exchangeOrder(T* p, std::ptrdiff_t len) {
    const auto map = [](V x) { return x ^ ((x >> 31) & V::broadcast(INT32_MAX)); };
    std::ptrdiff_t n = 0;
    for (; n + L <= len; n += L) map(V::load(p + n)).store(p + n);
    const auto rest = static_cast<int>(len - n);
    map(V::loadPartial(p + n, rest)).storePartial(p + n, rest);
}

}  // namespace

ZepStatus zepsSortAscend_32f_I(Zep32f* pSrcDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrcDst); s != zepStsNoErr) return s;
    auto* const p = reinterpret_cast<T*>(pSrcDst);
    exchangeOrder(p, len);
    sortIntegers(p, len);
    exchangeOrder(p, len);
    return zepStsNoErr;
}

ZepStatus zepsSortAscend_32s_I(Zep32s* pSrcDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrcDst); s != zepStsNoErr) return s;
    sortIntegers(pSrcDst, len);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
