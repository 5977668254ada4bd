// Copies between areas that do not overlap: small blocks by overlapping registers, larger ones by a
// loop with aligned stores or by the processor's block move, blocks beyond the cache by streaming
// stores. The typed forms count bytes and share the one routine.
#include "core/variant_exports.h"
#include "simd/string_ops.h"
#include "simd/vec.h"
#include "vector/block_move.h"
#include "vector/movement_tuning.h"

namespace zep::ZEP_VARIANT {
namespace {

using Tuning = Tuned<CopyTuning>;

constexpr std::size_t kTouchStride = 128;

[[maybe_unused]] void readIntoCache(const std::uint8_t* src, std::size_t bytes) {
    for (std::size_t n = 0; n < bytes; n += kTouchStride)
        static_cast<void>(*static_cast<const volatile std::uint8_t*>(src + n));
}

// dst and bytes are multiples of kLine.
void streamLines(std::uint8_t* dst, const std::uint8_t* src, std::size_t bytes) {
    for (std::size_t n = 0; n < bytes; n += kLine)
        Line<simd::WideBlock>::map(unchanged, src + n).storeStream(dst + n);
}

void copyStreaming(std::uint8_t* dst, const std::uint8_t* src, std::size_t bytes) {
    // The first 64 bytes reach beyond the first boundary; what is written twice has the same value.
    Line<simd::WideBlock>::map(unchanged, src).store(dst);
    const std::size_t toBoundary = kLine - bytesBehindBoundary(dst, kLine);
    dst += toBoundary, src += toBoundary, bytes -= toBoundary;
    std::size_t lines = bytes & ~(kLine - 1);
    bytes -= lines;
    while (lines != 0) {
        std::size_t chunk = lines;
        if constexpr (Tuning::readAheadChunk != 0) {
            if (chunk > Tuning::readAheadChunk) chunk = Tuning::readAheadChunk;
            readIntoCache(src, chunk);
        }
        streamLines(dst, src, chunk);
        dst += chunk, src += chunk, lines -= chunk;
    }
    if (bytes != 0) moveSmall(dst, src, bytes);
    simd::streamFence();
}

// A load waits for an older store whose address agrees in the low 12 bits, although it goes to
// another page. distance is src - dst within a page: just above 0 an ascending copy reads what it
// is about to write and is safe, just below 0 it would read what it has just written.
[[maybe_unused]] bool ascendingAvoidsAliasing(const std::uint8_t* dst, const std::uint8_t* src) {
    constexpr std::size_t kPage = 4096;
    const int distance = static_cast<int>(bytesBehindBoundary(src, kPage)) -
                         static_cast<int>(bytesBehindBoundary(dst, kPage));
    return (distance >= 1 && distance <= 160) || distance < -3936;
}

[[gnu::always_inline]] inline ZepStatus copyOrdinary(const std::uint8_t* src, std::uint8_t* dst,
                                                     std::size_t bytes) {
    if constexpr (Tuning::avoidsPageAliasing) {
        const bool bothAligned =
            bytesBehindBoundary(dst, 16) == 0 && bytesBehindBoundary(src, 16) == 0;
        if (bothAligned && !ascendingAvoidsAliasing(dst, src)) {
            moveDescending(dst, src, bytes);
            return zepStsNoErr;
        }
    }
    if (bytes >= Tuning::repeatMoveFrom)
        simd::repeatMove(dst, src, bytes);
    else
        moveAscending(dst, src, bytes);
    return zepStsNoErr;
}

[[gnu::noinline]] ZepStatus copyAskingForCache(const std::uint8_t* src, std::uint8_t* dst,
                                               std::size_t bytes) {
    if (!Tuning::exceedsCache(bytes)) return copyOrdinary(src, dst, bytes);
    copyStreaming(dst, src, bytes);
    return zepStsNoErr;
}

[[gnu::noinline]] ZepStatus copyLarge(const std::uint8_t* src, std::uint8_t* dst,
                                      std::size_t bytes) {
    if (bytes > Tuning::probeAbove) return copyAskingForCache(src, dst, bytes);
    if (bytes <= 2 * kSmallMove) {
        mapEight<simd::WideBlock>(unchanged, dst, bytes, src);
        return zepStsNoErr;
    }
    return copyOrdinary(src, dst, bytes);
}

}  // namespace

ZepStatus zepsCopy_8u(const Zep8u* pSrc, Zep8u* pDst, int len) {
    return checkedMoveOfBytes<copyLarge>(pSrc, pDst, len);
}
ZepStatus zepsCopy_16s(const Zep16s* pSrc, Zep16s* pDst, int len) {
    return checkedMoveOfBytes<copyLarge>(pSrc, pDst, len);
}
ZepStatus zepsCopy_32s(const Zep32s* pSrc, Zep32s* pDst, int len) {
    return checkedMoveOfBytes<copyLarge>(pSrc, pDst, len);
}
ZepStatus zepsCopy_32f(const Zep32f* pSrc, Zep32f* pDst, int len) {
    return checkedMoveOfBytes<copyLarge>(pSrc, pDst, len);
}
ZepStatus zepsCopy_32fc(const Zep32fc* pSrc, Zep32fc* pDst, int len) {
    return checkedMoveOfBytes<copyLarge>(pSrc, pDst, len);
}
ZepStatus zepsCopy_64f(const Zep64f* pSrc, Zep64f* pDst, int len) {
    return checkedMoveOfBytes<copyLarge>(pSrc, pDst, len);
}

}  // namespace zep::ZEP_VARIANT
