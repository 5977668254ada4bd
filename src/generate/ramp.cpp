// Straight lines. The index is converted to the type of the line, so that each element stands for
// itself, wherever it is.
#include <algorithm>
#include <cstdint>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT {
namespace {

using Indices = simd::Vec<std::int32_t, simd::Native<float>::lanes>;

alignas(64) constexpr std::int32_t kFirstIndices[16] = {0, 1, 2,  3,  4,  5,  6,  7,
                                                        8, 9, 10, 11, 12, 13, 14, 15};

// dst[n] = line(n), line taking as many indices as a vector of floats has lanes. The first vector
// brings dst to a boundary and the last one ends with it: both overlap what is beside them.
template <class T, class Line>
[[gnu::always_inline]] inline ZepStatus checkedLine(T* dst, int len, Line line) {
    if (const ZepStatus s = checkVectors(len, dst); s != zepStsNoErr) return s;
    constexpr int L = Indices::lanes;
    const Indices first = Indices::load(kFirstIndices);
    const auto at = [=](std::ptrdiff_t n) __attribute__((always_inline)) {
        return line(first + static_cast<std::int32_t>(n));
    };
    if (len < L) {
        at(0).storePartial(dst, len);
        return zepStsNoErr;
    }
    at(0).store(dst);
    const auto elements =
        static_cast<std::ptrdiff_t>(reinterpret_cast<std::uintptr_t>(dst) / sizeof(T));
    const std::ptrdiff_t last = len - L;
    std::ptrdiff_t n = L - (elements & (L - 1));
    for (; n + 3 * L < last; n += 4 * L)
        simd::unroll<4>([&](auto k) { at(n + k * L).store(dst + n + k * L); });
    for (; n < last; n += L) at(n).store(dst + n);
    at(last).store(dst + last);
    return zepStsNoErr;
}

template <class V>
[[gnu::always_inline]] inline V roundHalfAway(V x) {
    const V half = V::broadcast(0.5);
    const V rounded = select(x > V::zero(), x + half, x - half);
    // What is below the range, and NaN, converts to the lowest integer by itself.
    return min(V::broadcast(2147483647.0), rounded);
}

auto lineOfFloats(Zep32f offset, Zep32f slope) {
    return [=](auto n) { return toFloat(n) * slope + offset; };
}

}  // namespace

ZepStatus zepsVectorRamp_32f(Zep32f* pDst, int len, Zep32f offset, Zep32f slope) {
    return checkedLine(pDst, len, lineOfFloats(offset, slope));
}
ZepStatus zepsVectorSlope_32f(Zep32f* pDst, int len, Zep32f offset, Zep32f slope) {
    return checkedLine(pDst, len, lineOfFloats(offset, slope));
}

ZepStatus zepsVectorRamp_32s(Zep32s* pDst, int len, Zep32f offset, Zep32f slope) {
    return checkedLine(pDst, len, [line = lineOfFloats(offset, slope)](auto n) {
        const auto t = line(n);
        return toIntTruncated(roundHalfAway(widenLow(t)), roundHalfAway(widenHigh(t)));
    });
}
ZepStatus zepsVectorSlope_32s(Zep32s* pDst, int len, Zep64f offset, Zep64f slope) {
    return checkedLine(pDst, len, [=](auto n) {
        return toIntTruncated(roundHalfAway(toDoubleLow(n) * slope + offset),
                              roundHalfAway(toDoubleHigh(n) * slope + offset));
    });
}

}  // namespace zep::ZEP_VARIANT
