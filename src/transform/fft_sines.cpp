#include "transform/fft_sines.h"

#include <cmath>

#include "simd/unroll.h"
#include "simd/vec.h"
#include "transform/fft_sine_constants.h"

namespace zep::ZEP_VARIANT::fft {
namespace {

constexpr int kQuarter = 1 << (kConstantSineOrder - 2);

template <class T>
struct ConstantTable {
    T s[kQuarter + 1];
};
template <class T>
constexpr ConstantTable<T> makeConstantTable() {
    ConstantTable<T> table{};
    for (int k = 0; k <= kQuarter; ++k) table.s[k] = quarterSine<T>(k, 4 * kQuarter);
    return table;
}
template <class T>
constexpr ConstantTable<T> kConstantTable = makeConstantTable<T>();
static_assert(kConstantTable<float>.s[kQuarter] == 1.0f);
static_assert(kConstantTable<double>.s[kQuarter] == 1.0);

using V = simd::Native<double>;

// Horner's rule on kTerms Taylor coefficients 1/first!, -1/(first+2)!, ..., as the compile-time
// series: up to an eighth of a turn both are as good as the library's sine and cosine to within a
// rounding.
constexpr int kTerms = 10;
constexpr double inverseFactorial(int n) { return n <= 1 ? 1.0 : inverseFactorial(n - 1) / n; }

template <int kFirst>
V alternatingSeries(V square) {
    V sum = V::broadcast(0.0);
    simd::unroll<kTerms>([&](auto step) {
        constexpr int n = kTerms - 1 - step;
        constexpr double c = inverseFactorial(kFirst + 2 * n);
        sum = sum * square + V::broadcast(n % 2 == 0 ? c : -c);
    });
    return sum;
}

}  // namespace

template <class T>
Sines<T> constantSines() {
    return {kConstantTable<T>.s, kConstantSineOrder};
}

template <class T>
Sines<T> computedSines(T* table, int order) {
    const std::int64_t quarter = std::int64_t{1} << (order - 2);
    const V step = V::broadcast(kTwoPi / static_cast<double>(4 * quarter));
    double ramp[V::lanes], sines[V::lanes], cosines[V::lanes];
    for (int n = 0; n < V::lanes; ++n) ramp[n] = n;
    // An eighth of the turn gives the whole quarter: the cosines of one half are the sines of the
    // other.
    // From kConstantSineOrder on the eighth is whole vectors.
    static_assert(kQuarter / 2 % V::lanes == 0);
    for (std::int64_t k = 0; k < quarter / 2; k += V::lanes) {
        const V x = (V::load(ramp) + V::broadcast(static_cast<double>(k))) * step, square = x * x;
        (x * alternatingSeries<1>(square)).store(sines);
        alternatingSeries<0>(square).store(cosines);
        for (int n = 0; n < V::lanes; ++n) {
            table[k + n] = static_cast<T>(sines[n]);
            table[quarter - k - n] = static_cast<T>(cosines[n]);
        }
    }
    table[quarter / 2] = static_cast<T>(std::sin(kTwoPi / 8));
    return {table, order};
}

template <class T>
Twiddle<T> directTwiddle(std::uint64_t k, int order) {
    const std::uint64_t quarter = std::uint64_t{1} << (order - 2);
    const double step = kTwoPi / static_cast<double>(4 * quarter);
    const auto quarterSine = [&](std::uint64_t i) {
        return static_cast<T>(i <= quarter / 2 ? std::sin(static_cast<double>(i) * step)
                                               : std::cos(static_cast<double>(quarter - i) * step));
    };
    const std::uint64_t rest = k & (quarter - 1);
    const T s = quarterSine(rest), c = quarterSine(quarter - rest);
    switch ((k >> (order - 2)) & 3) {
        case 0:
            return {c, s};
        case 1:
            return {-s, c};
        case 2:
            return {-c, -s};
        default:
            return {s, -c};
    }
}

template Sines<float> constantSines();
template Sines<double> constantSines();
template Sines<float> computedSines(float*, int);
template Sines<double> computedSines(double*, int);
template Twiddle<float> directTwiddle(std::uint64_t, int);
template Twiddle<double> directTwiddle(std::uint64_t, int);

}  // namespace zep::ZEP_VARIANT::fft
