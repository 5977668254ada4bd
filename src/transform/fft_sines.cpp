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
    T s[waveEntries(kConstantSineOrder)];
};
template <class T>
constexpr ConstantTable<T> makeConstantTable() {
    ConstantTable<T> table{};
    for (int k = 0; k <= kQuarter; ++k) table.s[k] = quarterSine<T>(k, 4 * kQuarter);
    int from = 0, to = kQuarter + 1;
    for (int quarter = kQuarter / 2; quarter > 0; from = to - (quarter + 1), quarter /= 2)
        for (int k = 0; k <= quarter; ++k) table.s[to++] = table.s[from + 2 * k];
    return table;
}
template <class T>
constexpr ConstantTable<T> kConstantTable = makeConstantTable<T>();
static_assert(kConstantTable<float>.s[kQuarter] == 1.0f);
static_assert(kConstantTable<double>.s[kQuarter] == 1.0);
static_assert(kConstantTable<double>.s[waveEntries(kConstantSineOrder) - 1] == 1.0);

using V = simd::Native<double>;

// Horner's rule on kTerms Taylor coefficients 1/first!, -1/(first+2)!, ..., as the compile-time
// series: up to an eighth of a turn both are as good as the library's sine and cosine to within a
// rounding.
constexpr int kTerms = 10;
constexpr double inverseFactorial(int n) { return n <= 1 ? 1.0 : inverseFactorial(n - 1) / n; }

template <int kFirst>
[[gnu::always_inline]] inline V alternatingSeries(V square) {
    V sum = V::broadcast(0.0);
    simd::unroll<kTerms>([&](auto step) {
        constexpr int n = kTerms - 1 - step;
        constexpr double c = inverseFactorial(kFirst + 2 * n);
        sum = sum * square + V::broadcast(n % 2 == 0 ? c : -c);
    });
    return sum;
}

// Rounded to T: as many double vectors as one of T holds.
void storeRounded(const V (&x)[1], double* to, bool reversed) {
    (reversed ? reverse(x[0]) : x[0]).store(to);
}
void storeRounded(const V (&x)[2], float* to, bool reversed) {
    const auto y = narrow(x[0], x[1]);
    (reversed ? reverse(y) : y).store(to);
}

// Every other entry.
template <class T>
void halve(const T* from, T* to, std::int64_t entries) {
    using F = simd::Native<T>;
    std::int64_t k = 0;
    for (; k + F::lanes < entries; k += F::lanes)
        allEvens(F::load(from + 2 * k), F::load(from + 2 * k + F::lanes)).store(to + k);
    for (; k < entries; ++k) to[k] = from[2 * k];
}

}  // namespace

template <class T>
Sines<T> constantSines() {
    return {kConstantTable<T>.s, kConstantSineOrder};
}

template <class T>
Sines<T> computedSines(T* table, int order) {
    constexpr int kVectors = simd::Native<T>::lanes / V::lanes, kStep = kVectors * V::lanes;
    const std::int64_t quarter = std::int64_t{1} << (order - 2);
    const V step = V::broadcast(kTwoPi / static_cast<double>(4 * quarter));
    double ramp[kStep];
    for (int n = 0; n < kStep; ++n) ramp[n] = n;
    // An eighth of the turn gives the whole quarter: the cosines of one half are the sines of the
    // other.
    // From kConstantSineOrder on the eighth is whole vectors.
    static_assert(kQuarter / 2 % kStep == 0);
    for (std::int64_t k = 0; k < quarter / 2; k += kStep) {
        V sines[kVectors], cosines[kVectors];
        simd::unroll<kVectors>([&](auto n) __attribute__((always_inline)) {
            const V x =
                (V::load(ramp + n * V::lanes) + V::broadcast(static_cast<double>(k))) * step;
            const V square = x * x;
            sines[n] = x * alternatingSeries<1>(square);
            cosines[n] = alternatingSeries<0>(square);
        });
        storeRounded(sines, table + k, false);
        storeRounded(cosines, table + (quarter - k - kStep + 1), true);
    }
    table[quarter / 2] = static_cast<T>(std::sin(kTwoPi / 8));
    T* from = table;
    for (std::int64_t half = quarter / 2; half > 0; half /= 2) {
        T* to = from + (2 * half + 1);
        halve(from, to, half + 1);
        from = to;
    }
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
