// ln(x) in place, without a class.
//
// Below a level with permutations: s = (m - 1) / (m + 1) and the series of 2 artanh(s), m between
// sqrt(1/2) and sqrt(2). Above: a factor F near 1/m from a register of 16 entries, z = m F - 1, and a
// short series of ln(1 + z), which is both faster and closer.
#include "core/variant_exports.h"
#include "vmath/log_kernel.h"
#include "vmath/single_bits.h"

namespace zep::ZEP_VARIANT {
namespace vmath {
namespace {

// Of the number that the exponent and mantissa fields of x stand for, so infinity counts as 2^128,
// and a denormal as if it had the leading one.
template <simd::FloatVec W>
[[gnu::always_inline]] inline W lnOf(W x) {
    const auto at = [](float c) { return W::broadcast(c); };
    if constexpr (simd::kRegisterTable<typename W::Scalar> == 16) {
        const auto [m, e, offset] = takeApart(x, 0x3F340000);
        const auto index = offset >> 19;
        const auto& c = kRegisterLnCoefficients;
        const W z = exactMulSub(m, lookUp(kRegisterLnFactor, index), at(1.0f));
        const W a = mulAdd(e, at(0.6931471824645996f), lookUp(kRegisterLnValue, index));
        const W q = mulAdd(mulAdd(mulAdd(z, at(c[3]), at(c[2])), z, at(c[1])), z, at(c[0]));
        return a + mulAdd(q, z * z, z);
    } else {
        const auto [m, e, offset] = takeApart(x, 0x3F3504F2);
        const W s = (m - 1.0f) / (m + 1.0f);
        const W ss = s * s;
        const W p =
            ((ss * 0.23762455582618713f + 0.2852538228034973f) * ss + 0.400005966424942f) * ss +
            0.6666666269302368f;
        return e * 0.6931471824645996f + s * (ss * p + 2.0f);
    }
}

struct LnPlain {
    static constexpr int kOutputs = 1;

    [[gnu::always_inline]] M usual(V (&y)[1], V x) const {
        y[0] = lnOf(x);
        return notPositiveNormal(x);
    }
    // The first of its kind decides the status.
    void exact(Zep32f* y, ZepStatus& status, Zep32f x) const {
        if (isNan(x)) {
            *y = quiet(x);
        } else if (x == 0.0f) {
            *y = -kInfinity;
            if (status == zepStsNoErr) status = zepStsLnZeroArg;
        } else if (isNegative(x)) {
            *y = invalid();
            if (status == zepStsNoErr) status = zepStsLnNegArg;
        } else {
            *y = first(lnOf(V::broadcast(x)));
        }
    }
};

ZepStatus logarithms(Zep32f* x, int len) {
    return overBlocks(LnPlain{}, {{x}}, len, static_cast<const Zep32f*>(x));
}

}  // namespace
}  // namespace vmath

ZepStatus zepsLn_32f_I(Zep32f* pSrcDst, Zep32s len) {
    if (const ZepStatus s = checkVectors(len, pSrcDst); s != zepStsNoErr) return s;
    return simd::withPlainArithmetic(vmath::logarithms, pSrcDst, len);
}

}  // namespace zep::ZEP_VARIANT
