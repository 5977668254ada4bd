#include <zeps.h>

#include <cstdio>
#include <exception>
#include <iostream>
#include <string>

#include "commands.h"

namespace mozep_program {
namespace {

constexpr int kFailed = 1, kWrongUsage = 2;

std::string versionLine() {
    const ZepVersionRecord& library = *zepGetLibVersion();
    const std::string tag(zepsGetLibVersion()->targetTag, 2);
    return std::string("mozep ") + library.versionText + " (variant " + tag + ")";
}

constexpr const char* kNoOutput = "cannot write to the standard output";

// Output that could not be written is a failure too.
void checkOutput() {
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) throw Failure(kNoOutput);
}

// Errors take one line, whatever their source.
int fail(const CLI::App& app, const std::string& message, int code) {
    std::string command = "mozep";
    for (const CLI::App* chosen : app.get_subcommands()) command += ' ' + chosen->get_name();
    std::fprintf(stderr, "%s: %s\n", command.c_str(),
                 message.substr(0, message.find('\n')).c_str());
    return code;
}

}  // namespace
}  // namespace mozep_program

int main(int argc, char** argv) {
    using namespace mozep_program;
    CLI::App app("Signal processing with the MOZEP library.", "mozep");
    app.set_version_flag("--version", versionLine());
    app.require_subcommand(1);
    addGunzip(app);
    addInfo(app);
    addSpectrum(app);
    try {
        app.parse(argc, argv);
        checkOutput();
    } catch (const CLI::ParseError& e) {
        if (e.get_exit_code() != 0) return fail(app, e.what(), kWrongUsage);
        app.exit(e);  // --help, --version
        std::cout.flush();
        return std::cout.good() ? 0 : fail(app, kNoOutput, kFailed);
    } catch (const std::exception& e) {
        return fail(app, e.what(), kFailed);
    }
}
