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

// The copies below write whole vectors and may go beyond length by this much.
inline constexpr int kCopyOvershoot = 48;

template <int kBytes>
inline void copyBlock(Zep8u* dst, const Zep8u* src) {
    Zep8u block[kBytes];
    std::memcpy(block, src, kBytes);
    std::memcpy(dst, block, kBytes);
}

// From a source that the written bytes do not touch, or that is at least 16 bytes back.
inline void copyDisjoint(Zep8u* dst, const Zep8u* src, std::size_t length) {
    const Zep8u* const end = dst + length;
    copyBlock<16>(dst, src);
    copyBlock<16>(dst + 16, src + 16);
    for (dst += 32, src += 32; dst < end; dst += 16, src += 16) copyBlock<16>(dst, src);
}

// From distance bytes back in the output itself.
inline void copyWithin(Zep8u* dst, std::size_t distance, std::size_t length) {
    const Zep8u* src = dst - distance;
    if (distance >= 16) [[likely]] {
        copyDisjoint(dst, src, length);
        return;
    }
    const Zep8u* const end = dst + length;
    if (distance >= 8) {
        do {
            copyBlock<8>(dst, src);
            dst += 8;
            src += 8;
        } while (dst < end);
        return;
    }
    // The pattern repeated to 8 bytes, stored at steps of the largest multiple of the distance.
    static constexpr Zep64u kRepeat[8] = {0,
                                          0x0101010101010101u,
                                          0x0001000100010001u,
                                          0x0001000001u << 0 | Zep64u{1} << 48,
                                          0x100000001u,
                                          Zep64u{1} << 40 | 1,
                                          Zep64u{1} << 48 | 1,
                                          Zep64u{1} << 56 | 1};
    static constexpr Zep8u kStep[8] = {0, 8, 8, 6, 8, 5, 6, 7};
    Zep64u pattern;
    std::memcpy(&pattern, src, 8);
    pattern = (pattern & ((Zep64u{1} << (8 * distance)) - 1)) * kRepeat[distance];
    do {
        std::memcpy(dst, &pattern, 8);
        dst += kStep[distance];
    } while (dst < end);
}

}  // namespace zep::ZEP_VARIANT
