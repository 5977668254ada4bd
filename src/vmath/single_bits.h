// Single precision numbers by their bits.
#pragma once

#include <cstdint>

#include "zepcore.h"

namespace zep::ZEP_VARIANT::vmath {

[[gnu::always_inline]] inline std::uint32_t bitsOf(Zep32f x) {
    return __builtin_bit_cast(std::uint32_t, x);
}
[[gnu::always_inline]] inline std::uint64_t bitsOf(double x) {
    return __builtin_bit_cast(std::uint64_t, x);
}
[[gnu::always_inline]] inline Zep32f floatOf(std::uint32_t bits) {
    return __builtin_bit_cast(Zep32f, bits);
}
[[gnu::always_inline]] inline double doubleOf(std::uint64_t bits) {
    return __builtin_bit_cast(double, bits);
}

inline constexpr Zep32f kInfinity = __builtin_inff();
// What an invalid operation gives: the quiet NaN with the sign bit set.
inline constexpr std::uint32_t kInvalidBits = 0xFFC00000;
[[gnu::always_inline]] inline Zep32f invalid() { return floatOf(kInvalidBits); }

[[gnu::always_inline]] inline bool isNan(Zep32f x) { return x != x; }
[[gnu::always_inline]] inline bool isFinite(Zep32f x) {
    return (bitsOf(x) & 0x7F800000) != 0x7F800000;
}
[[gnu::always_inline]] inline bool isNegative(Zep32f x) { return bitsOf(x) >> 31 != 0; }
// A NaN made quiet, its sign and payload kept.
[[gnu::always_inline]] inline Zep32f quiet(Zep32f nan) { return floatOf(bitsOf(nan) | 0x00400000); }

}  // namespace zep::ZEP_VARIANT::vmath
