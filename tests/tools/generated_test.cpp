// mozep tone and mozep noise, run as a program.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <numbers>

#include "tools/program_test.h"
#include "tools/wav_reader.h"

namespace zep::test {
namespace {

class Generated : public FolderTest {
protected:
    Generated() : FolderTest("generated") {}

    static ProgramResult run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), ZEP_PROGRAM);
        return runProgram(arguments);
    }

    // The samples of the file that a command makes without a word.
    template <class T>
    std::vector<T> made(std::vector<std::string> arguments, int rate = 48000) {
        arguments.insert(arguments.begin() + 1, path("out.wav"));
        const ProgramResult result = run(arguments);
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.error, "");
        EXPECT_EQ(result.out, "");
        return wavSamples<T>(fileContents(path("out.wav")), rate);
    }

    // One line that says what went wrong, and no file.
    void expectFailure(std::vector<std::string> arguments, const std::string& words, int code) {
        arguments.insert(arguments.begin() + 1, path("none.wav"));
        expectOneLine(run(arguments), arguments[0], words, code);
        EXPECT_TRUE(std::filesystem::is_empty(directory())) << words;
    }
};

double cosine(double amplitude, double frequency, int rate, double phase, std::size_t n) {
    const double turns = std::fmod(frequency * static_cast<double>(n), rate) / rate;
    return amplitude * std::cos(2 * std::numbers::pi * turns + phase);
}

// Over several of the blocks in which the file is written.
TEST_F(Generated, AToneIsTheCosineThatWasAskedFor) {
    const auto x = made<float>({"tone", "--frequency", "1234.5", "--amplitude", "0.75", "--phase",
                                "-2.5", "--rate", "44100", "--seconds", "1.5"},
                               44100);
    ASSERT_EQ(x.size(), 66150u);
    double error = 0;
    for (std::size_t n = 0; n < x.size(); ++n)
        error = std::max(error, std::abs(x[n] - cosine(0.75, 1234.5, 44100, -2.5, n)));
    // Half a unit of the last place of numbers below 1, and far less for the double before it.
    EXPECT_LE(error, 0x1p-25 + 1e-9);
}

TEST_F(Generated, WithoutOptionsASecondOfFullScale) {
    const auto x = made<float>({"tone", "--frequency", "0"});
    EXPECT_EQ(x, std::vector<float>(48000, 1.0F));
}

TEST_F(Generated, IntegersAreRoundedAndStayWithinFullScale) {
    const auto x =
        made<std::int16_t>({"tone", "--frequency", "1000", "--bits", "16", "--rate", "8000"}, 8000);
    ASSERT_EQ(x.size(), 8000u);
    const std::vector<std::int16_t> turn{32767, 23170, 0, -23170, -32768, -23170, 0, 23170};
    for (std::size_t n = 0; n < x.size(); ++n) ASSERT_EQ(x[n], turn[n % 8]) << n;
}

