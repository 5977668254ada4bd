// Quotient of two real vectors through the hardware's reciprocal estimate.
//
// Blocks of 8 elements from the first one on, whatever the width of a vector and the alignment; the
// last block may be short. A block without a zero divisor takes the estimate r of 1 / d and one
// step of second order: with q = x * r and e = 1 - d * r, x / d = q / (1 - e) = q + e * (q + e * q)
// + O(e^3), relative error a few 2^-24. A block with a zero divisor is computed exactly, lane by
// lane, so that infinities and NaN come out by rule.
#include <algorithm>
#include <limits>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT {
namespace {

using V = simd::Native<Zep32f>;
constexpr int kLanes = V::lanes;

constexpr int kBlock = 8;
// The widest vector within a block.
using BlockVector = simd::Vec<Zep32f, std::min(kLanes, kBlock)>;
constexpr int kBlockVectors = kBlock / BlockVector::lanes;

// What the loop takes at a time: whole blocks, in pairs of vectors.
constexpr int kStep = 2 * std::max(kLanes, kBlock);
constexpr int kStepVectors = kStep / kLanes;

template <class W>
inline W refinedQuotient(W x, W d) {
    const W r = reciprocalEstimate(d);
    const W q = x * r;
    const W e = W::broadcast(1.0f) - d * r;
    return q + e * (q + e * q);
}

// The sign of a zero divisor does not count: the dividend's sign decides between the infinities.
template <class W>
inline W exactQuotient(W x, W d) {
    const W zero = W::zero();
    const W inf = W::broadcast(std::numeric_limits<float>::infinity());
    const W nan = W::broadcast(std::numeric_limits<float>::quiet_NaN());
    const auto noQuotient = (d == zero) | isNan(d);
    const W replacement = select(isNan(d), nan, select(x > zero, inf, select(x < zero, -inf, nan)));
    return select(noQuotient, replacement, x / select(noQuotient, W::broadcast(1.0f), d));
}

// dst = x / d over up to kBlock elements; true when a divisor is zero.
[[gnu::noinline]] bool divideBlock(const Zep32f* d, const Zep32f* x, Zep32f* dst, int len) {
    using W = BlockVector;
    const auto elementsOf = [len](int k) {
        const int rest = len - k * W::lanes;
        return rest < 0 ? 0 : rest < W::lanes ? rest : W::lanes;
    };
    W dv[kBlockVectors], xv[kBlockVectors];
    auto zero = W::M::none();
    simd::unroll<kBlockVectors>([&](auto k) {
        dv[k] = W::loadPartial(d + k * W::lanes, elementsOf(k), 1.0f);
        xv[k] = W::loadPartial(x + k * W::lanes, elementsOf(k));
        zero = zero | (dv[k] == W::zero());
    });
    const bool zeroSeen = any(zero);
    simd::unroll<kBlockVectors>([&](auto k) {
        const W q = zeroSeen ? exactQuotient(xv[k], dv[k]) : refinedQuotient(xv[k], dv[k]);
        q.storePartial(dst + k * W::lanes, elementsOf(k));
    });
    return zeroSeen;
}

// As many whole steps as have no NaN among their results, and so no zero among their
// divisors: the estimated quotient by zero is NaN. One compare serves two vectors. Returns the
// elements done.
[[gnu::always_inline]] inline std::ptrdiff_t divideOrdinary(const Zep32f* d, const Zep32f* x,
                                                            Zep32f* dst, std::ptrdiff_t len) {
    std::ptrdiff_t n = 0;
    for (; n + kStep <= len; n += kStep) {
        V q[kStepVectors];
        auto nan = V::M::none();
        simd::unroll<kStepVectors>([&](auto k) {
            const std::ptrdiff_t at = n + k * kLanes;
            q[k] = refinedQuotient(V::load(x + at), V::load(d + at));
            if constexpr (k % 2 == 1) nan = nan | eitherNan(q[k - 1], q[k]);
        });
        if (any(nan)) [[unlikely]]
            break;
        simd::unroll<kStepVectors>([&](auto k) { q[k].store(dst + n + k * kLanes); });
    }
    return n;
}

[[gnu::noinline]] ZepStatus divideRest(const Zep32f* d, const Zep32f* x, Zep32f* dst,
                                       std::ptrdiff_t len) {
    bool zeroSeen = false;
    for (std::ptrdiff_t n = 0; n < len; n += divideOrdinary(d + n, x + n, dst + n, len - n)) {
        const auto count = static_cast<int>(len - n < kBlock ? len - n : kBlock);
        zeroSeen |= divideBlock(d + n, x + n, dst + n, count);
        n += count;
    }
    return zeroSeen ? zepStsDivByZero : zepStsNoErr;
}

// kCount vectors from each end, which meet or overlap, when their results have no NaN; else false,
// and nothing has been written. Overlapping elements are read before they are written.
template <class W, int kCount>
[[gnu::always_inline]] inline bool divideBothEnds(const Zep32f* d, const Zep32f* x, Zep32f* dst,
                                                  std::ptrdiff_t len) {
    const std::ptrdiff_t last = len - kCount * W::lanes;
    W first[kCount], end[kCount];
    auto nan = W::M::none();
    simd::unroll<kCount>([&](auto k) {
        const std::ptrdiff_t n = k * W::lanes;
        first[k] = refinedQuotient(W::load(x + n), W::load(d + n));
        end[k] = refinedQuotient(W::load(x + last + n), W::load(d + last + n));
        nan = nan | eitherNan(first[k], end[k]);
    });
    if (any(nan)) [[unlikely]]
        return false;
    simd::unroll<kCount>([&](auto k) {
        first[k].store(dst + k * W::lanes);
        end[k].store(dst + last + k * W::lanes);
    });
    return true;
}

// Less than one step, in vectors of W or narrower ones.
template <class W = V>
[[gnu::always_inline]] inline bool divideShort(const Zep32f* d, const Zep32f* x, Zep32f* dst,
                                               std::ptrdiff_t len) {
    if constexpr (kStepVectors / 2 > 1)
        if (len >= kBlock) return divideBothEnds<W, kStepVectors / 2>(d, x, dst, len);
    if (len >= W::lanes) return divideBothEnds<W, 1>(d, x, dst, len);
    if constexpr (!simd::kMaskedMemory && !simd::isNarrow<W>) {
        return divideShort<simd::Half<W>>(d, x, dst, len);
    } else {
        const auto count = static_cast<int>(len);
        const W q = refinedQuotient(W::loadPartial(x, count), W::loadPartial(d, count, 1.0f));
        if (any(isNan(q))) [[unlikely]]
            return false;
        q.storePartial(dst, count);
        return true;
    }
}

[[gnu::always_inline]] inline ZepStatus divide(const Zep32f* d, const Zep32f* x, Zep32f* dst,
                                               int len) {
    const std::ptrdiff_t n = divideOrdinary(d, x, dst, len);
    const std::ptrdiff_t rest = len - n;
    if (rest == 0) return zepStsNoErr;
    if (rest < kStep && divideShort(d + n, x + n, dst + n, rest)) return zepStsNoErr;
    return divideRest(d + n, x + n, dst + n, rest);
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
