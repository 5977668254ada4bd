// Where the routes of the power-of-two transform meet. Each limit is a length whose data and
// twiddles stay near a cache of that processor class; the lengths are visible to callers through
// the scratch size.
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

using Tuning = FftTuning<VariantTag>;

}  // namespace zep::ZEP_VARIANT
