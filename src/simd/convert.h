// Lanes of one type from lanes of another.
//
// Types of one size convert lane by lane. Where the sizes differ a vector of the narrow type stands
// for two of the wide one: widenLow and widenHigh give the first and the second half of its lanes,
// narrow... puts them together again, all in the order of memory.
#pragma once

#include "simd/vec_float.h"
#include "simd/vec_int.h"

namespace zep::ZEP_VARIANT::simd {

// Rounded by the current mode; what does not fit, and NaN, gives the most negative value.
template <int N>
[[gnu::always_inline]] inline Vec<std::int32_t, N> toInt(Vec<float, N> a) {
    using R = Register<std::int32_t, N>;
    if constexpr (N == 4)
        return {bitsAs<R>(_mm_cvtps_epi32(detail::in(a)))};
    else if constexpr (N == 8)
        return {bitsAs<R>(_mm256_cvtps_epi32(detail::in(a)))};
    else
        return {bitsAs<R>(_mm512_cvtps_epi32(detail::in(a)))};
}
// To nearest, ties to even, and a sum rounded toward zero: with kRoundingInInstruction whatever the
// current mode is, else it has to be that one.
template <int N>
[[gnu::always_inline]] inline Vec<std::int32_t, N> toIntNearest(Vec<float, N> a) {
    if constexpr (kRoundingInInstruction && N == 16)
        return {bitsAs<Register<std::int32_t, N>>(_mm512_cvt_roundps_epi32(
            detail::in(a), _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC))};
    else
        return toInt(a);
}
template <int N>
[[gnu::always_inline]] inline Vec<float, N> addTowardZero(Vec<float, N> a, Vec<float, N> b) {
    if constexpr (kRoundingInInstruction && N == 16)
        return {bitsAs<Register<float, N>>(_mm512_add_round_ps(
            detail::in(a), detail::in(b), _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC))};
    else
        return a + b;
}
// Toward zero.
template <int N>
[[gnu::always_inline]] inline Vec<std::int32_t, N> toIntTruncated(Vec<float, N> a) {
    using R = Register<std::int32_t, N>;
    if constexpr (N == 4)
        return {bitsAs<R>(_mm_cvttps_epi32(detail::in(a)))};
    else if constexpr (N == 8)
        return {bitsAs<R>(_mm256_cvttps_epi32(detail::in(a)))};
    else
        return {bitsAs<R>(_mm512_cvttps_epi32(detail::in(a)))};
}
template <int N>
[[gnu::always_inline]] inline Vec<float, N> toFloat(Vec<std::int32_t, N> a) {
    using R = Register<float, N>;
    if constexpr (N == 4)
        return {bitsAs<R>(_mm_cvtepi32_ps(asInts(a.v)))};
    else if constexpr (N == 8)
        return {bitsAs<R>(_mm256_cvtepi32_ps(asInts(a.v)))};
    else
        return {bitsAs<R>(_mm512_cvtepi32_ps(asInts(a.v)))};
}

// From half as many doubles each; lo holds the first lanes.
template <int N>
[[gnu::always_inline]] inline Vec<std::int32_t, 2 * N> toInt(Vec<double, N> lo, Vec<double, N> hi) {
    using R = Register<std::int32_t, 2 * N>;
    if constexpr (N == 2)
        return {bitsAs<R>(
            _mm_unpacklo_epi64(_mm_cvtpd_epi32(detail::in(lo)), _mm_cvtpd_epi32(detail::in(hi))))};
    else if constexpr (N == 4)
        return join(Vec<std::int32_t, 4>{bitsAs<Register<std::int32_t, 4>>(
                        _mm256_cvtpd_epi32(detail::in(lo)))},
                    Vec<std::int32_t, 4>{
                        bitsAs<Register<std::int32_t, 4>>(_mm256_cvtpd_epi32(detail::in(hi)))});
    else
        return join(Vec<std::int32_t, 8>{bitsAs<Register<std::int32_t, 8>>(
                        _mm512_cvtpd_epi32(detail::in(lo)))},
                    Vec<std::int32_t, 8>{
                        bitsAs<Register<std::int32_t, 8>>(_mm512_cvtpd_epi32(detail::in(hi)))});
}
template <int N>
[[gnu::always_inline]] inline Vec<std::int32_t, 2 * N> toIntTruncated(Vec<double, N> lo,
                                                                      Vec<double, N> hi) {
    using R = Register<std::int32_t, 2 * N>;
    if constexpr (N == 2)
        return {bitsAs<R>(_mm_unpacklo_epi64(_mm_cvttpd_epi32(detail::in(lo)),
                                             _mm_cvttpd_epi32(detail::in(hi))))};
    else if constexpr (N == 4)
        return join(Vec<std::int32_t, 4>{bitsAs<Register<std::int32_t, 4>>(
                        _mm256_cvttpd_epi32(detail::in(lo)))},
                    Vec<std::int32_t, 4>{
                        bitsAs<Register<std::int32_t, 4>>(_mm256_cvttpd_epi32(detail::in(hi)))});
    else
        return join(Vec<std::int32_t, 8>{bitsAs<Register<std::int32_t, 8>>(
                        _mm512_cvttpd_epi32(detail::in(lo)))},
                    Vec<std::int32_t, 8>{
                        bitsAs<Register<std::int32_t, 8>>(_mm512_cvttpd_epi32(detail::in(hi)))});
}

// Floats from doubles, rounded by the current mode.
template <int N>
[[gnu::always_inline]] inline Vec<float, 2 * N> narrow(Vec<double, N> lo, Vec<double, N> hi) {
    using R = Register<float, 2 * N>;
    if constexpr (N == 2)
        return {
            bitsAs<R>(_mm_movelh_ps(_mm_cvtpd_ps(detail::in(lo)), _mm_cvtpd_ps(detail::in(hi))))};
    else if constexpr (N == 4)
        return join(Vec<float, 4>{bitsAs<Register<float, 4>>(_mm256_cvtpd_ps(detail::in(lo)))},
                    Vec<float, 4>{bitsAs<Register<float, 4>>(_mm256_cvtpd_ps(detail::in(hi)))});
    else
        return join(Vec<float, 8>{bitsAs<Register<float, 8>>(_mm512_cvtpd_ps(detail::in(lo)))},
                    Vec<float, 8>{bitsAs<Register<float, 8>>(_mm512_cvtpd_ps(detail::in(hi)))});
}

namespace detail {

template <int N>
[[gnu::always_inline]] inline __m128 upperFloats(Vec<float, N> a) {
    return _mm_movehl_ps(in(a), in(a));
}

}  // namespace detail

// Doubles from floats.
template <int N>
[[gnu::always_inline]] inline Vec<double, N / 2> widenLow(Vec<float, N> a) {
    using R = Register<double, N / 2>;
    if constexpr (N == 4)
        return {bitsAs<R>(_mm_cvtps_pd(detail::in(a)))};
    else if constexpr (N == 8)
        return {bitsAs<R>(_mm256_cvtps_pd(detail::in(low(a))))};
    else
        return {bitsAs<R>(_mm512_cvtps_pd(detail::in(low(a))))};
}
template <int N>
[[gnu::always_inline]] inline Vec<double, N / 2> widenHigh(Vec<float, N> a) {
    using R = Register<double, N / 2>;
    if constexpr (N == 4)
        return {bitsAs<R>(_mm_cvtps_pd(detail::upperFloats(a)))};
    else if constexpr (N == 8)
        return {bitsAs<R>(_mm256_cvtps_pd(detail::in(high(a))))};
    else
        return {bitsAs<R>(_mm512_cvtps_pd(detail::in(high(a))))};
}

// Doubles from integers.
template <int N>
[[gnu::always_inline]] inline Vec<double, N / 2> toDoubleLow(Vec<std::int32_t, N> a) {
    using R = Register<double, N / 2>;
    if constexpr (N == 4)
        return {bitsAs<R>(_mm_cvtepi32_pd(asInts(a.v)))};
    else if constexpr (N == 8)
        return {bitsAs<R>(_mm256_cvtepi32_pd(asInts(low(a).v)))};
    else
        return {bitsAs<R>(_mm512_cvtepi32_pd(asInts(low(a).v)))};
}
template <int N>
[[gnu::always_inline]] inline Vec<double, N / 2> toDoubleHigh(Vec<std::int32_t, N> a) {
    using R = Register<double, N / 2>;
    if constexpr (N == 4)
        return {bitsAs<R>(_mm_cvtepi32_pd(_mm_unpackhi_epi64(asInts(a.v), asInts(a.v))))};
    else if constexpr (N == 8)
        return {bitsAs<R>(_mm256_cvtepi32_pd(asInts(high(a).v)))};
    else
        return {bitsAs<R>(_mm512_cvtepi32_pd(asInts(high(a).v)))};
}

// The integer of twice the size and the same signedness.
namespace detail {
template <class T>
struct WideOf;
template <>
struct WideOf<std::int8_t> : std::type_identity<std::int16_t> {};
template <>
struct WideOf<std::uint8_t> : std::type_identity<std::uint16_t> {};
template <>
struct WideOf<std::int16_t> : std::type_identity<std::int32_t> {};
template <>
struct WideOf<std::uint16_t> : std::type_identity<std::uint32_t> {};
template <>
struct WideOf<std::int32_t> : std::type_identity<std::int64_t> {};
template <>
struct WideOf<std::uint32_t> : std::type_identity<std::uint64_t> {};

// All ones where a lane of 16 bytes is negative.
template <class T, int N>
[[gnu::always_inline]] inline Vec<T, N> signsOf(Vec<T, N> a) {
    return {bitsAs<Register<T, N>>(bitsAs<SignedRegister<T, N>>(a.v) < SignedRegister<T, N>{})};
}

// A register from one of half the size, which holds as many lanes.
template <class W, class T, class H>
[[gnu::always_inline]] inline W extended(H half) {
    const auto x = asInts(half);
    constexpr bool kSigned = std::signed_integral<T>;
    if constexpr (sizeof(W) == 32) {
        if constexpr (sizeof(T) == 1)
            return bitsAs<W>(kSigned ? _mm256_cvtepi8_epi16(x) : _mm256_cvtepu8_epi16(x));
        else if constexpr (sizeof(T) == 2)
            return bitsAs<W>(kSigned ? _mm256_cvtepi16_epi32(x) : _mm256_cvtepu16_epi32(x));
        else
            return bitsAs<W>(kSigned ? _mm256_cvtepi32_epi64(x) : _mm256_cvtepu32_epi64(x));
    } else {
        if constexpr (sizeof(T) == 1)
            return bitsAs<W>(kSigned ? _mm512_cvtepi8_epi16(x) : _mm512_cvtepu8_epi16(x));
        else if constexpr (sizeof(T) == 2)
            return bitsAs<W>(kSigned ? _mm512_cvtepi16_epi32(x) : _mm512_cvtepu16_epi32(x));
        else
            return bitsAs<W>(kSigned ? _mm512_cvtepi32_epi64(x) : _mm512_cvtepu32_epi64(x));
    }
}

}  // namespace detail

template <class T>
using Wide = typename detail::WideOf<T>::type;

template <std::integral T, int N>
[[gnu::always_inline]] inline Vec<Wide<T>, N / 2> widenLow(Vec<T, N> a) {
    using W = Vec<Wide<T>, N / 2>;
    if constexpr (sizeof(a) == 16 && std::signed_integral<T>) {
        return {bitsAs<typename W::R>(zipLow(a, detail::signsOf(a)).v)};
    } else if constexpr (sizeof(a) == 16) {
        return {bitsAs<typename W::R>(zipLow(a, Vec<T, N>::zero()).v)};
    } else {
        const auto half = low(a);
        return {detail::extended<typename W::R, T>(half.v)};
    }
}
template <std::integral T, int N>
[[gnu::always_inline]] inline Vec<Wide<T>, N / 2> widenHigh(Vec<T, N> a) {
    using W = Vec<Wide<T>, N / 2>;
    if constexpr (sizeof(a) == 16 && std::signed_integral<T>) {
        return {bitsAs<typename W::R>(zipHigh(a, detail::signsOf(a)).v)};
    } else if constexpr (sizeof(a) == 16) {
        return {bitsAs<typename W::R>(zipHigh(a, Vec<T, N>::zero()).v)};
    } else {
        const auto half = high(a);
        return {detail::extended<typename W::R, T>(half.v)};
    }
}

namespace detail {

// A pack works within 16 bytes: its 8-byte parts come as lo0 hi0 lo1 hi1 ... and are put in order.
template <class R>
[[gnu::always_inline]] inline R packOrder(R x) {
    if constexpr (sizeof(R) == 16)
        return x;
    else if constexpr (sizeof(R) == 32)
        return bitsAs<R>(_mm256_permute4x64_epi64(asInts(x), _MM_SHUFFLE(3, 1, 2, 0)));
    else
        return bitsAs<R>(
            _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7), asInts(x)));
}

}  // namespace detail

