// mozep info, run as a program: it must say what the library says in this process.
#include <gtest/gtest.h>
#include <mozep.h>
#include <zeps.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "core/selection.h"
#include "support/machine.h"
#include "support/program.h"

namespace zep::test {
namespace {

ProgramResult run(std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), {ZEP_PROGRAM, "info"});
    return runProgram(arguments);
}

// Names to values; every line but a heading is indented by two, with its value in column 19.
std::map<std::string, std::string> rows(const std::string& text) {
    std::map<std::string, std::string> values;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with("  ")) continue;
        EXPECT_GE(line.size(), 19u) << line;
        EXPECT_EQ(line[17], ' ') << line;
        EXPECT_NE(line[18], ' ') << line;
        EXPECT_NE(line.back(), ' ') << line;
        const std::string name = line.substr(2, line.find_last_not_of(' ', 17) - 1);
        EXPECT_TRUE(values.emplace(name, line.substr(18)).second) << line;
    }
    return values;
}

std::string expectedRecord(const ZepVersionRecord& v, const std::string& tag) {
    std::string text = v.libName;
    text.resize(16, ' ');
    text += tag;
    text.resize(22, ' ');
    return text + v.versionText + ", domain build " + std::to_string(v.domainBuild);
}

// Functions that the headers of a domain declare; its version function alone makes none.
int functionsOf(const std::string& domain) {
    std::string text;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(ZEP_HEADERS)) {
        const std::string header = std::filesystem::relative(entry.path(), ZEP_HEADERS);
        if (!entry.is_regular_file() || header.substr(0, header.find_first_of("./")) != domain)
            continue;
        std::ostringstream all;
        all << std::ifstream(entry.path()).rdbuf();
        text += all.str();
    }
    int count = 0;
    for (std::size_t at = 0; (at = text.find("\nZEP_API ", at)) != text.npos; ++at)
        count += text.substr(at, text.find('(', at) - at).find("GetLibVersion") == text.npos;
    return count;
}

TEST(Info, ShowsWhatTheLibrarySays) {
    const ProgramResult result = run();
    ASSERT_EQ(result.code, 0) << result.error;
    EXPECT_EQ(result.error, "");
    auto info = rows(result.out);
    EXPECT_EQ(info["version"], ZEP_VERSION);
    const std::string tag = zepsGetLibVersion()->targetTag;
    const std::map<std::string, std::string> levels{{"m7", "SSE2"},
                                                    {"u8", "SSSE3"},
                                                    {"n8", "SSSE3 and MOVBE"},
                                                    {"y8", "SSE4.1"},
                                                    {"e9", "AVX"}};
    EXPECT_EQ(info["variant"], tag + ", for processors with " + levels.at(tag));
    const int slot = std::max(variantIndex, 1);  // slot 0 has the code of slot 1
    EXPECT_EQ(info["column"], kColumns[slot - 1].code);
    EXPECT_TRUE(info["column"].starts_with(tag)) << info["column"];
    const ZepStatus started = MOZEP::mozepStaticInitResult();
    EXPECT_EQ(info["start-up"], std::to_string(started) + ", " + zepGetStatusString(started));
    EXPECT_EQ(info["type"], std::to_string(zepGetCpuType()) + ", " + MOZEP::mozepCpuTypeString());
    EXPECT_EQ(info["cores on die"], std::to_string(zepGetNumCoresOnDie()));
    EXPECT_TRUE(info["features"].starts_with("SSE2")) << info["features"];
    EXPECT_EQ(info["clock"], "not measured (--clock)");
}

TEST(Info, ListsTheDomainsThatHaveFunctions) {
    const ProgramResult result = run();
    auto info = rows(result.out);
    const std::string tag = zepsGetLibVersion()->targetTag;
    EXPECT_EQ(info["core"], expectedRecord(*zepGetLibVersion(), "core"));
    const struct {
        const char *name, *prefix;
        const ZepVersionRecord& record;
    } domains[] = {{"signal", "zeps", *zepsGetLibVersion()},
                   {"speech", "zepsc", *zepscGetLibVersion()},
                   {"matrix", "zepm", *zepmGetLibVersion()}};
    std::string counts;
    for (const auto& domain : domains) {
        const int functions = functionsOf(domain.prefix);
        if (functions > 0) {
            EXPECT_EQ(info[domain.name], expectedRecord(domain.record, tag));
            counts += (counts.empty() ? "" : ", ") + std::to_string(functions) + " " + domain.name;
        } else {
            EXPECT_EQ(info.count(domain.name), 0u) << domain.name;
        }
    }
    EXPECT_EQ(info["functions"], counts);
}

// The records' fields are laid down by the interface: no reader may take them for the build at hand.
TEST(Info, ShowsNoDateAndSaysWhatIsFixed) {
    const std::string text = run().out;
    for (const ZepVersionRecord* record : {zepGetLibVersion(), zepsGetLibVersion()})
        EXPECT_EQ(text.find(record->buildDate), std::string::npos) << text;
    EXPECT_NE(
        text.find("\nVersion records (fixed by the interface, the same in every build)\n  core"),
        std::string::npos)
        << text;
    EXPECT_EQ(
        runProgram({ZEP_PROGRAM, "--version"}).out,
        "mozep " ZEP_VERSION " (variant " + std::string(zepsGetLibVersion()->targetTag) + ")\n");
}

TEST(Info, ShowsTheCacheOrWhyItIsUnknown) {
    int bytes = 0;
    const ZepStatus status = zepGetMaxCacheSizeB(&bytes);
    const std::string expected =
        status == zepStsNoErr
            ? std::to_string(bytes / 1024) + " KiB"
            : "unknown (" + std::to_string(status) + ", " + zepGetStatusString(status) + ")";
    EXPECT_EQ(rows(run().out)["largest cache"], expected);
}

TEST(Info, MeasuresTheClockOnRequest) {
    const ProgramResult result = run({"--clock"});
    ASSERT_EQ(result.code, 0) << result.error;
    const std::string clock = rows(result.out)["clock"];
    EXPECT_TRUE(clock.ends_with(" MHz")) << clock;
    EXPECT_GT(std::stoi(clock), 100) << clock;
}

TEST(Info, RefusesWhatItDoesNotKnow) {
    for (const char* argument : {"--clocks", "now"}) {
        const ProgramResult result = run({argument});
        EXPECT_EQ(result.code, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_NE(result.error.find(argument), std::string::npos) << result.error;
    }
}

TEST(Info, StandsInTheHelp) {
    const ProgramResult result = runProgram({ZEP_PROGRAM, "--help"});
    EXPECT_EQ(result.code, 0);
    EXPECT_NE(result.out.find("\n  info "), std::string::npos) << result.out;
}

}  // namespace
}  // namespace zep::test
