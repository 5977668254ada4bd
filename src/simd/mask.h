// Mask<T, N>: N truth values, one for each lane of a Vec<T, N>. Below AVX-512 a register whose
// lanes are all ones or all zeros, there a mask register.
#pragma once

#include "simd/register.h"

namespace zep::ZEP_VARIANT::simd {

// n low bits, 0 <= n <= 64.
[[gnu::always_inline]] inline std::uint64_t lowBits(int n) {
#if defined(__BMI2__)
    return _bzhi_u64(~std::uint64_t{0}, static_cast<unsigned>(n));
#else
    return n >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << n) - 1;
#endif
}

namespace detail {

// Loading from entry 64 - n * laneBytes on sets the first n lanes.
struct FirstLanes {
    signed char bytes[128];
};
constexpr FirstLanes makeFirstLanes() {
    FirstLanes t{};
    for (int i = 0; i < 64; ++i) t.bytes[i] = -1;
    return t;
}
alignas(64) inline constexpr FirstLanes kFirstLanes = makeFirstLanes();

template <int N>
using MaskBits = std::conditional_t<
    N <= 8, std::uint8_t,
    std::conditional_t<N <= 16, std::uint16_t,
                       std::conditional_t<N <= 32, std::uint32_t, std::uint64_t>>>;

template <class R>
[[gnu::always_inline]] inline unsigned signBitsOfBytes(R m) {
    if constexpr (sizeof(R) == 16)
        return static_cast<unsigned>(_mm_movemask_epi8(asInts(m)));
    else
        return static_cast<unsigned>(_mm256_movemask_epi8(asInts(m)));
}

}  // namespace detail

// In a register.
template <Lane T, int N, bool inMaskRegister = kHasAvx512>
struct Mask {
    using R = UnsignedRegister<T, N>;
    R m;

    // The lanes before lane n, 0 <= n <= N.
    [[gnu::always_inline]] static Mask first(int n) {
        R r;
        __builtin_memcpy(&r, detail::kFirstLanes.bytes + 64 - n * int{sizeof(T)}, sizeof r);
        return {r};
    }
    [[gnu::always_inline]] static Mask none() { return {R{}}; }

    friend Mask operator&(Mask a, Mask b) { return {a.m & b.m}; }
    friend Mask operator|(Mask a, Mask b) { return {a.m | b.m}; }
    friend Mask operator^(Mask a, Mask b) { return {a.m ^ b.m}; }
    friend Mask operator!(Mask a) { return {~a.m}; }

    // Bit n is lane n.
    [[gnu::always_inline]] friend std::uint64_t bits(Mask a) {
        constexpr int kBytes = sizeof(R);
        if constexpr (sizeof(T) == 1) {
            return detail::signBitsOfBytes(a.m);
        } else if constexpr (sizeof(T) == 2 && kBytes == 16) {
            const auto packed = _mm_packs_epi16(asInts(a.m), asInts(R{}));
            return static_cast<unsigned>(_mm_movemask_epi8(packed));
        } else if constexpr (sizeof(T) == 2) {
            const auto packed = _mm_packs_epi16(_mm256_castsi256_si128(asInts(a.m)),
                                                _mm256_extracti128_si256(asInts(a.m), 1));
            return static_cast<unsigned>(_mm_movemask_epi8(packed));
        } else if constexpr (sizeof(T) == 4 && kBytes == 16) {
            return static_cast<unsigned>(_mm_movemask_ps(bitsAs<__m128>(a.m)));
        } else if constexpr (sizeof(T) == 4) {
            return static_cast<unsigned>(_mm256_movemask_ps(bitsAs<__m256>(a.m)));
        } else if constexpr (kBytes == 16) {
            return static_cast<unsigned>(_mm_movemask_pd(bitsAs<__m128d>(a.m)));
        } else {
            return static_cast<unsigned>(_mm256_movemask_pd(bitsAs<__m256d>(a.m)));
        }
    }
    // 16-bit lanes need no packing for these.
    [[gnu::always_inline]] friend bool any(Mask a) {
        if constexpr (sizeof(T) == 2 && (sizeof(R) == 16 || kHasAvx2))
            return detail::signBitsOfBytes(a.m) != 0;
        else
            return bits(a) != 0;
    }
    [[gnu::always_inline]] friend bool all(Mask a) { return bits(a) == lowBits(N); }
};

// In a mask register.
template <Lane T, int N>
struct Mask<T, N, true> {
    using R = detail::MaskBits<N>;
    R m;  // bits from N on are zero

    [[gnu::always_inline]] static Mask first(int n) { return {static_cast<R>(lowBits(n))}; }
    [[gnu::always_inline]] static Mask none() { return {0}; }

    friend Mask operator&(Mask a, Mask b) { return {static_cast<R>(a.m & b.m)}; }
    friend Mask operator|(Mask a, Mask b) { return {static_cast<R>(a.m | b.m)}; }
    friend Mask operator^(Mask a, Mask b) { return {static_cast<R>(a.m ^ b.m)}; }
    friend Mask operator!(Mask a) { return {static_cast<R>(~a.m & kAll)}; }

    friend std::uint64_t bits(Mask a) { return a.m; }
    friend bool any(Mask a) { return a.m != 0; }
    friend bool all(Mask a) { return a.m == kAll; }

private:
    static constexpr R kAll = static_cast<R>(~std::uint64_t{0} >> (64 - N));
};

template <Lane T, int N>
[[gnu::always_inline]] inline bool none(Mask<T, N> m) {
    return !any(m);
}

// The same lanes of a vector with lanes of the same size.
template <Lane To, Lane T, int N>
requires(sizeof(To) == sizeof(T)) [[gnu::always_inline]] inline Mask<To, N> maskAs(Mask<T, N> m) {
    return {m.m};
}

}  // namespace zep::ZEP_VARIANT::simd
