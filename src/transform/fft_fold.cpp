// The fold: from the spectrum of N/2 complex values, neighbouring samples as real and imaginary
// part, to the packed spectrum of the N real samples.
//
// With Z[k] the complex spectrum, h = N/2 and W = exp(-2*pi*i/N):
//   X[k] = (Z[k] + conj(Z[h-k]))/2 - (i/2) * W^k * (Z[k] - conj(Z[h-k])).
// X[k] and X[h-k] need the same two values, so one rising and one falling pointer do the sweep in
// place; at k = h/2 they meet on one element, and both store the same value. Tables: see
// fft_tables.cpp.
#include "transform/fft_passes.h"
#include "transform/fft_routes.h"
#include "transform/fft_tables.h"

namespace zep::ZEP_VARIANT::fft {
namespace {

// dr, di: real difference and imaginary sum of a = Z[k] and b = Z[h-k]; u, v: their product with
// the table entry.
template <class V>
[[gnu::always_inline]] inline void storeFolded(simd::SplitComplex<V> a, simd::SplitComplex<V> b,
                                               V u, V v, float* rising, float* falling) {
    simd::storeReversed<V>({a.re - u, v - a.im}, falling);
    simd::storeInterleaved<V>({b.re + u, v - b.im}, rising);
}

template <class V>
void foldTable(float* z, std::ptrdiff_t h, const float* table) {
    constexpr std::ptrdiff_t W = V::lanes;
    float* rising = z + 2;
    float* falling = z + 2 * (h - W);
    for (; rising < falling; rising += 2 * W, falling -= 2 * W, table += 2 * W) {
        const auto a = simd::loadInterleaved<V>(rising), b = simd::loadReversed<V>(falling);
        const V A = V::load(table), B = V::load(table + W);
        const V dr = a.re - b.re, di = a.im + b.im;
        storeFolded(a, b, mulAdd(B, dr, A * di), negMulAdd(A, dr, B * di), rising, falling);
    }
}

// The twiddle is the product of a fine and a coarse entry, and the data are halved instead of the
// table: u = (dr + c*di + s*dr)/2, v = (di - c*dr + s*di)/2 with s = -sin.
void foldFactored(float* z, std::ptrdiff_t h, const float* table) {
    using V = Real<float>;
    using C = Cplx<float>;
    constexpr std::ptrdiff_t kPair = 2 * V::lanes;
    float* rising = z + 2;
    float* falling = z + 2 * h - kPair;
    const float* coarse = table + static_cast<std::ptrdiff_t>(2 * kFineFold);
    const V half = V::broadcast(0.5f);
    while (rising < falling) {
        const C base{V::broadcast(coarse[0]), V::broadcast(coarse[1])};
        for (std::ptrdiff_t n = 0; n < 2 * kFineFold; n += kPair) {
            const C w = rotate<Direction::Forward>(C::load(table + n), base);
            const C a = simd::loadInterleaved<V>(rising) * half;
            const C b = simd::loadReversed<V>(falling) * half;
            const V dr = a.re - b.re, di = a.im + b.im, sr = a.re + b.re, si = a.im - b.im;
            const V p = mulAdd(w.re, di, w.im * dr), q = negMulAdd(w.re, dr, w.im * di);
            simd::storeReversed<V>({sr - p, q - si}, falling);
            simd::storeInterleaved<V>({sr + p, q + si}, rising);
            rising += kPair;
            falling -= kPair;
        }
        coarse += 2;
    }
}

}  // namespace

void FFTFold(float* z, int order, const FftObject<float>& spec) {
    const float re = simd::readAny(z), im = simd::readAny(z + 1);
    simd::writeAny(z, re + im);
    simd::writeAny(z + 1, re - im);
    const std::ptrdiff_t h = std::ptrdiff_t{1} << (order - 1);
    if (order < kLongFoldOrder)
        withFoldVector<float>(order, [&]<class V>(V) { foldTable<V>(z, h, spec.foldTwiddles); });
    else
        foldFactored(z, h, spec.foldTwiddles);
}

}  // namespace zep::ZEP_VARIANT::fft
