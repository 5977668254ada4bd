// mozep design, run as a program.
#include <sys/stat.h>
#include <zeps.h>

#include <complex>
#include <cstdlib>
#include <numbers>
#include <sstream>

#include "tools/program_test.h"
#include "tools/wav_reader.h"

namespace zep::test {
namespace {

constexpr int kWrongUsage = 2;
using Taps = std::vector<double>;

class Design : public ProgramTest {
protected:
    Design() : ProgramTest("design") {}

    static Taps numbers(const std::string& text) {
        std::istringstream lines(text);
        Taps taps;
        for (std::string line; std::getline(lines, line);) {
            char* end = nullptr;
            taps.push_back(std::strtod(line.c_str(), &end));
            EXPECT_EQ(end, line.c_str() + line.size()) << line;
        }
        return taps;
    }
};

// As the library designs them, to the last bit.
TEST_F(Design, PrintsTheTaps) {
    const std::pair<const char*, int> windows[] = {{"bartlett", zepWinBartlett},
                                                   {"blackman", zepWinBlackman},
                                                   {"hamming", zepWinHamming},
                                                   {"hann", zepWinHann},
                                                   {"none", -1}};
    constexpr double kRate = 44100;
    for (const auto& [window, type] : windows)
        for (const int L : {5, 6, 100, 1001}) {
            const auto expect = [&, name = window](std::vector<std::string> options,
                                                   const Taps& taps) {
                options.insert(options.end(), {"--rate", "44100", "--window", name, "--length",
                                               std::to_string(L)});
                EXPECT_EQ(numbers(printed(options)), taps) << options[0] << ' ' << name << L;
            };
            Taps taps(static_cast<std::size_t>(L));
            zepsFIRGenLowpass_64f(1000.5 / kRate, taps.data(), L, type, 1);
            expect({"--lowpass", "1000.5"}, taps);
            zepsFIRGenHighpass_64f(22049 / kRate, taps.data(), L, type, 1);
            expect({"--highpass", "22049"}, taps);
            zepsFIRGenBandpass_64f(3000 / kRate, 9000 / kRate, taps.data(), L, type, 1);
            expect({"--band", "3000", "9000"}, taps);
            zepsFIRGenBandstop_64f(3000 / kRate, 9000 / kRate, taps.data(), L, type, 1);
            expect({"--stop", "3000", "9000"}, taps);
        }
}

// Gain 1 where it passes, half at the edge.
TEST_F(Design, HasTheResponseThatItPromises) {
    const Taps taps = numbers(printed({"--lowpass", "6000", "--length", "255"}));
    const auto gain = [&](double Hz) {
        std::complex<double> sum = 0;
        for (std::size_t k = 0; k < taps.size(); ++k)
            sum += taps[k] *
                   std::polar(1.0, -2 * std::numbers::pi * Hz / 48000 * static_cast<double>(k));
        return 20 * std::log10(std::abs(sum));
    };
    EXPECT_NEAR(gain(0), 0, 1e-9);
    EXPECT_NEAR(gain(6000 - 2.7 * 48000 / 255), 0, 0.01);
    EXPECT_NEAR(gain(6000), -6.02, 0.01);
    for (double Hz = 6000 + 2.7 * 48000 / 255; Hz < 24000; Hz += 50) EXPECT_LT(gain(Hz), -61) << Hz;
}

TEST_F(Design, WritesAFile) {
    const std::string text = printed({"--highpass", "100", "--length", "51"});
    EXPECT_EQ(printed({"--highpass", "100", "--length", "51", "--output", path("taps.txt")}), "");
    EXPECT_EQ(fileContents(path("taps.txt")), text);
    expectFailure({"--highpass", "100", "--output", "/dev/full"}, "No space left on device");
    expectFailure({"--highpass", "100", "--output", path("no/taps.txt")}, "No such file");
}

// A gnuplot of our own keeps what it was told.
TEST_F(Design, DrawsTapsMagnitudeAndPhase) {
    std::filesystem::create_directory(path("bin"));
    write("bin/gnuplot", "#!/bin/sh\ncat > '" + path("commands") + "'\nprintf '%s\\n' \"$@\" > '" +
                             path("texts") + "'\necho '<svg></svg>'\n");
    chmod(path("bin/gnuplot").c_str(), 0755);
    const ProgramResult result =
        runProgram({ZEP_PROGRAM, "design", "--lowpass", "9000", "--rate", "36000", "--length", "5",
                    "--window", "none", "--plot", path("plot.svg")},
                   {"PATH=" + path("bin") + ":/usr/bin:/bin"});
    ASSERT_EQ(result.code, 0) << result.error;
    EXPECT_EQ(fileContents(path("plot.svg")), "<svg></svg>\n");
    const std::string texts = fileContents(path("texts"));
    EXPECT_NE(texts.find("Lowpass, 9000 Hz, window: none\nTap\nValue\nMagnitude\nFrequency in Hz\n"
                         "Level in dB\n"),
              std::string::npos)
        << texts;

    std::vector<std::vector<std::pair<double, double>>> curves;
    std::istringstream commands(fileContents(path("commands")));
    for (std::string line; std::getline(commands, line);) {
        if (line.starts_with("plot ")) curves.emplace_back();
        double x = 0, y = 0;
        if (!curves.empty() && std::sscanf(line.c_str(), "%lf %lf", &x, &y) == 2)
            curves.back().emplace_back(x, y);
    }
    ASSERT_EQ(curves.size(), 3u);
    ASSERT_EQ(curves[0].size(), 5u);
    const Taps taps = numbers(result.out);
    for (std::size_t k = 0; k < 5; ++k) {
        EXPECT_EQ(curves[0][k].first, static_cast<double>(k));
        EXPECT_NEAR(curves[0][k].second, taps[k], 1e-9);
    }
    // Of a delay of two samples, as far as the gain does not turn its sign.
    for (std::size_t i : {0u, 1u, 2u, 1000u}) {
        const auto [Hz, level] = curves[1][i];
        const double turn = 2 * std::numbers::pi * Hz / 36000;
        const double gain =
            taps[2] + 2 * taps[1] * std::cos(turn) + 2 * taps[0] * std::cos(2 * turn);
        EXPECT_NEAR(level, 20 * std::log10(gain), 1e-6) << Hz;
        EXPECT_EQ(curves[2][i].first, Hz);
        EXPECT_NEAR(curves[2][i].second, -2 * turn, 1e-6) << Hz;
    }
    EXPECT_EQ(curves[1].front().first, 0);
    EXPECT_EQ(curves[1].back().first, 18000);
}

TEST_F(Design, DrawsWithGnuplot) {
    const ProgramResult result = run({"--stop", "1000", "2000", "--length", "100001", "--output",
                                      path("taps.txt"), "--plot", path("plot.svg")});
    if (result.error.find("gnuplot, which is not installed") != std::string::npos)
        GTEST_SKIP() << "no gnuplot here";
    ASSERT_EQ(result.code, 0) << result.error;
    const std::string svg = fileContents(path("plot.svg"));
    for (const char* part : {"Bandstop, 1000 to 2000 Hz", "Tap<", "Magnitude", "Phase", "</svg>"})
        EXPECT_NE(svg.find(part), std::string::npos) << part;
    EXPECT_LT(svg.size(), 2000000u);
    // No taps where the picture failed.
    std::filesystem::remove(path("taps.txt"));
    expectFailure({"--lowpass", "9", "--output", path("taps.txt"), "--plot", path("no/plot.svg")},
                  "No such file or directory");
    EXPECT_FALSE(std::filesystem::exists(path("taps.txt")));
}

TEST_F(Design, SaysWhatIsWrong) {
    const std::string oneOf = "takes exactly one of --lowpass, --highpass, --band and --stop";
    expectFailure({}, oneOf, kWrongUsage);
    expectFailure({"--lowpass", "1", "--stop", "1", "2"}, oneOf, kWrongUsage);
    expectFailure({"--lowpass", "4000", "--rate", "8000"},
                  "--lowpass: 4000 Hz is not below 4000 Hz, half of the sampling rate",
                  kWrongUsage);
    expectFailure({"--band", "3000", "2000"}, "--band: the lower edge", kWrongUsage);
    expectFailure({"--stop", "0", "2000"}, "--stop", kWrongUsage);
    expectFailure({"--lowpass", "1", "--rate", "0"}, "--rate", kWrongUsage);
    expectFailure({"--lowpass", "1", "--length", "4"}, "--length", kWrongUsage);
    expectFailure({"--lowpass", "1", "--window", "flat"}, "--window", kWrongUsage);
    expectFailure({"--lowpass", "1", "--taps", "x"}, "does not know \"--taps\"", kWrongUsage);
}

}  // namespace
}  // namespace zep::test
