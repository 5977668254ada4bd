// Register<T, N>: N lanes of T in the compilers' vector extension, which gives storage, the basic
// arithmetic and constant shuffles for every type and width.
//
// Integer lanes are stored unsigned, whatever T: signed lanes would let the compiler assume that
// sums never wrap. Where the sign matters the register is cast to SignedLane.
#pragma once

#include <concepts>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "simd/vec_fwd.h"

namespace zep::ZEP_VARIANT::simd {

template <class T>
concept Lane = std::integral<T> || std::floating_point<T>;

namespace detail {

template <int bytes>
struct IntOfBytes;
template <>
struct IntOfBytes<1> : std::type_identity<std::int8_t> {};
template <>
struct IntOfBytes<2> : std::type_identity<std::int16_t> {};
template <>
struct IntOfBytes<4> : std::type_identity<std::int32_t> {};
template <>
struct IntOfBytes<8> : std::type_identity<std::int64_t> {};

template <class T, int N>
struct RegisterOf {
    typedef T type __attribute__((vector_size(sizeof(T) * N)));
};

}  // namespace detail

// The integer with the size of T, by sign.
template <class T>
using SignedLane = typename detail::IntOfBytes<sizeof(T)>::type;
template <class T>
using UnsignedLane = std::make_unsigned_t<SignedLane<T>>;

template <class T>
using StoredLane = typename std::conditional_t<std::floating_point<T>, std::type_identity<T>,
                                               std::type_identity<UnsignedLane<T>>>::type;

template <Lane T, int N>
using Register = typename detail::RegisterOf<StoredLane<T>, N>::type;
template <Lane T, int N>
using SignedRegister = typename detail::RegisterOf<SignedLane<T>, N>::type;
template <Lane T, int N>
using UnsignedRegister = typename detail::RegisterOf<UnsignedLane<T>, N>::type;

namespace detail {

template <int bytes>
struct IntIntrinsic;
template <>
struct IntIntrinsic<16> {
    typedef long long type __attribute__((vector_size(16)));
};
template <>
struct IntIntrinsic<32> {
    typedef long long type __attribute__((vector_size(32)));
};
template <>
struct IntIntrinsic<64> {
    typedef long long type __attribute__((vector_size(64)));
};

}  // namespace detail

// As intrinsics on integers take it: __m128i, __m256i, __m512i.
template <class R>
[[gnu::always_inline]] inline auto asInts(R x) {
    return bitsAs<typename detail::IntIntrinsic<sizeof(R)>::type>(x);
}

// The register x at the bottom of a 64-byte one; what is above it is of no account.
template <class R>
[[gnu::always_inline]] inline auto inZmm(R x) {
    if constexpr (sizeof(R) == 16)
        return _mm512_castsi128_si512(asInts(x));
    else if constexpr (sizeof(R) == 32)
        return _mm512_castsi256_si512(asInts(x));
    else
        return asInts(x);
}
// Its inverse.
template <class R, class Z>
[[gnu::always_inline]] inline R fromZmm(Z x) {
    if constexpr (sizeof(R) == 16)
        return bitsAs<R>(_mm512_castsi512_si128(x));
    else if constexpr (sizeof(R) == 32)
        return bitsAs<R>(_mm512_castsi512_si256(x));
    else
        return bitsAs<R>(x);
}

}  // namespace zep::ZEP_VARIANT::simd
