// mozep stats: level figures of each channel of a sound file.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "channel_stats.h"
#include "commands.h"
#include "library_status.h"
#include "printable.h"
#include "progress.h"
#include "sound_file.h"

namespace mozep_program {
namespace {

constexpr std::size_t kBlockSamples = 65536;  // of all channels together

constexpr const char* kMeaning =
    "peak: the largest magnitude, 1 being full scale, and the first sample, counted from 0, that "
    "has\n"
    "it. dBFS: 20 log10 of it. RMS dBFS: 20 log10 of the root of the mean square, so that a sine\n"
    "wave of amplitude 1 reads -3.01. crest dB: peak over RMS. Silence reads -inf and has neither\n"
    "crest factor nor place. Samples are taken in single precision and summed in double. Those "
    "that\n"
    "are infinite or not a number are left out of all figures, and a warning tells how many.";

void readAll(SoundFile& file, std::vector<ChannelStats>& stats) {
    Progress progress(file.declaredFrames());
    const std::size_t channels = stats.size();
    const std::size_t frames = std::max(kBlockSamples / channels, std::size_t{1});
    std::vector<float> block(frames * channels), channel;
    while (const std::size_t count = file.readFrames(block)) {
        for (std::size_t c = 0; c < channels; ++c) {
            int phase = static_cast<int>(c), kept = 0;
            channel.resize(count);
            requireSuccess(zepsSampleDown_32f(block.data(), static_cast<int>(block.size()),
                                              channel.data(), &kept, static_cast<int>(channels),
                                              &phase));
            stats[c].add(channel);
        }
        block.resize(frames * channels);
        progress.reached(static_cast<double>(file.framesRead()));
    }
}

double decibels(double ratio) { return 20 * std::log10(ratio); }

void printRow(std::size_t number, const ChannelStats& s, int rate) {
    const double rms = std::sqrt(s.meanSquare());
    std::printf("%7zu ", number);
    if (s.counted() == 0) {
        std::printf("%10s %8s %12s %12s %9s %12s %9s\n", "-", "-", "-", "-", "-", "-", "-");
    } else if (s.peak() == 0) {
        std::printf("%10.7g %8.2f %12s %12s %9.2f %12.6g %9s\n", 0.0, decibels(0), "-", "-",
                    decibels(0), 0.0, "-");
    } else {
        std::printf("%10.7g %8.2f %12lld %12.6f %9.2f %12.6g %9.2f\n", s.peak(), decibels(s.peak()),
                    s.peakIndex(), static_cast<double>(s.peakIndex()) / rate, decibels(rms),
                    s.mean(), decibels(s.peak() / rms));
    }
}

void run(const std::string& name) {
    SoundFile file(name, 0);
    std::vector<ChannelStats> stats(static_cast<std::size_t>(file.channels()));
    readAll(file, stats);
    if (file.framesRead() == 0) throw Failure(name + ": holds no samples");
    const std::string shortfall = file.shortfall();
    if (!shortfall.empty()) warn("stats", name + ": is cut short: " + shortfall);

    std::printf("%s: %d Hz, %d channel%s of %lld samples, %.3f s, %s\n\n", printable(name).c_str(),
                file.rate(), file.channels(), file.channels() == 1 ? "" : "s", file.framesRead(),
                static_cast<double>(file.framesRead()) / file.rate(), file.encoding().c_str());
    std::printf("%7s %10s %8s %12s %12s %9s %12s %9s\n", "channel", "peak", "dBFS", "at sample",
                "at s", "RMS dBFS", "mean", "crest dB");
    for (std::size_t c = 0; c < stats.size(); ++c) {
        printRow(c + 1, stats[c], file.rate());
        if (stats[c].leftOut() > 0)
            warn("stats", name + ": channel " + std::to_string(c + 1) + ": " +
                              std::to_string(stats[c].leftOut()) +
                              " samples that are not finite numbers were left out");
    }
}

}  // namespace

void addStats(CLI::App& app) {
    const auto name = std::make_shared<std::string>();
    CLI::App* command = app.add_subcommand(
        "stats", "Peak, RMS level, mean and crest factor of each channel of a sound file");
    command->add_option("FILE", *name, "sound file, of any kind that libsndfile reads")->required();
    command->footer(kMeaning);
    command->callback([name] { run(*name); });
}

}  // namespace mozep_program
