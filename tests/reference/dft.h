// Fourier transforms in double precision, by definition and by a plain radix-2 algorithm: what the
// transform tests compare with.
#pragma once

#include <complex>
#include <cstddef>
#include <vector>

namespace zep::test {

using Complex = std::complex<double>;

enum class Direction { Forward, Inverse };

// exp(-2*pi*i*k/N) for the forward direction, its conjugate for the inverse; any k, reduced modulo
// N exactly. Within two units in the last place of double: angles are folded to an eighth of a turn
// before the sine is taken.
Complex unitRoot(std::size_t k, std::size_t N, Direction direction = Direction::Forward);

// X[k] = sum over n of x[n] * unitRoot(n * k, N), by definition, unscaled, for any length below
// 2^32.
std::vector<Complex> dft(const std::vector<Complex>& x, Direction direction = Direction::Forward);

// The same for lengths 2^m, by decimation in time.
std::vector<Complex> fft(std::vector<Complex> x, Direction direction = Direction::Forward);

// The first half of a Hermitian spectrum, packed: R(0), R(N/2), R(1), I(1), R(2), .. for even N;
// R(0), R(1), I(1), .. for odd N.
std::vector<double> toPerm(const std::vector<Complex>& spectrum);

// N bins from the packed N values; the upper half by symmetry.
std::vector<Complex> fromPerm(const std::vector<double>& packed);

}  // namespace zep::test
