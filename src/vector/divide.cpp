// Quotient of two real vectors through the hardware's reciprocal estimate.
//
// Blocks of 8 elements from the first one on, whatever the width of a vector and the alignment; the
// last block may be short. A block without a zero divisor takes the estimate r of 1 / d and one
// step of second order: with q = x * r and e = 1 - d * r, x / d = q / (1 - e) = q + e * (q + e * q)
// + O(e^3), relative error a few 2^-24. A block with a zero divisor is computed exactly, lane by
// lane, so that infinities and NaN come out by rule.
#include <limits>

#include "core/variant_exports.h"
#include "vector/shapes.h"

namespace zep::ZEP_VARIANT {
namespace {

using V = simd::Native<Zep32f>;
using M = V::M;

constexpr int kLanes = V::lanes;
constexpr int kBlock = kLanes > 8 ? kLanes : 8;
constexpr int kVectors = kBlock / kLanes;

inline V refinedQuotient(V x, V d) {
    const V r = reciprocalEstimate(d);
    const V q = x * r;
    const V e = V::broadcast(1.0f) - d * r;
    return q + e * (q + e * q);
}

// The sign of a zero divisor does not count: the dividend's sign decides between the infinities.
inline V exactQuotient(V x, V d) {
    const V zero = V::zero();
    const V inf = V::broadcast(std::numeric_limits<float>::infinity());
    const V nan = V::broadcast(std::numeric_limits<float>::quiet_NaN());
    const M noQuotient = (d == zero) | isNan(d);
    const V replacement = select(isNan(d), nan, select(x > zero, inf, select(x < zero, -inf, nan)));
    return select(noQuotient, replacement, x / select(noQuotient, V::broadcast(1.0f), d));
}

// dst = x / d over up to kBlock elements; true when a divisor is zero.
bool divideBlock(const Zep32f* d, const Zep32f* x, Zep32f* dst, int len) {
    V dv[kVectors], xv[kVectors];
    bool zeroSeen = false;
    for (int k = 0, n = 0; k < kVectors; ++k, n += kLanes) {
        const int count = len - n < 0 ? 0 : len - n < kLanes ? len - n : kLanes;
        dv[k] = V::loadPartial(d + n, count, 1.0f);
        xv[k] = V::loadPartial(x + n, count);
        zeroSeen |= any(dv[k] == V::zero());
    }
    for (int k = 0, n = 0; k < kVectors && n < len; ++k, n += kLanes) {
        const V q = zeroSeen ? exactQuotient(xv[k], dv[k]) : refinedQuotient(xv[k], dv[k]);
        q.storePartial(dst + n, len - n < kLanes ? len - n : kLanes);
    }
    return zeroSeen;
}

ZepStatus divide(const Zep32f* d, const Zep32f* x, Zep32f* dst, int len) {
    constexpr std::ptrdiff_t kStep = 4 * kLanes > kBlock ? 4 * kLanes : kBlock;
    bool zeroSeen = false;
    std::ptrdiff_t n = 0;
    for (; n + kStep <= len; n += kStep) {
        M zero = V::load(d + n) == V::zero();
        V q[kStep / kLanes];
        for (int k = 0; k < kStep / kLanes; ++k) {
            const V dv = V::load(d + n + k * kLanes);
            zero = zero | (dv == V::zero());
            q[k] = refinedQuotient(V::load(x + n + k * kLanes), dv);
        }
        if (any(zero)) [[unlikely]] {
            for (int k = 0; k < kStep; k += kBlock)
                zeroSeen |= divideBlock(d + n + k, x + n + k, dst + n + k, kBlock);
            continue;
        }
        for (int k = 0; k < kStep / kLanes; ++k) q[k].store(dst + n + k * kLanes);
    }
    for (; n < len; n += kBlock) {
        const auto rest = len - n;
        zeroSeen |=
            divideBlock(d + n, x + n, dst + n, static_cast<int>(rest < kBlock ? rest : kBlock));
    }
    return zeroSeen ? zepStsDivByZero : zepStsNoErr;
}

}  // namespace

ZepStatus zepsDiv_32f(const Zep32f* pSrc1, const Zep32f* pSrc2, Zep32f* pDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrc1, pSrc2, pDst); s != zepStsNoErr) return s;
    return divide(pSrc1, pSrc2, pDst, len);
}
ZepStatus zepsDiv_32f_I(const Zep32f* pSrc, Zep32f* pSrcDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pSrcDst); s != zepStsNoErr) return s;
    return divide(pSrc, pSrcDst, pSrcDst, len);
}

}  // namespace zep::ZEP_VARIANT
