// The three kinds of transforms of any length, for code that is written once for all of them: tests
// and benchmarks.
#pragma once

#include <complex>
#include <cstddef>

#include "zeps.h"

namespace zep::test {

struct DftComplex {
    using Spec = DFTSpecC32fc;
    using Element = Zep32fc;
    static constexpr double unit = 0x1p-24;
    static constexpr auto create = zepsDFTInitAlloc_C_32fc;
    static constexpr auto release = zepsDFTFree_C_32fc;
    static constexpr auto bufSize = zepsDFTGetBufSize_C_32fc;
    static constexpr auto forward = zepsDFTFwd_CToC_32fc;
};
struct DftDouble {
    using Spec = DFTSpecC64fc;
    using Element = Zep64fc;
    static constexpr double unit = 0x1p-53;
    static constexpr auto create = zepsDFTInitAlloc_C_64fc;
    static constexpr auto release = zepsDFTFree_C_64fc;
    static constexpr auto bufSize = zepsDFTGetBufSize_C_64fc;
    static constexpr auto forward = zepsDFTFwd_CToC_64fc;
};
struct DftReal {
    using Spec = DFTSpecR32f;
    using Element = Zep32f;
    static constexpr double unit = 0x1p-24;
    static constexpr auto create = zepsDFTInitAlloc_R_32f;
    static constexpr auto release = zepsDFTFree_R_32f;
    static constexpr auto bufSize = zepsDFTGetBufSize_R_32f;
    static constexpr auto forward = zepsDFTFwd_RToPerm_32f;
};

using Extended = std::complex<long double>;

inline Extended toExtended(Zep32fc x) { return {x.re, x.im}; }
inline Extended toExtended(Zep64fc x) { return {x.re, x.im}; }
inline Extended toExtended(Zep32f x) { return {x, 0}; }

// Bin k of a computed spectrum; a packed one holds the lower half.
template <class T>
Extended computedBin(const T* X, std::size_t, std::size_t k) {
    return toExtended(X[k]);
}
inline Extended computedBin(const Zep32f* X, std::size_t N, std::size_t k) {
    if (2 * k > N) return std::conj(computedBin(X, N, N - k));
    if (k == 0) return X[0];
    if (2 * k == N) return X[1];
    return N % 2 == 0 ? Extended(X[2 * k], X[2 * k + 1]) : Extended(X[2 * k - 1], X[2 * k]);
}

}  // namespace zep::test
