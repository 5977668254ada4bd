// Element-wise maximum, minimum and thresholds. Operands of min and max stand in the order that the
// header promises for not-a-numbers and zeros: the second one is the result then.
#include "core/variant_exports.h"
#include "vector/shapes.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr auto larger = [](auto a, auto b) { return max(a, b); };
constexpr auto smaller = [](auto a, auto b) { return min(a, b); };

enum RelOp { kLessThan = 0, kGreaterThan = 4 };

inline ZepStatus checkedThreshold(const Zep32f* src, Zep32f* dst, int len, Zep32f level,
                                  int relOp) {
    if (const ZepStatus s = checkVectors(len, src, dst); s != zepStsNoErr) return s;
    if (relOp != kLessThan && relOp != kGreaterThan) return zepStsBadArgErr;
    if (relOp == kLessThan)
        map([level](auto x) { return max(x, decltype(x)::broadcast(level)); }, dst, len, src);
    else
        map([level](auto x) { return min(x, decltype(x)::broadcast(level)); }, dst, len, src);
    return zepStsNoErr;
}

}  // namespace

ZepStatus zepsMaxEvery_32f_I(const Zep32f* pSrc, Zep32f* pSrcDst, int len) {
    return checkedMap(larger, pSrcDst, len, pSrcDst, pSrc);
}
ZepStatus zepsMinEvery_32f_I(const Zep32f* pSrc, Zep32f* pSrcDst, int len) {
    return checkedMap(smaller, pSrcDst, len, pSrcDst, pSrc);
}

ZepStatus zepsThreshold_32f(const Zep32f* pSrc, Zep32f* pDst, int len, Zep32f level, int relOp) {
    return checkedThreshold(pSrc, pDst, len, level, relOp);
}
ZepStatus zepsThreshold_32f_I(Zep32f* pSrcDst, int len, Zep32f level, int relOp) {
    return checkedThreshold(pSrcDst, pSrcDst, len, level, relOp);
}
ZepStatus zepsThreshold_LT_32f_I(Zep32f* pSrcDst, int len, Zep32f level) {
    return checkedThreshold(pSrcDst, pSrcDst, len, level, kLessThan);
}

ZepStatus zepsThreshold_GTVal_32f_I(Zep32f* pSrcDst, int len, Zep32f level, Zep32f value) {
    const auto op = [=](auto x) {
        using V = decltype(x);
        return select(x > V::broadcast(level), V::broadcast(value), x);
    };
    return checkedMap(op, pSrcDst, len, pSrcDst);
}
ZepStatus zepsThreshold_LTVal_32f_I(Zep32f* pSrcDst, int len, Zep32f level, Zep32f value) {
    const auto op = [=](auto x) {
        using V = decltype(x);
        return select(x < V::broadcast(level), V::broadcast(value), x);
    };
    return checkedMap(op, pSrcDst, len, pSrcDst);
}

}  // namespace zep::ZEP_VARIANT
