// Sine and cosine in three accuracy classes.
#include "core/variant_exports.h"
#include "vmath/accurate_sincos.h"
#include "vmath/raise.h"
#include "vmath/sincos_kernel.h"
#include "vmath/single_bits.h"

namespace zep::ZEP_VARIANT {
namespace vmath {
namespace {

template <class Class>
struct SinCosKernel {
    static constexpr int kOutputs = 2;

    [[gnu::always_inline]] M usual(V (&y)[2], V x) const {
        const auto [sin, cos] = Class::of(x);
        y[0] = sin;
        y[1] = cos;
        return !(abs(x) <= V::broadcast(kReducedTo));
    }
    void exact(Zep32f* y, ZepStatus& status, Zep32f x) const {
        if (isFinite(x)) {
            const auto [sin, cos] = accurateSinCos(static_cast<double>(x));
            y[0] = static_cast<Zep32f>(sin);
            y[1] = static_cast<Zep32f>(cos);
        } else if (isNan(x)) {
            y[0] = y[1] = quiet(x);
        } else {
            y[0] = y[1] = invalid();
            status = raiseDomain();
        }
    }
};

template <class Class>
ZepStatus sinesAndCosines(const Zep32f* x, Zep32f* sin, Zep32f* cos, int len) {
    return overBlocks(SinCosKernel<Class>{}, {{sin, cos}}, len, x);
}

}  // namespace
}  // namespace vmath

ZepStatus zepsSinCos_32f_A11(const Zep32f* pSrc, Zep32f* pDstSin, Zep32f* pDstCos, Zep32s len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDstSin, pDstCos); s != zepStsNoErr) return s;
    return simd::withPlainArithmetic(vmath::sinesAndCosines<vmath::Short11>, pSrc, pDstSin, pDstCos,
                                     len);
}
ZepStatus zepsSinCos_32f_A21(const Zep32f* pSrc, Zep32f* pDstSin, Zep32f* pDstCos, Zep32s len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDstSin, pDstCos); s != zepStsNoErr) return s;
    return simd::withPlainArithmetic(vmath::sinesAndCosines<vmath::Medium21>, pSrc, pDstSin,
                                     pDstCos, len);
}
ZepStatus zepsSinCos_32f_A24(const Zep32f* pSrc, Zep32f* pDstSin, Zep32f* pDstCos, Zep32s len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDstSin, pDstCos); s != zepStsNoErr) return s;
    return simd::withPlainArithmetic(vmath::sinesAndCosines<vmath::Long24>, pSrc, pDstSin, pDstCos,
                                     len);
}

}  // namespace zep::ZEP_VARIANT