// Signed 16- or 32-bit lanes to lanes of To, of half the size; what does not fit becomes the nearer
// end of its range.
template <std::integral To, std::integral T, int N>
requires(std::signed_integral<T> && sizeof(T) == 2 * sizeof(To) && sizeof(T) <= 4)
    [[gnu::always_inline]] inline Vec<To, 2 * N> narrowSaturated(Vec<T, N> lo, Vec<T, N> hi) {
    using R = Register<To, 2 * N>;
    const auto x = asInts(lo.v), y = asInts(hi.v);
    constexpr bool kSigned = std::signed_integral<To>;
    R packed;
    if constexpr (sizeof(lo) == 16) {
        if constexpr (sizeof(T) == 2)
            packed = bitsAs<R>(kSigned ? _mm_packs_epi16(x, y) : _mm_packus_epi16(x, y));
        else if constexpr (kSigned)
            packed = bitsAs<R>(_mm_packs_epi32(x, y));
        else if constexpr (kHasSse41)
            packed = bitsAs<R>(_mm_packus_epi32(x, y));
        else {
            // Negative lanes to zero, then down by 2^15 into the signed range and back.
            const auto shifted = [](Vec<T, N> a) {
                const auto positive = clearBits(a, a >> 31);
                return positive - Vec<T, N>::broadcast(0x8000);
            };
            const auto s = _mm_packs_epi32(asInts(shifted(lo).v), asInts(shifted(hi).v));
            packed = bitsAs<R>(_mm_xor_si128(s, _mm_set1_epi16(static_cast<short>(0x8000))));
        }
    } else if constexpr (sizeof(lo) == 32) {
        if constexpr (sizeof(T) == 2)
            packed = bitsAs<R>(kSigned ? _mm256_packs_epi16(x, y) : _mm256_packus_epi16(x, y));
        else
            packed = bitsAs<R>(kSigned ? _mm256_packs_epi32(x, y) : _mm256_packus_epi32(x, y));
    } else {
        if constexpr (sizeof(T) == 2)
            packed = bitsAs<R>(kSigned ? _mm512_packs_epi16(x, y) : _mm512_packus_epi16(x, y));
        else
            packed = bitsAs<R>(kSigned ? _mm512_packs_epi32(x, y) : _mm512_packus_epi32(x, y));
    }
    return {detail::packOrder(packed)};
}

}  // namespace zep::ZEP_VARIANT::simd
