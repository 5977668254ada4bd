// Vec<T, N>: N lanes of T at any width, with what the vector extension gives for all of them: moves,
// arithmetic, bit operations. What has an instruction of its own stands in the headers beside it.
#pragma once

#include "simd/mask.h"

namespace zep::ZEP_VARIANT::simd {

namespace detail {

template <class R, class T, int... k>
[[gnu::always_inline]] inline R splat(T x, std::integer_sequence<int, k...>) {
    return R{(static_cast<void>(k), x)...};
}
template <class R, class T, int... k>
[[gnu::always_inline]] inline R splatPair(T even, T odd, std::integer_sequence<int, k...>) {
    return R{(k % 2 == 0 ? even : odd)...};
}

}  // namespace detail

template <Lane T, int N>
struct Vec {
    static constexpr int lanes = N;
    static constexpr int bytes = N * int{sizeof(T)};
    using Scalar = T;
    using M = Mask<T, N>;
    using R = Register<T, N>;
    R v;

    [[gnu::always_inline]] static Vec load(const T* p) {
        R r;
        __builtin_memcpy(&r, p, sizeof r);
        return {r};
    }
    [[gnu::always_inline]] static Vec loadAligned(const T* p) {
        return load(static_cast<const T*>(__builtin_assume_aligned(p, bytes)));
    }
    [[gnu::always_inline]] void store(T* p) const { __builtin_memcpy(p, &v, sizeof v); }
    [[gnu::always_inline]] void storeAligned(T* p) const {
        __builtin_memcpy(__builtin_assume_aligned(p, bytes), &v, sizeof v);
    }
    // Around the cache; aligned.
    [[gnu::always_inline]] void storeStream(T* p) const {
        if constexpr (bytes == 16)
            _mm_stream_si128(reinterpret_cast<__m128i*>(p), asInts(v));
        else if constexpr (bytes == 32)
            _mm256_stream_si256(reinterpret_cast<__m256i*>(p), asInts(v));
        else
            _mm512_stream_si512(reinterpret_cast<__m512i*>(p), asInts(v));
    }

    // n elements, 0 <= n <= lanes; the lanes behind them become 0, or fill (simd/partial.h).
    [[gnu::always_inline]] static Vec loadPartial(const T* p, int n);
    [[gnu::always_inline]] static Vec loadPartial(const T* p, int n, T fill);
    [[gnu::always_inline]] void storePartial(T* p, int n) const;

    [[gnu::always_inline]] static Vec zero() { return {R{}}; }
    [[gnu::always_inline]] static Vec broadcast(T x) {
        return {
            detail::splat<R>(static_cast<StoredLane<T>>(x), std::make_integer_sequence<int, N>{})};
    }
    // even, odd, even, odd ...
    [[gnu::always_inline]] static Vec broadcastPair(T even, T odd) requires(N > 1) {
        struct Pair {
            StoredLane<T> even, odd;
        };
        const Pair pair{static_cast<StoredLane<T>>(even), static_cast<StoredLane<T>>(odd)};
        if constexpr (sizeof(T) == 8) {
            return {
                detail::splatPair<R>(pair.even, pair.odd, std::make_integer_sequence<int, N>{})};
        } else {
            // One lane of twice the size; a double moves between registers as it is.
            using Wide = std::conditional_t<
                sizeof(T) == 4, double,
                UnsignedLane<std::conditional_t<sizeof(T) == 2, std::int32_t, std::int16_t>>>;
            return {bitsAs<R>(Vec<Wide, N / 2>::broadcast(bitsAs<Wide>(pair)).v)};
        }
    }

    friend Vec operator+(Vec a, Vec b) { return {a.v + b.v}; }
    friend Vec operator-(Vec a, Vec b) { return {a.v - b.v}; }
    // Integer lanes keep the low half.
    friend Vec operator*(Vec a, Vec b) { return {a.v * b.v}; }
    friend Vec operator/(Vec a, Vec b) requires std::floating_point<T> { return {a.v / b.v}; }
    friend Vec operator-(Vec a) requires std::integral<T> { return {-a.v}; }

    friend Vec operator&(Vec a, Vec b) {
        return bitwise(a, b, [](auto x, auto y) { return x & y; });
    }
    friend Vec operator|(Vec a, Vec b) {
        return bitwise(a, b, [](auto x, auto y) { return x | y; });
    }
    friend Vec operator^(Vec a, Vec b) {
        return bitwise(a, b, [](auto x, auto y) { return x ^ y; });
    }
    friend Vec operator~(Vec a) requires std::integral<T> { return {~a.v}; }
    // a with the bits of b cleared.
    friend Vec clearBits(Vec a, Vec b) {
        return bitwise(a, b, [](auto x, auto y) { return x & ~y; });
    }

private:
    [[gnu::always_inline]] static Vec bitwise(Vec a, Vec b, auto op) {
        using U = UnsignedRegister<T, N>;
        return {bitsAs<R>(op(bitsAs<U>(a.v), bitsAs<U>(b.v)))};
    }
};

// Lanes of the same size under another type.
template <Lane To, Lane T, int N>
requires(sizeof(To) == sizeof(T)) [[gnu::always_inline]] inline Vec<To, N> lanesAs(Vec<T, N> a) {
    return {bitsAs<Register<To, N>>(a.v)};
}
// The same bits in lanes of another size.
template <Lane To, Lane T, int N>
[[gnu::always_inline]] inline auto bitsIn(Vec<T, N> a) {
    using V = Vec<To, N* int{sizeof(T)} / int{sizeof(To)}>;
    return V{bitsAs<typename V::R>(a.v)};
}

template <class V>
concept AnyVec = requires {
    V::lanes;
    typename V::Scalar;
    typename V::M;
};
template <class V>
concept FloatVec = AnyVec<V> && std::floating_point<typename V::Scalar>;
template <class V>
concept IntVec = AnyVec<V> && std::integral<typename V::Scalar>;

// The scalar may be of any type that converts to the lanes'.
template <AnyVec V>
inline V operator+(V a, std::type_identity_t<typename V::Scalar> b) {
    return a + V::broadcast(b);
}
template <AnyVec V>
inline V operator-(V a, std::type_identity_t<typename V::Scalar> b) {
    return a - V::broadcast(b);
}
template <AnyVec V>
inline V operator*(V a, std::type_identity_t<typename V::Scalar> b) {
    return a * V::broadcast(b);
}

template <FloatVec V>
inline V signBits() {
    return V::broadcast(-typename V::Scalar{0});
}
template <FloatVec V>
inline V operator-(V a) {
    return a ^ signBits<V>();
}
template <FloatVec V>
inline V abs(V a) {
    return clearBits(a, signBits<V>());
}

}  // namespace zep::ZEP_VARIANT::simd
