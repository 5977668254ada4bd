// Accumulators of the largest and the smallest element.
//
// The element comes first in each comparison: min and max give their second operand where either is
// a not-a-number, so one among the elements is passed over. The running value starts as an element,
// and an infinity or the end of a range needs no special value below it.
#pragma once

#include "simd/vec.h"

namespace zep::ZEP_VARIANT {

template <class V>
struct Largest {
    V value;
    [[gnu::always_inline]] void add(V x) { value = max(x, value); }
    [[gnu::always_inline]] void merge(const Largest& other) { add(other.value); }
    typename V::Scalar reduced() const { return reduceMax(value); }
    // Lanes of a that are strictly ahead of b.
    static auto ahead(V a, V b) { return a > b; }
};

template <class V>
struct Smallest {
    V value;
    [[gnu::always_inline]] void add(V x) { value = min(x, value); }
    [[gnu::always_inline]] void merge(const Smallest& other) { add(other.value); }
    typename V::Scalar reduced() const { return reduceMin(value); }
    static auto ahead(V a, V b) { return a < b; }
};

template <class V>
struct Extremes {
    Smallest<V> smallest;
    Largest<V> largest;
    [[gnu::always_inline]] void add(V x) {
        simd::keepInRegister(x);
        smallest.add(x);
        largest.add(x);
    }
    [[gnu::always_inline]] void merge(const Extremes& other) {
        smallest.merge(other.smallest);
        largest.merge(other.largest);
    }
};

}  // namespace zep::ZEP_VARIANT
