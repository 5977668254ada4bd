// Straight-line transforms of the shortest lengths, without tables: up to 8 points one butterfly on
// single elements, from 16 points rows of vectors (fft_rows.h).
#include "simd/vec_one.h"
#include "transform/fft_routes.h"
#include "transform/fft_rows.h"

namespace zep::ZEP_VARIANT::fft {
namespace {

template <Direction D, int N, bool kScaled, class T>
inline void transformSingles(const T* src, T* dst, T scale) {
    using V = simd::Vec<T, 1>;
    using C = simd::SplitComplex<V>;
    C x[N];
#pragma GCC unroll 16
    for (int n = 0; n < N; ++n) x[n] = C::load(src + 2 * n);
    butterfly<D, N>(x);
#pragma GCC unroll 16
    for (int k = 0; k < N; ++k) scaledIf<kScaled>(x[k], V::broadcast(scale)).store(dst + 2 * k);
}

template <Direction D, bool kScaled, class T, int kOrder = 0>
inline void transformOrder(const T* src, T* dst, int order, T scale) {
    if (order == kOrder) {
        constexpr Straight s = straightRows<T>(kOrder);
        if constexpr (s.lanes == 1)
            transformSingles<D, s.rows, kScaled>(src, dst, scale);
        else
            transformRows<D, simd::Vec<T, s.lanes>, s.rows, kScaled>(src, dst, scale);
    } else if constexpr (kOrder + 1 < kStraightOrder<T>) {
        transformOrder<D, kScaled, T, kOrder + 1>(src, dst, order, scale);
    }
}

}  // namespace

template <Direction D, class T>
void Routes<D, T>::direct(const T* src, T* dst, int order) {
    transformOrder<D, false>(src, dst, order, T{1});
}

template <Direction D, class T>
void Routes<D, T>::directScaled(const T* src, T* dst, int order, T scale) {
    transformOrder<D, true>(src, dst, order, scale);
}

template struct Routes<Direction::Forward, float>;
template struct Routes<Direction::Inverse, float>;
template struct Routes<Direction::Forward, double>;
template struct Routes<Direction::Inverse, double>;

}  // namespace zep::ZEP_VARIANT::fft
