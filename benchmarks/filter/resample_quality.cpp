// Resamplers as their users hear them: how flat they are, what they mirror, and how long they take; the one of the
// program mozep beside libsamplerate and sox. Prints rows of Markdown.
//
//     resample_quality           all of the quality
//     resample_quality --speed   the time, alone on the machine; sox is left out, as a program of files
#include <samplerate.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <numbers>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/selection.h"
#include "rational_resampler.h"

namespace {

using Samples = std::vector<float>;

struct Rates {
    int from, to;
    double lowerHalf() const { return std::min(from, to) / 2.0; }
};
constexpr Rates kRates[] = {{44100, 48000}, {48000, 44100}, {48000, 8000}, {96000, 44100}};
constexpr std::size_t kBlock = 4096;

Samples byMozep(const Samples& x, Rates rates) {
    mozep_program::RationalResampler resampler(rates.from, rates.to);
    Samples y;
    for (std::span<const float> rest(x); !rest.empty();) {
        const auto part = rest.first(std::min(rest.size(), kBlock));
        resampler.add(part, y);
        rest = rest.subspan(part.size());
    }
    resampler.finish(y);
    return y;
}

// By the code of the column of AVX.
Samples byMozepWithAvx(const Samples& x, Rates rates) {
    constexpr int kSlot = 5;
    if (zep::zepSelectColumn(kSlot) != zepStsNoErr) throw std::runtime_error("no such column");
    Samples y = byMozep(x, rates);
    zep::zepSelectVariantAuto();
    return y;
}

Samples byLibsamplerate(const Samples& x, Rates rates, int converter) {
    int error = 0;
    SRC_STATE* state = src_new(converter, 1, &error);
    if (state == nullptr) throw std::runtime_error(src_strerror(error));
    const double ratio = static_cast<double>(rates.to) / rates.from;
    Samples y, block(8 * kBlock);
    std::size_t done = 0;
    for (SRC_DATA data{}; data.end_of_input == 0 || data.output_frames_gen > 0;) {
        data.data_in = x.data() + done;
        data.input_frames = static_cast<long>(std::min(kBlock, x.size() - done));
        data.end_of_input = done + static_cast<std::size_t>(data.input_frames) == x.size();
        data.data_out = block.data();
        data.output_frames = static_cast<long>(block.size());
        data.src_ratio = ratio;
        if (const int code = src_process(state, &data); code != 0)
            throw std::runtime_error(src_strerror(code));
        done += static_cast<std::size_t>(data.input_frames_used);
        y.insert(y.end(), block.begin(), block.begin() + data.output_frames_gen);
    }
    src_delete(state);
    return y;
}

// Through files of 32-bit floats in a folder of our own.
Samples bySox(const Samples& x, Rates rates, const std::string& quality) {
    std::string folder = std::filesystem::temp_directory_path() / "resample_quality.XXXXXX";
    if (mkdtemp(folder.data()) == nullptr) throw std::runtime_error("no temporary folder");
    const std::string in = folder + "/in.f32", out = folder + "/out.f32";
    const std::streamsize bytes = sizeof(float);
    std::ofstream(in, std::ios::binary)
        .write(reinterpret_cast<const char*>(x.data()),
               static_cast<std::streamsize>(x.size()) * bytes);
    const std::string command = "sox --single-threaded -c 1 -r " + std::to_string(rates.from) +
                                " '" + in + "' -r " + std::to_string(rates.to) + " '" + out +
                                "' rate " + quality;
    Samples y;
    if (std::system(command.c_str()) == 0) {
        y.resize(std::filesystem::file_size(out) / sizeof(float));
        std::ifstream(out, std::ios::binary)
            .read(reinterpret_cast<char*>(y.data()),
                  static_cast<std::streamsize>(y.size()) * bytes);
    }
    std::filesystem::remove_all(folder);
    if (y.empty()) throw std::runtime_error("sox failed");
    return y;
}

struct Resampler {
    const char* name;
    std::function<Samples(const Samples&, Rates)> run;
};
const Resampler kResamplers[] = {
    {"mozep", byMozep},
    {"mozep, column e9", byMozepWithAvx},
    {"libsamplerate best",
     [](const Samples& x, Rates r) { return byLibsamplerate(x, r, SRC_SINC_BEST_QUALITY); }},
    {"libsamplerate medium",
     [](const Samples& x, Rates r) { return byLibsamplerate(x, r, SRC_SINC_MEDIUM_QUALITY); }},
    {"sox -v", [](const Samples& x, Rates r) { return bySox(x, r, "-v"); }},
};

// Tones of 0.3 s one after the other; the middle 0.1 s of each is looked at.
constexpr double kAmplitude = 0.5, kPart = 0.1;

double angle(double Hz, double rate, std::size_t n) {
    return 2 * std::numbers::pi * std::fmod(Hz * static_cast<double>(n), rate) / rate;
}

Samples tones(const std::vector<double>& frequencies, int rate) {
    const auto length = static_cast<std::size_t>(std::lround(3 * kPart * rate));
    Samples x;
    for (const double Hz : frequencies)
        for (std::size_t n = 0; n < length; ++n)
            x.push_back(static_cast<float>(kAmplitude * std::cos(angle(Hz, rate, n))));
    return x;
}

struct Level {
    double tone, rest;  // dB, relative to the tone that went in
};

double decibel(double ratio) { return 20 * std::log10(std::max(ratio, 1e-12)); }

// The tone's part by least squares, and what is left without it.
Level measure(std::span<const float> y, double Hz, int rate) {
    double cc = 0, cs = 0, ss = 0, yc = 0, ys = 0, yy = 0;
    for (std::size_t n = 0; n < y.size(); ++n) {
        const double c = std::cos(angle(Hz, rate, n)), s = std::sin(angle(Hz, rate, n));
        const double v = static_cast<double>(y[n]);
        cc += c * c, cs += c * s, ss += s * s, yc += v * c, ys += v * s, yy += v * v;
    }
    const double power = kAmplitude * kAmplitude / 2 * static_cast<double>(y.size());
    if (Hz >= rate / 2.0) return {-240, decibel(std::sqrt(yy / power))};
    const double det = cc * ss - cs * cs;
    const double a = (yc * ss - ys * cs) / det, b = (ys * cc - yc * cs) / det;
    double rest = 0;
    for (std::size_t n = 0; n < y.size(); ++n) {
        const double e = static_cast<double>(y[n]) - a * std::cos(angle(Hz, rate, n)) -
                         b * std::sin(angle(Hz, rate, n));
        rest += e * e;
    }
    return {decibel(std::hypot(a, b) / kAmplitude), decibel(std::sqrt(rest / power))};
}

// Parts of half the lower rate.
std::vector<double> partsFor(Rates rates) {
    std::vector<double> parts;
    for (double part = 0.01; part < 0.899; part += 0.02) parts.push_back(part);
    for (int k = 180; k < 200; ++k) parts.push_back(k / 200.0);
    const double highest = rates.from / 2.0 / rates.lowerHalf();
    for (const double part : {1.002, 1.005, 1.01, 1.02, 1.03, 1.04, 1.05, 1.06, 1.08})
        if (part < highest) parts.push_back(part);
    for (double part = 1.1; part < highest; part *= 1.03) parts.push_back(part);
    return parts;
}

void printQuality(const Resampler& resampler, Rates rates) {
    const std::vector<double> parts = partsFor(rates);
    std::vector<double> frequencies;
    for (const double part : parts) frequencies.push_back(part * rates.lowerHalf());
    const Samples y = resampler.run(tones(frequencies, rates.from), rates);
    double low = 0, high = 0, flatTo = 0, outside = -240, all = -240;
    bool flat = true;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const double begin = (3 * static_cast<double>(i) + 1) * kPart * rates.to;
        const auto first = static_cast<std::size_t>(std::lround(begin));
        const auto count = static_cast<std::size_t>(std::lround(kPart * rates.to));
        const Level level = measure(std::span(y).subspan(first, count), frequencies[i], rates.to);
        flat = flat && level.tone > -0.1;
        if (flat) flatTo = parts[i];
        if (parts[i] <= 0.9) low = std::min(low, level.tone), high = std::max(high, level.tone);
        if (parts[i] <= 0.9 || parts[i] >= 1.1) outside = std::max(outside, level.rest);
        all = std::max(all, level.rest);
    }
    std::printf("| %d to %d | %s | %.5f | %.3f | %.1f | %.1f |\n", rates.from, rates.to,
                resampler.name, high - low, flatTo, -outside, -all);
}

