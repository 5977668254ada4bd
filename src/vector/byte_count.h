// From elements to bytes, as the typed forms of the movement functions hand them to the byte
// routines.
#pragma once

#include <cstdint>

#include "core/checks.h"

namespace zep::ZEP_VARIANT {

// The product is formed in 32 bits; from 2^31 bytes on it wraps, and the byte routines take what is
// not positive as a wrong size.
template <class T>
inline std::int32_t byteCount(int len) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(len) * std::uint32_t{sizeof(T)});
}

// Runs action(bytes), bytes greater than 0, when the pointers and len are good.
template <class T, class Action>
inline ZepStatus withByteCount(int len, Action action, const auto*... p) {
    if (const ZepStatus s = checkVectors(len, p...); s != zepStsNoErr) return s;
    const std::int32_t bytes = byteCount<T>(len);
    if (bytes <= 0) return zepStsSizeErr;
    action(bytes);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
