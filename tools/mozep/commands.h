// The subcommands of the program. Each adds itself to the command line, with a callback that does
// its work.
#pragma once

#include <CLI/CLI.hpp>
#include <stdexcept>

namespace mozep_program {

// What a subcommand throws when it cannot do its work; main prints it in one line and exits with 1.
class Failure : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

void addGunzip(CLI::App& app);
void addInfo(CLI::App& app);
void addSpectrum(CLI::App& app);

}  // namespace mozep_program
