// Long transforms, which are split into blocks and moved in tiles: against the double reference
// where that is quick, by impulses whose spectrum is known in closed form beyond it.
#include <cstdlib>
#include <memory>

#include "transform/fft_support.h"

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
    for (int order = 18; order <= (kInstrumented ? 19 : 22); ++order)
        matchesTheReference<ComplexKind>(order, kDirections[order % 2]);
}

TEST_P(FftLong, ComplexMatchesTheReferenceInTheOtherDirection) {
    for (int order = 18; order <= (kInstrumented ? 18 : 20); ++order)
        matchesTheReference<ComplexKind>(order, kDirections[(order + 1) % 2]);
}

// 20 and 21 stand on the two sides of the change to a folding table of two parts.
TEST_P(FftLong, RealMatchesTheReference) {
    for (int order = 18; order <= (kInstrumented ? 19 : 21); ++order)
        matchesTheReference<RealKind>(order, Direction::Forward);
}

// exp(-2*pi*i*j/N) for any j, as a product of two tabulated factors; 2^-52 or so.
class Roots {
public:
    explicit Roots(int order) : N_(std::size_t{1} << order), fine_(kFine), coarse_(N_ / kFine) {
        for (std::size_t j = 0; j < kFine; ++j) fine_[j] = unitRoot(j, N_);
        for (std::size_t j = 0; j < coarse_.size(); ++j) coarse_[j] = unitRoot(j * kFine, N_);
    }
    Complex operator()(std::size_t j) const {
        j &= N_ - 1;
        const Complex a = fine_[j % kFine], b = coarse_[j / kFine];
        return {a.real() * b.real() - a.imag() * b.imag(),
                a.real() * b.imag() + a.imag() * b.real()};
    }

private:
    static constexpr std::size_t kFine = 4096;
    std::size_t N_;
    std::vector<Complex> fine_, coarse_;
};

struct Impulse {
    std::size_t n;
    Zep32fc height;
};

std::vector<Impulse> impulses(int order) {
    const std::size_t N = std::size_t{1} << order;
    // The first, low, middle and high bits of the index, all of them, and any.
    return {{1, {1.0f, 0.0f}},
            {N / 2 + 1, {-0.5f, 0.25f}},
            {N - 1, {0.125f, 0.75f}},
            {(std::size_t{1} << (order / 2)) + 3, {0.375f, -1.0f}},
            {rng()() % N, {-1.0f, 0.5f}}};
}

// Spectrum of a few impulses: its error is what the twiddles carry, at most 3 * 2^-24 of the height
// for each level (a factor off by sqrt(1/2) * 2^-24, a product by sqrt(5) * 2^-24), and the sums'.
void impulsesBecomeExponentials(int order, Direction direction) {
    SCOPED_TRACE(testing::Message() << "order " << order);
    const std::size_t N = std::size_t{1} << order;
    const Roots root(order);
    const auto list = impulses(order);
    std::vector<Zep32fc> x(N);
    double height = 0;
    for (const Impulse& p : list) {
        x[p.n].re += p.height.re;
        x[p.n].im += p.height.im;
        height += std::abs(toDouble(p.height));
    }
    // In place, which saves memory and is the route that the tests against the reference do not
    // take.
    ASSERT_EQ(ComplexFft(order).run(direction, x.data(), x.data()), zepStsNoErr);
    double worst = 0;
    for (std::size_t k = 0; k < N; ++k) {
        double re = 0, im = 0;
        for (const Impulse& p : list) {
            const Complex w =
                root(direction == Direction::Forward ? p.n * k : N - (p.n * k & (N - 1)));
            re += p.height.re * w.real() - p.height.im * w.imag();
            im += p.height.re * w.imag() + p.height.im * w.real();
        }
        worst = std::max({worst, std::abs(x[k].re - re), std::abs(x[k].im - im)});
    }
    EXPECT_LE(worst, 3 * 0x1p-24 * order * height);
}

TEST_P(FftLong, ImpulsesBecomeExponentials) {
    for (int order = 17; order <= (kInstrumented ? 19 : 22); ++order)
        for (const Direction direction : kDirections) impulsesBecomeExponentials(order, direction);
}

