// The sums of the even and of the odd lanes, as interleaved pairs need them.
#pragma once

#include "simd/vec.h"

namespace zep::ZEP_VARIANT::simd {

template <class T>
struct Pair {
    T even, odd;
};

template <std::floating_point T, int N>
[[gnu::always_inline]] inline Pair<T> reduceAddPairs(Vec<T, N> a) {
    if constexpr (sizeof(a) > 16) {
        return reduceAddPairs(low(a) + high(a));
    } else {
        if constexpr (N == 4) a = a + shuffle(a, a, [](int k) { return k ^ 2; });
        return {a.v[0], a.v[1]};
    }
}

}  // namespace zep::ZEP_VARIANT::simd