void printSpeed(const Resampler& resampler, Rates rates) {
    constexpr int kSeconds = 20;
    const Samples x = tones(std::vector<double>(kSeconds * 10 / 3, 1000), rates.from);
    double best = 1e9;
    std::size_t count = 1;
    for (int turn = 0; turn < 3; ++turn) {
        const auto start = std::chrono::steady_clock::now();
        count = resampler.run(x, rates).size();
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        best = std::min(best, taken.count());
    }
    std::printf("| %d to %d | %s | %.2f | %.0f |\n", rates.from, rates.to, resampler.name,
                best * 1e9 / static_cast<double>(count),
                static_cast<double>(x.size()) / rates.from / best);
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    const bool speed = argc > 1 && argv[1] == std::string("--speed");
    std::puts(speed ? "| rates | resampler | ns a sample of output | seconds of sound a second |\n"
                      "|---|---|---|---|"
                    : "| rates | resampler | ripple to 0.9, dB | 0.1 dB down at | rejected, dB | "
                      "everywhere, dB |\n|---|---|---|---|---|---|");
    const std::span<const Resampler> resamplers(kResamplers);
    for (const Rates rates : kRates) {
        if (!speed)
            for (const Resampler& resampler : resamplers) printQuality(resampler, rates);
        else
            for (const Resampler& resampler : resamplers.first(4)) printSpeed(resampler, rates);
    }
}
