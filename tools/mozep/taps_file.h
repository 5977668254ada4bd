#pragma once

#include <string>
#include <vector>

namespace mozep_program {

// Files of filter taps: one a line, in decimal. Both throw Failure with the reason.

// Finite numbers of single precision's range. Lines that are empty or begin with "#" do not count.
std::vector<double> readTaps(const std::string& name);

// As many digits as it takes to read the same number again. An empty name or "-" is the standard
// output.
void writeTaps(const std::vector<double>& taps, const std::string& name);

}  // namespace mozep_program
