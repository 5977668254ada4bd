// What the commands that make test signals share.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

namespace mozep_program {

// The file that a test signal goes to, as the command line tells.
struct GeneratedFile {
    std::string name;
    int rate = 48000;
    double seconds = 1;
    int bits = 32;
};

void addFileOptions(CLI::App& command, GeneratedFile& file);

// A check of numbers that keeps out those that are not finite too.
CLI::Validator within(double low, double high);

// Writes the file from blocks that next() fills one after the other.
void writeGenerated(const std::string& command, const GeneratedFile& file,
                    const std::function<void(std::vector<float>& block)>& next);

}  // namespace mozep_program
