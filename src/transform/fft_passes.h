// The passes of the power-of-two transform: decimation in time with a work area of split vectors.
//
// Work layout. A vector of the work area is `lanes` real parts, then `lanes` imaginary parts, of as
// many consecutive complex elements in slot order (simd/split_complex.h). The first pass reads
// interleaved input in bit-reversed order and leaves groups of `lanes` elements, each a finished
// transform; a pass of radix R joins R groups of G elements to one of R*G; the last pass writes
// interleaved output.
//
// A pass reads position p of a block, the group of residue rev(p), rotates its column c by
// W(rev(p), c) = exp(-2*pi*i*rev(p)*c/(R*G)) and combines the R values. The twiddles of column
// vector c stand in one block of (R-1)*2*lanes floats: for leg e = 1 .. R-1 the cosines, then the
// negated sines. A pass with groups of G therefore takes (R-1)*G elements of the table; those of
// the passes before it take G - lanes together, whatever their radices were, which is where its own
// begin.
#pragma once

#include <cstddef>
#include <cstdint>

#include "transform/fft_butterfly.h"

namespace zep::ZEP_VARIANT {

using Real = simd::Vec<float, simd::kFloatBytes >= 32 ? 8 : 4>;
using Cplx = simd::SplitComplex<Real>;
using Shuffle = simd::ComplexShuffle<Real>;

constexpr int kLanes = Real::lanes;
constexpr int logOf(int powerOfTwo) { return powerOfTwo <= 1 ? 0 : 1 + logOf(powerOfTwo / 2); }
constexpr int kLogLanes = logOf(kLanes);
// Columns that share one coarse twiddle in the passes across the blocks of a long transform.
constexpr int kFineOrder = 5;

// Real transforms below this order have direct kernels; from here on a fold follows a complex
// transform.
constexpr int kFirstFoldedOrder = 5;

// The passes that join groups of 2^groupOrder elements to one of 2^order: radix 8 first, then radix
// 4, no radix 2. The last pass also interleaves, which a radix-4 pass does at less cost.
constexpr int nextRadixOrder(int bits) { return bits == 2 || bits == 4 ? 2 : 3; }
constexpr int lastRadixOrder(int bits) { return bits % 3 == 0 ? 3 : 2; }

class PassSequence {
public:
    PassSequence(int groupOrder, int order) : group_(groupOrder), order_(order) {}

    bool done() const { return group_ == order_; }
    bool last() const { return group_ + radixOrder() == order_; }
    int groupOrder() const { return group_; }
    int radixOrder() const { return nextRadixOrder(order_ - group_); }
    void next() { group_ += radixOrder(); }

private:
    int group_;
    int order_;
};

// Where the twiddles of the pass with groups of 2^groupOrder begin, in floats; of the order of the
// whole transform, the length of the table.
constexpr std::ptrdiff_t passTwiddles(int groupOrder) {
    return 2 * ((std::ptrdiff_t{1} << groupOrder) - kLanes);
}

// Twiddles of one pass across blocks, in two factors: fine ones for 2^kFineOrder columns, then
// coarse pairs.
class LevelTable {
public:
    constexpr LevelTable(int groupOrder, int radixOrder)
        : legs_((std::size_t{1} << radixOrder) - 1),
          coarse_(std::size_t{1} << (groupOrder - kFineOrder)) {}

