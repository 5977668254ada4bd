// Running medians of windows that fit into registers: their values stand in order, the oldest leaves
// and the next one comes with every step.
//
// Values are ordered as integers that compare like them (keys): so every value has a place, that
// of a not-a-number too, and what leaves is always found.
#pragma once

#include <cstdint>

#include "simd/shuffle.h"
#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT::median {

using Key = std::int32_t;
using Keys = simd::Native<Key>;

// Its own inverse.
template <class T>
[[gnu::always_inline]] inline T keyOfBits(T bits) {
    if constexpr (std::is_same_v<T, Key>)
        return bits ^ ((bits >> 31) & INT32_MAX);
    else
        return bits ^ ((bits >> 31) & T::broadcast(INT32_MAX));
}

// Sorted elements below v.
inline std::ptrdiff_t countBelow(const Key* sorted, std::ptrdiff_t len, Key v) {
    const Key* base = sorted;
    while (len > 1) {
        const std::ptrdiff_t half = len / 2;
        base += base[half - 1] < v ? half : 0;
        len -= half;
    }
    return base - sorted + (*base < v ? 1 : 0);
}

// The window in R registers; what its keys leave free is filled with extremes on both sides, so
// that the median has a fixed place.
template <int R>
struct RegisterWindow {
    static constexpr int lanes = R * Keys::lanes;
    Keys v[R];

    // len ascending keys, odd, below `lanes`.
    static RegisterWindow of(const Key* sorted, int len) {
        Key padded[lanes];
        const int from = lanes / 2 - len / 2;
        for (int n = 0; n < lanes; ++n)
            padded[n] = n < from ? INT32_MIN : n < from + len ? sorted[n - from] : INT32_MAX;
        RegisterWindow w;
        simd::unroll<R>([&](auto k) { w.v[k] = Keys::load(padded + k * Keys::lanes); });
        return w;
    }
    // Keys from `oldest` on move down by one place, then those above `next` up by one.
    [[gnu::always_inline]] void replace(Key oldest, Key next) {
        const Keys o = Keys::broadcast(oldest), x = Keys::broadcast(next);
        Keys rest[R];
        simd::unroll<R>([&](auto k) {
            const Keys above = k + 1 < R ? v[k + 1 < R ? k + 1 : k] : Keys::broadcast(INT32_MAX);
            const Keys down = shuffle(v[k], above, [](int lane) { return lane + 1; });
            rest[k] = select(v[k] < o, v[k], down);
        });
        simd::unroll<R>([&](auto k) {
            const Keys below = k > 0 ? rest[k > 0 ? k - 1 : 0] : Keys::broadcast(INT32_MIN);
            const Keys up =
                shuffle(below, rest[k], [](int lane) { return Keys::lanes - 1 + lane; });
            v[k] = max(up, min(rest[k], x));
        });
    }
    [[gnu::always_inline]] Key median() const {
        constexpr int kLane = R % 2 == 0 ? 0 : Keys::lanes / 2;
        return static_cast<Key>(v[R / 2].v[kLane]);
    }
};

}  // namespace zep::ZEP_VARIANT::median
