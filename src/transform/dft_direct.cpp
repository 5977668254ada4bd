// Straight-line transforms of 1 to 16 points.
#include "simd/pairs.h"
#include "transform/dft_object.h"
#include "transform/dft_real.h"
#include "transform/fft_routes.h"

namespace zep::ZEP_VARIANT::dft {
namespace {

template <class T>
using Single = simd::Vec<T, 1>;
template <class T>
using Element = simd::Pairs<simd::Vec<T, 16 / int{sizeof(T)}>>;

// An inverse transform is a forward one of points in reverse, the first staying first.
template <int N, class T>
void transformElements(const T* src, T* dst, T scale, Direction direction) {
    using C = Element<T>;
    const bool forward = direction == Direction::Forward;
    const std::ptrdiff_t step = forward ? 2 : -2;
    C x[N];
    x[0] = C::loadOne(src);
    if (!forward) src += 2 * N;
#pragma GCC unroll 16
    for (int n = 1; n < N; ++n) x[n] = C::loadOne(src + n * step);
    butterfly<Direction::Forward, N>(x);
    const auto factor = C::Part::broadcast(scale);
#pragma GCC unroll 16
    for (int k = 0; k < N; ++k) (x[k] * factor).storeOne(dst + 2 * k);
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

// Even lengths: half as many pairs, folded.
template <int N>
void transformFolded(const float* src, float* dst, float scale) {
    using C = Element<float>;
    constexpr int h = N / 2;
    constexpr UnitRoots<float, N> roots = kUnitRoots<float, N>;
    const auto factor = C::Part::broadcast(scale);
    C z[h];
#pragma GCC unroll 16
    for (int n = 0; n < h; ++n) z[n] = C::loadOne(src + 2 * n) * factor;
    butterfly<Direction::Forward, h>(z);
    foldEnds(z[0]).storeOne(dst);
    if constexpr (h % 2 == 0) conjugate(z[h / 2]).storeOne(dst + h);
    simd::unroll<(h - 1) / 2>([&](auto i) __attribute__((always_inline)) {
        constexpr int k = i + 1;
        C a = z[k], b = z[h - k];
        foldPair(a, b, C::turn(0.5f - 0.5f * roots.sine[k], -0.5f * roots.cosine[k]));
        a.storeOne(dst + 2 * k);
        b.storeOne(dst + 2 * (h - k));
    });
}

template <int N>
void transformRealConstant(const float* src, float* dst, float scale) {
    if constexpr (N % 2 == 0)
        transformFolded<N>(src, dst, scale);
    else
        transformReal<N>(src, dst, scale);
}

// By length; a length without a function of its own is a power of two.
template <class F>
struct ByLength {
    F of[kDirectMaxLength + 1];
};
template <class T>
using DirectTable = ByLength<void (*)(const T*, T*, T, Direction)>;
template <class T, int N = 3>
constexpr void fillDirect(DirectTable<T>& table) {
    if constexpr ((N & (N - 1)) != 0) table.of[N] = transformElements<N, T>;
    if constexpr (N + 1 < kDirectMaxLength) fillDirect<T, N + 1>(table);
}
template <class T>
constexpr DirectTable<T> makeDirect() {
    DirectTable<T> table{};
    fillDirect<T>(table);
    return table;
}
template <class T>
constexpr DirectTable<T> kDirect = makeDirect<T>();

using RealTable = ByLength<void (*)(const float*, float*, float)>;
template <int... N>
constexpr RealTable makeReal(std::integer_sequence<int, N...>) {
    return {{nullptr, transformRealConstant<N + 1>...}};
}
constexpr RealTable kReal = makeReal(std::make_integer_sequence<int, kDirectMaxLength>{});
// By half of the length.
template <int... h>
constexpr RealTable makeFolded(std::integer_sequence<int, h...>) {
    return {{nullptr, transformFolded<2 * (h + 1)>...}};
}
constexpr RealTable kFolded = makeFolded(std::make_integer_sequence<int, kDirectMaxLength - 1>{});

}  // namespace

template <Direction D, class T>
void Run<D, T>::direct(const T* src, T* dst, int len, T scale) {
    using Fft = fft::Routes<D, T>;
    if ((len & (len - 1)) != 0) return kDirect<T>.of[len](src, dst, scale, D);
    const int order = len == 1 ? 0 : len == 2 ? 1 : len == 4 ? 2 : len == 8 ? 3 : 4;
    if (scale == 1)
        Fft::direct(src, dst, order);
    else
        Fft::directScaled(src, dst, order, scale);
}

void directReal(const float* src, float* dst, int len, float scale) {
    (len <= kDirectMaxLength ? kReal.of[len] : kFolded.of[len / 2])(src, dst, scale);
}

template struct Run<Direction::Forward, float>;
template struct Run<Direction::Inverse, float>;
template struct Run<Direction::Forward, double>;
template struct Run<Direction::Inverse, double>;

}  // namespace zep::ZEP_VARIANT::dft
