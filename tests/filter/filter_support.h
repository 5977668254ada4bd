// References in double, by the definitions, and their error bounds.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/sweep.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {

using Wide = std::complex<double>;

inline Wide wide(Zep16s x) { return x; }
inline Wide wide(Zep32f x) { return x; }
inline Wide wide(Zep32fc x) { return {x.re, x.im}; }

// A sum of products and the sum of their magnitudes.
struct Sum {
    Wide value = 0;
    double magnitude = 0;
    std::int64_t terms = 0;
    void add(Wide a, Wide b) {
        value += a * b;
        magnitude += std::abs(a) * std::abs(b);
        ++terms;
    }
};

inline constexpr double kEpsilon = 0x1p-24;  // half a unit in the last place of 1

// Any order of summing n float products errs by at most (n + 1) * 2^-24 of their magnitudes (Higham,
// Accuracy and Stability, section 3.1); a complex product has two roundings more in each part, and
// the two parts together at most sqrt(2) times the error of one.
inline double directBound(const Sum& s) {
    return 1.5 * static_cast<double>(s.terms + 4) * kEpsilon * s.magnitude;
}

template <class T>
double norm(const T* x, std::int64_t n) {
    double sum = 0;
    for (std::int64_t i = 0; i < n; ++i) sum += std::norm(wide(x[i]));
    return std::sqrt(sum);
}

// Through transforms of at most 2^order points: each of the three errs by less than 4 * order *
// 2^-24 of its norm (a radix-2 step by 2^-24 for the sum and 3 * 2^-24 for the rotation; Higham,
// section 24.1), the folds by as much as one step more, the product by 2 * 2^-24. With |X * H| <=
// |x| * |h| * N in the spectrum's norm, every output errs by at most that times the norms.
inline double transformBound(int order, double normX, double normH) {
    return (12.0 * (order + 1) + 2) * kEpsilon * normX * normH;
}

template <class T>
std::vector<T> randomVector(std::int64_t n) {
    std::vector<T> x(static_cast<std::size_t>(n));
    fillRandom(x);
    return x;
}

// A copy against an unreadable page.
template <class T>
struct Guarded : GuardedBuffer<T> {
    Guarded(const std::vector<T>& x, Edge edge, int skewBytes = 0)
        : GuardedBuffer<T>(static_cast<int>(x.size()), edge, skewBytes) {
        std::memcpy(this->data(), x.data(), x.size() * sizeof(T));
    }
};

// What stands at a place that may be misaligned.
template <class T>
T at(const T* p, std::int64_t i) {
    T x;
    std::memcpy(&x, reinterpret_cast<const char*>(p) + i * static_cast<std::int64_t>(sizeof(T)),
                sizeof x);
    return x;
}

}  // namespace zep::test
