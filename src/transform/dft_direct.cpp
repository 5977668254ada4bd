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

// W(k * column) of R * lanes points, columns in slot order.
template <class V, int R>
struct GridTwiddles {
    alignas(64) typename V::Scalar w[R][2 * V::lanes];
};
template <class V, int R>
constexpr GridTwiddles<V, R> makeGridTwiddles() {
    GridTwiddles<V, R> table{};
    for (int k = 0; k < R; ++k)
        for (int s = 0; s < V::lanes; ++s) {
            const UnitRoots<typename V::Scalar, R* V::lanes>& roots =
                kUnitRoots<typename V::Scalar, R * V::lanes>;
            table.w[k][s] = roots.cosine[k * simd::slotElement<V>(s)];
            table.w[k][s + V::lanes] = -roots.sine[k * simd::slotElement<V>(s)];
        }
    return table;
}
template <class V, int R>
constexpr GridTwiddles<V, R> kGridTwiddles = makeGridTwiddles<V, R>();

// R rows of as many points as V has lanes, R below that: a butterfly over the rows, a transposition,
// a butterfly over the columns. Each store reaches into the next row, but for the last.
template <Direction D, int R, class V, class T>
inline void transformGrid(const T* src, T* dst, T scale) {
    using C = simd::SplitComplex<V>;
    constexpr int W = V::lanes;
    static_assert(R < W && 2 * R >= W);
    C x[R];
#pragma GCC unroll 16
    for (int n = 0; n < R; ++n) x[n] = simd::loadInterleaved<V>(src + 2 * W * n);
    butterfly<D, R>(x);
    V re[W], im[W];
    simd::unroll<W>([&](auto s) __attribute__((always_inline)) {
        constexpr int k = simd::slotElement<V>(s);
        C y = x[k < R ? k : 0];
        if constexpr (k > 0 && k < R) y = fft::rotate<D>(y, C::load(kGridTwiddles<V, R>.w[k]));
        re[s] = y.re;
        im[s] = y.im;
    });
    simd::transpose(re);
    simd::transpose(im);
    C y[W];
#pragma GCC unroll 16
    for (int s = 0; s < W; ++s) y[simd::slotElement<V>(s)] = {re[s], im[s]};
    butterfly<D, W>(y);
    const V factor = V::broadcast(scale);
#pragma GCC unroll 16
    for (int k = 0; k + 1 < W; ++k) simd::storeInterleaved(y[k] * factor, dst + 2 * R * k);
    alignas(64) T rest[2 * W];
    simd::storeInterleaved(y[W - 1] * factor, rest);
    __builtin_memcpy(dst + 2 * R * (W - 1), rest, 2 * R * sizeof(T));
}

template <Direction D, int N, class T>
inline void transformConstant(const T* src, T* dst, T scale) {
    if constexpr (N == 12 && kLanes<T> >= 4)
        transformGrid<D, 3, simd::Vec<T, 4>>(src, dst, scale);
    else
        transformSingles<D, N>(src, dst, scale);
}

template <Direction D, class T, int N = 3>
inline void transformLength(const T* src, T* dst, int len, T scale) {
    if (len == N)
        transformConstant<D, N>(src, dst, scale);
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

// Even lengths: half as many pairs, folded; see fft_fold.cpp for the formula.
template <int N>
void transformFolded(const float* src, float* dst, float factor) {
    using V = Single<float>;
    using C = simd::SplitComplex<V>;
    constexpr int h = N / 2;
    constexpr UnitRoots<float, N> roots = kUnitRoots<float, N>;
    const V scale = V::broadcast(factor);
    C z[h];
#pragma GCC unroll 16
    for (int n = 0; n < h; ++n) z[n] = C::load(src + 2 * n);
    butterfly<Direction::Forward, h>(z);
    (C{z[0].re + z[0].im, z[0].re - z[0].im} * scale).store(dst);
    if constexpr (h % 2 == 0) (C{z[h / 2].re, V{-z[h / 2].im.v}} * scale).store(dst + h);
    simd::unroll<(h - 1) / 2>([&](auto i) __attribute__((always_inline)) {
        constexpr int k = i + 1;
        const V A = V::broadcast(0.5f * roots.cosine[k]);
        const V B = V::broadcast(0.5f - 0.5f * roots.sine[k]);
        const C a = z[k], b = z[h - k];
        const V dr = a.re - b.re, di = a.im + b.im;
        const V u = B * dr + A * di, v = B * di - A * dr;
        (C{b.re + u, v - b.im} * scale).store(dst + 2 * k);
        (C{a.re - u, v - a.im} * scale).store(dst + 2 * (h - k));
    });
}

template <int N>
inline void transformRealConstant(const float* src, float* dst, float scale) {
    if constexpr (N % 2 == 0)
        transformFolded<N>(src, dst, scale);
    else
        transformReal<N>(src, dst, scale);
}

template <int N = 1>
inline void transformRealLength(const float* src, float* dst, int len, float scale) {
    if (len == N)
        transformRealConstant<N>(src, dst, scale);
    else if constexpr (N < 16)
        transformRealLength<N + 1>(src, dst, len, scale);
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
    transformRealLength(src, dst, len, scale);
}

template struct Run<Direction::Forward, float>;
template struct Run<Direction::Inverse, float>;
template struct Run<Direction::Forward, double>;
template struct Run<Direction::Inverse, double>;

}  // namespace zep::ZEP_VARIANT::dft
