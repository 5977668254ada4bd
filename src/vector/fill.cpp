// Clears and fills. Every pattern of 1, 2, 4 or 8 bytes is a pattern of 8; stored at any whole
// number of elements from the start it is in phase, so that heads and tails are single stores that
// overlap what is beside them. At a boundary of the memory it is rotated, because a vector need not
// be aligned to its elements.
#include <algorithm>

#include "core/variant_exports.h"
#include "simd/string_ops.h"
#include "simd/vec.h"
#include "vector/block_move.h"
#include "vector/byte_count.h"
#include "vector/movement_tuning.h"
#include "vector/pattern.h"

namespace zep::ZEP_VARIANT {
namespace {

using Tuning = Tuned<FillTuning>;

constexpr std::size_t kSmallFill = 4 * kWide;

// 1 <= bytes <= kSmallFill.
template <class Pattern>
[[gnu::always_inline]] inline void fillSmall(std::uint8_t* dst, std::size_t bytes,
                                             Pattern pattern) {
    // What was there is not used, so its loads fall away.
    mapSmall([=]<class B>(B) { return pattern.template block<B>(); }, dst, bytes, dst);
}

// One cache line of a pattern. The dummy source is not read: what was there is not used.
template <class Pattern>
inline Line<simd::WideBlock> lineOf(Pattern pattern, const std::uint8_t* dst) {
    return Line<simd::WideBlock>::map([=]<class B>(B) { return pattern.template block<B>(); }, dst);
}

// Fills the first and last line, and returns the distance from dst to the first boundary of a line
// behind it.
template <class Pattern>
inline std::size_t fillEnds(std::uint8_t* dst, std::size_t bytes, Pattern pattern) {
    const auto line = lineOf(pattern, dst);
    line.store(dst);
    line.store(dst + bytes - kLine);
    return kLine - bytesBehindBoundary(dst, kLine);
}

// All of them: bytes > kLine.
template <class Pattern>
[[gnu::noinline]] void fillStreaming(std::uint8_t* dst, std::size_t bytes, Pattern pattern) {
    std::size_t n = fillEnds(dst, bytes, pattern);
    const auto line = lineOf(pattern.atOffset(n), dst);
    for (; n < bytes - kLine; n += kLine) line.storeStream(dst + n);
    simd::streamFence();
}

template <class Pattern>
inline void fillRepeating(std::uint8_t* dst, std::size_t bytes, Pattern pattern) {
    const std::size_t n = fillEnds(dst, bytes, pattern);
    simd::repeatStore(dst + n, pattern.atOffset(n).word(), (bytes - n) / 8);
}

template <class Pattern>
inline void fillAscending(std::uint8_t* dst, std::size_t bytes, Pattern pattern) {
    auto n = static_cast<std::ptrdiff_t>(fillEnds(dst, bytes, pattern));
    const auto line = lineOf(pattern.atOffset(static_cast<std::size_t>(n)), dst);
    const auto tailAt = static_cast<std::ptrdiff_t>(bytes - kLine);
    for (; n < tailAt - std::ptrdiff_t{kLine}; n += 2 * kLine) {
        line.storeAligned(dst + n);
        line.storeAligned(dst + n + kLine);
    }
    if (n < tailAt) line.storeAligned(dst + n);
}

// For sizes at which the way of storing is a question.
template <class Pattern>
[[gnu::noinline]] ZepStatus fillHuge(std::uint8_t* dst, std::size_t bytes, Pattern pattern) {
    constexpr std::size_t kElement = Pattern::elementBytes;
    if (bytes / kElement > Tuning::probeAbove(kElement) &&
        Tuning::template reachesCache<kElement>(bytes))
        fillStreaming(dst, bytes, pattern);
    else if (bytes >= Tuning::repeatStoreFrom)
        fillRepeating(dst, bytes, pattern);
    else
        fillAscending(dst, bytes, pattern);
    return zepStsNoErr;
}

// bytes > kSmallFill.
template <class Pattern>
[[gnu::noinline]] ZepStatus fillLarge(std::uint8_t* dst, std::size_t bytes, Pattern pattern) {
    constexpr std::size_t kElement = Pattern::elementBytes;
    constexpr std::size_t kPlain =
        std::min(Tuning::probeAbove(kElement) * kElement, Tuning::repeatStoreFrom - 1);
    if (bytes > kPlain) return fillHuge(dst, bytes, pattern);
    if (bytes <= 2 * kSmallFill)
        mapEight<simd::WideBlock>([=]<class B>(B) { return pattern.template block<B>(); }, dst,
                                  bytes, dst);
    else
        fillAscending(dst, bytes, pattern);
    return zepStsNoErr;
}

template <class T, class Pattern>
inline ZepStatus checkedFill(T* pDst, int len, Pattern pattern) {
    const auto fill = [=](std::size_t bytes) {
        auto* dst = reinterpret_cast<std::uint8_t*>(pDst);
        if (bytes > kSmallFill) return fillLarge(dst, bytes, pattern);
        const ZepStatus done = simd::madeHere(zepStsNoErr);
        fillSmall(dst, bytes, pattern);
        return done;
    };
    return withByteCount<T>(len, fill, pDst);
}

template <class T>
inline ZepStatus checkedZero(T* pDst, int len) {
    return checkedFill(pDst, len, Zeros{});
}

template <class T>
inline ZepStatus checkedSet(T val, T* pDst, int len) {
    return checkedFill(pDst, len, repeated(val));
}

}  // namespace

ZepStatus zepsZero_8u(Zep8u* pDst, int len) { return checkedZero(pDst, len); }
ZepStatus zepsZero_16s(Zep16s* pDst, int len) { return checkedZero(pDst, len); }
ZepStatus zepsZero_32s(Zep32s* pDst, int len) { return checkedZero(pDst, len); }
ZepStatus zepsZero_32f(Zep32f* pDst, int len) { return checkedZero(pDst, len); }
ZepStatus zepsZero_32fc(Zep32fc* pDst, int len) { return checkedZero(pDst, len); }
ZepStatus zepsZero_64f(Zep64f* pDst, int len) { return checkedZero(pDst, len); }
ZepStatus zepsZero_64fc(Zep64fc* pDst, int len) { return checkedZero(pDst, len); }

ZepStatus zepsSet_8u(Zep8u val, Zep8u* pDst, int len) { return checkedSet(val, pDst, len); }
ZepStatus zepsSet_16s(Zep16s val, Zep16s* pDst, int len) { return checkedSet(val, pDst, len); }
ZepStatus zepsSet_32s(Zep32s val, Zep32s* pDst, int len) { return checkedSet(val, pDst, len); }
ZepStatus zepsSet_32f(Zep32f val, Zep32f* pDst, int len) { return checkedSet(val, pDst, len); }
ZepStatus zepsSet_32fc(Zep32fc val, Zep32fc* pDst, int len) { return checkedSet(val, pDst, len); }
ZepStatus zepsSet_64f(Zep64f val, Zep64f* pDst, int len) { return checkedSet(val, pDst, len); }
ZepStatus zepsSet_64s(Zep64s val, Zep64s* pDst, int len) { return checkedSet(val, pDst, len); }

}  // namespace zep::ZEP_VARIANT
