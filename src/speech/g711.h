// The G.711 laws on single values: what the vector loops and the ADPCM decoder share.
//
// With m the magnitude and e its segment, a code without sign is 16 * (e - 1) + (m >> e): the
// leading one of m >> e, which is 16, moves on to the next segment. It is also the least of the
// values that this line has for all segments: with a lower e it is too steep, with a higher one it
// starts too high.
#pragma once

#include <cstdint>

#include "speech/fixed_point.h"

namespace zep::ZEP_VARIANT::g711 {

constexpr std::int16_t expandALaw(std::uint8_t code) {
    const int c = code ^ 0x55, segment = c >> 4 & 7, step = (c & 15) << 4;
    const int magnitude = segment == 0 ? step + 8 : (step + 264) << (segment - 1);
    return static_cast<std::int16_t>(c & 0x80 ? magnitude : -magnitude);
}

constexpr std::int16_t expandMuLaw(std::uint8_t code) {
    const int c = code ^ 0xFF, segment = c >> 4 & 7;
    const int magnitude = ((((c & 15) << 3) + 132) << segment) - 132;
    return static_cast<std::int16_t>(c & 0x80 ? -magnitude : magnitude);
}

constexpr std::uint8_t compressALaw(std::int16_t x) {
    const int v = x >> 3, m = v < 0 ? ~v : v;
    const int length = bitLength(static_cast<std::uint32_t>(m)), e = length < 6 ? 1 : length - 5;
    return static_cast<std::uint8_t>((16 * (e - 1) + (m >> e)) ^ (v < 0 ? 0x55 : 0xD5));
}

constexpr std::uint8_t compressMuLaw(std::int16_t x) {
    const int biased = ((x < 0 ? ~x : x) >> 2) + 33, m = biased < 8191 ? biased : 8191;
    const int e = bitLength(static_cast<std::uint32_t>(m)) - 5;
    return static_cast<std::uint8_t>((143 - 16 * (e - 1) - (m >> e)) | (x < 0 ? 0 : 0x80));
}

}  // namespace zep::ZEP_VARIANT::g711
