// 16-bit lanes as two vectors of 32 bits and back, within each 16 bytes: the lower lanes of every 16
// bytes in one, the upper ones in the other. Operations on lanes in between do not mind the order,
// and neither way crosses 16 bytes.
#pragma once

#include "simd/vec.h"

namespace zep::ZEP_VARIANT::simd {

template <class V>
struct Halves {
    V lower, upper;
};

template <int N>
[[gnu::always_inline]] inline auto widenWithin(Vec<std::int16_t, N> a) {
    using W = Vec<std::int32_t, N / 2>;
    // Each lane in the upper 16 bits, and down with its sign.
    const W lower = bitsIn<std::int32_t>(zipLow(a, a)), upper = bitsIn<std::int32_t>(zipHigh(a, a));
    return Halves<W>{lower >> 16, upper >> 16};
}

// What does not fit becomes the nearer end of the range.
template <int N>
[[gnu::always_inline]] inline Vec<std::int16_t, 2 * N> packWithin(
    Halves<Vec<std::int32_t, N>> halves) {
    using R = Register<std::int16_t, 2 * N>;
    const auto x = asInts(halves.lower.v), y = asInts(halves.upper.v);
    if constexpr (N == 4)
        return {bitsAs<R>(_mm_packs_epi32(x, y))};
    else if constexpr (N == 8)
        return {bitsAs<R>(_mm256_packs_epi32(x, y))};
    else
        return {bitsAs<R>(_mm512_packs_epi32(x, y))};
}

template <int N>
[[gnu::always_inline]] inline Vec<std::int16_t, N> mulSaturated(Vec<std::int16_t, N> a,
                                                                Vec<std::int16_t, N> b) {
    const auto low = a * b, high = mulHigh(a, b);
    return packWithin(Halves<Vec<std::int32_t, N / 2>>{bitsIn<std::int32_t>(zipLow(low, high)),
                                                       bitsIn<std::int32_t>(zipHigh(low, high))});
}

}  // namespace zep::ZEP_VARIANT::simd
