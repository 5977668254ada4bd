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

// op, which a constant of zero makes the identity.
template <class Op, class T>
[[gnu::always_inline]] inline ZepStatus mapUnlessZero(T val, Op op, T* pDst, int len,
                                                      const T* pSrc) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    if (val == 0) return copyVector(pSrc, pDst, len);
    map(op, pDst, len, pSrc);
    return zepStsNoErr;
}

}  // namespace

ZepStatus zepsAddC_32f(const Zep32f* pSrc, Zep32f val, Zep32f* pDst, int len) {
    return mapUnlessZero(val, addConstant(val), pDst, len, pSrc);
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
    return mapUnlessZero(val, addConstant(val), pSrcDst, len, pSrcDst);
}
ZepStatus zepsAddC_32fc_I(Zep32fc val, Zep32fc* pSrcDst, int len) {
    return checkedMapComplex(addPair(val), pSrcDst, len, pSrcDst);
}

ZepStatus zepsSubC_32f(const Zep32f* pSrc, Zep32f val, Zep32f* pDst, int len) {
    return mapUnlessZero(val, subConstant(val), pDst, len, pSrc);
}
ZepStatus zepsSubC_64f(const Zep64f* pSrc, Zep64f val, Zep64f* pDst, int len) {
    return mapUnlessZero(val, subConstant(val), pDst, len, pSrc);
}
ZepStatus zepsSubC_32fc(const Zep32fc* pSrc, Zep32fc val, Zep32fc* pDst, int len) {
    return checkedMapComplex(subPair(val), pDst, len, pSrc);
}
ZepStatus zepsSubC_32f_I(Zep32f val, Zep32f* pSrcDst, int len) {
    return mapUnlessZero(val, subConstant(val), pSrcDst, len, pSrcDst);
}
ZepStatus zepsSubC_64f_I(Zep64f val, Zep64f* pSrcDst, int len) {
    return mapUnlessZero(val, subConstant(val), pSrcDst, len, pSrcDst);
}
ZepStatus zepsSubC_32fc_I(Zep32fc val, Zep32fc* pSrcDst, int len) {
    return checkedMapComplex(subPair(val), pSrcDst, len, pSrcDst);
}

}  // namespace zep::ZEP_VARIANT
