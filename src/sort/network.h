// Sorting networks on a block of registers: R rows of L lanes, 32-bit integers.
//
// The columns are sorted by a network over the rows (Batcher's merge exchange: Knuth, The Art of
// Computer Programming, volume 3, algorithm 5.2.2M), all L of them at once. Then groups of lanes are
// merged, two columns, four, and so on to all: with the sorted sequence of a group running down
// its first column, then down the next, a bitonic merge compares element e with element (size - 1 -
// e), which lies in the mirrored row and lane, and then elements at falling distances: lanes
// first, rows at the end. The order of comparisons is fixed, so nothing depends on the data.
// Interleaving the rows finally brings the columns into the order of memory.
#pragma once

#include <cstdint>

#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT::network {

using V = simd::Native<std::int32_t>;
constexpr int L = V::lanes;

[[gnu::always_inline]] inline void compareExchange(V& a, V& b) {
    const V lower = min(a, b);
    b = max(a, b);
    a = lower;
}

struct Exchange {
    int low, high;
};
template <int R>
struct MergeExchange {
    Exchange step[64] = {};
    int count = 0;

    constexpr MergeExchange() {
        for (int p = 1; p < R; p *= 2)
            for (int k = p; k >= 1; k /= 2)
                for (int j = k % p; j + k < R; j += 2 * k)
                    for (int i = j; i < j + k && i + k < R; ++i)
                        if (i / (2 * p) == (i + k) / (2 * p)) step[count++] = {i, i + k};
    }
};

template <int R>
[[gnu::always_inline]] inline void sortColumns(V (&r)[R]) {
    constexpr MergeExchange<R> network;
    simd::unroll<network.count>([&](auto c) {
        constexpr Exchange e = network.step[c];
        compareExchange(r[e.low], r[e.high]);
    });
}

// b in the lanes whose number has the bit, a in the others.
template <int bit>
[[gnu::always_inline]] inline V blendByBit(V a, V b) {
    return shuffle(a, b, [](int k) { return (k & bit) != 0 ? L + k : k; });
}
template <int mask>
[[gnu::always_inline]] inline V xorLanes(V a) {
    return shuffle(a, a, [](int k) { return k ^ mask; });
}

// Each lane with the one `distance` away.
template <int distance>
[[gnu::always_inline]] inline V exchangeLanes(V a) {
    const V b = xorLanes<distance>(a);
    return blendByBit<distance>(min(a, b), max(a, b));
}

// Every element of a group of G lanes with the mirrored one.
template <int G, int R>
[[gnu::always_inline]] inline void exchangeMirrored(V (&r)[R]) {
    if constexpr (R == 1) {
        const V b = xorLanes<G - 1>(r[0]);
        r[0] = blendByBit<G / 2>(min(r[0], b), max(r[0], b));
    } else {
        simd::unroll<R / 2>([&](auto i) {
            V& a = r[i];
            V& mirrored = r[R - 1 - i];
            const V b = xorLanes<G - 1>(mirrored);
            const V lower = min(a, b), upper = max(a, b);
            a = blendByBit<G / 2>(lower, upper);
            mirrored = xorLanes<G - 1>(blendByBit<G / 2>(upper, lower));
        });
    }
}

template <int distance, int R>
[[gnu::always_inline]] inline void mergeLanes(V (&r)[R]) {
    if constexpr (distance >= 1) {
        simd::unroll<R>([&](auto i) { r[i] = exchangeLanes<distance>(r[i]); });
        mergeLanes<distance / 2>(r);
    }
}

template <int distance, int R>
[[gnu::always_inline]] inline void mergeRows(V (&r)[R]) {
    if constexpr (distance >= 1) {
        simd::unroll<R / 2>([&](auto k) {
            constexpr int i = k / distance * 2 * distance + k % distance;
            compareExchange(r[i], r[i + distance]);
        });
        mergeRows<distance / 2>(r);
    }
}

template <int G, int R>
[[gnu::always_inline]] inline void mergeGroups(V (&r)[R]) {
    if constexpr (G <= L) {
        exchangeMirrored<G>(r);
        mergeLanes<G / 4>(r);
        mergeRows<R / 2>(r);
        mergeGroups<2 * G>(r);
    }
}

template <int R>
[[gnu::always_inline]] inline void interleaveRows(V (&r)[R]) {
    for (int round = 1; round < R; round *= 2) {
        V s[R];
        simd::unroll<R / 2>([&](auto i) {
            s[2 * i] = interleaveFront(r[i], r[i + R / 2]);
            s[2 * i + 1] = interleaveBack(r[i], r[i + R / 2]);
        });
        simd::unroll<R>([&](auto i) { r[i] = s[i]; });
    }
}

// Sorts (R / 2 * L, R * L] elements, for R == 1 up to L. What the rows have beyond them is filled
// up with the largest number, and stays behind them.
template <int R>
[[gnu::noinline]] void sortBlock(std::int32_t* p, int len) {
    V r[R];
    simd::unroll<R>([&](auto i) {
        const int left = len - i * L;
        if (2 * i + 2 <= R || left >= L)
            r[i] = V::load(p + i * L);
        else
            r[i] = V::loadPartial(p + i * L, left < 0 ? 0 : left, INT32_MAX);
    });
    if constexpr (R > 1) sortColumns(r);
    mergeGroups<2>(r);
    if constexpr (R > 1) interleaveRows(r);
    simd::unroll<R>([&](auto i) {
        const int left = len - i * L;
        if (2 * i + 2 <= R || left >= L)
            r[i].store(p + i * L);
        else if (left > 0)
            r[i].storePartial(p + i * L, left);
    });
}

// As many as leave some registers free.
constexpr int kRows = L >= 16 ? 16 : 8;
constexpr int kMost = kRows * L;

// 1 <= len <= kMost.
template <int R = kRows>
inline void sort(std::int32_t* p, int len) {
    if constexpr (R > 1)
        if (len <= R / 2 * L) return sort<R / 2>(p, len);
    sortBlock<R>(p, len);
}

}  // namespace zep::ZEP_VARIANT::network
