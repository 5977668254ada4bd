// From elements to bytes, as the typed forms of the movement functions hand them to the byte
// routines.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/checks.h"

namespace zep::ZEP_VARIANT {

// The product is formed in 32 bits; from 2^31 bytes on it wraps, and the byte routines take what is
// not positive as a wrong size.
template <class T>
inline std::int32_t byteCount(int len) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(len) * std::uint32_t{sizeof(T)});
}

// action(bytes), bytes greater than 0, when the pointers and len are good. The action returns the
// status itself, so that an entry ends in a jump to its large routine.
template <class T, class Action>
inline ZepStatus withByteCount(int len, Action action, const auto*... p) {
    if (const ZepStatus s = checkVectors(len, p...); s != zepStsNoErr) return s;
    const std::int32_t bytes = byteCount<T>(len);
    if (bytes <= 0) return zepStsSizeErr;
    return action(static_cast<std::size_t>(bytes));
}

}  // namespace zep::ZEP_VARIANT
