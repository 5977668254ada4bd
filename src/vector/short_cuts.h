// What a constant operand without effect turns an operation into: a copy, or a clear.
#pragma once

#include "core/variant_exports.h"

namespace zep::ZEP_VARIANT {

inline ZepStatus copyVector(const Zep32f* src, Zep32f* dst, int len) {
    return src == dst ? zepStsNoErr : zepsCopy_32f(src, dst, len);
}
inline ZepStatus copyVector(const Zep64f* src, Zep64f* dst, int len) {
    return src == dst ? zepStsNoErr : zepsCopy_64f(src, dst, len);
}
inline ZepStatus clearVector(Zep32f* dst, int len) { return zepsZero_32f(dst, len); }
inline ZepStatus clearVector(Zep64f* dst, int len) { return zepsZero_64f(dst, len); }

}  // namespace zep::ZEP_VARIANT
