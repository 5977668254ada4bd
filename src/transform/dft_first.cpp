// The first stage of the mixed-radix route.
#include "transform/dft_odd.h"
#include "transform/dft_passes.h"

namespace zep::ZEP_VARIANT::dft {
namespace {

// 16 bytes of a vector.
template <int block, class V>
[[gnu::always_inline]] inline auto blockOf(V x) {
    if constexpr (sizeof(V) == 16)
        return x;
    else if constexpr (block < simd::kBlocks<V> / 2)
        return blockOf<block>(simd::low(x));
    else
        return blockOf<block - simd::kBlocks<V> / 2>(simd::high(x));
}

// The first n elements of 16 bytes.
template <int n, class V>
[[gnu::always_inline]] inline void storeFront(V x, typename V::Scalar* p) {
    if constexpr (n == V::lanes) {
        x.store(p);
    } else if constexpr (n == 1) {
        simd::writeAny(p, simd::first(x));
    } else {
        simd::writeAny(reinterpret_cast<double*>(p), simd::first(simd::bitsIn<double>(x)));
        if constexpr (n == 3) simd::writeAny(p + 2, x.v[2]);
    }
}

// The values x[0 .. width-1] of lane n to out + n * stride, for the first `rows` elements.
template <int width, bool kPartial, class V, int P>
[[gnu::always_inline]] inline void storeColumns(V (&x)[P], typename V::Scalar* out,
                                                std::ptrdiff_t stride, std::ptrdiff_t rows) {
    simd::transposeLanes(x);
    simd::unroll<V::lanes>([&](auto n) __attribute__((always_inline)) {
        constexpr int slot = simd::elementSlot<V>(n);
        if (kPartial && n >= rows) return;
        storeFront<width>(blockOf<slot / P>(x[slot % P]), out + n * stride);
    });
}

// The R values of each lane in a row, from out on.
template <int R, class V, class Part>
[[gnu::always_inline]] inline void storeRows(Part part, typename V::Scalar* out) {
    using T = typename V::Scalar;
    constexpr int P = simd::kBlock<V>, W = V::lanes;
    // Whole squares first.
    constexpr int kSquares = R / W;
#pragma GCC unroll 4
    for (int square = 0; square < kSquares; ++square) {
        V x[W];
#pragma GCC unroll 16
        for (int s = 0; s < W; ++s)
            x[s] = part(square * W + (R % W == 0 ? simd::slotElement<V>(s) : s));
        simd::transpose(x);
        T* to = out + square * W;
        simd::unroll<W>([&](auto n) __attribute__((always_inline)) {
            constexpr int slot = simd::elementSlot<V>(n);
            x[slot].store(to);
            to = simd::madeHere(to + R);
        });
    }
    simd::unroll<(R - kSquares * W + P - 1) / P>([&](auto i) __attribute__((always_inline)) {
        constexpr int c = i + kSquares * W / P;
        constexpr int width = R - c * P < P ? R - c * P : P;
        V x[P];
#pragma GCC unroll 4
        for (int k = 0; k < P; ++k) x[k] = part(c * P + (k < width ? k : 0));
        storeColumns<width, false>(x, out + c * P, R, W);
    });
}

// At least as many groups as lanes.
template <Direction D, int R, class T>
void firstStage(const T* in, Parts<T> out, std::ptrdiff_t groups) {
    using V = Real<T>;
    constexpr int W = V::lanes;
    for (std::ptrdiff_t v = 0; v < vectorsOf(groups, W); ++v) {
        const std::ptrdiff_t g = vectorBegin(v, groups, W);
        simd::SplitComplex<V> x[R];
#pragma GCC unroll 16
        for (int k = 0; k < R; ++k) x[k] = simd::loadInterleaved<V>(in + 2 * (g + k * groups));
        butterfly<D, R>(x);
        storeRows<R, V>([&](int k) { return x[k].re; }, out.re + R * g);
        storeRows<R, V>([&](int k) { return x[k].im; }, out.re + out.toIm + R * g);
    }
}

template <Direction D, class T>
void firstStageOdd(const T* in, Parts<T> out, int r, std::ptrdiff_t groups, const T* table) {
    using V = Real<T>;
    constexpr std::ptrdiff_t W = V::lanes;
    for (std::ptrdiff_t g = 0; g < groups; g += W) {
        const std::ptrdiff_t n = groups - g < W ? groups - g : W;
        simd::SplitComplex<V> x[kMaxOdd];
        for (int k = 0; k < r; ++k)
            x[k] = simd::loadInterleavedPartial<V>(in + 2 * (g + k * groups), static_cast<int>(n));
        oddTransform<D, V>(x, r, table);
        constexpr int P = simd::kBlock<V>;
        for (int k = 0; k < r; k += P) {
            V re[P], im[P];
            for (int i = 0; i < P; ++i) {
                re[i] = x[k + i < r ? k + i : k].re;
                im[i] = x[k + i < r ? k + i : k].im;
            }
            T* to = out.re + r * g + k;
            const auto store = [&](auto width) {
                storeColumns<width, true>(re, to, r, n);
                storeColumns<width, true>(im, to + out.toIm, r, n);
            };
            if (r - k >= P) {
                store(std::integral_constant<int, P>{});
            } else if (r - k == 1) {
                store(std::integral_constant<int, 1>{});
            } else if constexpr (P == 4) {
                store(std::integral_constant<int, 3>{});  // r is odd
            }
        }
    }
}

}  // namespace

template <Direction D, class T>
void Passes<D, T>::first(const T* in, Parts<T> out, int radix, std::ptrdiff_t groups,
                         const T* oddTable) {
    withRadix(radix, [&](auto R) {
        if constexpr (R > 0)
            firstStage<D, R>(in, out, groups);
        else
            firstStageOdd<D>(in, out, radix, groups, oddTable);
    });
}

template struct Passes<Direction::Forward, float>;
template struct Passes<Direction::Inverse, float>;
template struct Passes<Direction::Forward, double>;
template struct Passes<Direction::Inverse, double>;

}  // namespace zep::ZEP_VARIANT::dft
