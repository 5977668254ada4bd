// Tables of 16 bytes in a register, and products of bytes.
#pragma once

#include "simd/convert.h"

namespace zep::ZEP_VARIANT::simd {

// One instruction looks up all bytes of a register; elsewhere a table in memory serves better, and
// lookUp and the products of bytes do not compile.
inline constexpr bool kLooksUpBytes = kHasSsse3;

// The 16 bytes at p in every 16 of the vector.
template <class V>
[[gnu::always_inline]] inline V loadTable(const typename V::Scalar* p) {
    Vec<typename V::Scalar, 16> table = Vec<typename V::Scalar, 16>::load(p);
    if constexpr (V::bytes == 16)
        return table;
    else if constexpr (V::bytes == 32)
        return {bitsAs<typename V::R>(_mm256_broadcastsi128_si256(asInts(table.v)))};
    else
        return {bitsAs<typename V::R>(_mm512_broadcast_i32x4(asInts(table.v)))};
}

// table[index], byte by byte; an index is 0 to 15.
template <Lane T, int N>
requires(sizeof(T) == 1)
    [[gnu::always_inline]] inline Vec<T, N> lookUp(Vec<T, N> table, Vec<std::uint8_t, N> index) {
    using R = Register<T, N>;
    const auto x = asInts(table.v), i = asInts(index.v);
    if constexpr (N == 16)
        return {bitsAs<R>(_mm_shuffle_epi8(x, i))};
    else if constexpr (N == 32)
        return {bitsAs<R>(_mm256_shuffle_epi8(x, i))};
    else
        return {bitsAs<R>(_mm512_shuffle_epi8(x, i))};
}

// Sums of two neighbouring products of an unsigned and a signed byte, saturated to 16 bits.
template <int N>
[[gnu::always_inline]] inline Vec<std::int16_t, N / 2> mulAddPairs(Vec<std::uint8_t, N> a,
                                                                   Vec<std::int8_t, N> b) {
    using R = Register<std::int16_t, N / 2>;
    const auto x = asInts(a.v), y = asInts(b.v);
    if constexpr (N == 16)
        return {bitsAs<R>(_mm_maddubs_epi16(x, y))};
    else if constexpr (N == 32)
        return {bitsAs<R>(_mm256_maddubs_epi16(x, y))};
    else
        return {bitsAs<R>(_mm512_maddubs_epi16(x, y))};
}

// The 8-byte parts of the first and of the second half in turn. Of vectors so prepared, zipLow and
// zipHigh go on in the order of memory.
template <Lane T, int N>
[[gnu::always_inline]] inline Vec<T, N> alternateHalves(Vec<T, N> a) {
    const auto parts = bitsIn<std::uint64_t>(a);
    constexpr int count = parts.lanes;
    return bitsIn<T>(
        shuffle(parts, parts, [](int k) { return k / 2 + (k % 2 == 0 ? 0 : count / 2); }));
}

}  // namespace zep::ZEP_VARIANT::simd
