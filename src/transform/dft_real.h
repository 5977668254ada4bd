// Real transforms of any length: the fold of an even one, the passes of an odd one.
//
// An odd transform is packed as R(0), R(1), I(1), R(2) .. at every stage: a group of s points takes
// s values, and a pass computes the lower half of the columns; bins beyond the middle are stored
// conjugated where their mirror image stands.
#pragma once

#include "transform/dft_passes.h"
#include "transform/dft_spec.h"

namespace zep::ZEP_VARIANT::dft {

// Pairs k and h-k, h = len/2, without the element in the middle, which is its own partner.
constexpr std::int64_t foldCount(std::int64_t len) { return (len / 2 - 1) / 2; }

// Bins k and h-k of h complex points z become those of 2*h real ones; w is (1 - i exp(-pi*i*k/h)) / 2.
template <class C>
[[gnu::always_inline]] inline void foldPair(C& a, C& b, typename C::Turn w) {
    const C t = fft::rotate<Direction::Forward>(a - conjugate(b), w);
    const C low = conjugate(b) + t;
    b = conjugate(a - t);
    a = low;
}
// Bin 0, and bin h in its imaginary part.
template <class C>
[[gnu::always_inline]] inline C foldEnds(C z) {
    return conjugate(z) + exchanged(z);
}

// From the spectrum of len/2 complex points in z to the packed one of len real points, at least
// 34, times scale, in place.
void foldReal(float* z, const DftObject<float>& spec, float scale);

// The mixed-radix route of odd lengths, times scale; scratch holds 2 * len values. dst may equal src.
void realPasses(const float* src, float* dst, const DftObject<float>& spec, float* scratch,
                float scale);

}  // namespace zep::ZEP_VARIANT::dft
