// Moves between areas that may overlap. Where the destination starts inside the source the block is
// moved from its end, otherwise from its start.
#include "core/variant_exports.h"
#include "vector/block_move.h"
#include "vector/byte_count.h"

namespace zep::ZEP_VARIANT {
namespace {

[[gnu::noinline]] ZepStatus moveLarge(const std::uint8_t* src, std::uint8_t* dst,
                                      std::size_t bytes) {
    // Unsigned: a destination below the source is far above it.
    const std::size_t distance =
        reinterpret_cast<std::uintptr_t>(dst) - reinterpret_cast<std::uintptr_t>(src);
    if (distance == 0) return zepStsNoErr;
    if (distance < bytes)
        moveDescending(dst, src, bytes);
    else
        moveAscending(dst, src, bytes);
    return zepStsNoErr;
}

template <class T>
inline ZepStatus checkedMove(const T* pSrc, T* pDst, int len) {
    const auto move = [=](std::size_t bytes) {
        const auto* src = reinterpret_cast<const std::uint8_t*>(pSrc);
        auto* dst = reinterpret_cast<std::uint8_t*>(pDst);
        if (bytes > kSmallMove) return moveLarge(src, dst, bytes);
        moveSmall(dst, src, bytes);
        return zepStsNoErr;
    };
    return withByteCount<T>(len, move, pSrc, pDst);
}

}  // namespace

ZepStatus zepsMove_8u(const Zep8u* pSrc, Zep8u* pDst, int len) {
    return checkedMove(pSrc, pDst, len);
}
ZepStatus zepsMove_16s(const Zep16s* pSrc, Zep16s* pDst, int len) {
    return checkedMove(pSrc, pDst, len);
}
ZepStatus zepsMove_32s(const Zep32s* pSrc, Zep32s* pDst, int len) {
    return checkedMove(pSrc, pDst, len);
}
ZepStatus zepsMove_32f(const Zep32f* pSrc, Zep32f* pDst, int len) {
    return checkedMove(pSrc, pDst, len);
}
ZepStatus zepsMove_64f(const Zep64f* pSrc, Zep64f* pDst, int len) {
    return checkedMove(pSrc, pDst, len);
}

}  // namespace zep::ZEP_VARIANT
