// The thread's floating-point control word for the life of an object, and what of it a call has to
// leave as it was.
#pragma once

#include <xmmintrin.h>

namespace zep::test {

inline constexpr unsigned kRoundNearest = 0x0000, kRoundDown = 0x2000, kRoundUp = 0x4000,
                          kRoundTowardZero = 0x6000;
inline constexpr unsigned kRoundingModes[] = {kRoundNearest, kRoundDown, kRoundUp,
                                              kRoundTowardZero};
inline constexpr unsigned kDenormalsAreZero = 0x0040, kFlushToZero = 0x8000;
inline constexpr unsigned kExceptionMasks = 0x1F80, kStickyFlags = 0x003F;

class ControlWord {
public:
    // All exceptions stay masked.
    explicit ControlWord(unsigned bits) : before_(_mm_getcsr()), set_(bits | kExceptionMasks) {
        _mm_setcsr(set_);
    }
    ~ControlWord() { _mm_setcsr(before_); }
    ControlWord(const ControlWord&) = delete;
    ControlWord& operator=(const ControlWord&) = delete;

    // True while nothing but sticky flags has changed.
    bool kept() const { return ((_mm_getcsr() ^ set_) & ~kStickyFlags) == 0; }

private:
    unsigned before_, set_;
};

}  // namespace zep::test
