#pragma once

#include <cstdint>

namespace mozep_program {

// Integer samples of float ones: 1 is half as many steps as the type has, such as 32768 for 16 bits;
// rounded to the nearest, ties to even, and limited to the range. Return how many were beyond full
// scale, -1 to 1; a sample of 1 itself, the peak of a tone at full scale, becomes the highest value
// and does not count. count: at least 1.
// With 128 for 0, as WAV files have them.
int toUInt8(const float* samples, std::uint8_t* integers, int count);
int toInt16(const float* samples, std::int16_t* integers, int count);
// 3 bytes a sample, the lowest first.
int toInt24(const float* samples, std::uint8_t* packed, int count);
int toInt32(const float* samples, std::int32_t* integers, int count);

}  // namespace mozep_program
