// What a circular convolution is made of: passes across rows, and transforms within the vectors.
//
// A forward pass of radix R over a block of R*G elements combines the R elements of each column and
// rotates bin k of column c by W(k, c) = exp(-2*pi*i*k*c/(R*G)); its row k then is a block of G
// elements of its own, whose transform are the bins k, k + R, .. . The inverse pass is the mirror
// image. Twiddles stand as in fft_passes.h, lanes in the order of memory.
#pragma once

#include "transform/fft_butterfly.h"
#include "transform/fft_passes.h"
#include "transform/fft_sine_constants.h"

namespace zep::ZEP_VARIANT::fft {

// The outermost radix of 2^order elements: 4 once, outside, where radix 8 alone does not come out; of
// what is left in the end the middle takes four or eight rows.
template <class T>
constexpr int radixOrderOf(int order) {
    const int rows = order - kLogLanes<T>;
    return rows == 2 || (rows > 3 && rows % 3 == 1) ? 2 : 3;
}
// Interleaved memory with lanes in its order: where whole vectors would leave slot order, their halves
// are loaded and stored apart.
template <class V>
[[gnu::always_inline]] inline simd::SplitComplex<V> loadOrdered(const typename V::Scalar* p) {
    if constexpr (sizeof(V) == 32) {
        using H = simd::Half<V>;
        constexpr int W = V::lanes;
        return simd::splitPairs(join(H::load(p), H::load(p + W)),
                                join(H::load(p + W / 2), H::load(p + W + W / 2)));
    } else {
        return simd::loadInterleaved<V>(p);
    }
}
template <class V>
[[gnu::always_inline]] inline void storeOrdered(simd::SplitComplex<V> x, typename V::Scalar* p) {
    if constexpr (sizeof(V) == 32) {
        constexpr int W = V::lanes;
        const V a = zipLow(x.re, x.im), b = zipHigh(x.re, x.im);
        low(a).store(p);
        low(b).store(p + W / 2);
        high(a).store(p + W);
        high(b).store(p + W + W / 2);
    } else {
        simd::storeInterleaved(x, p);
    }
}

// Where the rows of a block stand, and in which form.
template <class T>
struct SplitRows {
    T* base;
    std::ptrdiff_t group;
    Cplx<T> load(int r, std::ptrdiff_t c) const {
        return Cplx<T>::load(base + 2 * (r * group + c));
    }
    void store(int r, std::ptrdiff_t c, Cplx<T> x) const { x.store(base + 2 * (r * group + c)); }
};
template <class T>
struct PairRows {
    const T* base;
    std::ptrdiff_t group;
    Cplx<T> load(int r, std::ptrdiff_t c) const {
        return loadOrdered<Real<T>>(base + 2 * (r * group + c));
    }
};
template <class T>
struct TwoRows {
    const T *first, *second;
    std::ptrdiff_t group;
    Cplx<T> load(int r, std::ptrdiff_t c) const {
        return {Real<T>::load(first + r * group + c), Real<T>::load(second + r * group + c)};
    }
};
template <class T>
struct PairRowsAt {
    T* const* row;
    void store(int r, std::ptrdiff_t c, Cplx<T> x) const { storeOrdered(x, row[r] + 2 * c); }
};
template <class T>
struct TwoRowsAt {
    T *const *first, *const *second;
    void store(int r, std::ptrdiff_t c, Cplx<T> x) const {
        x.re.store(first[r] + c);
        x.im.store(second[r] + c);
    }
};

template <int R, class T, class In>
[[gnu::always_inline]] inline void forwardPass(In in, T* work, std::ptrdiff_t group,
                                               const T* twiddles) {
    constexpr std::ptrdiff_t kPair = 2 * kLanes<T>;
    const SplitRows<T> out{work, group};
    for (std::ptrdiff_t c = 0; c < group; c += kLanes<T>, twiddles += (R - 1) * kPair) {
        Cplx<T> x[R];
#pragma GCC unroll 16
        for (int r = 0; r < R; ++r) x[r] = in.load(r, c);
        butterfly<Direction::Forward, R>(x);
        out.store(0, c, x[0]);
#pragma GCC unroll 16
        for (int k = 1; k < R; ++k)
            out.store(k, c,
                      rotate<Direction::Forward>(x[k], Cplx<T>::load(twiddles + (k - 1) * kPair)));
    }
}

template <int R, class T, class Out>
[[gnu::always_inline]] inline void inversePass(T* work, Out out, std::ptrdiff_t group,
                                               const T* twiddles) {
    constexpr std::ptrdiff_t kPair = 2 * kLanes<T>;
    const SplitRows<T> in{work, group};
    for (std::ptrdiff_t c = 0; c < group; c += kLanes<T>, twiddles += (R - 1) * kPair) {
        Cplx<T> x[R];
        x[0] = in.load(0, c);
#pragma GCC unroll 16
        for (int k = 1; k < R; ++k)
            x[k] = rotate<Direction::Inverse>(in.load(k, c),
                                              Cplx<T>::load(twiddles + (k - 1) * kPair));
        butterfly<Direction::Inverse, R>(x);
#pragma GCC unroll 16
        for (int r = 0; r < R; ++r) out.store(r, c, x[r]);
    }
}

// Transforms of the elements of each vector, four vectors at a time: element P*a + b stands in lane
// b of block a. The blocks change places with as many vectors, a butterfly over a gives d; lane b,
// rotated by W(d, b), likewise. Bins end in vectors and lanes that the inverse alone knows.
template <class V>
struct LaneTwiddles {
    alignas(64) typename V::Scalar w[simd::kBlocks<V>][2 * V::lanes];
};
template <class V>
constexpr LaneTwiddles<V> makeLaneTwiddles() {
    using T = typename V::Scalar;
    LaneTwiddles<V> table{};
    constexpr int kSixteenths = 16 / V::lanes;
    for (int d = 0; d < simd::kBlocks<V>; ++d)
        for (int s = 0; s < V::lanes; ++s) {
            const int k = d * (s % simd::kBlock<V>)*kSixteenths;
            table.w[d][s] = constantCosine<T>(k, 16);
            table.w[d][s + V::lanes] = -constantSine<T>(k, 16);
        }
    return table;
}
template <class V>
constexpr LaneTwiddles<V> kLaneTwiddles = makeLaneTwiddles<V>();

template <int N, class V, class F>
[[gnu::always_inline]] inline void exchange(simd::SplitComplex<V>* x, F transposeParts) {
    V re[N], im[N];
#pragma GCC unroll 16
    for (int i = 0; i < N; ++i) {
        re[i] = x[i].re;
        im[i] = x[i].im;
    }
    transposeParts(re);
    transposeParts(im);
#pragma GCC unroll 16
    for (int i = 0; i < N; ++i) x[i] = {re[i], im[i]};
}

template <Direction D, int N, class V>
[[gnu::always_inline]] inline void butterflyOf(simd::SplitComplex<V>* x) {
    simd::SplitComplex<V> y[N];
#pragma GCC unroll 16
    for (int i = 0; i < N; ++i) y[i] = x[i];
    butterfly<D, N>(y);
#pragma GCC unroll 16
    for (int i = 0; i < N; ++i) x[i] = y[i];
}

template <Direction D, int N, class V>
[[gnu::always_inline]] inline void rotateLanes(simd::SplitComplex<V>* x) {
    constexpr int B = simd::kBlocks<V>;
#pragma GCC unroll 16
    for (int i = 0; i < N; ++i)
        if (i % B > 0)
            x[i] = rotate<D>(x[i], simd::SplitComplex<V>::load(kLaneTwiddles<V>.w[i % B]));
}
template <int N, class V>
[[gnu::always_inline]] inline void exchangeBlocks(simd::SplitComplex<V>* x) {
    constexpr int B = simd::kBlocks<V>;
#pragma GCC unroll 16
    for (int i = 0; i < N; i += B)
        exchange<B>(
            x + i, [](V(&r)[B]) __attribute__((always_inline)) { simd::transposeBlocks(r); });
}
template <int N, class V>
[[gnu::always_inline]] inline void exchangeLanes(simd::SplitComplex<V>* x) {
    constexpr int P = simd::kBlock<V>;
#pragma GCC unroll 16
    for (int i = 0; i < N; i += P)
        exchange<P>(
            x + i, [](V(&r)[P]) __attribute__((always_inline)) { simd::transposeLanes(r); });
}
template <Direction D, int kSize, int N, class V>
[[gnu::always_inline]] inline void butterflies(simd::SplitComplex<V>* x) {
#pragma GCC unroll 16
    for (int i = 0; i < N; i += kSize) butterflyOf<D, kSize>(x + i);
}

template <int N, class V>
[[gnu::always_inline]] inline void transformLanes(simd::SplitComplex<V>* x) {
    constexpr int B = simd::kBlocks<V>, P = simd::kBlock<V>;
    if constexpr (B > 1) {
        exchangeBlocks<N>(x);
        butterflies<Direction::Forward, B, N>(x);
        rotateLanes<Direction::Forward, N>(x);
    }
    exchangeLanes<N>(x);
    butterflies<Direction::Forward, P, N>(x);
}
template <int N, class V>
[[gnu::always_inline]] inline void untransformLanes(simd::SplitComplex<V>* x) {
    constexpr int B = simd::kBlocks<V>, P = simd::kBlock<V>;
    butterflies<Direction::Inverse, P, N>(x);
    exchangeLanes<N>(x);
    if constexpr (B > 1) {
        rotateLanes<Direction::Inverse, N>(x);
        butterflies<Direction::Inverse, B, N>(x);
        exchangeBlocks<N>(x);
    }
}

// Vectors that go through a half of the middle side by side, so that the results of one are ready when
// they are asked for again.
inline constexpr int kSideBySide = 8;

// Blocks of R vectors, N/R of them, to their spectra in `work`, and with the product in between back
// again. Each half alone leaves more of its operations independent of one another than both in one
// run do.
template <int R, int N, class T, class In>
[[gnu::always_inline]] inline void middleForward(In in, T* work, const T* twiddles) {
    using C = Cplx<T>;
    constexpr std::ptrdiff_t kPair = 2 * kLanes<T>;
    C x[N];
#pragma GCC unroll 16
    for (int r = 0; r < N; ++r) x[r] = in.load(r, 0);
    butterflies<Direction::Forward, R, N>(x);
#pragma GCC unroll 16
    for (int k = 0; k < N; ++k)
        if (k % R > 0)
            x[k] = rotate<Direction::Forward>(x[k], C::load(twiddles + (k % R - 1) * kPair));
    transformLanes<N>(x);
#pragma GCC unroll 16
    for (int k = 0; k < N; ++k) x[k].store(work + k * kPair);
}
template <int R, int N, class T, class Out>
[[gnu::always_inline]] inline void middleInverse(const T* work, Out out, const T* twiddles,
                                                 const T* spectrum) {
    using C = Cplx<T>;
    constexpr std::ptrdiff_t kPair = 2 * kLanes<T>;
    C x[N];
#pragma GCC unroll 16
    for (int k = 0; k < N; ++k)
        x[k] = rotate<Direction::Forward>(C::load(work + k * kPair), C::load(spectrum + k * kPair));
    untransformLanes<N>(x);
#pragma GCC unroll 16
    for (int k = 0; k < N; ++k)
        if (k % R > 0)
            x[k] = rotate<Direction::Inverse>(x[k], C::load(twiddles + (k % R - 1) * kPair));
    butterflies<Direction::Inverse, R, N>(x);
#pragma GCC unroll 16
    for (int r = 0; r < N; ++r) out.store(r, 0, x[r]);
}

}  // namespace zep::ZEP_VARIANT::fft
