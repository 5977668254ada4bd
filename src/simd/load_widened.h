// Doubles straight from narrower elements in memory: the conversion then needs no shuffle before
// it.
#pragma once

#include "simd/vec.h"

namespace zep::ZEP_VARIANT::simd {

// D::lanes elements from p on.
template <class D>
[[gnu::always_inline]] inline D loadWidened(const float* p) {
    if constexpr (D::lanes == 2)
        return detail::out<D>(
            _mm_cvtps_pd(_mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i_u*>(p)))));
    else if constexpr (D::lanes == 4)
        return detail::out<D>(_mm256_cvtps_pd(detail::in(Vec<float, D::lanes>::load(p))));
    else
        return detail::out<D>(_mm512_cvtps_pd(detail::in(Vec<float, D::lanes>::load(p))));
}
template <class D>
[[gnu::always_inline]] inline D loadWidened(const std::int32_t* p) {
    if constexpr (D::lanes == 2)
        return detail::out<D>(
            _mm_cvtepi32_pd(_mm_loadl_epi64(reinterpret_cast<const __m128i_u*>(p))));
    else if constexpr (D::lanes == 4)
        return detail::out<D>(_mm256_cvtepi32_pd(asInts(Vec<std::int32_t, D::lanes>::load(p).v)));
    else
        return detail::out<D>(_mm512_cvtepi32_pd(asInts(Vec<std::int32_t, D::lanes>::load(p).v)));
}

}  // namespace zep::ZEP_VARIANT::simd
