// NaN, infinity and denormals propagate; none stops a transform or leaves its arrays.
#include <limits>

#include "transform/fft_support.h"

namespace zep::test {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kDenormal = std::numeric_limits<float>::denorm_min();

class FftSpecialValues : public VariantTest {};

bool finite(Zep32fc x) { return std::isfinite(x.re) && std::isfinite(x.im); }

// Every bin is a sum over all samples with factors that are not both zero.
TEST_P(FftSpecialValues, ANanOrAnInfinityReachesEveryBin) {
    for (int order = 0; order <= 19; ++order) {
        const std::size_t N = std::size_t{1} << order;
        const ComplexFft fft(order, ZEP_FFT_SCALE_SQRT);
        for (const float special : {kNan, kInfinity, -kInfinity}) {
            auto x = randomSignal<Zep32fc>(order);
            x[rng()() % N].im = special;
            for (const Direction direction : kDirections) {
                std::vector<Zep32fc> X(N);
                ASSERT_EQ(fft.run(direction, x.data(), X.data()), zepStsNoErr);
                for (std::size_t k = 0; k < N; ++k)
                    ASSERT_FALSE(finite(X[k])) << "order " << order << " k " << k;
            }
        }
    }
}

TEST_P(FftSpecialValues, ANanReachesEveryBinOfARealSpectrum) {
    for (int order = 0; order <= 20; ++order) {
        const std::size_t N = std::size_t{1} << order;
        const RealFft fft(order, ZEP_FFT_SCALE_FWD);
        auto x = randomSignal<Zep32f>(order);
        x[rng()() % N] = kNan;
        ASSERT_EQ(fft.forward(x.data(), x.data()), zepStsNoErr);
        for (std::size_t k = 0; k < N; k += 2)
            ASSERT_TRUE(std::isnan(x[k]) || (k + 1 < N && std::isnan(x[k + 1])))
                << "order " << order << " k " << k;
    }
}

// Sums of multiples of the smallest number are exact; a twiddle product is off by at most half of
// it, for each factor and level.
TEST_P(FftSpecialValues, DenormalsAreKept) {
    for (int order = 0; order <= 12; ++order) {
        const std::size_t N = std::size_t{1} << order;
        std::vector<Zep32fc> x(N), X(N);
        for (Zep32fc& v : x) v = {kDenormal, -kDenormal};
        ASSERT_EQ(ComplexFft(order).forward(x.data(), X.data()), zepStsNoErr);
        const float sum = static_cast<float>(N) * kDenormal;
        for (std::size_t k = 0; k < N; ++k) {
            ASSERT_EQ(X[k].re, k == 0 ? sum : 0) << "order " << order << " k " << k;
            ASSERT_EQ(X[k].im, k == 0 ? -sum : 0) << "order " << order << " k " << k;
        }
    }
}

TEST_P(FftSpecialValues, OverflowGivesInfinitiesOrNans) {
    for (int order = 1; order <= 18; ++order) {
        const std::size_t N = std::size_t{1} << order;
        std::vector<Zep32f> x(N, std::numeric_limits<float>::max());
        ASSERT_EQ(RealFft(order).forward(x.data(), x.data()), zepStsNoErr);
        EXPECT_FALSE(std::isfinite(x[0])) << "order " << order;
    }
}

ZEP_FOR_EACH_VARIANT(FftSpecialValues);

}  // namespace
}  // namespace zep::test
