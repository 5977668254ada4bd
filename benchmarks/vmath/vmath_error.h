// The parts of vmath_error.
#pragma once

#include <cstdint>

#include "core/columns.h"
#include "core/selection.h"
#include "vmath/error_reference.h"

namespace zep::bench {

int walkPowers(std::uint64_t count);
int walkComplexPowers(std::uint64_t count);

}  // namespace zep::bench
