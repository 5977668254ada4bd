// Quotient of two complex vectors: both numerators of x * conj(d), times the refined reciprocal of
// |d|^2. A zero |d|^2 makes the reciprocal, and so both parts, NaN by itself; only the warning has
// to be gathered.
#include "core/variant_exports.h"
#include "simd/complex.h"
#include "vector/shapes.h"

namespace zep::ZEP_VARIANT {
namespace {

using V = simd::Native<Zep32f>;
using Z = simd::Complex<V>;

inline V refinedReciprocal(V m) {
    const V r = reciprocalEstimate(m);
    return r * (V::broadcast(2.0f) - m * r);
}

ZepStatus divide(const Zep32fc* d, const Zep32fc* x, Zep32fc* dst, int len) {
    auto zeroSeen = V::M::none();
    const auto quotient = [&zeroSeen](Z divisor, Z dividend) {
        const V m = divisor.re * divisor.re + divisor.im * divisor.im;
        zeroSeen = zeroSeen | (m == V::zero());
        const V re = divisor.re * dividend.re + divisor.im * dividend.im;
        const V im = divisor.re * dividend.im - divisor.im * dividend.re;
        const V w = refinedReciprocal(m);
        return Z{re * w, im * w};
    };
    mapSplit(quotient, dst, len, d, x);
    return any(zeroSeen) ? zepStsDivByZero : zepStsNoErr;
}

}  // namespace

ZepStatus zepsDiv_32fc(const Zep32fc* pSrc1, const Zep32fc* pSrc2, Zep32fc* pDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrc1, pSrc2, pDst); s != zepStsNoErr) return s;
    return divide(pSrc1, pSrc2, pDst, len);
}
ZepStatus zepsDiv_32fc_I(const Zep32fc* pSrc, Zep32fc* pSrcDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pSrcDst); s != zepStsNoErr) return s;
    return divide(pSrc, pSrcDst, pSrcDst, len);
}

}  // namespace zep::ZEP_VARIANT
