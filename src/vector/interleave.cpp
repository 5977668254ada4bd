// Channels to frames: pDst[i * ch + c] = pSrc[c][i]. The work goes by tiles of some channels times
// some samples that are transposed in registers. The last tile of either direction overlaps the one
// before it, so no tail is left.
//
// A block of samples is finished for all channels before the next: a block of each source is one
// cache line, read once, and the frames are written in nearly ascending order.
#include <algorithm>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/channels.h"
#include "simd/vec.h"
#include "vector/block_map.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr int kHalf = 16;  // bytes within which lanes can be dealt

// Samples of a channel in a tile.
template <class T>
constexpr std::ptrdiff_t kTileSamples = kHalf / sizeof(T);

// Bytes of the widest register whose lanes can be shuffled.
template <class T>
constexpr int kShuffledBytes = sizeof(T) == 4 ? simd::kFloatBytes : simd::kIntBytes;

// Channels of the widest tile: a frame of them fills a register of up to two halves.
template <class T>
constexpr int kTileChannels = std::min(kShuffledBytes<T>, sizeof(T) == 4 ? 2 * kHalf : kHalf) /
                              int{sizeof(T)};

// Transposes kTileSamples from i on of C channels, src and dst standing at their first channel.
// alone: there are no other channels, so frames follow each other.
template <int C, bool alone, class T>
[[gnu::always_inline]] inline void interleaveTile(const T* const* src, std::ptrdiff_t i, T* dst,
                                                  std::ptrdiff_t ch) {
    constexpr int laneBytes = int{sizeof(T)};
    constexpr int frameBytes = C * laneBytes;
    if constexpr (frameBytes <= kHalf) {
        using B = simd::Block<kHalf>;
        constexpr std::ptrdiff_t framesOfRegister = kHalf / frameBytes;
        const auto x =
            simd::Pack<laneBytes, B, C>::load([=](int c) { return B::load(src[c] + i); });
        simd::toFrames(x).each([=](int r, B frames) {
            T* const frame = dst + (i + r * framesOfRegister) * ch;
            if constexpr (alone)
                frames.store(frame);
            else
                simd::storeParts<frameBytes>(frames, frame, ch * laneBytes);
        });
    } else {
        // Lower halves hold the first C / 2 channels, upper ones the others.
        using B = simd::Block<frameBytes>;
        const auto x = simd::Pack<laneBytes, B, C / 2>::load(
            [=](int c) { return B::loadHalves(src[c] + i, src[c + C / 2] + i); });
        simd::toFrames(x).each([=](int r, B frame) { frame.store(dst + (i + r) * ch); });
    }
}

// Samples first to last of the C channels from c on; at least one tile of them.
template <int C, bool alone, class T>
void interleaveGroup(const T* const* src, std::ptrdiff_t c, std::ptrdiff_t ch, std::ptrdiff_t first,
                     std::ptrdiff_t last, T* dst) {
    std::ptrdiff_t i = first;
    for (; i + kTileSamples<T> <= last; i += kTileSamples<T>)
        interleaveTile<C, alone>(src + c, i, dst + c, alone ? C : ch);
    if (i != last)
        interleaveTile<C, alone>(src + c, last - kTileSamples<T>, dst + c, alone ? C : ch);
}

// Two channels without others, in the widest registers; len is at least one of them.
template <class T>
[[gnu::always_inline]] inline void interleaveTwo(const T* a, const T* b, std::ptrdiff_t len,
                                                 T* dst) {
    using B = simd::Block<kShuffledBytes<T>>;
    constexpr std::ptrdiff_t samples = B::bytes / sizeof(T);
    const auto tile = [=](std::ptrdiff_t i) __attribute__((always_inline)) {
        const auto x = B::load(a + i), y = B::load(b + i);
        simd::interleaveFront<int{sizeof(T)}>(x, y).store(dst + 2 * i);
        simd::interleaveBack<int{sizeof(T)}>(x, y).store(dst + 2 * i + samples);
    };
    const std::ptrdiff_t pairs = len & -(2 * samples);
    for (std::ptrdiff_t i = 0; i < pairs; i += 2 * samples) tile(i), tile(i + samples);
    if ((len & samples) != 0) tile(pairs);
    if ((len & (samples - 1)) != 0) tile(len - samples);
}

