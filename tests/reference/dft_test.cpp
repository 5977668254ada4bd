#include "reference/dft.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "support/random.h"

namespace zep::test {
namespace {

constexpr Complex i{0, 1};

std::vector<Complex> randomSignal(std::size_t N) {
    std::vector<Complex> x(N);
    for (Complex& v : x) v = {randomValue<double>(), randomValue<double>()};
    return x;
}

void expectClose(const std::vector<Complex>& a, const std::vector<Complex>& b, double tolerance) {
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t k = 0; k < a.size(); ++k)
        ASSERT_LE(std::abs(a[k] - b[k]), tolerance) << "N " << a.size() << " k " << k;
}

// The angle formed here is off by up to three roundings of a value near 2*pi: 3 * 2^-51 = 1.4e-15.
TEST(ReferenceUnitRoot, AgreesWithTheExponentialInEveryOctant) {
    for (const std::size_t N : {1, 2, 3, 4, 5, 7, 8, 12, 16, 97, 1000})
        for (std::size_t k = 0; k < 3 * N; ++k) {
            const double angle =
                2 * std::numbers::pi * static_cast<double>(k % N) / static_cast<double>(N);
            ASSERT_LE(std::abs(unitRoot(k, N) - Complex(std::cos(angle), -std::sin(angle))), 2e-15)
                << N << ' ' << k;
            ASSERT_EQ(unitRoot(k, N, Direction::Inverse), std::conj(unitRoot(k, N)));
        }
}

TEST(ReferenceUnitRoot, IsExactAtQuarterTurns) {
    for (const std::size_t N : {4u, 8u, 1u << 20}) {
        EXPECT_EQ(unitRoot(0, N), Complex(1, 0));
        EXPECT_EQ(unitRoot(N / 4, N), Complex(0, -1));
        EXPECT_EQ(unitRoot(N / 2, N), Complex(-1, 0));
        EXPECT_EQ(unitRoot(3 * N / 4, N), Complex(0, 1));
    }
}

TEST(ReferenceDft, GivesHandComputedValues) {
    EXPECT_EQ(dft({3.0 + 2.0 * i}), (std::vector<Complex>{3.0 + 2.0 * i}));
    EXPECT_EQ(dft({1.0, 5.0}), (std::vector<Complex>{6.0, -4.0}));
    // 1 + 2w + 4w^2 with w = exp(-2*pi*i/3) = -1/2 - i*sqrt(3)/2: real part -2, imaginary part
    // +sqrt(3).
    expectClose(dft({1.0, 2.0, 4.0}), {7.0, -2.0 + std::sqrt(3.0) * i, -2.0 - std::sqrt(3.0) * i},
                1e-14);
    // 1 + 2(-i) + 3(-1) + 5(i) = -2 + 3i at k = 1.
    expectClose(dft({1.0, 2.0, 3.0, 5.0}), {11.0, -2.0 + 3.0 * i, -3.0, -2.0 - 3.0 * i}, 1e-14);
    expectClose(dft({1.0, 2.0, 3.0, 5.0}, Direction::Inverse),
                {11.0, -2.0 - 3.0 * i, -3.0, -2.0 + 3.0 * i}, 1e-14);
    // A complex input: i*(0 1 0 0) gives i*(-i)^k.
    expectClose(dft({0.0, i, 0.0, 0.0}), {i, 1.0, -i, -1.0}, 1e-14);
}

TEST(ReferenceFft, AgreesWithTheDefinition) {
    for (std::size_t N = 1; N <= 2048; N *= 2)
        for (const Direction direction : {Direction::Forward, Direction::Inverse}) {
            const auto x = randomSignal(N);
            expectClose(fft(x, direction), dft(x, direction), 1e-15 * static_cast<double>(N));
        }
    EXPECT_THROW(fft(randomSignal(12)), std::invalid_argument);
    EXPECT_THROW(fft({}), std::invalid_argument);
}

TEST(ReferenceFft, TurnsAnImpulseIntoAnExponentialAtALongLength) {
    constexpr std::size_t N = 1u << 18, n = 77777;
    std::vector<Complex> x(N);
    x[n] = 1;
    const auto X = fft(x);
    for (std::size_t k = 0; k < N; ++k) ASSERT_LE(std::abs(X[k] - unitRoot(n * k, N)), 1e-14) << k;
}

TEST(ReferencePerm, PacksTheLowerHalf) {
    EXPECT_EQ(toPerm({4.0}), (std::vector<double>{4}));
    EXPECT_EQ(toPerm({4.0, 7.0}), (std::vector<double>{4, 7}));
    EXPECT_EQ(toPerm({4.0, 1.0 + 2.0 * i, 1.0 - 2.0 * i}), (std::vector<double>{4, 1, 2}));
    EXPECT_EQ(toPerm({4.0, 1.0 + 2.0 * i, 7.0, 1.0 - 2.0 * i}), (std::vector<double>{4, 7, 1, 2}));
    EXPECT_EQ(toPerm({1.0, 2.0 + 3.0 * i, 4.0 + 5.0 * i, 6.0, 4.0 - 5.0 * i, 2.0 - 3.0 * i}),
              (std::vector<double>{1, 6, 2, 3, 4, 5}));
    EXPECT_EQ(toPerm({1.0, 2.0 + 3.0 * i, 4.0 + 5.0 * i, 4.0 - 5.0 * i, 2.0 - 3.0 * i}),
              (std::vector<double>{1, 2, 3, 4, 5}));
}

TEST(ReferencePerm, UnpacksWhatItPacked) {
    for (std::size_t N = 1; N <= 17; ++N) {
        auto x = randomSignal(N);
        for (Complex& v : x) v = v.real();
        auto X = dft(x);
        X[0] = X[0].real();
        if (N % 2 == 0) X[N / 2] = X[N / 2].real();
        expectClose(fromPerm(toPerm(X)), X, 1e-14 * static_cast<double>(N));
    }
}

}  // namespace
}  // namespace zep::test
