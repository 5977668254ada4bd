// From elements to bytes, as the typed forms of the movement functions hand them to the byte
// routines.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/checks.h"

namespace zep::ZEP_VARIANT {

// action(bytes) when the pointers and len are good. The action returns the status itself, so that an
// entry ends in a jump to its large routine.
template <class T, class Action>
inline ZepStatus withByteCount(int len, Action action, const auto*... p) {
    if (const ZepStatus s = checkVectors(len, p...); s != zepStsNoErr) return s;
    return action(static_cast<std::size_t>(len) * sizeof(T));
}

}  // namespace zep::ZEP_VARIANT
