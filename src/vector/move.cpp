// Moves between areas that may overlap. Where the destination starts inside the source the block is
// moved from its end, otherwise from its start.
#include "core/variant_exports.h"
#include "vector/block_move.h"
#include "vector/movement_tuning.h"

namespace zep::ZEP_VARIANT {
namespace {

using Tuning = Tuned<MoveTuning>;

// Far enough for the latency of the second-level cache and of the memory behind it.
constexpr int kReadAhead = 2048;

template <int ahead>
inline void moveInOrder(std::uint8_t* dst, const std::uint8_t* src, std::size_t bytes,
                        std::size_t distance) {
    if (distance < bytes)
        moveDescending<ahead>(dst, src, bytes);
    else
        moveAscending<ahead>(dst, src, bytes);
}

[[gnu::noinline]] ZepStatus moveLarge(const std::uint8_t* src, std::uint8_t* dst,
                                      std::size_t bytes) {
    if (bytes <= 2 * kSmallMove) {
        mapEight<simd::WideBlock>(unchanged, dst, bytes, src);
        return zepStsNoErr;
    }
    // Unsigned: a destination below the source is far above it.
    const std::size_t distance =
        reinterpret_cast<std::uintptr_t>(dst) - reinterpret_cast<std::uintptr_t>(src);
    if (distance == 0) return zepStsNoErr;
    if (bytes >= Tuning::readAheadFrom)
        moveInOrder<kReadAhead>(dst, src, bytes, distance);
    else
        moveInOrder<0>(dst, src, bytes, distance);
    return zepStsNoErr;
}

}  // namespace

ZepStatus zepsMove_8u(const Zep8u* pSrc, Zep8u* pDst, int len) {
    return checkedMoveOfBytes<moveLarge>(pSrc, pDst, len);
}
ZepStatus zepsMove_16s(const Zep16s* pSrc, Zep16s* pDst, int len) {
    return checkedMoveOfBytes<moveLarge>(pSrc, pDst, len);
}
ZepStatus zepsMove_32s(const Zep32s* pSrc, Zep32s* pDst, int len) {
    return checkedMoveOfBytes<moveLarge>(pSrc, pDst, len);
}
ZepStatus zepsMove_32f(const Zep32f* pSrc, Zep32f* pDst, int len) {
    return checkedMoveOfBytes<moveLarge>(pSrc, pDst, len);
}
ZepStatus zepsMove_64f(const Zep64f* pSrc, Zep64f* pDst, int len) {
    return checkedMoveOfBytes<moveLarge>(pSrc, pDst, len);
}

}  // namespace zep::ZEP_VARIANT
