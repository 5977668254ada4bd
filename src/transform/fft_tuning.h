// Where the routes of the power-of-two transform meet.
//
// Each limit of a processor class is a length whose data and twiddles stay near one of its caches.
// Callers see them in the scratch size, which these tables alone decide.
#pragma once

#include "core/variant/tag.h"
#include "simd/split_complex.h"

namespace zep::ZEP_VARIANT::fft {

// Split of a long transform: 2^r blocks, and tiles of 2^t elements for the passes across the
// blocks.
struct Split {
    int r;
    int t;
};

template <class Tag>
struct FloatTuning;

template <>
struct FloatTuning<tag::m7> {
    static constexpr int directMaxOrder = 5;
    static constexpr int blockMaxOrder = 16;  // transforms above are split
    static constexpr int tileOrder =
        6;  // the bit reversal of long transforms moves tiles of 64 by 64
    static constexpr int tiledFromOrder = 20;
    static constexpr Split split(int order) {
        if (order <= 17) return {4, 9};
        if (order <= 20) return {4, 10};
        if (order == 21) return {6, 13};
        return {8, 15};
    }
};

template <>
struct FloatTuning<tag::y8> {
    static constexpr int directMaxOrder = 5;
    static constexpr int blockMaxOrder = 17;
    static constexpr int tileOrder = 6;
    static constexpr int tiledFromOrder = 19;
    static constexpr Split split(int order) { return order <= 19 ? Split{4, 10} : Split{8, 14}; }
};

template <>
struct FloatTuning<tag::u8> : FloatTuning<tag::y8> {};

template <>
struct FloatTuning<tag::n8> {
    static constexpr int directMaxOrder = 5;
    static constexpr int blockMaxOrder = 15;
    static constexpr int tileOrder = 5;
    static constexpr int tiledFromOrder = 17;
    static constexpr Split split(int order) {
        if (order <= 18) return {4, 10};
        if (order <= 20) return {6, 14};
        return {8, 14};
    }
};

template <>
struct FloatTuning<tag::e9> {
    static constexpr int directMaxOrder = 6;
    static constexpr int blockMaxOrder = 18;
    static constexpr int tileOrder = 6;
    static constexpr int tiledFromOrder = 19;
    static constexpr Split split(int order) { return order <= 22 ? Split{4, 10} : Split{8, 14}; }
};

// The double transform has one set of limits for all.
struct DoubleTuning {
    static constexpr int directMaxOrder = 5;
    static constexpr int blockMaxOrder = 16;
    static constexpr int tileOrder = 6;
    static constexpr int tiledFromOrder = 19;
    static constexpr Split split(int order) { return order <= 19 ? Split{4, 10} : Split{8, 14}; }
};

template <class T>
struct TuningOf : Tuned<FloatTuning> {
    // From this order on the tiled bit reversal and a split pay, also where the scratch of a whole
    // block is at hand: at 2^16 points they take 0.62 of the time of one run of passes. Below, the
    // detour of the tiles through scratch costs more.
    static constexpr int splitFromOrder = 14;
    // Blocks up to this order run pass by pass: data and twiddles together stay in the first-level
    // cache.
    static constexpr int breadthOrder = 11;
    // One radix-8 pass across the blocks does where the whole transform stays near the second-level
    // cache.
    static constexpr int smallSplitMaxOrder = 17;
};
template <>
struct TuningOf<double> : DoubleTuning {
    static constexpr int splitFromOrder = 13;
    static constexpr int breadthOrder = 10;
    static constexpr int smallSplitMaxOrder = 16;
};

template <class T>
using Real = simd::Native<T>;
template <class T>
using Cplx = simd::SplitComplex<Real<T>>;
template <class T>
inline constexpr int kLanes = Real<T>::lanes;

constexpr int logOf(int powerOfTwo) { return powerOfTwo <= 1 ? 0 : 1 + logOf(powerOfTwo / 2); }
template <class T>
inline constexpr int kLogLanes = logOf(kLanes<T>);

// Straight-line transforms, without tables in the object: rows of vectors of so many lanes, single
// elements where lanes is 1.
struct Straight {
    int lanes;
    int rows;
};
// The widest vectors of the column that leave rows enough for the columns' transforms: as many as
// lanes, or four where sixteen lanes are four by four.
template <class T>
constexpr Straight straightRows(int order) {
    if (order <= 3) return {1, 1 << order};
    for (int lanes = kLanes<T>; lanes > 1; lanes /= 2) {
        const int rows = (1 << order) / lanes;
        if (rows <= 16 && rows >= (lanes == 16 ? 4 : lanes)) return {lanes, rows};
    }
    return {0, 0};
}
// Longest of them: sixteen rows of the widest vectors.
template <class T>
inline constexpr int kStraightOrder = kLogLanes<T> + 4;
static_assert(kStraightOrder<float> >= TuningOf<float>::directMaxOrder &&
              kStraightOrder<double> >= TuningOf<double>::directMaxOrder);

template <class T>
constexpr bool everyStraightOrderHasRows() {
    for (int order = 0; order <= kStraightOrder<T>; ++order) {
        const Straight s = straightRows<T>(order);
        if (s.lanes * s.rows != 1 << order) return false;
    }
    return straightRows<T>(kStraightOrder<T>).lanes == kLanes<T>;
}
static_assert(everyStraightOrderHasRows<float>() && everyStraightOrderHasRows<double>());

// The outermost split.
template <class T>
constexpr Split outerSplit(int order) {
    using Tuning = TuningOf<T>;
    if (order > Tuning::blockMaxOrder) return Tuning::split(order);
    return order <= Tuning::smallSplitMaxOrder ? Split{3, 9} : Split{4, 10};
}

// The split at a level of the recursion, 0 the outermost; r is 0 for a block that passes finish.
template <class T>
constexpr Split splitAt(int level, int order) {
    if (level == 0) return outerSplit<T>(order);
    return order > TuningOf<T>::blockMaxOrder ? TuningOf<T>::split(order) : Split{0, 0};
}

// Length of the blocks that no further split divides.
template <class T>
constexpr int innermostBlock(int order) {
    if (order < TuningOf<T>::splitFromOrder) return order;
    int level = 0;
    for (int r = splitAt<T>(level, order).r; r > 0; r = splitAt<T>(++level, order).r) order -= r;
    return order;
}

}  // namespace zep::ZEP_VARIANT::fft