TEST_F(Generated, TellsWhatWasLimited) {
    const ProgramResult result = run({"tone", path("loud.wav"), "--frequency", "12000",
                                      "--amplitude", "1.5", "--bits", "16", "--seconds", "0.01"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.error, "mozep tone: warning: " + path("loud.wav") +
                                ": 240 samples beyond full scale were limited\n");
    const auto x = wavSamples<std::int16_t>(fileContents(path("loud.wav")), 48000);
    ASSERT_EQ(x.size(), 480u);
    EXPECT_EQ(x[0], 32767);
    EXPECT_EQ(x[2], -32768);
}

TEST_F(Generated, WritesToTheStandardOutputToo) {
    const ProgramResult result = run({"tone", "-", "--frequency", "0", "--seconds", "0.001"});
    EXPECT_EQ(result.code, 0) << result.error;
    EXPECT_EQ(wavSamples<float>(result.out, 48000), std::vector<float>(48, 1.0F));
}

// Mean, deviation and correlation of 96000 samples within five standard errors; the share of samples
// within one deviation tells the distribution from others of the same deviation.
TEST_F(Generated, NoiseIsNormallyDistributedAndWhite) {
    const auto x = made<float>({"noise", "--deviation", "0.2", "--seconds", "2"});
    ASSERT_EQ(x.size(), 96000u);
    const double N = 96000, error = 5 / std::sqrt(N);
    double sum = 0, squares = 0, next = 0, within = 0;
    for (std::size_t n = 0; n < x.size(); ++n) {
        const double u = static_cast<double>(x[n]) / 0.2;
        sum += u;
        squares += u * u;
        if (n > 0) next += u * static_cast<double>(x[n - 1]) / 0.2;
        if (std::abs(u) < 1) within += 1;
    }
    EXPECT_NEAR(sum / N, 0, error);
    EXPECT_NEAR(squares / N, 1, error * std::numbers::sqrt2);
    EXPECT_NEAR(next / N, 0, error);
    EXPECT_NEAR(within / N, 0.682689, error * std::sqrt(0.682689 * 0.317311));
}

TEST_F(Generated, NoiseFollowsFromItsSeed) {
    const auto a = made<float>({"noise", "--seed", "7"});
    EXPECT_EQ(made<float>({"noise", "--seed", "7"}), a);
    EXPECT_NE(made<float>({"noise", "--seed", "4294967295"}), a);
    const auto longer = made<float>({"noise", "--seed", "7", "--seconds", "1.25"});
    ASSERT_EQ(longer.size(), 60000u);
    EXPECT_TRUE(std::equal(a.begin(), a.end(), longer.begin()));
    EXPECT_EQ(made<float>({"noise", "--deviation", "0"}), std::vector<float>(48000, 0.0F));
}

TEST_F(Generated, RefusesWhatNoFileCanHold) {
    constexpr int kWrongUsage = 2;
    const std::vector<std::vector<std::string>> wrong = {
        {"--frequency", "24000"},
        {"--frequency", "-1"},
        {"--frequency", "nan"},
        {"--frequency", "1k"},
        {},
        {"--frequency", "1", "--amplitude", "0"},
        {"--frequency", "1", "--amplitude", "inf"},
        {"--frequency", "1", "--phase", "nan"},
        {"--frequency", "1", "--rate", "0"},
        {"--frequency", "1", "--seconds", "0"},
        {"--frequency", "1", "--seconds", "0.00001"},
        {"--frequency", "1", "--seconds", "22370"},  // 4 GiB
        {"--frequency", "1", "--bits", "24"},
    };
    for (const auto& options : wrong) {
        std::vector<std::string> arguments{"tone"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        expectFailure(arguments, options.size() < 2 ? "--frequency" : *(options.end() - 2),
                      kWrongUsage);
    }
    expectFailure({"noise", "--deviation", "-0.1"}, "--deviation", kWrongUsage);
    expectFailure({"noise", "--seed", "-1"}, "--seed", kWrongUsage);
    expectFailure({"noise", "--seed", "4294967296"}, "--seed", kWrongUsage);
    expectFailure({"noise", "--sed", "1"}, "does not know \"--sed\"", kWrongUsage);
}

TEST_F(Generated, LeavesTheOldFileWhenItCannotWrite) {
    const ProgramResult result = run({"noise", path("folder/out.wav")});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.error,
              "mozep noise: " + path("folder/out.wav") + ": No such file or directory\n");
    const ProgramResult full = run({"noise", "/dev/full"});
    EXPECT_EQ(full.code, 1);
    EXPECT_EQ(full.error, "mozep noise: /dev/full: No space left on device\n");

    made<float>({"noise", "--seconds", "0.1"});
    const std::string before = fileContents(path("out.wav"));
    EXPECT_EQ(run({"tone", path("out.wav"), "--frequency", "30000"}).code, 2);
    EXPECT_EQ(fileContents(path("out.wav")), before);
}

}  // namespace
}  // namespace zep::test
