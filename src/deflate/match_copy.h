// Copying a match: length bytes that stand distance bytes back in the stream.
//
// The last bytes of the stream are this call's output, the ones before it the history window. A
// distance below the length repeats the bytes in between.
#pragma once

#include <cstddef>
#include <cstring>

#include "deflate/lz77_state.h"

namespace zep::ZEP_VARIANT {

struct Output {
    Zep8u* begin;
    Zep8u* next;
    Zep8u* end;
    const Zep8u* window;
    unsigned windowPos;  // the byte before begin stands at windowPos - 1

    std::size_t written() const { return static_cast<std::size_t>(next - begin); }
    std::size_t room() const { return static_cast<std::size_t>(end - next); }
};

// Writes exactly length bytes; there is room for them.
inline void copyMatchExact(Output& out, std::size_t length, std::size_t distance) {
    if (distance > out.written()) {
        std::size_t back = distance - out.written();  // 1 .. 32768 bytes before begin
        for (; back > 0 && length > 0; --back, --length)
            *out.next++ = out.window[(out.windowPos - back) % kWindowBytes];
    }
    const Zep8u* from = out.next - distance;
    for (; length > 0; --length) *out.next++ = *from++;
}

}  // namespace zep::ZEP_VARIANT
