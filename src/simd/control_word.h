// The thread's floating-point control and status word (MXCSR) as guards: the caller's word comes
// back on every path.
#pragma once

#include <emmintrin.h>

namespace zep::ZEP_VARIANT::simd {

namespace mxcsr {
inline constexpr unsigned kFlags = 0x003F;
inline constexpr unsigned kFlagInvalid = 0x0001;
inline constexpr unsigned kFlagDivideByZero = 0x0004;
inline constexpr unsigned kMasks = 0x1F80;
inline constexpr unsigned kRounding = 0x6000;  // 0: to nearest, all: toward zero
inline constexpr unsigned kDenormalsAreZero = 0x0040;

// Arithmetic must not move across a change of the word.
inline unsigned read() {
    asm volatile("" ::: "memory");
    return _mm_getcsr();
}
inline void write(unsigned word) {
    asm volatile("" ::: "memory");
    _mm_setcsr(word);
    asm volatile("" ::: "memory");
}
}  // namespace mxcsr

// No exception traps while it lives. Where the caller had unmasked some, the flags raised meanwhile
// are merged into the caller's at the end, without invalid and divide by zero: those arise from
// estimates, not from the data.
class MaskedExceptions {
public:
    MaskedExceptions() : caller_(mxcsr::read()) {
        if (changed()) mxcsr::write((caller_ | mxcsr::kMasks) & ~mxcsr::kFlags);
    }
    ~MaskedExceptions() {
        constexpr unsigned kMerged =
            mxcsr::kFlags & ~(mxcsr::kFlagInvalid | mxcsr::kFlagDivideByZero);
        if (changed()) mxcsr::write(caller_ | (mxcsr::read() & kMerged));
    }
    // True when the caller has all exceptions masked: the guard would change nothing.
    static bool idle() { return (mxcsr::read() & mxcsr::kMasks) == mxcsr::kMasks; }

    MaskedExceptions(const MaskedExceptions&) = delete;
    MaskedExceptions& operator=(const MaskedExceptions&) = delete;

private:
    bool changed() const { return (caller_ & mxcsr::kMasks) != mxcsr::kMasks; }
    unsigned caller_;
};

// Another rounding mode while they live. The compiler does not know that arithmetic depends on it
// and moves arithmetic out of a guard's reach: what is meant must stand in a function that is not
// inlined. To nearest clears denormals-are-zero too, where it changes anything.
template <unsigned mode, unsigned cleared>
class RoundingScope {
public:
    RoundingScope() : caller_(mxcsr::read()) {
        if (changed()) mxcsr::write((caller_ & ~(mxcsr::kRounding | cleared)) | mode);
    }
    ~RoundingScope() {
        if (changed()) mxcsr::write(caller_);
    }
    RoundingScope(const RoundingScope&) = delete;
    RoundingScope& operator=(const RoundingScope&) = delete;

private:
    bool changed() const { return (caller_ & mxcsr::kRounding) != mode; }
    unsigned caller_;
};
using RoundingToNearest = RoundingScope<0, mxcsr::kDenormalsAreZero>;
using RoundingTowardZero = RoundingScope<mxcsr::kRounding, 0>;

}  // namespace zep::ZEP_VARIANT::simd
