// Sums and differences of a vector and a constant. A real constant of zero copies, or in place does
// nothing at all; a complex one is an operand like any other.
#include <cstdint>

#include "core/variant_exports.h"
#include "vector/shapes.h"
#include "vector/short_cuts.h"

namespace zep::ZEP_VARIANT {
namespace {

template <class T>
auto addConstant(T val) {
    return [val](auto x) { return x + val; };
}
template <class T>
auto subConstant(T val) {
    return [val](auto x) { return x - val; };
}
auto addPair(Zep32fc val) {
    return [val](auto x) { return x + decltype(x)::broadcastPair(val.re, val.im); };
}
auto subPair(Zep32fc val) {
    return [val](auto x) { return x - decltype(x)::broadcastPair(val.re, val.im); };
}

}  // namespace

ZepStatus zepsAddC_32f(const Zep32f* pSrc, Zep32f val, Zep32f* pDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    if (val == 0.0f) return copyVector(pSrc, pDst, len);
    map(addConstant(val), pDst, len, pSrc);
    return zepStsNoErr;
}
ZepStatus zepsAddC_64f(const Zep64f* pSrc, Zep64f val, Zep64f* pDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    if (val == 0.0) {
        // The byte count is 32 bits wide: from 2^28 elements on it is not positive, and the copy
        // refuses it.
        const auto bytes =
            static_cast<std::int32_t>(static_cast<std::uint32_t>(len) * sizeof(Zep64f));
        return zepsCopy_8u(reinterpret_cast<const Zep8u*>(pSrc), reinterpret_cast<Zep8u*>(pDst),
                           bytes);
    }
    map(addConstant(val), pDst, len, pSrc);
    return zepStsNoErr;
}
ZepStatus zepsAddC_32f_I(Zep32f val, Zep32f* pSrcDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrcDst); s != zepStsNoErr) return s;
    if (val != 0.0f) map(addConstant(val), pSrcDst, len, pSrcDst);
    return zepStsNoErr;
}
ZepStatus zepsAddC_32fc_I(Zep32fc val, Zep32fc* pSrcDst, int len) {
    return checkedMapComplex(addPair(val), pSrcDst, len, pSrcDst);
}

ZepStatus zepsSubC_32f(const Zep32f* pSrc, Zep32f val, Zep32f* pDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    if (val == 0.0f) return copyVector(pSrc, pDst, len);
    map(subConstant(val), pDst, len, pSrc);
    return zepStsNoErr;
}
ZepStatus zepsSubC_64f(const Zep64f* pSrc, Zep64f val, Zep64f* pDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    if (val == 0.0) return copyVector(pSrc, pDst, len);
    map(subConstant(val), pDst, len, pSrc);
    return zepStsNoErr;
}
ZepStatus zepsSubC_32fc(const Zep32fc* pSrc, Zep32fc val, Zep32fc* pDst, int len) {
    return checkedMapComplex(subPair(val), pDst, len, pSrc);
}
ZepStatus zepsSubC_32f_I(Zep32f val, Zep32f* pSrcDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrcDst); s != zepStsNoErr) return s;
    if (val != 0.0f) map(subConstant(val), pSrcDst, len, pSrcDst);
    return zepStsNoErr;
}
ZepStatus zepsSubC_64f_I(Zep64f val, Zep64f* pSrcDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrcDst); s != zepStsNoErr) return s;
    if (val != 0.0) map(subConstant(val), pSrcDst, len, pSrcDst);
    return zepStsNoErr;
}
ZepStatus zepsSubC_32fc_I(Zep32fc val, Zep32fc* pSrcDst, int len) {
    return checkedMapComplex(subPair(val), pSrcDst, len, pSrcDst);
}

}  // namespace zep::ZEP_VARIANT
