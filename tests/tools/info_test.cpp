// mozep info, run as a program: it must say what the library says in this process.
#include <gtest/gtest.h>
#include <mozep.h>
#include <zeps.h>

#include <map>
#include <sstream>

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

void expectRecord(const std::string& value, const ZepVersionRecord& v, const std::string& tag) {
    std::istringstream words(value);
    std::string name, shownTag, build, number, date;
    words >> name >> shownTag >> build >> number;
    std::getline(words >> std::ws, date);
    EXPECT_EQ(name, v.libName);
    EXPECT_EQ(shownTag, tag);
    EXPECT_EQ(build + " " + number, "build " + std::to_string(v.domainBuild) + ",");
    EXPECT_EQ(date, v.buildDate);
}

TEST(Info, ShowsWhatTheLibrarySays) {
    const ProgramResult result = run();
    ASSERT_EQ(result.code, 0) << result.error;
    EXPECT_EQ(result.error, "");
    auto info = rows(result.out);
    EXPECT_EQ(info["version"], "7.0 build 205.58");
    const std::string tag = zepsGetLibVersion()->targetTag;
    expectRecord(info["core"], *zepGetLibVersion(), "core");
    expectRecord(info["signal"], *zepsGetLibVersion(), tag);
    expectRecord(info["speech"], *zepscGetLibVersion(), tag);
    expectRecord(info["matrix"], *zepmGetLibVersion(), tag);
    const std::map<std::string, std::string> levels{{"m7", "SSE2"},
                                                    {"u8", "SSSE3"},
                                                    {"n8", "SSSE3 and MOVBE"},
                                                    {"y8", "SSE4.1"},
                                                    {"e9", "AVX"}};
    EXPECT_EQ(info["variant"], tag + ", for processors with " + levels.at(tag));
    const ZepStatus started = MOZEP::mozepStaticInitResult();
    EXPECT_EQ(info["start-up"], std::to_string(started) + ", " + zepGetStatusString(started));
    EXPECT_EQ(info["type"], std::to_string(zepGetCpuType()) + ", " + MOZEP::mozepCpuTypeString());
    EXPECT_EQ(info["cores on die"], std::to_string(zepGetNumCoresOnDie()));
    EXPECT_TRUE(info["features"].starts_with("SSE2")) << info["features"];
    EXPECT_EQ(info["clock"], "not measured (--clock)");
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
