// The largest and the smallest element.
#include "core/checks.h"
#include "core/variant_exports.h"
#include "vector/extremes.h"
#include "vector/reduce.h"

namespace zep::ZEP_VARIANT {
namespace {

template <template <class> class Which, class T>
[[gnu::always_inline]] inline ZepStatus checkedExtreme(const T* src, int len, T* result) {
    if (const ZepStatus s = checkVectors(len, src, result); s != zepStsNoErr) return s;
    using V = simd::Native<T>;
    const T first = simd::readAny(src);
    const auto a = foldExtreme<4>(len, Which<V>{V::broadcast(first)}, first, src);
    simd::writeAny(result, a.reduced());
    return zepStsNoErr;
}

template <class T>
[[gnu::always_inline]] inline ZepStatus checkedExtremes(const T* src, int len, T* smallest,
                                                        T* largest) {
    if (const ZepStatus s = checkVectors(len, src, smallest, largest); s != zepStsNoErr) return s;
    using V = simd::Native<T>;
    const T first = simd::readAny(src);
    const V start = V::broadcast(first);
    const auto a = foldExtreme<4>(len, Extremes<V>{{start}, {start}}, first, src);
    simd::writeAny(smallest, a.smallest.reduced());
    simd::writeAny(largest, a.largest.reduced());
    return zepStsNoErr;
}

}  // namespace

ZepStatus zepsMax_32f(const Zep32f* pSrc, int len, Zep32f* pMax) {
    return checkedExtreme<Largest>(pSrc, len, pMax);
}
ZepStatus zepsMax_32s(const Zep32s* pSrc, int len, Zep32s* pMax) {
    return checkedExtreme<Largest>(pSrc, len, pMax);
}
ZepStatus zepsMax_64f(const Zep64f* pSrc, int len, Zep64f* pMax) {
    return checkedExtreme<Largest>(pSrc, len, pMax);
}
ZepStatus zepsMin_32f(const Zep32f* pSrc, int len, Zep32f* pMin) {
    return checkedExtreme<Smallest>(pSrc, len, pMin);
}
ZepStatus zepsMin_32s(const Zep32s* pSrc, int len, Zep32s* pMin) {
    return checkedExtreme<Smallest>(pSrc, len, pMin);
}
ZepStatus zepsMin_64f(const Zep64f* pSrc, int len, Zep64f* pMin) {
    return checkedExtreme<Smallest>(pSrc, len, pMin);
}

ZepStatus zepsMinMax_8u(const Zep8u* pSrc, int len, Zep8u* pMin, Zep8u* pMax) {
    return checkedExtremes(pSrc, len, pMin, pMax);
}
ZepStatus zepsMinMax_16s(const Zep16s* pSrc, int len, Zep16s* pMin, Zep16s* pMax) {
    return checkedExtremes(pSrc, len, pMin, pMax);
}
ZepStatus zepsMinMax_32f(const Zep32f* pSrc, int len, Zep32f* pMin, Zep32f* pMax) {
    return checkedExtremes(pSrc, len, pMin, pMax);
}

}  // namespace zep::ZEP_VARIANT
