// Complex arithmetic on vectors, in the two layouts that kernels use.
//
// Interleaved: one vector holds pairs (re, im), as memory does; best for sums and products, which
// need no split. Complex<V>: real and imaginary parts in vectors of their own, for formulas that
// treat the parts differently. Its lanes stand in the order that costs least on this width, the
// same for every vector: lane-wise work needs no more.
#pragma once

#include "simd/vec.h"

namespace zep::ZEP_VARIANT::simd {

// Products of interleaved pairs: (ac - bd, bc + ad) for a + ib times c + id.
template <class V>
inline V complexMul(V ab, V cd) {
    // Each operand is used twice or three times. Loads are what limits this product, so the
    // compiler must not fold a load into each use.
    keepInRegister(ab);
    keepInRegister(cd);
    return subAdd(ab * dupEven(cd), swapPairs(ab) * dupOdd(cd));
}

template <class V>
struct Complex {
    using Scalar = typename V::Scalar;
    static constexpr int lanes = V::lanes;
    V re, im;

    // lanes pairs from 2 * lanes scalars.
    static Complex load(const Scalar* p) { return split(V::load(p), V::load(p + lanes)); }
    void store(Scalar* p) const {
        zipLow(re, im).store(p);
        zipHigh(re, im).store(p + lanes);
    }

    // n pairs, 0 <= n <= lanes; the parts of the others become fill.
    static Complex loadPartial(const Scalar* p, int n, Scalar fill) {
        if (2 * n <= lanes) return split(V::loadPartial(p, 2 * n, fill), V::broadcast(fill));
        return split(V::load(p), V::loadPartial(p + lanes, 2 * n - lanes, fill));
    }
    void storePartial(Scalar* p, int n) const {
        if (2 * n <= lanes) return zipLow(re, im).storePartial(p, 2 * n);
        zipLow(re, im).store(p);
        zipHigh(re, im).storePartial(p + lanes, 2 * n - lanes);
    }

    // From two interleaved vectors.
    static Complex split(V low, V high) { return {evens(low, high), odds(low, high)}; }
};

}  // namespace zep::ZEP_VARIANT::simd
