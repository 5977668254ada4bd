// Principal square root of a complex vector.
//
// For z = a + ib and half parts a2, b2: m = |z| / 2 from the refined estimate, t = m + |a2|, and
// sqrt(t) and |b2| / sqrt(t) are the parts of the root; which is the real one depends on the sign
// of a, and b signs the imaginary one. Where the sum of squares leaves the range of normal numbers
// the element is scaled by a power of four first; where it is zero, the root is zero.
#include <limits>

#include "core/variant_exports.h"
#include "simd/complex.h"
#include "vector/shapes.h"

namespace zep::ZEP_VARIANT {
namespace {

using V = simd::Native<Zep32f>;
using Z = simd::Complex<V>;

// 1 / sqrt(x) by one Newton step.
inline V refinedRsqrt(V x) {
    const V r = rsqrtEstimate(x);
    return (r * -0.5f) * (x * r * r - 3.0f);
}

inline V refinedSqrt(V x) {
    const V r = rsqrtEstimate(x);
    const V s = x * r;
    return (s * -0.5f) * (s * r - 3.0f);
}

// The roots' parts in order of size: sqrt(t) and |b2| / sqrt(t).
inline Z unorderedParts(V a2, V b2, V squares) {
    const V t = refinedSqrt(squares) + abs(a2);
    const V r = refinedRsqrt(t);
    return {t * r, abs(b2) * r};
}

// With each lane scaled into the range of its squares. 2^-72 and 2^48 have even exponents, so the
// root scales exactly.
[[gnu::noinline]] Z scaledParts(V a2, V b2, V squares) {
    const V one = V::broadcast(1.0f);
    const auto large = squares > V::broadcast(std::numeric_limits<float>::max());
    const auto small = squares < V::broadcast(std::numeric_limits<float>::min());
    const V scale =
        select(large, V::broadcast(0x1p-72f), select(small, V::broadcast(0x1p48f), one));
    const V back = select(large, V::broadcast(0x1p36f), select(small, V::broadcast(0x1p-24f), one));
    const V a = a2 * scale, b = b2 * scale;
    const Z parts = unorderedParts(a, b, a * a + b * b);
    return {parts.re * back, parts.im * back};
}

constexpr auto principalRoot = [](Z z) {
    const V zero = V::zero();
    const V a2 = z.re * 0.5f, b2 = z.im * 0.5f;
    const V squares = a2 * a2 + b2 * b2;
    const auto nonZero = squares != zero;
    const auto inRange = (squares >= V::broadcast(std::numeric_limits<float>::min())) &
                         (squares <= V::broadcast(std::numeric_limits<float>::max()));
    Z parts = unorderedParts(a2, b2, squares);
    if (!all(inRange | !nonZero)) [[unlikely]]
        parts = scaledParts(a2, b2, squares);
    const auto left = z.re < zero;
    const V re = select(left, parts.im, parts.re);
    const V im = select(left, parts.re, parts.im);
    const V sign = keepIf((z.im < zero) | isNan(z.im), V::broadcast(-0.0f));
    return Z{keepIf(nonZero, re), keepIf(nonZero, im) ^ sign};
};

}  // namespace

ZepStatus zepsSqrt_32fc_I(Zep32fc* pSrcDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrcDst); s != zepStsNoErr) return s;
    mapSplit(principalRoot, pSrcDst, len, pSrcDst);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
