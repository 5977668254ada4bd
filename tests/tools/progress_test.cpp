// The line that counts percent on a terminal while a long job runs.
#include <gtest/gtest.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/program.h"
#include "support/sweep.h"
#include "tools/wav_file.h"

namespace zep::test {
namespace {

// The line appears half a second after the start: both jobs take longer, instrumented ones twenty
// times as long.
class Progress : public testing::Test {
protected:
    void SetUp() override {
        path_ = testing::TempDir() + "mozep_progress_" + std::to_string(getpid());
    }
    void TearDown() override { std::filesystem::remove(path_); }

    // The percentages that the terminal showed, in order.
    static std::vector<int> percentages(const std::string& shown) {
        std::vector<int> list;
        std::istringstream lines(shown);
        for (std::string line; std::getline(lines, line, '\r');)
            if (line.ends_with(" %")) list.push_back(std::stoi(line));
        return list;
    }

    static void expectAProgressLineOnATerminalOnly(const std::vector<std::string>& arguments) {
        const ProgramResult onTerminal = runProgramOnTerminal(arguments);
        EXPECT_EQ(onTerminal.code, 0) << onTerminal.error;
        const std::vector<int> shown = percentages(onTerminal.error);
        ASSERT_FALSE(shown.empty()) << onTerminal.error;
        EXPECT_TRUE(std::is_sorted(shown.begin(), shown.end()));
        EXPECT_GT(shown.front(), 0);
        EXPECT_LE(shown.back(), 100);
        EXPECT_TRUE(onTerminal.error.ends_with("\r     \r")) << "the line stays behind";

        const ProgramResult elsewhere = runProgram(arguments);
        EXPECT_EQ(elsewhere.code, 0);
        EXPECT_EQ(elsewhere.error, "");
        EXPECT_EQ(elsewhere.out, onTerminal.out);
    }

    std::string path_;
};

// Silence behind the header takes no room on the disk.
TEST_F(Progress, OfASpectrum) {
    constexpr std::uint32_t kSamples = kInstrumented ? 50'000'000 : 500'000'000;
    writeWav<std::int16_t>(path_, {}, 48000);
    std::fstream file(path_, std::ios::binary | std::ios::in | std::ios::out);
    const auto put = [&file](int at, std::uint32_t value) {
        file.seekp(at).write(reinterpret_cast<const char*>(&value), sizeof value);
    };
    put(4, 36 + 2 * kSamples);
    put(40, 2 * kSamples);
    file.close();
    std::filesystem::resize_file(path_, 44 + 2ull * kSamples);
    expectAProgressLineOnATerminalOnly({ZEP_PROGRAM, "spectrum", path_});
}

// Many small members of a great many zeros.
TEST_F(Progress, OfADecompression) {
    constexpr std::size_t kMemberBytes = std::size_t{64} << 20;
    constexpr int kMembers = kInstrumented ? 20 : 100;
    const std::vector<Bytef> zeros(kMemberBytes);
    std::vector<Bytef> member(kMemberBytes / 64);
    z_stream z{};
    ASSERT_EQ(deflateInit2(&z, 6, Z_DEFLATED, 15 + 16, 9, Z_DEFAULT_STRATEGY), Z_OK);
    z.next_in = const_cast<Bytef*>(zeros.data());
    z.avail_in = static_cast<uInt>(zeros.size());
    z.next_out = member.data();
    z.avail_out = static_cast<uInt>(member.size());
    ASSERT_EQ(deflate(&z, Z_FINISH), Z_STREAM_END);
    const auto bytes = static_cast<std::streamsize>(z.total_out);
    deflateEnd(&z);
    std::ofstream file(path_, std::ios::binary);
    for (int i = 0; i < kMembers; ++i)
        file.write(reinterpret_cast<const char*>(member.data()), bytes);
    file.close();
    expectAProgressLineOnATerminalOnly({ZEP_PROGRAM, "gunzip", path_, "-o", "/dev/null"});
}

TEST_F(Progress, StaysAwayFromShortJobs) {
    writeWav(path_, std::vector<std::int16_t>(48000, 1000), 48000);
    const ProgramResult result = runProgramOnTerminal({ZEP_PROGRAM, "spectrum", path_});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.error, "");
}

}  // namespace
}  // namespace zep::test
