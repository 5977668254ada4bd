// Vector types of the build level. Vec<T, N> is N lanes of T; only the shapes that the level has
// exist. Native<T> is the widest one, and kernels are written for any number of its lanes.
//
// load and store take any address; loadAligned, storeAligned and storeStream are for loops that
// have established alignment to the whole vector. loadPartial and storePartial touch exactly n
// elements. A comparison gives a Mask<T, N>, which need not be a vector register: use any, all,
// bits, select and keepIf on it. This folder is the only shared place with intrinsics and
// instruction-set tests.
#pragma once

#include "simd/scalar.h"
#include "simd/vec_double.h"
#include "simd/vec_float.h"
#include "simd/vec_int.h"
#if defined(__AVX__)
#include "simd/vec_double_avx.h"
#include "simd/vec_float_avx.h"
#endif

namespace zep::ZEP_VARIANT::simd {

// AVX widens floating lanes only; integers stay at 16 bytes until AVX2.
#if defined(__AVX__)
inline constexpr int kFloatBytes = 32;
#else
inline constexpr int kFloatBytes = 16;
#endif
inline constexpr int kIntBytes = 16;

template <class T>
inline constexpr int kVectorBytes = kIntBytes;
template <>
inline constexpr int kVectorBytes<float> = kFloatBytes;
template <>
inline constexpr int kVectorBytes<double> = kFloatBytes;

template <class T>
using Native = Vec<T, kVectorBytes<T> / int{sizeof(T)}>;

// The narrowest vector: what stands below it is scalar.
template <class T>
using Narrow = Vec<T, 16 / int{sizeof(T)}>;

template <class V>
using Half = Vec<typename V::Scalar, V::lanes / 2>;

template <class V>
inline constexpr bool isNarrow = sizeof(V) == 16;

// Orders streaming stores before every later store; ends each loop that used storeStream.
inline void streamFence() { _mm_sfence(); }

}  // namespace zep::ZEP_VARIANT::simd
