// From float to integers by a stated rounding mode, whatever the caller's: the product with a power
// of two, the limit that keeps NaN and large values from the conversion's one indefinite result, the
// conversion, and saturating packs. Where the caller's mode is not the one that the steps need, it is
// changed for the length of the kernel. Where instructions name their mode, that is needed for few
// factors only: reading the control word takes longer than converting a hundred elements.
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
        return simd::toIntNearest(x);
    }
};
// The same by an instruction more for each vector, whatever the mode is.
struct NearestAtOnce {
    template <class V>
    [[gnu::always_inline]] static auto toInt(V x) {
        return toIntTruncated(roundEven(x));
    }
};
// The sum is rounded toward zero: else that of a half and the float below a half would be 1.
struct HalfAway {
    template <class V>
    [[gnu::always_inline]] static auto toInt(V x) {
        const V half = V::broadcast(0.5f) | (x & simd::signBits<V>());
        return toIntTruncated(addTowardZero(x, half));
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
[[gnu::noinline]] ZepStatus toIntegers(const Zep32f* src, D* dst, int len, float factor) {
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
    return zepStsNoErr;
}

// The mode, and with it the treatment of denormals, counts in the steps and in the product. The latter is
// exact, or too small or too large for its rounding to matter, unless denormals become numbers of
// some size, or the factor is one: infinity times zero is not infinity times that.
inline bool productNeedsNoMode(int scaleFactor) {
    return scaleFactor >= -100 && scaleFactor <= 126;
}

// Short vectors take less time with one more instruction each than the control word does.
inline bool roundsAtOnce(int len, int scaleFactor) {
    return simd::kHasSse41 && !simd::kRoundingInInstruction && len <= 256 &&
           productNeedsNoMode(scaleFactor);
}

template <class Change, class... Args>
[[gnu::always_inline]] inline ZepStatus withMode(Change change, ZepStatus (*kernel)(Args...),
                                                 int scaleFactor, Args... args) {
    if (simd::kRoundingInInstruction && productNeedsNoMode(scaleFactor)) return kernel(args...);
    return change(kernel, args...);
}

template <class D>
inline ZepStatus checkedToIntegers(const Zep32f* pSrc, D* pDst, int len, ZepRoundMode rndMode,
                                   int scaleFactor) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    const float factor = powerOfTwo(scaleFactor);
    if (rndMode == zepRoundTruncate) return toIntegers<Truncate>(pSrc, pDst, len, factor);
    if (rndMode == zepRoundNearest && roundsAtOnce(len, scaleFactor))
        return toIntegers<NearestAtOnce>(pSrc, pDst, len, factor);
    if (rndMode == zepRoundNearest)
        return withMode(simd::withRoundingToNearest<ZepStatus, const Zep32f*, D*, int, float>,
                        toIntegers<Nearest, D>, scaleFactor, pSrc, pDst, len, factor);
    return withMode(simd::withRoundingTowardZero<ZepStatus, const Zep32f*, D*, int, float>,
                    toIntegers<HalfAway, D>, scaleFactor, pSrc, pDst, len, factor);
}

[[gnu::noinline]] ZepStatus toPacked24(const Zep32f* src, Zep8u* dst, int len, float factor) {
    using V = simd::Native<float>;
    const auto steps = [factor](auto x) __attribute__((always_inline)) {
        return simd::pack24(x.each([&](V v) __attribute__((always_inline)) {
            const V above = max(v * factor, V::broadcast(-8388608.0f));
            return simd::toIntNearest(min(above, V::broadcast(8388607.0f)));
        }));
    };
    convert(steps, reinterpret_cast<simd::Packed24*>(dst), len, src);
    return zepStsNoErr;
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
    return withMode(simd::withRoundingToNearest<ZepStatus, const Zep32f*, Zep8u*, int, float>,
                    toPacked24, k, pSrc, pDst, len, simd::bitsAs<float>((127 - k) << 23));
}

}  // namespace zep::ZEP_VARIANT
