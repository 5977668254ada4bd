// Scaled quotients of 16-bit integers and a constant, as products with a factor in single precision.
// The caller's rounding mode decides in all three steps; nothing here changes it.
#include "core/variant_exports.h"
#include "simd/halves16.h"
#include "vector/convert.h"

namespace zep::ZEP_VARIANT {
namespace {

// The products of all 16-bit numbers convert to 32 bits without leaving them between these.
constexpr float kLowest = -0x1p31f, kHighest = 0x1p31f - 0x1p7f;

template <bool limited>
[[gnu::noinline]] void multiplyAndRound(float factor, Zep16s* x, int len) {
    const auto quotient = [factor](auto v) __attribute__((always_inline)) {
        const auto round = [factor](auto half) __attribute__((always_inline)) {
            auto p = toFloat(half) * factor;
            using V = decltype(p);
            if constexpr (limited) p = min(max(p, V::broadcast(kLowest)), V::broadcast(kHighest));
            return simd::toInt(p);
        };
        auto halves = widenWithin(v);
        halves.lower = round(halves.lower);
        halves.upper = round(halves.upper);
        return packWithin(halves);
    };
    convert(quotient, x, len, x);
}

// What every quotient has become when the scale is large enough: a limit by its sign.
[[gnu::noinline]] void limitBySigns(Zep16s val, Zep16s* x, int len) {
    const Zep16s positive = val > 0 ? 32767 : -32768, negative = val > 0 ? -32768 : 32767;
    const auto limit = [=](auto v) __attribute__((always_inline)) {
        using V = decltype(v);
        const V bySign = select(v > V::zero(), V::broadcast(positive), V::broadcast(negative));
        return keepIf(v != V::zero(), bySign);
    };
    convert(limit, x, len, x);
}

}  // namespace

ZepStatus zepsDivC_16s_ISfs(Zep16s val, Zep16s* pSrcDst, int len, int scaleFactor) {
    if (const ZepStatus s = checkVectors(len, pSrcDst); s != zepStsNoErr) return s;
    if (val == 0) return zepStsDivByZeroErr;
    if (scaleFactor > 15) return zepsZero_16s(pSrcDst, len);
    if (scaleFactor < -30) {
        limitBySigns(val, pSrcDst, len);
        return zepStsNoErr;
    }
    const float factor = simd::bitsAs<float>((127 - scaleFactor) << 23) / static_cast<float>(val);
    const float largest = 32768.0f * factor;
    // At kLowest itself the product of -32768 is 2^31.
    if (largest <= kLowest || largest > kHighest)
        multiplyAndRound<true>(factor, pSrcDst, len);
    else
        multiplyAndRound<false>(factor, pSrcDst, len);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
