// Byte order of every element reversed.
#include "core/variant_exports.h"
#include "simd/byte_order.h"
#include "simd/vec.h"
#include "vector/block_map.h"
#include "vector/byte_count.h"

namespace zep::ZEP_VARIANT {
namespace {

template <class T>
inline ZepStatus checkedSwapBytes(T* pSrcDst, int len) {
    constexpr auto swap = [](auto block) { return simd::swapBytes<int{sizeof(T)}>(block); };
    const auto run = [=](std::size_t bytes) {
        auto* p = reinterpret_cast<std::uint8_t*>(pSrcDst);
        mapBytes<simd::Block<simd::kIntBytes>, sizeof(T)>(swap, p, bytes,
                                                          static_cast<const std::uint8_t*>(p));
        return zepStsNoErr;
    };
    return withByteCount<T>(len, run, pSrcDst);
}

}  // namespace

ZepStatus zepsSwapBytes_16u_I(Zep16u* pSrcDst, int len) { return checkedSwapBytes(pSrcDst, len); }
ZepStatus zepsSwapBytes_32u_I(Zep32u* pSrcDst, int len) { return checkedSwapBytes(pSrcDst, len); }
ZepStatus zepsSwapBytes_64u_I(Zep64u* pSrcDst, int len) { return checkedSwapBytes(pSrcDst, len); }

}  // namespace zep::ZEP_VARIANT
