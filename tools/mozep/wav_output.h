#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "output_file.h"

namespace mozep_program {

// A WAV file of one channel that is written from its beginning to its end. As an OutputFile it takes
// its name only in commit(). Throws Failure with the reason.
class WavOutput {
public:
    enum class Format { Int16, Float32 };

    // As many samples as the sizes in its header allow.
    static long long longest(Format format);

    // name: "-" is the standard output. samples: how many will be written, at most longest().
    WavOutput(const std::string& name, Format format, int rate, long long samples);

    void write(const std::vector<float>& samples);
    // Of Format::Int16 only.
    void write(const std::vector<std::int16_t>& samples);
    void commit() { file_.commit(); }

    // Samples written that were beyond full scale and had to be limited.
    long long limited() const { return limited_; }

private:
    OutputFile file_;
    Format format_;
    long long limited_ = 0;
    std::vector<std::int16_t> integers_;
};

}  // namespace mozep_program
