// A complex power of one element, for any.
#pragma once

#include "zepcore.h"

namespace zep::ZEP_VARIANT::vmath {

// z to the power w, with all special cases. The thread's x87 unit has its full precision.
Zep32fc accurateComplexPower(Zep32fc z, Zep32fc w);

}  // namespace zep::ZEP_VARIANT::vmath
