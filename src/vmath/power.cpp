// x to the power y, for vectors of exponents and for one exponent: exp(y ln x) in double precision.
#include "core/variant_exports.h"
#include "vmath/accurate_log.h"
#include "vmath/power_kernel.h"
#include "vmath/raise.h"
#include "vmath/single_bits.h"

namespace zep::ZEP_VARIANT {
namespace vmath {
namespace {

// Beyond it a power of single precision is infinite or zero (ln 2^128 < 89, ln 2^-150 > -104), so
// that clamping changes no result.
constexpr double kLargest = 708.0;

enum class Parity { None, Odd, Even };

// Of a number as an exponent: not whole, odd or even. y is not NaN.
Parity parityOf(Zep32f y) {
    const Zep32f magnitude = __builtin_fabsf(y);
    if (magnitude >= 0x1p24f) return Parity::Even;
    const auto whole = static_cast<std::int32_t>(magnitude);
    if (static_cast<Zep32f>(whole) != magnitude) return Parity::None;
    return whole % 2 != 0 ? Parity::Odd : Parity::Even;
}

// Positive finite x, finite y.
Zep32f positivePower(Zep32f x, Zep32f y) {
    double w = static_cast<double>(y) * accurateLn(static_cast<double>(x));
    w = w > kLargest ? kLargest : w < -kLargest ? -kLargest : w;
    using Doubles = simd::Native<double>;
    return static_cast<Zep32f>(first(doubleExp(Doubles::broadcast(w))));
}

// Every case of infinity, zero and sign.
Zep32f anyPower(Zep32f x, Zep32f y, ZepStatus& status) {
    if (y == 0.0f || x == 1.0f) return 1.0f;
    if (isNan(x)) return quiet(x);
    if (isNan(y)) return quiet(y);
    const Zep32f magnitude = __builtin_fabsf(x);
    if (!isFinite(y)) {
        if (x == 0.0f && y < 0.0f) {
            status = raiseDomain();
            return kInfinity;
        }
        if (magnitude == 1.0f) return 1.0f;
        return (magnitude > 1.0f) == (y > 0.0f) ? kInfinity : 0.0f;
    }
    const Parity parity = parityOf(y);
    const bool negative = isNegative(x);
    const Zep32f sign = negative && parity == Parity::Odd ? -1.0f : 1.0f;
    if (magnitude == 0.0f) {
        if (y > 0.0f) return sign * 0.0f;
        status = raiseDomain();
        return sign * kInfinity;
    }
    if (magnitude == kInfinity) return sign * (y > 0.0f ? kInfinity : 0.0f);
    if (negative && parity == Parity::None) {
        status = raiseDomain();
        return invalid();
    }
    return sign * positivePower(magnitude, y);
}

struct Power {
    static constexpr int kOutputs = 1;

    // Of the exponents only NaN and the infinities are left out; zero and denormals serve.
    [[gnu::always_inline]] M usual(V (&result)[1], V x, V y) const {
        result[0] = narrow(half(widenLow(x), widenLow(y)), half(widenHigh(x), widenHigh(y)));
        return notPositiveNormal(x) | !(abs(y) <= V::broadcast(0x1.fffffep127f));
    }
    void exact(Zep32f* result, ZepStatus& status, Zep32f x, Zep32f y) const {
        *result = anyPower(x, y, status);
    }

private:
    template <simd::FloatVec W>
    [[gnu::always_inline]] static W half(W x, W y) {
        const W w = y * doubleLn<LnFor::RealPower>(x);
        return doubleExp(max(min(w, W::broadcast(kLargest)), W::broadcast(-kLargest)));
    }
};

// The same with one exponent.
struct PowerConstant {
    static constexpr int kOutputs = 1;
    Zep32f y;

    [[gnu::always_inline]] M usual(V (&result)[1], V x) const {
        return Power{}.usual(result, x, V::broadcast(y));
    }
    void exact(Zep32f* result, ZepStatus& status, Zep32f x) const {
        *result = anyPower(x, y, status);
    }
};

ZepStatus powers(const Zep32f* x, const Zep32f* y, Zep32f* dst, int len) {
    return overBlocks(Power{}, {{dst}}, len, x, y);
}
ZepStatus powersOfOne(const Zep32f* x, Zep32f y, Zep32f* dst, int len) {
    return overBlocks(PowerConstant{y}, {{dst}}, len, x);
}

}  // namespace
}  // namespace vmath

ZepStatus zepsPow_32f_A24(const Zep32f* pSrc1, const Zep32f* pSrc2, Zep32f* pDst, Zep32s len) {
    if (const ZepStatus s = checkVectors(len, pSrc1, pSrc2, pDst); s != zepStsNoErr) return s;
    return simd::withPlainArithmetic(vmath::powers, pSrc1, pSrc2, pDst, len);
}
ZepStatus zepsPowx_32f_A24(const Zep32f* pSrc, Zep32f val, Zep32f* pDst, Zep32s len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    return simd::withPlainArithmetic(vmath::powersOfOne, pSrc, val, pDst, len);
}

}  // namespace zep::ZEP_VARIANT
