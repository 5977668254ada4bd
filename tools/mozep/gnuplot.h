#pragma once

#include <string>
#include <vector>

namespace mozep_program {

// Runs gnuplot and returns what it drew on its standard output. The commands must be written here,
// with numbers alone filled in: gnuplot reads them line by line and can be told to run programs. Any
// other text goes to `texts`, which the commands know as ARG1, ARG2 ... Throws Failure with the
// reason, gnuplot's own last complaint among it.
std::string runGnuplot(const std::string& commands, const std::vector<std::string>& texts);

}  // namespace mozep_program
