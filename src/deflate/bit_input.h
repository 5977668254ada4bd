// The bit buffer over a source of bytes: bits enter above the ones held, the next bit of the stream
// is bit 0.
#pragma once

#include <cstddef>
#include <cstring>

#include "deflate/lz77_state.h"

namespace zep::ZEP_VARIANT {

struct BitInput {
    Zep8u* next;
    Zep8u* end;
    Zep64u bits;     // zero above count
    unsigned count;  // 0 .. 64

    BitInput(Zep8u* src, std::ptrdiff_t length, const ZepLZ77State& state)
        : next(src),
          end(src + length),
          bits(state.bitBuffer),
          count(static_cast<unsigned>(state.bitCount)) {}

    // A negative length, which not every caller rules out, is an empty input too.
    bool empty() const { return next >= end; }
    unsigned peek(unsigned n) const { return static_cast<unsigned>(bits) & ((1u << n) - 1); }

    void drop(unsigned n) {
        bits >>= n;
        count -= n;
    }
    unsigned take(unsigned n) {
        const unsigned value = peek(n);
        drop(n);
        return value;
    }
    // Needs count below 57 and a byte to take.
    void takeByte() {
        bits |= Zep64u{*next++} << count;
        count += 8;
    }
    // Bytes until at least n bits are held; false when the input ends before.
    bool gather(unsigned n) {
        while (count < n && !empty()) takeByte();
        return count >= n;
    }
    // As many whole bytes as fit: more than 56 bits afterwards unless the input is empty.
    void fill() {
        while (count <= 56 && !empty()) takeByte();
    }
    void clearAboveCount() {
        if (count < 64) bits &= (Zep64u{1} << count) - 1;
    }
    // Returns n whole bytes to the source.
    void returnBytes(unsigned n) {
        next -= n;
        count -= 8 * n;
        clearAboveCount();
    }

    void save(Zep8u** ppSrc, Zep32s* pSrcLen, ZepLZ77State& state) const {
        *ppSrc = next;
        *pSrcLen = static_cast<Zep32s>(end - next);
        state.bitBuffer = bits;
        state.bitCount = static_cast<Zep32s>(count);
    }
};

}  // namespace zep::ZEP_VARIANT
