// Reversal of a vector. The block that starts o bytes from the front goes, reversed, to the one
// that ends o bytes from the end. Blocks overlap in the middle instead of leaving a tail; all of a
// step are loaded before the first is stored, so that the short form also runs in place.
#include "core/variant_exports.h"
#include "simd/byte_order.h"
#include "simd/unroll.h"
#include "simd/vec.h"
#include "vector/block_map.h"
#include "vector/byte_count.h"

namespace zep::ZEP_VARIANT {
namespace {

template <class B, int elementBytes>
inline B reversed(const std::uint8_t* p) {
    return simd::reverseLanes<elementBytes>(B::load(p));
}

// B::bytes <= bytes <= 2 * B::bytes.
template <class B, int elementBytes>
inline void flipTwo(const std::uint8_t* src, std::uint8_t* dst, std::size_t bytes) {
    const std::size_t last = bytes - B::bytes;
    const auto a = reversed<B, elementBytes>(src), b = reversed<B, elementBytes>(src + last);
    a.store(dst + last), b.store(dst);
}

// 2 * B::bytes <= bytes <= 4 * B::bytes.
template <class B, int elementBytes>
inline void flipFour(const std::uint8_t* src, std::uint8_t* dst, std::size_t bytes) {
    constexpr std::size_t n = B::bytes;
    const std::size_t last = bytes - n;
    const auto a = reversed<B, elementBytes>(src), b = reversed<B, elementBytes>(src + n);
    const auto c = reversed<B, elementBytes>(src + last - n),
               d = reversed<B, elementBytes>(src + last);
    a.store(dst + last), b.store(dst + last - n), c.store(dst + n), d.store(dst);
}

// 1 <= bytes <= 4 * B::bytes, in place or not.
template <class B, int elementBytes>
[[gnu::always_inline]] inline void flipSmall(const std::uint8_t* src, std::uint8_t* dst,
                                             std::size_t bytes) {
    byLadder<B>(
        bytes, [=]<class W> { flipTwo<W, elementBytes>(src, dst, bytes); },
        [=]<class W> { flipFour<W, elementBytes>(src, dst, bytes); });
}

// The areas are apart; bytes > 4 * B::bytes.
template <class B, int elementBytes>
[[gnu::noinline]] void flipApart(const std::uint8_t* src, std::uint8_t* dst, std::size_t bytes) {
    const std::uint8_t* const lastSrc = src + bytes - B::bytes;
    constexpr std::size_t kStep = 4 * B::bytes;
    const auto flipStep = [=](std::size_t n) __attribute__((always_inline)) {
        B x[4];
        simd::unroll<4>(
            [&](auto k) { x[k] = reversed<B, elementBytes>(lastSrc - n - k * B::bytes); });
        simd::unroll<4>([&](auto k) { x[k].store(dst + n + k * B::bytes); });
    };
    for (std::size_t n = 0; n < bytes - kStep; n += kStep) flipStep(n);
    flipStep(bytes - kStep);
}

template <class B, int elementBytes>
[[gnu::noinline]] void flipInPlace(std::uint8_t* p, std::size_t bytes) {
    constexpr std::size_t n = B::bytes;
    for (; bytes > 4 * n; p += 2 * n, bytes -= 4 * n) {
        std::uint8_t* const last = p + bytes - n;
        const auto a = reversed<B, elementBytes>(p), b = reversed<B, elementBytes>(p + n);
        const auto c = reversed<B, elementBytes>(last - n), d = reversed<B, elementBytes>(last);
        a.store(last), b.store(last - n), c.store(p + n), d.store(p);
    }
    if (bytes != 0) flipSmall<B, elementBytes>(p, p, bytes);
}

template <class T>
inline ZepStatus checkedFlip(const T* pSrc, T* pDst, int len) {
    using B = simd::WideBlock;
    const auto flip = [=](std::size_t bytes) {
        const auto* src = reinterpret_cast<const std::uint8_t*>(pSrc);
        auto* dst = reinterpret_cast<std::uint8_t*>(pDst);
        if (bytes <= 4 * B::bytes)
            flipSmall<B, int{sizeof(T)}>(src, dst, bytes);
        else
            flipApart<B, int{sizeof(T)}>(src, dst, bytes);
        return zepStsNoErr;
    };
    return withByteCount<T>(len, flip, pSrc, pDst);
}

// Bytes are reordered by the integer unit, wider elements by the floating one.
template <class T>
using FlipBlock = simd::Block<sizeof(T) == 1 ? simd::kIntBytes : simd::kFloatBytes>;

template <class T>
inline ZepStatus checkedFlipInPlace(T* pSrcDst, int len) {
    using B = FlipBlock<T>;
    const auto flip = [=](std::size_t bytes) {
        auto* p = reinterpret_cast<std::uint8_t*>(pSrcDst);
        if (bytes <= 4 * B::bytes)
            flipSmall<B, int{sizeof(T)}>(p, p, bytes);
        else
            flipInPlace<B, int{sizeof(T)}>(p, bytes);
        return zepStsNoErr;
    };
    return withByteCount<T>(len, flip, pSrcDst);
}

}  // namespace

ZepStatus zepsFlip_32f(const Zep32f* pSrc, Zep32f* pDst, int len) {
    return checkedFlip(pSrc, pDst, len);
}
ZepStatus zepsFlip_64f(const Zep64f* pSrc, Zep64f* pDst, int len) {
    return checkedFlip(pSrc, pDst, len);
}
ZepStatus zepsFlip_32f_I(Zep32f* pSrcDst, int len) { return checkedFlipInPlace(pSrcDst, len); }
ZepStatus zepsFlip_8u_I(Zep8u* pSrcDst, int len) { return checkedFlipInPlace(pSrcDst, len); }

}  // namespace zep::ZEP_VARIANT
