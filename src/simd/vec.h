// Vector types of the build level. Vec<T, N> is N lanes of T, for all ten element types; a kernel
// uses Native<T>, the widest of the level, and works for any number of its lanes.
//
// load and store take any address; loadAligned, storeAligned and storeStream are for loops that
// have established alignment to the whole vector. loadPartial and storePartial touch exactly n
// elements. A comparison gives a Mask<T, N>, which need not be a vector register: use any, all,
// bits, select and keepIf on it. This folder is the only shared place with intrinsics and
// instruction-set tests.
//
// Only vectors up to the level's width exist: the compilers would build wider ones from scalar
// code.
#pragma once

#include "simd/convert.h"
#include "simd/partial.h"
#include "simd/reduce.h"
#include "simd/vec_float.h"
#include "simd/vec_int.h"

namespace zep::ZEP_VARIANT::simd {

template <class T>
inline constexpr int kVectorBytes = std::floating_point<T> ? kFloatBytes : kIntBytes;

template <class T>
using Native = Vec<T, kVectorBytes<T> / int{sizeof(T)}>;

// The narrowest vector: what stands below it is partial access.
template <class T>
using Narrow = Vec<T, 16 / int{sizeof(T)}>;

template <class V>
using Half = Vec<typename V::Scalar, V::lanes / 2>;

template <class V>
inline constexpr bool isNarrow = sizeof(V) == 16;

// Orders streaming stores before every later store; ends each loop that used storeStream.
inline void streamFence() { _mm_sfence(); }

}  // namespace zep::ZEP_VARIANT::simd
