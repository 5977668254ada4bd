// What scaled 32-bit operations share: saturation, and the shift to the left that saturates.
#pragma once

#include <cstdint>

#include "core/variant_exports.h"
#include "vector/convert.h"

namespace zep::ZEP_VARIANT::scaled {

// The end of the range on the side of x.
template <class V>
[[gnu::always_inline]] inline V limitBySign(V x) {
    return (x >> 31) ^ V::broadcast(0x7FFFFFFF);
}

// x * 2^n, saturated, 0 <= n <= 31. A count of 31 leaves 0 and the ends of the range alone, as every
// larger one does.
template <class V>
[[gnu::always_inline]] inline V shiftLeftSaturated(V x, int n) {
    const V shifted = x << n;
    return select(shifted >> n == x, shifted, limitBySign(x));
}
inline int leftCount(int scaleFactor) { return scaleFactor < -31 ? 31 : -scaleFactor; }

}  // namespace zep::ZEP_VARIANT::scaled
