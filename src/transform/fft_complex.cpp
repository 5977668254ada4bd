// Drivers of the complex transform.
#include "core/checks.h"
#include "transform/fft_routes.h"
#include "transform/fft_scratch.h"
#include "transform/fft_tuning.h"

namespace zep::ZEP_VARIANT {

template <Direction D>
void FFTComplex(const Zep32fc* src, Zep32fc* dst, int order, const FftObject& spec, float* scratch,
                bool scaled) {
    const float scale = scaled ? spec.scale : 1.0f;
    if (order <= Tuning::directMaxOrder) {
        if (scaled)
            FFTDirectScaled<D>(src, dst, order, scale);
        else
            FFTDirect<D>(src, dst, order);
    } else if (order == kStraightOrder) {
        FFTStraight<D>(src, dst, scale);
    } else if (order < kSplitFromOrder) {
        FFTSingleBlock<D>(src, dst, order, spec, scratch, scale);
    } else {
        FFTLong<D>(src, dst, order, spec, scratch, scale);
    }
}

template void FFTComplex<Direction::Forward>(const Zep32fc*, Zep32fc*, int, const FftObject&,
                                             float*, bool);
template void FFTComplex<Direction::Inverse>(const Zep32fc*, Zep32fc*, int, const FftObject&,
                                             float*, bool);

namespace {

template <Direction D>
inline ZepStatus transform(const Zep32fc* pSrc, Zep32fc* pDst, const FFTSpecC32fc* pSpec,
                           Zep8u* pBuffer) {
    if (pSpec == nullptr) return zepStsNullPtrErr;
    if (pSpec->magic != static_cast<std::int32_t>(FftKind::Complex)) return zepStsContextMatchErr;
    if (anyNull(pSrc, pDst)) return zepStsNullPtrErr;
    const FftScratch scratch(pBuffer, pSpec->workSize);
    if (scratch.missing()) return zepStsMemAllocErr;
    const bool scaled = (D == Direction::Forward ? pSpec->scaleForward : pSpec->scaleInverse) != 0;
    FFTComplex<D>(pSrc, pDst, pSpec->order, *pSpec, scratch.floats(), scaled);
    return zepStsNoErr;
}

}  // namespace

ZepStatus zepsFFTFwd_CToC_32fc(const Zep32fc* pSrc, Zep32fc* pDst, const FFTSpecC32fc* pSpec,
                               Zep8u* pBuffer) {
    return transform<Direction::Forward>(pSrc, pDst, pSpec, pBuffer);
}

ZepStatus zepsFFTInv_CToC_32fc(const Zep32fc* pSrc, Zep32fc* pDst, const FFTSpecC32fc* pSpec,
                               Zep8u* pBuffer) {
    return transform<Direction::Inverse>(pSrc, pDst, pSpec, pBuffer);
}

}  // namespace zep::ZEP_VARIANT
