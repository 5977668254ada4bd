// Scaling of integer totals: division by a power of two or by any number, rounded to nearest, ties
// to even, and saturated to 32 bits.
#pragma once

#include <cstdint>

namespace zep::ZEP_VARIANT {

inline std::int32_t saturateTo32(std::int64_t s) {
    return s > INT32_MAX ? INT32_MAX : s < INT32_MIN ? INT32_MIN : static_cast<std::int32_t>(s);
}

// s * 2^-scaleFactor, -31 <= scaleFactor <= 63.
inline std::int32_t scaleTotal(std::int64_t s, int scaleFactor) {
    if (scaleFactor <= 0)
        return saturateTo32(std::int64_t{saturateTo32(s)} * (std::int64_t{1} << -scaleFactor));
    // The floor and what is above it, which has no room to overflow.
    const std::int64_t floor = s >> scaleFactor;
    const std::uint64_t half = std::uint64_t{1} << (scaleFactor - 1);
    const std::uint64_t above = static_cast<std::uint64_t>(s) & (2 * half - 1);
    const bool up = above > half || (above == half && (floor & 1) != 0);
    return saturateTo32(floor + up);
}

// s / divisor, 0 < divisor < 2^62.
inline std::int64_t divideRounded(std::int64_t s, std::int64_t divisor) {
    const auto d = static_cast<std::uint64_t>(divisor);
    const std::uint64_t magnitude =
        s < 0 ? -static_cast<std::uint64_t>(s) : static_cast<std::uint64_t>(s);
    std::uint64_t q = magnitude / d;
    const std::uint64_t twice = 2 * (magnitude % d);
    if (twice > d)
        ++q;
    else if (twice == d)
        q += q & 1;
    return s < 0 ? -static_cast<std::int64_t>(q) : static_cast<std::int64_t>(q);
}

}  // namespace zep::ZEP_VARIANT
