// Packed 24-bit samples: 3 bytes each, least significant first, in vectors of 32-bit lanes.
//
// Reading: a vector's bytes are loaded, no others, and a byte shuffle puts each sample into the upper
// three bytes of its lane, from where an arithmetic shift brings it down with its sign. Writing: as
// many lanes as a byte vector has bytes give exactly three such vectors.
#pragma once

#include "simd/group.h"

namespace zep::ZEP_VARIANT::simd {

struct Packed24 {
    std::uint8_t bytes[3];
};

namespace detail {

// 12 bytes, from byte `at` of x on, into the upper three bytes of each lane.
template <int at>
[[gnu::always_inline]] inline __m128i spread24(__m128i x) {
    if constexpr (kHasSsse3) {
        constexpr auto b = [](int k) {
            return static_cast<char>(k % 4 == 0 ? -1 : at + k / 4 * 3 + k % 4 - 1);
        };
        return _mm_shuffle_epi8(
            x, _mm_setr_epi8(b(0), b(1), b(2), b(3), b(4), b(5), b(6), b(7), b(8), b(9), b(10),
                             b(11), b(12), b(13), b(14), b(15)));
    } else {
        // Lane k moves up by k + 1 bytes.
        if constexpr (at > 0) x = _mm_srli_si128(x, at);
        const __m128i lane = _mm_setr_epi32(-256, 0, 0, 0);
        return _mm_or_si128(
            _mm_or_si128(_mm_and_si128(_mm_slli_si128(x, 1), lane),
                         _mm_and_si128(_mm_slli_si128(x, 2), _mm_slli_si128(lane, 4))),
            _mm_or_si128(_mm_and_si128(_mm_slli_si128(x, 3), _mm_slli_si128(lane, 8)),
                         _mm_and_si128(_mm_slli_si128(x, 4), _mm_slli_si128(lane, 12))));
    }
}

// The 12 bytes of four lanes' lower three bytes, put together from byte 0 on; the last 4 are zero.
[[gnu::always_inline]] inline __m128i gather24(__m128i x) {
    if constexpr (kHasSsse3) {
        return _mm_shuffle_epi8(
            x, _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1));
    } else {
        const __m128i lane = _mm_setr_epi32(0xFFFFFF, 0, 0, 0);
        const auto part = [&](auto k) {
            return _mm_srli_si128(_mm_and_si128(x, _mm_slli_si128(lane, 4 * k)), k);
        };
        using I0 = std::integral_constant<int, 0>;
        using I1 = std::integral_constant<int, 1>;
        using I2 = std::integral_constant<int, 2>;
        using I3 = std::integral_constant<int, 3>;
        return _mm_or_si128(_mm_or_si128(part(I0{}), part(I1{})),
                            _mm_or_si128(part(I2{}), part(I3{})));
    }
}

}  // namespace detail

// kSamples24 samples as floats take: at least 8, so that two 16-byte loads, which overlap, read
// exactly their bytes.
inline constexpr int kSamples24 = kFloatBytes / 4 > 8 ? kFloatBytes / 4 : 8;

namespace detail {

// The order of spread bytes for 16 lanes; byte 63 of the source is zero.
struct Spread24Order {
    alignas(64) std::uint8_t at[64];
};
constexpr Spread24Order makeSpread24Order() {
    Spread24Order t{};
    for (int k = 0; k < 64; ++k)
        t.at[k] = static_cast<std::uint8_t>(k % 4 == 0 ? 63 : k / 4 * 3 + k % 4 - 1);
    return t;
}
inline constexpr Spread24Order kSpread24Order = makeSpread24Order();

}  // namespace detail

