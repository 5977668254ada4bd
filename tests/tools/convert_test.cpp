// mozep convert, run as a program.
#include <sys/stat.h>

#include <cmath>
#include <limits>

#include "support/random.h"
#include "tools/program_test.h"
#include "tools/wav_contents.h"
#include "tools/wav_file.h"

namespace zep::test {
namespace {

using Words = std::vector<std::int16_t>;
using Packed = std::vector<Int24>;
using Floats = std::vector<float>;

constexpr int kRate = 44100;
constexpr int kWrongUsage = 2;
// Over a block of the program and into the next, and odd.
constexpr std::size_t kLong = 70001;

class Convert : public ProgramTest {
protected:
    Convert() : ProgramTest("convert") {}

    // What a conversion without a word gives.
    WavContents converted(const std::string& in, const std::string& format) const {
        EXPECT_EQ(printed({path(in), path("out.wav"), "--format", format}), "");
        return wavContents(fileContents(path("out.wav")));
    }
    template <class T>
    WavContents converted(const std::vector<T>& samples, const std::string& format,
                          int channels = 1) const {
        writeWav(path("in.wav"), samples, kRate, channels);
        return converted("in.wav", format);
    }

    // A file whose samples go by without a word of another kind than this one.
    std::string warning(const std::string& in, const std::string& words) const {
        return "mozep convert: warning: " + path(in) + ": " + words + "\n";
    }
};

// Round to nearest, ties to even.
int rounded(double x, double fullScale) {
    const double limited = std::min(std::max(x * fullScale, -fullScale), fullScale - 1);
    return static_cast<int>(std::nearbyint(limited));
}

Floats randomFloats(std::size_t count) {
    Floats x(count);
    for (float& v : x) v = randomValue<float>();
    return x;
}

TEST_F(Convert, FloatsAreRoundedToTheNearestTiesToEven) {
    Floats x = randomFloats(kLong);
    for (float& v : x) v = std::min(std::max(v, -1.0F), 1.0F);
    for (int n = 0; n < 9; ++n)
        x[static_cast<std::size_t>(n)] = (static_cast<float>(n) - 4.5F) / 32768;
    for (int n = 9; n < 18; ++n)
        x[static_cast<std::size_t>(n)] = (static_cast<float>(n) - 13.5F) / 8388608;
    x[18] = -1, x[19] = 1, x[20] = -0.0F;
    const auto words = converted(x, "s16"), packed = converted(x, "s24");
    EXPECT_EQ(words.rate, kRate);
    EXPECT_EQ(words.channels, 1);
    EXPECT_FALSE(words.extensible);
    EXPECT_TRUE(packed.extensible);
    EXPECT_EQ(packed.speakers, 4u);
    const auto w = words.samples<std::int16_t>();
    const auto p = packed.samples<Int24>();
    ASSERT_EQ(w.size(), kLong);
    ASSERT_EQ(p.size(), kLong);
    for (std::size_t n = 0; n < kLong; ++n) {
        ASSERT_EQ(w[n], rounded(static_cast<double>(x[n]), 32768)) << n << ' ' << x[n];
        ASSERT_EQ(p[n].value(), rounded(static_cast<double>(x[n]), 8388608)) << n << ' ' << x[n];
    }
}

TEST_F(Convert, IntegersKeepTheirValues) {
    Words words(kLong + 1);
    Packed packed(kLong + 1), widened;
    Floats fromWords, fromPacked;
    for (std::size_t n = 0; n <= kLong; ++n) {
        words[n] = randomValue<std::int16_t>();
        packed[n] = Int24(randomValue<std::int32_t>() >> 8);
    }
    words[0] = packed[0].value() < 0 ? std::int16_t{-32768} : std::int16_t{32767};
    packed[0] = Int24(-8388608), packed[1] = Int24(8388607), words[1] = -32768;
    for (const auto v : words) {
        widened.emplace_back(v * 256);
        fromWords.push_back(static_cast<float>(v) / 32768);
    }
    for (const auto v : packed) fromPacked.push_back(static_cast<float>(v.value()) / 8388608);
    EXPECT_EQ(converted(words, "s16", 2).samples<std::int16_t>(), words);
    EXPECT_EQ(converted(words, "s24", 2).samples<Int24>(), widened);
    EXPECT_EQ(converted(words, "f32", 2).samples<float>(), fromWords);
    EXPECT_EQ(converted(packed, "s24", 2).samples<Int24>(), packed);
    EXPECT_EQ(converted(packed, "f32", 2).samples<float>(), fromPacked);
    EXPECT_EQ(converted(fromPacked, "s24", 2).samples<Int24>(), packed);
    EXPECT_EQ(converted(fromPacked, "f32", 2).samples<float>(), fromPacked);
    // Back from where converted() left the wider form.
    converted(words, "s24", 2);
    std::filesystem::rename(path("out.wav"), path("wide.wav"));
    EXPECT_EQ(converted("wide.wav", "s16").samples<std::int16_t>(), words);
}

TEST_F(Convert, ReadsBytesLongIntegersAndDoubles) {
    EXPECT_EQ(converted(std::vector<std::uint8_t>{0, 127, 128, 255}, "s16").samples<std::int16_t>(),
              (Words{-32768, -256, 0, 32512}));
    // By way of single precision, which holds these.
    const std::vector<std::int32_t> longs{std::numeric_limits<std::int32_t>::min(), -65536, 32768,
                                          1 << 30};
    EXPECT_EQ(converted(longs, "s16").samples<std::int16_t>(), (Words{-32768, -1, 0, 16384}));
    EXPECT_EQ(converted(longs, "s24").samples<Int24>(),
              (Packed{Int24(-8388608), Int24(-256), Int24(128), Int24(1 << 22)}));
    EXPECT_EQ(converted(std::vector<double>{0.1, -3, 1e-300}, "f32").samples<float>(),
              (Floats{0.1F, -3, 0}));
}

TEST_F(Convert, KeepsChannelsAndTheirSpeakers) {
    const Floats x = randomFloats(6 * 1001);
    for (const int channels : {1, 2, 3, 6}) {
        for (const char* format : {"s16", "s24", "f32"}) {
            Floats half = x;
            for (float& v : half) v /= 2;
            const auto wav = converted(half, format, channels);
            EXPECT_EQ(wav.channels, channels);
            EXPECT_EQ(wav.extensible, channels > 2 || wav.bits == 24);
            const std::uint32_t expected = channels == 1 ? 4 : channels == 2 ? 3 : 0;
            EXPECT_EQ(wav.speakers, wav.extensible ? expected : 0);
            EXPECT_EQ(wav.data.size(), half.size() * static_cast<std::size_t>(wav.bits) / 8);
            if (wav.format == 3) {
                EXPECT_EQ(wav.samples<float>(), half);
                EXPECT_EQ(wav.fact, static_cast<long long>(half.size()) / channels);
            }
        }
    }
    // The speakers of 5.1, written over those of the file just made.
    std::string bytes = fileContents(path("out.wav"));
    ASSERT_EQ(fieldAt<std::uint16_t>(bytes, 22), 6);
    for (const std::uint32_t speakers : {0x3FU, 0x60FU}) {
        std::memcpy(bytes.data() + 40, &speakers, sizeof speakers);
        write("surround.wav", bytes);
        EXPECT_EQ(converted("surround.wav", "s24").speakers, speakers);
    }
}

TEST_F(Convert, SaysHowManySamplesWereLimited) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const float notNumber = std::nanf("");
    const Floats x{2, -1.5F, 1, -1, notNumber, 0.25F, -notNumber, 1.0000001F};
    writeWav(path("in.wav"), x, kRate, 2);
    const std::string limited =
        warning("in.wav", "3 samples beyond full scale were limited, the largest of 6.02 dBFS") +
        warning("in.wav", "2 samples that are not numbers became 0");
    const ProgramResult words = run({path("in.wav"), path("out.wav"), "--format", "s16"});
    EXPECT_EQ(words.code, 0);
    EXPECT_EQ(words.error, limited);
    EXPECT_EQ(wavContents(fileContents(path("out.wav"))).samples<std::int16_t>(),
              (Words{32767, -32768, 32767, -32768, 0, 8192, 0, 32767}));
    const ProgramResult packed = run({path("in.wav"), path("out.wav"), "--format", "s24"});
    EXPECT_EQ(packed.code, 0);
    EXPECT_EQ(packed.error, limited);
    EXPECT_EQ(wavContents(fileContents(path("out.wav"))).samples<Int24>(),
              (Packed{Int24(8388607), Int24(-8388608), Int24(8388607), Int24(-8388608), Int24(0),
                      Int24(1 << 21), Int24(0), Int24(8388607)}));
    EXPECT_EQ(converted("in.wav", "f32").data, fileContents(path("in.wav")).substr(44));

