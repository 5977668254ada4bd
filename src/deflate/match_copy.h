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

// Wide copies write whole vectors and may go beyond the length by less than this.
inline constexpr std::ptrdiff_t kCopyOvershoot = 32;

template <int kBytes>
inline void copyBlock(Zep8u* dst, const Zep8u* src) {
    Zep8u block[kBytes];
    std::memcpy(block, src, kBytes);
    std::memcpy(dst, block, kBytes);
}

// From a source that the written bytes do not touch, or that is at least 16 bytes back.
inline void copyWide(Zep8u* dst, const Zep8u* src, std::size_t length) {
    const Zep8u* const end = dst + length;
    do {
        copyBlock<16>(dst, src);
        copyBlock<16>(dst + 16, src + 16);
        dst += 32;
        src += 32;
    } while (dst < end);
}

// From 1 to 15 bytes back, written in words of 8.
inline void copyNear(Zep8u* dst, std::size_t distance, std::size_t length) {
    const Zep8u* src = dst - distance;
    const Zep8u* const end = dst + length;
    if (distance >= 8) {
        for (; dst < end; dst += 8, src += 8) copyBlock<8>(dst, src);
        return;
    }
    // The pattern repeated over a word, stored at steps of the largest multiple of the distance.
    static constexpr auto every = [](int bytes) {
        Zep64u ones = 0;
        for (int i = 0; i < 8; i += bytes) ones |= Zep64u{1} << (8 * i);
        return ones;
    };
    static constexpr Zep64u kRepeat[8] = {0,        every(1), every(2), every(3),
                                          every(4), every(5), every(6), every(7)};
    static constexpr Zep8u kStep[8] = {0, 8, 8, 6, 8, 5, 6, 7};
    Zep64u word;
    std::memcpy(&word, src, 8);
    word = (word & ((Zep64u{1} << (8 * distance)) - 1)) * kRepeat[distance];
    for (; dst < end; dst += kStep[distance]) std::memcpy(dst, &word, 8);
}

// Any match. What does not fit the output is left pending for the next call.
[[gnu::noinline]] inline void copyMatch(Output& out, std::size_t length, std::size_t distance,
                                        ZepLZ77State& state) {
    if (length > out.room()) {
        state.pendingMatchLength = static_cast<Zep32s>(length - out.room());
        state.pendingMatchDistance = static_cast<Zep32s>(distance);
        length = out.room();
    }
    const bool wide = out.room() >= length + kCopyOvershoot;
    if (distance > out.written()) {
        const std::size_t beyond = distance - out.written();  // 1 .. 32768 bytes before begin
        const std::size_t n = beyond < length ? beyond : length;
        std::memcpy(out.next, out.window + (out.windowPos - beyond) % kWindowBytes, n);
        out.next += n;
        length -= n;
    }
    Zep8u* const end = out.next + length;
    if (!wide) {
        for (const Zep8u* from = out.next - distance; out.next < end; ++from) *out.next++ = *from;
    } else if (length != 0) {
        if (distance < 16)
            copyNear(out.next, distance, length);
        else
            copyWide(out.next, out.next - distance, length);
    }
    out.next = end;
}

}  // namespace zep::ZEP_VARIANT
