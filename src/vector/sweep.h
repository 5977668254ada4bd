// A walk over vectors whose destinations are apart from the sources: whole(n) makes the `lanes`
// elements from n on, rest(n, count) fewer. The last step overlaps the one before it and makes
// some elements again, with the same result.
#pragma once

#include <cstddef>

#include "simd/unroll.h"

namespace zep::ZEP_VARIANT {

template <int lanes, int kUnroll = 4, class Whole, class Rest>
[[gnu::always_inline]] inline void sweep(std::ptrdiff_t len, Whole whole, Rest rest) {
    if (len < lanes) return rest(std::ptrdiff_t{0}, static_cast<int>(len));
    std::ptrdiff_t n = 0;
    for (; n + kUnroll * lanes <= len; n += kUnroll * lanes)
        simd::unroll<kUnroll>([&](auto k) { whole(n + k * lanes); });
    if constexpr (kUnroll > 1)
        for (; n + lanes <= len; n += lanes) whole(n);
    if (n < len) whole(len - lanes);
}

}  // namespace zep::ZEP_VARIANT
