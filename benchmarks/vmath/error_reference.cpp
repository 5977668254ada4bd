// Compiled for the machine itself.
#include "vmath/error_reference.h"

#include <immintrin.h>
#include <mpfr.h>
#include <sleef.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace zep::bench {
namespace {

#if defined(__AVX512F__)
using D = __m512d;
constexpr int kLanes = 8;
D widened(const float* p) { return _mm512_cvtps_pd(_mm256_loadu_ps(p)); }
void store(double* p, D v) { _mm512_storeu_pd(p, v); }
// NaN stays, as the second operand.
D clamped(D v) {
    return _mm512_min_pd(_mm512_set1_pd(130), _mm512_max_pd(_mm512_set1_pd(-130), v));
}
#define ZEP_SLEEF(f) Sleef_##f##d8_u10
#else
using D = __m256d;
constexpr int kLanes = 4;
D widened(const float* p) { return _mm256_cvtps_pd(_mm_loadu_ps(p)); }
void store(double* p, D v) { _mm256_storeu_pd(p, v); }
// NaN stays, as the second operand.
D clamped(D v) {
    return _mm256_min_pd(_mm256_set1_pd(130), _mm256_max_pd(_mm256_set1_pd(-130), v));
}
#define ZEP_SLEEF(f) Sleef_##f##d4_u10
#endif

template <class F>
void each(const float* x, double* y, int count, F f) {
    for (int n = 0; n < count; n += kLanes) store(y + n, f(widened(x + n)));
}

// From here on a number rounds to infinity.
constexpr double kBeyond = 0x1.ffffffp127;
constexpr double kLeastCounted = 0x1p-12;

// 2 to the 23 less the exponent of x, that of the least normal number at least: units of the last place in 1.
double unitsIn(double x) {
    const auto exponent = static_cast<std::int64_t>(std::bit_cast<std::uint64_t>(x) >> 52 & 2047);
    const std::int64_t counted = std::max<std::int64_t>(exponent, 1023 - 126);
    return std::bit_cast<double>(static_cast<std::uint64_t>(2 * 1023 + 23 - counted) << 52);
}

}  // namespace

void reference(Exact f, const float* x, double* first, double* second, int count) {
    switch (f) {
        case Exact::Exp:
            return each(x, first, count, [](D v) { return ZEP_SLEEF(exp)(clamped(v)); });
        case Exact::Ln:
            return each(x, first, count, [](D v) { return ZEP_SLEEF(log)(v); });
        case Exact::Log10:
            return each(x, first, count, [](D v) { return ZEP_SLEEF(log10)(v); });
        case Exact::SinCos:
            for (int n = 0; n < count; n += kLanes) {
                const auto r = ZEP_SLEEF(sincos)(widened(x + n));
                store(first + n, r.x);
                store(second + n, r.y);
            }
    }
}

void referencePower(const float* x, const float* b, double* y, int count) {
    for (int n = 0; n < count; n += kLanes)
        store(y + n, ZEP_SLEEF(pow)(widened(x + n), widened(b + n)));
}

bool unitsOff(const float* y, const double* exact, double* error, double* relative, int count) {
    std::int64_t beyond = 0;
    for (int n = 0; n < count; ++n) {
        const double off = std::fabs(static_cast<double>(y[n]) - exact[n]);
        const double size = std::fabs(exact[n]);
        error[n] = off * unitsIn(exact[n]);
        relative[n] = off / (size > kLeastCounted ? size : kLeastCounted);
        // NaN and infinite results too: their distance is not less.
        beyond |= static_cast<std::int64_t>(!(size < kBeyond)) |
                  static_cast<std::int64_t>(!(off < 0x1p200));
    }
    return beyond == 0;
}

double unitsOff(float y, double exact) {
    if (std::isnan(exact)) return std::isnan(y) ? 0 : 1e9;
    if (std::fabs(exact) >= kBeyond)
        return std::isinf(y) && std::signbit(y) == std::signbit(exact) ? 0 : 1e9;
    if (!std::isfinite(y)) return 1e9;
    return std::fabs(static_cast<double>(y) - exact) * unitsIn(exact);
}

double exactly(Exact f, float x, bool second) {
    mpfr_t v;
    mpfr_init2(v, 53);
    mpfr_set_flt(v, x, MPFR_RNDN);
    switch (f) {
        case Exact::Exp:
            mpfr_exp(v, v, MPFR_RNDN);
            break;
        case Exact::Ln:
            mpfr_log(v, v, MPFR_RNDN);
            break;
        case Exact::Log10:
            mpfr_log10(v, v, MPFR_RNDN);
            break;
        case Exact::SinCos:
            second ? mpfr_cos(v, v, MPFR_RNDN) : mpfr_sin(v, v, MPFR_RNDN);
    }
    const double y = mpfr_get_d(v, MPFR_RNDN);
    mpfr_clear(v);
    return y;
}

}  // namespace zep::bench
