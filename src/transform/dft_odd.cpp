#include "transform/dft_odd.h"

namespace zep::ZEP_VARIANT::dft {

template <Direction D, class T>
void directOdd(const T* src, T* dst, int len, const T* table, T scale) {
    using V = Real<T>;
    using C = simd::SplitComplex<V>;
    constexpr int W = V::lanes;
    const int pairs = (len - 1) / 2;
    const std::ptrdiff_t padded = paddedPairs<T>(len);
    T x[2 * kMaxOdd], a[kMaxOdd], b[kMaxOdd], p[2 * W], q[2 * W], X[2 * kMaxOdd];
    __builtin_memcpy(x, src, static_cast<std::size_t>(2 * len) * sizeof(T));
    X[0] = x[0];
    X[1] = x[1];
    for (int k = 0; k < pairs; ++k)
        for (int part = 0; part < 2; ++part) {
            const T u = x[2 * (k + 1) + part], v = x[2 * (len - 1 - k) + part];
            a[2 * k + part] = u + v;
            b[2 * k + part] = u - v;
            X[part] += u + v;
        }
    X[0] *= scale;
    X[1] *= scale;
    const V factor = V::broadcast(scale);
    const C x0{V::broadcast(x[0]), V::broadcast(x[1])};
    for (std::ptrdiff_t j = 0; j < padded; j += W) {
        C even = x0, odd{V::broadcast(0), V::broadcast(0)};
        const T* w = table + j;
        for (int k = 0; k < pairs; ++k, w += 2 * padded) {
            const V cosine = V::load(w), sine = V::load(w + padded);
            even =
                fft::addScaled(even, C{V::broadcast(a[2 * k]), V::broadcast(a[2 * k + 1])}, cosine);
            odd = fft::addScaled(odd, C{V::broadcast(b[2 * k]), V::broadcast(b[2 * k + 1])}, sine);
        }
        (fft::addQuarter<D>(even, odd) * factor).store(p);
        (fft::subQuarter<D>(even, odd) * factor).store(q);
        for (int n = 0; n < W && j + n < pairs; ++n) {
            T* low = X + 2 * (j + n + 1);
            T* high = X + 2 * (len - 1 - j - n);
            low[0] = p[n];
            low[1] = p[n + W];
            high[0] = q[n];
            high[1] = q[n + W];
        }
    }
    __builtin_memcpy(dst, X, static_cast<std::size_t>(2 * len) * sizeof(T));
}

template void directOdd<Direction::Forward>(const float*, float*, int, const float*, float);
template void directOdd<Direction::Inverse>(const float*, float*, int, const float*, float);
template void directOdd<Direction::Forward>(const double*, double*, int, const double*, double);
template void directOdd<Direction::Inverse>(const double*, double*, int, const double*, double);

}  // namespace zep::ZEP_VARIANT::dft
