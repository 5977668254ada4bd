// The mixed-radix route of the shortest lengths: two passes through a buffer of whole vectors, on
// elements as memory has them.
#pragma once

#include "transform/dft_passes.h"

namespace zep::ZEP_VARIANT::dft {

template <class T>
using ShortVector = simd::Pairs<fft::Real<T>>;

// A vector that its columns do not fill is stored whole but for the last row; so it may reach into
// the next row, not beyond.
template <class T>
constexpr bool isShortColumns(int s) {
    return 2 * s >= ShortVector<T>::lanes;
}

// Scalars of the factors of one direction: those of the first point, which are the scale, then for
// each vector of columns and each other point real parts of twiddles, each twice, and imaginary
// ones, (-im, im), the scale in both.
template <class T>
constexpr std::ptrdiff_t shortFactorScalars(int radix, int s) {
    constexpr int L = ShortVector<T>::lanes;
    return 2 * L + vectorsOf(s, L) * (radix - 1) * 4 * L;
}
// They begin on a cache line, behind as much slack as the allocator's alignment leaves open.
template <class T>
inline T* shortFactors(T* table) {
    constexpr std::uintptr_t kLine = 64;
    return reinterpret_cast<T*>((reinterpret_cast<std::uintptr_t>(table) + kLine - 1) &
                                ~(kLine - 1));
}

// Two passes, or none where the length is not short.
template <class T>
Schedule shortSchedule(int len);
template <class T>
class Roots;
// The factors of both directions, with the scale of each; false where memory is short.
template <class T>
bool buildShortFactors(T*& table, int radix, int s, T scaleForward, T scaleInverse,
                       const Roots<T>& roots);

// Without scratch, and scaled.
template <class T>
inline bool runsShort(const DftObject<T>& spec) {
    return spec.mixedRadix != 0 && spec.realOdd == 0 && isShort(spec.digitPermutation);
}

// All of s * radix points, s first. An inverse transform is a forward one of points in reverse, the
// first staying first; the table holds the factors of the points as they are read.
template <class T>
void runShort(const T* src, T* dst, int radix, int s, Direction direction, const T* table);
template <class T>
inline void runShort(const T* src, T* dst, const DftObject<T>& spec, Direction direction) {
    const std::int32_t* radix = spec.digitPermutation;
    runShort(src, dst, radix[1], radix[0], direction, spec.factors[spec.lastFactor].twiddles);
}

}  // namespace zep::ZEP_VARIANT::dft
