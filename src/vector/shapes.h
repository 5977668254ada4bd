// Loop shapes of the element-wise families. A shape is written once; an operation is a generic lambda that works on a
// scalar and on a vector.
#pragma once

#include <concepts>
#include <cstddef>

#include "core/checks.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT {

template <class Op, class T>
concept BinaryOp = requires(Op op, T a, simd::Native<T> v) {
    { op(a, a) } -> std::same_as<T>;
    { op(v, v) } -> std::same_as<simd::Native<T>>;
};

// dst[n] = op(a[n], b[n]). dst may be a or b; other overlap is not supported.
template <class T, BinaryOp<T> Op>
inline void map2(const T* a, const T* b, T* dst, int len, Op op) {
    using V = simd::Native<T>;
    std::ptrdiff_t n = 0;
    for (; n + V::lanes <= len; n += V::lanes) op(V::load(a + n), V::load(b + n)).store(dst + n);
    // No overlapping last vector: in place it would apply op twice.
    for (; n < len; ++n) dst[n] = op(a[n], b[n]);
}

template <class T, BinaryOp<T> Op>
inline ZepStatus checkedMap2(const T* a, const T* b, T* dst, int len, Op op) {
    if (const ZepStatus s = checkVectors(len, a, b, dst); s != zepStsNoErr) return s;
    map2(a, b, dst, len, op);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
