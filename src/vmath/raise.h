// Makes the processor's sticky flags true to a warning, by arithmetic whose result nobody needs.
#pragma once

#include "zepcore.h"

namespace zep::ZEP_VARIANT::vmath {

namespace detail {
// Kept from folding the arithmetic at compile time.
[[gnu::always_inline]] inline double opaque(double x) {
    asm volatile("" : "+x"(x));
    return x;
}
[[gnu::always_inline]] inline void need(double x) { asm volatile("" ::"x"(x)); }
}  // namespace detail

// Overflow, underflow, division by zero or an invalid operation, and the status that tells of it.
inline ZepStatus raiseOverflow() {
    const double x = detail::opaque(1.7976931348623157e308);
    detail::need(x * x);
    return zepStsOverflow;
}
inline ZepStatus raiseUnderflow() {
    const double x = detail::opaque(2.2250738585072020e-308);
    detail::need(x * x);
    return zepStsUnderflow;
}
inline ZepStatus raiseSingularity() {
    detail::need(1.0 / detail::opaque(0.0));
    return zepStsSingularity;
}
inline ZepStatus raiseDomain() {
    const double zero = detail::opaque(0.0);
    detail::need(zero / zero);
    return zepStsDomain;
}

}  // namespace zep::ZEP_VARIANT::vmath
