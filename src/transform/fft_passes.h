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
// vector c stand in one block of (R-1)*2*lanes scalars: for leg e = 1 .. R-1 the cosines, then the
// negated sines. A pass with groups of G therefore takes (R-1)*G elements of the table; those of
// the passes before it take G - lanes together, whatever their radices were, which is where its own
// begin.
#pragma once

#include <cstddef>
#include <cstdint>

#include "transform/fft_butterfly.h"
#include "transform/fft_tuning.h"

namespace zep::ZEP_VARIANT::fft {

// Columns that share one coarse twiddle in the passes across the blocks of a long transform.
constexpr int kFineOrder = 5;
static_assert((1 << kFineOrder) % kLanes<float> == 0 && (1 << kFineOrder) % kLanes<double> == 0);

// The fold of 2^order real points takes as many values from either end of 2^(order-1) complex ones:
// calls f with a vector of the right width.
template <class T, class F>
[[gnu::always_inline]] inline void withFoldVector(int order, F f) {
    if constexpr (kLanes < T >> 8) {
        if (1 << (order - 2) < kLanes<T>) return f(simd::Vec<T, 8>{});
    }
    f(Real<T>{});
}

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

// Where the twiddles of the pass with groups of 2^groupOrder begin, in scalars; of the order of the
// whole transform, the length of the table.
template <class T>
constexpr std::ptrdiff_t passTwiddles(int groupOrder) {
    return 2 * ((std::ptrdiff_t{1} << groupOrder) - kLanes<T>);
}

// Twiddles of one pass across blocks, in two factors: fine ones for 2^kFineOrder columns, then
// coarse pairs.
template <class T>
class LevelTable {
public:
    constexpr LevelTable(int groupOrder, int radixOrder)
        : legs_((std::size_t{1} << radixOrder) - 1),
          coarse_(std::size_t{1} << (groupOrder - kFineOrder)) {}

    constexpr std::size_t fineScalars() const { return legs_ << (kFineOrder + 1); }
    constexpr std::size_t coarseScalars() const { return legs_ * coarse_ * 2; }
    constexpr  // Whole cache lines: the next table follows.
        std::size_t
        scalars() const {
        constexpr std::size_t line = 64 / sizeof(T);
        return (fineScalars() + coarseScalars() + line - 1) / line * line;
    }

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

template <Output kOutput, class V>
[[gnu::always_inline]] inline void storeColumn(simd::SplitComplex<V> x, typename V::Scalar* p,
                                               [[maybe_unused]] V scale) {
    if constexpr (kOutput == Output::Split)
        x.store(p);
    else if constexpr (kOutput == Output::Interleaved)
        simd::storeInterleaved(x, p);
    else
        simd::storeInterleaved(x * scale, p);
}

// One block: columns 0 .. columns-1 of R rows. The strides are in scalars; rows of in are split
// vectors.
template <Direction D, int R, Output kOutput, class T>
[[gnu::always_inline]] inline void joinColumns(const T* in, std::ptrdiff_t inStride, T* out,
                                               std::ptrdiff_t outStride, const T* twiddles,
                                               std::ptrdiff_t columns, T scale) {
    constexpr std::ptrdiff_t kPair = 2 * kLanes<T>;
    const Real<T> factor = Real<T>::broadcast(scale);
    for (std::ptrdiff_t c = 0; c < columns; c += kLanes<T>) {
        Cplx<T> x[R];
        x[0] = Cplx<T>::load(in);
#pragma GCC unroll 16
        for (int e = 1; e < R; ++e) {
            Cplx<T> y = Cplx<T>::load(in + reversedDigit<R>(e) * inStride);
            Cplx<T> w = Cplx<T>::load(twiddles + (e - 1) * kPair);
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
        in += kPair;
        out += kPair;
        twiddles += (R - 1) * kPair;
    }
}

// One pass in place over `blocks` blocks of R groups of `group` elements.
template <Direction D, int R, class T>
[[gnu::always_inline]] inline void joinBlocks(T* work, std::ptrdiff_t blocks, std::ptrdiff_t group,
                                              const T* twiddles) {
    const std::ptrdiff_t stride = 2 * group;
    for (std::ptrdiff_t b = 0; b < blocks; ++b, work += R * stride)
        joinColumns<D, R, Output::Split>(work, stride, work, stride, twiddles, group, T{1});
}

}  // namespace zep::ZEP_VARIANT::fft
