// The subcommands of the program. Each adds itself to the command line, with a callback that does
// its work.
#pragma once

#include <CLI/CLI.hpp>
#include <stdexcept>
#include <string>

namespace mozep_program {

// What a subcommand throws when it cannot do its work; main prints it in one line and exits with 1.
class Failure : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A line on the standard error about work that was done, but not as it should be.
void warn(const std::string& command, const std::string& message);

void addConvert(CLI::App& app);
void addDesign(CLI::App& app);
void addFilter(CLI::App& app);
void addGunzip(CLI::App& app);
void addInfo(CLI::App& app);
void addNoise(CLI::App& app);
void addResample(CLI::App& app);
void addSpeech(CLI::App& app);
void addSpectrum(CLI::App& app);
void addStats(CLI::App& app);
void addTone(CLI::App& app);

}  // namespace mozep_program
