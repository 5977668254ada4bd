// Drivers of the complex transform.
#include "transform/fft_driver.h"
#include "transform/fft_tuning.h"

namespace zep::ZEP_VARIANT::fft {

template <Direction D, class T>
void Routes<D, T>::complex(const T* src, T* dst, int order, const FftObject<T>& spec, T* scratch,
                           bool scaled) {
    const T scale = scaled ? spec.scale : T{1};
    if (order < kStraightOrder<T>) {
        if (scaled)
            directScaled(src, dst, order, scale);
        else
            direct(src, dst, order);
    } else if (order == kStraightOrder<T>) {
        straight(src, dst, scale);
    } else if (order < TuningOf<T>::splitFromOrder) {
        singleBlock(src, dst, order, spec, scratch, scale);
    } else {
        splitBlocks(src, dst, order, spec, scratch, scale);
    }
}

template struct Routes<Direction::Forward, float>;
template struct Routes<Direction::Inverse, float>;
template struct Routes<Direction::Forward, double>;
template struct Routes<Direction::Inverse, double>;

}  // namespace zep::ZEP_VARIANT::fft

namespace zep::ZEP_VARIANT {

ZepStatus zepsFFTFwd_CToC_32fc(const Zep32fc* pSrc, Zep32fc* pDst, const FFTSpecC32fc* pSpec,
                               Zep8u* pBuffer) {
    return fft::transform<fft::Direction::Forward>(pSrc, pDst, pSpec, pBuffer);
}

ZepStatus zepsFFTInv_CToC_32fc(const Zep32fc* pSrc, Zep32fc* pDst, const FFTSpecC32fc* pSpec,
                               Zep8u* pBuffer) {
    return fft::transform<fft::Direction::Inverse>(pSrc, pDst, pSpec, pBuffer);
}

}  // namespace zep::ZEP_VARIANT
