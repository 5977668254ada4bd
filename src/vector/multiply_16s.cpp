// Saturated products of 16-bit integers.
#include "core/variant_exports.h"
#include "simd/halves16.h"
#include "vector/convert.h"

namespace zep::ZEP_VARIANT {

ZepStatus zepsMul_16s(const Zep16s* pSrc1, const Zep16s* pSrc2, Zep16s* pDst, int len) {
    const auto product = [](auto a, auto b) __attribute__((always_inline)) {
        return simd::mulSaturated(a, b);
    };
    return checkedConvert(product, pDst, len, pSrc1, pSrc2);
}

}  // namespace zep::ZEP_VARIANT
