// Fixed-point arithmetic of the speech blocks: 16-bit words and 32-bit sums that saturate, shifts
// by any count, and the normaliser. Sums stand in 64 bits until they are limited.
#pragma once

#include <cstdint>
#include <limits>

namespace zep::ZEP_VARIANT {

constexpr std::int32_t sat32(std::int64_t v) {
    constexpr std::int64_t lo = std::numeric_limits<std::int32_t>::min(),
                           hi = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(v < lo ? lo : v > hi ? hi : v);
}

constexpr std::int16_t sat16(std::int64_t v) {
    return static_cast<std::int16_t>(v < -32768 ? -32768 : v > 32767 ? 32767 : v);
}

// The high word of a 32-bit value, to nearest; only the upper limit can be passed.
constexpr std::int16_t round16(std::int32_t v) { return sat16((std::int64_t{v} + 0x8000) >> 16); }

// v >> count for count >= 0, of which anything from 63 on leaves the sign.
constexpr std::int64_t shiftRight(std::int64_t v, int count) {
    return v >> (count < 63 ? count : 63);
}

// sat32(v * 2^count) for any count of either sign; a negative one rounds down.
constexpr std::int32_t shiftLeftSat32(std::int64_t v, int count) {
    if (count <= 0) return sat32(shiftRight(v, -count));
    if (count > 31) count = 31;  // leaves nothing but 0 and the limits
    return sat32(std::int64_t{sat32(v)} * (std::int64_t{1} << count));
}

constexpr int bitLength(std::uint32_t v) { return v == 0 ? 0 : 32 - __builtin_clz(v); }

// The count of left shifts, negative for right ones, that makes v fit `bits` bits with no spare
// sign bit: 2^(bits-2) <= v < 2^(bits-1), or -2^(bits-1) <= v < -2^(bits-2). For 0: bits - 1.
constexpr int normShift(std::int64_t v, int bits) {
    const auto m = static_cast<std::uint64_t>(v < 0 ? ~v : v);
    return bits - 1 - (m == 0 ? 0 : 64 - __builtin_clzll(m));
}

// The normaliser's shift of a vector is that of its element of largest magnitude.
struct Extremes {
    std::int32_t low = std::numeric_limits<std::int32_t>::max();
    std::int32_t high = std::numeric_limits<std::int32_t>::min();

    constexpr void take(std::int32_t v) {
        if (v < low) low = v;
        if (v > high) high = v;
    }
    constexpr std::int32_t peak() const { return low < -std::int64_t{high} ? low : high; }
};

// Quotient of a division of normalised words.
struct Quotient {
    std::int16_t word;
    int exponent;  // the value is word / 2^exponent
};

// numerator / 2^numeratorExponent over denominator / 2^denominatorExponent; the denominator is
// not 0. Fifteen steps of restoring division with rounding, strict comparisons (G.728 Annex G).
constexpr Quotient divideNormalised(int numerator, int numeratorExponent, int denominator,
                                    int denominatorExponent) {
    int n = numerator < 0 ? -numerator : numerator;
    const int d = denominator < 0 ? -denominator : denominator;
    int exponent = numeratorExponent - denominatorExponent + 14;
    if (n < d) n *= 2, ++exponent;
    int q = 0;
    for (int step = 0; step < 15; ++step) {
        q *= 2;
        if (n > d) ++q, n -= d;
        n *= 2;
    }
    if (n > d) ++q;
    return {sat16((numerator < 0) != (denominator < 0) ? -q : q), exponent};
}

}  // namespace zep::ZEP_VARIANT
