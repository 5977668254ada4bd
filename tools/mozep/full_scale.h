#pragma once

#include <cstdint>

namespace mozep_program {

// Integer samples of float ones: 1 is 32768 or 8388608, rounded to the nearest, ties to even, and
// limited to the range. Return how many were beyond full scale, -1 to 1; a sample of 1 itself, the
// peak of a tone at full scale, becomes the highest value and does not count. count: at least 1.
int toInt16(const float* samples, std::int16_t* integers, int count);
// 3 bytes a sample, the lowest first.
int toInt24(const float* samples, std::uint8_t* packed, int count);

}  // namespace mozep_program
