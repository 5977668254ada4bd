// The driver of a complex transform: checks, scratch, route.
#pragma once

#include "transform/fft_routes.h"
#include "transform/fft_scratch.h"

namespace zep::ZEP_VARIANT::fft {

template <Direction D, class Element, class Spec>
inline ZepStatus transform(const Element* pSrc, Element* pDst, const Spec* pSpec, Zep8u* pBuffer) {
    using T = typename SpecTraits<Spec>::Scalar;
    if (const ZepStatus s = checkTransform<SpecTraits<Spec>::kind>(pSpec, pSrc, pDst);
        s != zepStsNoErr)
        return s;
    const Scratch scratch(pBuffer, pSpec->workSize);
    if (scratch.missing()) return zepStsMemAllocErr;
    const bool scaled = (D == Direction::Forward ? pSpec->scaleForward : pSpec->scaleInverse) != 0;
    Routes<D, T>::complex(reinterpret_cast<const T*>(pSrc), reinterpret_cast<T*>(pDst),
                          pSpec->order, *pSpec, scratch.as<T>(), scaled);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT::fft
