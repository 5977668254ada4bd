// Sort with indices: a quicksort whose steps are fixed, since they settle the order of equal
// elements, which callers may rely on (see the header).
//
// Both orders are one algorithm with the comparisons mirrored. The tests against the pivot are all
// written with `before` or its negation: a not-a-number then counts as equal to the pivot and is
// left where it is, and if it is the pivot the range counts as done. So a range always shrinks: of
// the three elements that the pivot is chosen from, the last one does not end up before it, nor the
// first one behind it, which keeps either side from being the whole range.
//
// The steps decide nothing where no two elements are equal: the order is then the only one. Short ranges
// are therefore sorted by ranks first, which finds out whether that is so, and by the steps if not.
#include <cstdint>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "sort/ranks.h"

namespace zep::ZEP_VARIANT {
namespace {

using Place = std::ptrdiff_t;

// Values and their indices, at any address.
template <class T>
struct Pairs {
    T* values;
    int* indices;

    T value(Place n) const { return simd::readAny(values + n); }
    void exchange(Place a, Place b) const {
        const T x = value(a), y = value(b);
        const int i = simd::readAny(indices + a), j = simd::readAny(indices + b);
        simd::writeAny(values + a, y), simd::writeAny(values + b, x);
        simd::writeAny(indices + a, j), simd::writeAny(indices + b, i);
    }
};

// `later` is one instruction for the processor, which keeps the search below short.
struct Ascending {
    static auto before(auto a, auto b) { return a < b; }
    static auto notBefore(auto a, auto b) { return a >= b; }
    static auto later(auto a, auto b) { return a > b ? a : b; }
    template <class T>
    static constexpr T kFirst = std::numeric_limits<T>::has_infinity
                                    ? -std::numeric_limits<T>::infinity()
                                    : std::numeric_limits<T>::min();
};
struct Descending {
    static auto before(auto a, auto b) { return a > b; }
    static auto notBefore(auto a, auto b) { return a <= b; }
    static auto later(auto a, auto b) { return a < b ? a : b; }
    template <class T>
    static constexpr T kFirst = std::numeric_limits<T>::has_infinity
                                    ? std::numeric_limits<T>::infinity()
                                    : std::numeric_limits<T>::max();
};

// 9 elements or fewer, from the top: of several that belong there the last one moves.
template <class Order, class T>
inline void selectionSort(const Pairs<T>& x, Place lo, Place hi) {
    for (; lo < hi; --hi) {
        Place last = lo;
        T largest = x.value(lo);
        for (Place n = lo + 1; n <= hi; ++n) {
            const T candidate = x.value(n);
            last = Order::notBefore(candidate, largest) ? n : last;
            largest = Order::later(candidate, largest);
        }
        x.exchange(last, hi);
    }
}

template <class T>
constexpr int kMostRanked = 16 * simd::Native<T>::lanes;

// Sorts up to kMostRanked elements unless two of them are equal or one is a not-a-number: then it
// returns false and has done nothing. Of two different elements exactly one is before the other, of others
// none, so the sum of all ranks tells.
template <class Order, class T>
[[gnu::noinline]] bool sortByRanks(const Pairs<T>& x, Place lo, int len) {
    using V = simd::Native<T>;
    constexpr int L = V::lanes;
    // In front of everything: what the last block has too much gets rank 0.
    constexpr T kFill = Order::template kFirst<T>;
    T values[kMostRanked<T> + L], ranks[kMostRanked<T> + L];
    int n = 0;
    for (; n + L <= len; n += L) V::load(x.values + lo + n).store(values + n);
    if (n < len) {
        V::loadPartial(x.values + lo + n, len - n, kFill).store(values + n);
        n += L;
    }
    V::broadcast(kFill).store(values + n);
    V sum = V::zero();
    forRankBlocks<V>(
        len, [&](auto vectors, int first) __attribute__((always_inline)) {
            V block[vectors], counts[vectors] = {};
            simd::unroll<vectors>([&](auto k) { block[k] = V::load(values + first + k * L); });
            countBefore(values, 0, len, block, counts,
                        [](V a, V b) { return Order::before(a, b); });
            simd::unroll<vectors>([&](auto k) {
                counts[k].store(ranks + first + k * L);
                sum = sum + counts[k];
            });
        });
    if (static_cast<int>(reduceAdd(sum)) != len * (len - 1) / 2) return false;
    int indices[kMostRanked<T>];
    __builtin_memcpy(indices, x.indices + lo, static_cast<std::size_t>(len) * sizeof(int));
    for (int k = 0; k < len; ++k) {
        const Place to = lo + static_cast<int>(ranks[k]);
        simd::writeAny(x.values + to, values[k]);
        simd::writeAny(x.indices + to, indices[k]);
    }
    return true;
}

template <class Order, class T>
inline T medianOfThree(const Pairs<T>& x, Place lo, Place hi) {
    const Place mid = lo + (hi - lo + 1) / 2;
    const auto order = [&](Place a, Place b) {
        if (Order::before(x.value(b), x.value(a))) x.exchange(a, b);
    };
    order(lo, hi), order(mid, hi), order(lo, mid);
    return x.value(mid);
}

struct Range {
    Place lo, hi;
    Place count() const { return hi - lo + 1; }
};

// The exchanges of the two scans while they are far apart, without a branch on an element: where
// elements of the wrong side stand is noted for a block at either end, and then the k-th of the left
// is exchanged with the k-th of the right, which are the exchanges, in the order, of scanning one by
// one (S. Edelkamp, A. Weiss: BlockQuicksort, 2016). What is left in the blocks is scanned again.
template <class Order, class T>
inline void exchangeBlocks(const Pairs<T>& x, T pivot, Place& i, Place& j) {
    constexpr int kBlock = 64;
    unsigned char left[kBlock], right[kBlock];
    int leftCount = 0, rightCount = 0, leftFirst = 0, rightFirst = 0;
    while (j - i + 1 >= 2 * kBlock) {
        if (leftCount == 0) {
            leftFirst = 0;
            for (int k = 0; k < kBlock; ++k) {
                left[leftCount] = static_cast<unsigned char>(k);
                leftCount += Order::before(pivot, x.value(i + k));
            }
        }
        if (rightCount == 0) {
            rightFirst = 0;
            for (int k = 0; k < kBlock; ++k) {
                right[rightCount] = static_cast<unsigned char>(k);
                rightCount += !Order::before(pivot, x.value(j - k));
            }
        }
        const int count = leftCount < rightCount ? leftCount : rightCount;
        for (int k = 0; k < count; ++k)
            x.exchange(i + left[leftFirst + k], j - right[rightFirst + k]);
        leftCount -= count, leftFirst += count;
        rightCount -= count, rightFirst += count;
        if (leftCount == 0) i += kBlock;
        if (rightCount == 0) j -= kBlock;
    }
}

template <class Order, class T>
void sortPairs(const Pairs<T>& x, int len) {
    // The smaller side goes first, and has at most half of the range: log2 of the length is enough.
    Range stack[32];
    int depth = 0;
    Range r{0, len - 1};
    while (true) {
        const bool sorted = r.count() <= kMostRanked<T> && r.count() > 1 &&
                            sortByRanks<Order>(x, r.lo, static_cast<int>(r.count()));
        if (sorted || r.count() < 10) {
            if (!sorted) selectionSort<Order>(x, r.lo, r.hi);
            if (depth == 0) return;
            r = stack[--depth];
            continue;
        }
        const T pivot = medianOfThree<Order>(x, r.lo, r.hi);
        Place i = r.lo, j = r.hi;
        exchangeBlocks<Order>(x, pivot, i, j);
        while (true) {
            while (i <= r.hi && !Order::before(pivot, x.value(i))) ++i;
            while (j >= r.lo && Order::before(pivot, x.value(j))) --j;
            if (i >= j) break;
            x.exchange(i, j);
        }
        // What equals the pivot beside the boundary is in its place.
        if (i > r.hi) i = r.hi;
        if (j < r.lo) j = r.lo;
        while (i >= r.lo && !Order::before(x.value(i), pivot)) --i;
        while (j <= r.hi && !Order::before(pivot, x.value(j))) ++j;
        Range small{r.lo, i}, large{j, r.hi};
        if (small.count() > large.count()) {
            const Range t = small;
            small = large, large = t;
        }
        if (large.count() > 1) stack[depth++] = large;
        r = small;
    }
}

template <class Order, class T>
ZepStatus checkedSort(T* values, int* indices, int len) {
    if (const ZepStatus s = checkVectors(len, values, indices); s != zepStsNoErr) return s;
    for (int n = 0; n < len; ++n) simd::writeAny(indices + n, n);
    sortPairs<Order>(Pairs<T>{values, indices}, len);
    return zepStsNoErr;
}

}  // namespace

ZepStatus zepsSortIndexAscend_32f_I(Zep32f* pSrcDst, int* pDstIdx, int len) {
    return checkedSort<Ascending>(pSrcDst, pDstIdx, len);
}
ZepStatus zepsSortIndexDescend_32f_I(Zep32f* pSrcDst, int* pDstIdx, int len) {
    return checkedSort<Descending>(pSrcDst, pDstIdx, len);
}
ZepStatus zepsSortIndexDescend_32s_I(Zep32s* pSrcDst, int* pDstIdx, int len) {
    return checkedSort<Descending>(pSrcDst, pDstIdx, len);
}
ZepStatus zepsSortIndexDescend_64f_I(Zep64f* pSrcDst, int* pDstIdx, int len) {
    return checkedSort<Descending>(pSrcDst, pDstIdx, len);
}

}  // namespace zep::ZEP_VARIANT
