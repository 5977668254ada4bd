// What the build level has, as constants: operations choose by `if constexpr`, so that one template
// holds the forms of all levels. Intrinsics of a higher level may stand in a branch that is never
// taken.
#pragma once

// Some of GCC's intrinsics leave lanes that they do not define uninitialised, by intent.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuninitialized"
#if !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include <immintrin.h>
#pragma GCC diagnostic pop

namespace zep::ZEP_VARIANT::simd {

#if defined(__SSSE3__)
inline constexpr bool kHasSsse3 = true;
#else
inline constexpr bool kHasSsse3 = false;
#endif
#if defined(__SSE4_1__)
inline constexpr bool kHasSse41 = true;
#else
inline constexpr bool kHasSse41 = false;
#endif
#if defined(__AVX__)
inline constexpr bool kHasAvx = true;
#else
inline constexpr bool kHasAvx = false;
#endif
#if defined(__AVX2__) && defined(__FMA__)
inline constexpr bool kHasAvx2 = true;
#else
inline constexpr bool kHasAvx2 = false;
#endif
// Foundation, BW, DQ and VL with VBMI and VBMI2.
#if defined(__AVX512VBMI2__)
inline constexpr bool kHasAvx512 = true;
#else
inline constexpr bool kHasAvx512 = false;
#endif

// One instruction loads or stores any part of a vector.
inline constexpr bool kMaskedMemory = kHasAvx512;

// Instructions on whole vectors may name their rounding mode.
inline constexpr bool kRoundingInInstruction = kHasAvx512;

inline constexpr int kVectorRegisters = kHasAvx512 ? 32 : 16;

// AVX widens floating lanes only; integers stay at 16 bytes until AVX2.
inline constexpr int kFloatBytes = kHasAvx512 ? 64 : kHasAvx ? 32 : 16;
inline constexpr int kIntBytes = kHasAvx512 ? 64 : kHasAvx2 ? 32 : 16;

}  // namespace zep::ZEP_VARIANT::simd
