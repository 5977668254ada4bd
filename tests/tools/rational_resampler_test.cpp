// The resampler of the program by itself, on signals whose values between the samples are known.
#include "rational_resampler.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <numeric>
#include <random>

#include "commands.h"
#include "support/sweep.h"

namespace zep::test {
namespace {

using mozep_program::Failure;
using mozep_program::RationalResampler;
using Samples = std::vector<float>;

Samples tone(double Hz, int rate, std::size_t length) {
    Samples x(length);
    for (std::size_t n = 0; n < length; ++n)
        x[n] = static_cast<float>(
            std::cos(2 * std::numbers::pi * std::fmod(Hz * static_cast<double>(n), rate) / rate));
    return x;
}

Samples resampled(const Samples& x, int from, int to) {
    RationalResampler resampler(from, to);
    Samples y;
    resampler.add(x, y);
    resampler.finish(y);
    EXPECT_EQ(static_cast<long long>(y.size()),
              resampler.lengthAfter(static_cast<long long>(x.size())));
    return y;
}

struct Rates {
    int from, to;
};
constexpr Rates kRates[] = {{44100, 48000}, {48000, 44100}, {48000, 8000},
                            {96000, 48000}, {8000, 48000},  {96000, 44100},
                            {11025, 8000},  {5, 7},         {7, 5}};

double lowerHalf(const Rates& rates) { return std::min(rates.from, rates.to) / 2.0; }

// How many inputs and outputs at either end see what is outside the stream.
std::size_t edge(const Rates& rates, int rate) {
    return static_cast<std::size_t>(150.0 * rate / (2 * lowerHalf(rates))) + 1;
}

double decibel(double ratio) { return 20 * std::log10(ratio); }

// The largest deviation from the same tone at the new rate tells of level, delay, and of what was
// added to it.
TEST(RationalResampler, KeepsWhatIsInThePassband) {
    for (const Rates& rates : kRates)
        for (const double part : {0.0, 0.013, 0.3, 0.6, 0.8, 0.9}) {
            const double Hz = part * lowerHalf(rates);
            const std::size_t length = 4 * edge(rates, rates.from) + 300;
            const Samples y = resampled(tone(Hz, rates.from, length), rates.from, rates.to);
            const Samples expected = tone(Hz, rates.to, y.size());
            double error = 0;
            for (std::size_t n = edge(rates, rates.to); n + edge(rates, rates.to) < y.size(); ++n)
                error = std::max(error, std::abs(static_cast<double>(y[n] - expected[n])));
            // 130 dB of images and ripple, and the rounding of sums of 300 terms.
            EXPECT_LT(error, 2e-6) << rates.from << " to " << rates.to << ", " << part;
        }
}

TEST(RationalResampler, RejectsWhatTheLowerRateCannotHold) {
    for (const Rates& rates : kRates) {
        if (rates.to > rates.from) continue;
        for (const double Hz :
             {1.001 * rates.to / 2.0, 1.05 * rates.to / 2.0, (rates.to / 2.0 + rates.from) / 3}) {
            if (Hz >= rates.from / 2.0) continue;
            const std::size_t length = 4 * edge(rates, rates.from) + 300;
            const Samples y = resampled(tone(Hz, rates.from, length), rates.from, rates.to);
            double largest = 0;
            for (std::size_t n = edge(rates, rates.to); n + edge(rates, rates.to) < y.size(); ++n)
                largest = std::max(largest, std::abs(static_cast<double>(y[n])));
            EXPECT_LT(decibel(largest), -120) << rates.from << " to " << rates.to << ", " << Hz;
        }
    }
}

TEST(RationalResampler, IsTheSameHoweverTheStreamIsCut) {
    std::mt19937 random(3);
    for (const Rates& rates : kRates) {
        const Samples x = tone(0.1234 * rates.from, rates.from, 40000);
        const Samples whole = resampled(x, rates.from, rates.to);
        RationalResampler resampler(rates.from, rates.to);
        Samples y, piece;
        for (std::span<const float> rest(x); !rest.empty();) {
            const std::size_t most = random() % 3 == 0 ? 30000 : 200;
            const auto part = rest.first(std::min<std::size_t>(rest.size(), random() % most));
            piece.clear();
            resampler.add(part, piece);
            y.insert(y.end(), piece.begin(), piece.end());
            rest = rest.subspan(part.size());
        }
        resampler.finish(y);
        EXPECT_TRUE(y == whole) << rates.from << " to " << rates.to;
    }
}

// An output for every instant before the end of the last input, whatever the length.
TEST(RationalResampler, GivesAsManyOutputsAsTheTimeHolds) {
    for (const Rates& rates : kRates)
        for (const std::size_t length : {0, 1, 2, 3, 5, 7, 146, 147, 148, 1000}) {
            const Samples y = resampled(Samples(length, 1.0F), rates.from, rates.to);
            const auto seconds = static_cast<double>(length) / rates.from;
            const auto n = static_cast<double>(y.size());
            EXPECT_GE(n / rates.to, seconds * (1 - 1e-12)) << length;
            EXPECT_LT((n - 1) / rates.to, seconds) << length;
        }
}

// A first call that gives something, so that a stream does not wait for a buffer to fill.
TEST(RationalResampler, GivesWhatTheInputsDetermine) {
    for (const Rates& rates : kRates) {
        if (rates.from % rates.to == 0) continue;  // in blocks
        RationalResampler resampler(rates.from, rates.to);
        Samples y;
        const std::size_t length = 2 * edge(rates, rates.from);
        resampler.add(tone(0, rates.from, length), y);
        const double seconds = static_cast<double>(length) / rates.from;
        // Behind by the half length of the filter and less than one turn of the ratio.
        const int turn = rates.to / std::gcd(rates.from, rates.to);
        EXPECT_GE(static_cast<double>(y.size()) + static_cast<double>(edge(rates, rates.to)) + turn,
                  seconds * rates.to)
            << rates.from << " to " << rates.to;
    }
}

TEST(RationalResampler, EqualRatesChangeNothing) {
    const Samples x{0.25F, -1, 3e30F, 1e-40F};
    EXPECT_EQ(resampled(x, 44100, 44100), x);
}

TEST(RationalResampler, TakesRatiosUpToItsLimit) {
    // Eleven million taps.
    if (!thin()) {
        const Samples y = resampled(Samples(300, 0.5F), 65536, 65535);
        EXPECT_NEAR(y[150], 0.5F, 1e-6F);
    }
    EXPECT_NEAR(resampled(Samples(300, 0.5F), 3, 1000)[50000], 0.5F, 1e-6F);
    try {
        RationalResampler(48000 * 2, 65537 * 2);
        ADD_FAILURE() << "no failure";
    } catch (const Failure& failure) {
        EXPECT_STREQ(failure.what(),
                     "cannot resample 96000 Hz to 131074 Hz: their ratio, 48000:65537, has a "
                     "number above 65536");
    }
}

}  // namespace
}  // namespace zep::test