TEST_P(FftLong, RealImpulsesBecomePackedExponentials) {
    for (int order = 18; order <= (kInstrumented ? 19 : 22); ++order) {
        const std::size_t N = std::size_t{1} << order;
        const Roots root(order);
        const auto list = impulses(order);
        std::vector<Zep32f> x(N), X(N);
        double height = 0;
        for (const Impulse& p : list) {
            x[p.n] += p.height.re;
            height += std::abs(p.height.re);
        }
        ASSERT_EQ(RealFft(order).forward(x.data(), X.data()), zepStsNoErr);
        double worst = 0;
        const auto bin = [&](std::size_t k) {
            Complex sum = 0;
            for (const Impulse& p : list) sum += static_cast<double>(p.height.re) * root(p.n * k);
            return sum;
        };
        worst = std::max(std::abs(X[0] - bin(0).real()), std::abs(X[1] - bin(N / 2).real()));
        for (std::size_t k = 1; k < N / 2; ++k)
            worst = std::max(worst, std::abs(Complex(X[2 * k], X[2 * k + 1]) - bin(k)));
        // The fold is one more level, of terms up to twice as large.
        EXPECT_LE(worst, 3 * 0x1p-24 * (order + 2) * height) << "order " << order;
    }
}

// y[n] = x[n - s] has the spectrum X[k] * exp(-2*pi*i*k*s/N), and the same norm.
TEST_P(FftLong, AShiftTurnsThePhaseAndKeepsTheNorm) {
    const int order = kInstrumented ? 18 : 20;
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
    const int order = kInstrumented ? 18 : 21;
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
    for (int order = 18; order <= (kInstrumented ? 18 : 22); ++order) {
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

// The longest transforms that a test run has time for, once in the variants that reach them by a
// route of their own: copies before the tiles, a second level of blocks.
struct Huge {
    const char* tag;
    int order;
};

// Forward out of place, inverse in place; and the same forward in place.
void roundTripRestores(int order) {
    const ComplexFft fft(order, ZEP_FFT_SCALE_INV);
    std::vector<Zep32fc> x(std::size_t{1} << order), X(x.size());
    // Random enough, and quicker than a good generator.
    std::uint32_t state = 1;
    const auto next = [&state] {
        state = state * 1664525u + 1013904223u;
        return static_cast<float>(static_cast<std::int32_t>(state)) * 0x1p-31f;
    };
    for (Zep32fc& s : x) s = {next(), next()};
    ASSERT_EQ(fft.forward(x.data(), X.data()), zepStsNoErr);
    std::vector<Zep32fc> restored = X;
    ASSERT_EQ(fft.inverse(restored.data(), restored.data()), zepStsNoErr);
    double energy = 0, difference = 0;
    for (std::size_t n = 0; n < x.size(); ++n) {
        energy += std::norm(toDouble(x[n]));
        difference += std::norm(toDouble(restored[n]) - toDouble(x[n]));
    }
    EXPECT_LE(std::sqrt(difference / energy), std::sqrt(2.0) * rmsBound(order));
    ASSERT_EQ(fft.forward(x.data(), x.data()), zepStsNoErr);
    EXPECT_TRUE(sameBits(x.data(), X.data(), x.size())) << "in place";
}

class FftHuge : public testing::TestWithParam<Huge> {};

const Variant& variantOf(const char* tag) {
    for (const Variant& v : kVariants)
        if (std::strcmp(v.tag, tag) == 0) return v;
    std::abort();
}

TEST_P(FftHuge, TransformsImpulsesAndThereAndBack) {
    const auto [tag, order] = GetParam();
    if (kInstrumented) GTEST_SKIP() << "too slow when instrumented";
    if (order > 25 && std::getenv("ZEP_TEST_HUGE") == nullptr)
        GTEST_SKIP() << "takes gigabytes; set ZEP_TEST_HUGE";
    const Variant& v = variantOf(tag);
    if (!v.supported()) GTEST_SKIP() << "this machine has no " << v.needs;
    ASSERT_EQ(zepSelectVariantForCpu(v.cpu), zepStsNoErr);
    impulsesBecomeExponentials(order, kDirections[order % 2]);
    if (order <= 25) roundTripRestores(order);
    zepSelectVariantAuto();
}

INSTANTIATE_TEST_SUITE_P(Variants, FftHuge,
                         testing::Values(Huge{"m7", 25}, Huge{"n8", 24}, Huge{"y8", 23},
                                         Huge{"y8", 25}, Huge{"e9", 23}, Huge{"e9", 24},
                                         Huge{"e9", 25}, Huge{"y8", 26}, Huge{"e9", 26},
                                         Huge{"e9", 27}, Huge{"y8", 28}, Huge{"e9", 28}),
                         [](const auto& huge) {
                             return std::string(huge.param.tag) + "_" +
                                    std::to_string(huge.param.order);
                         });

ZEP_FOR_EACH_VARIANT(FftLong);

}  // namespace
}  // namespace zep::test
