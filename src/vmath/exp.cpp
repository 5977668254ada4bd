// exp(x), to the last bit.
#include "core/variant_exports.h"
#include "vmath/accurate_exp.h"
#include "vmath/raise.h"
#include "vmath/single_bits.h"

namespace zep::ZEP_VARIANT {
namespace vmath {
namespace {

constexpr Zep32f kOverflowsAbove = 88.72283172607422f;
constexpr Zep32f kDenormalBelow = -87.33654022216797f;
constexpr Zep32f kZeroBelow = -103.97207641601563f;
constexpr Zep32f kUsualTo = 87.33654022216797f;

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
