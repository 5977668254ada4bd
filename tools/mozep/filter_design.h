// The filters that `filter` and `design` make, as the command line tells.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace mozep_program {

struct FilterDesign {
    // Hz. The one that is not 0, or not empty, is the choice.
    double lowpass = 0, highpass = 0;
    std::vector<double> band, stop;  // lower and upper edge
    int length = 1023;
    std::string window = "blackman";

    // How many of the four kinds were chosen.
    int chosen() const;
};

inline constexpr int kMostTaps = 1'000'000;

// What help says of designs.
extern const char* const kDesignNotes;

// Adds --lowpass, --highpass, --band, --stop, --length and --window; returns the last two.
std::vector<CLI::Option*> addDesignOptions(CLI::App& command, FilterDesign& design);

// The taps of the kind that was chosen, with gain 1 where the filter passes. Throws
// CLI::ValidationError if a frequency does not suit the sampling rate.
std::vector<double> designTaps(const FilterDesign& design, int rate);

// The design in a few words.
std::string describe(const FilterDesign& design);

}  // namespace mozep_program
