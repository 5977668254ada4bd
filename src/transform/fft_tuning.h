// Where the routes of the power-of-two transform meet.
//
// Each limit of a processor class is a length whose data and twiddles stay near one of its caches.
// Callers see them in the scratch size, which these tables alone decide.
#pragma once

#include "core/variant/tag.h"

namespace zep::ZEP_VARIANT {

// Split of a long transform: 2^r blocks, and tiles of 2^t elements for the passes across the
// blocks.
struct FftSplit {
    int r;
    int t;
};

template <class Tag>
struct FftTuning;

template <>
struct FftTuning<tag::m7> {
    static constexpr int directMaxOrder = 5;
    static constexpr int blockMaxOrder = 16;  // transforms above are split
    static constexpr int tileOrder =
        6;  // the bit reversal of long transforms moves tiles of 64 by 64
    static constexpr int tiledFromOrder = 20;
    static constexpr FftSplit split(int order) {
        if (order <= 17) return {4, 9};
        if (order <= 20) return {4, 10};
        if (order == 21) return {6, 13};
        return {8, 15};
    }
};

template <>
struct FftTuning<tag::y8> {
    static constexpr int directMaxOrder = 5;
    static constexpr int blockMaxOrder = 17;
    static constexpr int tileOrder = 6;
    static constexpr int tiledFromOrder = 19;
    static constexpr FftSplit split(int order) {
        return order <= 19 ? FftSplit{4, 10} : FftSplit{8, 14};
    }
};

template <>
struct FftTuning<tag::u8> : FftTuning<tag::y8> {};

template <>
struct FftTuning<tag::n8> {
    static constexpr int directMaxOrder = 5;
    static constexpr int blockMaxOrder = 15;
    static constexpr int tileOrder = 5;
    static constexpr int tiledFromOrder = 17;
    static constexpr FftSplit split(int order) {
        if (order <= 18) return {4, 10};
        if (order <= 20) return {6, 14};
        return {8, 14};
    }
};

template <>
struct FftTuning<tag::e9> {
    static constexpr int directMaxOrder = 6;
    static constexpr int blockMaxOrder = 18;
    static constexpr int tileOrder = 6;
    static constexpr int tiledFromOrder = 19;
    static constexpr FftSplit split(int order) {
        return order <= 22 ? FftSplit{4, 10} : FftSplit{8, 14};
    }
};

using Tuning = Tuned<FftTuning>;

// The transform of the order above the direct ones has scratch, as callers see, but needs none: 16
// rows of vectors still run as one straight line, in 0.8 of the time of three passes.
constexpr int kStraightOrder = Tuning::directMaxOrder + 1;

// From this order on the tiled bit reversal and a split pay, also where the scratch of a whole
// block is at hand: at 2^16 points they take 0.62 of the time of one run of passes. Below, the
// detour of the tiles through scratch costs more.
constexpr int kSplitFromOrder = 14;

// The outermost split. One radix-8 pass across the blocks does where the whole transform stays
// near the second-level cache.
constexpr FftSplit outerSplit(int order) {
    if (order > Tuning::blockMaxOrder) return Tuning::split(order);
    return order <= 17 ? FftSplit{3, 9} : FftSplit{4, 10};
}

// The split at a level of the recursion, 0 the outermost; r is 0 for a block that passes finish.
constexpr FftSplit splitAt(int level, int order) {
    if (level == 0) return outerSplit(order);
    return order > Tuning::blockMaxOrder ? Tuning::split(order) : FftSplit{0, 0};
}

// Length of the blocks that no further split divides.
constexpr int innermostBlock(int order) {
    if (order < kSplitFromOrder) return order;
    int level = 0;
    for (int r = splitAt(level, order).r; r > 0; r = splitAt(++level, order).r) order -= r;
    return order;
}

}  // namespace zep::ZEP_VARIANT
