// Compiled once per variant: the doors to that variant's set-up steps.
#include "transform/fft_steps.h"

#include "transform/dft_short.h"
#include "transform/fft_driver.h"

namespace zep::ZEP_VARIANT {
namespace {

ZepStatus getSize(FftKind kind, int order, int flag, int hint, test::FftStepSizes* sizes) {
    if (sizes == nullptr) return fft::FFTGetSize<float>(kind, order, flag, hint, nullptr);
    fft::FftSizes own{};
    const ZepStatus status = fft::FFTGetSize<float>(kind, order, flag, hint, &own);
    *sizes = {own.object, own.temporary, own.scratch};
    return status;
}

template <fft::Direction D>
ZepStatus run(const Zep64fc* src, Zep64fc* dst, const FFTSpecC64fc* spec, Zep8u* scratch) {
    return fft::transform<D>(src, dst, spec, scratch);
}

template <class T>
int radicesOf(int len, int (&radices)[32]) {
    const dft::Factors factors = dft::factorise<T>(len);
    if (dft::routeOf<T>(len, factors) != dft::Route::MixedRadix) return -1;
    dft::Schedule schedule = dft::shortSchedule<T>(len);
    if (schedule.count == 0) schedule = dft::scheduleOf<T>(factors);
    for (int i = 0; i < schedule.count; ++i) radices[i] = schedule.radix[i];
    return schedule.count;
}

}  // namespace

const test::FftSteps fftSteps = {getSize, fft::FFTInit<float>};
const test::DoubleFft doubleFft = {fft::initAlloc<FFTSpecC64fc>, fft::release<FFTSpecC64fc>,
                                   fft::bufSize<FFTSpecC64fc>, run<fft::Direction::Forward>,
                                   run<fft::Direction::Inverse>};
const test::DftRadices dftRadices = {radicesOf<float>, radicesOf<double>};

}  // namespace zep::ZEP_VARIANT
