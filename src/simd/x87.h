// The 80-bit format's own logarithm and arctangent, correct to about its 64 bits, and the control
// word that gives it all of them.
#pragma once

#include <type_traits>

namespace zep::ZEP_VARIANT::simd::x87 {

// ln(x), x positive.
inline long double ln(long double x) {
    long double y;
    asm("fldln2\n\tfxch\n\tfyl2x" : "=t"(y) : "0"(x) : "st(1)");
    return y;
}
// ln(1 + x), |x| < 0.29.
inline long double lnOnePlus(long double x) {
    long double y;
    asm("fldln2\n\tfxch\n\tfyl2xp1" : "=t"(y) : "0"(x) : "st(1)");
    return y;
}
// The angle of (x, y), in all quadrants.
inline long double angle(long double y, long double x) {
    long double a;
    asm("fpatan" : "=t"(a) : "0"(x), "u"(y) : "st(1)");
    return a;
}

// Runs kernel(args...) with 64 bits, rounding to nearest and no traps, whatever the caller has set.
// Called as control_word.h says.
template <class Result, class... Args>
inline Result withFullPrecision(Result (*kernel)(Args...), std::type_identity_t<Args>... args) {
    constexpr unsigned short kRoundingAndPrecision = 0x0F00, kFull = 0x0300, kMasks = 0x003F;
    unsigned short caller;
    asm volatile("fnstcw %0" : "=m"(caller));
    const auto during =
        static_cast<unsigned short>((caller & ~kRoundingAndPrecision) | kFull | kMasks);
    if (during == caller) [[likely]]
        return kernel(args...);
    asm volatile("fldcw %0" ::"m"(during) : "memory");
    asm volatile("" : "+r"(kernel)::"memory");
    const Result result = kernel(args...);
    // Flags that the caller lets trap would trap at once.
    asm volatile("fnclex\n\tfldcw %0" ::"m"(caller) : "memory");
    return result;
}

}  // namespace zep::ZEP_VARIANT::simd::x87
