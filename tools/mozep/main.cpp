#include <zeps.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>

#include "commands.h"
#include "printable.h"

namespace mozep_program {
namespace {

constexpr int kFailed = 1, kWrongUsage = 2;

std::string versionLine() {
    const std::string tag(zepsGetLibVersion()->targetTag, 2);
    return "mozep " ZEP_PACKAGE_VERSION " (variant " + tag + ")";
}

constexpr const char* kNoOutput = "cannot write to the standard output";

// Output that could not be written is a failure too.
void checkOutput() {
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) throw Failure(kNoOutput);
}

std::string chosenCommand(const CLI::App& app) {
    std::string command = "mozep";
    for (const CLI::App* chosen : app.get_subcommands()) command += ' ' + chosen->get_name();
    return command;
}

// Errors take one line, whatever their source and whatever name they quote.
int fail(const CLI::App& app, const std::string& message, int code) {
    std::fprintf(stderr, "%s: %s\n", chosenCommand(app).c_str(), printable(message).c_str());
    return code;
}

// The parser complains of what is missing before it complains of what it does not know, which is
// often the same thing misspelt.
std::string wrongUsage(const CLI::App& app, const CLI::ParseError& error) {
    const auto unknown = app.remaining(true);
    const std::string help = "; see " + chosenCommand(app) + " --help";
    if (unknown.empty()) return error.what();
    const bool command = app.get_subcommands().empty() && !unknown.front().starts_with('-');
    return (command ? "there is no command \"" : "does not know \"") + unknown.front() + '"' + help;
}

int run(int argc, char** argv) {
    CLI::App app("Signal processing with the MOZEP library.", "mozep");
    app.set_version_flag("--version", versionLine());
    app.require_subcommand(1);
    app.footer(
        "Exit codes: 0, all is well, warnings included; 1, the work could not be done; 2, wrong "
        "usage.\nErrors and warnings are lines on the standard error.");
    addConvert(app);
    addDesign(app);
    addFilter(app);
    addGunzip(app);
    addInfo(app);
    addNoise(app);
    addResample(app);
    addSpeech(app);
    addSpectrum(app);
    addStats(app);
    addTone(app);
    try {
        app.parse(argc, argv);
        checkOutput();
    } catch (const CLI::ParseError& e) {
        if (e.get_exit_code() != 0) return fail(app, wrongUsage(app, e), kWrongUsage);
        app.exit(e);  // --help, --version
        std::cout.flush();
        return std::cout.good() ? 0 : fail(app, kNoOutput, kFailed);
    } catch (const std::exception& e) {
        return fail(app, e.what(), kFailed);
    }
    return 0;
}

}  // namespace

void warn(const std::string& command, const std::string& message) {
    std::fprintf(stderr, "mozep %s: warning: %s\n", command.c_str(), printable(message).c_str());
}

}  // namespace mozep_program

int main(int argc, char** argv) {
    // A limit on the size of files is an error like a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return mozep_program::run(argc, argv);
    } catch (...) {
        std::fputs("mozep: there is too little memory even to say what is wrong\n", stderr);
        return mozep_program::kFailed;
    }
}
