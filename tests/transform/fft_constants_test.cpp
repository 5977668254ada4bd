// The sines and cosines that stand in the code, each against the library's in extended precision:
// one wrong digit is too little for the bounds on whole transforms.
#include <gtest/gtest.h>

#include <cmath>

#include "transform/fft_sine_constants.h"

namespace zep::test {
namespace {

namespace fft = ZEP_VARIANT::fft;

TEST(FftConstants, AreTheSinesAndCosinesOfTheirAngles) {
    for (int N = 8; N <= 1024; N *= 2)
        for (int k = 0; k <= 2 * N; ++k) {
            const long double angle =
                2 * 3.14159265358979323846264338327950288L * (k % N) / static_cast<long double>(N);
            // Half a unit in the last place of a value below 1, and what the comparison rounds.
            const double ofFloat = 0x1.01p-25, ofDouble = 0x1.01p-53;
            EXPECT_NEAR(fft::constantSine<float>(k, N), std::sin(angle), ofFloat) << k << '/' << N;
            EXPECT_NEAR(fft::constantCosine<float>(k, N), std::cos(angle), ofFloat)
                << k << '/' << N;
            EXPECT_LE(std::abs(fft::constantSine<double>(k, N) - std::sin(angle)), ofDouble)
                << k << '/' << N;
            EXPECT_LE(std::abs(fft::constantCosine<double>(k, N) - std::cos(angle)), ofDouble)
                << k << '/' << N;
        }
}

}  // namespace
}  // namespace zep::test
