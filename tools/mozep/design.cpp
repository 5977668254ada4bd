// mozep design: the taps of a filter, and a picture of its response.
#include <memory>
#include <string>

#include "commands.h"
#include "filter_design.h"
#include "response_plot.h"
#include "taps_file.h"

namespace mozep_program {
namespace {

constexpr int kHighestRate = 100'000'000;

struct Options {
    FilterDesign design;
    int rate = 48000;
    std::string output, plot;
};

void run(const Options& options) {
    if (options.design.chosen() != 1)
        throw CLI::ValidationError("takes exactly one of --lowpass, --highpass, --band and --stop");
    const std::vector<double> taps = designTaps(options.design, options.rate);
    if (!options.plot.empty())
        plotResponse(taps, options.rate, describe(options.design), options.plot);
    writeTaps(taps, options.output);
}

}  // namespace

void addDesign(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand(
        "design", "Taps of a lowpass, highpass, bandpass or bandstop filter, one a line");
    addDesignOptions(*command, options->design);
    command->add_option("--rate", options->rate, "samples per second")
        ->check(CLI::Range(1, kHighestRate))
        ->capture_default_str();
    command->add_option("--output", options->output,
                        "write the taps to this file in place of the standard output");
    command->add_option("--plot", options->plot,
                        "draw taps, magnitude and phase into this SVG file (needs gnuplot)");
    command->footer(kDesignNotes);
    command->callback([options] { run(*options); });
}

}  // namespace mozep_program
