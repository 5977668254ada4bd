// exp(x), to the last bit.
#include "core/variant_exports.h"
#include "vmath/exp_kernel.h"
#include "vmath/raise.h"
#include "vmath/single_bits.h"

namespace zep::ZEP_VARIANT {
namespace vmath {
namespace {

constexpr Zep32f kOverflowsAbove = 88.72283172607422f;
constexpr Zep32f kDenormalBelow = -87.33654022216797f;
constexpr Zep32f kZeroBelow = -103.97207641601563f;
constexpr Zep32f kUsualTo = 87.33654022216797f;

// exp(x) in double precision, relative error below 2^-48, for |x| up to 104: 2^(j/64) from a table
// in two parts, and a polynomial for the rest.
double accurateExp(double x) {
    constexpr double kRound = 6755399441055744.0;  // 1.5 * 2^52
    const double t = x * 92.33248261689366 + kRound;
    const auto j = static_cast<std::int32_t>(bitsOf(t));
    const double f = t - kRound;
    const double r = x - f * 2.572804622327669e-14 - f * 0.010830424696223417;
    const double p =
        ((((r * 0.0013888870459233254 + 0.008333341995140497) * r + 0.04166666666677052) * r +
          0.1666666666665788) *
             r +
         0.5) *
            (r * r) +
        r;
    const DoublePair& entry = kExp64[j & 63];
    const double y = entry.first + (entry.second + entry.first * p);
    return doubleOf(bitsOf(y) + (static_cast<std::uint64_t>(j >> 6) << 52));
}

struct ExpAccurate {
    static constexpr int kOutputs = 1;

    [[gnu::always_inline]] M usual(V (&y)[1], V x) const {
        y[0] = expOf(x);
        return !(abs(x) <= V::broadcast(kUsualTo));
    }
    // Doubles hold what is denormal in single precision, and what overflows there: one conversion
    // rounds either.
    void exact(Zep32f* y, ZepStatus& status, Zep32f x) const {
        if (!isFinite(x)) {
            *y = x == -kInfinity ? 0.0f : x * x;
        } else if (x > kOverflowsAbove) {
            *y = kInfinity;
            status = raiseOverflow();
        } else if (x < kZeroBelow) {
            *y = 0.0f;
            status = raiseUnderflow();
        } else {
            *y = static_cast<Zep32f>(accurateExp(static_cast<double>(x)));
            if (x < kDenormalBelow) status = raiseUnderflow();
        }
    }
};

ZepStatus exponentials(const Zep32f* x, Zep32f* y, int len) {
    return overBlocks(ExpAccurate{}, {{y}}, len, x);
}

}  // namespace
}  // namespace vmath

ZepStatus zepsExp_32f_A24(const Zep32f* pSrc, Zep32f* pDst, Zep32s len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    return simd::withPlainArithmetic(vmath::exponentials, pSrc, pDst, len);
}

}  // namespace zep::ZEP_VARIANT
