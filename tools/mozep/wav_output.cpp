#include "wav_output.h"

#include <bit>
#include <limits>
#include <string_view>

#include "full_scale.h"

namespace mozep_program {
namespace {

static_assert(std::endian::native == std::endian::little);  // samples are written as they stand

int bytesOf(WavOutput::Format format) { return format == WavOutput::Format::Int16 ? 2 : 4; }

class Header {
public:
    void name(std::string_view text) { bytes_.insert(bytes_.end(), text.begin(), text.end()); }
    template <class T>
    void number(long long value) {
        for (std::size_t n = 0; n < sizeof(T); ++n)
            bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * n)));
    }
    const std::vector<std::uint8_t>& bytes() const { return bytes_; }

private:
    std::vector<std::uint8_t> bytes_;
};

// Formats other than integers have a longer format chunk and tell the count of samples.
constexpr int kFormatBytes = 16, kFloatFormatBytes = 18;
constexpr int kAroundData = 4 + (8 + kFloatFormatBytes) + (8 + 4) + 8;

std::vector<std::uint8_t> header(WavOutput::Format format, int rate, long long samples) {
    constexpr int kIntegers = 1, kFloats = 3;
    const bool floats = format == WavOutput::Format::Float32;
    const int sampleBytes = bytesOf(format);
    const long long data = samples * sampleBytes;
    const int formatBytes = floats ? kFloatFormatBytes : kFormatBytes;
    Header h;
    h.name("RIFF");
    h.number<std::uint32_t>(4 + (8 + formatBytes) + (floats ? 8 + 4 : 0) + 8 + data);
    h.name("WAVEfmt ");
    h.number<std::uint32_t>(formatBytes);
    h.number<std::uint16_t>(floats ? kFloats : kIntegers);
    h.number<std::uint16_t>(1);  // channels
    h.number<std::uint32_t>(rate);
    h.number<std::uint32_t>(static_cast<long long>(rate) * sampleBytes);
    h.number<std::uint16_t>(sampleBytes);
    h.number<std::uint16_t>(8 * sampleBytes);
    if (floats) {
        h.number<std::uint16_t>(0);  // bytes of the format that follow
        h.name("fact");
        h.number<std::uint32_t>(4);
        h.number<std::uint32_t>(samples);
    }
    h.name("data");
    h.number<std::uint32_t>(data);
    return h.bytes();
}

template <class T>
void writeAll(OutputFile& file, const std::vector<T>& values) {
    file.write(reinterpret_cast<const std::uint8_t*>(values.data()), values.size() * sizeof(T));
}

}  // namespace

long long WavOutput::longest(Format format) {
    return (std::numeric_limits<std::uint32_t>::max() - kAroundData) / bytesOf(format);
}

WavOutput::WavOutput(const std::string& name, Format format, int rate, long long samples)
    : file_(name == "-" ? "" : name, OutputFile::Existing::Replace), format_(format) {
    writeAll(file_, header(format, rate, samples));
}

void WavOutput::write(const std::vector<float>& samples) {
    if (samples.empty()) return;
    if (format_ == Format::Float32) {
        writeAll(file_, samples);
        return;
    }
    integers_.resize(samples.size());
    limited_ += toInt16(samples.data(), integers_.data(), static_cast<int>(samples.size()));
    write(integers_);
}

void WavOutput::write(const std::vector<std::int16_t>& samples) { writeAll(file_, samples); }

}  // namespace mozep_program
