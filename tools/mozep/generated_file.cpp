#include "generated_file.h"

#include <algorithm>
#include <cmath>

#include "commands.h"
#include "progress.h"
#include "wav_output.h"

namespace mozep_program {
namespace {

constexpr int kHighestRate = 100'000'000;
constexpr double kLongest = 1e9;
constexpr long long kBlock = 16384;

long long samplesOf(const GeneratedFile& file, WavOutput::Format format) {
    const long long samples = std::llround(file.seconds * file.rate);
    if (samples < 1) throw CLI::ValidationError("--seconds", "less than one sample");
    if (samples > WavOutput::longest(format))
        throw CLI::ValidationError("--seconds", "a WAV file holds at most " +
                                                    std::to_string(WavOutput::longest(format)) +
                                                    " such samples");
    return samples;
}

}  // namespace

void addFileOptions(CLI::App& command, GeneratedFile& file) {
    command
        .add_option("OUT.wav", file.name,
                    "WAV file to write or replace, of one channel; - is the standard output")
        ->required();
    command.add_option("--rate", file.rate, "samples per second")
        ->check(CLI::Range(1, kHighestRate))
        ->capture_default_str();
    command.add_option("--seconds", file.seconds, "length")
        ->check(within(0, kLongest))
        ->capture_default_str();
    command
        .add_option("--bits", file.bits,
                    "32: floating-point samples; 16: integers, limited to full scale")
        ->check(CLI::IsMember({16, 32}))
        ->capture_default_str();
}

CLI::Validator within(double low, double high) {
    const auto check = [low, high](const std::string& text) -> std::string {
        double value = 0;
        if (CLI::detail::lexical_cast(text, value) && value >= low && value <= high) return {};
        return text + " is no number from " + CLI::detail::to_string(low) + " to " +
               CLI::detail::to_string(high);
    };
    return {check, ""};
}

void writeGenerated(const std::string& command, const GeneratedFile& file,
                    const std::function<void(std::vector<float>& block)>& next) {
    const auto format = file.bits == 16 ? WavOutput::Format::Int16 : WavOutput::Format::Float32;
    const long long samples = samplesOf(file, format);
    WavOutput out(file.name, format, file.rate, samples);
    Progress progress(static_cast<double>(samples));
    std::vector<float> block;
    for (long long done = 0; done < samples; done += kBlock) {
        block.resize(static_cast<std::size_t>(std::min(kBlock, samples - done)));
        next(block);
        out.write(block);
        progress.reached(static_cast<double>(done));
    }
    out.commit();
    if (out.limited() > 0)
        warn(command, file.name + ": " + std::to_string(out.limited()) +
                          " samples beyond full scale were limited");
}

}  // namespace mozep_program