// The same for all channels; ch >= 3.
template <class T>
void interleaveBlock(const T* const* src, std::ptrdiff_t ch, std::ptrdiff_t first,
                     std::ptrdiff_t last, T* dst) {
    constexpr int widest = kTileChannels<T>;
    for (std::ptrdiff_t c = 0; c < ch;) {
        // The narrowest tile that takes the rest, else the widest that fits; where it takes more,
        // it is moved back.
        const std::ptrdiff_t rest = ch - c;
        int width = widest;
        while (width > 2 && (width / 2 >= rest || width > ch)) width /= 2;
        const std::ptrdiff_t from = width <= rest ? c : ch - width;
        if constexpr (widest >= 8)
            if (width == 8) interleaveGroup<8, false>(src, from, ch, first, last, dst);
        if (width == 4) interleaveGroup<4, false>(src, from, ch, first, last, dst);
        if (width == 2) interleaveGroup<2, false>(src, from, ch, first, last, dst);
        c = from + width;
    }
}

template <class T>
void interleaveShort(const T* const* src, std::ptrdiff_t ch, std::ptrdiff_t len, T* dst) {
    for (std::ptrdiff_t i = 0; i < len; ++i)
        for (std::ptrdiff_t c = 0; c < ch; ++c)
            std::memcpy(dst + i * ch + c, src[c] + i, sizeof(T));
}

template <class T>
void interleave(const T* const* src, std::ptrdiff_t ch, std::ptrdiff_t len, T* dst) {
    if (len < kTileSamples<T>) return interleaveShort(src, ch, len, dst);
    if (ch == 2) return interleaveGroup<2, true>(src, 0, 2, 0, len, dst);
    if (ch == 4) return interleaveGroup<4, true>(src, 0, 4, 0, len, dst);
    if constexpr (kTileChannels<T> >= 8)
        if (ch == 8) return interleaveGroup<8, true>(src, 0, 8, 0, len, dst);
    constexpr std::ptrdiff_t kBlock = kLine / sizeof(T);
    for (std::ptrdiff_t first = 0; first < len;) {
        // A rest shorter than a tile goes with the block before it.
        const std::ptrdiff_t last = len - first < kBlock + kTileSamples<T> ? len : first + kBlock;
        interleaveBlock(src, ch, first, last, dst);
        first = last;
    }
}

// addresses: all of them, or-ed.
inline ZepStatus alignmentStatus(std::uintptr_t addresses) {
    return addresses % 16 == 0 ? zepStsNoErr : zepStsMisalignedBuf;
}

template <class T>
[[gnu::noinline]] ZepStatus interleaveAny(const T* const* pSrc, int ch, int len, T* pDst) {
    std::uintptr_t addresses = reinterpret_cast<std::uintptr_t>(pDst);
    for (int c = 0; c < ch; ++c) {
        if (pSrc[c] == nullptr) return zepStsNullPtrErr;
        addresses |= reinterpret_cast<std::uintptr_t>(pSrc[c]);
    }
    if (ch == 1)
        interleaveShort(pSrc, 1, len, pDst);
    else
        interleave(pSrc, ch, len, pDst);
    return alignmentStatus(addresses);
}

template <class T>
inline ZepStatus checkedInterleave(const T* const* pSrc, int ch, int len, T* pDst) {
    if (anyNull(pSrc, pDst)) return zepStsNullPtrErr;
    if (ch <= 0) return zepStsNumChannelsErr;
    if (len <= 0) return zepStsSizeErr;
    if (ch != 2 || len < kShuffledBytes<T> / int{sizeof(T)})
        return interleaveAny(pSrc, ch, len, pDst);
    const T *const a = pSrc[0], *const b = pSrc[1];
    if (anyNull(a, b)) return zepStsNullPtrErr;
    interleaveTwo(a, b, len, pDst);
    return alignmentStatus(reinterpret_cast<std::uintptr_t>(pDst) |
                           reinterpret_cast<std::uintptr_t>(a) |
                           reinterpret_cast<std::uintptr_t>(b));
}

}  // namespace

ZepStatus zepsInterleave_16s(const Zep16s* const* pSrc, int ch, int len, Zep16s* pDst) {
    return checkedInterleave(pSrc, ch, len, pDst);
}
ZepStatus zepsInterleave_32f(const Zep32f* const* pSrc, int ch, int len, Zep32f* pDst) {
    return checkedInterleave(pSrc, ch, len, pDst);
}

}  // namespace zep::ZEP_VARIANT
