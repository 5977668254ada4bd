// Complex powers z^w = exp(w ln z).
//
// Blocks in double precision: ln|z| from the exact sum of squares, the angle from a table of arcs
// and a short series, the product, exponential, sine and cosine. What that loses is bounded, in
// units of 2^-51, by (|re w| + |im w|) (|ln|z|| + |angle| + 1); an element for which the bound could
// show in a part of the result, and every special one, is computed alone.
#include "core/variant_exports.h"
#include "simd/x87.h"
#include "vmath/accurate_complex.h"
#include "vmath/power_kernel.h"
#include "vmath/sincos_kernel.h"

namespace zep::ZEP_VARIANT {
namespace vmath {
namespace {

using simd::DoublePair;
struct SinCosEntry {
    double sin, sinLow, cos, cosLow;
};
#include "vmath/sincos_tables.inc"

using D = simd::Native<double>;

// The angle of (x, y) from the larger and the smaller magnitude and c = k/16 near their quotient:
// atan(b/a) = atan(c) + atan(u), u = (b - c a) / (a + c b), |u| <= 1/31.
template <simd::FloatVec W>
[[gnu::always_inline]] inline W angleOf(W x, W y, W a, W b, W c) {
    const auto at = [](double v) { return W::broadcast(v); };
    const auto index = simd::lanesAs<std::int64_t>(mulAdd(c, at(16.0), at(kDoubleRounder)));
    W arc;
    if constexpr (simd::kRegisterTable<typename W::Scalar> == 16)
        arc = lookUp(kAtan16, index);
    else
        arc = entriesAt(kAtan16, index & LongsOf<W>::broadcast(15));
    const W u = negMulAdd(c, a, b) / mulAdd(c, b, a);
    const W t = u * u;
    const auto& k = kAtanCoefficients;
    const W p = mulAdd(mulAdd(mulAdd(t, at(k[3]), at(k[2])), t, at(k[1])), t, at(k[0]));
    const W first = arc + mulAdd(p * t, u, u);
    const W half = select(abs(x) < abs(y), at(1.5707963267948966) - first, first);
    const W upper = select(x < W::zero(), at(3.141592653589793) - half, half);
    return upper | (y & simd::signBits<W>());
}

template <simd::FloatVec W>
struct Power {
    W re, im;
    typename W::M good;
};

template <simd::FloatVec W>
[[gnu::always_inline]] inline Power<W> powerOf(W x, W y, W a, W b, W c, W re, W im) {
    const auto at = [](double v) { return W::broadcast(v); };
    const W s = mulAdd(x, x, y * y);
    const W ln = doubleLn<LnFor::ComplexPower>(s) * at(0.5);
    const W angle = angleOf(x, y, a, b, c);
    const W p = re * ln - im * angle, q = re * angle + im * ln;
    const W e = doubleExp(p);
    const auto [sin, cos] = doubleSinCos(q);
    const W least = min(abs(sin), abs(cos));
    const W lost = (abs(re) + abs(im)) * (abs(ln) + abs(angle) + at(1.0)) * at(0x1p-51);
    // Below 2^-28 of the smaller part; parts stay normal. Comparisons with NaN are false.
    const auto good = (lost <= least * at(0x1p-28)) & (abs(p) <= at(60.0)) &
                      (abs(q) <= at(static_cast<double>(kReducedTo))) & (s <= at(0x1p250)) &
                      (at(0x1p-290) <= s);
    return {e * cos, e * sin, good};
}

// lanes(V) elements; true where the result is good.
[[gnu::always_inline]] inline std::uint64_t powers(V x, V y, V re, V im, V& resultRe, V& resultIm) {
    const V ax = abs(x), ay = abs(y);
    const V a = max(ax, ay), b = min(ax, ay);
    constexpr float kRound = 12582912.0f;
    const V k = min((b / a * 16.0f + kRound) - kRound, V::broadcast(15.0f));
    const V c = k * 0.0625f;
    const auto lo = powerOf(widenLow(x), widenLow(y), widenLow(a), widenLow(b), widenLow(c),
                            widenLow(re), widenLow(im));
    const auto hi = powerOf(widenHigh(x), widenHigh(y), widenHigh(a), widenHigh(b), widenHigh(c),
                            widenHigh(re), widenHigh(im));
    resultRe = narrow(lo.re, hi.re);
    resultIm = narrow(lo.im, hi.im);
    return bits(lo.good) | bits(hi.good) << D::lanes;
}

struct Block {
    Zep32fc at[V::lanes];
};
[[gnu::always_inline]] inline void load(const Zep32fc* p, V& re, V& im) {
    const auto* f = reinterpret_cast<const Zep32f*>(p);
    const V a = V::load(f), b = V::load(f + V::lanes);
    re = allEvens(a, b);
    im = allOdds(a, b);
}

// count elements of z and w, at most V::lanes, to dst.
[[gnu::noinline]] void block(const Zep32fc* z, const Zep32fc* w, Zep32fc* dst, int count) {
    alignas(64) Block base, exponent, result;
    const std::size_t bytes = static_cast<std::size_t>(count) * sizeof(Zep32fc);
    for (int n = count; n < V::lanes; ++n) base.at[n] = exponent.at[n] = {2.0f, 1.0f};
    __builtin_memcpy(base.at, z, bytes);
    __builtin_memcpy(exponent.at, w, bytes);
    V x, y, re, im, resultRe, resultIm;
    load(base.at, x, y);
    load(exponent.at, re, im);
    const std::uint64_t good = powers(x, y, re, im, resultRe, resultIm);
    auto* f = reinterpret_cast<Zep32f*>(result.at);
    interleaveFront(resultRe, resultIm).store(f);
    interleaveBack(resultRe, resultIm).store(f + V::lanes);
    for (std::uint64_t left = ~good & simd::lowBits(count); left != 0; left &= left - 1) {
        const int n = __builtin_ctzll(left);
        result.at[n] = accurateComplexPower(base.at[n], exponent.at[n]);
    }
    __builtin_memcpy(dst, result.at, bytes);
}

ZepStatus powersOfVectors(const Zep32fc* z, const Zep32fc* w, Zep32fc* dst, int len) {
    for (std::ptrdiff_t n = 0; n < len; n += V::lanes) {
        const std::ptrdiff_t left = len - n;
        block(z + n, w + n, dst + n, left < V::lanes ? static_cast<int>(left) : V::lanes);
    }
    return zepStsNoErr;
}
ZepStatus powersOfOne(const Zep32fc* z, const Zep32fc* w, Zep32fc* dst, int len) {
    Block exponent;
    for (Zep32fc& e : exponent.at) e = *w;
    for (std::ptrdiff_t n = 0; n < len; n += V::lanes) {
        const std::ptrdiff_t left = len - n;
        block(z + n, exponent.at, dst + n, left < V::lanes ? static_cast<int>(left) : V::lanes);
    }
    return zepStsNoErr;
}

template <auto kernel>
ZepStatus withSettings(const Zep32fc* z, const Zep32fc* w, Zep32fc* dst, int len) {
    return simd::x87::withFullPrecision(kernel, z, w, dst, len);
}

}  // namespace
}  // namespace vmath

ZepStatus zepsPow_32fc_A24(const Zep32fc* pSrc1, const Zep32fc* pSrc2, Zep32fc* pDst, Zep32s len) {
    if (len <= 0) return zepStsSizeErr;
    if (anyNull(pSrc1, pSrc2, pDst)) return zepStsNullPtrErr;
    return simd::withPlainArithmetic(vmath::withSettings<vmath::powersOfVectors>, pSrc1, pSrc2,
                                     pDst, len);
}
ZepStatus zepsPowx_32fc_A24(const Zep32fc* pSrc, Zep32fc val, Zep32fc* pDst, Zep32s len) {
    if (len <= 0) return zepStsSizeErr;
    if (anyNull(pSrc, pDst)) return zepStsNullPtrErr;
    return simd::withPlainArithmetic(vmath::withSettings<vmath::powersOfOne>, pSrc, &val, pDst,
                                     len);
}

}  // namespace zep::ZEP_VARIANT
