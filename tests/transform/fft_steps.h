// The set-up steps of the transform objects, which are internal to each variant, under one
// signature.
#pragma once

#include <cstddef>

#include "support/variant.h"
#include "transform/fft_spec.h"

namespace zep::test {

struct FftStepSizes {
    std::size_t object, temporary, scratch;
};

struct FftSteps {
    ZepStatus (*getSize)(FftKind kind, int order, int flag, int hint, FftStepSizes* sizes);
    ZepStatus (*init)(FftKind kind, FftObject** object, int order, int flag, int hint, void* memory,
                      void* temporary);
};

}  // namespace zep::test

#define ZEP_DECLARE(arg, slot, column, ...) \
    namespace zep::column {                 \
    extern const test::FftSteps fftSteps;   \
    }
ZEP_COLUMNS(ZEP_DECLARE, )
#undef ZEP_DECLARE

namespace zep::test {

inline const FftSteps& fftStepsOf(const Variant& v) {
    static constexpr const FftSteps* kSteps[] = {
        nullptr,
#define ZEP_STEPS(arg, slot, column, ...) &code::column::fftSteps,
        ZEP_COLUMNS(ZEP_STEPS, )
#undef ZEP_STEPS
    };
    return *kSteps[v.slot];
}

}  // namespace zep::test
