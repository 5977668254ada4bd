// mozep filter, run as a program.
#include <fstream>
#include <sstream>

#include "support/random.h"
#include "tools/program_test.h"
#include "tools/sound_support.h"

namespace zep::test {
namespace {

constexpr int kWrongUsage = 2;
constexpr int kRate = 48000;
constexpr std::size_t kHalf = 511;  // of the 1023 taps that are usual

class Filter : public ProgramTest {
protected:
    Filter() : ProgramTest("filter") {}

    WavContents filtered(std::vector<std::string> options) const {
        options.insert(options.begin(), {path("in.wav"), path("out.wav")});
        EXPECT_EQ(printed(options), "");
        return wavContents(fileContents(path("out.wav")));
    }
    // What becomes of a tone that is `passed`, in step with it, or rejected by 61 dB.
    void expectTone(double Hz, const std::vector<std::string>& options, bool passed) const {
        const Sound x = tone(Hz, kRate, 4 * kHalf);
        writeSound<float>(path("in.wav"), {x}, kRate);
        const Sound y = channelsOf<float>(filtered(options))[0];
        const double error = deviation(y, passed ? x : Sound(x.size()), kHalf);
        EXPECT_LT(error, std::pow(10, -61 / 20.0)) << Hz << ' ' << options[0];
    }
    // Two channels keep their tones, or lose them, and their format.
    template <class T>
    void expectFormatKept(int format) const {
        const Sound low = tone(500, kRate, 3000, 0.6), high = tone(7000, kRate, 3000, 0.6);
        writeSound<T>(path("in.wav"), {low, high}, kRate);
        const WavContents wav = filtered({"--lowpass", "4000"});
        EXPECT_EQ(wav.format, format);
        EXPECT_EQ(wav.rate, kRate);
        EXPECT_EQ(wav.bits, 8 * static_cast<int>(sizeof(T)));
        ASSERT_EQ(wav.channels, 2);
        const auto out = channelsOf<T>(wav);
        const double step = format == 3 ? 0 : 1 / kFullScale<T>;
        EXPECT_LT(deviation(out[0], low, kHalf), 3 * step + 1e-5);
        EXPECT_LT(deviation(out[1], Sound(3000), kHalf), 3 * step + 1e-5);
    }
};

TEST_F(Filter, PassesAndStopsWhatItShould) {
    const double margin = 2.7 * kRate / 1023;
    expectTone(0, {"--lowpass", "4000"}, true);
    expectTone(4000 - margin, {"--lowpass", "4000"}, true);
    expectTone(4000 + margin, {"--lowpass", "4000"}, false);
    expectTone(0, {"--highpass", "4000"}, false);
    expectTone(4000 - margin, {"--highpass", "4000"}, false);
    expectTone(4000 + margin, {"--highpass", "4000"}, true);
    expectTone(24000, {"--highpass", "4000"}, true);
    expectTone(3000 - margin, {"--band", "3000", "4000"}, false);
    expectTone(3500, {"--band", "3000", "4000"}, true);
    expectTone(4000 + margin, {"--band", "3000", "4000"}, false);
    expectTone(3000 - margin, {"--stop", "3000", "4000"}, true);
    expectTone(3500, {"--stop", "3000", "4000"}, false);
    expectTone(4000 + margin, {"--stop", "3000", "4000"}, true);
}

TEST_F(Filter, KeepsFormats) {
    expectFormatKept<std::uint8_t>(1);
    expectFormatKept<std::int16_t>(1);
    expectFormatKept<Int24>(1);
    expectFormatKept<std::int32_t>(1);
    expectFormatKept<float>(3);
}

TEST_F(Filter, TakesLengthAndWindow) {
    const Sound x = tone(5000, kRate, 4000);
    writeSound<float>(path("in.wav"), {x}, kRate);
    const auto level = [&](const std::vector<std::string>& options) {
        return deviation(channelsOf<float>(filtered(options))[0], Sound(4000), 100);
    };
    // A thousand Hz beside the edge is 4.2 R/L at 201 taps, and 0.65 R/L at 31.
    EXPECT_LT(level({"--lowpass", "4000", "--length", "201"}), 0.0009);
    EXPECT_GT(level({"--lowpass", "4000", "--length", "31"}), 0.05);
    EXPECT_GT(level({"--lowpass", "4000", "--length", "201", "--window", "none"}), 0.01);
}

// By the sum of products in double precision; the bound is that of float sums of the products.
TEST_F(Filter, TapsOfAFileAreTakenAsTheyStand) {
    for (const auto& [count, delay] : {std::pair{1, 0}, {7, 0}, {7, 3}, {300, 0}, {5000, 4999}}) {
        std::ofstream file(path("taps.txt"));
        Sound taps;
        double sum = 0;
        for (int k = 0; k < count; ++k) {
            taps.push_back(static_cast<double>(randomValue<float>()) / (1 + k / 5));
            sum += std::abs(taps.back());
            file.precision(17);
            file << taps.back() << "\n";
        }
        file.close();
        const Sound x = tone(1234, kRate, 20000), z = tone(17000, kRate, 20000);
        writeSound<float>(path("in.wav"), {x, z}, kRate);
        const auto out = channelsOf<float>(
            filtered({"--taps", path("taps.txt"), "--delay", std::to_string(delay)}));
        ASSERT_EQ(out[0].size(), x.size());
        for (std::size_t n = 0; n < x.size(); n += n < 100 ? 1 : 997) {
            double expected[2] = {};
            for (std::size_t k = 0; k < taps.size(); ++k) {
                const std::size_t at = n + static_cast<std::size_t>(delay);
                if (at < k || at - k >= x.size()) continue;
                expected[0] += taps[k] * x[at - k];
                expected[1] += taps[k] * z[at - k];
            }
            ASSERT_NEAR(out[0][n], expected[0], 2e-6 * sum) << count << ' ' << n;
            ASSERT_NEAR(out[1][n], expected[1], 2e-6 * sum) << count << ' ' << n;
        }
    }
}

TEST_F(Filter, ReadsTapsAsPeopleWriteThem) {
    writeSound<float>(path("in.wav"), {{1, 0, 0, 0, 0, 0}}, kRate);
    write("taps.txt", "# echo\r\n\r\n 0.5\t\r\n+1e-1\n\n-.25\n  # none\n1e-400\n 3");
    EXPECT_EQ(channelsOf<float>(filtered({"--taps", path("taps.txt")}))[0],
              (Sound{0.5, static_cast<double>(0.1F), -0.25, 0, 3, 0}));
}

TEST_F(Filter, TheTapsOfADesignFilterAsTheDesign) {
    writeSound<float>(path("in.wav"), {tone(3900, kRate, 30000)}, kRate);
    const std::string direct = filtered({"--band", "1000", "4000", "--length", "301"}).data;
    EXPECT_EQ(runProgram({ZEP_PROGRAM, "design", "--band", "1000", "4000", "--length", "301",
                          "--output", path("taps.txt")})
                  .code,
              0);
    EXPECT_EQ(filtered({"--taps", path("taps.txt"), "--delay", "150"}).data, direct);
}

TEST_F(Filter, TellsWhatWasLimited) {
    writeSound<std::int16_t>(path("in.wav"), {Sound(1000, 0.75)}, kRate);
    write("taps.txt", "2\n");
    const ProgramResult result = run({path("in.wav"), path("out.wav"), "--taps", path("taps.txt")});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.error, "mozep filter: warning: " + path("out.wav") +
                                ": 1000 samples beyond full scale were limited\n");
    EXPECT_EQ(wavContents(fileContents(path("out.wav"))).samples<std::int16_t>(),
              std::vector<std::int16_t>(1000, 32767));
}

// The long file is of 16 MB.
TEST_F(Filter, TakesNoMoreMemoryForALongFile) {
    const auto memoryFor = [&](const char* seconds) {
        EXPECT_EQ(runProgram({ZEP_PROGRAM, "tone", path("in.wav"), "--frequency", "1000",
                              "--seconds", seconds})
                      .code,
                  0);
        EXPECT_EQ(printed({path("in.wav"), path("out.wav"), "--lowpass", "100"}), "");
        return mostMemoryOfPrograms();
    };
    const long long before = memoryFor("1");
    EXPECT_LT(memoryFor("84") - before, 2'000'000);
    EXPECT_EQ(std::filesystem::file_size(path("out.wav")),
              std::filesystem::file_size(path("in.wav")));
}

TEST_F(Filter, DrawsItsResponse) {
    writeSound<float>(path("in.wav"), {tone(100, kRate, 1000)}, kRate);
    write("the taps", "0.5\n0.5\n");
    const ProgramResult result = run({path("in.wav"), path("out.wav"), "--taps", path("the taps"),
                                      "--plot", path("response.svg")});
    if (result.error.find("gnuplot, which is not installed") != std::string::npos)
        GTEST_SKIP() << "no gnuplot here";
    EXPECT_EQ(result.code, 0) << result.error;
    const std::string svg = fileContents(path("response.svg"));
    for (const char* part : {"the taps", "Tap<", "Magnitude", "Level in dB", "Phase", "</svg>"})
        EXPECT_NE(svg.find(part), std::string::npos) << part;

    // No sound where the picture failed.
    write("out.wav", "old");
    expectFailure({path("in.wav"), path("out.wav"), "--lowpass", "9", "--plot", "/dev/full"},
                  "/dev/full: No space left on device");
    EXPECT_EQ(fileContents(path("out.wav")), "old");
}

TEST_F(Filter, SaysWhatIsWrong) {
    writeSound<float>(path("in.wav"), {tone(100, kRate, 1000)}, kRate);
    write("empty.wav", "");
    write("out.wav", "old");
    const std::string in = path("in.wav"), out = path("out.wav");
    const std::string oneOf = "takes exactly one of --taps, --lowpass, --highpass, --band and";
    expectFailure({in, out}, oneOf, kWrongUsage);
    expectFailure({in, out, "--lowpass", "1", "--highpass", "1"}, oneOf, kWrongUsage);
    expectFailure({in, out, "--lowpass", "1", "--taps", "x"}, oneOf, kWrongUsage);
    for (const char* option : {"--lowpass", "--highpass"}) {
        const std::string name = std::string(option) + ": ";
        expectFailure({in, out, option, "24000"}, name + "24000 Hz is not below 24000 Hz, half of",
                      kWrongUsage);
        for (const char* Hz : {"0", "-5", "nan", "inf", "1k"})
            expectFailure({in, out, option, Hz}, name + Hz, kWrongUsage);
    }
    for (const char* option : {"--band", "--stop"}) {
        const std::string name = std::string(option) + ": ";
        expectFailure({in, out, option, "1000", "24001"}, name + "24001 Hz is not below 24000 Hz",
                      kWrongUsage);
        expectFailure({in, out, option, "2000", "1000"}, name + "the lower edge must be below",
                      kWrongUsage);
        expectFailure({in, out, option, "2000", "2000"}, name + "the lower edge must be below",
                      kWrongUsage);
        expectFailure({in, out, option, "0", "2000"}, name, kWrongUsage);
        expectFailure({in, out, option, "2000"}, name, kWrongUsage);
    }
    for (const char* length : {"4", "-1", "1000001", "11.5"})
        expectFailure({in, out, "--lowpass", "9", "--length", length}, "--length", kWrongUsage);
    expectFailure({in, out, "--lowpass", "9", "--window", "kaiser"}, "--window", kWrongUsage);
    expectFailure({in, out, "--lowpass", "9", "--delay", "-1"}, "--delay", kWrongUsage);
    expectFailure({in, out, "--taps", "x", "--length", "9"}, "excludes", kWrongUsage);
    expectFailure({in, out, "--taps", path("none.txt")}, "none.txt: No such file");
    expectFailure({path("empty.wav"), out, "--lowpass", "9"}, "empty.wav: is empty");
    expectFailure({path("none.wav"), out, "--lowpass", "9"}, "none.wav: No such file");
    expectFailure({in, "/dev/full", "--lowpass", "9"}, "/dev/full: No space left on device");
    expectFailure({in, path("no/out.wav"), "--lowpass", "9"}, "out.wav: No such file");
    EXPECT_EQ(fileContents(out), "old");
}

TEST_F(Filter, SaysWhatIsWrongWithTaps) {
    writeSound<float>(path("in.wav"), {tone(100, kRate, 1000)}, kRate);
    const std::pair<std::string, const char*> cases[] = {
        {"", ": holds no taps"},
        {"\n# 1\n \n", ": holds no taps"},
        {"1\nx\n", ": line 2: \"x\" is no number"},
        {"1 2\n", ": line 1: \"1 2\" is no number"},
        {"1,5\n", ": line 1: \"1,5\" is no number"},
        {"1\n\n0x10\n", ": line 3: \"0x10\" is no number"},
        {"+-1", ": line 1: \"+-1\" is no number"},
        {"+", ": line 1: \"+\" is no number"},
        {"1e39", ": line 1: \"1e39\" is out of range"},
        {"-1e999", ": line 1: \"-1e999\" is out of range"},
        {"inf", ": line 1: \"inf\" is out of range"},
        {"nan", ": line 1: \"nan\" is out of range"},
        {std::string("1\0", 2), ": line 1: "},
        {"1\x1b[31m", "\"1\\x1b[31m\" is no number"},
        {std::string(100, '1') + "x", ": line 1: \""},
        {std::string(5000, '1'), ": line 1: is too long"},
    };
    for (const auto& [text, words] : cases) {
        write("taps.txt", text);
        expectFailure({path("in.wav"), path("out.wav"), "--taps", path("taps.txt")}, words);
    }
    expectFailure({path("in.wav"), path("out.wav"), "--taps", path("")}, "is a directory");
    std::string many;
    for (int k = 0; k <= 1'000'000; ++k) many += "0\n";
    write("taps.txt", many);
    expectFailure({path("in.wav"), path("out.wav"), "--taps", path("taps.txt")},
                  "has more than 1000000 taps");
    EXPECT_FALSE(std::filesystem::exists(path("out.wav")));
}

}  // namespace
}  // namespace zep::test
