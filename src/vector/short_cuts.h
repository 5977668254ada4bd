// What a constant operand without effect turns an operation into: a copy, or a clear. The copy and
// clear primitives count bytes in 32 bits, an operation counts elements, so long vectors go in
// pieces.
#pragma once

#include "core/variant_exports.h"

namespace zep::ZEP_VARIANT {

namespace short_cut {
inline constexpr int kPiece = 1 << 27;

inline ZepStatus copy(const Zep32f* src, Zep32f* dst, int len) {
    return zepsCopy_32f(src, dst, len);
}
inline ZepStatus copy(const Zep64f* src, Zep64f* dst, int len) {
    return zepsCopy_64f(src, dst, len);
}
inline ZepStatus clear(Zep32f* dst, int len) { return zepsZero_32f(dst, len); }
inline ZepStatus clear(Zep64f* dst, int len) { return zepsZero_64f(dst, len); }
}  // namespace short_cut

template <class T>
[[gnu::noinline]] ZepStatus copyVector(const T* src, T* dst, int len) {
    if (src == dst) return zepStsNoErr;
    for (; len > short_cut::kPiece; len -= short_cut::kPiece) {
        static_cast<void>(short_cut::copy(src, dst, short_cut::kPiece));
        src += short_cut::kPiece, dst += short_cut::kPiece;
    }
    return short_cut::copy(src, dst, len);
}

template <class T>
[[gnu::noinline]] ZepStatus clearVector(T* dst, int len) {
    for (; len > short_cut::kPiece; len -= short_cut::kPiece) {
        static_cast<void>(short_cut::clear(dst, short_cut::kPiece));
        dst += short_cut::kPiece;
    }
    return short_cut::clear(dst, len);
}

}  // namespace zep::ZEP_VARIANT
