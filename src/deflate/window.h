// The history window: the last 32 KiB of output in circular order, with its first bytes repeated
// behind its end.
#pragma once

#include <cstddef>
#include <cstring>

#include "deflate/lz77_state.h"
#include "simd/vec.h"

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

// Both destinations from one pass over the source, which may come from far away in memory.
inline void copyToBoth(Zep8u* dst, Zep8u* window, const Zep8u* src, std::size_t length) {
    using V = simd::Native<Zep8u>;
    std::size_t n = 0;
    for (; n + V::lanes <= length; n += V::lanes) {
        const V v = V::load(src + n);
        v.store(dst + n);
        v.store(window + n);
    }
    std::memcpy(dst + n, src + n, length - n);
    std::memcpy(window + n, src + n, length - n);
}

// Copies to output bytes that the source does not overlap, and enters them.
inline void copyEntering(ZepLZ77State& state, Zep8u* output, const Zep8u* src, std::size_t length) {
    if (length == 0) return;
    Zep8u* const window = state.window;
    std::size_t pos = static_cast<std::size_t>(state.windowPos);
    if (length >= kWindowBytes) {
        const std::size_t before = length - kWindowBytes;
        std::memcpy(output, src, before);
        copyToBoth(output + before, window, src + before, kWindowBytes);
        std::memcpy(window + kWindowBytes, window, kWindowMirror);
        pos = 0;
    } else {
        const std::size_t toEnd = kWindowBytes - pos;
        const std::size_t head = length < toEnd ? length : toEnd;
        copyToBoth(output, window + pos, src, head);
        copyToBoth(output + head, window, src + head, length - head);
        if (pos < kWindowMirror || head < length)
            std::memcpy(window + kWindowBytes, window, kWindowMirror);
        pos = (pos + length) % kWindowBytes;
    }
    state.windowPos = static_cast<Zep32s>(pos);
}

}  // namespace zep::ZEP_VARIANT
