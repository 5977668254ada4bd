// z^w = exp(w ln z), the logarithm in the processor's 80-bit format: where |z| is near 1 it cancels,
// and a large w multiplies what it lost.
#include "vmath/accurate_complex.h"

#include "core/variant_exports.h"
#include "simd/x87.h"
#include "vmath/accurate_exp.h"
#include "vmath/accurate_sincos.h"
#include "vmath/raise.h"
#include "vmath/single_bits.h"

namespace zep::ZEP_VARIANT::vmath {
namespace {

constexpr double kInf = __builtin_inf();

bool isNan(double x) { return x != x; }
bool isInfinite(double x) { return x == kInf || x == -kInf; }
bool isFinite(double x) { return !isNan(x) && !isInfinite(x); }

// The parts come from single precision numbers: their squares are exact in the 80-bit format.
Zep64fc complexLog(double re, double im) {
    if (isNan(re)) return {re * re, isInfinite(im) ? im * im : im * re};
    if (isNan(im)) return {im * im, isInfinite(re) ? re * re : im * im};
    const auto angle = static_cast<double>(
        simd::x87::angle(static_cast<long double>(im), static_cast<long double>(re)));
    if (isInfinite(re) || isInfinite(im)) return {kInf, angle};
    const long double x = __builtin_fabs(re), y = __builtin_fabs(im);
    const long double a = x > y ? x : y, b = x > y ? y : x;
    const long double s = a * a + b * b;
    if (s == 0.0L) return {-kInf, angle};
    // Near the unit circle a^2 - 1 is exact, and so is its sum with b^2 where the two cancel.
    const long double nearOne = (a * a - 1.0L) + b * b;
    const long double ln =
        __builtin_fabsl(nearOne) <= 0.03L ? simd::x87::lnOnePlus(nearOne) : simd::x87::ln(s);
    return {static_cast<double>(0.5L * ln), angle};
}

// factor * exp(x), x finite; a product that is a single precision number is right even where
// exp(x) would overflow.
double timesExp(double factor, double x) {
    if (x >= 2048.0) return factor * kInf;
    if (x <= -2048.0) return factor * 0.0;
    if (__builtin_fabs(x) <= 700.0) return factor * accurateExp(x);
    const double quarter = accurateExp(0.25 * x);
    return factor * quarter * quarter * quarter * quarter;
}

Zep64fc complexExp(double x, double y) {
    if (isNan(x)) return {x, x};
    if (!isFinite(y)) {
        if (x == -kInf) return {0.0, __builtin_copysign(0.0, y)};
        const double invalid = y - y;
        return {x == kInf ? x : invalid, invalid};
    }
    const auto [sin, cos] = accurateSinCos(y);
    if (x == kInf) return {y == 0.0 ? x : x * cos, y == 0.0 ? y : x * sin};
    if (x == -kInf) return {y == 0.0 ? 0.0 : 0.0 * cos, y == 0.0 ? y : 0.0 * sin};
    if (y == 0.0) return {timesExp(1.0, x), y};
    return {timesExp(cos, x), timesExp(sin, x)};
}

bool isDenormal(Zep32f x) { return (bitsOf(x) & 0x7F800000) == 0 && (bitsOf(x) & 0x7FFFFF) != 0; }

}  // namespace

Zep32fc accurateComplexPower(Zep32fc z, Zep32fc w) {
    const Zep64fc ln = complexLog(static_cast<double>(z.re), static_cast<double>(z.im));
    const auto re = static_cast<double>(w.re), im = static_cast<double>(w.im);
    const Zep64fc p = complexExp(re * ln.re - im * ln.im, re * ln.im + im * ln.re);
    const Zep32fc result = {static_cast<Zep32f>(p.re), static_cast<Zep32f>(p.im)};
    if (isDenormal(result.re) || isDenormal(result.im)) raiseUnderflow();
    return result;
}

}  // namespace zep::ZEP_VARIANT::vmath
