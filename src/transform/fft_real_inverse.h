// The inverse of the packed real transform, for the filters: no export runs it.
#pragma once

#include "transform/fft_spec.h"

namespace zep::ZEP_VARIANT::fft {

// N = 2^order samples from a packed spectrum R(0), R(N/2), R(1), I(1), ..; by the object's flag
// scaled. dst may equal src. Statuses in this order: zepStsNullPtrErr (the object),
// zepStsContextMatchErr, zepStsNullPtrErr (src, dst), zepStsMemAllocErr.
ZepStatus FFTInvPermToR(const Zep32f* src, Zep32f* dst, const FFTSpecR32f* spec, Zep8u* buffer);

}  // namespace zep::ZEP_VARIANT::fft
