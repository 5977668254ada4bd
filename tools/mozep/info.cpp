// mozep info: which variant of the library runs here, and what it found of the processor.
#include <mozep.h>
#include <zeps.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "commands.h"
#include "core/columns.h"
#include "core/variant_index.h"

namespace mozep_program {
namespace {

struct Options {
    bool clock = false;
};

void heading(const char* text) { std::printf("%s\n", text); }
void row(const char* name, const std::string& value) {
    std::printf("  %-16s%s\n", name, value.c_str());
}

// A tag is NUL-filled, and not ended by one where it fills its four bytes.
std::string tagOf(const ZepVersionRecord& v) {
    const std::string bytes(v.targetTag, sizeof v.targetTag);
    return bytes.substr(0, bytes.find('\0'));
}

// What the interface lays down about a domain: the same in every build of every version.
std::string describe(const ZepVersionRecord& v) {
    char line[160];
    std::snprintf(line, sizeof line, "%-16s%-6s%s, domain build %d", v.libName, tagOf(v).c_str(),
                  v.versionText, v.domainBuild);
    return line;
}

struct Domain {
    const char* name;
    int functions;
    const ZepVersionRecord& record;
};

// The domains that the library has functions of.
std::vector<Domain> domains() {
    const Domain known[] = {{"signal", ZEP_SIGNAL_FUNCTIONS, *zepsGetLibVersion()},
                            {"speech", ZEP_SPEECH_FUNCTIONS, *zepscGetLibVersion()},
                            {"matrix", ZEP_MATRIX_FUNCTIONS, *zepmGetLibVersion()}};
    std::vector<Domain> present;
    for (const Domain& domain : known)
        if (domain.functions > 0) present.push_back(domain);
    return present;
}

std::string countOfFunctions() {
    std::string list;
    for (const Domain& domain : domains())
        list += (list.empty() ? "" : ", ") + std::to_string(domain.functions) + " " + domain.name;
    return list;
}

std::string levelOf(const std::string& tag) {
    static const struct {
        const char *tag, *level;
    } kLevels[] = {{"m7", "SSE2"},
                   {"u8", "SSSE3"},
                   {"n8", "SSSE3 and MOVBE"},
                   {"y8", "SSE4.1"},
                   {"e9", "AVX"}};
    for (const auto& known : kLevels)
        if (tag == known.tag) return known.level;
    return "unknown";
}

std::string statusText(ZepStatus status) {
    return std::to_string(status) + ", " + zepGetStatusString(status);
}

std::string cacheSize() {
    int bytes = 0;
    const ZepStatus status = zepGetMaxCacheSizeB(&bytes);
    if (status != zepStsNoErr) return "unknown (" + statusText(status) + ")";
    return std::to_string(bytes / 1024) + " KiB";
}

std::string clockRate() {
    int mhz = 0;
    const ZepStatus status = zepGetCpuFreqMhz(&mhz);
    return status == zepStsNoErr ? std::to_string(mhz) + " MHz" : statusText(status);
}

// As the compiler's run time finds them: instruction sets that the operating system supports too.
std::string features() {
    std::string list;
    const auto add = [&list](bool present, const char* name) {
        if (present) list += (list.empty() ? "" : " ") + std::string(name);
    };
    __builtin_cpu_init();
    add(__builtin_cpu_supports("sse2"), "SSE2");
    add(__builtin_cpu_supports("sse3"), "SSE3");
    add(__builtin_cpu_supports("ssse3"), "SSSE3");
    add(__builtin_cpu_supports("sse4.1"), "SSE4.1");
    add(__builtin_cpu_supports("sse4.2"), "SSE4.2");
    add(__builtin_cpu_supports("aes"), "AES");
    add(__builtin_cpu_supports("pclmul"), "PCLMULQDQ");
    add(__builtin_cpu_supports("avx"), "AVX");
    add(__builtin_cpu_supports("fma"), "FMA");
    add(__builtin_cpu_supports("avx2"), "AVX2");
    add(__builtin_cpu_supports("avx512f"), "AVX-512");
    return list;
}

// The selection that this program makes of its own when it is loaded, by the same code as the library.
std::string columnOfThisProcessor() {
    return zep::kColumns[std::max(zep::variantIndex, 1) - 1].code;
}

void run(const Options& options) {
    const std::string tag = tagOf(*zepsGetLibVersion());
    heading("Library");
    row("version", ZEP_PACKAGE_VERSION);
    row("variant", tag + ", for processors with " + levelOf(tag));
    row("column", columnOfThisProcessor());
    row("start-up", statusText(MOZEP::mozepStaticInitResult()));
    row("functions", countOfFunctions());

    heading("Processor");
    row("type", std::to_string(zepGetCpuType()) + ", " + MOZEP::mozepCpuTypeString());
    row("features", features());
    row("cores on die", std::to_string(zepGetNumCoresOnDie()));
    row("largest cache", cacheSize());
    // What is known is shown at once: the measurement lasts for seconds.
    std::fflush(stdout);
    row("clock", options.clock ? clockRate() : "not measured (--clock)");

    heading("Version records (fixed by the interface, the same in every build)");
    row("core", describe(*zepGetLibVersion()));
    for (const Domain& domain : domains()) row(domain.name, describe(domain.record));
}

}  // namespace

void addInfo(CLI::App& app) {
    auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand(
        "info", "Versions, the variant that runs, and what the library found of the processor");
    command->add_flag("--clock", options->clock, "measure the clock rate, for up to three seconds");
    command->callback([options] { run(*options); });
}

}  // namespace mozep_program
