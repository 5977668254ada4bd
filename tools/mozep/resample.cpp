// mozep resample: a sound file at another sampling rate.
#include <algorithm>
#include <memory>
#include <string>

#include "commands.h"
#include "process_sound.h"
#include "rational_resampler.h"
#include "sound_to_wav.h"

namespace mozep_program {
namespace {

constexpr int kHighestRate = 100'000'000;
constexpr double kSamplesAtOnce = 16384;

constexpr const char* kMethod =
    "Method: the rates are reduced to a ratio of whole numbers, of at most 65536 each, and a "
    "lowpass\n"
    "with a Kaiser window runs at their common multiple. It passes what is below 0.94 of half the\n"
    "lower rate (20.7 kHz at 44100 Hz) unchanged, and is 130 dB down from half the lower rate on.\n"
    "Sums are in single precision.\n"
    "The filter's delay is taken out: the first sample stands at the time of the first one of IN, "
    "and\n"
    "there are as many as fit its length, the last part of one counted as one.\n"
    "Integers of 8, 16, 24 and 32 bits and 32-bit floats stay such, all other samples become "
    "floats.\n"
    "Integers are rounded without dither, and limited where they would exceed full scale, which a\n"
    "warning tells. Each channel is resampled by itself, in memory that does not depend on the "
    "length.";

struct Options {
    std::string in, out;
    int rate = 0;
};

void run(const Options& options) {
    SoundFile in(options.in, 0);
    const double ratio = static_cast<double>(options.rate) / in.rate();
    const double frames = kSamplesAtOnce / std::max(1.0, ratio);
    const SoundJob job{"resample", options.in, options.out, options.rate,
                       static_cast<std::size_t>(std::max(frames, 1.0))};
    processSound(job, in,
                 [&] { return std::make_unique<RationalResampler>(in.rate(), options.rate); });
}

}  // namespace

void addResample(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    CLI::App* command =
        app.add_subcommand("resample", "Write a sound file at another sampling rate");
    addSoundToWav(*command, options->in, options->out);
    command->add_option("--rate", options->rate, "samples per second of OUT")
        ->check(CLI::Range(1, kHighestRate))
        ->required();
    command->footer(kMethod);
    command->callback([options] { run(*options); });
}

}  // namespace mozep_program
