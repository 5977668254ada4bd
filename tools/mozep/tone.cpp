// mozep tone: a file that holds a sine wave.
#include <cmath>
#include <memory>
#include <numbers>
#include <vector>

#include "commands.h"
#include "generated_file.h"
#include "library_status.h"

namespace mozep_program {
namespace {

constexpr double kTurn = 2 * std::numbers::pi;
constexpr double kLargest = 1e30;

struct Options {
    GeneratedFile file;
    double frequency = 0, amplitude = 1, phase = 0;
};

// The same angle in [0, 2 pi).
double withinTurn(double angle) {
    const double rest = std::fmod(angle, kTurn);
    const double positive = rest < 0 ? rest + kTurn : rest;
    return positive < kTurn ? positive : 0;
}

void run(const Options& options) {
    const double cycles = options.frequency / options.file.rate;
    if (!(cycles < 0.5))
        throw CLI::ValidationError("--frequency", "must be below half of the sampling rate");
    if (!(options.amplitude > 0)) throw CLI::ValidationError("--amplitude", "must be above 0");
    double phase = withinTurn(options.phase);
    std::vector<double> exact;
    // In double precision, so that the frequency is the one that was asked for and the phase of long
    // files does not drift.
    writeGenerated("tone", options.file, [&](std::vector<float>& block) {
        exact.resize(block.size());
        const int len = static_cast<int>(block.size());
        requireSuccess(zepsTone_Direct_64f(exact.data(), len, options.amplitude, cycles, &phase,
                                           zepAlgHintNone));
        requireSuccess(zepsConvert_64f32f(exact.data(), block.data(), len));
    });
}

}  // namespace

void addTone(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand(
        "tone", "Write a sine wave to a WAV file: A cos(2 pi HZ t + RAD), t in seconds from 0");
    addFileOptions(*command, options->file);
    command->add_option("--frequency", options->frequency, "frequency in Hz, below half the rate")
        ->check(within(0, kLargest))
        ->required();
    command->add_option("--amplitude", options->amplitude, "A; 1 is full scale")
        ->check(within(0, kLargest))
        ->capture_default_str();
    command->add_option("--phase", options->phase, "RAD, phase of the first sample in radians")
        ->check(within(-kLargest, kLargest))
        ->capture_default_str();
    command->callback([options] { run(*options); });
}

}  // namespace mozep_program
