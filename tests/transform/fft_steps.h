// The set-up steps of the transform objects, which are internal to each variant, under one
// signature.
#pragma once

#include <cstring>

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

namespace zep {
namespace m7 {
extern const test::FftSteps fftSteps;
}
namespace u8 {
extern const test::FftSteps fftSteps;
}
namespace n8 {
extern const test::FftSteps fftSteps;
}
namespace y8 {
extern const test::FftSteps fftSteps;
}
namespace e9 {
extern const test::FftSteps fftSteps;
}
}  // namespace zep

namespace zep::test {

inline const FftSteps& fftStepsOf(const Variant& v) {
    const FftSteps* const steps[5] = {&m7::fftSteps, &u8::fftSteps, &n8::fftSteps, &y8::fftSteps,
                                      &e9::fftSteps};
    for (std::size_t i = 0; i < 4; ++i)
        if (std::strcmp(v.tag, kVariants[i].tag) == 0) return *steps[i];
    return *steps[4];
}

}  // namespace zep::test
