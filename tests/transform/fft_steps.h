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
    ZepStatus (*init)(FftKind kind, FftObject<float>** object, int order, int flag, int hint,
                      void* memory, void* temporary);
};

// The double transform, which has no exports of its own.
struct DoubleFft {
    ZepStatus (*create)(FFTSpecC64fc** spec, int order, int flag, int hint);
    ZepStatus (*release)(FFTSpecC64fc* spec);
    ZepStatus (*bufSize)(const FFTSpecC64fc* spec, int* bytes);
    ZepStatus (*forward)(const Zep64fc* src, Zep64fc* dst, const FFTSpecC64fc* spec,
                         Zep8u* scratch);
    ZepStatus (*inverse)(const Zep64fc* src, Zep64fc* dst, const FFTSpecC64fc* spec,
                         Zep8u* scratch);
};

// The radices of the passes of a length in the order they run; their count, -1 where a length
// takes another route.
struct DftRadices {
    int (*single)(int len, int (&radices)[32]);
    int (*wide)(int len, int (&radices)[32]);
};

}  // namespace zep::test

#define ZEP_DECLARE(arg, slot, column, ...)   \
    namespace zep::column {                   \
    extern const test::FftSteps fftSteps;     \
    extern const test::DoubleFft doubleFft;   \
    extern const test::DftRadices dftRadices; \
    }
ZEP_COLUMNS(ZEP_DECLARE, )
#undef ZEP_DECLARE

namespace zep::test {

inline const FftSteps& fftStepsOf(const Variant& v) {
    static constexpr const FftSteps* kSteps[] = {nullptr,
#define ZEP_STEPS(arg, slot, column, ...) &code::column::fftSteps,
                                                 ZEP_COLUMNS(ZEP_STEPS, )
#undef ZEP_STEPS
    };
    return *kSteps[v.slot];
}
inline const DoubleFft& doubleFftOf(const Variant& v) {
    static constexpr const DoubleFft* kDoubles[] = {nullptr,
#define ZEP_DOUBLE(arg, slot, column, ...) &code::column::doubleFft,
                                                    ZEP_COLUMNS(ZEP_DOUBLE, )
#undef ZEP_DOUBLE
    };
    return *kDoubles[v.slot];
}

inline const DftRadices& dftRadicesOf(const Variant& v) {
    static constexpr const DftRadices* kRadices[] = {nullptr,
#define ZEP_RADICES(arg, slot, column, ...) &code::column::dftRadices,
                                                     ZEP_COLUMNS(ZEP_RADICES, )
#undef ZEP_RADICES
    };
    return *kRadices[v.slot];
}

}  // namespace zep::test
