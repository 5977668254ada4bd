// The first pass: bit reversal and a transform of as many points as a vector has lanes, without
// twiddles, for as many neighbouring bases.
//
// A butterfly over the points and a transposition leave each base's bins in a vector of its own.
// Sums and shuffles compete for units; taking turns they keep them all busy.
#pragma once

#include "transform/fft_passes.h"

namespace zep::ZEP_VARIANT::fft {

// The first step of a transposition of the even bins, or the odd ones.
template <class V, int H>
[[gnu::always_inline]] inline void pairBins(const simd::SplitComplex<V> (&bins)[H], V (&re)[H],
                                            V (&im)[H]) {
#pragma GCC unroll 16
    for (int i = 0; i < H; ++i) {
        re[i] = bins[simd::slotElement<V>(2 * i) / 2].re;
        im[i] = bins[simd::slotElement<V>(2 * i) / 2].im;
    }
    simd::pairColumns(re);
    simd::pairColumns(im);
}

// 4 and 8 points, odd bins in odd slots: the even bins go through the first step before the odd ones are formed.
template <Direction D, class T>
[[gnu::always_inline]] inline void firstColumnByHalves(const T* src, std::ptrdiff_t legStride,
                                                       T* out, std::ptrdiff_t outStride) {
    using V = Real<T>;
    using C = Cplx<T>;
    constexpr int W = kLanes<T>, H = W / 2;
    C sum[H], difference[H];
#pragma GCC unroll 16
    for (int e = 0; e < H; ++e) {
        const C a = simd::loadInterleaved<V>(src + e * legStride);
        const C b = simd::loadInterleaved<V>(src + (e + H) * legStride);
        sum[e] = a + b;
        difference[e] = a - b;
    }
    V evenRe[H], evenIm[H], oddRe[H], oddIm[H];
    butterfly<D, H>(sum);
    pairBins(sum, evenRe, evenIm);
    oddButterfly<D>(difference);
    pairBins(difference, oddRe, oddIm);
#pragma GCC unroll 16
    for (int i = 0; i < H; ++i) {
        constexpr auto base = simd::slotElement<V>;
        T* low = out + reversedDigit<W>(base(simd::pairedSlot<V>(i))) * outStride;
        T* high = out + reversedDigit<W>(base(simd::pairedSlot<V>(i) + 1)) * outStride;
        C{simd::zipLow(evenRe[i], oddRe[i]), simd::zipLow(evenIm[i], oddIm[i])}.store(low);
        C{simd::zipHigh(evenRe[i], oddRe[i]), simd::zipHigh(evenIm[i], oddIm[i])}.store(high);
    }
}

// 16 points, lanes in natural order: bins k, k + 4, k + 8, k + 12 take their places in the blocks as
// soon as they are formed; the lanes inside the blocks follow when all are there.
template <Direction D, class T>
[[gnu::always_inline]] inline void firstColumnByQuarters(const T* src, std::ptrdiff_t legStride,
                                                         T* out, std::ptrdiff_t outStride) {
    using V = Real<T>;
    using C = Cplx<T>;
    static_assert(kLanes<T> == 16 && simd::kBlocks<V> == 4 && simd::slotElement<V>(5) == 5);
    C b[4][4];  // by k, then n
    simd::unroll<4>([&](auto n) __attribute__((always_inline)) {
#pragma GCC unroll 16
        for (int k = 0; k < 4; ++k)
            b[k][n] = simd::loadInterleaved<V>(src + (n + 4 * k) * legStride);
        quarterOf16<D, n>(b[0][n], b[1][n], b[2][n], b[3][n]);
    });
    V re[4][4], im[4][4];  // by k, then block of bases
    simd::unroll<4>([&](auto k) __attribute__((always_inline)) {
        binsOf16<D, k>(b[k]);
#pragma GCC unroll 16
        for (int m = 0; m < 4; ++m) {
            re[k][m] = b[k][m].re;
            im[k][m] = b[k][m].im;
        }
        simd::transposeBlocks(re[k]);
        simd::transposeBlocks(im[k]);
    });
#pragma GCC unroll 16
    for (int block = 0; block < 4; ++block) {
        V rowRe[4], rowIm[4];
#pragma GCC unroll 16
        for (int k = 0; k < 4; ++k) {
            rowRe[k] = re[k][block];
            rowIm[k] = im[k][block];
        }
        simd::transposeLanes(rowRe);
        simd::transposeLanes(rowIm);
#pragma GCC unroll 16
        for (int i = 0; i < 4; ++i)
            C{rowRe[i], rowIm[i]}.store(out + reversedDigit<16>(4 * block + i) * outStride);
    }
}

// Few points, or lanes whose slot order puts the odd bins elsewhere: one transposition of all.
template <Direction D, class T>
[[gnu::always_inline]] inline void firstColumnWhole(const T* src, std::ptrdiff_t legStride, T* out,
                                                    std::ptrdiff_t outStride) {
    using V = Real<T>;
    using C = Cplx<T>;
    constexpr int W = kLanes<T>;
    C x[W];
#pragma GCC unroll 16
    for (int e = 0; e < W; ++e) x[e] = simd::loadInterleaved<V>(src + e * legStride);
    butterfly<D, W>(x);
    V re[W], im[W];
#pragma GCC unroll 16
    for (int s = 0; s < W; ++s) {
        re[s] = x[simd::slotElement<V>(s)].re;
        im[s] = x[simd::slotElement<V>(s)].im;
    }
    simd::transpose(re);
    simd::transpose(im);
#pragma GCC unroll 16
    for (int s = 0; s < W; ++s)
        C{re[s], im[s]}.store(out + reversedDigit<W>(simd::slotElement<V>(s)) * outStride);
}

// The bases are the complex elements from src on, the legs legStride scalars apart; the group of
// base s goes to out + rev(s) * outStride.
template <Direction D, class T>
[[gnu::always_inline]] inline void firstColumn(const T* src, std::ptrdiff_t legStride, T* out,
                                               std::ptrdiff_t outStride) {
    constexpr int W = kLanes<T>;
    static_assert(W == 2 || W == 4 || W == 8 || W == 16);
    if constexpr (W == 2 || simd::slotElement<Real<T>>(1) != 1)
        firstColumnWhole<D>(src, legStride, out, outStride);
    else if constexpr (W == 16)
        firstColumnByQuarters<D>(src, legStride, out, outStride);
    else
        firstColumnByHalves<D>(src, legStride, out, outStride);
}

}  // namespace zep::ZEP_VARIANT::fft
