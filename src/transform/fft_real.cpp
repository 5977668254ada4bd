// Driver of the real transform: N real samples are N/2 complex ones, and the fold separates the two
// spectra. The shortest lengths have direct kernels.
#include "transform/fft_passes.h"
#include "transform/fft_routes.h"
#include "transform/fft_scratch.h"
#include "transform/fft_sine_constants.h"
#include "transform/fft_tables.h"

namespace zep::ZEP_VARIANT::fft {
namespace {

// A(k) and B(k) of the fold, k = 1 .. N/4.
template <int N>
struct FoldConstants {
    float A[N / 4 + 1];
    float B[N / 4 + 1];
};
template <int N>
constexpr FoldConstants<N> makeFoldConstants() {
    FoldConstants<N> table{};
    for (int k = 1; k <= N / 4; ++k) {
        table.A[k] = 0.5f * constantCosine<float>(k, N);
        table.B[k] = 0.5f - 0.5f * constantSine<float>(k, N);
    }
    return table;
}
template <int N>
constexpr FoldConstants<N> kFoldConstants = makeFoldConstants<N>();

// 8 and 16 points.
template <int N>
void realDirect(const float* src, float* dst, bool scaled, float scale) {
    using Core = Routes<Direction::Forward, float>;
    constexpr int h = N / 2, kOrder = logOf(h);
    Zep32fc z[h];
    if (scaled)
        Core::directScaled(src, &z[0].re, kOrder, scale);
    else
        Core::direct(src, &z[0].re, kOrder);
    simd::writeAny(dst, z[0].re + z[0].im);
    simd::writeAny(dst + 1, z[0].re - z[0].im);
    for (int k = 1; k <= h / 2; ++k) {
        const Zep32fc a = z[k], b = z[h - k];
        const float A = kFoldConstants<N>.A[k], B = kFoldConstants<N>.B[k];
        const float dr = a.re - b.re, di = a.im + b.im;
        const float u = B * dr + A * di, v = B * di - A * dr;
        simd::writeAny(dst + 2 * (h - k), a.re - u);
        simd::writeAny(dst + 2 * (h - k) + 1, v - a.im);
        simd::writeAny(dst + 2 * k, b.re + u);
        simd::writeAny(dst + 2 * k + 1, v - b.im);
    }
}

// 1, 2 and 4 points.
void realShortest(const float* src, float* dst, int order, float scale) {
    float x[4], X[4];
    const std::size_t bytes = sizeof(float) << order;
    __builtin_memcpy(x, src, bytes);
    if (order == 0) {
        X[0] = x[0] * scale;
    } else if (order == 1) {
        X[0] = (x[0] + x[1]) * scale;
        X[1] = (x[0] - x[1]) * scale;
    } else {
        const float even = x[0] + x[2], odd = x[1] + x[3];
        X[0] = (even + odd) * scale;
        X[1] = (even - odd) * scale;
        X[2] = (x[0] - x[2]) * scale;
        X[3] = (x[3] - x[1]) * scale;
    }
    __builtin_memcpy(dst, X, bytes);
}

void realShort(const float* src, float* dst, int order, bool scaled, float factor) {
    static_assert(kFirstFoldedOrder == 5);
    if (order == 4)
        realDirect<16>(src, dst, scaled, factor);
    else if (order == 3)
        realDirect<8>(src, dst, scaled, factor);
    else
        realShortest(src, dst, order, scaled ? factor : 1.0f);
}

}  // namespace
}  // namespace zep::ZEP_VARIANT::fft

namespace zep::ZEP_VARIANT {

ZepStatus zepsFFTFwd_RToPerm_32f(const Zep32f* pSrc, Zep32f* pDst, const FFTSpecR32f* pSpec,
                                 Zep8u* pBuffer) {
    if (const ZepStatus s = fft::checkTransform<FftKind::Real>(pSpec, pSrc, pDst); s != zepStsNoErr)
        return s;
    const int order = pSpec->order;
    const bool scaled = pSpec->scaleForward != 0;
    if (order < fft::kFirstFoldedOrder) {
        fft::realShort(pSrc, pDst, order, scaled, pSpec->scale);
        return zepStsNoErr;
    }
    const fft::Scratch scratch(pBuffer, pSpec->workSize);
    if (scratch.missing()) return zepStsMemAllocErr;
    fft::Routes<fft::Direction::Forward, float>::complex(pSrc, pDst, order - 1, *pSpec,
                                                         scratch.as<float>(), scaled);
    fft::FFTFold(pDst, order, *pSpec);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
