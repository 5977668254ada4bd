// mozep stats, run as a program, and the figures that it prints to more digits.
#include <cmath>
#include <limits>
#include <numbers>
#include <sstream>

#include "channel_stats.h"
#include "support/random.h"
#include "tools/program_test.h"
#include "tools/wav_file.h"

namespace zep::test {
namespace {

using Floats = std::vector<float>;
using Row = std::vector<std::string>;

constexpr int kRate = 8000;
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr double kTwoPi = 2 * std::numbers::pi;

class Stats : public ProgramTest {
protected:
    Stats() : ProgramTest("stats") {}

    // Rows of the table, behind a line about the file, an empty one and one of titles.
    static std::vector<Row> rows(const std::string& printed) {
        std::istringstream lines(printed);
        std::string line, field;
        for (int n = 0; n < 3; ++n) std::getline(lines, line);
        std::vector<Row> table;
        while (std::getline(lines, line)) {
            std::istringstream fields(line);
            table.emplace_back();
            while (fields >> field) table.back().push_back(field);
        }
        return table;
    }
    template <class T>
    std::vector<Row> rowsOf(const std::vector<T>& samples, int channels = 1) const {
        writeWav(path("in.wav"), samples, kRate, channels);
        return rows(printed({path("in.wav")}));
    }
};

TEST_F(Stats, ShowsASine) {
    constexpr int kLen = 16000;
    Floats x;
    for (int n = 0; n < kLen; ++n)
        x.push_back(static_cast<float>(0.5 * std::cos(kTwoPi * 10 * (n - 40) / kRate)));
    writeWav(path("in.wav"), x, kRate);
    EXPECT_EQ(printed({path("in.wav")}).substr(0, path("in.wav").size() + 62),
              path("in.wav") + ": 8000 Hz, 1 channel of 16000 samples, 2.000 s, 32 bit float\n\n");
    const auto table = rowsOf(x);
    ASSERT_EQ(table.size(), 1u);
    ASSERT_EQ(table[0].size(), 8u);
    EXPECT_LT(std::abs(std::stod(table[0][6])), 1e-8);
    EXPECT_EQ((Row{table[0].begin(), table[0].begin() + 6}),
              (Row{"1", "0.5", "-6.02", "40", "0.005000", "-9.03"}));
    EXPECT_EQ(table[0][7], "3.01");
}

TEST_F(Stats, KeepsChannelsApart) {
    for (const int channels : {2, 3, 9}) {
        Floats x;
        for (int n = 0; n < 30000; ++n)
            for (int c = 0; c < channels; ++c)
                x.push_back(n == 20000 + c ? -1.0F / static_cast<float>(1 << c) : 0.0F);
        const auto table = rowsOf(x, channels);
        ASSERT_EQ(table.size(), static_cast<std::size_t>(channels));
        for (int c = 0; c < channels; ++c) {
            const Row& row = table[static_cast<std::size_t>(c)];
            EXPECT_EQ(row[0], std::to_string(c + 1));
            EXPECT_EQ(std::stod(row[1]), std::ldexp(1, -c));
            EXPECT_EQ(row[3], std::to_string(20000 + c));
            EXPECT_NEAR(std::stod(row[6]), -std::ldexp(1, -c) / 30000, 1e-9);
            EXPECT_NEAR(std::stod(row[7]), 10 * std::log10(30000), 0.005);  // a single sample
        }
    }
}

TEST_F(Stats, ReadsEveryWidth) {
    const Row half{"0.5", "-6.02", "1", "0.000125", "-6.92"};
    const auto check = [&](const std::vector<Row>& table) {
        ASSERT_EQ(table.size(), 1u);
        EXPECT_EQ((Row{table[0].begin() + 1, table[0].begin() + 6}), half);
    };
    // 0.25, 0.5, -0.5, -0.5: mean square 0.8125 / 4
    check(rowsOf(std::vector<std::uint8_t>{160, 192, 64, 64}));
    check(rowsOf(std::vector<std::int16_t>{8192, 16384, -16384, -16384}));
    check(rowsOf(
        std::vector<Int24>{Int24(1 << 21), Int24(1 << 22), Int24(-(1 << 22)), Int24(-(1 << 22))}));
    check(rowsOf(std::vector<std::int32_t>{1 << 29, 1 << 30, -(1 << 30), -(1 << 30)}));
    check(rowsOf(Floats{0.25F, 0.5F, -0.5F, -0.5F}));
    check(rowsOf(std::vector<double>{0.25, 0.5, -0.5, -0.5}));
}

TEST_F(Stats, SilenceHasNoCrestFactor) {
    EXPECT_EQ(rowsOf(std::vector<std::int16_t>(100), 2),
              (std::vector<Row>{{"1", "0", "-inf", "-", "-", "-inf", "0", "-"},
                                {"2", "0", "-inf", "-", "-", "-inf", "0", "-"}}));
}

TEST_F(Stats, LeavesOutWhatIsNotFiniteAndSaysSo) {
    const float notNumber = std::nanf("");
    writeWav(
        path("in.wav"),
        Floats{notNumber, notNumber, 0.25F, kInfinity, -kInfinity, -kInfinity, -0.5F, notNumber},
        kRate, 2);
    const ProgramResult result = run({path("in.wav")});
    EXPECT_EQ(result.code, 0);
    const std::string start = "mozep stats: warning: " + path("in.wav") + ": channel ",
                      end = " samples that are not finite numbers were left out\n";
    EXPECT_EQ(result.error, start + "1: 2" + end + start + "2: 4" + end);
    const auto table = rows(result.out);
    ASSERT_EQ(table.size(), 2u);
    EXPECT_EQ(table[0], (Row{"1", "0.5", "-6.02", "3", "0.000375", "-8.06", "-0.125", "2.04"}));
    EXPECT_EQ(table[1], (Row{"2", "-", "-", "-", "-", "-", "-", "-"}));
}

TEST_F(Stats, WarnsOfAFileThatIsCutShort) {
    writeWav(path("in.wav"), std::vector<std::int16_t>(1000, 16384), kRate);
    std::filesystem::resize_file(path("in.wav"), 44 + 1000);
    const ProgramResult result = run({path("in.wav")});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.error, "mozep stats: warning: " + path("in.wav") +
                                ": is cut short: it declares 2000 bytes, and 1000 are there\n");
    EXPECT_NE(result.out.find("1 channel of 500 samples"), std::string::npos) << result.out;
}

TEST_F(Stats, SaysWhatItCannotRead) {
    write("empty", "");
    write("text", "no sound at all, whatever the program thinks of it");
    writeWav(path("none.wav"), Floats{}, kRate);
    expectFailure({path("missing")}, "missing: No such file or directory");
    expectFailure({path(".")}, "is a directory");
    expectFailure({path("empty")}, "empty: is empty");
    expectFailure({path("text")}, "text: is no sound file that can be read");
    expectFailure({path("none.wav")}, "none.wav: holds no samples");
    expectFailure({path("\x1b[2J\n.wav")}, "\\x1b[2J\\n.wav: No such file");
    expectFailure({}, "FILE is required", 2);
    writeWav(path("a\nb.wav"), Floats{1}, kRate);
    EXPECT_TRUE(printed({path("a\nb.wav")}).starts_with(path("a\\nb.wav: 8000 Hz")));
}

using mozep_program::ChannelStats;

ChannelStats statsOf(const Floats& x, const std::vector<std::size_t>& blocks) {
    ChannelStats stats;
    std::size_t at = 0;
    for (std::size_t b = 0; at < x.size(); ++b) {
        const std::size_t end = std::min(at + blocks[b % blocks.size()], x.size());
        Floats block(x.begin() + static_cast<std::ptrdiff_t>(at),
                     x.begin() + static_cast<std::ptrdiff_t>(end));
        stats.add(block);
        at = end;
    }
    return stats;
}

// Noise on a large constant: what is carried from block to block may not lose digits.
TEST(ChannelStats, BlocksGiveTheFiguresOfTheWhole) {
    constexpr int kLen = 300000;
    Floats x;
    long long sum = 0, squares = 0;  // of 1024 times the samples
    for (int n = 0; n < kLen; ++n) {
        const int noise = randomValue<std::int16_t>() % 1024;
        const long long k = n == 123456 || n == 223456 ? -1024 * 1002 : 1024 * 1000 + noise;
        x.push_back(static_cast<float>(k) / 1024);
        sum += k;
        squares += k * k;
    }
    const double mean = static_cast<double>(sum) / kLen / 1024;
    const double meanSquare = static_cast<double>(squares) / kLen / 1024 / 1024;
    for (const auto& blocks : {std::vector<std::size_t>{kLen}, {65536}, {1}, {7, 1000, 3}}) {
        const ChannelStats stats = statsOf(x, blocks);
        EXPECT_EQ(stats.counted(), kLen);
        EXPECT_EQ(stats.leftOut(), 0);
        EXPECT_EQ(stats.peak(), 1002);
        EXPECT_EQ(stats.peakIndex(), 123456);
        // A block of B samples, summed in any order, errs by at most B units of 2^-53 of the sum
        // of their magnitudes; the sum of blocks and the divisions add a few, however many
        // blocks there are.
        const double unit =
            static_cast<double>(*std::max_element(blocks.begin(), blocks.end()) + 5) * 0x1p-53;
        EXPECT_NEAR(stats.mean(), mean, 1001 * unit);
        EXPECT_NEAR(stats.meanSquare(), meanSquare, 1001.0 * 1001 * unit);
    }
}

TEST(ChannelStats, TakesTheWholeRangeOfFloats) {
    constexpr float kLargest = std::numeric_limits<float>::max();
    const ChannelStats large = statsOf(Floats(10, -kLargest), {3});
    EXPECT_EQ(large.peak(), static_cast<double>(kLargest));
    EXPECT_NEAR(large.mean() / static_cast<double>(-kLargest), 1, 1e-15);
    EXPECT_NEAR(std::sqrt(large.meanSquare()) / static_cast<double>(kLargest), 1, 1e-15);
    constexpr float kSmallest = std::numeric_limits<float>::denorm_min();
    const ChannelStats small = statsOf({0, kSmallest, 0, 0}, {3});
    EXPECT_EQ(small.peak(), static_cast<double>(kSmallest));
    EXPECT_EQ(small.peakIndex(), 1);
    EXPECT_GT(small.meanSquare(), 0);
}

TEST(ChannelStats, TheFirstOfEqualPeaksIsTheOneShown) {
    for (const Floats& x : {Floats{0, 2, -2, 2}, Floats{1, -2, 2, -2}})
        for (const std::size_t block : {1, 2, 3, 4}) EXPECT_EQ(statsOf(x, {block}).peakIndex(), 1);
}

TEST(ChannelStats, PlacesCountSamplesThatAreLeftOut) {
    const float notNumber = std::nanf("");
    const ChannelStats stats = statsOf(
        {notNumber, 1, kInfinity, -2, 2, notNumber, notNumber, notNumber, 3, -kInfinity}, {2, 3});
    EXPECT_EQ(stats.counted(), 4);
    EXPECT_EQ(stats.leftOut(), 6);
    EXPECT_EQ(stats.peak(), 3);
    EXPECT_EQ(stats.peakIndex(), 8);
    EXPECT_DOUBLE_EQ(stats.mean(), 1);
    EXPECT_DOUBLE_EQ(stats.meanSquare(), 4.5);
}

}  // namespace
}  // namespace zep::test
