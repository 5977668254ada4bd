#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "output_file.h"
#include "wav_header.h"

namespace mozep_program {

// A WAV file that is written from its beginning to its end. As an OutputFile it takes its name only
// in commit(). Throws Failure with the reason.
class WavOutput {
public:
    using Format = WavFormat::Samples;

    // As many samples as a file of one channel can hold.
    static long long longest(Format format) { return longestWav({format, 1}); }

    // name: "-" is the standard output. frames: how many will be written, at most longestWav();
    // another count in the end is put right in a file, and an error where it cannot be.
    WavOutput(const std::string& name, const WavFormat& format, long long frames);
    WavOutput(const std::string& name, Format format, int rate, long long samples)
        : WavOutput(name, WavFormat{format, rate}, samples) {}

    // The next samples of all channels, whole frames. Integers are limited to their range.
    void write(const std::vector<float>& samples);
    // Of Format::Int16 only.
    void write(const std::vector<std::int16_t>& samples);
    void commit();

    // Samples written that were beyond full scale and had to be limited.
    long long limited() const { return limited_; }

private:
    void writeBytes(const void* data, std::size_t bytes);

    std::string name_;
    OutputFile file_;
    WavFormat format_;
    long long declared_, bytes_ = 0, limited_ = 0;
    std::vector<std::int16_t> integers_;
    std::vector<std::int32_t> wide_;
    std::vector<std::uint8_t> packed_;
};

}  // namespace mozep_program
