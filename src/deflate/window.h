// The history window: the last 32 KiB of output in circular order, with its first bytes repeated
// behind its end.
#pragma once

#include <cstddef>
#include <cstring>

#include "deflate/lz77_state.h"

namespace zep::ZEP_VARIANT {

// Enters the last bytes of length bytes of output, all of them if they are fewer than the window
// holds.
inline void enterWindow(ZepLZ77State& state, const Zep8u* output, std::size_t length) {
    if (length == 0) return;
    Zep8u* const window = state.window;
    std::size_t pos = static_cast<std::size_t>(state.windowPos);
    if (length >= kWindowBytes) {
        std::memcpy(window, output + length - kWindowBytes, kWindowBytes);
        std::memcpy(window + kWindowBytes, window, kWindowMirror);
        pos = 0;
    } else {
        const std::size_t toEnd = kWindowBytes - pos;
        const std::size_t head = length < toEnd ? length : toEnd;
        std::memcpy(window + pos, output, head);
        std::memcpy(window, output + head, length - head);
        if (pos < kWindowMirror || head < length)
            std::memcpy(window + kWindowBytes, window, kWindowMirror);
        pos = (pos + length) % kWindowBytes;
    }
    state.windowPos = static_cast<Zep32s>(pos);
}

}  // namespace zep::ZEP_VARIANT
