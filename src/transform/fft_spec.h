// The transform object and its set-up steps.
//
// One block of memory, beginning on a 32-byte boundary, holds the fixed fields and behind them
// every table, each on a 64-byte boundary. It is built in three steps, so that an owner of several
// objects can place one in memory of its own: FFTGetSize tells the bytes, FFTInit builds, and
// initAlloc joins both with an allocation.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/checks.h"
#include "core/variant_exports.h"

namespace zep {

enum class FftKind : std::int32_t { Complex = 4, Real = 6, ComplexDouble = 7 };

// Plain data, the same in all variants; the tables are laid out for the vectors of the variant that
// built them.
template <class T>
struct FftObject {
    std::int32_t magic;  // FftKind; 0 once released
    std::int32_t order;
    std::int32_t scaleForward;
    std::int32_t scaleInverse;
    T scale;
    std::int32_t hint;
    std::int32_t workSize;  // bytes of scratch before alignment slack
    std::int32_t ownsMemory;
    const std::int32_t* bitReversal;
    const T* blockTwiddles;
    const T* foldTwiddles;
    const T* unfoldTwiddles;
    const T* levelTwiddles[3];
};

}  // namespace zep

struct FFTSpecC32fc : zep::FftObject<float> {};
struct FFTSpecR32f : zep::FftObject<float> {};
struct FFTSpecC64fc : zep::FftObject<double> {};

namespace zep::ZEP_VARIANT::fft {

constexpr std::size_t kObjectAlignment = 32;
constexpr std::size_t kLine = 64;

template <class Spec>
struct SpecTraits;
template <>
struct SpecTraits<FFTSpecC32fc> {
    using Scalar = float;
    static constexpr FftKind kind = FftKind::Complex;
};
template <>
struct SpecTraits<FFTSpecR32f> {
    using Scalar = float;
    static constexpr FftKind kind = FftKind::Real;
};
template <>
struct SpecTraits<FFTSpecC64fc> {
    using Scalar = double;
    static constexpr FftKind kind = FftKind::ComplexDouble;
};

struct FftSizes {
    std::size_t object;     // with the slack that aligning it costs
    std::size_t temporary;  // 0: none needed
    std::size_t scratch;    // workSize
};

template <class T>
ZepStatus FFTGetSize(FftKind kind, int order, int flag, int hint, FftSizes* sizes);

// Builds the object in memory (FftSizes::object bytes, any alignment); temporary may be null where
// its size is 0.
template <class T>
ZepStatus FFTInit(FftKind kind, FftObject<T>** object, int order, int flag, int hint, void* memory,
                  void* temporary);

// What the exports of each kind do.
template <class Spec>
ZepStatus initAlloc(Spec** ppSpec, int order, int flag, int hint);
template <class Spec>
ZepStatus release(Spec* pSpec);
template <class Spec>
ZepStatus bufSize(const Spec* pSpec, int* pBufSize);

// Of an object that a function of its kind is given: what it is comes before all other arguments.
template <auto kind, class Spec>
[[nodiscard]] inline ZepStatus checkObject(const Spec* spec) {
    if (spec == nullptr) return zepStsNullPtrErr;
    return spec->magic == static_cast<std::int32_t>(kind) ? zepStsNoErr : zepStsContextMatchErr;
}
template <auto kind, class Spec>
[[nodiscard]] inline ZepStatus checkTransform(const Spec* spec, const void* src, const void* dst) {
    if (const ZepStatus s = checkObject<kind>(spec); s != zepStsNoErr) return s;
    return anyNull(src, dst) ? zepStsNullPtrErr : zepStsNoErr;
}

template <class P>
inline P* alignUp(P* p, std::size_t alignment = kObjectAlignment) {
    return reinterpret_cast<P*>((reinterpret_cast<std::uintptr_t>(p) + alignment - 1) &
                                ~(alignment - 1));
}

}  // namespace zep::ZEP_VARIANT::fft
