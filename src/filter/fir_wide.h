// The single-rate filter with double taps: float samples are widened once into the delay line, both
// paths work there in double precision and round each output to float once.
#pragma once

#include "filter/fir_record.h"

namespace zep::ZEP_VARIANT::filter {

// Null if the block cannot be had. A transform that cannot be set up leaves the state without one.
ZepFIRState* createWide(const double* taps, std::int32_t tapsLen, const float* delayLine);

void filterWide(ZepFIRState& state, float* data, std::ptrdiff_t len);

}  // namespace zep::ZEP_VARIANT::filter
