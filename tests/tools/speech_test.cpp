// mozep speech, run as a program on the recommendations' tables and on coded speech.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <tuple>

#include "speech/data_files.h"
#include "tools/program_test.h"
#include "tools/wav_file.h"
#include "tools/wav_reader.h"

namespace zep::test {
namespace {

using Codes = std::vector<std::uint8_t>;
using Samples = std::vector<std::int16_t>;

constexpr int kSpeechRate = 8000;

struct Rate {
    const char* name;
    int bits;
};
constexpr Rate kRates[] = {{"16", 2}, {"24", 3}, {"32", 4}, {"40", 5}};

// Bit by bit: the first code in the lowest bits of the first byte.
std::string packed(const Codes& codes, int bits) {
    const auto count = codes.size() * static_cast<std::size_t>(bits);
    std::string bytes((count + 7) / 8, '\0');
    for (std::size_t n = 0; n < count; ++n) {
        const auto code = n / static_cast<std::size_t>(bits),
                   bit = n % static_cast<std::size_t>(bits);
        if ((codes[code] >> bit & 1) != 0)
            bytes[n / 8] = static_cast<char>(bytes[n / 8] | 1 << n % 8);
    }
    return bytes;
}

// Codes of 10 bits: the first code in the highest bits of the first byte.
std::string packedG728(const Samples& codes) {
    std::string bytes(codes.size() * 10 / 8, '\0');
    for (std::size_t n = 0; n < codes.size() * 10; ++n)
        if ((codes[n / 10] >> (9 - n % 10) & 1) != 0)
            bytes[n / 8] = static_cast<char>(bytes[n / 8] | 128 >> n % 8);
    return bytes;
}

std::string littleEndian(const Samples& words) {
    return {reinterpret_cast<const char*>(words.data()), 2 * words.size()};
}

// Signal to difference, in dB.
double likeness(const Samples& a, const Samples& b) {
    EXPECT_EQ(a.size(), b.size());
    double signal = 0, difference = 0;
    for (std::size_t n = 0; n < std::min(a.size(), b.size()); ++n) {
        signal += double{1} * b[n] * b[n];
        difference += double{1} * (a[n] - b[n]) * (a[n] - b[n]);
    }
    return 10 * std::log10(signal / difference);
}

std::string text(const Codes& codes) { return {codes.begin(), codes.end()}; }

Samples times4(Samples samples) {
    for (auto& x : samples) x = static_cast<std::int16_t>(4 * x);
    return samples;
}

class Speech : public ProgramTest {
protected:
    Speech() : ProgramTest("speech") {}

    ProgramResult run(const std::string& action, const std::string& in,
                      const std::vector<std::string>& options) const {
        std::vector<std::string> arguments{action, path(in), path("out")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return ProgramTest::run(arguments);
    }

    // What a run without a word writes.
    std::string result(const std::string& action, const std::string& in,
                       const std::vector<std::string>& options) const {
        std::filesystem::remove(path("out"));
        const ProgramResult result = run(action, in, options);
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.error, "");
        EXPECT_EQ(result.out, "");
        return fileContents(path("out"));
    }
    Samples decoded(const std::string& in, const std::vector<std::string>& options) const {
        return wavSamples<std::int16_t>(result("decode", in, options), kSpeechRate);
    }

