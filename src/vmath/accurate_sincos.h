// Sine and cosine of one number in double precision, for any argument.
#pragma once

#include "zepcore.h"

namespace zep::ZEP_VARIANT::vmath {

struct SinCosPair {
    double sin, cos;
};

// x a finite single precision number; relative error of each part below 2^-48.
SinCosPair accurateSinCos(Zep32f x);

}  // namespace zep::ZEP_VARIANT::vmath
