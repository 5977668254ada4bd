// Lengths with large prime factors as a convolution with a chirp (Bluestein 1970): n*k is
// (n^2 + k^2 - (k-n)^2) / 2. The chirp's spectrum holds the factor 1/convLen.
#include "transform/dft_object.h"

namespace zep::ZEP_VARIANT::dft {
namespace {

// out[n] = a[n] * b[n] * scale, n pairs; out may be a.
template <bool kScaled, class T>
void multiplyPairs(const T* a, const T* b, T* out, std::ptrdiff_t count, T scale) {
    const auto product = [&]<class V>(V, std::ptrdiff_t n) __attribute__((always_inline)) {
        const auto x =
            fft::rotate<Direction::Forward>(loadPairs<V>(a + 2 * n), loadPairs<V>(b + 2 * n));
        if constexpr (kScaled)
            storePairs<V>(x * V::broadcast(scale), out + 2 * n);
        else
            storePairs<V>(x, out + 2 * n);
    };
    using V = Real<T>;
    std::ptrdiff_t n = 0;
    for (; n + V::lanes <= count; n += V::lanes) product(V{}, n);
    for (; n < count; ++n) product(simd::Vec<T, 1>{}, n);
}

template <class T>
void multiply(const T* a, const T* b, T* out, std::ptrdiff_t count, T scale = 1) {
    if (scale == 1)
        multiplyPairs<false>(a, b, out, count, scale);
    else
        multiplyPairs<true>(a, b, out, count, scale);
}

template <class T>
void multiplyReal(const T* a, const T* b, T* out, std::ptrdiff_t count) {
    using V = Real<T>;
    constexpr std::ptrdiff_t W = V::lanes;
    std::ptrdiff_t n = 0;
    for (; n + W <= count; n += W) {
        const V x = V::load(a + n);
        (interleaveFront(x, x) * V::load(b + 2 * n)).store(out + 2 * n);
        (interleaveBack(x, x) * V::load(b + 2 * n + W)).store(out + 2 * n + W);
    }
    for (; n < count; ++n) {
        const T x = simd::readAny(a + n);
        out[2 * n] = x * b[2 * n];
        out[2 * n + 1] = x * b[2 * n + 1];
    }
}

}  // namespace

// Leaves the bins in scratch. The inverse is the forward transform with bins k and len-k swapped.
template <Direction D, class T>
ZepStatus Run<D, T>::chirp(const T* src, bool real, int len, const DftObject<T>& spec, T* scratch,
                           T scale) {
    const std::ptrdiff_t M = spec.convLen;
    T* inner = scratch + 2 * M;
    if (real)
        multiplyReal(src, spec.chirp, scratch, len);
    else
        multiply(src, spec.chirp, scratch, len);
    __builtin_memset(scratch + 2 * std::ptrdiff_t{len}, 0,
                     static_cast<std::size_t>(2 * (M - len)) * sizeof(T));
    ZepStatus s = Run<Direction::Forward, T>::points(scratch, scratch, spec.convLen, *spec.convSpec,
                                                     inner, 1);
    if (s != zepStsNoErr) return s;
    multiply(scratch, spec.chirpSpectrum, scratch, M);
    s = Run<Direction::Inverse, T>::points(scratch, scratch, spec.convLen, *spec.convSpec, inner,
                                           1);
    if (s != zepStsNoErr) return s;
    multiply(scratch, spec.chirp, scratch, len, scale);
    return zepStsNoErr;
}

template <Direction D, class T>
ZepStatus Run<D, T>::chirp(const T* src, T* dst, int len, const DftObject<T>& spec, T* scratch,
                           T scale) {
    if (const ZepStatus s = chirp(src, false, len, spec, scratch, scale); s != zepStsNoErr)
        return s;
    constexpr std::size_t kPairBytes = 2 * sizeof(T);
    if (D == Direction::Forward) {
        __builtin_memcpy(dst, scratch, static_cast<std::size_t>(len) * kPairBytes);
    } else {
        __builtin_memcpy(dst, scratch, kPairBytes);
        for (std::ptrdiff_t k = 1; k < len; ++k)
            __builtin_memcpy(dst + 2 * k, scratch + 2 * (len - k), kPairBytes);
    }
    return zepStsNoErr;
}

template struct Run<Direction::Forward, float>;
template struct Run<Direction::Inverse, float>;
template struct Run<Direction::Forward, double>;
template struct Run<Direction::Inverse, double>;

}  // namespace zep::ZEP_VARIANT::dft
