#include "filter_design.h"

#include <zeps.h>

#include <cmath>
#include <map>

#include "commands.h"
#include "generated_file.h"
#include "library_status.h"

namespace mozep_program {
namespace {

constexpr double kLowest = 1e-6, kHighest = 1e9;  // Hz
constexpr int kFewestTaps = 5;

const std::map<std::string, int> kWindows = {{"bartlett", zepWinBartlett},
                                             {"blackman", zepWinBlackman},
                                             {"hamming", zepWinHamming},
                                             {"hann", zepWinHann},
                                             {"none", -1}};

void requireBelowHalf(const std::string& option, double Hz, int rate) {
    if (Hz < rate / 2.0) return;
    throw CLI::ValidationError(option, CLI::detail::to_string(Hz) + " Hz is not below " +
                                           CLI::detail::to_string(rate / 2.0) +
                                           " Hz, half of the sampling rate");
}

std::vector<double> edgesOf(const std::string& option, const std::vector<double>& edges, int rate) {
    for (const double Hz : edges) requireBelowHalf(option, Hz, rate);
    if (!(edges[0] < edges[1]))
        throw CLI::ValidationError(option, "the lower edge must be below the upper one");
    return {edges[0] / rate, edges[1] / rate};
}

double cutoffOf(const std::string& option, double Hz, int rate) {
    requireBelowHalf(option, Hz, rate);
    return Hz / rate;
}

}  // namespace

const char* const kDesignNotes =
    "Designs are made by the window method, in double precision: the ideal response is cut to L "
    "taps,\nwhich are weighted by a window; the gain is 1 where the filter passes (in the middle "
    "of "
    "a band).\nAt an edge the level is 6 dB down. What is stopped is 61 dB down or more with the "
    "window\nblackman, from 2.6 R/L beside the edge on at R samples per second; hamming: 53 dB, "
    "1.7 "
    "R/L;\nhann: 44 dB, 1.6 R/L; bartlett: 32 dB, 4 R/L; none: 21 dB, 0.5 R/L.\n"
    "Taps are symmetric, so that all frequencies are delayed alike, by (L-1)/2 samples. Take an "
    "odd\nL for --highpass and --stop: with an even one the former turns the phase by a quarter, "
    "the "
    "latter\ndoes not pass half the sampling rate.";

int FilterDesign::chosen() const {
    return (lowpass > 0) + (highpass > 0) + !band.empty() + !stop.empty();
}

std::vector<CLI::Option*> addDesignOptions(CLI::App& command, FilterDesign& design) {
    const CLI::Validator frequency = within(kLowest, kHighest);
    command.add_option("--lowpass", design.lowpass, "pass what is below this frequency in Hz")
        ->type_name("HZ")
        ->check(frequency);
    command.add_option("--highpass", design.highpass, "pass what is above it")
        ->type_name("HZ")
        ->check(frequency);
    command.add_option("--band", design.band, "pass what is between two frequencies")
        ->type_name("LO HI")
        ->expected(2)
        ->check(frequency);
    command.add_option("--stop", design.stop, "pass what is not between them")
        ->type_name("LO HI")
        ->expected(2)
        ->check(frequency);
    CLI::Option* length = command.add_option("--length", design.length, "taps, L")
                              ->type_name("L")
                              ->check(CLI::Range(kFewestTaps, kMostTaps))
                              ->capture_default_str();
    CLI::Option* window =
        command.add_option("--window", design.window, "window that the taps are weighted by")
            ->type_name("NAME")
            ->check(CLI::IsMember(kWindows))
            ->capture_default_str();
    return {length, window};
}

std::vector<double> designTaps(const FilterDesign& design, int rate) {
    std::vector<double> taps(static_cast<std::size_t>(design.length));
    const int window = kWindows.at(design.window);
    constexpr Zep32s kUnitGain = 1;
    if (design.lowpass > 0)
        requireSuccess(zepsFIRGenLowpass_64f(cutoffOf("--lowpass", design.lowpass, rate),
                                             taps.data(), design.length, window, kUnitGain));
    else if (design.highpass > 0)
        requireSuccess(zepsFIRGenHighpass_64f(cutoffOf("--highpass", design.highpass, rate),
                                              taps.data(), design.length, window, kUnitGain));
    else if (!design.band.empty()) {
        const auto f = edgesOf("--band", design.band, rate);
        requireSuccess(
            zepsFIRGenBandpass_64f(f[0], f[1], taps.data(), design.length, window, kUnitGain));
    } else {
        const auto f = edgesOf("--stop", design.stop, rate);
        requireSuccess(
            zepsFIRGenBandstop_64f(f[0], f[1], taps.data(), design.length, window, kUnitGain));
    }
    for (const double tap : taps)
        if (!std::isfinite(tap)) throw Failure("such a filter has no gain to be made 1");
    return taps;
}

std::string describe(const FilterDesign& design) {
    const auto Hz = [](double value) { return CLI::detail::to_string(value) + " Hz"; };
    const auto edges = [&](const std::vector<double>& pair) {
        return CLI::detail::to_string(pair[0]) + " to " + Hz(pair[1]);
    };
    const std::string kind = design.lowpass > 0     ? "Lowpass, " + Hz(design.lowpass)
                             : design.highpass > 0  ? "Highpass, " + Hz(design.highpass)
                             : !design.band.empty() ? "Bandpass, " + edges(design.band)
                                                    : "Bandstop, " + edges(design.stop);
    return kind + ", window: " + design.window;
}

}  // namespace mozep_program
