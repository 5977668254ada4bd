// Sine and cosine of one number in double precision, for any argument.
#pragma once

namespace zep::ZEP_VARIANT::vmath {

struct SinCosPair {
    double sin, cos;
};

// |x| below 2^150. Each part within 2^-48 of it, and for single precision numbers relatively.
SinCosPair accurateSinCos(double x);

}  // namespace zep::ZEP_VARIANT::vmath
