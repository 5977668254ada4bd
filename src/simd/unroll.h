// Repetition with a constant count and a constant index. At -O2 the compiler leaves short counted
// loops rolled, and an array of vectors that such a loop fills goes through memory; here it stays
// in registers.
#pragma once

#include <type_traits>
#include <utility>

namespace zep::ZEP_VARIANT::simd {

// f(0), f(1), ..., f(kCount - 1), in this order; the index converts to a constant expression.
template <int kCount, class F>
[[gnu::always_inline]] inline void unroll(F f) {
    [&]<int... k>(std::integer_sequence<int, k...>) __attribute__((always_inline)) {
        (f(std::integral_constant<int, k>{}), ...);
    }
    (std::make_integer_sequence<int, kCount>{});
}

}  // namespace zep::ZEP_VARIANT::simd
