// The scaled product of 32-bit integers and a constant. Products of even and odd lanes are formed in
// 64 bits apart, and their halves put together again in 32-bit lanes, where saturation is decided.
#include <limits>

#include "vector/scaled.h"

namespace zep::ZEP_VARIANT {
namespace {

using simd::Vec;

// Lane n of `high` and `low` is one 64-bit number.
template <class V>
struct Parts {
    V high, low;
};

// From the 64-bit numbers of even and odd lanes.
template <class W>
[[gnu::always_inline]] inline auto parts(W even, W odd) {
    constexpr int N = 2 * W::lanes;
    const auto e = simd::bitsIn<std::int32_t>(even), o = simd::bitsIn<std::int32_t>(odd);
    return Parts<Vec<std::int32_t, N>>{
        shuffle(e, o, [](int k) { return k % 2 == 0 ? k + 1 : N + k; }),
        shuffle(e, o, [](int k) { return k % 2 == 0 ? k : N + k - 1; })};
}

template <class V>
[[gnu::always_inline]] inline V saturated(Parts<V> p) {
    return select(p.high == p.low >> 31, p.low, scaled::limitBySign(p.high));
}

// x * val, and f on the 64-bit products of even and of odd lanes.
template <class V>
[[gnu::always_inline]] inline auto product(V x, std::int32_t val, auto f) {
    using W = Vec<std::uint64_t, V::lanes / 2>;
    const V factor = V::broadcast(val);
    const V odd = simd::bitsIn<std::int32_t>(simd::bitsIn<std::uint64_t>(x) >> 32);
    const W evens = simd::lanesAs<std::uint64_t>(mulEven(x, factor));
    const W odds = simd::lanesAs<std::uint64_t>(mulEven(odd, factor));
    return parts(f(evens), f(odds));
}

constexpr auto whole = [](auto p) __attribute__((always_inline)) { return p; };

// p / 2^k for k of 1 to 62, ties to even. The bias makes the number unsigned, so that the shift need
// not be arithmetic: |p| <= 2^62, hence p + 2^63 + 2^(k-1) stays within 64 bits.
struct RoundedShift {
    int k;

    template <class W>
    [[gnu::always_inline]] W operator()(W p) const {
        constexpr std::uint64_t kBias = std::uint64_t{1} << 63;
        const W odd = p >> k & W::broadcast(1);
        const W sum = p + W::broadcast(kBias + (std::uint64_t{1} << (k - 1)) - 1) + odd;
        return (sum >> k) - W::broadcast(kBias >> k);
    }
};

// With |val| < 2^(k-1), k at most 32, the constant takes the rest of the shift: the upper half of the
// product is the quotient, which always fits, the lower half the fraction in units of 2^-32.
template <class V>
[[gnu::always_inline]] inline V roundedHigh(V x, std::int32_t shiftedVal) {
    const auto p = product(x, shiftedVal, whole);
    const V odd = p.high & V::broadcast(1);
    // Fraction above one half, or at it where the quotient is odd; compared as signed numbers.
    const V fraction = p.low ^ V::broadcast(std::numeric_limits<std::int32_t>::min());
    return p.high + keepIf(fraction > -odd, V::broadcast(1));
}

[[gnu::noinline]] void multiply(Zep32s val, Zep32s* x, int len, int k) {
    if (k <= 0) {
        const auto saturatedProduct = [val](auto v) __attribute__((always_inline)) {
            return saturated(product(v, val, whole));
        };
        if (k == 0) return convert(saturatedProduct, x, len, x);
        const int n = scaled::leftCount(k);
        return convert(
            [=](auto v) __attribute__((always_inline)) {
                return scaled::shiftLeftSaturated(saturatedProduct(v), n);
            },
            x, len, x);
    }
    const std::int64_t magnitude = val < 0 ? -std::int64_t{val} : std::int64_t{val};
    if (k <= 32 && magnitude < std::int64_t{1} << (k - 1)) {
        const auto shiftedVal = static_cast<std::int32_t>(std::int64_t{val} << (32 - k));
        return convert(
            [shiftedVal](auto v)
                __attribute__((always_inline)) { return roundedHigh(v, shiftedVal); },
            x, len, x);
    }
    convert(
        [ val, k ](auto v)
            __attribute__((always_inline)) { return saturated(product(v, val, RoundedShift{k})); },
        x, len, x);
}

}  // namespace

ZepStatus zepsMulC_32s_ISfs(Zep32s val, Zep32s* pSrcDst, int len, int scaleFactor) {
    if (const ZepStatus s = checkVectors(len, pSrcDst); s != zepStsNoErr) return s;
    // |r| <= 2^62: from 63 on a quotient is at most one half, which rounds to 0.
    if (val == 0 || scaleFactor > 62) return zepsZero_32s(pSrcDst, len);
    if (val == 1 && scaleFactor == 0) return zepStsNoErr;
    multiply(val, pSrcDst, len, scaleFactor);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
