// mozep filter: a sound file through a filter of finite impulse response.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "commands.h"
#include "filter_design.h"
#include "fir_stream.h"
#include "process_sound.h"
#include "response_plot.h"
#include "sound_to_wav.h"
#include "taps_file.h"

namespace mozep_program {
namespace {

constexpr std::size_t kFewestFrames = 16384;
constexpr int kOwnDelay = -1;

const std::string kMethod =
    std::string(kDesignNotes) +
    "\nThat delay is taken out (of an even L, half a sample less), so that OUT is as long as IN "
    "and "
    "in\nstep with it. Taps of a file are taken as they stand: output n is the sum of tap[k] * "
    "in[n-k];\n--delay takes out what they delay.\n"
    "Before and behind IN counts as silence. Each channel is filtered by itself, in single "
    "precision\nand in memory that does not depend on the length.\n"
    "Integers of 8, 16, 24 and 32 bits and 32-bit floats stay such, all other samples become "
    "floats.\nIntegers are rounded without dither, and limited where they would exceed full scale, "
    "which a\nwarning tells.";

struct Options {
    std::string in, out, taps, plot;
    FilterDesign design;
    int delay = kOwnDelay;
};

struct Filter {
    std::vector<double> taps;
    std::string title;
    int delay;
};

Filter filterFor(const Options& options, int rate) {
    if (!options.taps.empty())
        return {readTaps(options.taps), "Taps of " + options.taps, std::max(options.delay, 0)};
    const int delay = options.delay == kOwnDelay ? (options.design.length - 1) / 2 : options.delay;
    return {designTaps(options.design, rate), describe(options.design), delay};
}

void run(const Options& options) {
    if (options.design.chosen() + !options.taps.empty() != 1)
        throw CLI::ValidationError(
            "takes exactly one of --taps, --lowpass, --highpass, --band and --stop");
    SoundFile in(options.in, 0);
    const Filter filter = filterFor(options, in.rate());
    if (!options.plot.empty()) plotResponse(filter.taps, in.rate(), filter.title, options.plot);
    const std::vector<float> taps(filter.taps.begin(), filter.taps.end());
    const SoundJob job{"filter", options.in, options.out, in.rate(),
                       std::max(kFewestFrames, 4 * taps.size())};
    processSound(job, in, [&] { return std::make_unique<FirStream>(taps, 1, 1, filter.delay); });
}

}  // namespace

void addFilter(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    CLI::App* command =
        app.add_subcommand("filter", "Filter a sound file by a design or by taps of your own");
    addSoundToWav(*command, options->in, options->out);
    CLI::Option* taps =
        command->add_option("--taps", options->taps, "filter by the taps in this file, one a line");
    for (CLI::Option* ofDesign : addDesignOptions(*command, options->design))
        taps->excludes(ofDesign);
    command
        ->add_option("--delay", options->delay,
                     "samples of delay to take out; (L-1)/2 for designs, 0 for --taps, without it")
        ->check(CLI::Range(0, kMostTaps));
    command->add_option("--plot", options->plot,
                        "draw taps, magnitude and phase into this SVG file (needs gnuplot)");
    command->footer(kMethod);
    command->callback([options] { run(*options); });
}

}  // namespace mozep_program
