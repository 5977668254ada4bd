#include <cmath>

#include "core/checks.h"
#include "transform/fft_spec.h"

namespace zep::ZEP_VARIANT {
namespace {

void transform(const Zep32fc* src, Zep32fc* dst, int order, double sign, float scale) {
    const std::size_t N = std::size_t{1} << order;
    for (std::size_t i = 0; i < N; ++i) dst[i] = src[i];
    for (std::size_t i = 0, j = 0; i < N; ++i) {
        if (i < j) {
            const Zep32fc t = dst[i];
            dst[i] = dst[j];
            dst[j] = t;
        }
        std::size_t bit = N >> 1;
        for (; (j & bit) != 0; bit >>= 1) j ^= bit;
        j |= bit;
    }
    for (std::size_t half = 1; half < N; half *= 2)
        for (std::size_t c = 0; c < half; ++c) {
            const double angle =
                sign * 3.141592653589793 * static_cast<double>(c) / static_cast<double>(half);
            const float wr = static_cast<float>(std::cos(angle)),
                        wi = static_cast<float>(std::sin(angle));
            for (std::size_t b = c; b < N; b += 2 * half) {
                const Zep32fc x = dst[b], y = dst[b + half];
                const float re = y.re * wr - y.im * wi, im = y.re * wi + y.im * wr;
                dst[b] = {x.re + re, x.im + im};
                dst[b + half] = {x.re - re, x.im - im};
            }
        }
    for (std::size_t i = 0; i < N; ++i) dst[i] = {dst[i].re * scale, dst[i].im * scale};
}

ZepStatus checked(const Zep32fc* pSrc, Zep32fc* pDst, const FFTSpecC32fc* pSpec, double sign,
                  int scaled) {
    transform(pSrc, pDst, pSpec->order, sign, scaled != 0 ? pSpec->scale : 1.0f);
    return zepStsNoErr;
}

}  // namespace

ZepStatus zepsFFTFwd_CToC_32fc(const Zep32fc* pSrc, Zep32fc* pDst, const FFTSpecC32fc* pSpec,
                               Zep8u*) {
    if (pSpec == nullptr) return zepStsNullPtrErr;
    if (pSpec->magic != static_cast<std::int32_t>(FftKind::Complex)) return zepStsContextMatchErr;
    if (anyNull(pSrc, pDst)) return zepStsNullPtrErr;
    return checked(pSrc, pDst, pSpec, -1.0, pSpec->scaleForward);
}

ZepStatus zepsFFTInv_CToC_32fc(const Zep32fc* pSrc, Zep32fc* pDst, const FFTSpecC32fc* pSpec,
                               Zep8u*) {
    if (pSpec == nullptr) return zepStsNullPtrErr;
    if (pSpec->magic != static_cast<std::int32_t>(FftKind::Complex)) return zepStsContextMatchErr;
    if (anyNull(pSrc, pDst)) return zepStsNullPtrErr;
    return checked(pSrc, pDst, pSpec, 1.0, pSpec->scaleInverse);
}

ZepStatus zepsFFTFwd_RToPerm_32f(const Zep32f* pSrc, Zep32f* pDst, const FFTSpecR32f* pSpec,
                                 Zep8u*) {
    if (pSpec == nullptr) return zepStsNullPtrErr;
    if (pSpec->magic != static_cast<std::int32_t>(FftKind::Real)) return zepStsContextMatchErr;
    if (anyNull(pSrc, pDst)) return zepStsNullPtrErr;
    const float scale = pSpec->scaleForward != 0 ? pSpec->scale : 1.0f;
    if (pSpec->order == 0) {
        pDst[0] = pSrc[0] * scale;
        return zepStsNoErr;
    }
    const std::size_t h = std::size_t{1} << (pSpec->order - 1);
    Zep32fc* z = reinterpret_cast<Zep32fc*>(pDst);
    transform(reinterpret_cast<const Zep32fc*>(pSrc), z, pSpec->order - 1, -1.0, scale);
    z[0] = {z[0].re + z[0].im, z[0].re - z[0].im};
    for (std::size_t k = 1; k <= h / 2; ++k) {
        const double angle = 3.141592653589793 * static_cast<double>(k) / static_cast<double>(h);
        const float A = static_cast<float>(0.5 * std::cos(angle)),
                    B = static_cast<float>(0.5 - 0.5 * std::sin(angle));
        const Zep32fc a = z[k], b = z[h - k];
        const float dr = a.re - b.re, di = a.im + b.im;
        const float u = B * dr + A * di, v = B * di - A * dr;
        z[k] = {b.re + u, -b.im + v};
        z[h - k] = {a.re - u, -a.im + v};
    }
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
