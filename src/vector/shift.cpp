#include "core/variant_exports.h"
#include "vector/block_lanes.h"
#include "vector/block_map.h"
#include "vector/byte_count.h"

namespace zep::ZEP_VARIANT {
namespace {

// The processor counts modulo 32; here a shift by the width or more gives 0.
constexpr int kWidth = 32;

// Checks of the pointers and len, then of val; 0 < val < kWidth, or negative.
ZepStatus checkedShift(const Zep32s* pSrc, int val, Zep32s* pDst, int len) {
    const auto shift = [=](std::size_t bytes) {
        if (val < 0) return zepStsShiftErr;
        mapBytes<IntBlock, sizeof(Zep32s)>(onLanes<std::uint32_t>([=](auto x) { return x << val; }),
                                           reinterpret_cast<std::uint8_t*>(pDst), bytes,
                                           reinterpret_cast<const std::uint8_t*>(pSrc));
        return zepStsNoErr;
    };
    return withByteCount<Zep32s>(len, shift, pSrc, pDst);
}

}  // namespace

ZepStatus zepsLShiftC_32s(const Zep32s* pSrc, int val, Zep32s* pDst, int len) {
    if (val == 0) return zepsCopy_32s(pSrc, pDst, len);
    if (val < kWidth) return checkedShift(pSrc, val, pDst, len);
    if (pSrc == nullptr) return zepStsNullPtrErr;
    return zepsZero_32s(pDst, len);
}

ZepStatus zepsLShiftC_32s_I(int val, Zep32s* pSrcDst, int len) {
    if (val >= kWidth) return zepsZero_32s(pSrcDst, len);
    if (val == 0) return checkVectors(len, pSrcDst);
    return checkedShift(pSrcDst, val, pSrcDst, len);
}

}  // namespace zep::ZEP_VARIANT
