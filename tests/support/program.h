// Runs a program and keeps what it printed.
#pragma once

#include <string>
#include <vector>

namespace zep::test {

struct ProgramResult {
    int code = -1;  // exit code; -1 when a signal ended the program
    std::string out, error;
};

// arguments[0] is the program's path. environment: NAME=value settings that replace or join ours.
// No shell is involved, the standard input is empty, and neither output is a terminal.
ProgramResult runProgram(const std::vector<std::string>& arguments,
                         const std::vector<std::string>& environment = {});

// The same with a terminal for the standard error; error holds what it showed.
ProgramResult runProgramOnTerminal(const std::vector<std::string>& arguments);

}  // namespace zep::test
