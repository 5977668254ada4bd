// Argument checks that every entry starts with. Included by kernel files: all of it lives in the variant's namespace.
#pragma once

#include "zepcore.h"

namespace zep::ZEP_VARIANT {

[[nodiscard]] inline bool anyNull(const auto*... p) { return (... || (p == nullptr)); }

// Null pointers before sizes: the order is part of the interface.
[[nodiscard]] inline ZepStatus checkVectors(int len, const auto*... p) {
    if (anyNull(p...)) return zepStsNullPtrErr;
    if (len <= 0) return zepStsSizeErr;
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
