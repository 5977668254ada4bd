#include "core/fp_mode.h"

#include <xmmintrin.h>

#include "core/cpu.h"
#include "zepcore.h"

namespace zep {

std::uint32_t zepFpGetControl() { return _mm_getcsr(); }

void zepFpSetControl(std::uint32_t value, std::uint32_t mask) {
    _mm_setcsr((zepFpGetControl() & ~mask) | (value & mask));
}

}  // namespace zep

ZepStatus zepSetFlushToZero(int value, unsigned int* pUMask) {
    using namespace zep;
    if (!zepCpuHasIdentification() || !zepCpuHasSse()) return zepStsCpuNotSupportedErr;
    if (value == 0) {
        zepFpSetControl(0, mxcsr::kFlushToZero);
        if (pUMask != nullptr && *pUMask == 0) zepFpSetControl(0, mxcsr::kUnderflowMask);
        return zepStsNoErr;
    }
    // Flushing is only in force while underflow is masked.
    const std::uint32_t underflowMask = zepFpGetControl() & mxcsr::kUnderflowMask;
    constexpr std::uint32_t kFlushQuietly = mxcsr::kFlushToZero | mxcsr::kUnderflowMask;
    zepFpSetControl(kFlushQuietly, kFlushQuietly);
    if (pUMask != nullptr) *pUMask = underflowMask;
    return zepStsNoErr;
}

ZepStatus zepSetDenormAreZeros(int value) {
    using namespace zep;
    if (!zepCpuHasIdentification() || !zepCpuHasSse() || !zepCpuHasDenormalsAreZero())
        return zepStsCpuNotSupportedErr;
    zepFpSetControl(value != 0 ? mxcsr::kDenormalsAreZero : 0, mxcsr::kDenormalsAreZero);
    return zepStsNoErr;
}
