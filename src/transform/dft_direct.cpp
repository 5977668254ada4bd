// Straight-line transforms of 1 to 16 points.
#include "transform/dft_object.h"
#include "transform/dft_real.h"
#include "transform/fft_routes.h"

namespace zep::ZEP_VARIANT::dft {
namespace {

template <class T>
using Single = simd::Vec<T, 1>;

template <Direction D, int N, class T>
void transformSingles(const T* src, T* dst, T scale) {
    using V = Single<T>;
    using C = simd::SplitComplex<V>;
    C x[N];
#pragma GCC unroll 16
    for (int n = 0; n < N; ++n) x[n] = C::load(src + 2 * n);
    butterfly<D, N>(x);
#pragma GCC unroll 16
    for (int k = 0; k < N; ++k) (x[k] * V::broadcast(scale)).store(dst + 2 * k);
}

template <Direction D, class T, int N = 3>
inline void transformLength(const T* src, T* dst, int len, T scale) {
    if (len == N)
        transformSingles<D, N>(src, dst, scale);
    else if constexpr (N < 15)
        transformLength<D, T, N + 1>(src, dst, len, scale);
}

// Odd lengths: the lower half of the bins of points without imaginary parts.
template <int N>
void transformReal(const float* src, float* dst, float scale) {
    using V = Single<float>;
    simd::SplitComplex<V> x[N];
#pragma GCC unroll 16
    for (int n = 0; n < N; ++n) x[n] = {V::load(src + n), V::broadcast(0)};
    butterfly<Direction::Forward, N>(x);
    (x[0].re * V::broadcast(scale)).store(dst);
#pragma GCC unroll 16
    for (int k = 1; k <= (N - 1) / 2; ++k) (x[k] * V::broadcast(scale)).store(dst + 2 * k - 1);
}

template <int N = 1>
inline void transformRealLength(const float* src, float* dst, int len, float scale) {
    if (len == N)
        transformReal<N>(src, dst, scale);
    else if constexpr (N < 15)
        transformRealLength<N + 2>(src, dst, len, scale);
}

}  // namespace

template <Direction D, class T>
void Run<D, T>::direct(const T* src, T* dst, int len, T scale) {
    using Fft = fft::Routes<D, T>;
    if ((len & (len - 1)) != 0) return transformLength<D>(src, dst, len, scale);
    const int order = len == 1 ? 0 : len == 2 ? 1 : len == 4 ? 2 : len == 8 ? 3 : 4;
    if (scale == 1)
        Fft::direct(src, dst, order);
    else
        Fft::directScaled(src, dst, order, scale);
}

void directReal(const float* src, float* dst, int len, float scale) {
    if (len % 2 != 0) return transformRealLength(src, dst, len, scale);
    Run<Direction::Forward, float>::direct(src, dst, len / 2, 1.0f);
    foldShort(dst, len);
    if (scale == 1) return;
    for (int k = 0; k < len; ++k) simd::writeAny(dst + k, simd::readAny(dst + k) * scale);
}

template struct Run<Direction::Forward, float>;
template struct Run<Direction::Inverse, float>;
template struct Run<Direction::Forward, double>;
template struct Run<Direction::Inverse, double>;

}  // namespace zep::ZEP_VARIANT::dft
