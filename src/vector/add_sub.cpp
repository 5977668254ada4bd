#include "core/variant_exports.h"
#include "vector/shapes.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr auto add = [](auto a, auto b) { return a + b; };

}  // namespace

ZepStatus zepsAdd_32f(const Zep32f* pSrc1, const Zep32f* pSrc2, Zep32f* pDst, int len) {
    return checkedMap2(pSrc1, pSrc2, pDst, len, add);
}

}  // namespace zep::ZEP_VARIANT
