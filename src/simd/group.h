// Several vectors as one: what a step of a loop takes of a wide type while it makes one vector of a
// narrow one, and the saturating pack of such a group.
#pragma once

#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT::simd {

template <class V, int K>
struct Group {
    static constexpr int lanes = K * V::lanes;
    using Scalar = typename V::Scalar;
    V v[K];

    [[gnu::always_inline]] static Group load(const Scalar* p) {
        Group g;
        unroll<K>([&](auto k) { g.v[k] = V::load(p + k * V::lanes); });
        return g;
    }
    // n elements, 0 <= n <= lanes; the lanes behind them become 0.
    [[gnu::always_inline]] static Group loadPartial(const Scalar* p, int n) {
        Group g;
        unroll<K>([&](auto k) {
            const int rest = within(n - k * V::lanes);
            g.v[k] = rest > 0 ? V::loadPartial(p + k * V::lanes, rest) : V::zero();
        });
        return g;
    }
    [[gnu::always_inline]] void store(Scalar* p) const {
        unroll<K>([&](auto k) { v[k].store(p + k * V::lanes); });
    }
    [[gnu::always_inline]] void storePartial(Scalar* p, int n) const {
        unroll<K>([&](auto k) {
            const int rest = within(n - k * V::lanes);
            if (rest > 0) v[k].storePartial(p + k * V::lanes, rest);
        });
    }

    // op on each vector.
    template <class Op>
    [[gnu::always_inline]] auto each(Op op) const {
        Group<decltype(op(v[0])), K> g;
        unroll<K>([&](auto k) { g.v[k] = op(v[k]); });
        return g;
    }

private:
    static int within(int n) { return n < V::lanes ? n : V::lanes; }
};

template <int N>
[[gnu::always_inline]] inline Vec<std::int32_t, N> signedLanes(Vec<std::uint32_t, N> a) {
    return lanesAs<std::int32_t>(a);
}
template <class V>
[[gnu::always_inline]] inline V signedLanes(V a) {
    return a;
}
template <class V, int K>
[[gnu::always_inline]] inline auto toFloat(Group<V, K> g) {
    return g.each([](V a) __attribute__((always_inline)) { return toFloat(a); });
}

// A group as vectors that integer operations have at this level.
template <class V, int K>
[[gnu::always_inline]] inline auto integerWidth(Group<V, K> g) {
    if constexpr (V::bytes <= kIntBytes) {
        return g;
    } else {
        Group<Vec<typename V::Scalar, V::lanes / 2>, 2 * K> halves;
        unroll<K>([&](auto k) {
            halves.v[2 * k] = low(g.v[k]);
            halves.v[2 * k + 1] = high(g.v[k]);
        });
        return halves;
    }
}

// 32-bit lanes to 8 or 16 bits; what does not fit becomes the nearer end of the range.
template <std::signed_integral To, class V, int K>
[[gnu::always_inline]] inline auto narrowSaturated(Group<V, K> group) {
    const auto g = integerWidth(group);
    if constexpr (sizeof(To) == 2)
        return narrowSaturated<To>(g.v[0], g.v[1]);
    else
        return narrowSaturated<To>(narrowSaturated<std::int16_t>(g.v[0], g.v[1]),
                                   narrowSaturated<std::int16_t>(g.v[2], g.v[3]));
}

}  // namespace zep::ZEP_VARIANT::simd
