#include "transform/exact_dft.h"

#include <cmath>

namespace zep::bench {
namespace {

constexpr std::size_t kLargestFactor = 150;

std::size_t smallestFactor(std::size_t n) {
    for (std::size_t p = 2; p * p <= n; ++p)
        if (n % p == 0) return p;
    return n;
}
std::size_t largestFactor(std::size_t n) {
    std::size_t p = 1;
    for (; n > 1; n /= p) p = smallestFactor(n);
    return p;
}

// Without the library's care for infinities.
Extended product(Extended a, Extended b) {
    return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

// exp(-2*pi*i*k/N), k = 0 .. N-1.
std::vector<Extended> rootsOf(std::size_t N) {
    std::vector<Extended> roots(N);
    for (std::size_t k = 0; k < N; ++k) {
        const long double angle = 6.283185307179586476925286766559L * static_cast<long double>(k) /
                                  static_cast<long double>(N);
        roots[k] = {std::cos(angle), -std::sin(angle)};
    }
    return roots;
}

}  // namespace

// n*k is (n^2 + k^2 - (k-n)^2) / 2; squares are taken modulo 2N.
struct ExactDft::Chirp {
    explicit Chirp(std::size_t N) : weights(N), inner(lengthFor(N)) {
        const std::vector<Extended> roots = rootsOf(2 * N);
        std::vector<Extended> kernel(inner.roots_.size());
        for (std::size_t n = 0; n < N; ++n) {
            weights[n] = roots[n * n % (2 * N)];
            kernel[n] = kernel[(kernel.size() - n) % kernel.size()] = std::conj(weights[n]);
        }
        spectrum.resize(kernel.size());
        inner.run(kernel.data(), spectrum.data());
    }

    static std::size_t lengthFor(std::size_t N) {
        std::size_t length = 1;
        while (length < 2 * N - 1) length *= 2;
        return length;
    }

    void run(const Extended* x, Extended* X) const {
        const std::size_t M = spectrum.size();
        std::vector<Extended> a(M), b(M);
        for (std::size_t n = 0; n < weights.size(); ++n) a[n] = product(x[n], weights[n]);
        inner.run(a.data(), b.data());
        // The inverse transform is the conjugate of the forward one of conjugates.
        for (std::size_t n = 0; n < M; ++n) b[n] = std::conj(product(b[n], spectrum[n]));
        inner.run(b.data(), a.data());
        for (std::size_t n = 0; n < weights.size(); ++n)
            X[n] = product(std::conj(a[n]), weights[n]) / static_cast<long double>(M);
    }

    std::vector<Extended> weights, spectrum;
    ExactDft inner;
};

ExactDft::ExactDft(std::size_t N) : roots_(rootsOf(N)) {
    if (largestFactor(N) > kLargestFactor) chirp_ = std::make_unique<Chirp>(N);
}
ExactDft::~ExactDft() = default;

void ExactDft::run(const Extended* x, Extended* X) const {
    if (chirp_ != nullptr)
        chirp_->run(x, X);
    else
        points(roots_.size(), x, 1, X);
}

// n points, `stride` apart.
void ExactDft::points(std::size_t n, const Extended* x, std::size_t stride, Extended* X) const {
    if (n == 1) {
        X[0] = x[0];
        return;
    }
    const std::size_t p = smallestFactor(n), m = n / p;
    for (std::size_t j = 0; j < p; ++j) points(m, x + j * stride, p * stride, X + j * m);
    join(p, n, X);
}

void ExactDft::join(std::size_t p, std::size_t n, Extended* X) const {
    const std::size_t m = n / p, step = roots_.size() / n;
    Extended leg[kLargestFactor];
    for (std::size_t k = 0; k < m; ++k) {
        for (std::size_t j = 0; j < p; ++j) leg[j] = product(X[k + j * m], roots_[j * k * step]);
        if (p == 2) {
            X[k] = leg[0] + leg[1];
            X[k + m] = leg[0] - leg[1];
            continue;
        }
        for (std::size_t q = 0; q < p; ++q) {
            Extended sum = leg[0];
            for (std::size_t j = 1; j < p; ++j)
                sum += product(leg[j], roots_[j * q % p * m * step]);
            X[k + q * m] = sum;
        }
    }
}

}  // namespace zep::bench
