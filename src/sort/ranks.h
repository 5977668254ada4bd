// Sorting short arrays by counting: where an element goes is how many others stand before it.
//
// Each element is compared with all the others, a block of vectors at a time. That takes n * n / lanes
// steps without a branch that could be foreseen wrongly, which up to some hundred elements is less than
// n * log2(n) steps with one. Counts are kept in the type of the elements, whose lanes the results of
// the comparisons fit.
#pragma once

#include <cstddef>
#include <limits>

#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT {

// Adds to the counts of a block of elements those of x[from] to x[to - 1] that are before them.
template <int kVectors, class V, class Before>
[[gnu::always_inline]] inline void countBefore(const typename V::Scalar* x, int from, int to,
                                               const V (&block)[kVectors], V (&counts)[kVectors],
                                               Before before) {
    const V one = V::broadcast(1);
    for (int n = from; n < to; ++n) {
        const V other = V::broadcast(x[n]);
        simd::unroll<kVectors>([&](auto k) __attribute__((always_inline)) {
            counts[k] = counts[k] + keepIf(before(other, block[k]), one);
        });
    }
}

// visit(number of vectors as a constant, first element), for blocks that cover len elements.
template <class V, class Visit>
[[gnu::always_inline]] inline void forRankBlocks(int len, Visit visit) {
    int n = 0;
    for (; n + 3 * V::lanes < len; n += 4 * V::lanes) visit(std::integral_constant<int, 4>{}, n);
    for (; n + V::lanes < len; n += 2 * V::lanes) visit(std::integral_constant<int, 2>{}, n);
    if (n < len) visit(std::integral_constant<int, 1>{}, n);
}

}  // namespace zep::ZEP_VARIANT
