// Heap sort: slow, but never slower than len * log2(len) steps. What a quicksort falls back on.
#pragma once

#include <cstddef>
#include <cstdint>

#include "simd/vec_fwd.h"

namespace zep::ZEP_VARIANT {

inline void siftDown(std::int32_t* p, std::ptrdiff_t root, std::ptrdiff_t len) {
    const std::int32_t x = simd::readAny(p + root);
    while (true) {
        std::ptrdiff_t child = 2 * root + 1;
        if (child >= len) break;
        if (child + 1 < len && simd::readAny(p + child) < simd::readAny(p + child + 1)) ++child;
        if (simd::readAny(p + child) <= x) break;
        simd::writeAny(p + root, simd::readAny(p + child));
        root = child;
    }
    simd::writeAny(p + root, x);
}

inline void heapSort(std::int32_t* p, std::ptrdiff_t len) {
    for (std::ptrdiff_t root = len / 2 - 1; root >= 0; --root) siftDown(p, root, len);
    for (std::ptrdiff_t last = len - 1; last > 0; --last) {
        const std::int32_t largest = simd::readAny(p), x = simd::readAny(p + last);
        simd::writeAny(p, x), simd::writeAny(p + last, largest);
        siftDown(p, 0, last);
    }
}

}  // namespace zep::ZEP_VARIANT
