// mozep spectrum, run as a program on sound files whose spectrum is known.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <limits>
#include <numbers>
#include <sstream>

#include "support/program.h"
#include "tools/wav_file.h"

namespace zep::test {
namespace {

constexpr int kRate = 48000;

class Spectrum : public testing::Test {
protected:
    void SetUp() override {
        directory_ = testing::TempDir() + "mozep_spectrum_" + std::to_string(getpid());
        std::filesystem::create_directory(directory_);
    }
    void TearDown() override { std::filesystem::remove_all(directory_); }

    std::string path(const std::string& name) const { return directory_ + "/" + name; }

    static ProgramResult run(std::vector<std::string> arguments,
                             const std::vector<std::string>& environment = {}) {
        arguments.insert(arguments.begin(), {ZEP_PROGRAM, "spectrum"});
        return runProgram(arguments, environment);
    }

    // One line that says what went wrong, and nothing on the standard output.
    static void expectFailure(const std::vector<std::string>& arguments, const std::string& words,
                              int code = 1) {
        const ProgramResult result = run(arguments);
        EXPECT_EQ(result.code, code) << result.error;
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(result.error.starts_with("mozep spectrum: ")) << result.error;
        EXPECT_NE(result.error.find(words), std::string::npos) << result.error;
        EXPECT_EQ(result.error.find('\n'), result.error.size() - 1) << result.error;
    }

private:
    std::string directory_;
};

std::vector<float> sine(double Hz, double amplitude, std::size_t length) {
    std::vector<float> x(length);
    for (std::size_t n = 0; n < length; ++n)
        x[n] = static_cast<float>(
            amplitude * std::sin(2 * std::numbers::pi * Hz * static_cast<double>(n) / kRate + 0.3));
    return x;
}

struct Row {
    double Hz, dBFS;
};

std::vector<Row> peakRows(const std::string& text) {
    std::istringstream in(text.substr(text.find("dBFS\n") + 5));
    std::vector<Row> rows;
    for (int index; in >> index;) {
        rows.emplace_back();
        in >> rows.back().Hz >> rows.back().dBFS;
        EXPECT_EQ(index, static_cast<int>(rows.size()));
    }
    return rows;
}

std::vector<Row> csvRows(const std::string& text) {
    std::istringstream in(text);
    std::string line;
    std::getline(in, line);
    EXPECT_EQ(line, "Hz,dBFS");
    std::vector<Row> rows;
    char comma = 0;
    for (Row row{}; in >> row.Hz >> comma >> row.dBFS;) {
        EXPECT_EQ(comma, ',');
        rows.push_back(row);
    }
    return rows;
}

TEST_F(Spectrum, AFullScaleSineReadsZero) {
    writeWav(path("sine.wav"), sine(3000, 1, kRate), kRate);  // bin 512 of 8192
    const ProgramResult result = run({path("sine.wav")});
    ASSERT_EQ(result.code, 0) << result.error;
    const auto rows = peakRows(result.out);
    ASSERT_FALSE(rows.empty());
    EXPECT_NEAR(rows[0].Hz, 3000, 0.02);
    EXPECT_NEAR(rows[0].dBFS, 0, 0.01);
    EXPECT_EQ(result.error, "");
}

// Between bins too, the position comes out to a tenth of a bin and the level to a tenth of a
// decibel.
TEST_F(Spectrum, FindsSinesBetweenTheBins) {
    for (const double bin : {100.0, 100.1, 200.25, 300.5, 400.75, 401.9})
        for (const int N : {1024, 4096}) {
            const double binHz = static_cast<double>(kRate) / N;
            const double Hz = bin * binHz, level = -12.04;
            writeWav(path("sine.wav"), sine(Hz, std::pow(10, level / 20), 4 * 8192), kRate);
            const ProgramResult result = run({path("sine.wav"), "--fft", std::to_string(N)});
            ASSERT_EQ(result.code, 0) << result.error;
            const auto rows = peakRows(result.out);
            ASSERT_FALSE(rows.empty());
            EXPECT_NEAR(rows[0].Hz, Hz, 0.1 * binHz) << "bin " << bin;
            EXPECT_NEAR(rows[0].dBFS, level, 0.1) << "bin " << bin;
        }
}

TEST_F(Spectrum, ReadsIntegersAndAveragesTheChannels) {
    // The left channel alone, at half of full scale: a quarter after averaging.
    std::vector<std::int16_t> stereo;
    for (const float x : sine(6000, 16384, kRate)) {
        stereo.push_back(static_cast<std::int16_t>(std::lround(x)));
        stereo.push_back(0);
    }
    writeWav(path("stereo.wav"), stereo, kRate, 2);
    const ProgramResult result = run({path("stereo.wav"), "--peaks", "1"});
    ASSERT_EQ(result.code, 0) << result.error;
    EXPECT_NE(result.out.find("48000 Hz, 2 channels, 1.000 s"), std::string::npos) << result.out;
    const auto rows = peakRows(result.out);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_NEAR(rows[0].Hz, 6000, 0.1);
    EXPECT_NEAR(rows[0].dBFS, -12.04, 0.01);
}

TEST_F(Spectrum, ListsTwoTonesByLevel) {
    auto x = sine(1000, 0.05, kRate);
    const auto louder = sine(7000, 0.5, kRate);
    for (std::size_t n = 0; n < x.size(); ++n) x[n] += louder[n];
    writeWav(path("tones.wav"), x, kRate);
    const ProgramResult result = run({path("tones.wav"), "--peaks", "2"});
    ASSERT_EQ(result.code, 0) << result.error;
    const auto rows = peakRows(result.out);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_NEAR(rows[0].Hz, 7000, 1);
    EXPECT_NEAR(rows[0].dBFS, -6.02, 0.1);
    EXPECT_NEAR(rows[1].Hz, 1000, 1);
    EXPECT_NEAR(rows[1].dBFS, -26.02, 0.1);
}

TEST_F(Spectrum, PrintsEveryBinAsCsv) {
    writeWav(path("sine.wav"), sine(12000, 0.5, 20000), kRate);
    const ProgramResult result = run({path("sine.wav"), "--fft", "256", "--csv"});
    ASSERT_EQ(result.code, 0) << result.error;
    const auto rows = csvRows(result.out);
    ASSERT_EQ(rows.size(), 129u);
    for (std::size_t k = 0; k < rows.size(); ++k) {
        EXPECT_NEAR(rows[k].Hz, 187.5 * static_cast<double>(k), 1e-6);
        // The Hann window of a tone on a bin: that bin, half the magnitude beside it, nothing
        // elsewhere.
        if (k == 64)
            EXPECT_NEAR(rows[k].dBFS, -6.02, 0.01);
        else if (k == 63 || k == 65)
            EXPECT_NEAR(rows[k].dBFS, -12.04, 0.01);
        else
            EXPECT_LT(rows[k].dBFS, -120) << k;
    }
}

// A constant of half scale and an alternation of a quarter: the bins at both ends have no mirror
// image, so that all of the amplitude is in them.
TEST_F(Spectrum, MeasuresBothEndsOfTheBandByAmplitude) {
    std::vector<float> x(16384);
    for (std::size_t n = 0; n < x.size(); ++n) x[n] = 0.5f + (n % 2 == 0 ? 0.25f : -0.25f);
    writeWav(path("ends.wav"), x, kRate);
    const ProgramResult result = run({path("ends.wav"), "--fft", "64", "--csv"});
    ASSERT_EQ(result.code, 0) << result.error;
    const auto rows = csvRows(result.out);
    ASSERT_EQ(rows.size(), 33u);
    EXPECT_NEAR(rows.front().dBFS, -6.02, 0.01);
    EXPECT_NEAR(rows.back().dBFS, -12.04, 0.01);
}

// Blocks of N that overlap by half: (length - N) / (N/2) + 1 of them.
TEST_F(Spectrum, CountsTheBlocks) {
    for (const auto& [length, blocks] : {std::pair{4096, "1 block "},
                                         {4097, "1 block "},
                                         {6143, "1 block "},
                                         {6144, "2 blocks "},
                                         {8192, "3 blocks "},
                                         {1, "1 block "},
                                         {100000, "47 blocks "}}) {
        writeWav(path("sine.wav"), sine(1000, 0.5, static_cast<std::size_t>(length)), kRate);
        const ProgramResult result = run({path("sine.wav"), "--fft", "4096"});
        EXPECT_EQ(result.code, 0) << result.error;
        EXPECT_NE(result.out.find(std::string("; ") + blocks), std::string::npos)
            << length << ": " << result.out;
    }
}

// A half-filled block holds half of the window, and with it half of a steady tone's level.
TEST_F(Spectrum, FillsAShortFileUpWithZeros) {
    writeWav(path("short.wav"), sine(6000, 1, 2048), kRate);
    const ProgramResult result = run({path("short.wav"), "--fft", "4096", "--csv"});
    ASSERT_EQ(result.code, 0) << result.error;
    const auto rows = csvRows(result.out);
    ASSERT_EQ(rows.size(), 2049u);
    EXPECT_NEAR(rows[512].dBFS, -6.02, 0.05);
}

TEST_F(Spectrum, SilenceHasNoPeaks) {
    writeWav(path("silence.wav"), std::vector<std::int16_t>(10000), kRate);
    const ProgramResult result = run({path("silence.wav")});
    EXPECT_EQ(result.code, 0) << result.error;
    EXPECT_NE(result.out.find("no peaks"), std::string::npos) << result.out;
}

TEST_F(Spectrum, SaysWhatIsWrongWithAFile) {
    expectFailure({path("missing.wav")}, "missing.wav: No such file");
    expectFailure({path(".")}, "is a directory");
    std::ofstream(path("text.wav")) << "this is no sound\n";
    expectFailure({path("text.wav")}, "text.wav: is no sound file");
    std::ofstream(path("nothing.wav")).close();
    expectFailure({path("nothing.wav")}, "nothing.wav: is empty");
    writeWav(path("header.wav"), std::vector<float>{}, kRate);
    expectFailure({path("header.wav")}, "header.wav: holds no samples");
    auto x = sine(1000, 1, 5000);
    x[4000] = std::numeric_limits<float>::quiet_NaN();
    writeWav(path("nan.wav"), x, kRate);
    expectFailure({path("nan.wav")}, "nan.wav: holds samples that are not finite");
}

TEST_F(Spectrum, SaysWhatIsWrongWithTheArguments) {
    writeWav(path("sine.wav"), sine(1000, 1, 5000), kRate);
    constexpr int kUsage = 2;
    expectFailure({}, "FILE is required", kUsage);
    for (const char* N :
         {"0", "-8", "1000", "8", "8388608", "2147483648", "99999999999", "4096x", "x", ""})
        expectFailure({path("sine.wav"), "--fft", N}, "no power of two from 16 to 4194304", kUsage);
    expectFailure({path("sine.wav"), "--peaks", "0"}, "--peaks", kUsage);
    expectFailure({path("sine.wav"), "--frobnicate"}, "--frobnicate", kUsage);
    expectFailure({path("sine.wav"), "--plot", path("no/such/folder.svg")}, "No such file");
}

TEST_F(Spectrum, AcceptsTheShortestAndTheLongestBlock) {
    writeWav(path("sine.wav"), sine(3000, 1, 5000), kRate);
    for (const char* N : {"16", "4194304"}) {
        const ProgramResult result = run({path("sine.wav"), "--fft", N});
        EXPECT_EQ(result.code, 0) << result.error;
    }
}

TEST_F(Spectrum, DrawsAnSvg) {
    writeWav(path("it's a sine.wav"), sine(3000, 1, kRate), kRate);
    const std::string svg = path("it's a plot.svg");
    const ProgramResult result = run({path("it's a sine.wav"), "--plot", svg});
    if (result.error.find("gnuplot, which is not installed") != std::string::npos)
        GTEST_SKIP() << "no gnuplot here";
    ASSERT_EQ(result.code, 0) << result.error;
    std::ostringstream text;
    text << std::ifstream(svg).rdbuf();
    for (const char* part :
         {"<svg", "</svg>", "Frequency in Hz", "Level in dBFS", "Spectrum of", "<path"})
        EXPECT_NE(text.str().find(part), std::string::npos) << part;
}

// More bins than the picture has columns: the peak is still in it, the file stays small.
TEST_F(Spectrum, DrawsLongBlocksInASmallSvg) {
    writeWav(path("sine.wav"), sine(3000, 1, 1 << 18), kRate);
    const std::string svg = path("plot.svg");
    const ProgramResult result = run({path("sine.wav"), "--fft", "262144", "--plot", svg});
    if (result.error.find("gnuplot, which is not installed") != std::string::npos)
        GTEST_SKIP() << "no gnuplot here";
    ASSERT_EQ(result.code, 0) << result.error;
    EXPECT_LT(std::filesystem::file_size(svg), 400000u);
    std::ostringstream text;
    text << std::ifstream(svg).rdbuf();
    // The scale reaches up to the tone's level.
    EXPECT_NE(text.str().find("> 0<"), std::string::npos);
}

TEST_F(Spectrum, SaysThatGnuplotIsMissing) {
    writeWav(path("sine.wav"), sine(3000, 1, kRate), kRate);
    const ProgramResult result =
        run({path("sine.wav"), "--plot", path("plot.svg")}, {"PATH=/nonexistent"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.error, "mozep spectrum: a plot needs gnuplot, which is not installed\n");
    EXPECT_FALSE(std::filesystem::exists(path("plot.svg"))) << "an empty plot is left behind";
}

TEST_F(Spectrum, SaysThatItsOutputCannotBeWritten) {
    writeWav(path("sine.wav"), sine(3000, 1, kRate), kRate);
    const std::string program = ZEP_PROGRAM;
    for (const std::string& command :
         {"spectrum " + path("sine.wav"), "spectrum --csv " + path("sine.wav"),
          std::string("--version"), std::string("--help")}) {
        const ProgramResult result =
            runProgram({"/bin/sh", "-c", program + " " + command + " > /dev/full"});
        EXPECT_EQ(result.code, 1) << command;
        EXPECT_NE(result.error.find("cannot write to the standard output\n"), std::string::npos)
            << command;
    }
}

TEST(Program, TellsItsVersion) {
    const ProgramResult result = runProgram({ZEP_PROGRAM, "--version"});
    EXPECT_EQ(result.code, 0);
    EXPECT_TRUE(result.out.starts_with("mozep 7.0")) << result.out;
    EXPECT_EQ(result.error, "");
}

TEST(Program, AsksForACommand) {
    const ProgramResult result = runProgram({ZEP_PROGRAM});
    EXPECT_EQ(result.code, 2);
    EXPECT_EQ(result.error, "mozep: A subcommand is required\n");
    EXPECT_EQ(runProgram({ZEP_PROGRAM, "frobnicate"}).code, 2);
}

}  // namespace
}  // namespace zep::test
