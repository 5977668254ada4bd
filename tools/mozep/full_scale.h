#pragma once

#include <cstdint>

namespace mozep_program {

// 16-bit samples of float ones: 1 is 32768, rounded to the nearest, ties to even, and limited to the
// range. Returns how many were beyond full scale, -1 to 1. count: at least 1.
int toInt16(const float* samples, std::int16_t* integers, int count);

}  // namespace mozep_program
