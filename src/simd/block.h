// Registers as plain bytes, for code that moves, fills or combines bits and does not care what they
// mean. Block<N> is N bytes; the widest is WideBlock, which with AVX is 32 bytes although integer
// lanes are not: the bit operations exist at that width.
//
// broadcast repeats 8 bytes, or as many of their low ones as the block has. load and store take any
// address; storeAligned and storeStream need one that is a multiple of N.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "simd/partial.h"

namespace zep::ZEP_VARIANT::simd {

template <int N>
struct Block;

namespace detail {
template <int N>
struct WordOfBytes;
template <>
struct WordOfBytes<1> : std::type_identity<std::uint8_t> {};
template <>
struct WordOfBytes<2> : std::type_identity<std::uint16_t> {};
template <>
struct WordOfBytes<4> : std::type_identity<std::uint32_t> {};
template <>
struct WordOfBytes<8> : std::type_identity<std::uint64_t> {};
}  // namespace detail

// Below a vector: one general register.
template <int N>
requires(N <= 8) struct Block<N> {
    static constexpr int bytes = N;
    using Word = typename detail::WordOfBytes<N>::type;
    Word v;

    static Block load(const void* p) {
        Block b;
        std::memcpy(&b.v, p, sizeof b.v);
        return b;
    }
    static Block zero() { return {0}; }
    static Block broadcast(std::uint64_t x) { return {static_cast<Word>(x)}; }
    void store(void* p) const { std::memcpy(p, &v, sizeof v); }

    friend Block operator&(Block a, Block b) { return {static_cast<Word>(a.v & b.v)}; }
    friend Block operator|(Block a, Block b) { return {static_cast<Word>(a.v | b.v)}; }
    friend Block operator^(Block a, Block b) { return {static_cast<Word>(a.v ^ b.v)}; }
};

template <int N>
requires(N >= 16) struct Block<N> {
    static constexpr int bytes = N;
    using R = Register<std::uint64_t, N / 8>;
    R v;

    static Block load(const void* p) {
        Block b;
        std::memcpy(&b.v, p, sizeof b.v);
        return b;
    }
    // From two places, half each.
    static Block loadHalves(const void* lower, const void* upper) {
        using H = Vec<std::uint64_t, N / 16>;
        return {join(H{Block<N / 2>::load(lower).v}, H{Block<N / 2>::load(upper).v}).v};
    }
    static Block zero() { return {R{}}; }
    static Block broadcast(std::uint64_t x) { return {Vec<std::uint64_t, N / 8>::broadcast(x).v}; }
    void store(void* p) const { std::memcpy(p, &v, sizeof v); }
    void storeAligned(void* p) const { std::memcpy(__builtin_assume_aligned(p, N), &v, sizeof v); }
    void storeStream(void* p) const {
        Vec<std::uint64_t, N / 8>{v}.storeStream(static_cast<std::uint64_t*>(p));
    }

    // The first n bytes, 0 <= n <= N; those behind them become 0.
    static Block loadPartial(const void* p, int n) {
        using V = Vec<std::uint8_t, N>;
        return {bitsAs<R>(V::loadPartial(static_cast<const std::uint8_t*>(p), n).v)};
    }
    void storePartial(void* p, int n) const {
        using V = Vec<std::uint8_t, N>;
        V{bitsAs<typename V::R>(v)}.storePartial(static_cast<std::uint8_t*>(p), n);
    }

    friend Block operator&(Block a, Block b) { return {a.v & b.v}; }
    friend Block operator|(Block a, Block b) { return {a.v | b.v}; }
    friend Block operator^(Block a, Block b) { return {a.v ^ b.v}; }
};

using WideBlock = Block<kFloatBytes>;
template <class B>
using HalfBlock = Block<B::bytes / 2>;

// The block as lanes of T, and back.
template <class T, int N>
[[gnu::always_inline]] inline auto lanesOf(Block<N> x) {
    using V = Vec<T, N / int{sizeof(T)}>;
    return V{bitsAs<typename V::R>(x.v)};
}
template <class V>
[[gnu::always_inline]] inline auto blockOf(V x) {
    using B = Block<V::bytes>;
    return B{bitsAs<typename B::R>(x.v)};
}

// Asks for the cache lines from p on before they are needed. Any address will do, one outside the
// caller's memory, too.
template <std::size_t bytes>
inline void fetch(const std::uint8_t* p) {
    for (std::size_t n = 0; n < bytes; n += 64) _mm_prefetch(p + n, _MM_HINT_T0);
}

}  // namespace zep::ZEP_VARIANT::simd
