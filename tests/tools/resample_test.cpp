// mozep resample, run as a program.
#include <limits>

#include "rational_resampler.h"
#include "tools/program_test.h"
#include "tools/sound_support.h"

namespace zep::test {
namespace {

constexpr int kWrongUsage = 2;
constexpr std::size_t kEdge = 170;  // outputs that see what is outside the file

class Resample : public ProgramTest {
protected:
    Resample() : ProgramTest("resample") {}

    WavContents resampled(const std::string& in, int rate) const {
        EXPECT_EQ(printed({path(in), path("out.wav"), "--rate", std::to_string(rate)}), "");
        return wavContents(fileContents(path("out.wav")));
    }
    // Two channels of one format keep their tones and their format. Half a step of the format is
    // what rounding the outputs adds, and the inputs' roundings, spread over all frequencies.
    template <class T>
    void expectTonesKept(int format) const {
        const int from = 44100, to = 48000;
        const std::size_t length = 2000;
        writeSound<T>(path("in.wav"),
                      {tone(1000, from, length, 0.5), tone(19000, from, length, 0.7)}, from);
        const WavContents wav = resampled("in.wav", to);
        EXPECT_EQ(wav.format, format);
        EXPECT_EQ(wav.rate, to);
        EXPECT_EQ(wav.bits, 8 * static_cast<int>(sizeof(T)));
        ASSERT_EQ(wav.channels, 2);
        const auto out = channelsOf<T>(wav);
        const double step = format == 3 ? 0 : 1 / kFullScale<T>;
        const std::size_t expected = (length * 160 + 146) / 147;
        EXPECT_LT(deviation(out[0], tone(1000, to, expected, 0.5), kEdge), 3 * step + 2e-6);
        EXPECT_LT(deviation(out[1], tone(19000, to, expected, 0.7), kEdge), 3 * step + 2e-6);
    }
};

TEST_F(Resample, KeepsTonesAndFormats) {
    expectTonesKept<std::uint8_t>(1);
    expectTonesKept<std::int16_t>(1);
    expectTonesKept<Int24>(1);
    expectTonesKept<std::int32_t>(1);
    expectTonesKept<float>(3);
}

TEST_F(Resample, TurnsOtherSamplesIntoFloats) {
    writeSound<double>(path("in.wav"), {tone(1000, 48000, 3000, 0.5)}, 48000);
    const WavContents wav = resampled("in.wav", 16000);
    EXPECT_EQ(wav.format, 3);
    EXPECT_LT(deviation(channelsOf<float>(wav)[0], tone(1000, 16000, 1000, 0.5), kEdge), 2e-6);
}

// Over many blocks of the program, each channel as if it were alone.
TEST_F(Resample, GivesTheSamplesOfOneRunOverEachChannel) {
    const int from = 48000, to = 44100;
    std::vector<Sound> channels;
    for (const double Hz : {100.0, 5000.0, 12345.0, 23000.0})
        channels.push_back(tone(Hz, from, 70001, 0.9));
    writeSound<float>(path("in.wav"), channels, from);
    const auto out = channelsOf<float>(resampled("in.wav", to));
    ASSERT_EQ(out.size(), channels.size());
    for (std::size_t c = 0; c < channels.size(); ++c) {
        mozep_program::RationalResampler resampler(from, to);
        std::vector<float> expected;
        resampler.add(std::vector<float>(channels[c].begin(), channels[c].end()), expected);
        resampler.finish(expected);
        EXPECT_TRUE(out[c] == Sound(expected.begin(), expected.end())) << c;
    }
}

TEST_F(Resample, RejectsWhatTheNewRateCannotHold) {
    writeSound<float>(path("in.wav"), {tone(4100, 48000, 48000)}, 48000);
    const auto out = channelsOf<float>(resampled("in.wav", 8000));
    ASSERT_EQ(out[0].size(), 8000u);
    EXPECT_LT(deviation(out[0], Sound(8000), kEdge), 1e-5);  // 100 dB
}

TEST_F(Resample, WorksOnFilesOfASingleSample) {
    writeSound<float>(path("in.wav"), {{0.5}, {-0.25}}, 8000);
    const auto up = channelsOf<float>(resampled("in.wav", 48000));
    ASSERT_EQ(up[0].size(), 6u);
    // The middle of the filter: close to 0.97, its passband as part of half the lower rate.
    EXPECT_NEAR(up[0][0], 0.5 * 0.97, 1e-3);
    EXPECT_NEAR(up[1][0], -0.25 * 0.97, 1e-3);
    EXPECT_EQ(channelsOf<float>(resampled("in.wav", 1))[0].size(), 1u);
    EXPECT_EQ(channelsOf<float>(resampled("in.wav", 8000))[0], Sound{0.5});
}

// A square wave at full scale overshoots between its samples.
TEST_F(Resample, TellsWhatWasLimited) {
    Sound square(3000);
    for (std::size_t n = 0; n < square.size(); ++n) square[n] = n / 20 % 2 == 0 ? 0.9999 : -0.9999;
    writeSound<float>(path("float.wav"), {square}, 44100);
    const auto exact = channelsOf<float>(resampled("float.wav", 48000))[0];
    const auto beyond =
        std::count_if(exact.begin(), exact.end(), [](double x) { return std::abs(x) > 1; });
    ASSERT_GT(beyond, 100);

    writeSound<Int24>(path("in.wav"), {square}, 44100);
    const ProgramResult result = run({path("in.wav"), path("out.wav"), "--rate", "48000"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.error, "mozep resample: warning: " + path("out.wav") + ": " +
                                std::to_string(beyond) +
                                " samples beyond full scale were limited\n");
    const auto limited = channelsOf<Int24>(wavContents(fileContents(path("out.wav"))))[0];
    ASSERT_EQ(limited.size(), exact.size());
    for (std::size_t n = 0; n < exact.size(); ++n)
        ASSERT_NEAR(limited[n], std::clamp(exact[n], -1.0, 1.0), 1.0 / 2097152) << n;
}

TEST_F(Resample, ReplacesItsInputAndWritesToTheStandardOutput) {
    writeSound<float>(path("in.wav"), {tone(100, 8000, 4000)}, 8000);
    const std::string piped = printed({path("in.wav"), "-", "--rate", "16000"});
    EXPECT_EQ(printed({path("in.wav"), path("in.wav"), "--rate", "16000"}), "");
    EXPECT_EQ(fileContents(path("in.wav")), piped);
    EXPECT_EQ(wavContents(piped).rate, 16000);
}

TEST_F(Resample, WarnsOfAFileThatIsCutShort) {
    writeSound<std::int16_t>(path("in.wav"), {tone(100, 8000, 4000, 0.5)}, 8000);
    std::filesystem::resize_file(path("in.wav"), 44 + 2 * 3000);
    const ProgramResult result = run({path("in.wav"), path("out.wav"), "--rate", "4000"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.error, "mozep resample: warning: " + path("in.wav") +
                                ": is cut short: it declares 8000 bytes, and 6000 are there\n");
    EXPECT_EQ(wavContents(fileContents(path("out.wav"))).data.size(), 3000u);
}

// The long file is of 16 MB.
TEST_F(Resample, TakesNoMoreMemoryForALongFile) {
    const auto memoryFor = [&](const char* seconds) {
        EXPECT_EQ(runProgram({ZEP_PROGRAM, "tone", path("in.wav"), "--frequency", "1000",
                              "--seconds", seconds})
                      .code,
                  0);
        EXPECT_EQ(printed({path("in.wav"), path("out.wav"), "--rate", "44100"}), "");
        return mostMemoryOfPrograms();
    };
    const long long before = memoryFor("1");
    EXPECT_LT(memoryFor("84") - before, 2'000'000);
    EXPECT_EQ(std::filesystem::file_size(path("out.wav")), 44 + 14 + 4 * 84 * 44100);
}

TEST_F(Resample, SaysWhatIsWrong) {
    write("empty.wav", "");
    write("text.wav", "this is no sound file");
    writeSound<float>(path("in.wav"), {tone(100, 48000, 1000)}, 48000);
    writeWav(path("nothing.wav"), std::vector<float>(), 48000);
    writeWav(path("nan.wav"), std::vector<float>{0, std::numeric_limits<float>::quiet_NaN()}, 8000);
    write("out.wav", "old");
    const std::string out = path("out.wav");
    expectFailure({path("missing.wav"), out, "--rate", "8000"}, "No such file or directory");
    expectFailure({path(""), out, "--rate", "8000"}, "is a directory");
    expectFailure({path("empty.wav"), out, "--rate", "8000"}, "is empty");
    expectFailure({path("text.wav"), out, "--rate", "8000"}, "is no sound file");
    expectFailure({path("nothing.wav"), out, "--rate", "8000"}, "holds no samples");
    expectFailure({path("nan.wav"), out, "--rate", "4000"}, "not finite numbers");
    expectFailure({path("in.wav"), out, "--rate", "99991"},
                  "cannot resample 48000 Hz to 99991 Hz: their ratio, 48000:99991");
    expectFailure({path("in.wav"), path("no/out.wav"), "--rate", "8000"}, "No such file");
    expectFailure({path("in.wav"), "/dev/full", "--rate", "8000"}, "No space left on device");
    expectFailure({path("in.wav"), out}, "--rate", kWrongUsage);
    for (const char* rate : {"0", "-8000", "44.1k", "44100.5", "100000001"})
        expectFailure({path("in.wav"), out, "--rate", rate}, "--rate", kWrongUsage);
    EXPECT_EQ(fileContents(out), "old");
}

// 2^31 frames of two channels from a file of 64 Ki frames at 1 Hz.
TEST_F(Resample, RefusesWhatAWavFileCannotHold) {
    writeWav(path("in.wav"), std::vector<float>(2 << 16), 1, 2);
    expectFailure({path("in.wav"), path("out.wav"), "--rate", "32768"},
                  "would have 2147483648 samples a channel, of which a WAV file can hold 5368709");
    EXPECT_FALSE(std::filesystem::exists(path("out.wav")));
}

}  // namespace
}  // namespace zep::test
