// Impulses and their spectra, which are known in closed form at any length.
#pragma once

#include <algorithm>

#include "transform/fft_support.h"

namespace zep::test {

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

inline std::vector<Impulse> impulses(int order) {
    const std::size_t N = std::size_t{1} << order;
    // The first, low, middle and high bits of the index, all of them, and any.
    return {{1, {1.0f, 0.0f}},
            {N / 2 + 1, {-0.5f, 0.25f}},
            {N - 1, {0.125f, 0.75f}},
            {(std::size_t{1} << (order / 2)) + 3, {0.375f, -1.0f}},
            {rng()() % N, {-1.0f, 0.5f}}};
}

inline Complex bin(std::size_t k, const std::vector<Impulse>& list, const Roots& root,
                   Direction d) {
    double re = 0, im = 0;
    for (const Impulse& p : list) {
        const Complex w = d == Direction::Forward ? root(p.n * k) : std::conj(root(p.n * k));
        re += p.height.re * w.real() - p.height.im * w.imag();
        im += p.height.re * w.imag() + p.height.im * w.real();
    }
    return {re, im};
}

// Of the parts of the bins, whatever their number.
class WorstError {
public:
    void add(double is, double want) { worst_ = std::max(worst_, std::abs(is - want)); }
    void add(Complex is, Complex want) {
        add(is.real(), want.real());
        add(is.imag(), want.imag());
    }
    operator double() const { return worst_; }

private:
    double worst_ = 0;
};

// In place, which saves memory and is the route that the tests against the reference do not take.
// The error is what the twiddles carry, at most 3 * 2^-24 of the height for each level (a factor
// off by sqrt(1/2) * 2^-24, a product by sqrt(5) * 2^-24), and the sums'.
inline void impulsesBecomeExponentials(int order, Direction direction) {
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
    ASSERT_EQ(ComplexFft(order).run(direction, x.data(), x.data()), zepStsNoErr);
    WorstError worst;
    for (std::size_t k = 0; k < N; ++k) worst.add(toDouble(x[k]), bin(k, list, root, direction));
    EXPECT_LE(worst, 3 * 0x1p-24 * order * height);
}

// The same of a real signal, in the packed format. The fold is one more level, of terms up to twice
// as large.
inline void realImpulsesBecomePackedExponentials(int order) {
    SCOPED_TRACE(testing::Message() << "order " << order);
    const std::size_t N = std::size_t{1} << order;
    const Roots root(order);
    auto list = impulses(order);
    std::vector<Zep32f> x(N);
    double height = 0;
    for (Impulse& p : list) {
        p.height.im = 0;
        x[p.n] += p.height.re;
        height += std::abs(p.height.re);
    }
    ASSERT_EQ(RealFft(order).forward(x.data(), x.data()), zepStsNoErr);
    const auto want = [&](std::size_t k) { return bin(k, list, root, Direction::Forward); };
    WorstError worst;
    worst.add(x[0], want(0).real());
    worst.add(x[1], want(N / 2).real());
    for (std::size_t k = 1; k < N / 2; ++k) worst.add({x[2 * k], x[2 * k + 1]}, want(k));
    EXPECT_LE(worst, 3 * 0x1p-24 * (order + 2) * height);
}

}  // namespace zep::test
