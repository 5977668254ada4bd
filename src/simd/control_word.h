// The thread's floating-point control and status word (MXCSR): kernels run under another word, and
// the caller's comes back.
//
// A kernel is handed over as a function, and called through a pointer whose target the compiler
// cannot see. A guard object around the arithmetic does not do: no compiler knows that arithmetic
// reads the word, so both move products of values in registers below the instruction that restores
// it (and a call of a known function without side effects as well). A call of an unknown function
// stays where it is.
#pragma once

#include <emmintrin.h>

#include <type_traits>

namespace zep::ZEP_VARIANT::simd {

namespace mxcsr {
inline constexpr unsigned kFlags = 0x003F;
inline constexpr unsigned kFlagInvalid = 0x0001;
inline constexpr unsigned kFlagDivideByZero = 0x0004;
inline constexpr unsigned kMasks = 0x1F80;
inline constexpr unsigned kRounding = 0x6000;  // 0: to nearest, all: toward zero
inline constexpr unsigned kDenormalsAreZero = 0x0040;
// Flush to zero, rounding other than to nearest, denormals are zero.
inline constexpr unsigned kUnusualArithmetic = 0xE040;

inline unsigned read() {
    asm volatile("" ::: "memory");
    return _mm_getcsr();
}
inline void write(unsigned word) {
    asm volatile("" ::: "memory");
    _mm_setcsr(word);
    asm volatile("" ::: "memory");
}

// kernel(args...) between two words, out of line; the caller's comes back with those of the run's
// flags that are in `merged`.
template <class Result, class... Args>
[[gnu::noinline]] Result run(unsigned caller, unsigned during, unsigned merged,
                             Result (*kernel)(Args...), Args... args) {
    write(during);
    asm volatile("" : "+r"(kernel)::"memory");
    const Result result = kernel(args...);
    write(caller | (read() & merged));
    return result;
}
}  // namespace mxcsr

// True when the caller has all exceptions masked: withMaskedExceptions would change nothing.
inline bool exceptionsMasked() { return (mxcsr::read() & mxcsr::kMasks) == mxcsr::kMasks; }

// Runs kernel(args...) so that no exception traps. Where the caller had unmasked some, the flags
// raised meanwhile are merged into the caller's at the end, without invalid and divide by zero:
// those arise from estimates, not from the data.
template <class Result, class... Args>
inline Result withMaskedExceptions(Result (*kernel)(Args...), std::type_identity_t<Args>... args) {
    const unsigned caller = mxcsr::read();
    if ((caller & mxcsr::kMasks) == mxcsr::kMasks) return kernel(args...);
    constexpr unsigned kMerged = mxcsr::kFlags & ~(mxcsr::kFlagInvalid | mxcsr::kFlagDivideByZero);
    return mxcsr::run(caller, (caller | mxcsr::kMasks) & ~mxcsr::kFlags, kMerged, kernel, args...);
}

// Runs kernel(args...) with rounding to nearest, denormals kept and no traps, whatever the caller
// has set; all flags raised meanwhile are merged into the caller's.
template <class Result, class... Args>
inline Result withPlainArithmetic(Result (*kernel)(Args...), std::type_identity_t<Args>... args) {
    const unsigned caller = mxcsr::read();
    const unsigned during = (caller | mxcsr::kMasks) & ~mxcsr::kUnusualArithmetic;
    if (during == caller) [[likely]]
        return kernel(args...);
    return mxcsr::run(caller, during, mxcsr::kFlags, kernel, args...);
}

// Runs kernel(args...) under a rounding mode and, where that is not the caller's, without the bits of
// `cleared`. The flags raised meanwhile are dropped then.
template <unsigned mode, unsigned cleared, class Result, class... Args>
inline Result withRounding(Result (*kernel)(Args...), std::type_identity_t<Args>... args) {
    const unsigned caller = mxcsr::read();
    if ((caller & mxcsr::kRounding) == mode) [[likely]]
        return kernel(args...);
    const unsigned during = (caller & ~(mxcsr::kRounding | cleared)) | mode;
    return mxcsr::run(caller, during, 0, kernel, args...);
}
template <class Result, class... Args>
inline Result withRoundingToNearest(Result (*kernel)(Args...), std::type_identity_t<Args>... args) {
    return withRounding<0, mxcsr::kDenormalsAreZero>(kernel, args...);
}
template <class Result, class... Args>
inline Result withRoundingTowardZero(Result (*kernel)(Args...),
                                     std::type_identity_t<Args>... args) {
    return withRounding<mxcsr::kRounding, 0>(kernel, args...);
}

}  // namespace zep::ZEP_VARIANT::simd
