// Compiled once per variant: the doors to that variant's set-up steps.
#include "transform/fft_steps.h"

namespace zep::ZEP_VARIANT {
namespace {

ZepStatus getSize(FftKind kind, int order, int flag, int hint, test::FftStepSizes* sizes) {
    if (sizes == nullptr) return FFTGetSize(kind, order, flag, hint, nullptr);
    FftSizes own{};
    const ZepStatus status = FFTGetSize(kind, order, flag, hint, &own);
    *sizes = {own.object, own.temporary, own.scratch};
    return status;
}

}  // namespace

const test::FftSteps fftSteps = {getSize, FFTInit};

}  // namespace zep::ZEP_VARIANT