    constexpr std::size_t fineFloats() const { return legs_ << (kFineOrder + 1); }
    constexpr std::size_t coarseFloats() const { return legs_ * coarse_ * 2; }
    constexpr std::size_t floats() const { return (fineFloats() + coarseFloats() + 7) / 8 * 8; }

private:
    std::size_t legs_;
    std::size_t coarse_;
};

template <int R>
constexpr int reversedDigit(int p) {
    int reversed = 0;
#pragma GCC unroll 16
    for (int bit = 1; bit < R; bit *= 2) reversed = reversed * 2 + ((p & bit) != 0 ? 1 : 0);
    return reversed;
}

enum class Output { Split, Interleaved, InterleavedScaled };

template <Output kOutput>
[[gnu::always_inline]] inline void storeColumn(Cplx x, float* p, [[maybe_unused]] Real scale) {
    if constexpr (kOutput == Output::Split)
        x.store(p);
    else if constexpr (kOutput == Output::Interleaved)
        Shuffle::storeInterleaved(x, p);
    else
        Shuffle::storeInterleaved(x * scale, p);
}

// One block: columns 0 .. columns-1 of R rows. The strides are in floats; rows of in are split
// vectors.
template <Direction D, int R, Output kOutput>
[[gnu::always_inline]] inline void joinColumns(const float* in, std::ptrdiff_t inStride, float* out,
                                               std::ptrdiff_t outStride, const float* twiddles,
                                               std::ptrdiff_t columns, float scale) {
    const Real factor = Real::broadcast(scale);
    for (std::ptrdiff_t c = 0; c < columns; c += kLanes) {
        Cplx x[R];
        x[0] = Cplx::load(in);
#pragma GCC unroll 16
        for (int e = 1; e < R; ++e) {
            Cplx y = Cplx::load(in + reversedDigit<R>(e) * inStride);
            Cplx w = Cplx::load(twiddles + (e - 1) * 2 * kLanes);
            // A product uses each part twice. Four points leave registers for all of them, and
            // their loads are what limits the pass; eight points do not.
            if constexpr (R == 4) {
                keepInRegister(y);
                keepInRegister(w);
            }
            x[e] = rotate<D>(y, w);
        }
        butterfly<D, R>(x);
#pragma GCC unroll 16
        for (int k = 0; k < R; ++k) storeColumn<kOutput>(x[k], out + k * outStride, factor);
        in += 2 * kLanes;
        out += 2 * kLanes;
        twiddles += (R - 1) * 2 * kLanes;
    }
}

// One pass in place over `blocks` blocks of R groups of `group` elements.
template <Direction D, int R>
[[gnu::always_inline]] inline void joinBlocks(float* work, std::ptrdiff_t blocks,
                                              std::ptrdiff_t group, const float* twiddles) {
    const std::ptrdiff_t stride = 2 * group;
    for (std::ptrdiff_t b = 0; b < blocks; ++b, work += R * stride)
        joinColumns<D, R, Output::Split>(work, stride, work, stride, twiddles, group, 1.0f);
}

// The first step of a transposition of the even bins, or the odd ones, of kLanes points.
[[gnu::always_inline]] inline void pairBins(const Cplx (&bins)[kLanes / 2], Real (&re)[kLanes / 2],
                                            Real (&im)[kLanes / 2]) {
#pragma GCC unroll 16
    for (int i = 0; i < kLanes / 2; ++i) {
        re[i] = bins[simd::slotElement<Real>(2 * i) / 2].re;
        im[i] = bins[simd::slotElement<Real>(2 * i) / 2].im;
    }
    Shuffle::pairColumns(re);
    Shuffle::pairColumns(im);
}

// The first pass: bit reversal and a transform of kLanes points, without twiddles, for the kLanes
// neighbouring bases from src on. Legs are legStride floats apart; group s of the result goes to
// out + s * outStride in the order of bit-reversed bases.
template <Direction D>
[[gnu::always_inline]] inline void firstColumn(const float* src, std::ptrdiff_t legStride,
                                               float* out, std::ptrdiff_t outStride) {
    constexpr int kHalf = kLanes / 2;
    Cplx sum[kHalf], difference[kHalf];
#pragma GCC unroll 16
    for (int e = 0; e < kHalf; ++e) {
        const Cplx a = Shuffle::loadInterleaved(src + e * legStride);
        const Cplx b = Shuffle::loadInterleaved(src + (e + kHalf) * legStride);
        sum[e] = a + b;
        difference[e] = a - b;
    }
    // Sums and shuffles compete for units; taking turns they keep them all busy.
    Real evenRe[kHalf], evenIm[kHalf], oddRe[kHalf], oddIm[kHalf];
    butterfly<D, kHalf>(sum);
    pairBins(sum, evenRe, evenIm);
    oddButterfly<D>(difference);
    pairBins(difference, oddRe, oddIm);
#pragma GCC unroll 16
    for (int i = 0; i < kHalf; ++i) {
        float* even = out + reversedDigit<kLanes>(2 * i) * outStride;
        float* odd = out + reversedDigit<kLanes>(2 * i + 1) * outStride;
        Cplx{zipLow(evenRe[i], oddRe[i]), zipLow(evenIm[i], oddIm[i])}.store(even);
        Cplx{zipHigh(evenRe[i], oddRe[i]), zipHigh(evenIm[i], oddIm[i])}.store(odd);
    }
}

}  // namespace zep::ZEP_VARIANT
