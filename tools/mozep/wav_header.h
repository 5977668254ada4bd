// The header of a WAV file of integers or floats: RIFF WAVE with the chunks "fmt ", "fact" and
// "data". (IBM and Microsoft, Multimedia Programming Interface and Data Specifications 1.0, 1991;
// WAVEFORMATEXTENSIBLE for more than two channels or 16 bits of integers.)
#pragma once

#include <cstdint>
#include <vector>

namespace mozep_program {

struct WavFormat {
    enum class Samples { UInt8, Int16, Int24, Int32, Float32 };
    Samples samples;
    int rate;
    int channels = 1;
    // The loudspeaker of each channel in their order, a bit each from the lowest on: front left,
    // front right, front centre and so on. 0 where that is not known.
    std::uint32_t speakers = 0;
};

int bytesOfFrame(const WavFormat& format);

// As many frames as the sizes in the header allow.
long long longestWav(const WavFormat& format);

// What stands before the samples of this many frames; after an odd count of their bytes stands one
// more byte, a zero. The length of the header does not depend on frames.
std::vector<std::uint8_t> wavHeader(const WavFormat& format, long long frames);

}  // namespace mozep_program
