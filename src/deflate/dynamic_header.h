// The header of a dynamic block: code counts, code-length code, code lengths, and the tables made
// from them.
#pragma once

#include "deflate/bit_input.h"

namespace zep::ZEP_VARIANT {

// Goes on from status 1, 2 or 3. zepStsNoErr: the tables are ready and status is 4.
ZepStatus decodeDynamicHeader(BitInput& in, ZepLZ77State& state);

}  // namespace zep::ZEP_VARIANT
