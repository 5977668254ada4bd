// Drivers of the transforms of any length.
#include "transform/dft_object.h"
#include "transform/dft_odd.h"
#include "transform/dft_plan.h"
#include "transform/dft_real.h"
#include "transform/dft_short.h"
#include "transform/fft_driver.h"

namespace zep::ZEP_VARIANT::dft {

template <Direction D, class T>
ZepStatus Run<D, T>::points(const T* src, T* dst, int len, const DftObject<T>& spec, T* scratch,
                            T scale) {
    if (spec.usesFFT) {
        using Fft = typename SpecTraits<typename ComplexSpec<T>::Type>::Fft;
        const auto& nested = *static_cast<const Fft*>(spec.fftSpec);
        const bool scaled =
            (D == Direction::Forward ? nested.scaleForward : nested.scaleInverse) != 0;
        fft::Routes<D, T>::complex(src, dst, nested.order, nested, scratch, scaled);
    } else if (spec.mixedRadix) {
        Passes<D, T>::run(src, dst, len, spec, scratch, scale);
    } else if (len <= Limits<T>::oddLength) {
        directOdd<D>(src, dst, len, spec.directTable, scale);
    } else {
        return chirp(src, dst, len, spec, scratch, scale);
    }
    return zepStsNoErr;
}

namespace {

template <Direction D, class Element, class Spec>
inline ZepStatus transform(const Element* pSrc, Element* pDst, const Spec* pSpec, Zep8u* pBuffer) {
    using T = typename SpecTraits<Spec>::Scalar;
    if (const ZepStatus s = fft::checkTransform<SpecTraits<Spec>::kind>(pSpec, pSrc, pDst);
        s != zepStsNoErr)
        return s;
    const bool scaled = (D == Direction::Forward ? pSpec->scaleForward : pSpec->scaleInverse) != 0;
    const T* src = reinterpret_cast<const T*>(pSrc);
    T* dst = reinterpret_cast<T*>(pDst);
    const int len = pSpec->len;
    const T scale = scaled ? pSpec->scale : T{1};
    if (len <= kDirectMaxLength) {
        Run<D, T>::direct(src, dst, len, scale);
        return zepStsNoErr;
    }
    if (pBuffer != nullptr && runsShort<T>(*pSpec)) {
        runShort<T>(src, dst, *pSpec, D);
        return zepStsNoErr;
    }
    const fft::Scratch scratch(pBuffer, pSpec->workSize);
    if (scratch.missing()) return zepStsMemAllocErr;
    return Run<D, T>::points(src, dst, len, *pSpec, scratch.template as<T>(), scale);
}

// Bins 0 .. (len-1)/2, in pairs, to R(0), R(1), I(1) ..
void packOdd(const float* bins, float* dst, int len) {
    simd::writeAny(dst, bins[0]);
    __builtin_memcpy(dst + 1, bins + 2, static_cast<std::size_t>(len - 1) * sizeof(float));
}

ZepStatus transformOdd(const float* src, float* dst, const DFTSpecR32f& spec, float* scratch,
                       float scale) {
    using Forward = Run<Direction::Forward, float>;
    const int len = spec.len;
    if (spec.mixedRadix) {
        realPasses(src, dst, spec, scratch, scale);
    } else if (len <= Limits<float>::oddLength) {
        float x[2 * kMaxOdd], X[2 * kMaxOdd];
        for (int n = 0; n < len; ++n) {
            x[2 * n] = simd::readAny(src + n);
            x[2 * n + 1] = 0;
        }
        directOdd<Direction::Forward>(x, X, len, spec.directTable, scale);
        packOdd(X, dst, len);
    } else {
        if (const ZepStatus s = Forward::chirp(src, true, len, spec, scratch, scale);
            s != zepStsNoErr)
            return s;
        packOdd(scratch, dst, len);
    }
    return zepStsNoErr;
}

ZepStatus transformEven(const float* src, float* dst, const DFTSpecR32f& spec, float* scratch,
                        float scale) {
    using Forward = Run<Direction::Forward, float>;
    if (const ZepStatus s = Forward::points(src, dst, spec.len / 2, spec, scratch, 1);
        s != zepStsNoErr)
        return s;
    foldReal(dst, spec, runsShort<float>(spec) ? 1.0f : scale);
    return zepStsNoErr;
}

ZepStatus transformReal(const float* src, float* dst, const DFTSpecR32f& spec, Zep8u* buffer) {
    const int len = spec.len;
    const float scale = spec.scaleForward != 0 ? spec.scale : 1.0f;
    if (len <= kDirectMaxLength || (len < 2 * kDirectMaxLength && len % 2 == 0)) {
        directReal(src, dst, len, scale);
        return zepStsNoErr;
    }
    if (buffer != nullptr && runsShort<float>(spec)) {
        runShort<float>(src, dst, spec, Direction::Forward);
        foldReal(dst, spec, 1);
        return zepStsNoErr;
    }
    const fft::Scratch scratch(buffer, spec.workSize);
    if (scratch.missing()) return zepStsMemAllocErr;
    if (spec.usesFFT)
        return ZEP_VARIANT::zepsFFTFwd_RToPerm_32f(
            src, dst, static_cast<const FFTSpecR32f*>(spec.fftSpec), scratch.as<Zep8u>());
    float* work = scratch.as<float>();
    return len % 2 != 0 ? transformOdd(src, dst, spec, work, scale)
                        : transformEven(src, dst, spec, work, scale);
}

}  // namespace

template struct Run<Direction::Forward, float>;
template struct Run<Direction::Inverse, float>;
template struct Run<Direction::Forward, double>;
template struct Run<Direction::Inverse, double>;

}  // namespace zep::ZEP_VARIANT::dft

namespace zep::ZEP_VARIANT {

ZepStatus zepsDFTFwd_CToC_32fc(const Zep32fc* pSrc, Zep32fc* pDst, const DFTSpecC32fc* pSpec,
                               Zep8u* pBuffer) {
    return dft::transform<dft::Direction::Forward>(pSrc, pDst, pSpec, pBuffer);
}
ZepStatus zepsDFTInv_CToC_32fc(const Zep32fc* pSrc, Zep32fc* pDst, const DFTSpecC32fc* pSpec,
                               Zep8u* pBuffer) {
    return dft::transform<dft::Direction::Inverse>(pSrc, pDst, pSpec, pBuffer);
}
ZepStatus zepsDFTFwd_CToC_64fc(const Zep64fc* pSrc, Zep64fc* pDst, const DFTSpecC64fc* pSpec,
                               Zep8u* pBuffer) {
    return dft::transform<dft::Direction::Forward>(pSrc, pDst, pSpec, pBuffer);
}
ZepStatus zepsDFTFwd_RToPerm_32f(const Zep32f* pSrc, Zep32f* pDst, const DFTSpecR32f* pSpec,
                                 Zep8u* pBuffer) {
    if (const ZepStatus s = fft::checkTransform<DftKind::Real>(pSpec, pSrc, pDst); s != zepStsNoErr)
        return s;
    return dft::transformReal(pSrc, pDst, *pSpec, pBuffer);
}

}  // namespace zep::ZEP_VARIANT