template <int N = kSamples24>
[[gnu::always_inline]] inline auto load24(const Packed24* p) {
    const std::uint8_t* const bytes = p->bytes;
    if constexpr (N == 16) {
        const auto x = _mm512_maskz_loadu_epi8(0xFFFFFFFFFFFF, bytes);
        const auto order = _mm512_load_si512(detail::kSpread24Order.at);
        using V = Vec<std::int32_t, N>;
        return V{bitsAs<typename V::R>(_mm512_permutexvar_epi8(order, x))} >> 8;
    } else {
        using V = Vec<std::int32_t, N / 2>;
        const auto x = _mm_loadu_si128(reinterpret_cast<const __m128i_u*>(bytes));
        const auto y = _mm_loadu_si128(reinterpret_cast<const __m128i_u*>(bytes + 8));
        const auto a = V{bitsAs<typename V::R>(detail::spread24<0>(x))} >> 8;
        const auto b = V{bitsAs<typename V::R>(detail::spread24<4>(y))} >> 8;
        if constexpr (kHasAvx)
            return join(a, b);
        else
            return Group<V, 2>{{a, b}};
    }
}
// n samples, 0 <= n < kSamples24; the lanes behind them become 0.
[[gnu::always_inline]] inline auto loadPartial24(const Packed24* p, int n) {
    using B = Vec<std::uint8_t, 16>;
    Packed24 samples[kSamples24];
    constexpr int kVectors = 3 * kSamples24 / 16 + 1;
    std::uint8_t bytes[16 * kVectors];
    Group<B, kVectors>::loadPartial(p->bytes, 3 * n).store(bytes);
    __builtin_memcpy(samples, bytes, sizeof samples);
    return load24(samples);
}

// The lower three bytes of so many lanes.
inline constexpr int kLanes24 = kIntBytes;

struct PackedVectors24 : Group<Vec<std::uint8_t, kLanes24>, 3> {
    using Base = Group<Vec<std::uint8_t, kLanes24>, 3>;
    [[gnu::always_inline]] void store(Packed24* p) const { Base::store(p->bytes); }
    [[gnu::always_inline]] void storePartial(Packed24* p, int n) const {
        Base::storePartial(p->bytes, 3 * n);
    }
};

template <class V, int K>
requires(K* V::lanes == kLanes24) [[gnu::always_inline]] inline PackedVectors24
    pack24(Group<V, K> group) {
    const auto g = integerWidth(group);
    using B = Vec<std::uint8_t, kLanes24>;
    const auto in = [&](auto k) { return bitsIn<std::uint8_t>(g.v[k]); };
    if constexpr (kHasAvx512) {
        // Byte k of all 192 is byte k / 3 * 4 + k % 3 of the four vectors: of two neighbours each.
        return {
            {{shuffle(in(std::integral_constant<int, 0>{}), in(std::integral_constant<int, 1>{}),
                      [](int k) { return k / 3 * 4 + k % 3; }),
              shuffle(in(std::integral_constant<int, 1>{}), in(std::integral_constant<int, 2>{}),
                      [](int k) { return (k + 64) / 3 * 4 + (k + 64) % 3 - 64; }),
              shuffle(in(std::integral_constant<int, 2>{}), in(std::integral_constant<int, 3>{}),
                      [](int k) { return (k + 128) / 3 * 4 + (k + 128) % 3 - 128; })}}};
    } else if constexpr (kHasAvx2) {
        // 24 bytes of each, six 4-byte pieces, turned to where they stand in the result.
        const auto pieces =
            _mm256_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1, 0, 1, 2, 4, 5,
                             6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
        const auto turned = [&](auto k, __m256i order) {
            return _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(asInts(g.v[k].v), pieces),
                                               order);
        };
        const auto a =
            turned(std::integral_constant<int, 0>{}, _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7));
        const auto b =
            turned(std::integral_constant<int, 1>{}, _mm256_setr_epi32(2, 4, 5, 6, 3, 7, 0, 1));
        const auto c =
            turned(std::integral_constant<int, 2>{}, _mm256_setr_epi32(5, 6, 3, 7, 0, 1, 2, 4));
        const auto d =
            turned(std::integral_constant<int, 3>{}, _mm256_setr_epi32(3, 7, 0, 1, 2, 4, 5, 6));
        const auto out = [](__m256i x) { return B{bitsAs<typename B::R>(x)}; };
        return {{{out(_mm256_blend_epi32(a, b, 0xC0)), out(_mm256_blend_epi32(b, c, 0xF0)),
                  out(_mm256_blend_epi32(c, d, 0xFC))}}};
    } else {
        const auto a = detail::gather24(asInts(g.v[0].v)), b = detail::gather24(asInts(g.v[1].v));
        const auto c = detail::gather24(asInts(g.v[2].v)), d = detail::gather24(asInts(g.v[3].v));
        const auto out = [](__m128i x) { return B{bitsAs<typename B::R>(x)}; };
        return {{{out(_mm_or_si128(a, _mm_slli_si128(b, 12))),
                  out(_mm_or_si128(_mm_srli_si128(b, 4), _mm_slli_si128(c, 8))),
                  out(_mm_or_si128(_mm_srli_si128(c, 8), _mm_slli_si128(d, 4)))}}};
    }
}

}  // namespace zep::ZEP_VARIANT::simd
