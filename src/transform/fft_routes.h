// The routes of the complex transform, for the drivers and for other code of this variant that owns
// an FftObject. Every routine is unscaled unless it takes a scale.
#pragma once

#include "transform/fft_butterfly.h"
#include "transform/fft_spec.h"

namespace zep::ZEP_VARIANT {

// Straight-line kernels, order 0 to Tuning::directMaxOrder; dst may equal src.
template <Direction D>
void FFTDirect(const Zep32fc* src, Zep32fc* dst, int order);
template <Direction D>
void FFTDirectScaled(const Zep32fc* src, Zep32fc* dst, int order, float scale);

// The one straight-line kernel above those, of order kStraightOrder; dst may equal src. A scale of
// 1 leaves all values.
template <Direction D>
void FFTStraight(const Zep32fc* src, Zep32fc* dst, float scale);

// One uninterrupted run of passes, orders above the straight ones, below kSplitFromOrder.
// scratch holds 2^order elements on a 32-byte boundary; dst may equal src. The scale is applied
// with the last pass; 1 leaves all values.
template <Direction D>
void FFTSingleBlock(const Zep32fc* src, Zep32fc* dst, int order, const FftObject& spec,
                    float* scratch, float scale);

// The passes from groups of 2^groupOrder elements to one of 2^order, in place on `blocks` split
// blocks.
template <Direction D>
void FFTBlockInPlace(float* work, std::ptrdiff_t blocks, int groupOrder, int order,
                     const float* twiddles);

// Orders from kSplitFromOrder on.
template <Direction D>
void FFTLong(const Zep32fc* src, Zep32fc* dst, int order, const FftObject& spec, float* scratch,
             float scale);

// Any order of a complex core; scratch as workSize says.
template <Direction D>
void FFTComplex(const Zep32fc* src, Zep32fc* dst, int order, const FftObject& spec, float* scratch,
                bool scaled);

// From the spectrum Z of N/2 complex samples, in z, to the packed spectrum of the N = 2^order real
// ones, in place.
void FFTFold(Zep32fc* z, int order, const FftObject& spec);

}  // namespace zep::ZEP_VARIANT
