// Sine and cosine of j pi/32 + r by the angle-addition formulas: a table for the former, short
// polynomials for |r| <= pi/64. Arguments from 2^17 on lose their whole turns first, by a product
// with as many bits of 2/pi as matter (Payne and Hanek 1983, "Radian reduction for trigonometric
// functions", ACM SIGNUM 18).
#include "vmath/accurate_sincos.h"

#include <cstdint>

#include "core/variant_exports.h"
#include "simd/look_up.h"
#include "vmath/single_bits.h"

namespace zep::ZEP_VARIANT::vmath {
namespace {

using simd::DoublePair;

struct SinCosEntry {
    double sin, sinLow, cos, cosLow;
};
#include "vmath/sincos_tables.inc"

// x = quadrant * pi/2 + r + low, |r| <= pi/4.
struct Reduced {
    double r, low;
    int quadrant;  // modulo 4
};

// The 128 bits of 2/pi that begin `from` places behind the point.
unsigned __int128 twoOverPiFrom(int from) {
    const int word = from / 64, shift = from % 64;
    const auto at = [](int k) { return k < 4 ? kTwoOverPi[k] : 0; };
    const auto joined = [&](int k) {
        return shift == 0 ? at(k) : at(k) << shift | at(k + 1) >> (64 - shift);
    };
    return static_cast<unsigned __int128>(joined(word)) << 64 | joined(word + 1);
}

// x = m 2^e with m of 53 bits, -35 <= e <= 100. Bits of 2/pi worth 4 or more after the product with
// 2^e are whole turns. What is behind the 128 bits kept is below 2^-73 of a quarter turn.
Reduced withoutTurns(double x) {
    const std::uint64_t bits = bitsOf(x);
    const int e = static_cast<int>(bits >> 52 & 2047) - 1075;
    const std::uint64_t m = (bits & 0x000F'FFFF'FFFF'FFFF) | 0x0010'0000'0000'0000;
    // window * 2^-(from + 128) approximates the part of 2/pi in use, so that m * window, modulo
    // 2^128, has its point below the two top bits.
    const int from = e - 2;
    const unsigned __int128 window = from >= 0 ? twoOverPiFrom(from) : twoOverPiFrom(0) >> -from;
    const unsigned __int128 turns = m * window;
    // To the nearest quadrant, so that the rest is a signed fraction.
    const unsigned __int128 half = static_cast<unsigned __int128>(1) << 125;
    const auto quadrant = static_cast<int>((turns + half) >> 126);
    const auto rest = static_cast<__int128>((turns + half) << 2 >> 2) - static_cast<__int128>(half);
    const auto high = static_cast<std::int64_t>(rest >> 64);
    const auto lowBits = static_cast<std::uint64_t>(rest);
    // In units of 2^-126 quarter turns: a double for the leading part, one for what it left over.
    const double scale = 0x1p-62 * 1.5707963267948966;
    const double leading = static_cast<double>(high);
    const double left = static_cast<double>(high - static_cast<std::int64_t>(leading)) +
                        static_cast<double>(lowBits) * 0x1p-64;
    Reduced result = {leading * scale, left * scale, quadrant & 3};
    if (x < 0.0) result = {-result.r, -result.low, -result.quadrant & 3};
    return result;
}

}  // namespace

SinCosPair accurateSinCos(double x) {
    double low = 0.0;
    int whole = 0;  // in steps of pi/32
    const auto exponent = static_cast<int>(bitsOf(x) >> 52 & 2047);
    if (exponent < 771) {
        if (x == 0.0) return {x, 1.0};
        return {(0x1p55 * x - x) * 0x1p-55, 1.0 - x};
    }
    if (exponent >= 1040) {
        const Reduced reduced = withoutTurns(x);
        x = reduced.r;
        low = reduced.low;
        whole = 16 * reduced.quadrant;
    }
    constexpr double kRound = 6755399441055744.0;  // 1.5 * 2^52
    const double t = x * 10.185916357881302 + kRound;
    const double f = t - kRound;
    const int j = static_cast<int>(static_cast<std::uint32_t>(bitsOf(t))) + whole;
    const double first = x - f * 0.09817477042088285;
    const double product = f * 3.798187816439979e-12;
    double r = first - product;
    low += (first - r) - product;
    low -= f * 1.2639164054974691e-22;
    const double sum = r + low;
    low += r - sum;
    r = sum;
    const double s = r * r;
    const double sine =
        ((2.7557319223985893e-06 * s - 0.0001984126984126984) * s + 0.008333333333333333) * s -
        0.16666666666666666;
    const double cosine =
        ((2.48015873015873e-05 * s - 0.001388888888888889) * s + 0.041666666666666664) * s - 0.5;
    // sin r = r + p, cos r = 1 + q.
    const double p = sine * s * r + low, q = cosine * s - r * low;
    const SinCosEntry& at = kSinCos64[j & 63];
    return {at.sin + (at.cos * r + (at.sinLow + at.cos * p + at.sin * q)),
            at.cos - (at.sin * r - (at.cosLow + at.cos * q - at.sin * p))};
}

}  // namespace zep::ZEP_VARIANT::vmath
