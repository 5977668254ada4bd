// Interleaved pairs taken apart into vectors of real and of imaginary parts in the order of memory,
// and put together again. Where both ends are interleaved simd::Complex is cheaper: its lanes may
// stand in any order.
#pragma once

#include "simd/vec.h"

namespace zep::ZEP_VARIANT::simd {

template <class V>
struct Dealt {
    using Scalar = typename V::Scalar;
    static constexpr int lanes = V::lanes;
    V re, im;

    // lanes pairs from 2 * lanes scalars.
    [[gnu::always_inline]] static Dealt load(const Scalar* p) {
        // Loads put halves of vectors where they belong for less than shuffles across the middle do.
        if constexpr (V::bytes == 32 && sizeof(Scalar) == 4) {
            using H = simd::Half<V>;
            constexpr int h = H::lanes;
            const V a = join(H::load(p), H::load(p + lanes));
            const V b = join(H::load(p + h), H::load(p + lanes + h));
            return {shuffle(a, b, [](int k) { return evenWithin(k); }),
                    shuffle(a, b, [](int k) { return evenWithin(k) + 1; })};
        } else {
            return loadForOne(p);
        }
    }
    // The same, where only one of the parts is used.
    [[gnu::always_inline]] static Dealt loadForOne(const Scalar* p) {
        return split(V::load(p), V::load(p + lanes));
    }
    [[gnu::always_inline]] void store(Scalar* p) const {
        interleaveFront(re, im).store(p);
        interleaveBack(re, im).store(p + lanes);
    }
    // n pairs, 0 <= n < lanes; the parts of the others become 0.
    [[gnu::always_inline]] static Dealt loadPartial(const Scalar* p, int n) {
        if (2 * n <= lanes) return split(V::loadPartial(p, 2 * n), V::zero());
        return split(V::load(p), V::loadPartial(p + lanes, 2 * n - lanes));
    }
    [[gnu::always_inline]] void storePartial(Scalar* p, int n) const {
        if (2 * n <= lanes) return interleaveFront(re, im).storePartial(p, 2 * n);
        interleaveFront(re, im).store(p);
        interleaveBack(re, im).storePartial(p + lanes, 2 * n - lanes);
    }

private:
    // For lane k, in its 16 bytes: the even lanes of a, then those of b.
    static constexpr int evenWithin(int k) {
        constexpr int s = 16 / sizeof(Scalar);
        return (k % s < s / 2 ? 0 : lanes) + k / s * s + k % s * 2 % s;
    }
    [[gnu::always_inline]] static Dealt split(V front, V back) {
        return {allEvens(front, back), allOdds(front, back)};
    }
};

}  // namespace zep::ZEP_VARIANT::simd
