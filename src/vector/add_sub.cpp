// Sums and differences of two vectors.
#include "core/variant_exports.h"
#include "vector/streaming.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr auto add = [](auto a, auto b) { return a + b; };
// The first vector is the subtrahend.
constexpr auto subFrom = [](auto a, auto b) { return b - a; };

}  // namespace

ZepStatus zepsAdd_32f(const Zep32f* pSrc1, const Zep32f* pSrc2, Zep32f* pDst, int len) {
    return checkedMap<StreamTwoSources>(add, pDst, len, pSrc1, pSrc2);
}
ZepStatus zepsAdd_32fc(const Zep32fc* pSrc1, const Zep32fc* pSrc2, Zep32fc* pDst, int len) {
    return checkedMapComplex(add, pDst, len, pSrc1, pSrc2);
}
ZepStatus zepsAdd_64f(const Zep64f* pSrc1, const Zep64f* pSrc2, Zep64f* pDst, int len) {
    return checkedMap<StreamTwoSources>(add, pDst, len, pSrc1, pSrc2);
}
ZepStatus zepsAdd_32f_I(const Zep32f* pSrc, Zep32f* pSrcDst, int len) {
    return checkedMap(add, pSrcDst, len, pSrcDst, pSrc);
}
ZepStatus zepsAdd_32fc_I(const Zep32fc* pSrc, Zep32fc* pSrcDst, int len) {
    return checkedMapComplex(add, pSrcDst, len, pSrcDst, pSrc);
}
ZepStatus zepsAdd_64f_I(const Zep64f* pSrc, Zep64f* pSrcDst, int len) {
    return checkedMap(add, pSrcDst, len, pSrcDst, pSrc);
}

ZepStatus zepsSub_32f(const Zep32f* pSrc1, const Zep32f* pSrc2, Zep32f* pDst, int len) {
    return checkedMap<StreamTwoSources>(subFrom, pDst, len, pSrc1, pSrc2);
}
ZepStatus zepsSub_32fc(const Zep32fc* pSrc1, const Zep32fc* pSrc2, Zep32fc* pDst, int len) {
    return checkedMapComplex(subFrom, pDst, len, pSrc1, pSrc2);
}
ZepStatus zepsSub_32f_I(const Zep32f* pSrc, Zep32f* pSrcDst, int len) {
    return checkedMap(subFrom, pSrcDst, len, pSrc, pSrcDst);
}
ZepStatus zepsSub_32fc_I(const Zep32fc* pSrc, Zep32fc* pSrcDst, int len) {
    return checkedMapComplex(subFrom, pSrcDst, len, pSrc, pSrcDst);
}
ZepStatus zepsSub_64f_I(const Zep64f* pSrc, Zep64f* pSrcDst, int len) {
    return checkedMap(subFrom, pSrcDst, len, pSrc, pSrcDst);
}

}  // namespace zep::ZEP_VARIANT
