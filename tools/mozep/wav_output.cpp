#include "wav_output.h"

#include <bit>

#include "commands.h"
#include "full_scale.h"

namespace mozep_program {

static_assert(std::endian::native == std::endian::little);  // samples are written as they stand

WavOutput::WavOutput(const std::string& name, const WavFormat& format, long long frames)
    : name_(name == "-" ? "standard output" : name),
      file_(name == "-" ? "" : name, OutputFile::Existing::Replace),
      format_(format),
      declared_(frames) {
    const std::vector<std::uint8_t> header = wavHeader(format, frames);
    file_.write(header.data(), header.size());
}

void WavOutput::writeBytes(const void* data, std::size_t bytes) {
    bytes_ += static_cast<long long>(bytes);
    if (bytes_ / bytesOfFrame(format_) > longestWav(format_))
        throw Failure(name_ + ": would be longer than a WAV file can be");
    file_.write(static_cast<const std::uint8_t*>(data), bytes);
}

void WavOutput::write(const std::vector<float>& samples) {
    if (samples.empty()) return;
    const int count = static_cast<int>(samples.size());
    switch (format_.samples) {
        case Format::UInt8:
            packed_.resize(samples.size());
            limited_ += toUInt8(samples.data(), packed_.data(), count);
            return writeBytes(packed_.data(), packed_.size());
        case Format::Int16:
            integers_.resize(samples.size());
            limited_ += toInt16(samples.data(), integers_.data(), count);
            return write(integers_);
        case Format::Int24:
            packed_.resize(samples.size() * 3);
            limited_ += toInt24(samples.data(), packed_.data(), count);
            return writeBytes(packed_.data(), packed_.size());
        case Format::Int32:
            wide_.resize(samples.size());
            limited_ += toInt32(samples.data(), wide_.data(), count);
            return writeBytes(wide_.data(), wide_.size() * sizeof(std::int32_t));
        case Format::Float32:
            return writeBytes(samples.data(), samples.size() * sizeof(float));
    }
}

void WavOutput::write(const std::vector<std::int16_t>& samples) {
    writeBytes(samples.data(), samples.size() * sizeof(std::int16_t));
}

void WavOutput::commit() {
    constexpr std::uint8_t kPadding = 0;
    if (bytes_ % 2 != 0) file_.write(&kPadding, 1);
    const long long frames = bytes_ / bytesOfFrame(format_);
    if (frames != declared_) {
        const std::vector<std::uint8_t> header = wavHeader(format_, frames);
        if (!file_.rewriteStart(header.data(), header.size()))
            throw Failure(name_ + ": its header, which cannot be changed any more, tells of " +
                          std::to_string(declared_) + " samples a channel in place of " +
                          std::to_string(frames));
    }
    file_.commit();
}

}  // namespace mozep_program
