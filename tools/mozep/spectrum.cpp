// mozep spectrum: where the energy of a sound file lies.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "commands.h"
#include "dft_route.h"
#include "plot.h"
#include "printable.h"
#include "progress.h"
#include "sound_file.h"
#include "welch.h"

namespace mozep_program {
namespace {

constexpr int kMinBlock = 16, kMaxBlock = 1 << 22;

constexpr const char* kMethod =
    "Method: Welch's. Blocks overlap by half and are weighted by a Hann window; the squared\n"
    "magnitudes are averaged. A last block that the file does not fill is filled up with zeros "
    "and\n"
    "counts by the part of the window that it fills.\n"
    "Scaling: by amplitude. A sine of amplitude 1 (full scale) reads 0 dBFS, whatever the block\n"
    "length; noise reads lower the longer the block. A bin is as wide as the sampling rate "
    "divided\n"
    "by the block length; a tone's main lobe is four bins wide. Levels end at -200 dBFS. Peaks "
    "are\n"
    "placed between the bins by the shape of the window.\n"
    "Transform: of any block length. Powers of two are the fastest as a rule; then come products "
    "of\n"
    "prime factors up to 13, and of larger ones up to 47 (one up to 149 in a length that 8 "
    "divides).\n"
    "Every other length runs as a convolution with a chirp, which takes several times as long as "
    "a\n"
    "product of small factors. The table tells which of these it is.\n"
    "A file that is shorter than it declares is analysed as far as it goes, with a warning.";

struct Options {
    std::string file, plot;
    int block = 8192;
    int peaks = 10;
    int channel = 0;  // all of them, averaged
    bool csv = false;
};

const char* plural(long long count) { return count == 1 ? "" : "s"; }

void printTable(const Options& options, const SoundFile& file, const Welch& welch,
                const std::vector<Peak>& peaks, double binHz) {
    std::printf("%s: %d Hz, %d channel%s, %.3f s; %lld block%s of %d%s, %.4g Hz a bin\n",
                printable(options.file).c_str(), file.rate(), file.channels(),
                plural(file.channels()), static_cast<double>(file.framesRead()) / file.rate(),
                welch.blocks(), plural(welch.blocks()), options.block,
                !welch.filledUp()     ? ""
                : welch.blocks() == 1 ? ", filled up with zeros"
                                      : ", the last filled up with zeros",
                binHz);
    std::printf("transform of %d points: %s\n", options.block, describe(dftRoute(options.block)));
    if (peaks.empty()) {
        std::printf("no peaks\n");
        return;
    }
    std::printf("\n%4s %12s %8s\n", "peak", "Hz", "dBFS");
    for (std::size_t i = 0; i < peaks.size(); ++i)
        std::printf("%4zu %12.2f %8.2f\n", i + 1, peaks[i].bin * binHz, decibel(peaks[i].level));
}

void printCsv(const std::vector<double>& power, double binHz) {
    std::printf("Hz,dBFS\n");
    for (std::size_t k = 0; k < power.size(); ++k)
        std::printf("%.6f,%.3f\n", static_cast<double>(k) * binHz, decibel(power[k]));
}

void plot(const Options& options, const std::vector<double>& power, double binHz) {
    Curve curve{"Spectrum of " + options.file, "Frequency in Hz", "Level in dBFS", {}, {}};
    for (std::size_t k = 0; k < power.size(); ++k) {
        curve.x.push_back(static_cast<double>(k) * binHz);
        curve.y.push_back(decibel(power[k]));
    }
    plotSvg({curve}, options.plot);
}

void readAll(SoundFile& file, Welch& welch) {
    Progress progress(file.declaredFrames());
    std::vector<float> mono(16384);
    while (const std::size_t count = file.read(mono)) {
        welch.add({mono.data(), count});
        progress.reached(static_cast<double>(file.framesRead()));
    }
    welch.finish();
}

bool allFinite(const std::vector<double>& values) {
    return std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); });
}

void run(const Options& options) {
    SoundFile file(options.file, options.channel);
    Welch welch(options.block);
    readAll(file, welch);
    if (welch.blocks() == 0) throw Failure(options.file + ": holds no samples");
    const std::string shortfall = file.shortfall();
    if (!shortfall.empty()) warn("spectrum", options.file + ": is cut short: " + shortfall);

    const std::vector<double> power = welch.power();
    if (!allFinite(power))
        throw Failure(options.file +
                      ": its samples are out of range: the squares of their spectrum exceed "
                      "single precision");
    const double binHz = static_cast<double>(file.rate()) / options.block;
    if (!options.plot.empty()) plot(options, power, binHz);
    if (options.csv)
        printCsv(power, binHz);
    else
        printTable(options, file, welch,
                   strongestPeaks(power, static_cast<std::size_t>(options.peaks)), binHz);
}

// What is wrong with a block length, or nothing.
std::string badBlock(const std::string& text) {
    int N = 0;
    if (!CLI::detail::lexical_cast(text, N) || N < kMinBlock || N > kMaxBlock)
        return text + " is no whole number from " + std::to_string(kMinBlock) + " to " +
               std::to_string(kMaxBlock);
    return {};
}

}  // namespace

void addSpectrum(CLI::App& app) {
    auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand(
        "spectrum", "Averaged power spectrum of a sound file, with its strongest peaks");
    command->add_option("FILE", options->file, "sound file, of any kind that libsndfile reads")
        ->required();
    command->add_option("--fft", options->block, "block length in samples, any from 16 to 4194304")
        ->check(CLI::Validator(badBlock, "N"))
        ->capture_default_str();
    command->add_option("--peaks", options->peaks, "rows of the table")
        ->check(CLI::Range(1, 1000000))
        ->capture_default_str();
    command
        ->add_option("--channel", options->channel,
                     "take this channel, counted from 1; the mean of all without it")
        ->check(CLI::Range(1, 1024));
    command->add_option("--plot", options->plot,
                        "draw the spectrum into this SVG file (needs gnuplot)");
    command->add_flag("--csv", options->csv,
                      "print the spectrum as Hz,dBFS rows in place of the peaks");
    command->footer(kMethod);
    command->callback([options] { run(*options); });
}

}  // namespace mozep_program
