#include "reference/dft.h"

#include <bit>
#include <cmath>
#include <numbers>
#include <stdexcept>
#include <utility>

namespace zep::test {

Complex unitRoot(std::size_t k, std::size_t N, Direction direction) {
    k %= N;
    // 8k/N = octant + rest; the angle within the octant stays below pi/4, where sine and cosine are
    // well conditioned.
    const std::size_t octant = 8 * k / N;
    const auto radians = [N](std::size_t eighths) {
        return static_cast<double>(eighths) * (std::numbers::pi / 4) / static_cast<double>(N);
    };
    const std::size_t above = 8 * k - octant * N;
    const double rise = radians(above), fall = radians(N - above);
    double c = 0, s = 0;  // of 2*pi*k/N
    switch (octant) {
        case 0:
            c = std::cos(rise), s = std::sin(rise);
            break;
        case 1:
            c = std::sin(fall), s = std::cos(fall);
            break;
        case 2:
            c = -std::sin(rise), s = std::cos(rise);
            break;
        case 3:
            c = -std::cos(fall), s = std::sin(fall);
            break;
        case 4:
            c = -std::cos(rise), s = -std::sin(rise);
            break;
        case 5:
            c = -std::sin(fall), s = -std::cos(fall);
            break;
        case 6:
            c = std::sin(rise), s = -std::cos(rise);
            break;
        default:
            c = std::cos(fall), s = -std::sin(fall);
            break;
    }
    return {c, direction == Direction::Forward ? -s : s};
}

std::vector<Complex> dft(const std::vector<Complex>& x, Direction direction) {
    const std::size_t N = x.size();
    std::vector<Complex> root(N), X(N);
    for (std::size_t k = 0; k < N; ++k) root[k] = unitRoot(k, N, direction);
    for (std::size_t k = 0; k < N; ++k)
        for (std::size_t n = 0; n < N; ++n) X[k] += x[n] * root[n * k % N];
    return X;
}

namespace {

// Joins transforms of `half` points, two by two.
void joinPairs(Complex* x, std::size_t n, std::size_t half, const std::vector<Complex>& roots) {
    for (std::size_t block = 0; block < n; block += 2 * half)
        for (std::size_t c = 0; c < half; ++c) {
            // Written out: the library's complex product tests for infinities.
            const Complex a = x[block + c], b = x[block + half + c], w = roots[half + c];
            const Complex wb{w.real() * b.real() - w.imag() * b.imag(),
                             w.real() * b.imag() + w.imag() * b.real()};
            x[block + c] = a + wb;
            x[block + half + c] = a - wb;
        }
}

// The transform of n values in bit-reversed order, by halves until they fit the cache.
void join(Complex* x, std::size_t n, const std::vector<Complex>& roots) {
    constexpr std::size_t kCached = 2048;
    if (n <= kCached) {
        for (std::size_t half = 1; half < n; half *= 2) joinPairs(x, n, half, roots);
        return;
    }
    join(x, n / 2, roots);
    join(x + n / 2, n / 2, roots);
    joinPairs(x, n, n / 2, roots);
}

}  // namespace

std::vector<Complex> fft(std::vector<Complex> x, Direction direction) {
    const std::size_t N = x.size();
    if (N == 0 || (N & (N - 1)) != 0)
        throw std::invalid_argument("fft: the length is no power of two");
    for (std::size_t i = 0, reversed = 0; i < N; ++i) {
        if (i < reversed) std::swap(x[i], x[reversed]);
        std::size_t bit = N / 2;
        for (; bit != 0 && (reversed & bit) != 0; bit /= 2) reversed ^= bit;
        reversed |= bit;
    }
    // roots[half + c] turns column c of the butterflies that join two transforms of `half` points.
    std::vector<Complex> roots(N);
    for (std::size_t c = 0; c < N / 2; ++c) roots[N / 2 + c] = unitRoot(c, N, direction);
    for (std::size_t i = N / 2; i-- > 1;) {
        const std::size_t half = std::bit_floor(i);
        roots[i] = roots[2 * half + 2 * (i - half)];
    }
    join(x.data(), N, roots);
    return x;
}

std::vector<double> toPerm(const std::vector<Complex>& spectrum) {
    const std::size_t N = spectrum.size();
    std::vector<double> packed;
    packed.reserve(N);
    packed.push_back(spectrum[0].real());
    if (N % 2 == 0) packed.push_back(spectrum[N / 2].real());
    for (std::size_t k = 1; packed.size() < N; ++k) {
        packed.push_back(spectrum[k].real());
        packed.push_back(spectrum[k].imag());
    }
    return packed;
}

std::vector<Complex> fromPerm(const std::vector<double>& packed) {
    const std::size_t N = packed.size();
    std::vector<Complex> spectrum(N);
    const std::size_t first = N % 2 == 0 ? 2 : 1;  // where R(1) stands
    spectrum[0] = packed[0];
    if (first == 2) spectrum[N / 2] = packed[1];
    for (std::size_t k = 1, at = first; at < N; ++k, at += 2) {
        spectrum[k] = {packed[at], packed[at + 1]};
        spectrum[N - k] = std::conj(spectrum[k]);
    }
    return spectrum;
}

}  // namespace zep::test
