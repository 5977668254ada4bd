// Products of two vectors, squares, and products added to a vector (multiply, then add: two
// roundings).
#include "core/variant_exports.h"
#include "simd/complex.h"
#include "vector/streaming.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr auto mul = [](auto a, auto b) { return a * b; };
constexpr auto complexMul = [](auto a, auto b) { return simd::complexMul(a, b); };
constexpr auto square = [](auto a) { return a * a; };
constexpr auto addProduct = [](auto sum, auto a, auto b) { return sum + a * b; };

}  // namespace

// Products of single precision never stream.
ZepStatus zepsMul_32f(const Zep32f* pSrc1, const Zep32f* pSrc2, Zep32f* pDst, int len) {
    return checkedMap(mul, pDst, len, pSrc1, pSrc2);
}
ZepStatus zepsMul_32fc(const Zep32fc* pSrc1, const Zep32fc* pSrc2, Zep32fc* pDst, int len) {
    return checkedMapComplex(complexMul, pDst, len, pSrc1, pSrc2);
}
ZepStatus zepsMul_64f(const Zep64f* pSrc1, const Zep64f* pSrc2, Zep64f* pDst, int len) {
    return checkedMap<StreamTwoSources>(mul, pDst, len, pSrc1, pSrc2);
}
ZepStatus zepsMul_32f_I(const Zep32f* pSrc, Zep32f* pSrcDst, int len) {
    return checkedMap(mul, pSrcDst, len, pSrcDst, pSrc);
}
ZepStatus zepsMul_32fc_I(const Zep32fc* pSrc, Zep32fc* pSrcDst, int len) {
    return checkedMapComplex(complexMul, pSrcDst, len, pSrcDst, pSrc);
}
ZepStatus zepsMul_64fc_I(const Zep64fc* pSrc, Zep64fc* pSrcDst, int len) {
    return checkedMapComplex(complexMul, pSrcDst, len, pSrcDst, pSrc);
}

ZepStatus zepsSqr_32f(const Zep32f* pSrc, Zep32f* pDst, int len) {
    return checkedMap(square, pDst, len, pSrc);
}
ZepStatus zepsSqr_64f(const Zep64f* pSrc, Zep64f* pDst, int len) {
    return checkedMap(square, pDst, len, pSrc);
}
ZepStatus zepsSqr_32f_I(Zep32f* pSrcDst, int len) {
    return checkedMap(square, pSrcDst, len, pSrcDst);
}
ZepStatus zepsSqr_64f_I(Zep64f* pSrcDst, int len) {
    return checkedMap(square, pSrcDst, len, pSrcDst);
}

ZepStatus zepsAddProduct_32f(const Zep32f* pSrc1, const Zep32f* pSrc2, Zep32f* pSrcDst, int len) {
    return checkedMap(addProduct, pSrcDst, len, pSrcDst, pSrc1, pSrc2);
}
ZepStatus zepsAddProductC_32f(const Zep32f* pSrc, Zep32f val, Zep32f* pSrcDst, int len) {
    const auto op = [val](auto sum, auto a) { return sum + a * val; };
    return checkedMap(op, pSrcDst, len, pSrcDst, pSrc);
}

}  // namespace zep::ZEP_VARIANT
