// Sine and cosine of vectors, with an error of about one unit in the last place of 1.
//
// The angle less the nearest multiple k of pi/2 is r, |r| <= pi/4. Up to |x| = 8192, where k has 13
// bits, pi/2 goes in three parts: products of k with the first two, of 8 and 11 bits, are exact,
// and so is what they leave; the last brings pi/2 to 49 bits. Beyond that each lane is reduced by
// itself with as many bits of 2/pi as its exponent asks for. Polynomials in r * r: sin(r) = r + r^3
// * p, error 2^-28, cos(r) = 1 - r^2 / 2 + r^4 * q, error 2^-33 (Remez exchange, coefficients
// rounded to single precision).
#pragma once

#include <cstdint>

#include "simd/vec.h"
#include "vector/polynomial.h"

namespace zep::ZEP_VARIANT {

template <class V>
struct SineCosine {
    V sine, cosine;
};

namespace detail {

// Bits 32 * i .. 32 * i + 31 of the fraction of 2/pi.
inline constexpr std::uint32_t kTwoOverPi[7] = {0xa2f9836e, 0x4e441529, 0xfc2757d1, 0xf534ddc0,
                                                0xdb629599, 0x3c439041, 0xfe5163ab};

struct Reduced {
    float rest;      // -pi/4 .. pi/4
    float quadrant;  // 0 .. 3
};

// Of any finite x with |x| >= 4; a not-a-number else. After M. Payne and R. Hanek (1983): with |x| =
// m * 2^s, bits of 2/pi whose products with m are multiples of 4 are left out, and the 96 bits
// behind them decide quadrant and rest.
inline Reduced reduceAny(float x) {
    const auto bits = __builtin_bit_cast(std::uint32_t, x);
    const int exponent = static_cast<int>(bits >> 23 & 0xFF);
    if (exponent == 0xFF) return {x - x, 0.0f};
    const std::uint32_t m = (bits & 0x7FFFFF) | 0x800000;
    const int s = exponent - 150;
    const int start = s > 2 ? s - 2 : 0;
    const std::uint32_t* w = kTwoOverPi + start / 32;
    const int skip = start % 32;
    const auto word = [=](int i) {
        const std::uint64_t two = std::uint64_t{w[i]} << 32 | w[i + 1];
        return static_cast<std::uint32_t>(two >> (32 - skip));
    };
    // m times three words, of which the whole has 96 - (s - start) bits behind the point.
    const std::uint64_t low = std::uint64_t{m} * word(2);
    const std::uint64_t middle = std::uint64_t{m} * word(1) + (low >> 32);
    const std::uint64_t high = std::uint64_t{m} * word(0) + (middle >> 32);
    // In quarters of a turn, 62 bits behind the point; what is above the turn falls off.
    const int shift = 30 + (s - start);
    const std::uint64_t turn =
        high << shift | std::uint64_t{static_cast<std::uint32_t>(middle)} >> (32 - shift);
    const std::uint64_t quadrant = (turn + (std::uint64_t{1} << 61)) >> 62;
    const auto rest = static_cast<std::int64_t>(turn - (quadrant << 62));
    const auto r = static_cast<float>(static_cast<double>(rest) * (0x1.921fb54442d18p+0 * 0x1p-62));
    const auto q = static_cast<float>(quadrant & 3);
    return bits >> 31 == 0 ? Reduced{r, q} : Reduced{-r, q == 0.0f ? 0.0f : 4.0f - q};
}

// r and k with those lanes replaced where x is beyond the limit. By value: what has an address would
// be kept in memory on the way that does not come here.
template <class V>
struct ReducedLanes {
    V r, k;
};
template <class V>
[[gnu::noinline]] ReducedLanes<V> reduceLanes(V x, float limit, V r, V k) {
    float xs[V::lanes], rs[V::lanes], ks[V::lanes];
    x.store(xs), r.store(rs), k.store(ks);
    for (int i = 0; i < V::lanes; ++i)
        if (!(xs[i] <= limit && xs[i] >= -limit)) {
            const Reduced reduced = reduceAny(xs[i]);
            rs[i] = reduced.rest;
            ks[i] = reduced.quadrant;
        }
    return {V::load(rs), V::load(ks)};
}

}  // namespace detail

template <class V>
[[gnu::always_inline]] inline SineCosine<V> sineCosine(V x) {
    constexpr float kLimit = 8192.0f;
    // The sum is in steps of 1, and its last bits are those of k.
    const V whole = V::broadcast(0x1.8p23f);
    V last = mulAdd(x, V::broadcast(0x1.45f306p-1f), whole);
    const V k = last - whole;
    V r = negMulAdd(k, V::broadcast(0x1.92p+0f), x);
    r = negMulAdd(k, V::broadcast(0x1.fb4p-12f), r);
    r = negMulAdd(k, V::broadcast(0x1.4442d2p-24f), r);
    if (!all(abs(x) <= V::broadcast(kLimit))) [[unlikely]] {
        const auto any = detail::reduceLanes(x, kLimit, r, k);
        r = any.r;
        last = any.k + whole;
    }

    const V z = r * r;
    const V p = polynomial(z, -0x1.994222p-13f, 0x1.110736p-7f, -0x1.555546p-3f);
    const V q = polynomial(z, 0x1.9a00cep-16f, -0x1.6c0c86p-10f, 0x1.55554ap-5f, -0.5f);
    const V sine = mulAdd(r * z, p, r);
    const V cosine = mulAdd(q, z, V::broadcast(1.0f));

    // Or-ed to 1.0, a bit of k that is set makes it differ.
    const V one = V::broadcast(1.0f);
    const auto bit = [&](std::uint32_t b) {
        return ((last & V::broadcast(__builtin_bit_cast(float, b))) | one) != one;
    };
    const auto odd = bit(1), negative = bit(2);
    const V s = select(odd, cosine, sine), c = select(odd, sine, cosine);
    return {select(negative, -s, s), select(odd ^ negative, -c, c)};
}

}  // namespace zep::ZEP_VARIANT
