// The transform object and its set-up steps.
//
// One block of memory, beginning on a 32-byte boundary, holds the fixed fields and behind them
// every table, each on a 32-byte boundary of its own. It is built in three steps, so that an owner
// of several objects can place one in memory of its own: FFTGetSize tells the bytes, FFTInit
// builds, and zepsFFTInitAlloc_* joins both with an allocation.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/variant_exports.h"

namespace zep {

enum class FftKind : std::int32_t { Complex = 4, Real = 6 };

// Plain data, the same in all variants; the tables are laid out for the vectors of the variant that
// built them.
struct FftObject {
    std::int32_t magic;  // FftKind; 0 once released
    std::int32_t order;
    std::int32_t scaleForward;
    std::int32_t scaleInverse;
    float scale;
    std::int32_t hint;
    std::int32_t workSize;  // bytes of scratch before alignment slack
    std::int32_t ownsMemory;
    const std::int32_t* bitReversal;
    const float* blockTwiddles;
    const float* foldTwiddles;
    const float* unfoldTwiddles;
    const float* levelTwiddles[3];
};

}  // namespace zep

struct FFTSpecC32fc : zep::FftObject {};
struct FFTSpecR32f : zep::FftObject {};

namespace zep::ZEP_VARIANT {

constexpr int kFftAlignment = 32;

struct FftSizes {
    std::size_t object;     // with the slack that aligning it costs
    std::size_t temporary;  // 0: none needed
    std::size_t scratch;    // workSize
};

ZepStatus FFTGetSize(FftKind kind, int order, int flag, int hint, FftSizes* sizes);

// Builds the object in memory (FftSizes::object bytes, any alignment); temporary may be null where
// its size is 0.
ZepStatus FFTInit(FftKind kind, FftObject** object, int order, int flag, int hint, void* memory,
                  void* temporary);

template <class T>
inline T* alignUp(T* p) {
    return reinterpret_cast<T*>((reinterpret_cast<std::uintptr_t>(p) + kFftAlignment - 1) &
                                ~std::uintptr_t{kFftAlignment - 1});
}

}  // namespace zep::ZEP_VARIANT
