// The lanes of a vector stored in two directions by a mask, as a partition in place needs it.
#pragma once

#include "simd/vec.h"

namespace zep::ZEP_VARIANT::simd {

namespace detail {

// For each mask of lanes the order that puts the unmasked ones first, four bits a lane.
template <int lanes>
struct PartitionOrders {
    std::uint32_t order[1 << lanes];
};
template <int lanes>
constexpr PartitionOrders<lanes> makePartitionOrders() {
    PartitionOrders<lanes> t{};
    for (std::uint32_t mask = 0; mask < 1u << lanes; ++mask) {
        std::uint32_t order = 0;
        int at = 0;
        for (const std::uint32_t wanted : {0u, 1u})
            for (std::uint32_t lane = 0; lane < lanes; ++lane)
                if ((mask >> lane & 1) == wanted) order |= lane << 4 * at++;
        t.order[mask] = order;
    }
    return t;
}
template <int lanes>
inline constexpr PartitionOrders<lanes> kPartitionOrders = makePartitionOrders<lanes>();

// The same for four lanes as the order of their bytes.
struct PartitionBytes {
    alignas(16) std::uint8_t order[16][16];
};
constexpr PartitionBytes makePartitionBytes() {
    PartitionBytes t{};
    for (unsigned mask = 0; mask < 16; ++mask)
        for (unsigned byte = 0; byte < 16; ++byte) {
            const std::uint32_t lane = makePartitionOrders<4>().order[mask] >> 4 * (byte / 4) & 15;
            t.order[mask][byte] = static_cast<std::uint8_t>(4 * lane + byte % 4);
        }
    return t;
}
inline constexpr PartitionBytes kPartitionBytes = makePartitionBytes();

// Four bits an entry: the narrow levels have no instruction for it.
template <int N>
[[gnu::always_inline]] inline int lanesIn(std::uint32_t mask) {
    if constexpr (N == 4)
        return static_cast<int>(0x4332322132212110u >> 4 * mask & 15);
    else
        return __builtin_popcount(mask);
}

}  // namespace detail

// Stores the lanes of x that are not in `right` from left on, the others up to rightEnd, and
// returns how many the latter are. Up to a whole vector is written from left on and before
// rightEnd; where these are the same place nothing is lost.
template <int N>
[[gnu::always_inline]] inline std::ptrdiff_t storePartitioned(Vec<std::int32_t, N> x,
                                                              Mask<std::int32_t, N> right,
                                                              std::int32_t* left,
                                                              std::int32_t* rightEnd) {
    const auto mask = static_cast<std::uint32_t>(bits(right));
    const std::ptrdiff_t count = detail::lanesIn<N>(mask);
    if constexpr (N == 16) {
        const auto v = asInts(x.v);
        const auto k = static_cast<__mmask16>(mask);
        _mm512_storeu_si512(left, _mm512_maskz_compress_epi32(_knot_mask16(k), v));
        _mm512_mask_storeu_epi32(rightEnd - count,
                                 static_cast<__mmask16>(lowBits(static_cast<int>(count))),
                                 _mm512_maskz_compress_epi32(k, v));
    } else if constexpr (N == 8) {
        const auto packed = static_cast<int>(detail::kPartitionOrders<8>.order[mask]);
        const auto order = _mm256_srlv_epi32(_mm256_set1_epi32(packed),
                                             _mm256_setr_epi32(0, 4, 8, 12, 16, 20, 24, 28));
        const auto parted = _mm256_permutevar8x32_epi32(asInts(x.v), order);
        _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(left), parted);
        _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(rightEnd - 8), parted);
    } else if constexpr (kHasSsse3) {
        const auto order =
            _mm_load_si128(reinterpret_cast<const __m128i*>(detail::kPartitionBytes.order[mask]));
        const auto parted = _mm_shuffle_epi8(asInts(x.v), order);
        _mm_storeu_si128(reinterpret_cast<__m128i_u*>(left), parted);
        _mm_storeu_si128(reinterpret_cast<__m128i_u*>(rightEnd - 4), parted);
    } else {
        std::int32_t lane[4];
        x.store(lane);
        const std::uint32_t order = detail::kPartitionOrders<4>.order[mask];
        for (int k = 0; k < 4; ++k) {
            const std::int32_t parted = lane[order >> 4 * k & 3];
            writeAny(left + k, parted);
            writeAny(rightEnd - 4 + k, parted);
        }
    }
    return count;
}

// Of the first n lanes only. Up to n elements are written from left on and before rightEnd.
template <int N>
[[gnu::always_inline]] inline std::ptrdiff_t storePartitioned(Vec<std::int32_t, N> x, int n,
                                                              Mask<std::int32_t, N> right,
                                                              std::int32_t* left,
                                                              std::int32_t* rightEnd) {
    if constexpr (N == 16) {
        const auto toLeft = ((!right) & Mask<std::int32_t, N>::first(n)).m;
        const auto toRight = (right & Mask<std::int32_t, N>::first(n)).m;
        const auto v = asInts(x.v);
        const std::ptrdiff_t count = detail::lanesIn<N>(toRight);
        _mm512_mask_storeu_epi32(left, static_cast<__mmask16>(lowBits(n - static_cast<int>(count))),
                                 _mm512_maskz_compress_epi32(toLeft, v));
        _mm512_mask_storeu_epi32(rightEnd - count,
                                 static_cast<__mmask16>(lowBits(static_cast<int>(count))),
                                 _mm512_maskz_compress_epi32(toRight, v));
        return count;
    } else {
        std::int32_t lane[N];
        x.store(lane);
        const auto mask = static_cast<std::uint32_t>(bits(right));
        std::ptrdiff_t toLeft = 0, toRight = 0;
        for (int k = 0; k < n; ++k) {
            // To both sides; one of them counts.
            writeAny(left + toLeft, lane[k]);
            writeAny(rightEnd - 1 - toRight, lane[k]);
            const int isRight = mask >> k & 1;
            toRight += isRight;
            toLeft += 1 - isRight;
        }
        return toRight;
    }
}

}  // namespace zep::ZEP_VARIANT::simd
