// Products of a vector and a constant, and quotients by a constant, which multiply by its rounded
// reciprocal.
//
// A real constant of one copies, or in place does nothing; a real zero, of either sign, clears
// without reading the source. Division hands its reciprocal to the product, short cuts included.
// Complex constants have no short cuts.
#include "core/variant_exports.h"
#include "simd/complex.h"
#include "vector/short_cuts.h"
#include "vector/streaming.h"

namespace zep::ZEP_VARIANT {
namespace {

template <class T>
auto mulConstant(T val) {
    return [val](auto x) { return x * val; };
}
auto mulPair(Zep32fc val) {
    return
        [val](auto x) { return simd::complexMul(x, decltype(x)::broadcastPair(val.re, val.im)); };
}

template <class Stream, class T>
[[gnu::always_inline]] inline ZepStatus multiply(T val, T* pDst, int len, const T* pSrc) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    if (val == 1) return copyVector(pSrc, pDst, len);
    if (val == 0) return clearVector(pDst, len);
    map<Stream>(mulConstant(val), pDst, len, pSrc);
    return zepStsNoErr;
}

}  // namespace

ZepStatus zepsMulC_32f(const Zep32f* pSrc, Zep32f val, Zep32f* pDst, int len) {
    return multiply<StreamOneSource>(val, pDst, len, pSrc);
}
ZepStatus zepsMulC_64f(const Zep64f* pSrc, Zep64f val, Zep64f* pDst, int len) {
    return multiply<NeverStream>(val, pDst, len, pSrc);
}
ZepStatus zepsMulC_32fc(const Zep32fc* pSrc, Zep32fc val, Zep32fc* pDst, int len) {
    return checkedMapComplex(mulPair(val), pDst, len, pSrc);
}
ZepStatus zepsMulC_32f_I(Zep32f val, Zep32f* pSrcDst, int len) {
    return multiply<NeverStream>(val, pSrcDst, len, pSrcDst);
}
ZepStatus zepsMulC_64f_I(Zep64f val, Zep64f* pSrcDst, int len) {
    return multiply<NeverStream>(val, pSrcDst, len, pSrcDst);
}
ZepStatus zepsMulC_32fc_I(Zep32fc val, Zep32fc* pSrcDst, int len) {
    return checkedMapComplex(mulPair(val), pSrcDst, len, pSrcDst);
}

ZepStatus zepsDivC_32f(const Zep32f* pSrc, Zep32f val, Zep32f* pDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    if (val == 0.0f) return zepStsDivByZeroErr;
    return zepsMulC_32f(pSrc, 1.0f / val, pDst, len);
}
ZepStatus zepsDivC_32f_I(Zep32f val, Zep32f* pSrcDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrcDst); s != zepStsNoErr) return s;
    return zepsDivC_32f(pSrcDst, val, pSrcDst, len);
}
ZepStatus zepsDivC_64f_I(Zep64f val, Zep64f* pSrcDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrcDst); s != zepStsNoErr) return s;
    if (val == 0.0) return zepStsDivByZeroErr;
    return zepsMulC_64f_I(1.0 / val, pSrcDst, len);
}
ZepStatus zepsDivC_32fc_I(Zep32fc val, Zep32fc* pSrcDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrcDst); s != zepStsNoErr) return s;
    const Zep32f magnitude2 = val.re * val.re + val.im * val.im;
    if (magnitude2 == 0.0f) return zepStsDivByZeroErr;
    const Zep32f inv = 1.0f / magnitude2;
    // Qualified: a Zep32fc argument would bring in the public function too.
    return ZEP_VARIANT::zepsMulC_32fc_I({val.re * inv, 0.0f - val.im * inv}, pSrcDst, len);
}

}  // namespace zep::ZEP_VARIANT
