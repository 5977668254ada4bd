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

namespace zep::ZEP_VARIANT {
namespace {

// dr, di: real difference and imaginary sum of a = Z[k] and b = Z[h-k]; u, v: their product with
// the table entry.
inline void storeFolded(Cplx a, Cplx b, Real u, Real v, float* rising, float* falling) {
    Shuffle::storeReversed({a.re - u, v - a.im}, falling);
    Shuffle::storeInterleaved({b.re + u, v - b.im}, rising);
}

void foldTable(float* z, std::ptrdiff_t h, const float* table) {
    float* rising = z + 2;
    float* falling = z + 2 * (h - kLanes);
    for (; rising < falling; rising += 2 * kLanes, falling -= 2 * kLanes, table += 2 * kLanes) {
        const Cplx a = Shuffle::loadInterleaved(rising), b = Shuffle::loadReversed(falling);
        const Real A = Real::load(table), B = Real::load(table + kLanes);
        const Real dr = a.re - b.re, di = a.im + b.im;
        storeFolded(a, b, B * dr + A * di, B * di - A * dr, rising, falling);
    }
}

// The twiddle is the product of a fine and a coarse entry, and the data are halved instead of the
// table: u = (dr + c*di + s*dr)/2, v = (di - c*dr + s*di)/2 with s = -sin.
void foldFactored(float* z, std::ptrdiff_t h, const float* table) {
    float* rising = z + 2;
    float* falling = z + 2 * (h - kLanes);
    const float* coarse = table + 2 * kFineFold;
    const Real half = Real::broadcast(0.5f);
    while (rising < falling) {
        const Cplx base{Real::broadcast(coarse[0]), Real::broadcast(coarse[1])};
        for (std::ptrdiff_t n = 0; n < 2 * kFineFold; n += 2 * kLanes) {
            const Cplx w = rotate<Direction::Forward>(Cplx::load(table + n), base);
            const Cplx a = Shuffle::loadInterleaved(rising) * half;
            const Cplx b = Shuffle::loadReversed(falling) * half;
            const Real dr = a.re - b.re, di = a.im + b.im, sr = a.re + b.re, si = a.im - b.im;
            const Real p = w.re * di + w.im * dr, q = w.im * di - w.re * dr;
            Shuffle::storeReversed({sr - p, q - si}, falling);
            Shuffle::storeInterleaved({sr + p, q + si}, rising);
            rising += 2 * kLanes;
            falling -= 2 * kLanes;
        }
        coarse += 2;
    }
}

}  // namespace

void FFTFold(Zep32fc* z, int order, const FftObject& spec) {
    const Zep32fc first = z[0];
    z[0] = {first.re + first.im, first.re - first.im};
    const std::ptrdiff_t h = std::ptrdiff_t{1} << (order - 1);
    if (order < kLongFoldOrder)
        foldTable(&z->re, h, spec.foldTwiddles);
    else
        foldFactored(&z->re, h, spec.foldTwiddles);
}

}  // namespace zep::ZEP_VARIANT
