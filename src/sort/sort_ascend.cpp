// Sort in place: quicksort on vectors, with sorting networks for what is left.
//
// Pivot: the median of a sample of vectors from all over the range. Where a quarter of the sample
// equals it, or nothing is above it, the elements that equal it are parted off too, and are done:
// repeated values end soon. Where the sample has but a few, they are counted instead. The smaller side is sorted first, so the stack stays within log2
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

// The values of a sample, ascending, where they are few.
struct Values {
    static constexpr int kMost = 8;
    T value[kMost];
    int count = 0;

    // False where there are more.
    bool collect(const T* sorted, int len) {
        std::ptrdiff_t n = 0;
        while (n < len) {
            if (count == kMost) return false;
            value[count++] = sorted[n];
            // The next one that differs, a vector at a time.
            const V same = V::broadcast(sorted[n]);
            for (; n + L <= len; n += L)
                if (const auto m = V::load(sorted + n) > same; any(m)) {
                    n += __builtin_ctzll(bits(m));
                    break;
                }
            while (n < len && sorted[n] == value[count - 1]) ++n;
        }
        return true;
    }
};

// Sorts elements that have no other values by counting them. Where another one turns up it returns
// false, and has done nothing.
[[gnu::noinline]] bool sortByCounting(T* p, std::ptrdiff_t len, const Values& values) {
    constexpr int kMost = Values::kMost;
    V value[kMost], counts[kMost] = {};
    // Those that are missing repeat the first one: it is counted by both, and only once filled in.
    simd::unroll<kMost>(
        [&](auto k) { value[k] = V::broadcast(values.value[k < values.count ? int{k} : 0]); });
    const V one = V::broadcast(1);
    const auto count = [&](V x) __attribute__((always_inline)) {
        auto known = x == value[0];
        counts[0] = counts[0] + keepIf(known, one);
        simd::unroll<kMost - 1>([&](auto k) __attribute__((always_inline)) {
            const auto equal = x == value[k + 1];
            counts[k + 1] = counts[k + 1] + keepIf(equal, one);
            known = known | equal;
        });
        return all(known);
    };
    std::ptrdiff_t n = 0;
    for (; n + L <= len; n += L)
        if (!count(V::load(p + n))) return false;
    const auto rest = static_cast<int>(len - n);
    if (!count(V::loadPartial(p + n, rest, values.value[0]))) return false;
    std::int32_t total[kMost];
    simd::unroll<kMost>([&](auto k) { total[k] = reduceAdd(counts[k]); });
    total[0] -= static_cast<int>(L) - rest;
    for (int k = 0; k < values.count; ++k) {
        if (total[k] == 0) continue;
        zepsSet_32s(values.value[k], p, total[k]);
        p += total[k];
    }
    return true;
}

struct Pivot {
    T value;
    bool repeated;  // by a quarter of the sample
};

// len > network::kMost. `values` gets the sample's, where they are few.
inline Pivot choosePivot(const T* p, std::ptrdiff_t len, Values& values) {
    constexpr int kMostVectors = 8;
    T sample[kMostVectors * L];
    const int vectors = len < 4 * network::kMost ? kMostVectors / 2 : kMostVectors;
    const std::ptrdiff_t apart = (len - L) / (vectors - 1);
    for (int k = 0; k < vectors; ++k) V::load(p + k * apart).store(sample + k * L);
    const int n = vectors * static_cast<int>(L);
    network::sort(sample, n);
    const T median = sample[n / 2];
    // An eighth of a sample of so few values has one in common, more or less.
    const bool runs = sample[n / 2 + n / 16] == median || sample[n / 2 - n / 16] == median;
    if (!runs || !values.collect(sample, n)) values.count = 0;
    return {median, sample[n / 4] == median || sample[n - 1 - n / 4] == median};
}

void sortRange(T* p, std::ptrdiff_t len, int badPivots) {
    while (len > network::kMost) {
        Values values;
        const Pivot pivot = choosePivot(p, len, values);
        if (values.count != 0 && sortByCounting(p, len, values)) return;
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

inline void exchangeOrder(T* p, std::ptrdiff_t len) {
    constexpr auto map = network::AsFloats::exchanged;
    std::ptrdiff_t n = 0;
    for (; n + L <= len; n += L) map(V::load(p + n)).store(p + n);
    const auto rest = static_cast<int>(len - n);
    map(V::loadPartial(p + n, rest)).storePartial(p + n, rest);
}

// Short enough for reading and writing them to count more than the network's size.
constexpr int kRowsOfFloats = 8;

}  // namespace

ZepStatus zepsSortAscend_32f_I(Zep32f* pSrcDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrcDst); s != zepStsNoErr) return s;
    auto* const p = reinterpret_cast<T*>(pSrcDst);
    if (len <= kRowsOfFloats * L) {
        network::sortOneBlock<kRowsOfFloats, network::AsFloats>(p, len);
        return zepStsNoErr;
    }
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
