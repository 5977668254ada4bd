// mozep spectrum, run as a program on sound files whose spectrum is known.
#include <limits>

#include "tools/spectrum_support.h"

namespace zep::test {
namespace {

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
    writeWav(path("sine.wav"), sine(12000, 0.5, 20096), kRate);  // whole blocks alone
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

// One tone in blocks of lengths that take different ways through the library.
TEST_F(Spectrum, FindsTheSamePeakInBlocksOfAnyLength) {
    const double Hz = 6010, level = -6.02;
    writeWav(path("sine.wav"), sine(Hz, 0.5, 20000), kRate);
    for (const auto& [N, route] : {std::pair{"1024", "power of two"},
                                   {"1000", "small prime factors"},
                                   {"1001", "small prime factors"},
                                   {"1020", "generic factors"},
                                   {"997", "chirp"},
                                   {"1994", "chirp"}}) {
        const ProgramResult result = run({path("sine.wav"), "--fft", N, "--peaks", "1"});
        ASSERT_EQ(result.code, 0) << result.error;
        const std::string line = std::string("\ntransform of ") + N + " points: " + route + "\n";
        EXPECT_NE(result.out.find(line), std::string::npos) << result.out;
        const auto rows = peakRows(result.out);
        ASSERT_EQ(rows.size(), 1u) << N;
        EXPECT_NEAR(rows[0].Hz, Hz, 0.1 * kRate / std::stod(N)) << N;
        EXPECT_NEAR(rows[0].dBFS, level, 0.1) << N;
    }
}

// All bins of an odd length, as of an even one in PrintsEveryBinAsCsv. A constant of a quarter adds
// bin 0, which has no mirror image, and half its magnitude, twice for the mirror image, in bin 1.
TEST_F(Spectrum, PrintsEveryBinOfAnOddLength) {
    const int N = 997;
    const double binHz = static_cast<double>(kRate) / N;
    auto x = sine(200 * binHz, 0.5, N + 39 * 499);  // whole blocks alone
    for (float& sample : x) sample += 0.25f;
    writeWav(path("sine.wav"), x, kRate);
    const ProgramResult result = run({path("sine.wav"), "--fft", std::to_string(N), "--csv"});
    ASSERT_EQ(result.code, 0) << result.error;
    const auto rows = csvRows(result.out);
    ASSERT_EQ(rows.size(), 499u);
    for (std::size_t k = 0; k < rows.size(); ++k) {
        EXPECT_NEAR(rows[k].Hz, binHz * static_cast<double>(k), 1e-5);
        if (k == 200)
            EXPECT_NEAR(rows[k].dBFS, -6.02, 0.01);
        else if (k == 0 || k == 1 || k == 199 || k == 201)
            EXPECT_NEAR(rows[k].dBFS, -12.04, 0.01) << k;
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

// Blocks of N that overlap by half, as many as it takes to see every sample.
TEST_F(Spectrum, CountsTheBlocks) {
    for (const auto& [length, blocks] : {std::pair{4096, "1 block "},
                                         {4097, "2 blocks "},
                                         {6143, "2 blocks "},
                                         {6144, "2 blocks "},
                                         {8192, "3 blocks "},
                                         {1, "1 block "},
                                         {100000, "48 blocks "}}) {
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

TEST_F(Spectrum, TellsOfABlockThatIsFilledUp) {
    for (const auto& [length, words] :
         {std::pair{4096, "; 1 block of 4096, 11.72 Hz"},
          {4095, "; 1 block of 4096, filled up with zeros, 11.72 Hz"},
          {6144, "; 2 blocks of 4096, 11.72 Hz"},
          {6145, "; 3 blocks of 4096, the last filled up with zeros, 11.72 Hz"}}) {
        writeWav(path("sine.wav"), sine(1000, 0.5, static_cast<std::size_t>(length)), kRate);
        const ProgramResult result = run({path("sine.wav"), "--fft", "4096"});
        EXPECT_NE(result.out.find(words), std::string::npos) << length << ": " << result.out;
    }
}

// A tone that sounds in the last samples alone, too few for a block of their own.
TEST_F(Spectrum, HearsWhatFollowsTheLastWholeBlock) {
    std::vector<float> x(2 * 4096);
    const auto tone = sine(6000, 1, 2047);
    x.insert(x.end(), tone.begin(), tone.end());
    writeWav(path("end.wav"), x, kRate);
    const ProgramResult result = run({path("end.wav"), "--fft", "4096", "--peaks", "1"});
    ASSERT_EQ(result.code, 0) << result.error;
    const auto rows = peakRows(result.out);
    ASSERT_EQ(rows.size(), 1u) << result.out;
    EXPECT_NEAR(rows[0].Hz, 6000, 12);
}

// Whatever part of the last block is there, the level of a steady tone on a bin is the same: it
// counts by the sum of the window over that part.
TEST_F(Spectrum, ReadsTheSameLevelWhateverTheLength) {
    for (const std::size_t length : {4096u, 4097u, 4500u, 5120u, 6000u, 6143u, 6144u, 9000u}) {
        writeWav(path("sine.wav"), sine(6000, 0.5, length), kRate);
        const ProgramResult result = run({path("sine.wav"), "--fft", "4096", "--csv"});
        const auto rows = csvRows(result.out);
        ASSERT_EQ(rows.size(), 2049u);
        EXPECT_NEAR(rows[512].dBFS, -6.02, 0.01) << length;
    }
}

TEST_F(Spectrum, TakesOneChannel) {
    std::vector<float> stereo;
    const auto left = sine(3000, 0.5, kRate), right = sine(9000, 0.25, kRate);
    for (std::size_t n = 0; n < left.size(); ++n) {
        stereo.push_back(left[n]);
        stereo.push_back(right[n]);
    }
    writeWav(path("stereo.wav"), stereo, kRate, 2);
    for (const auto& [channel, Hz, level] :
         {std::tuple{"1", 3000.0, -6.02}, std::tuple{"2", 9000.0, -12.04}}) {
        const ProgramResult result =
            run({path("stereo.wav"), "--channel", channel, "--peaks", "1"});
        ASSERT_EQ(result.code, 0) << result.error;
        const auto rows = peakRows(result.out);
        ASSERT_EQ(rows.size(), 1u);
        EXPECT_NEAR(rows[0].Hz, Hz, 0.1);
        EXPECT_NEAR(rows[0].dBFS, level, 0.01);
    }
    expectFailure({path("stereo.wav"), "--channel", "3"}, "stereo.wav: has no channel 3, only 2");
    for (const char* channel : {"0", "-1", "x"})
        expectFailure({path("stereo.wav"), "--channel", channel}, "--channel", 2);
}

TEST_F(Spectrum, WarnsOfAFileThatIsCutShort) {
    const std::string name = path("cut.wav");
    writeWav(name, sine(6000, 1, 20000), kRate);
    std::filesystem::resize_file(name, 44 + 4 * 12288);
    const ProgramResult result = run({name, "--fft", "4096"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.error, "mozep spectrum: warning: " + name +
                                ": is cut short: it declares 80000 bytes, and 49152 are there\n");
    EXPECT_NE(result.out.find(", 0.256 s;"), std::string::npos) << result.out;
}

TEST_F(Spectrum, WarnsOfALengthThatIsNotThere) {
    // What a program leaves behind that writes to a pipe and cannot go back to the header.
    const std::string name = path("pipe.wav");
    writeWav(name, sine(6000, 1, 20000), kRate);
    std::fstream file(name, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(40).write("\xff\xff\xff\xff", 4);
    file.close();
    const ProgramResult result = run({name});
    EXPECT_EQ(result.code, 0);
    EXPECT_NE(result.error.find("declares 4294967295 bytes, and 80000 are there\n"),
              std::string::npos)
        << result.error;
}

TEST_F(Spectrum, SaysThatSamplesAreOutOfRange) {
    auto x = sine(6000, 1, 10000);
    for (float& sample : x) sample *= 1e38f;
    writeWav(path("huge.wav"), x, kRate);
    expectFailure({path("huge.wav")}, "huge.wav: its samples are out of range");
    expectFailure({path("huge.wav"), "--csv"}, "huge.wav: its samples are out of range");
    // Two channels whose sum is beyond a float, but not their mean.
    writeWav(path("both.wav"), std::vector<float>(10000, 3e38f), kRate, 2);
    expectFailure({path("both.wav")}, "both.wav: its samples are out of range");
}

TEST_F(Spectrum, ShowsNamesInOneLine) {
    const std::string name = path("a\nb\x1b[31m.wav");
    writeWav(name, sine(6000, 1, 10000), kRate);
    const ProgramResult result = run({name});
    EXPECT_EQ(result.code, 0) << result.error;
    EXPECT_NE(result.out.find("a\\nb\\x1b[31m.wav: 48000 Hz"), std::string::npos) << result.out;
    expectFailure({name + "\n"}, "a\\nb\\x1b[31m.wav\\n: No such file");
}

TEST_F(Spectrum, ExplainsItsMethodInTheHelp) {
    const ProgramResult result = run({"--help"});
    EXPECT_EQ(result.code, 0);
    for (const char* word :
         {"Hann window", "overlap by half", "0 dBFS", "filled up with zeros", "chirp"})
        EXPECT_NE(result.out.find(word), std::string::npos) << word;
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
    for (const char* N : {"0", "-8", "15", "4194305", "8388608", "2147483648", "99999999999", "1e3",
                          "4096x", "x", ""})
        expectFailure({path("sine.wav"), "--fft", N}, "no whole number from 16 to 4194304", kUsage);
    expectFailure({path("sine.wav"), "--peaks", "0"}, "--peaks", kUsage);
    expectFailure({path("sine.wav"), "--frobnicate"}, "--frobnicate", kUsage);
    expectFailure({"--frobnicate"}, "--frobnicate", kUsage);
    expectFailure({path("sine.wav"), "two.wav"}, "two.wav", kUsage);
    expectFailure({path("sine.wav"), "--plot", path("no/such/folder.svg")}, "No such file");
}

TEST_F(Spectrum, AcceptsTheShortestAndTheLongestBlock) {
    writeWav(path("sine.wav"), sine(3000, 1, 5000), kRate);
    for (const char* N : {"16", "17", "4194304"}) {
        const ProgramResult result = run({path("sine.wav"), "--fft", N});
        EXPECT_EQ(result.code, 0) << result.error;
    }
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
}

TEST(Program, NamesWhatItDoesNotKnow) {
    for (const char* argument : {"frobnicate", "--frobnicate"}) {
        const ProgramResult result = runProgram({ZEP_PROGRAM, argument});
        EXPECT_EQ(result.code, 2);
        EXPECT_NE(result.error.find(argument), std::string::npos) << result.error;
        EXPECT_EQ(result.error.find('\n'), result.error.size() - 1) << result.error;
    }
}

TEST(Program, ExplainsItsExitCodes) {
    const ProgramResult result = runProgram({ZEP_PROGRAM, "--help"});
    EXPECT_EQ(result.code, 0);
    EXPECT_NE(result.out.find("Exit codes: 0"), std::string::npos) << result.out;
}

}  // namespace
}  // namespace zep::test
