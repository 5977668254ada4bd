// Absolute values: the sign bit is cleared, of NaN and -0 too.
#include "core/variant_exports.h"
#include "vector/shapes.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr auto absolute = [](auto x) { return abs(x); };

}  // namespace

ZepStatus zepsAbs_32f(const Zep32f* pSrc, Zep32f* pDst, int len) {
    return checkedMap(absolute, pDst, len, pSrc);
}
ZepStatus zepsAbs_64f(const Zep64f* pSrc, Zep64f* pDst, int len) {
    return checkedMap(absolute, pDst, len, pSrc);
}
ZepStatus zepsAbs_32f_I(Zep32f* pSrcDst, int len) {
    return checkedMap(absolute, pSrcDst, len, pSrcDst);
}
ZepStatus zepsAbs_64f_I(Zep64f* pSrcDst, int len) {
    return checkedMap(absolute, pSrcDst, len, pSrcDst);
}

}  // namespace zep::ZEP_VARIANT
