// Driver of the real transform: N real samples are N/2 complex ones, and the fold separates the two
// spectra. The shortest lengths have direct kernels.
#include "core/checks.h"
#include "transform/fft_passes.h"
#include "transform/fft_routes.h"
#include "transform/fft_scratch.h"
#include "transform/fft_sine_constants.h"

namespace zep::ZEP_VARIANT {
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
        table.A[k] = 0.5f * constantCosine(k, N);
        table.B[k] = 0.5f - 0.5f * constantSine(k, N);
    }
    return table;
}
template <int N>
constexpr FoldConstants<N> kFoldConstants = makeFoldConstants<N>();

// 8 and 16 points.
template <int N>
void realDirect(const float* src, float* dst, bool scaled, float scale) {
    constexpr int h = N / 2, kOrder = logOf(h);
    Zep32fc z[h];
    const Zep32fc* pairs = reinterpret_cast<const Zep32fc*>(src);
    if (scaled)
        FFTDirectScaled<Direction::Forward>(pairs, z, kOrder, scale);
    else
        FFTDirect<Direction::Forward>(pairs, z, kOrder);
    dst[0] = z[0].re + z[0].im;
    dst[1] = z[0].re - z[0].im;
    for (int k = 1; k <= h / 2; ++k) {
        const Zep32fc a = z[k], b = z[h - k];
        const float A = kFoldConstants<N>.A[k], B = kFoldConstants<N>.B[k];
        const float dr = a.re - b.re, di = a.im + b.im;
        const float u = B * dr + A * di, v = B * di - A * dr;
        dst[2 * (h - k)] = a.re - u;
        dst[2 * (h - k) + 1] = v - a.im;
        dst[2 * k] = b.re + u;
        dst[2 * k + 1] = v - b.im;
    }
}

void realShort(const float* src, float* dst, int order, bool scaled, float factor) {
    const float scale = scaled ? factor : 1.0f;
    switch (order) {
        case 0:
            dst[0] = src[0] * scale;
            return;
        case 1: {
            const float a = src[0], b = src[1];
            dst[0] = (a + b) * scale;
            dst[1] = (a - b) * scale;
            return;
        }
        case 2: {
            const float even = src[0] + src[2], odd = src[1] + src[3];
            const float re = src[0] - src[2], im = src[3] - src[1];
            dst[0] = (even + odd) * scale;
            dst[1] = (even - odd) * scale;
            dst[2] = re * scale;
            dst[3] = im * scale;
            return;
        }
        case 3:
            return realDirect<8>(src, dst, scaled, factor);
        default:
            return realDirect<16>(src, dst, scaled, factor);
    }
}

}  // namespace

ZepStatus zepsFFTFwd_RToPerm_32f(const Zep32f* pSrc, Zep32f* pDst, const FFTSpecR32f* pSpec,
                                 Zep8u* pBuffer) {
    if (pSpec == nullptr) return zepStsNullPtrErr;
    if (pSpec->magic != static_cast<std::int32_t>(FftKind::Real)) return zepStsContextMatchErr;
    if (anyNull(pSrc, pDst)) return zepStsNullPtrErr;
    const int order = pSpec->order;
    const bool scaled = pSpec->scaleForward != 0;
    if (order < kFirstFoldedOrder) {
        realShort(pSrc, pDst, order, scaled, pSpec->scale);
        return zepStsNoErr;
    }
    const FftScratch scratch(pBuffer, pSpec->workSize);
    if (scratch.missing()) return zepStsMemAllocErr;
    Zep32fc* z = reinterpret_cast<Zep32fc*>(pDst);
    FFTComplex<Direction::Forward>(reinterpret_cast<const Zep32fc*>(pSrc), z, order - 1, *pSpec,
                                   scratch.floats(), scaled);
    FFTFold(z, order, *pSpec);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
