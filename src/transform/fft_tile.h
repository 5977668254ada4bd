#pragma once

#include "transform/fft_butterfly.h"
#include "transform/fft_spec.h"

namespace zep::ZEP_VARIANT {

// Bit reversal of 2^order elements, and the passes up to groups of 2^Tuning::tileOrder; dst holds
// split groups then. dst may equal src. scratch: two tiles.
template <Direction D>
void reverseTiles(const float* src, float* dst, int order, const FftObject& spec, float* scratch);

}  // namespace zep::ZEP_VARIANT
