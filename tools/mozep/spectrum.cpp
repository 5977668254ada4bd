// mozep spectrum: where the energy of a sound file lies.
#include <sndfile.h>
#include <sys/stat.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "commands.h"
#include "plot.h"
#include "progress.h"
#include "welch.h"

namespace mozep_program {
namespace {

constexpr int kMinBlock = 16, kMaxBlock = 1 << 22;
constexpr std::size_t kPlotColumns = 4000;

struct Options {
    std::string file, plot;
    int block = 8192;
    int peaks = 10;
    bool csv = false;
};

class SoundFile {
public:
    explicit SoundFile(const std::string& name) : name_(name) {
        // Said here, since sndfile calls all of these "System error".
        struct stat status {};
        if (stat(name.c_str(), &status) != 0) throw Failure(name + ": " + std::strerror(errno));
        if (S_ISDIR(status.st_mode)) throw Failure(name + ": is a directory");
        if (!std::ifstream(name)) throw Failure(name + ": " + std::strerror(errno));
        if (status.st_size == 0 && S_ISREG(status.st_mode)) throw Failure(name + ": is empty");
        file_.reset(sf_open(name.c_str(), SFM_READ, &info_));
        if (file_ == nullptr) throw Failure(name + ": is no sound file that can be read");
        if (info_.channels < 1 || info_.samplerate < 1 || info_.frames < 1)
            throw Failure(name + ": holds no samples");
    }

    const SF_INFO& info() const { return info_; }

    // The next frames, at most mono.size(), channels averaged; fewer at the end only.
    std::size_t readMono(std::vector<float>& mono) {
        const auto channels = static_cast<std::size_t>(info_.channels);
        frames_.resize(mono.size() * channels);
        const sf_count_t got =
            sf_readf_float(file_.get(), frames_.data(), static_cast<sf_count_t>(mono.size()));
        if (sf_error(file_.get()) != SF_ERR_NO_ERROR)
            throw Failure(name_ + ": " + sf_strerror(file_.get()));
        const auto count = static_cast<std::size_t>(got < 0 ? 0 : got);
        const float share = 1.0f / static_cast<float>(channels);
        for (std::size_t n = 0; n < count; ++n) {
            float sum = 0;
            for (std::size_t c = 0; c < channels; ++c) sum += frames_[n * channels + c];
            mono[n] = sum * share;
            if (!std::isfinite(mono[n]))
                throw Failure(name_ + ": holds samples that are not finite numbers");
        }
        return count;
    }

private:
    struct Close {
        void operator()(SNDFILE* file) const { sf_close(file); }
    };
    std::string name_;
    SF_INFO info_{};
    std::unique_ptr<SNDFILE, Close> file_;
    std::vector<float> frames_;
};

void printTable(const Options& options, const SF_INFO& info, const Welch& welch,
                const std::vector<Peak>& peaks, double binHz) {
    std::printf("%s: %d Hz, %d channel%s, %.3f s; %lld block%s of %d, %.4g Hz a bin\n",
                options.file.c_str(), info.samplerate, info.channels, info.channels == 1 ? "" : "s",
                static_cast<double>(info.frames) / info.samplerate, welch.blocks(),
                welch.blocks() == 1 ? "" : "s", options.block, binHz);
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
    const auto add = [&](std::vector<double>::const_iterator bin) {
        curve.x.push_back(static_cast<double>(bin - power.begin()) * binHz);
        curve.y.push_back(decibel(*bin));
    };
    // Where bins are finer than the picture, a group of them shows as its lowest and its highest
    // level.
    const std::size_t group = (power.size() + kPlotColumns - 1) / kPlotColumns;
    for (std::size_t k = 0; k < power.size(); k += group) {
        const auto last =
            power.begin() + static_cast<std::ptrdiff_t>(std::min(k + group, power.size()));
        const auto [low, high] =
            std::minmax_element(power.begin() + static_cast<std::ptrdiff_t>(k), last);
        add(std::min(low, high));
        if (low != high) add(std::max(low, high));
    }
    plotSvg(curve, options.plot);
}

void readAll(SoundFile& file, Welch& welch) {
    Progress progress(static_cast<double>(file.info().frames));
    std::vector<float> mono(16384);
    double done = 0;
    while (const std::size_t count = file.readMono(mono)) {
        welch.add({mono.data(), count});
        progress.reached(done += static_cast<double>(count));
    }
    welch.finish();
}

void run(const Options& options) {
    SoundFile file(options.file);
    Welch welch(std::countr_zero(static_cast<unsigned>(options.block)));
    readAll(file, welch);
    if (welch.blocks() == 0) throw Failure(options.file + ": holds no samples");

    const std::vector<double> power = welch.power();
    const double binHz = static_cast<double>(file.info().samplerate) / options.block;
    if (!options.plot.empty()) plot(options, power, binHz);
    if (options.csv)
        printCsv(power, binHz);
    else
        printTable(options, file.info(), welch,
                   strongestPeaks(power, static_cast<std::size_t>(options.peaks)), binHz);
}

// What is wrong with a block length, or nothing.
std::string badBlock(const std::string& text) {
    int N = 0;
    if (!CLI::detail::lexical_cast(text, N) || N < kMinBlock || N > kMaxBlock ||
        !std::has_single_bit(static_cast<unsigned>(N)))
        return text + " is no power of two from " + std::to_string(kMinBlock) + " to " +
               std::to_string(kMaxBlock);
    return {};
}

}  // namespace

void addSpectrum(CLI::App& app) {
    auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand(
        "spectrum", "Averaged power spectrum of a sound file, with its strongest peaks");
    command->add_option("FILE", options->file, "sound file; its channels are averaged")->required();
    command->add_option("--fft", options->block, "block length, a power of two")
        ->check(CLI::Validator(badBlock, "N"))
        ->capture_default_str();
    command->add_option("--peaks", options->peaks, "rows of the table")
        ->check(CLI::Range(1, 1000000))
        ->capture_default_str();
    command->add_option("--plot", options->plot,
                        "draw the spectrum into this SVG file (needs gnuplot)");
    command->add_flag("--csv", options->csv,
                      "print the spectrum as Hz,dBFS rows in place of the peaks");
    command->callback([options] { run(*options); });
}

}  // namespace mozep_program
