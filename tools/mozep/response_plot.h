#pragma once

#include <string>
#include <vector>

namespace mozep_program {

// Draws the taps of a filter, and its magnitude and phase over the frequency, into one SVG file as
// plotSvg() does. rate: samples per second. Throws Failure with the reason.
void plotResponse(const std::vector<double>& taps, double rate, const std::string& title,
                  const std::string& file);

}  // namespace mozep_program
