// Reductions: vectors folded to one value.
//
// A chain of dependent additions or maxima runs at the latency of one operation, several times its
// throughput. So a fold keeps kCount accumulators that do not depend on each other: vector k of
// each step goes to accumulator k, what is left at the end goes to them in the same order, and they
// are merged by halves. This order, and with it the rounding of a sum, follows from the length
// alone: not from addresses, nor from the values.
//
// An accumulator is a structure with merge(other). All start from the same one, so that it must not
// count when it is merged several times: zeros of a sum, or any element of the vector for a maximum.
// Loads are what limits most of them: where one uses an element twice it keeps it in a register, or
// the compiler would load it for each use.
#pragma once

#include <cstddef>
#include <utility>

#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT {

namespace detail {

template <class A, int kCount>
struct Copies {
    A a[kCount];
};
// Each one copied from a value: a loop over them, or a constructor, would fill memory first.
template <class A, int... k>
[[gnu::always_inline]] inline Copies<A, sizeof...(k)> copies(A start,
                                                             std::integer_sequence<int, k...>) {
    return {{(static_cast<void>(k), start)...}};
}

}  // namespace detail

// whole(accumulator, n) takes the `lanes` elements from n on, rest(accumulator, n, count) the last
// count < lanes.
template <int kCount, int lanes, class A, class Whole, class Rest>
[[gnu::always_inline]] inline A fold(std::ptrdiff_t len, A start, Whole whole, Rest rest) {
    auto accumulators = detail::copies(start, std::make_integer_sequence<int, kCount>{});
    A(&a)[kCount] = accumulators.a;
    std::ptrdiff_t n = 0;
    for (; n + kCount * lanes <= len; n += kCount * lanes)
        simd::unroll<kCount>([&](auto k) { whole(a[k], n + k * lanes); });
    simd::unroll<kCount - 1>([&](auto k) {
        if (n + lanes > len) return;
        whole(a[k], n);
        n += lanes;
    });
    if (n < len) rest(a[kCount - 1], n, static_cast<int>(len - n));
    if constexpr (kCount > 4) simd::unroll<kCount - 4>([&](auto k) { a[k].merge(a[k + 4]); });
    if constexpr (kCount > 2) simd::unroll<2>([&](auto k) { a[k].merge(a[k + 2]); });
    if constexpr (kCount > 1) a[0].merge(a[1]);
    return a[0];
}

// The same for vectors of one type: accumulator.add(vector of each source), filled up with zeros.
template <int kCount, class A, class T, class... Src>
[[gnu::always_inline]] inline A foldSum(std::ptrdiff_t len, A start, const T* src,
                                        const Src*... more) {
    using V = simd::Native<T>;
    return fold<kCount, V::lanes>(
        len, start,
        [=](A & a, std::ptrdiff_t n)
            __attribute__((always_inline)) { a.add(V::load(src + n), V::load(more + n)...); },
        [=](A & a, std::ptrdiff_t n, int count) __attribute__((always_inline)) {
            a.add(V::loadPartial(src + n, count), V::loadPartial(more + n, count)...);
        });
}

// For folds that an element may enter twice: the last vector overlaps the one before it, and a
// vector shorter than that is filled up with `neutral`.
template <int kCount, class A, class T>
[[gnu::always_inline]] inline A foldExtreme(std::ptrdiff_t len, A start, T neutral, const T* src) {
    using V = simd::Native<T>;
    return fold<kCount, V::lanes>(
        len, start,
        [=](A & a, std::ptrdiff_t n) __attribute__((always_inline)) { a.add(V::load(src + n)); },
        [=](A & a, std::ptrdiff_t n, int count) __attribute__((always_inline)) {
            if (len >= V::lanes)
                a.add(V::load(src + len - V::lanes));
            else
                a.add(V::loadPartial(src + n, count, neutral));
        });
}

}  // namespace zep::ZEP_VARIANT
