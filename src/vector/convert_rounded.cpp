// From float to integers by a stated rounding mode, whatever the caller's: the product with a power
// of two, the limit that keeps NaN and large values from the conversion's one indefinite result, the
// conversion, and saturating packs. Where the caller's mode is not the one that the steps need, it is
// changed for the length of the kernel, which therefore stands in a function of its own: the compiler
// takes arithmetic for independent of the control word, and moves across the change what it can.
#include "core/variant_exports.h"
#include "simd/control_word.h"
#include "simd/float_to_int.h"
#include "vector/convert.h"

namespace zep::ZEP_VARIANT {
namespace {

struct Truncate {
    template <class V>
    [[gnu::always_inline]] static auto toInt(V x) {
        return toIntTruncated(x);
    }
};
struct Nearest {
    template <class V>
    [[gnu::always_inline]] static auto toInt(V x) {
        return simd::toInt(x);
    }
};
// Under rounding toward zero: else the sum of a half and the float below a half would be 1.
struct HalfAway {
    template <class V>
    [[gnu::always_inline]] static auto toInt(V x) {
        const V half = V::broadcast(0.5f) | (x & simd::signBits<V>());
        return toIntTruncated(x + half);
    }
};

// 2^-k, or what remains of it in single precision.
float powerOfTwo(int k) {
    if (k > 149) return 0.0f;
    if (k > 126) return simd::bitsAs<float>(1 << (149 - k));
    return simd::bitsAs<float>((k < -127 ? 255 : 127 - k) << 23);
}

template <class D>
constexpr float kLargest = 0x1p15f - 1.0f;
template <>
constexpr float kLargest<Zep8s> = 0x1p7f - 1.0f;

template <class Mode, class D>
[[gnu::noinline]] void toIntegers(const Zep32f* src, D* dst, int len, float factor) {
    using V = simd::Native<float>;
    const auto steps = [factor](auto x) __attribute__((always_inline)) {
        if constexpr (sizeof(D) == 4) {
            const auto y = x * factor;
            return simd::saturateAbove(Mode::toInt(y), y);
        } else {
            // The limit stands second: it is what a NaN becomes.
            return simd::narrowSaturated<D>(x.each([&](V v) __attribute__((always_inline)) {
                return Mode::toInt(min(v * factor, V::broadcast(kLargest<D>)));
            }));
        }
    };
    convert(steps, dst, len, src);
}

template <class D>
inline ZepStatus checkedToIntegers(const Zep32f* pSrc, D* pDst, int len, ZepRoundMode rndMode,
                                   int scaleFactor) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    const float factor = powerOfTwo(scaleFactor);
    if (rndMode == zepRoundTruncate) {
        toIntegers<Truncate>(pSrc, pDst, len, factor);
    } else if (rndMode == zepRoundNearest) {
        const simd::RoundingToNearest guard;
        toIntegers<Nearest>(pSrc, pDst, len, factor);
    } else {
        const simd::RoundingTowardZero guard;
        toIntegers<HalfAway>(pSrc, pDst, len, factor);
    }
    return zepStsNoErr;
}

[[gnu::noinline]] void toPacked24(const Zep32f* src, Zep8u* dst, int len, float factor) {
    using V = simd::Native<float>;
    const auto steps = [factor](auto x) __attribute__((always_inline)) {
        return simd::pack24(x.each([&](V v) __attribute__((always_inline)) {
            const V above = max(v * factor, V::broadcast(-8388608.0f));
            return simd::toInt(min(above, V::broadcast(8388607.0f)));
        }));
    };
    convert(steps, reinterpret_cast<simd::Packed24*>(dst), len, src);
}

}  // namespace

ZepStatus zepsConvert_32f8s_Sfs(const Zep32f* pSrc, Zep8s* pDst, int len, ZepRoundMode rndMode,
                                int scaleFactor) {
    return checkedToIntegers(pSrc, pDst, len, rndMode, scaleFactor);
}
ZepStatus zepsConvert_32f16s_Sfs(const Zep32f* pSrc, Zep16s* pDst, int len, ZepRoundMode rndMode,
                                 int scaleFactor) {
    return checkedToIntegers(pSrc, pDst, len, rndMode, scaleFactor);
}
ZepStatus zepsConvert_32f32s_Sfs(const Zep32f* pSrc, Zep32s* pDst, int len, ZepRoundMode rndMode,
                                 int scaleFactor) {
    return checkedToIntegers(pSrc, pDst, len, rndMode, scaleFactor);
}

ZepStatus zepsConvert_32f24s_Sfs(const Zep32f* pSrc, Zep8u* pDst, int len, int scaleFactor) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    const int k = scaleFactor < -127 ? -127 : scaleFactor > 127 ? 127 : scaleFactor;
    const simd::RoundingToNearest guard;
    toPacked24(pSrc, pDst, len, simd::bitsAs<float>((127 - k) << 23));
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
