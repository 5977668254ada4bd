#include "vector/movement_loops.h"

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

void set(Zep32f val, Zep32f* y, int n) {
    for (int i = 0; i < n; ++i) y[i] = val;
}
void set64(Zep64s val, Zep64s* y, int n) {
    for (int i = 0; i < n; ++i) y[i] = val;
}
void flip(const Zep32f* x, Zep32f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = x[n - 1 - i];
}
void flipDouble(const Zep64f* x, Zep64f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = x[n - 1 - i];
}
void flipInPlace(Zep32f* x, int n) {
    for (int i = 0; i < n / 2; ++i) {
        const Zep32f t = x[i];
        x[i] = x[n - 1 - i];
        x[n - 1 - i] = t;
    }
}
void flipBytes(Zep8u* x, int n) {
    for (int i = 0; i < n / 2; ++i) {
        const Zep8u t = x[i];
        x[i] = x[n - 1 - i];
        x[n - 1 - i] = t;
    }
}
void interleave2(const Zep32f* const* x, int n, Zep32f* __restrict y) {
    const Zep32f* a = x[0];
    const Zep32f* b = x[1];
    for (int i = 0; i < n; ++i) {
        y[2 * i] = a[i];
        y[2 * i + 1] = b[i];
    }
}
void interleave(const Zep32f* const* x, int ch, int n, Zep32f* __restrict y) {
    for (int c = 0; c < ch; ++c) {
        const Zep32f* a = x[c];
        for (int i = 0; i < n; ++i) y[i * ch + c] = a[i];
    }
}
void interleave2Short(const Zep16s* const* x, int n, Zep16s* __restrict y) {
    const Zep16s* a = x[0];
    const Zep16s* b = x[1];
    for (int i = 0; i < n; ++i) {
        y[2 * i] = a[i];
        y[2 * i + 1] = b[i];
    }
}
void interleaveShort(const Zep16s* const* x, int ch, int n, Zep16s* __restrict y) {
    for (int c = 0; c < ch; ++c) {
        const Zep16s* a = x[c];
        for (int i = 0; i < n; ++i) y[i * ch + c] = a[i];
    }
}
void swapBytes16(Zep16u* x, int n) {
    for (int i = 0; i < n; ++i) x[i] = __builtin_bswap16(x[i]);
}
void swapBytes32(Zep32u* x, int n) {
    for (int i = 0; i < n; ++i) x[i] = __builtin_bswap32(x[i]);
}
void swapBytes64(Zep64u* x, int n) {
    for (int i = 0; i < n; ++i) x[i] = __builtin_bswap64(x[i]);
}
void xorBytes(const Zep8u* x, Zep8u* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] ^= x[i];
}
void andConstant(const Zep16u* x, Zep16u val, Zep16u* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = x[i] & val;
}
void complement(Zep32u* x, int n) {
    for (int i = 0; i < n; ++i) x[i] = ~x[i];
}
void shiftLeft(const Zep32s* x, int val, Zep32s* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = static_cast<Zep32s>(static_cast<Zep32u>(x[i]) << val);
}
void copyBits(const Zep8u* x, int offset, Zep8u* __restrict y, int bytes) {
    for (int i = 0; i < bytes; ++i)
        y[i] = static_cast<Zep8u>((x[i] << offset) | (x[i + 1] >> (8 - offset)));
}

}  // namespace

extern constexpr MovementPeers movementLoops{
    set,         set64,       flip,        flipDouble,       flipInPlace,
    flipBytes,   interleave2, interleave,  interleave2Short, interleaveShort,
    swapBytes16, swapBytes32, swapBytes64, xorBytes,         andConstant,
    complement,  shiftLeft,   copyBits};

}  // namespace zep::bench::ZEP_PEER_LEVEL
