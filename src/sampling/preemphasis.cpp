// First-order preemphasis in place. From the end to the start: so each vector reads what it and its
// left neighbour had before, and no load waits for a store.
#include <cstddef>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT {

ZepStatus zepsPreemphasize_32f(Zep32f* pSrcDst, int len, Zep32f val) {
    using V = simd::Native<Zep32f>;
    constexpr std::ptrdiff_t L = V::lanes, kBlock = 8 * L;
    if (const ZepStatus s = checkVectors(len, pSrcDst); s != zepStsNoErr) return s;
    const V factor = V::broadcast(val);
    std::ptrdiff_t end = len;
    for (; end > kBlock; end -= kBlock) {
        Zep32f* const p = pSrcDst + end;
        simd::unroll<8>([&](auto k) {
            constexpr std::ptrdiff_t n = -(k + 1) * L;
            (V::load(p + n) - factor * V::load(p + n - 1)).store(p + n);
        });
    }
    for (; end > L; end -= L) {
        Zep32f* const p = pSrcDst + end - L;
        (V::load(p) - factor * V::load(p - 1)).store(p);
    }
    const auto left = static_cast<int>(end - 1);
    const V x = V::loadPartial(pSrcDst + 1, left), before = V::loadPartial(pSrcDst, left);
    (x - factor * before).storePartial(pSrcDst + 1, left);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
