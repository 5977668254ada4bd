// Clears and fills. Every pattern of 1, 2, 4 or 8 bytes is a pattern of 8; stored at any whole
// number of elements from the start it is in phase, so that heads and tails are single stores that
// overlap what is beside them. At a boundary of the memory it is rotated, because a vector need not
// be aligned to its elements.
#include <bit>

#include "core/variant_exports.h"
#include "simd/string_ops.h"
#include "simd/vec.h"
#include "vector/block_move.h"
#include "vector/byte_count.h"
#include "vector/movement_tuning.h"

namespace zep::ZEP_VARIANT {
namespace {

using Tuning = FillTuning<VariantTag>;

// Patterns: block<B>() in phase with the start, atOffset(n) the pattern n bytes further on.
struct Zeros {
    static constexpr std::size_t elementBytes = 1;
    template <class B>
    B block() const {
        if constexpr (B::bytes <= 8)
            return B{};
        else
            return B::zero();
    }
    std::uint64_t word() const { return 0; }
    Zeros atOffset(std::size_t) const { return {}; }
};

template <std::size_t N>
struct Repeated {
    static constexpr std::size_t elementBytes = N;
    std::uint64_t value;

    template <class B>
    B block() const {
        if constexpr (B::bytes <= 8) {
            B b{};
            b.v = static_cast<decltype(b.v)>(value);
            return b;
        } else {
            return B::broadcast(value);
        }
    }
    std::uint64_t word() const { return value; }
    Repeated atOffset(std::size_t n) const {
        return {std::rotr(value, static_cast<int>(8 * (n % 8)))};
    }
};

template <class T>
Repeated<sizeof(T)> repeated(T val) {
    std::uint64_t pattern = 0;
    std::memcpy(&pattern, &val, sizeof val);
    for (std::size_t n = sizeof val; n < sizeof pattern; n *= 2) pattern |= pattern << (8 * n);
    return {pattern};
}

// B::bytes <= bytes <= 2 * B::bytes.
template <class B, class Pattern>
inline void fillByTwo(std::uint8_t* dst, std::size_t bytes, Pattern pattern) {
    const auto block = pattern.template block<B>();
    block.store(dst), block.store(dst + bytes - B::bytes);
}

constexpr std::size_t kSmallFill = kStep;

// 1 <= bytes <= kSmallFill.
template <class Pattern>
inline void fillSmall(std::uint8_t* dst, std::size_t bytes, Pattern pattern) {
    using B = simd::WideBlock;
    if (bytes >= 16) {
        if (bytes <= 32) return fillByTwo<simd::Block<16>>(dst, bytes, pattern);
        const auto block = pattern.template block<B>();
        block.store(dst), block.store(dst + bytes - kWide);
        if (bytes <= 2 * kWide) return;
        block.store(dst + kWide), block.store(dst + bytes - 2 * kWide);
        return;
    }
    if (bytes >= 8) return fillByTwo<simd::Block<8>>(dst, bytes, pattern);
    if (bytes >= 4) return fillByTwo<simd::Block<4>>(dst, bytes, pattern);
    if (bytes >= 2) return fillByTwo<simd::Block<2>>(dst, bytes, pattern);
    pattern.template block<simd::Block<1>>().store(dst);
}

// bytes >= 2 * kStep. Streaming stores go to whole lines.
template <class Pattern>
[[gnu::noinline]] void fillStreaming(std::uint8_t* dst, std::size_t bytes, Pattern pattern) {
    using B = simd::WideBlock;
    constexpr std::size_t kLine = 64;
    const auto first = pattern.template block<simd::Block<16>>();
    for (std::size_t n = 0; n < kLine; n += 16) {
        first.store(dst + n);
        first.store(dst + bytes - kLine + n);
    }
    const std::size_t toBoundary = kLine - bytesBehindBoundary(dst, kLine);
    const auto block = pattern.atOffset(toBoundary).template block<B>();
    const std::uint8_t* const end = dst + bytes - kLine;
    for (std::uint8_t* d = dst + toBoundary; d < end; d += kLine)
        for (std::size_t i = 0; i < kLine; i += kWide) block.storeStream(d + i);
    simd::streamFence();
}

// bytes >= kStep.
template <class Pattern>
[[gnu::noinline]] void fillLarge(std::uint8_t* dst, std::size_t bytes, Pattern pattern) {
    using B = simd::WideBlock;
    if (bytes / Pattern::elementBytes > Tuning::probeAbove(Pattern::elementBytes) &&
        Tuning::template reachesCache<Pattern::elementBytes>(bytes))
        return fillStreaming(dst, bytes, pattern);
    const auto first = pattern.template block<B>();
    first.store(dst);
    std::uint8_t* const tail = dst + bytes - kStep;
    if (bytes >= Tuning::repeatStoreFrom) {
        constexpr std::size_t kLine = 64;
        for (std::size_t n = kWide; n < kLine; n += kWide) first.store(dst + n);
        const std::size_t toBoundary = kLine - bytesBehindBoundary(dst, kLine);
        const std::size_t words = (bytes - toBoundary) / 8;
        simd::repeatStore(dst + toBoundary, pattern.atOffset(toBoundary).word(), words);
        pattern.template block<simd::Block<8>>().store(dst + bytes - 8);
        return;
    }
    const std::size_t toBoundary = kWide - bytesBehindBoundary(dst, kWide);
    const auto block = pattern.atOffset(toBoundary).template block<B>();
    for (std::uint8_t* d = dst + toBoundary; d < tail; d += kStep)
        for (std::size_t i = 0; i < kStep; i += kWide) block.storeAligned(d + i);
    for (std::size_t i = 0; i < kStep; i += kWide) first.store(tail + i);
}

template <class Pattern>
inline void fillBytes(void* pDst, std::size_t bytes, Pattern pattern) {
    auto* dst = static_cast<std::uint8_t*>(pDst);
    if (bytes <= kSmallFill) return fillSmall(dst, bytes, pattern);
    fillLarge(dst, bytes, pattern);
}

template <class T>
ZepStatus checkedZero(T* pDst, int len) {
    return withByteCount<T>(
        len, [=](std::int32_t bytes) { fillBytes(pDst, static_cast<std::size_t>(bytes), Zeros{}); },
        pDst);
}

template <class T>
ZepStatus checkedSet(T val, T* pDst, int len) {
    return withByteCount<T>(
        len,
        [=](std::int32_t bytes) {
            fillBytes(pDst, static_cast<std::size_t>(bytes), repeated(val));
        },
        pDst);
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
