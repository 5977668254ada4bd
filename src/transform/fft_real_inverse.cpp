// The real transform backward: the unfold makes N/2 complex values of the packed spectrum, whose
// inverse transform is the samples, neighbours as real and imaginary part.
//
// With Z = X[k], W = X[h-k], h = N/2 and w = exp(-2*pi*i*k/N) = c + i*s, twice the spectrum of the
// complex signal is u[k] = Z + conj(W) + i * conj(w) * (Z - conj(W)). As in the fold, one rising and
// one falling pointer do the sweep in place, and at k = h/2 both store the same value.
#include "transform/fft_real_inverse.h"

#include "transform/fft_passes.h"
#include "transform/fft_routes.h"
#include "transform/fft_scratch.h"
#include "transform/fft_sine_constants.h"
#include "transform/fft_tables.h"

namespace zep::ZEP_VARIANT::fft {
namespace {

using Inverse = Routes<Direction::Inverse, float>;

// (c, s) in w; falling pointers address the last vector's first element.
template <class V>
[[gnu::always_inline]] inline void unfold(const float* rising, const float* falling,
                                          simd::SplitComplex<V> w, float* up, float* down) {
    const auto z = simd::loadInterleaved<V>(rising), y = simd::loadReversed<V>(falling);
    const V A = z.re - y.re, B = z.im + y.im, C = z.re + y.re, D = z.im - y.im;
    const V p = mulSub(w.im, A, w.re * B), q = mulAdd(w.im, B, w.re * A);
    simd::storeReversed<V>({C - p, q - D}, down);
    simd::storeInterleaved<V>({C + p, D + q}, up);
}

template <class V>
void unfoldTable(const float* src, float* dst, std::ptrdiff_t h, const float* table) {
    constexpr std::ptrdiff_t kPair = 2 * V::lanes;
    for (std::ptrdiff_t up = 2, down = 2 * h - kPair; up < down;
         up += kPair, down -= kPair, table += kPair)
        unfold<V>(src + up, src + down, simd::SplitComplex<V>::load(table), dst + up, dst + down);
}

void unfoldFactored(const float* src, float* dst, std::ptrdiff_t h, const float* table) {
    using V = Real<float>;
    using C = Cplx<float>;
    constexpr std::ptrdiff_t kPair = 2 * V::lanes;
    const float* coarse = table + static_cast<std::ptrdiff_t>(2 * kFineFold);
    for (std::ptrdiff_t up = 2, down = 2 * h - kPair; up < down; coarse += 2) {
        const C base{V::broadcast(coarse[0]), V::broadcast(coarse[1])};
        for (std::ptrdiff_t n = 0; n < 2 * kFineFold; n += kPair, up += kPair, down -= kPair)
            unfold<V>(src + up, src + down, rotate<Direction::Forward>(C::load(table + n), base),
                      dst + up, dst + down);
    }
}

// 4, 8 and 16 points.
template <int N>
void inverseDirect(const float* src, float* dst, float scale) {
    constexpr int h = N / 2;
    float P[N], u[N];
    __builtin_memcpy(P, src, sizeof P);
    u[0] = P[0] + P[1];
    u[1] = P[0] - P[1];
    for (int k = 1; k <= h / 2; ++k) {
        const float c = constantCosine<float>(k, N), s = -constantSine<float>(k, N);
        const float *z = P + 2 * k, *y = P + 2 * (h - k);
        const float A = z[0] - y[0], B = z[1] + y[1], C = z[0] + y[0], D = z[1] - y[1];
        const float p = s * A - c * B, q = s * B + c * A;
        u[2 * (h - k)] = C - p;
        u[2 * (h - k) + 1] = q - D;
        u[2 * k] = C + p;
        u[2 * k + 1] = D + q;
    }
    Inverse::directScaled(u, dst, logOf(h), scale);
}

void inverseShort(const float* src, float* dst, int order, float scale) {
    static_assert(kFirstFoldedOrder == 5);
    const float a = simd::readAny(src);
    switch (order) {
        case 0:
            return simd::writeAny(dst, a * scale);
        case 1: {
            const float b = simd::readAny(src + 1);
            simd::writeAny(dst, (a + b) * scale);
            return simd::writeAny(dst + 1, (a - b) * scale);
        }
        case 2:
            return inverseDirect<4>(src, dst, scale);
        case 3:
            return inverseDirect<8>(src, dst, scale);
        default:
            return inverseDirect<16>(src, dst, scale);
    }
}

}  // namespace

ZepStatus FFTInvPermToR(const Zep32f* src, Zep32f* dst, const FFTSpecR32f* spec, Zep8u* buffer) {
    if (const ZepStatus s = checkTransform<FftKind::Real>(spec, src, dst); s != zepStsNoErr)
        return s;
    const int order = spec->order;
    const bool scaled = spec->scaleInverse != 0;
    if (order < kFirstFoldedOrder) {
        inverseShort(src, dst, order, scaled ? spec->scale : 1.0f);
        return zepStsNoErr;
    }
    const Scratch scratch(buffer, spec->workSize);
    if (scratch.missing()) return zepStsMemAllocErr;
    const std::ptrdiff_t h = std::ptrdiff_t{1} << (order - 1);
    const float a = simd::readAny(src), b = simd::readAny(src + 1);
    simd::writeAny(dst, a + b);
    simd::writeAny(dst + 1, a - b);
    if (order < kLongFoldOrder)
        withFoldVector<float>(
            order, [&]<class V>(V) { unfoldTable<V>(src, dst, h, spec->unfoldTwiddles); });
    else
        unfoldFactored(src, dst, h, spec->unfoldTwiddles);
    Inverse::complex(dst, dst, order - 1, *spec, scratch.as<float>(), scaled);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT::fft
