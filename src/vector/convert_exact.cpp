// Conversions that are no more than one instruction for each vector: widening, saturation, and those
// that round to a float by the caller's mode.
#include "core/variant_exports.h"
#include "vector/convert.h"
#include "vector/streaming.h"

namespace zep::ZEP_VARIANT {
namespace {

// The load has widened it.
constexpr auto asLoaded = [](auto x) __attribute__((always_inline)) { return x; };
// Unsigned sources have 16 bits at most.
constexpr auto toFloats = [](auto x) __attribute__((always_inline)) {
    return simd::toFloat(simd::signedLanes(x));
};

}  // namespace

ZepStatus zepsConvert_8s16s(const Zep8s* pSrc, Zep16s* pDst, int len) {
    return checkedConvert(asLoaded, pDst, len, pSrc);
}
ZepStatus zepsConvert_8s32f(const Zep8s* pSrc, Zep32f* pDst, int len) {
    return checkedConvert(toFloats, pDst, len, pSrc);
}
ZepStatus zepsConvert_8u32f(const Zep8u* pSrc, Zep32f* pDst, int len) {
    return checkedConvert(toFloats, pDst, len, pSrc);
}
ZepStatus zepsConvert_16s32f(const Zep16s* pSrc, Zep32f* pDst, int len) {
    return checkedConvert(toFloats, pDst, len, pSrc);
}
ZepStatus zepsConvert_16u32f(const Zep16u* pSrc, Zep32f* pDst, int len) {
    return checkedConvert(toFloats, pDst, len, pSrc);
}
ZepStatus zepsConvert_24s32f(const Zep8u* pSrc, Zep32f* pDst, int len) {
    return checkedConvert(toFloats, pDst, len, reinterpret_cast<const simd::Packed24*>(pSrc));
}
ZepStatus zepsConvert_16s32s(const Zep16s* pSrc, Zep32s* pDst, int len) {
    return checkedConvert<StreamOneSource>(asLoaded, pDst, len, pSrc);
}
ZepStatus zepsConvert_32s64f(const Zep32s* pSrc, Zep64f* pDst, int len) {
    return checkedConvert(asLoaded, pDst, len, pSrc);
}
ZepStatus zepsConvert_32f64f(const Zep32f* pSrc, Zep64f* pDst, int len) {
    return checkedConvert<StreamOneSource>(asLoaded, pDst, len, pSrc);
}
ZepStatus zepsConvert_32s32f(const Zep32s* pSrc, Zep32f* pDst, int len) {
    return checkedConvert(toFloats, pDst, len, pSrc);
}
ZepStatus zepsConvert_64f32f(const Zep64f* pSrc, Zep32f* pDst, int len) {
    const auto narrowed = [](auto x) __attribute__((always_inline)) {
        return narrow(x.v[0], x.v[1]);
    };
    return checkedConvert(narrowed, pDst, len, pSrc);
}
ZepStatus zepsConvert_32s16s(const Zep32s* pSrc, Zep16s* pDst, int len) {
    const auto saturated = [](auto x) __attribute__((always_inline)) {
        return narrowSaturated<Zep16s>(x);
    };
    return checkedConvert<StreamOneSource>(saturated, pDst, len, pSrc);
}

// k is limited so that the factor and every product are normal numbers: the products are exact.
ZepStatus zepsConvert_16s32f_Sfs(const Zep16s* pSrc, Zep32f* pDst, int len, int scaleFactor) {
    if (scaleFactor == 0) return zepsConvert_16s32f(pSrc, pDst, len);
    const int k = scaleFactor < -112 ? -112 : scaleFactor > 126 ? 126 : scaleFactor;
    const auto factor = simd::bitsAs<float>((127 - k) << 23);
    const auto scaled = [factor](auto x) __attribute__((always_inline)) {
        return toFloat(x) * factor;
    };
    return checkedConvert(scaled, pDst, len, pSrc);
}

}  // namespace zep::ZEP_VARIANT
