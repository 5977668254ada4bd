// exp(x) in place, without a class.
//
// Where a level has the exponential of exp_kernel.h in registers that is used; elsewhere
// exp(r) = (b + a) / (b - a), a = r (r^2 + 60), b = 12 (r^2 + 10), the Pade form of order [3/3], with
// a reciprocal estimate and one Newton step for the quotient.
#include "core/variant_exports.h"
#include "vmath/exp_kernel.h"
#include "vmath/single_bits.h"

namespace zep::ZEP_VARIANT {
namespace vmath {
namespace {

constexpr Zep32f kZeroTo = -87.33650207519531f;
constexpr Zep32f kInfiniteAbove = 87.0999984741211f;

template <simd::FloatVec W>
[[gnu::always_inline]] inline W expWithoutTable(W x) {
    const W rounder = W::broadcast(kRounder) | (x & simd::signBits<W>());
    const W t = x * 1.4426950216293335f + rounder;
    const W f = t - rounder;
    const W r = x - f * 0.693359375f + f * 0.00021219444170128554f;
    const W u = r * r;
    const W a = r * (u + 60.0f), b = (u + 10.0f) * 12.0f;
    const W d = b - a;
    const W e = reciprocalEstimate(d);
    const W reciprocal = e * (W::broadcast(2.0f) - d * e);
    // The rounder's own bits are above the 23 that an exponent is shifted by, its sign apart: with
    // the sign of x they count down.
    const auto n = toInt(f);
    const W scale = simd::lanesAs<float>((n << 23) + IntsOf<W>::broadcast(0x3F800000));
    return (b + a) * reciprocal * scale;
}

struct ExpPlain {
    static constexpr int kOutputs = 1;

    [[gnu::always_inline]] M usual(V (&y)[1], V x) const { return formula(y, x); }
    void exact(Zep32f* y, ZepStatus&, Zep32f x) const {
        if (isNan(x))
            *y = floatOf(isNegative(x) ? kInvalidBits : 0x7FC00000);
        else
            *y = x <= kZeroTo ? 0.0f : kInfinity;
    }

private:
    template <simd::FloatVec W>
    [[gnu::always_inline]] static typename W::M formula(W (&y)[1], W x) {
        if constexpr (simd::kRegisterTable<typename W::Scalar> != 0)
            y[0] = expOf(x);
        else
            y[0] = expWithoutTable(x);
        return !((W::broadcast(kZeroTo) < x) & (x <= W::broadcast(kInfiniteAbove)));
    }
};

ZepStatus exponentials(Zep32f* x, int len) {
    return overBlocks(ExpPlain{}, {{x}}, len, static_cast<const Zep32f*>(x));
}

}  // namespace
}  // namespace vmath

ZepStatus zepsExp_32f_I(Zep32f* pSrcDst, Zep32s len) {
    if (const ZepStatus s = checkVectors(len, pSrcDst); s != zepStsNoErr) return s;
    return simd::withPlainArithmetic(vmath::exponentials, pSrcDst, len);
}

}  // namespace zep::ZEP_VARIANT
