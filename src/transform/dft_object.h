// Making, releasing and running an object of each kind.
#pragma once

#include "transform/dft_passes.h"
#include "transform/dft_spec.h"
#include "transform/fft_spec.h"

namespace zep::ZEP_VARIANT::dft {

template <class Spec>
struct SpecTraits;
template <>
struct SpecTraits<DFTSpecC32fc> {
    using Scalar = float;
    using Fft = FFTSpecC32fc;
    static constexpr DftKind kind = DftKind::Complex;
};
template <>
struct SpecTraits<DFTSpecR32f> {
    using Scalar = float;
    using Fft = FFTSpecR32f;
    static constexpr DftKind kind = DftKind::Real;
};
template <>
struct SpecTraits<DFTSpecC64fc> {
    using Scalar = double;
    using Fft = FFTSpecC64fc;
    static constexpr DftKind kind = DftKind::ComplexDouble;
};
template <class T>
struct ComplexSpec;
template <>
struct ComplexSpec<float> {
    using Type = DFTSpecC32fc;
};
template <>
struct ComplexSpec<double> {
    using Type = DFTSpecC64fc;
};

template <class Spec>
ZepStatus initAlloc(Spec** ppSpec, int len, int flag, int hint);
template <class Spec>
ZepStatus release(Spec* pSpec);
template <class Spec>
ZepStatus bufSize(const Spec* pSpec, int* pBufSize);

// Any length as the object's plan says; scratch begins on a 32-byte boundary. Bins are multiplied by
// scale, but for powers of two, whose own object says how they scale, and for short lengths, whose
// tables do.
template <Direction D, class T>
struct Run {
    // Straight-line code, len 1 to 16.
    static void direct(const T* src, T* dst, int len, T scale);
    // One of the routes with tables, for len points.
    static ZepStatus points(const T* src, T* dst, int len, const DftObject<T>& spec, T* scratch,
                            T scale);
    // Chirp convolution. src holds len pairs; where it is real, len values.
    static ZepStatus chirp(const T* src, bool real, int len, const DftObject<T>& spec, T* scratch,
                           T scale);
    static ZepStatus chirp(const T* src, T* dst, int len, const DftObject<T>& spec, T* scratch,
                           T scale);
};
// The same, and even lengths to 30.
void directReal(const float* src, float* dst, int len, float scale);

}  // namespace zep::ZEP_VARIANT::dft
