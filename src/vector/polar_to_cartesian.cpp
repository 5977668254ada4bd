// Complex vectors from magnitudes and phases.
#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/deal.h"
#include "vector/shapes.h"
#include "vector/sine_cosine.h"
#include "vector/sweep.h"

namespace zep::ZEP_VARIANT {
namespace {

using V = simd::Native<Zep32f>;
using Z = simd::Dealt<V>;

[[gnu::always_inline]] inline Z fromPolar(V magnitude, V phase) {
    const SineCosine<V> s = sineCosine(phase);
    return {magnitude * s.cosine, magnitude * s.sine};
}

}  // namespace

ZepStatus zepsPolarToCart_32fc(const Zep32f* pSrcMagn, const Zep32f* pSrcPhase, Zep32fc* pDst,
                               int len) {
    if (const ZepStatus s = checkVectors(len, pSrcMagn, pSrcPhase, pDst); s != zepStsNoErr)
        return s;
    auto* dst = shape::parts(pDst);
    sweep<V::lanes, 1>(
        len,
        [=](std::ptrdiff_t n) {
            fromPolar(V::load(pSrcMagn + n), V::load(pSrcPhase + n)).store(dst + 2 * n);
        },
        [=](std::ptrdiff_t n, int count) {
            fromPolar(V::loadPartial(pSrcMagn + n, count), V::loadPartial(pSrcPhase + n, count))
                .storePartial(dst + 2 * n, count);
        });
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