    writeWav(path("in.wav"), Floats{kInfinity, -kInfinity}, kRate);
    EXPECT_EQ(
        run({path("in.wav"), path("out.wav"), "--format", "s16"}).error,
        warning("in.wav", "2 samples beyond full scale were limited, the largest of inf dBFS"));
    EXPECT_EQ(wavContents(fileContents(path("out.wav"))).samples<std::int16_t>(),
              (Words{32767, -32768}));
}

TEST_F(Convert, MayReplaceItsInput) {
    const Words words{1, 2, 3, -4};
    writeWav(path("in.wav"), words, kRate);
    EXPECT_EQ(printed({path("in.wav"), path("in.wav"), "--format", "s24"}), "");
    EXPECT_EQ(converted("in.wav", "s16").samples<std::int16_t>(), words);
}

TEST_F(Convert, WritesToTheStandardOutput) {
    writeWav(path("in.wav"), Words{1, 2, 3}, kRate);
    const auto wav = wavContents(printed({path("in.wav"), "-", "--format", "s24"}));
    EXPECT_EQ(wav.samples<Int24>(), (Packed{Int24(256), Int24(512), Int24(768)}));
}

TEST_F(Convert, PutsRightWhatAPipeDeclaredWrong) {
    const std::vector<std::int16_t> words(5000, 7);
    writeWav(path("in.wav"), words, kRate);
    std::string bytes = fileContents(path("in.wav"));
    write("cut.wav", bytes.substr(0, 44 + 6000));
    const ProgramResult cut =
        runPiped(path("cut.wav"), "/dev/stdin '" + path("out.wav") + "' --format s16");
    EXPECT_EQ(cut.code, 0);
    EXPECT_EQ(cut.error,
              "mozep convert: warning: /dev/stdin: is cut short: it declares 5000 samples a "
              "channel, and 3000 are there\n");
    EXPECT_EQ(wavContents(fileContents(path("out.wav"))).samples<std::int16_t>().size(), 3000u);

    const ProgramResult piped = runPiped(path("cut.wav"), "/dev/stdin - --format s16");
    EXPECT_EQ(piped.code, 1);
    EXPECT_EQ(piped.error,
              "mozep convert: standard output: its header, which cannot be changed any more, tells "
              "of 5000 samples a channel in place of 3000\n");

    // An AU file of a length that was not known when it was begun: big-endian.
    write("endless.au",
          std::string(".snd\0\0\0\x18\xff\xff\xff\xff\0\0\0\3\0\0\x1f\x40\0\0\0\1", 24) +
              "\1\2\xff\xfe");
    const ProgramResult endless =
        runPiped(path("endless.au"), "/dev/stdin '" + path("out.wav") + "' --format s16");
    EXPECT_EQ(endless.code, 0);
    EXPECT_EQ(endless.error,
              "mozep convert: warning: /dev/stdin: is cut short: it does not say where it ends\n");
    EXPECT_EQ(wavContents(fileContents(path("out.wav"))).samples<std::int16_t>(), (Words{258, -2}));
}

TEST_F(Convert, LeavesTheOldFileAloneWhenItFails) {
    write("out.wav", "as it was");
    write("empty", "");
    write("text", "no sound at all, whatever the program thinks of it");
    writeWav(path("none.wav"), Words{}, kRate);
    const auto fails = [this](const std::string& in, const std::string& words) {
        expectFailure({path(in), path("out.wav"), "--format", "s16"}, words);
        EXPECT_EQ(fileContents(path("out.wav")), "as it was");
    };
    fails("missing", "missing: No such file or directory");
    fails(".", "is a directory");
    fails("empty", "empty: is empty");
    fails("text", "text: is no sound file that can be read");
    fails("none.wav", "none.wav: holds no samples");
    writeWav(path("in.wav"), Words(100000), kRate);
    expectFailure({path("in.wav"), path("in.wav"), "--format", "s8"}, "--format", kWrongUsage);
    expectFailure({path("in.wav"), path("in.wav")}, "--format is required", kWrongUsage);
    expectFailure({path("in.wav"), "--format", "s16"}, "OUT is required", kWrongUsage);
    expectFailure({path("in.wav"), "/dev/full", "--format", "s16"},
                  "/dev/full: No space left on device");
    expectFailure({path("in.wav"), path("none/out.wav"), "--format", "s16"},
                  "No such file or directory");
    expectFailure({path("in.wav"), path("\x1b[2J\n/out.wav"), "--format", "s16"},
                  "\\x1b[2J\\n/out.wav: No such");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(path(".")), {}),
              5);  // no temporary file
}

// 3 GB of 16 bits, which take no room on the disk, would be 6 GB.
TEST_F(Convert, SaysWhenAWavFileCannotHoldIt) {
    constexpr std::uint32_t kBytes = 3'000'000'000;
    writeWav(path("in.wav"), Words{}, kRate);
    std::string header = fileContents(path("in.wav"));
    std::memcpy(header.data() + 40, &kBytes, sizeof kBytes);
    write("in.wav", header);
    std::filesystem::resize_file(path("in.wav"), 44ULL + kBytes);
    expectFailure(
        {path("in.wav"), path("out.wav"), "--format", "f32"},
        "out.wav: would have 1500000000 samples a channel, of which a WAV file can hold 10737418");
    EXPECT_FALSE(std::filesystem::exists(path("out.wav")));
}

}  // namespace
}  // namespace zep::test
