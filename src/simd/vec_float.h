// Operations of floating lanes that have an instruction of their own.
#pragma once

#include "simd/compare.h"
#include "simd/shuffle.h"

namespace zep::ZEP_VARIANT::simd {

namespace detail {

// Between a vector and what the intrinsics of its width take and return.
template <class V>
[[gnu::always_inline]] inline typename V::R in(V a) {
    return a.v;
}
template <class V>
[[gnu::always_inline]] inline V out(typename V::R x) {
    return {x};
}

template <class V>
inline constexpr bool isFloat = std::is_same_v<typename V::Scalar, float>;

}  // namespace detail

template <FloatVec V>
[[gnu::always_inline]] inline V sqrt(V a) {
    using namespace detail;
    if constexpr (isFloat<V>) {
        if constexpr (V::bytes == 16)
            return out<V>(_mm_sqrt_ps(in(a)));
        else if constexpr (V::bytes == 32)
            return out<V>(_mm256_sqrt_ps(in(a)));
        else
            return out<V>(_mm512_sqrt_ps(in(a)));
    } else {
        if constexpr (V::bytes == 16)
            return out<V>(_mm_sqrt_pd(in(a)));
        else if constexpr (V::bytes == 32)
            return out<V>(_mm256_sqrt_pd(in(a)));
        else
            return out<V>(_mm512_sqrt_pd(in(a)));
    }
}

// The second operand where either is NaN or both are zero.
template <FloatVec V>
[[gnu::always_inline]] inline V min(V a, V b) {
    using namespace detail;
    if constexpr (isFloat<V>) {
        if constexpr (V::bytes == 16)
            return out<V>(_mm_min_ps(in(a), in(b)));
        else if constexpr (V::bytes == 32)
            return out<V>(_mm256_min_ps(in(a), in(b)));
        else
            return out<V>(_mm512_min_ps(in(a), in(b)));
    } else {
        if constexpr (V::bytes == 16)
            return out<V>(_mm_min_pd(in(a), in(b)));
        else if constexpr (V::bytes == 32)
            return out<V>(_mm256_min_pd(in(a), in(b)));
        else
            return out<V>(_mm512_min_pd(in(a), in(b)));
    }
}
template <FloatVec V>
[[gnu::always_inline]] inline V max(V a, V b) {
    using namespace detail;
    if constexpr (isFloat<V>) {
        if constexpr (V::bytes == 16)
            return out<V>(_mm_max_ps(in(a), in(b)));
        else if constexpr (V::bytes == 32)
            return out<V>(_mm256_max_ps(in(a), in(b)));
        else
            return out<V>(_mm512_max_ps(in(a), in(b)));
    } else {
        if constexpr (V::bytes == 16)
            return out<V>(_mm_max_pd(in(a), in(b)));
        else if constexpr (V::bytes == 32)
            return out<V>(_mm256_max_pd(in(a), in(b)));
        else
            return out<V>(_mm512_max_pd(in(a), in(b)));
    }
}

// Relative error at most 1.5 * 2^-12; a denormal counts as zero. The same bits at every width: a
// 64-byte vector goes in two halves, since its own instruction estimates otherwise.
template <FloatVec V>
requires detail::isFloat<V>
[[gnu::always_inline]] inline V reciprocalEstimate(V a) {
    using namespace detail;
    if constexpr (V::bytes == 16)
        return out<V>(_mm_rcp_ps(in(a)));
    else if constexpr (V::bytes == 32)
        return out<V>(_mm256_rcp_ps(in(a)));
    else
        return join(reciprocalEstimate(low(a)), reciprocalEstimate(high(a)));
}
template <FloatVec V>
requires detail::isFloat<V>
[[gnu::always_inline]] inline V rsqrtEstimate(V a) {
    using namespace detail;
    if constexpr (V::bytes == 16)
        return out<V>(_mm_rsqrt_ps(in(a)));
    else if constexpr (V::bytes == 32)
        return out<V>(_mm256_rsqrt_ps(in(a)));
    else
        return join(rsqrtEstimate(low(a)), rsqrtEstimate(high(a)));
}

// a * b + c, rounded once where the level can, else twice: for sums whose order of operations is
// free.
template <FloatVec V>
[[gnu::always_inline]] inline V mulAdd(V a, V b, V c) {
    using namespace detail;
    if constexpr (!kHasAvx2) {
        return a * b + c;
    } else if constexpr (isFloat<V>) {
        if constexpr (V::bytes == 16)
            return out<V>(_mm_fmadd_ps(in(a), in(b), in(c)));
        else if constexpr (V::bytes == 32)
            return out<V>(_mm256_fmadd_ps(in(a), in(b), in(c)));
        else
            return out<V>(_mm512_fmadd_ps(in(a), in(b), in(c)));
    } else {
        if constexpr (V::bytes == 16)
            return out<V>(_mm_fmadd_pd(in(a), in(b), in(c)));
        else if constexpr (V::bytes == 32)
            return out<V>(_mm256_fmadd_pd(in(a), in(b), in(c)));
        else
            return out<V>(_mm512_fmadd_pd(in(a), in(b), in(c)));
    }
}
// c - a * b
template <FloatVec V>
[[gnu::always_inline]] inline V negMulAdd(V a, V b, V c) {
    using namespace detail;
    if constexpr (!kHasAvx2) {
        return c - a * b;
    } else if constexpr (isFloat<V>) {
        if constexpr (V::bytes == 16)
            return out<V>(_mm_fnmadd_ps(in(a), in(b), in(c)));
        else if constexpr (V::bytes == 32)
            return out<V>(_mm256_fnmadd_ps(in(a), in(b), in(c)));
        else
            return out<V>(_mm512_fnmadd_ps(in(a), in(b), in(c)));
    } else {
        if constexpr (V::bytes == 16)
            return out<V>(_mm_fnmadd_pd(in(a), in(b), in(c)));
        else if constexpr (V::bytes == 32)
            return out<V>(_mm256_fnmadd_pd(in(a), in(b), in(c)));
        else
            return out<V>(_mm512_fnmadd_pd(in(a), in(b), in(c)));
    }
}
// a * b - c
template <FloatVec V>
[[gnu::always_inline]] inline V mulSub(V a, V b, V c) {
    using namespace detail;
    if constexpr (!kHasAvx2) {
        return a * b - c;
    } else if constexpr (isFloat<V>) {
        if constexpr (V::bytes == 16)
            return out<V>(_mm_fmsub_ps(in(a), in(b), in(c)));
        else if constexpr (V::bytes == 32)
            return out<V>(_mm256_fmsub_ps(in(a), in(b), in(c)));
        else
            return out<V>(_mm512_fmsub_ps(in(a), in(b), in(c)));
    } else {
        if constexpr (V::bytes == 16)
            return out<V>(_mm_fmsub_pd(in(a), in(b), in(c)));
        else if constexpr (V::bytes == 32)
            return out<V>(_mm256_fmsub_pd(in(a), in(b), in(c)));
        else
            return out<V>(_mm512_fmsub_pd(in(a), in(b), in(c)));
    }
}

// a - b in even lanes, a + b in odd ones.
template <FloatVec V>
[[gnu::always_inline]] inline V subAdd(V a, V b) {
    using namespace detail;
    using T = typename V::Scalar;
    if constexpr (V::bytes == 64) {
        // There is no such instruction; a product with 1 is exact.
        const auto one = in(V::broadcast(T{1}));
        if constexpr (isFloat<V>)
            return out<V>(_mm512_fmaddsub_ps(in(a), one, in(b)));
        else
            return out<V>(_mm512_fmaddsub_pd(in(a), one, in(b)));
    } else if constexpr (V::bytes == 32) {
        if constexpr (isFloat<V>)
            return out<V>(_mm256_addsub_ps(in(a), in(b)));
        else
            return out<V>(_mm256_addsub_pd(in(a), in(b)));
    } else if constexpr (kHasSsse3) {
        if constexpr (isFloat<V>)
            return out<V>(_mm_addsub_ps(in(a), in(b)));
        else
            return out<V>(_mm_addsub_pd(in(a), in(b)));
    } else {
        return a + (b ^ V::broadcastPair(T(-0.0), T(0.0)));
    }
}

enum class Rounding { NearestEven, Down, Up, TowardZero, Current };

namespace detail {

template <Rounding r>
inline constexpr int kRoundingControl = (r == Rounding::NearestEven  ? _MM_FROUND_TO_NEAREST_INT
                                         : r == Rounding::Down       ? _MM_FROUND_TO_NEG_INF
                                         : r == Rounding::Up         ? _MM_FROUND_TO_POS_INF
                                         : r == Rounding::TowardZero ? _MM_FROUND_TO_ZERO
                                                                     : _MM_FROUND_CUR_DIRECTION) |
                                        _MM_FROUND_NO_EXC;

// Below SSE4.1. From this magnitude on every number is whole, and the sum with it rounds a smaller
// one to a whole number by the current mode.
template <class T>
inline constexpr T kWholeFrom = sizeof(T) == 4 ? T(0x1p23) : T(0x1p52);

template <Rounding r, FloatVec V>
[[gnu::always_inline]] inline V roundBySums(V a) {
    using T = typename V::Scalar;
    const V large = V::broadcast(kWholeFrom<T>), one = V::broadcast(T{1});
    const V sign = a & signBits<V>();
    const V magnitude = abs(a);
    V whole;
    if constexpr (r == Rounding::Current) {
        // With its sign, which the mode may depend on.
        const V signedLarge = large | sign;
        whole = abs((a + signedLarge) - signedLarge);
    } else {
        whole = (magnitude + large) - large;             // at most one away, whatever the mode
        whole = whole - keepIf(magnitude < whole, one);  // toward zero
        if constexpr (r == Rounding::Down)
            whole = whole + keepIf((whole < magnitude) & (a < V::zero()), one);
        if constexpr (r == Rounding::Up)
            whole = whole + keepIf((whole < magnitude) & (V::zero() < a), one);
        if constexpr (r == Rounding::NearestEven) {
            const V rest = magnitude - whole, half = V::broadcast(T(0.5));
            const V halved = whole * half;
            V wholeHalf = (halved + large) - large;
            const auto odd = wholeHalf != halved;
            whole = whole + keepIf((half < rest) | ((rest == half) & odd), one);
        }
    }
    // NaN and what is whole already stay.
    return select(magnitude < large, whole | sign, a);
}

}  // namespace detail

// To a whole number, in the format.
template <Rounding r, FloatVec V>
[[gnu::always_inline]] inline V roundTo(V a) {
    using namespace detail;
    if constexpr (!kHasSse41) {
        return roundBySums<r>(a);
    } else if constexpr (isFloat<V>) {
        if constexpr (V::bytes == 16)
            return out<V>(_mm_round_ps(in(a), kRoundingControl<r>));
        else if constexpr (V::bytes == 32)
            return out<V>(_mm256_round_ps(in(a), kRoundingControl<r>));
        else
            return out<V>(_mm512_roundscale_ps(in(a), kRoundingControl<r>));
    } else {
        if constexpr (V::bytes == 16)
            return out<V>(_mm_round_pd(in(a), kRoundingControl<r>));
        else if constexpr (V::bytes == 32)
            return out<V>(_mm256_round_pd(in(a), kRoundingControl<r>));
        else
            return out<V>(_mm512_roundscale_pd(in(a), kRoundingControl<r>));
    }
}
template <FloatVec V>
[[gnu::always_inline]] inline V roundEven(V a) {
    return roundTo<Rounding::NearestEven>(a);
}
template <FloatVec V>
[[gnu::always_inline]] inline V floor(V a) {
    return roundTo<Rounding::Down>(a);
}
template <FloatVec V>
[[gnu::always_inline]] inline V ceil(V a) {
    return roundTo<Rounding::Up>(a);
}
template <FloatVec V>
[[gnu::always_inline]] inline V truncate(V a) {
    return roundTo<Rounding::TowardZero>(a);
}

}  // namespace zep::ZEP_VARIANT::simd
