// Transforms by the definition, pairing points k and r-k, for odd lengths without code of their own.
#pragma once

#include "transform/dft_butterfly.h"
#include "transform/dft_passes.h"

namespace zep::ZEP_VARIANT::dft {

constexpr int kMaxOdd = 150;
constexpr int kMaxPairs = (kMaxOdd - 1) / 2;

// Scalars of an odd table: for j, k = 1 .. (r-1)/2 the cosine and the sine of j*k.
constexpr std::size_t oddTableScalars(int r) {
    const std::size_t pairs = static_cast<std::size_t>((r - 1) / 2);
    return 2 * pairs * pairs;
}

// x[0 .. r-1] become their transform, lane by lane.
template <Direction D, class V>
inline void oddTransform(simd::SplitComplex<V>* x, int r, const typename V::Scalar* table) {
    using C = simd::SplitComplex<V>;
    const int pairs = (r - 1) / 2;
    C a[kMaxPairs + 1], b[kMaxPairs + 1];
    const C x0 = x[0];
    C sum = x0;
    for (int k = 0; k < pairs; ++k) {
        a[k] = x[k + 1] + x[r - 1 - k];
        b[k] = x[k + 1] - x[r - 1 - k];
        sum = sum + a[k];
    }
    x[0] = sum;
    const auto finish = [&](int j, C p, C q) {
        x[j] = fft::addQuarter<D>(p, q);
        x[r - j] = fft::subQuarter<D>(p, q);
    };
    // Two bins at a time: each load of a pair serves both.
    int j = 1;
    for (; j < pairs; j += 2, table += 4 * pairs) {
        C p = x0, q{V::broadcast(0), V::broadcast(0)}, p2 = x0, q2 = q;
        for (int k = 0; k < pairs; ++k) {
            const auto* w = table + 2 * k;
            const auto* w2 = w + 2 * pairs;
            p = fft::addScaled(p, a[k], V::broadcast(w[0]));
            q = fft::addScaled(q, b[k], V::broadcast(w[1]));
            p2 = fft::addScaled(p2, a[k], V::broadcast(w2[0]));
            q2 = fft::addScaled(q2, b[k], V::broadcast(w2[1]));
        }
        finish(j, p, q);
        finish(j + 1, p2, q2);
    }
    if (j == pairs) {
        C p = x0, q{V::broadcast(0), V::broadcast(0)};
        for (int k = 0; k < pairs; ++k) {
            p = fft::addScaled(p, a[k], V::broadcast(table[2 * k]));
            q = fft::addScaled(q, b[k], V::broadcast(table[2 * k + 1]));
        }
        finish(j, p, q);
    }
}

// One transform of odd length; its vectors run over the bins. The table holds for each pair k the
// cosines of j*k, j = 1, 2 .. in whole vectors, then the sines.
template <class T>
constexpr std::ptrdiff_t paddedPairs(int r) {
    return ((r - 1) / 2 + kLanes<T> - 1) / kLanes<T> * kLanes<T>;
}
template <class T>
constexpr std::size_t directTableScalars(int r) {
    return static_cast<std::size_t>((r - 1) * paddedPairs<T>(r));
}
// Times scale; dst may equal src.
template <Direction D, class T>
void directOdd(const T* src, T* dst, int len, const T* table, T scale);

}  // namespace zep::ZEP_VARIANT::dft
