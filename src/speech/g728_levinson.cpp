// Levinson-Durbin recursion of G.728 in 16-bit words (Annex G block 50 and its kin). Coefficients
// share one scale, Q(15 - shift), which gives way by one place whenever an update leaves 32 bits.
#include "core/checks.h"
#include "speech/fixed_point.h"
#include "speech/state_memory.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr int kLowestUsableScale = 13;
// Failures from this order on leave coefficients of use below it; the end of a recursion that is
// out of scale is judged by another bound.
constexpr int kUsableFailureOrder = 12, kUsableEndOrder = 10;

// Coefficients in the caller's memory, a[1] first.
class Coefficients {
public:
    explicit Coefficients(Zep16s* p) : p_(p - 1) {}
    Zep16s operator[](int i) const { return fetch<Zep16s>(p_ + i); }
    void set(int i, Zep16s v) { put(v, p_ + i); }
    void halve(int count) {
        for (int i = 1; i <= count; ++i) set(i, static_cast<Zep16s>((*this)[i] >> 1));
    }

private:
    Zep16s* p_;
};

// |t| / residual with the sign opposite to t's, from a quotient of 16 fraction bits.
struct Reflection {
    std::int32_t magnitude;  // Q31
    bool negative;
    Zep16s k;  // Q15

    Reflection(int t, int residual) : negative(t > 0) {
        const std::int64_t q = (std::int64_t{t < 0 ? -t : t} << 16) / residual;
        magnitude = sat32(q << 15);
        const Zep16s word = round16(magnitude);
        k = static_cast<Zep16s>(negative ? -word : word);
    }

    // The coefficient of the new order.
    Zep16s coefficient(int shift) const {
        const Zep16s word = round16(shiftLeftSat32(magnitude, -shift));
        return static_cast<Zep16s>(negative ? -word : word);
    }
};

constexpr std::int64_t word32(int high) { return std::int64_t{high} * 65536; }
constexpr bool fits32(std::int64_t v) { return v == sat32(v); }

// a[i] and a[m-i] each take in the other. False, with nothing changed, if a sum leaves 32 bits.
bool updatePair(Coefficients& a, int i, int mirrored, int k) {
    const std::int64_t left = word32(a[i]) + 2 * k * std::int64_t{a[mirrored]},
                       right = word32(a[mirrored]) + 2 * k * std::int64_t{a[i]};
    if (!fits32(left) || !fits32(right)) return false;
    a.set(i, round16(sat32(left)));
    a.set(mirrored, round16(sat32(right)));
    return true;
}

ZepStatus recurse(const Zep16s* pSrc, int start, int end, Coefficients a, Zep16s* pResidual,
                  Zep16s* pScale) {
    const auto r = [=](int i) { return fetch<Zep16s>(pSrc + i); };
    int shift = 15 - fetch<Zep16s>(pScale);
    Zep16s residual = fetch<Zep16s>(pResidual);
    for (int m = start + 1; m <= end; ++m) {
        const ZepStatus failure = m < kUsableFailureOrder ? zepStsLPCCalcErr : zepStsOverflow;
        std::int32_t sum = 0;
        for (int i = 1; i < m; ++i) sum = sat32(sum + std::int64_t{a[i]} * r(m - i));
        const int t = round16(sat32(word32(r(m)) + shiftLeftSat32(sum, shift + 1)));
        if ((t < 0 ? -t : t) >= residual) return failure;
        const Reflection reflection(t, residual);
        const std::int32_t next = sat32(word32(residual) + 2 * std::int64_t{reflection.k} * t);
        if (next <= 0) return failure;
        residual = round16(next);
        for (int i = 1; 2 * i <= m; ++i) {
            if (updatePair(a, i, m - i, reflection.k)) continue;
            a.halve(m - 1);
            ++shift;
            // Halved words cannot leave 32 bits: |a| <= 2^14 and |k| < 2^15.
            updatePair(a, i, m - i, reflection.k);
        }
        a.set(m, reflection.coefficient(shift));
    }
    const int scale = 15 - shift;
    put(static_cast<Zep16s>(scale), pScale);
    if (scale < kLowestUsableScale)
        return end < kUsableEndOrder ? zepStsLPCCalcErr : zepStsOverflow;
    put(residual, pResidual);
    return zepStsNoErr;
}

ZepStatus begin(const Zep16s* pSrc, Zep32s order, Zep16s* pDst, Zep16s* pReflect, Zep16s* pResidual,
                Zep16s* pScale) {
    if (order < 1) return zepStsRangeErr;
    const int r0 = fetch<Zep16s>(pSrc), r1 = fetch<Zep16s>(pSrc + 1);
    if (r0 < 1) return zepStsRangeErr;
    const Zep16s k = Reflection(r1, r0).k;
    put(k, pReflect);
    put(k, pDst);
    put(Zep16s{15}, pScale);
    put(round16(sat32(word32(r0) + 2 * std::int64_t{r1} * k)), pResidual);
    return recurse(pSrc, 1, order, Coefficients(pDst), pResidual, pScale);
}

}  // namespace

ZepStatus zepsLevinsonDurbin_G728_16s_Sfs(const Zep16s* pSrc, Zep32s order, Zep16s* pDst,
                                          Zep16s* pReflect, Zep16s* pResidual, Zep16s* pScale) {
    if (anyNull(pSrc, pDst, pReflect, pResidual, pScale)) return zepStsNullPtrErr;
    return begin(pSrc, order, pDst, pReflect, pResidual, pScale);
}

ZepStatus zepsLevinsonDurbin_G728_16s_ISfs(const Zep16s* pSrc, Zep32s start, Zep32s end,
                                           Zep16s* pSrcDst, Zep16s* pResidual, Zep16s* pScale) {
    if (anyNull(pSrc, pSrcDst, pResidual, pScale)) return zepStsNullPtrErr;
    if (start < 0 || end < start) return zepStsRangeErr;
    Zep16s reflect;
    if (start == 0) return begin(pSrc, end, pSrcDst, &reflect, pResidual, pScale);
    const Zep16s scale = fetch<Zep16s>(pScale);
    if (scale < 0 || scale > 15) return zepStsScaleRangeErr;
    return recurse(pSrc, start, end, Coefficients(pSrcDst), pResidual, pScale);
}

}  // namespace zep::ZEP_VARIANT
