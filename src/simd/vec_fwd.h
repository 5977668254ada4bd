// The two templates that every lane type specialises.
#pragma once

namespace zep::ZEP_VARIANT::simd {

// N lanes of T.
template <class T, int N>
struct Vec;

// N truth values, one for each lane of a Vec<T, N>.
template <class T, int N>
struct Mask;

}  // namespace zep::ZEP_VARIANT::simd