    // One line that says what went wrong, and no file.
    void expectFailure(const std::string& action, const std::string& in,
                       const std::vector<std::string>& options, const std::string& words,
                       int code = 1) const {
        expectOneLine(run(action, in, options), "speech", words, code);
        EXPECT_FALSE(std::filesystem::exists(path("out"))) << words;
    }
};

TEST_F(Speech, CompandsAsTheTablesOfG711) {
    for (const auto& [law, column] : {std::pair{"ulaw", 1}, std::pair{"alaw", 2}}) {
        Codes codes;
        Samples values;
        for (const auto& row : readTable("g711_expand.csv")) {
            codes.push_back(static_cast<std::uint8_t>(std::stoi(row[0])));
            values.push_back(
                static_cast<std::int16_t>(std::stoi(row[static_cast<std::size_t>(column)])));
        }
        ASSERT_EQ(codes.size(), 256u);
        write("codes", text(codes));
        EXPECT_EQ(decoded("codes", {"--codec", law}), values) << law;

        if (column == 1) codes[127] = 255;  // the two zeros of mu-law
        writeWav(path("in.wav"), values, kSpeechRate);
        EXPECT_EQ(result("encode", "in.wav", {"--codec", law}), text(codes)) << law;
        EXPECT_EQ(result("encode", "in.wav", {"--codec", law, "--unpacked"}), text(codes)) << law;
    }
}

TEST_F(Speech, CodesSpeechAsG726) {
    writeWav(path("in.wav"), times4(readWords("g726/front_center.lin14")), kSpeechRate);
    for (const auto& [rate, bits] : kRates) {
        const std::string name = std::string("g726/front_center_") + rate;
        const std::string codec = std::string("g726-") + rate;
        const Codes codes = readBytes(name + ".codes");
        const Samples samples = times4(readWords(name + ".dec_lin14"));
        ASSERT_GT(codes.size(), 4000u);  // more than a block

        EXPECT_EQ(result("encode", "in.wav", {"--codec", codec, "--unpacked"}), text(codes));
        write("unpacked", text(codes));
        EXPECT_EQ(decoded("unpacked", {"--codec", codec, "--unpacked"}), samples);

        EXPECT_EQ(result("encode", "in.wav", {"--codec", codec}), packed(codes, bits));
        write("packed", packed(codes, bits));
        EXPECT_EQ(decoded("packed", {"--codec", codec}), samples);
    }
}

// Of lengths that fill the last byte to different parts.
TEST_F(Speech, FillsTheLastByteWithZeros) {
    const Samples all = times4(readWords("g726/front_center.lin14"));
    for (const auto& [rate, bits] : kRates) {
        const std::string codec = std::string("g726-") + rate;
        Codes codes = readBytes(std::string("g726/front_center_") + rate + ".codes");
        const Samples whole =
            times4(readWords(std::string("g726/front_center_") + rate + ".dec_lin14"));
        for (const int count : {1, 3, 6}) {
            writeWav(path("in.wav"), Samples(all.begin(), all.begin() + count), kSpeechRate);
            const std::string bytes = packed({codes.begin(), codes.begin() + count}, bits);
            EXPECT_EQ(result("encode", "in.wav", {"--codec", codec}), bytes) << count;
            write("packed", bytes);
            const Samples samples = decoded("packed", {"--codec", codec});
            EXPECT_EQ(samples.size(), bytes.size() * 8 / static_cast<std::size_t>(bits));
            ASSERT_GE(samples.size(), static_cast<std::size_t>(count));
            EXPECT_TRUE(std::equal(whole.begin(), whole.begin() + count, samples.begin())) << count;
        }
    }
}

TEST_F(Speech, CodesTheOfficialSequencesOfG728) {
    const std::vector<std::string> plain{"--codec", "g728"},
        unpacked{"--codec", "g728", "--unpacked"};
    for (const char* name : {"g728/in1", "g728/in3"}) {
        const Samples codes = readWords(std::string(name) + ".codes16");
        ASSERT_EQ(codes.size() % 4, 0u);
        writeWav(path("in.wav"), readWords(std::string(name) + ".s16"), kSpeechRate);
        EXPECT_EQ(result("encode", "in.wav", unpacked), littleEndian(codes)) << name;
        EXPECT_EQ(result("encode", "in.wav", plain), packedG728(codes)) << name;
    }
    for (const char* name : {"g728/cw1", "g728/cw3"}) {
        const Samples codes = readWords(std::string(name) + ".codes16"),
                      samples = readWords(std::string(name) + "_nopostfilter.s16");
        write("packed", packedG728(codes));
        EXPECT_EQ(decoded("packed", {"--codec", "g728", "--no-postfilter"}), samples) << name;
        write("unpacked", littleEndian(codes));
        EXPECT_EQ(decoded("unpacked", {"--codec", "g728", "--no-postfilter", "--unpacked"}),
                  samples)
            << name;
    }
    // Alike only, since the library's postfilter is not quite that of the recommendation.
    write("packed", packedG728(readWords("g728/cw4a.codes16")));
    EXPECT_GT(likeness(decoded("packed", plain), readWords("g728/cw4a_postfilter.s16")), 25);
}

TEST_F(Speech, FillsTheLastFrameOfG728WithSilence) {
    const Samples samples = readWords("g728/in1.s16"), codes = readWords("g728/in1.codes16");
    for (const std::size_t count : {1, 20, 21, 4001}) {
        const std::size_t frames = (count + 19) / 20, whole = count / 20 * 4;
        writeWav(path("in.wav"),
                 Samples(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(count)),
                 kSpeechRate);
        const std::string bytes = result("encode", "in.wav", {"--codec", "g728"});
        EXPECT_EQ(bytes.size(), 5 * frames);
        EXPECT_EQ(bytes.substr(0, whole * 10 / 8),
                  packedG728({codes.begin(), codes.begin() + static_cast<std::ptrdiff_t>(whole)}));
        write("packed", bytes);
        EXPECT_EQ(decoded("packed", {"--codec", "g728"}).size(), 20 * frames);
    }
}

// A tone at other rates is the tone at 8000 Hz.
TEST_F(Speech, ResamplesAndSaysSo) {
    const auto tone = [](int rate, int channels) {
        std::vector<float> x;
        for (int n = 0; n < rate; ++n)
            for (int c = 0; c < channels; ++c)
                x.push_back(static_cast<float>((c == 0 ? 0.5 * channels : 0) *
                                               std::cos(2 * std::numbers::pi * 440 * n / rate)));
        return x;
    };
    Samples expected;
    for (const float v : tone(kSpeechRate, 1))
        expected.push_back(static_cast<std::int16_t>(std::lrint(v * 32768)));
    const std::string start = "mozep speech: warning: " + path("in.wav") + ": ";
    for (const auto& [rate, channels, words] :
         {std::tuple{48000, 1, "was resampled from 48000 to 8000 Hz"},
          std::tuple{44100, 2,
                     "the mean of its 2 channels, resampled from 44100 to 8000 Hz, was coded"},
          std::tuple{5512, 1, "was resampled from 5512 to 8000 Hz"}}) {
        writeWav(path("in.wav"), tone(rate, channels), rate, channels);
        const ProgramResult encoded = run("encode", "in.wav", {"--codec", "ulaw"});
        EXPECT_EQ(encoded.code, 0);
        EXPECT_EQ(encoded.error, start + words + "\n");
        std::filesystem::rename(path("out"), path("codes"));
        // mu-law rounds to 38 dB below the sample; the ends of the filter see silence outside.
        const Samples samples = decoded("codes", {"--codec", "ulaw"});
        ASSERT_EQ(samples.size(), expected.size());
        EXPECT_GT(likeness({samples.begin() + 500, samples.end() - 500},
                           {expected.begin() + 500, expected.end() - 500}),
                  35);
    }
}

TEST_F(Speech, TakesTheMeanOfChannelsAndLimitsFloats) {
    writeWav(path("in.wav"), std::vector<float>{0.5F, 0.25F, 2.0F, 1.5F, -1.0F, -1.0F}, kSpeechRate,
             2);
    const ProgramResult encoded = run("encode", "in.wav", {"--codec", "ulaw"});
    EXPECT_EQ(encoded.code, 0);
    EXPECT_EQ(encoded.error, "mozep speech: warning: " + path("in.wav") +
                                 ": the mean of its 2 channels was coded\n"
                                 "mozep speech: warning: " +
                                 path("in.wav") + ": 1 samples beyond full scale were limited\n");
    std::filesystem::rename(path("out"), path("codes"));
    // The values of mu-law next to 12288, 32767 and -32768.
    EXPECT_EQ(decoded("codes", {"--codec", "ulaw"}), (Samples{12412, 32124, -32124}));
}

TEST_F(Speech, SaysWhatItCannotCode) {
    constexpr int kWrongUsage = 2;
    const std::vector<std::string> ulaw{"--codec", "ulaw"},
        g726{"--codec", "g726-32", "--unpacked"};
    expectFailure("encode", "none", ulaw, "No such file or directory");
    expectFailure("decode", "none", ulaw, "No such file or directory");
    expectFailure("decode", ".", ulaw, "is a directory");
    write("empty", "");
    expectFailure("encode", "empty", ulaw, "is empty");
    expectFailure("decode", "empty", ulaw, "is empty");
    write("text", "no sound at all, whatever the program thinks of it");
    expectFailure("encode", "text", ulaw, "is no sound file that can be read");
    expectFailure("decode", "text", g726, "byte 0 is no code of 4 bits");
    writeWav(path("fast.wav"), Samples(100), 96001);
    expectFailure("encode", "fast.wav", ulaw, "cannot resample 96001 Hz to 8000 Hz");
    write("odd", "\1\2\3");
    write("high", "\1\4");
    expectFailure("decode", "odd", {"--codec", "g728", "--unpacked"}, "odd: ends within a code");
    expectFailure("decode", "high", {"--codec", "g728", "--unpacked"},
                  "byte 0 is no code of 10 bits");
    write("short", "\1");
    expectFailure("decode", "short", {"--codec", "g728"}, "short: holds no whole code");
    expectFailure("decode", "short", {"--codec", "ulaw", "--no-postfilter"}, "--no-postfilter",
                  kWrongUsage);
    expectFailure("encode", "fast.wav", {"--codec", "g728", "--no-postfilter"}, "--no-postfilter",
                  kWrongUsage);
    expectFailure("encode", "fast.wav", {}, "--codec", kWrongUsage);
    expectFailure("encode", "fast.wav", {"--codec", "g726-48"}, "--codec", kWrongUsage);
    expectFailure("recode", "fast.wav", ulaw, "ACTION", kWrongUsage);
}

}  // namespace
}  // namespace zep::test
