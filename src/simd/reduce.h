// One value from all lanes of a vector. Halves are joined until one lane is left, so the order of a
// floating sum depends on the width.
#pragma once

#include "simd/convert.h"

namespace zep::ZEP_VARIANT::simd {

template <Lane T, int N, class Op>
[[gnu::always_inline]] inline T reduceLanes(Vec<T, N> a, Op op) {
    if constexpr (sizeof(a) > 16) {
        return reduceLanes(op(low(a), high(a)), op);
    } else {
        if constexpr (N >= 16) a = op(a, shuffle(a, a, [](int k) { return (k + 8) % N; }));
        if constexpr (N >= 8) a = op(a, shuffle(a, a, [](int k) { return (k + 4) % N; }));
        if constexpr (N >= 4) a = op(a, shuffle(a, a, [](int k) { return (k + 2) % N; }));
        a = op(a, shuffle(a, a, [](int k) { return (k + 1) % N; }));
        return first(a);
    }
}

template <AnyVec V>
[[gnu::always_inline]] inline typename V::Scalar reduceAdd(V a) {
    return reduceLanes(a, [](auto x, auto y) { return x + y; });
}
template <AnyVec V>
[[gnu::always_inline]] inline typename V::Scalar reduceMin(V a) {
    return reduceLanes(a, [](auto x, auto y) { return min(x, y); });
}
template <AnyVec V>
[[gnu::always_inline]] inline typename V::Scalar reduceMax(V a) {
    return reduceLanes(a, [](auto x, auto y) { return max(x, y); });
}

}  // namespace zep::ZEP_VARIANT::simd
