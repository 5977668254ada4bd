// Sorting networks for short arrays of 32-bit integers, on blocks of registers: R rows of L lanes.
//
// The columns are sorted by a network over the rows (Batcher's merge exchange: Knuth, The Art of
// Computer Programming, volume 3, algorithm 5.2.2M), all L of them at once. Then groups of lanes are
// merged, two columns, four, and so on to all: with the sorted sequence of a group running down
// its first column, then down the next, a bitonic merge compares element e with element (size - 1 -
// e), which lies in the mirrored row and lane, and then elements at falling distances: lanes
// first, rows at the end. Interleaving the rows finally brings the columns into the order of memory.
// Several blocks are merged likewise. No comparison depends on another one's outcome: there is no
// branch to foresee, which is why this beats a partition up to four blocks.
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

// How elements stand in memory; the network sorts integers.
struct AsIntegers {
    static V exchanged(V x) { return x; }
};
// The bits of floats and integers in the same order; its own inverse.
struct AsFloats {
    [[gnu::always_inline]] static V exchanged(V x) {
        return x ^ ((x >> 31) & V::broadcast(INT32_MAX));
    }
};

// Sorts (R / 2 * L, R * L] elements, for R == 1 up to L. What the rows have beyond them is filled
// up with the largest number, and stays behind them.
template <int R, class Stored = AsIntegers>
[[gnu::noinline]] void sortBlock(std::int32_t* p, int len) {
    V r[R];
    simd::unroll<R>([&](auto i) {
        const int left = len - i * L;
        if (2 * i + 2 <= R || left >= L)
            r[i] = V::load(p + i * L);
        else
            r[i] = V::loadPartial(p + i * L, left < 0 ? 0 : left, INT32_MAX);
        r[i] = Stored::exchanged(r[i]);
    });
    if constexpr (R > 1) sortColumns(r);
    mergeGroups<2>(r);
    if constexpr (R > 1) interleaveRows(r);
    simd::unroll<R>([&](auto i) {
        const int left = len - i * L;
        r[i] = Stored::exchanged(r[i]);
        if (2 * i + 2 <= R || left >= L)
            r[i].store(p + i * L);
        else if (left > 0)
            r[i].storePartial(p + i * L, left);
    });
}

// As many as leave some registers free.
constexpr int kRows = L >= 16 ? 16 : 8;
constexpr int kBlock = kRows * L;

// 1 <= len <= R * L.
template <int R = kRows, class Stored = AsIntegers>
inline void sortOneBlock(std::int32_t* p, int len) {
    if constexpr (R > 1)
        if (len <= R / 2 * L) return sortOneBlock<R / 2, Stored>(p, len);
    sortBlock<R, Stored>(p, len);
}

// The two halves of `vectors` vectors, each ascending, to one ascending run. Elements are in the
// order of memory here: the mirrored ones are compared first, which leaves two bitonic halves, then
// those at falling distances, the last ones within blocks of registers.
inline void mergeHalves(std::int32_t* p, int vectors) {
    const int half = vectors / 2;
    const auto at = [p](int vector) { return p + vector * L; };
    for (int i = 0; i < half / 2; ++i) {
        // The upper halves may stand in either direction; these two take each other's place.
        V a = V::load(at(i)), b = V::load(at(half - 1 - i));
        V c = reverse(V::load(at(vectors - 1 - i))), d = reverse(V::load(at(half + i)));
        compareExchange(a, c), compareExchange(b, d);
        a.store(at(i)), b.store(at(half - 1 - i));
        c.store(at(half + i)), d.store(at(vectors - 1 - i));
    }
    for (int distance = half / 2; distance >= kRows; distance /= 2)
        for (int i = 0; i < vectors / 2; ++i) {
            const int low = i / distance * 2 * distance + i % distance;
            V a = V::load(at(low)), b = V::load(at(low + distance));
            compareExchange(a, b);
            a.store(at(low)), b.store(at(low + distance));
        }
    for (int first = 0; first < vectors; first += kRows) {
        V r[kRows];
        simd::unroll<kRows>([&](auto i) { r[i] = V::load(at(first + i)); });
        mergeRows<kRows / 2>(r);
        mergeLanes<L / 2>(r);
        simd::unroll<kRows>([&](auto i) { r[i].store(at(first + i)); });
    }
}

constexpr int kMost = 4 * kBlock;

// kBlock < len <= kMost: two or four blocks, sorted and merged in a copy that is filled up.
[[gnu::noinline]] inline void sortBlocks(std::int32_t* p, int len) {
    alignas(64) std::int32_t x[kMost];
    const int blocks = len > 2 * kBlock ? 4 : 2;
    int n = 0;
    for (; n + L <= len; n += L) V::load(p + n).storeAligned(x + n);
    if (n < len) {
        V::loadPartial(p + n, len - n, INT32_MAX).storeAligned(x + n);
        n += L;
    }
    for (int k = n; k < blocks * kBlock; k += L) V::broadcast(INT32_MAX).storeAligned(x + k);
    for (int first = 0; first < len; first += kBlock)
        sortOneBlock(x + first, len - first < kBlock ? len - first : kBlock);
    for (int run = 2 * kRows; run <= blocks * kRows; run *= 2)
        for (int first = 0; first < blocks * kRows; first += run) mergeHalves(x + first * L, run);
    for (n = 0; n + L <= len; n += L) V::loadAligned(x + n).store(p + n);
    if (n < len) V::loadAligned(x + n).storePartial(p + n, len - n);
}

// 1 <= len <= kMost.
inline void sort(std::int32_t* p, int len) {
    if (len <= kBlock) return sortOneBlock(p, len);
    sortBlocks(p, len);
}

}  // namespace zep::ZEP_VARIANT::network
