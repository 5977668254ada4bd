// Floating dot products, real and complex.
#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/reduce_pairs.h"
#include "vector/reduce.h"
#include "vector/shapes.h"

namespace zep::ZEP_VARIANT {
namespace {

template <class V>
struct DotTotal {
    V sum = V::zero();
    [[gnu::always_inline]] void add(V a, V b) { sum = mulAdd(a, b, sum); }
    [[gnu::always_inline]] void merge(const DotTotal& other) { sum = sum + other.sum; }
};

// Of interleaved pairs. `straight` gathers re * re in even lanes and im * im in odd ones, `crossed`
// the two products of the imaginary part.
template <class V>
struct ComplexDotTotal {
    V straight = V::zero(), crossed = V::zero();
    [[gnu::always_inline]] void add(V a, V b) {
        simd::keepInRegister(a), simd::keepInRegister(b);
        straight = mulAdd(a, b, straight);
        crossed = mulAdd(a, swapPairs(b), crossed);
    }
    [[gnu::always_inline]] void merge(const ComplexDotTotal& other) {
        straight = straight + other.straight;
        crossed = crossed + other.crossed;
    }
};

template <class C>
inline ZepStatus checkedComplexDot(const C* a, const C* b, int len, C* result) {
    if (const ZepStatus s = checkVectors(len, a, b, result); s != zepStsNoErr) return s;
    using V = simd::Native<decltype(C::re)>;
    const auto t =
        foldSum<4>(std::ptrdiff_t{2} * len, ComplexDotTotal<V>{}, shape::parts(a), shape::parts(b));
    const auto straight = reduceAddPairs(t.straight), crossed = reduceAddPairs(t.crossed);
    simd::writeAny(result, C{straight.even - straight.odd, crossed.even + crossed.odd});
    return zepStsNoErr;
}

}  // namespace

ZepStatus zepsDotProd_64f(const Zep64f* pSrc1, const Zep64f* pSrc2, int len, Zep64f* pDp) {
    if (const ZepStatus s = checkVectors(len, pSrc1, pSrc2, pDp); s != zepStsNoErr) return s;
    using V = simd::Native<Zep64f>;
    simd::writeAny(pDp, reduceAdd(foldSum<8>(len, DotTotal<V>{}, pSrc1, pSrc2).sum));
    return zepStsNoErr;
}
ZepStatus zepsDotProd_32fc(const Zep32fc* pSrc1, const Zep32fc* pSrc2, int len, Zep32fc* pDp) {
    return checkedComplexDot(pSrc1, pSrc2, len, pDp);
}
ZepStatus zepsDotProd_64fc(const Zep64fc* pSrc1, const Zep64fc* pSrc2, int len, Zep64fc* pDp) {
    return checkedComplexDot(pSrc1, pSrc2, len, pDp);
}

}  // namespace zep::ZEP_VARIANT
