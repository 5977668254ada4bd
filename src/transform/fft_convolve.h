// Circular convolution of 2^order points with taps that stay the same.
//
// The product of two spectra needs no order of bins, as long as both have the same. So the forward
// transform is by decimation in frequency, from natural order to whatever order it leaves, and the
// inverse, its mirror, by decimation in time back to natural order: no bit reversal either way, and
// the last forward pass, the product and the first inverse pass are one sweep (fft_convolve.cpp).
//
// Work layout: as in fft_passes.h, lanes in the order of memory.
#pragma once

#include <cstddef>

#include "transform/fft_tuning.h"

namespace zep::ZEP_VARIANT::fft {

// Plain data; the memory is the owner's.
template <class T>
struct Convolver {
    int order;
    const T* twiddles;
    T* spectrum;  // of the taps, divided by N, in the order that the forward passes leave
    T* work;
    T* edge;
};

template <class T>
inline constexpr int kLeastConvolverOrder = kLogLanes<T> + 2;
template <class T>
inline constexpr int kMostConvolverOrder = 16;
template <class T>
constexpr bool hasConvolver(int order) {
    return order >= kLeastConvolverOrder<T> && order <= kMostConvolverOrder<T>;
}

// Blocks up to this order take turns between two work areas: while the last results of one sweep
// are on their way, the next sweep has others to work on. Longer ones leave the nearest cache, and
// wait little.
constexpr int kTurnsMaxOrder = 10;
// Scalars of the work area; the shortest blocks go through it some at a time.
template <class T>
constexpr std::size_t convolverWork(int order) {
    const std::size_t work = std::size_t{order <= kTurnsMaxOrder ? 4u : 2u} << order;
    return work < 1024 ? 1024 : work;
}

// Scalars of memory that a convolver takes, from a cache line on.
template <class T>
constexpr std::size_t convolverScalars(int order) {
    return (std::size_t{4} << order) + convolverWork<T>(order) + (std::size_t{1} << order) / 2;
}

// A convolver without taps in memory on a cache line.
template <class T>
Convolver<T> makeConvolver(int order, T* memory);

// Sets the taps, at most N; complex ones as pairs.
template <class T>
void setTaps(const Convolver<T>& convolver, const T* taps, std::ptrdiff_t count);
template <class T>
void setComplexTaps(const Convolver<T>& convolver, const T* taps, std::ptrdiff_t count);

// For block b = 0 .. blocks-1, from the last to the first: results skip .. N-1 of the N elements from
// x + b*step on go to y + b*step; skip + step is at most N, and nothing else is written. x overlaps y
// in no more than one block. Elements of the complex form are pairs; the other one convolves two
// signals with real taps at once, as real and imaginary part of one.
template <class T>
void convolve(const Convolver<T>& convolver, const T* x, T* y, std::ptrdiff_t skip,
              std::ptrdiff_t step, std::ptrdiff_t blocks);
template <class T>
void convolvePair(const Convolver<T>& convolver, const T* const (&x)[2], T* const (&y)[2],
                  std::ptrdiff_t skip, std::ptrdiff_t step, std::ptrdiff_t blocks);

}  // namespace zep::ZEP_VARIANT::fft
