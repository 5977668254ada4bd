// Long transforms, which are split into blocks and moved in tiles: against the double reference
// where that is quick, by impulses beyond it.
#include "transform/fft_impulses.h"

namespace zep::test {
namespace {

class FftLong : public VariantTest {};

template <class Kind>
void matchesTheReference(int order, Direction direction) {
    SCOPED_TRACE(testing::Message() << "order " << order);
    const int flag = kFlags[order % 4];
    const Fft<Kind> fft(order, flag);
    const float factor = factorOf(fft, direction, order);
    const double documented = documentedFactor(order, flag, direction);
    EXPECT_NEAR(factor / documented, 1, flag == ZEP_FFT_SCALE_SQRT ? kRootFactorError : 0);
    const auto x = randomSignal<typename Kind::Element>(order);
    std::vector<typename Kind::Element> X(x.size());
    ASSERT_EQ(fft.run(direction, x.data(), X.data()), zepStsNoErr);
    ErrorNorm error;
    error.add(X.data(), reference(x, direction), factor);
    EXPECT_LE(error.rms(), rmsBound(order));
    EXPECT_LE(error.worst(), worstBound(order));
}

TEST_P(FftLong, ComplexMatchesTheReference) {
    for (int order = 18; order <= (thin() ? 19 : 22); ++order)
        matchesTheReference<ComplexKind>(order, kDirections[order % 2]);
}

TEST_P(FftLong, ComplexMatchesTheReferenceInTheOtherDirection) {
    for (int order = 18; order <= (thin() ? 18 : 20); ++order)
        matchesTheReference<ComplexKind>(order, kDirections[(order + 1) % 2]);
}

// 20 and 21 stand on the two sides of the change to a folding table of two parts.
TEST_P(FftLong, RealMatchesTheReference) {
    for (int order = 18; order <= (thin() ? 19 : 21); ++order)
        matchesTheReference<RealKind>(order, Direction::Forward);
}

TEST_P(FftLong, ImpulsesBecomeExponentials) {
    for (int order = 17; order <= (thin() ? 19 : 22); ++order)
        for (const Direction direction : kDirections) impulsesBecomeExponentials(order, direction);
}

TEST_P(FftLong, RealImpulsesBecomePackedExponentials) {
    for (int order = 18; order <= (thin() ? 19 : 22); ++order)
        realImpulsesBecomePackedExponentials(order);
}

// y[n] = x[n - s] has the spectrum X[k] * exp(-2*pi*i*k*s/N), and the same norm.
TEST_P(FftLong, AShiftTurnsThePhaseAndKeepsTheNorm) {
    const int order = thin() ? 18 : 20;
    const std::size_t N = std::size_t{1} << order, shift = 12345;
    const ComplexFft fft(order);
    const Roots root(order);
    const auto x = randomSignal<Zep32fc>(order);
    std::vector<Zep32fc> y(N), X(N);
    for (std::size_t n = 0; n < N; ++n) y[(n + shift) % N] = x[n];
    ASSERT_EQ(fft.forward(x.data(), X.data()), zepStsNoErr);
    ASSERT_EQ(fft.forward(y.data(), y.data()), zepStsNoErr);
    std::vector<Complex> want(N);
    double inTime = 0, inFrequency = 0;
    for (std::size_t k = 0; k < N; ++k) {
        want[k] = toDouble(X[k]) * root(k * shift);
        inTime += std::norm(toDouble(x[k]));
        inFrequency += std::norm(toDouble(X[k]));
    }
    ErrorNorm error;
    error.add(y.data(), want);
    EXPECT_LE(error.rms(), std::sqrt(2.0) * rmsBound(order));
    // Parseval. An error e of the spectrum changes its norm by a factor within 1 +- e.
    EXPECT_NEAR(std::sqrt(inFrequency / (static_cast<double>(N) * inTime)), 1, rmsBound(order));
}

TEST_P(FftLong, IsLinear) {
    const int order = thin() ? 18 : 21;
    const std::size_t N = std::size_t{1} << order;
    const ComplexFft fft(order, ZEP_FFT_SCALE_INV);
    auto x = randomSignal<Zep32fc>(order), y = randomSignal<Zep32fc>(order), sum = x;
    for (std::size_t n = 0; n < N; ++n) {
        // Multiples of 2^-20 below 2: their sum is exact.
        const auto coarse = [](float v) { return std::nearbyint(v * 0x1p20f) * 0x1p-20f; };
        x[n] = {coarse(x[n].re), coarse(x[n].im)};
        y[n] = {coarse(y[n].re), coarse(y[n].im)};
        sum[n] = {x[n].re + 2 * y[n].re, x[n].im + 2 * y[n].im};
    }
    for (auto* signal : {&x, &y, &sum})
        ASSERT_EQ(fft.inverse(signal->data(), signal->data()), zepStsNoErr);
    std::vector<Complex> want(N);
    for (std::size_t n = 0; n < N; ++n) want[n] = toDouble(x[n]) + 2.0 * toDouble(y[n]);
    ErrorNorm error;
    error.add(sum.data(), want);
    // The errors of both sides, which are of the same size.
    EXPECT_LE(error.rms(), std::sqrt(2.0) * rmsBound(order));
}

TEST_P(FftLong, AForwardAndAnInverseTransformRestoreTheSignal) {
    for (int order = 18; order <= (thin() ? 18 : 22); ++order) {
        const int flag = order % 2 == 0 ? ZEP_FFT_SCALE_INV : ZEP_FFT_SCALE_FWD;
        const ComplexFft fft(order, flag);
        const auto x = randomSignal<Zep32fc>(order);
        std::vector<Zep32fc> y(x.size());
        ASSERT_EQ(fft.forward(x.data(), y.data()), zepStsNoErr);
        ASSERT_EQ(fft.inverse(y.data(), y.data()), zepStsNoErr);
        ErrorNorm error;
        error.add(y.data(), toDouble(x.data(), x.size()));
        EXPECT_LE(error.rms(), std::sqrt(2.0) * rmsBound(order)) << "order " << order;
    }
}

ZEP_FOR_EACH_VARIANT(FftLong);

}  // namespace
}  // namespace zep::test
