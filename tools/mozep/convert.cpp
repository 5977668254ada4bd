// mozep convert: a sound file as a WAV file of other samples.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "commands.h"
#include "library_status.h"
#include "progress.h"
#include "sound_file.h"
#include "sound_to_wav.h"
#include "wav_output.h"

namespace mozep_program {
namespace {

constexpr std::size_t kBlockSamples = 65536;  // of all channels together

const std::map<std::string, WavFormat::Samples> kFormats = {
    {"s16", WavFormat::Samples::Int16},
    {"s24", WavFormat::Samples::Int24},
    {"f32", WavFormat::Samples::Float32},
};

constexpr const char* kRules =
    "Full scale is 1 in floats, 32768 in 16 bits and 8388608 in 24. Samples pass through single\n"
    "precision; integers are rounded to the nearest, ties to even, without dither. What is beyond\n"
    "full scale is limited, a sample that is not a number becomes 0, and warnings tell how many\n"
    "there were; f32 keeps them as they are. Channels and sampling rate stay; tags and other "
    "notes\n"
    "are left behind.";

struct Options {
    std::string in, out, format;
};

// What integers cannot show.
class Faults {
public:
    // Takes the faults of a block down and out.
    void mend(std::vector<float>& samples) {
        for (float& x : samples)
            if (std::isnan(x)) x = 0, ++notNumbers_;
        float low = 0, high = 0;
        requireSuccess(
            zepsMinMax_32f(samples.data(), static_cast<int>(samples.size()), &low, &high));
        largest_ = std::max({largest_, -low, high});
    }

    void report(const std::string& name, long long limited) const {
        if (limited > 0) {
            char level[64];
            std::snprintf(level, sizeof level, "%.2f dBFS",
                          20 * std::log10(static_cast<double>(largest_)));
            warn("convert", name + ": " + std::to_string(limited) +
                                " samples beyond full scale were limited, the largest of " + level);
        }
        if (notNumbers_ > 0)
            warn("convert", name + ": " + std::to_string(notNumbers_) +
                                " samples that are not numbers became 0");
    }

private:
    long long notNumbers_ = 0;
    float largest_ = 0;
};

void run(const Options& options) {
    SoundFile in(options.in, 0);
    const WavFormat format = wavLike(in, kFormats.at(options.format), in.rate());
    const bool integers = format.samples != WavFormat::Samples::Float32;
    WavOutput out(
        options.out, format,
        wavFrames(options.out, format, in.lengthIsKnown(), std::llround(in.declaredFrames())));
    Progress progress(in.declaredFrames());
    Faults faults;
    const auto channels = static_cast<std::size_t>(in.channels());
    const std::size_t block = std::max(kBlockSamples / channels, std::size_t{1}) * channels;
    std::vector<float> frames(block);
    while (in.readFrames(frames) > 0) {
        if (integers) faults.mend(frames);
        out.write(frames);
        frames.resize(block);
        progress.reached(static_cast<double>(in.framesRead()));
    }
    if (in.framesRead() == 0) throw Failure(options.in + ": holds no samples");
    const std::string shortfall = in.shortfall();
    out.commit();
    if (!shortfall.empty()) warn("convert", options.in + ": is cut short: " + shortfall);
    faults.report(options.in, out.limited());
}

}  // namespace

void addConvert(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    CLI::App* command =
        app.add_subcommand("convert", "Write a sound file as a WAV file of another sample format");
    addSoundToWav(*command, options->in, options->out);
    command
        ->add_option("--format", options->format,
                     "s16 and s24: integers of 16 or 24 bits; f32: floating-point samples")
        ->check(CLI::IsMember({"s16", "s24", "f32"}))
        ->required();
    command->footer(kRules);
    command->callback([options] { run(*options); });
}

}  // namespace mozep_program
