// The radices of the passes in the order they run. The records of an object say how a length
// factorises; the passes join small factors, which saves a turn over the data for each that
// disappears.
#pragma once

#include <type_traits>

#include "simd/level.h"
#include "transform/dft_plan.h"

namespace zep::ZEP_VARIANT::dft {

// radix[0] is the first stage. At most one more than there are records.
struct Schedule {
    int count = 0;
    std::int32_t radix[kMaxFactors + 2] = {};  // 0 behind the last
};

// Two passes that a buffer of their own joins (dft_short.h).
constexpr int kMaxShortRadix = 16;
constexpr bool isShort(const std::int32_t* radix) {
    return radix[0] <= kMaxShortRadix && radix[1] <= kMaxShortRadix && radix[2] == 0;
}

// A pass of fewer columns than lanes takes a small radix, or one that is no product of two others:
// code that loads and stores in pieces is large.
constexpr bool joinsFewColumns(int radix) {
    return simd::kMaskedMemory || radix <= 8 || radix == 11 || radix == 13 || radix > 16;
}

template <class T>
Schedule scheduleOf(const Factors& factors);

// Calls f with the radix as a constant, where it has code of its own, else with 0.
template <class F>
[[gnu::always_inline]] inline void withRadix(int radix, F f) {
    using std::integral_constant;
    switch (radix) {
        case 2:
            return f(integral_constant<int, 2>{});
        case 3:
            return f(integral_constant<int, 3>{});
        case 4:
            return f(integral_constant<int, 4>{});
        case 5:
            return f(integral_constant<int, 5>{});
        case 6:
            return f(integral_constant<int, 6>{});
        case 7:
            return f(integral_constant<int, 7>{});
        case 8:
            return f(integral_constant<int, 8>{});
        case 9:
            return f(integral_constant<int, 9>{});
        case 10:
            return f(integral_constant<int, 10>{});
        case 11:
            return f(integral_constant<int, 11>{});
        case 12:
            return f(integral_constant<int, 12>{});
        case 13:
            return f(integral_constant<int, 13>{});
        case 14:
            return f(integral_constant<int, 14>{});
        case 15:
            return f(integral_constant<int, 15>{});
        case 16:
            return f(integral_constant<int, 16>{});
        default:
            return f(integral_constant<int, 0>{});
    }
}

}  // namespace zep::ZEP_VARIANT::dft
