// Values of the complex and the real transform at every order of the short routes, against the
// double reference.
#include "transform/fft_support.h"

namespace zep::test {
namespace {

constexpr int kLastShortOrder = 17;  // longer transforms have tests of their own

class FftValues : public VariantTest {};

// One call between guard pages, with scratch of exactly the size that the object asks for.
template <class Kind>
std::vector<typename Kind::Element> guardedRun(const Fft<Kind>& fft, Direction direction,
                                               const std::vector<typename Kind::Element>& x,
                                               Edge edge) {
    using T = typename Kind::Element;
    const int N = static_cast<int>(x.size());
    GuardedBuffer<T> src(N, edge), dst(N, edge);
    GuardedBuffer<Zep8u> scratch(fft.scratchBytes(), edge);
    std::copy(x.begin(), x.end(), src.begin());
    EXPECT_EQ(fft.run(direction, src.data(), dst.data(), scratch.data()), zepStsNoErr);
    EXPECT_TRUE(sameBits(src.data(), x.data(), x.size())) << "the source has changed";
    return {dst.begin(), dst.end()};
}

template <class Kind>
void matchesTheReference(int order, int flag, Direction direction) {
    SCOPED_TRACE(testing::Message() << "order " << order << " flag " << flag << " direction "
                                    << (direction == Direction::Forward ? "forward" : "inverse"));
    const Fft<Kind> fft(order, flag);
    const float factor = factorOf(fft, direction, order);
    ErrorNorm error;
    // Short transforms have few errors to average over, so they get more signals.
    for (int signals = std::max(2, 2048 >> order); signals > 0; --signals) {
        const auto x = randomSignal<typename Kind::Element>(order);
        const auto X = guardedRun(fft, direction, x, signals % 2 == 0 ? Edge::Back : Edge::Front);
        error.add(X.data(), reference(x, direction), factor);
    }
    EXPECT_LE(error.rms(), rmsBound(order));
    EXPECT_LE(error.worst(), worstBound(order));
}

TEST_P(FftValues, ComplexMatchesTheReferenceAtEveryOrderFlagAndDirection) {
    for (int order = 0; order <= kLastShortOrder; ++order)
        for (const int flag : kFlags)
            for (const Direction direction : kDirections)
                matchesTheReference<ComplexKind>(order, flag, direction);
}

TEST_P(FftValues, RealMatchesTheReferenceAtEveryOrderAndFlag) {
    for (int order = 0; order <= kLastShortOrder; ++order)
        for (const int flag : kFlags)
            matchesTheReference<RealKind>(order, flag, Direction::Forward);
}

template <class Kind>
void appliesTheFactorOfTheFlag(Direction direction) {
    for (int order = 0; order <= kLastShortOrder; ++order)
        for (const int flag : kFlags) {
            const double factor = factorOf(Fft<Kind>(order, flag), direction, order);
            const double documented = documentedFactor(order, flag, direction);
            if (flag == ZEP_FFT_SCALE_SQRT)
                EXPECT_NEAR(factor / documented, 1, kRootFactorError) << "order " << order;
            else
                EXPECT_EQ(factor, documented) << "order " << order << " flag " << flag;
        }
}

TEST_P(FftValues, TheFlagSetsTheFactor) {
    for (const Direction direction : kDirections) appliesTheFactorOfTheFlag<ComplexKind>(direction);
    appliesTheFactorOfTheFlag<RealKind>(Direction::Forward);
}

// Each bin of an impulse is a product of at most `order` twiddles: a factor is off by sqrt(1/2) ulp
// at most and a complex product by sqrt(5) ulp, 2^-24 each, which is less than 3 * 2^-24 for each
// of them.
double impulseBound(int order) { return 3 * 0x1p-24 * std::max(order, 1); }

std::vector<std::size_t> impulsePositions(int order) {
    const std::size_t N = std::size_t{1} << order;
    std::vector<std::size_t> positions;
    if (order <= 8) {
        for (std::size_t n = 0; n < N; ++n) positions.push_back(n);
    } else {
        positions = {0, 1, 2, 3, 5, 64, N / 8 + 1, N / 4, N / 2 - 1, N / 2, N / 2 + 1, N - 1};
    }
    return positions;
}

TEST_P(FftValues, AComplexImpulseBecomesAnExponential) {
    for (int order = 0; order <= kLastShortOrder; ++order) {
        const std::size_t N = std::size_t{1} << order;
        const ComplexFft fft(order);
        std::vector<Complex> root(N);
        for (std::size_t k = 0; k < N; ++k) root[k] = unitRoot(k, N);
        for (const std::size_t n : impulsePositions(order)) {
            std::vector<Zep32fc> x(N), X(N);
            x[n] = {1, 0};
            for (const Direction direction : kDirections) {
                ASSERT_EQ(fft.run(direction, x.data(), X.data()), zepStsNoErr);
                double worst = 0;
                for (std::size_t k = 0; k < N; ++k) {
                    const Complex w = root[n * k % N];
                    const Complex want = direction == Direction::Forward ? w : std::conj(w);
                    worst = std::max(worst, std::abs(toDouble(X[k]) - want));
                }
                ASSERT_LE(worst, impulseBound(order)) << "order " << order << " n " << n;
            }
        }
    }
}

TEST_P(FftValues, ARealImpulseBecomesAPackedExponential) {
    for (int order = 0; order <= kLastShortOrder; ++order) {
        const std::size_t N = std::size_t{1} << order;
        const RealFft fft(order);
        std::vector<Complex> root(N), spectrum(N);
        for (std::size_t k = 0; k < N; ++k) root[k] = unitRoot(k, N);
        for (const std::size_t n : impulsePositions(order)) {
            std::vector<Zep32f> x(N), X(N);
            x[n] = 1;
            ASSERT_EQ(fft.forward(x.data(), X.data()), zepStsNoErr);
            for (std::size_t k = 0; k < N; ++k) spectrum[k] = root[n * k % N];
            const std::vector<double> want = toPerm(spectrum);
            double worst = 0;
            for (std::size_t k = 0; k < N; ++k) worst = std::max(worst, std::abs(X[k] - want[k]));
            // The fold is one more level, of terms up to twice as large.
            ASSERT_LE(worst, impulseBound(order + 2)) << "order " << order << " n " << n;
        }
    }
}

TEST_P(FftValues, AForwardAndAnInverseTransformRestoreTheSignal) {
    for (int order = 0; order <= kLastShortOrder; ++order)
        for (const int flag : kFlags) {
            const ComplexFft fft(order, flag);
            const auto x = randomSignal<Zep32fc>(order);
            std::vector<Zep32fc> y(x.size());
            ASSERT_EQ(fft.forward(x.data(), y.data()), zepStsNoErr);
            ASSERT_EQ(fft.inverse(y.data(), y.data()), zepStsNoErr);
            const double N = std::exp2(order);
            ErrorNorm error;
            error.add(y.data(), toDouble(x.data(), x.size()), flag == ZEP_FFT_SCALE_NONE ? N : 1.0);
            const double ofFactors = flag == ZEP_FFT_SCALE_SQRT ? 2 * kRootFactorError : 0;
            // Both transforms' errors, and of one signal only.
            EXPECT_LE(error.worst(), 2 * worstBound(order) + 3 * ofFactors) << order << ' ' << flag;
        }
}

// Multiplying by a power of two is exact, and so is every step of the transform of the multiple.
TEST_P(FftValues, ScalesWithPowersOfTwoBitForBit) {
    for (int order = 0; order <= kLastShortOrder; ++order) {
        const ComplexFft fft(order);
        const auto x = randomSignal<Zep32fc>(order);
        std::vector<Zep32fc> large = x, X(x.size()), LargeX(x.size());
        for (Zep32fc& v : large) v = {v.re * 0x1p60f, v.im * 0x1p60f};
        ASSERT_EQ(fft.forward(x.data(), X.data()), zepStsNoErr);
        ASSERT_EQ(fft.forward(large.data(), LargeX.data()), zepStsNoErr);
        for (Zep32fc& v : X) v = {v.re * 0x1p60f, v.im * 0x1p60f};
        ASSERT_TRUE(sameBits(X.data(), LargeX.data(), X.size())) << "order " << order;
    }
}

TEST_P(FftValues, OrderZeroCopies) {
    const Zep32fc x{1.5f, -2.25f};
    for (const int flag : {ZEP_FFT_SCALE_FWD, ZEP_FFT_SCALE_INV, ZEP_FFT_SCALE_NONE})
        for (const Direction direction : kDirections) {
            Zep32fc X{};
            ASSERT_EQ(ComplexFft(0, flag).run(direction, &x, &X), zepStsNoErr);
            EXPECT_TRUE(sameBits(&X, &x, 1));
            Zep32f R = 0;
            ASSERT_EQ(RealFft(0, flag).forward(&x.re, &R), zepStsNoErr);
            EXPECT_EQ(R, x.re);
        }
}

TEST_P(FftValues, RealOrdersOneAndTwoGiveTheSumsByHand) {
    const Zep32f two[2] = {3, 5}, four[4] = {1, 2, 3, 5};
    Zep32f X[4];
    ASSERT_EQ(RealFft(1).forward(two, X), zepStsNoErr);
    EXPECT_EQ(X[0], 8);
    EXPECT_EQ(X[1], -2);
    // R(0), R(2), R(1), I(1) of 1 + 2(-i)^k + 3(-1)^k + 5(i)^k.
    ASSERT_EQ(RealFft(2).forward(four, X), zepStsNoErr);
    EXPECT_EQ(X[0], 11);
    EXPECT_EQ(X[1], -3);
    EXPECT_EQ(X[2], -2);
    EXPECT_EQ(X[3], 3);
}

// Sums of ones and of alternating ones are exact in every order of summation, and the zeros are
// exact differences.
TEST_P(FftValues, ConstantAndAlternatingSignalsStandInTheFirstTwoPlaces) {
    for (int order = 1; order <= kLastShortOrder; ++order) {
        const std::size_t N = std::size_t{1} << order;
        const RealFft fft(order);
        for (const int place : {0, 1}) {
            std::vector<Zep32f> x(N), X(N);
            for (std::size_t n = 0; n < N; ++n) x[n] = place == 1 && n % 2 == 1 ? -1.0f : 1.0f;
            ASSERT_EQ(fft.forward(x.data(), X.data()), zepStsNoErr);
            for (std::size_t k = 0; k < N; ++k)
                ASSERT_EQ(X[k], k == static_cast<std::size_t>(place) ? static_cast<float>(N) : 0.0f)
                    << "order " << order << " position " << k;
        }
    }
}

// cos(2*pi*n/4) and sin(2*pi*n/4) take the values 0 and +-1: their bin, N/4, is its own partner in
// the fold.
TEST_P(FftValues, AToneAtAQuarterOfTheRateStandsAtTheSelfPairedBin) {
    for (int order = 2; order <= kLastShortOrder; ++order) {
        const std::size_t N = std::size_t{1} << order;
        const RealFft fft(order);
        for (const bool sine : {false, true}) {
            static constexpr float kCosine[4] = {1, 0, -1, 0};
            std::vector<Zep32f> x(N), X(N);
            for (std::size_t n = 0; n < N; ++n) x[n] = kCosine[(n + (sine ? 3 : 0)) % 4];
            ASSERT_EQ(fft.forward(x.data(), X.data()), zepStsNoErr);
            const std::size_t place = N / 2 + (sine ? 1 : 0);
            const float half = static_cast<float>(N) / 2;
            for (std::size_t k = 0; k < N; ++k) {
                const float want = k == place ? (sine ? -half : half) : 0.0f;
                ASSERT_EQ(X[k], want) << "order " << order << " position " << k;
            }
        }
    }
}

ZEP_FOR_EACH_VARIANT(FftValues);

}  // namespace
}  // namespace zep::test
