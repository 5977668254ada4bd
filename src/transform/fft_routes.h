// The routes of the complex transform, for the drivers and for other code of this variant that owns
// a transform object. Data are pairs of parts at any address; scratch begins on a 32-byte boundary.
// Every routine is unscaled unless it takes a scale; a scale of 1 leaves all values.
#pragma once

#include "transform/fft_butterfly.h"
#include "transform/fft_spec.h"

namespace zep::ZEP_VARIANT::fft {

template <Direction D, class T>
struct Routes {
    // Any order of a complex core; scratch as workSize says. dst may equal src.
    static void complex(const T* src, T* dst, int order, const FftObject<T>& spec, T* scratch,
                        bool scaled);

    // Straight-line kernels, order 0 to kStraightOrder - 1; dst may equal src.
    static void direct(const T* src, T* dst, int order);
    static void directScaled(const T* src, T* dst, int order, T scale);
    // The longest straight-line kernel, of order kStraightOrder; dst may equal src.
    static void straight(const T* src, T* dst, T scale);

    // One uninterrupted run of passes, orders above the straight ones, below splitFromOrder.
    // scratch holds 2^order elements; dst may equal src. The scale is applied with the last pass.
    static void singleBlock(const T* src, T* dst, int order, const FftObject<T>& spec, T* scratch,
                            T scale);

    // Orders from splitFromOrder on.
    static void splitBlocks(const T* src, T* dst, int order, const FftObject<T>& spec, T* scratch,
                            T scale);

    // The passes from groups of 2^groupOrder elements to one of 2^order, in place on `blocks` split
    // blocks.
    static void blockInPlace(T* work, std::ptrdiff_t blocks, int groupOrder, int order,
                             const T* twiddles);

    // Bit reversal of 2^order elements, and the passes up to groups of 2^tileOrder; dst holds split
    // groups then. dst may equal src. scratch: two tiles.
    static void reverseTiles(const T* src, T* dst, int order, const FftObject<T>& spec, T* scratch);
};

// From the spectrum Z of N/2 complex samples, in z, to the packed spectrum of the N = 2^order real
// ones, in place.
void FFTFold(float* z, int order, const FftObject<float>& spec);

}  // namespace zep::ZEP_VARIANT::fft
