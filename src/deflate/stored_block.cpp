// Stored blocks: alignment, LEN and NLEN, bytes already in the bit buffer, then bytes straight from
// the source.

#include <cstdint>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "deflate/bit_input.h"
#include "deflate/window.h"

namespace zep::ZEP_VARIANT {
namespace {

// Equals a byte-by-byte copy in rising order, overlap included.
void copyRising(ZepLZ77State& state, Zep8u* dst, const Zep8u* src, std::size_t n) {
    const auto to = reinterpret_cast<std::uintptr_t>(dst);
    const auto from = reinterpret_cast<std::uintptr_t>(src);
    if (to - from >= n && from - to >= n) {
        copyEntering(state, dst, src, n);
        return;
    }
    for (std::size_t i = 0; i < n; ++i) dst[i] = src[i];
    enterWindow(state, dst, n);
}

// status says where to go on; each step falls through to the next.
ZepStatus decodeStored(BitInput& in, Zep8u*& dst, Zep8u* const dstEnd, ZepLZ77State& state) {
    if (state.status == kStoredAlign) {
        in.drop(in.count % 8);
        state.status = kStoredLength;
    }
    if (state.status == kStoredLength) {
        if (!in.gather(32)) return zepStsSrcSizeLessExpected;
        const unsigned length = in.peek(16);
        const unsigned complement = static_cast<unsigned>(in.bits >> 16) & 0xffff;
        if (length != 0xffff - complement) return zepStsSizeErr;
        in.drop(32);
        // Negative when the block is shorter than what the bit buffer holds of the stream.
        state.storedRemaining = static_cast<Zep32s>(length) - static_cast<Zep32s>(in.count / 8);
        state.status = length == 0 ? kBlockHeader : kStoredHeldBytes;
    }
    if (state.status == kStoredHeldBytes) {
        while (in.count >= 8) {
            if (dst >= dstEnd) return zepStsDstSizeLessExpected;
            *dst++ = static_cast<Zep8u>(in.take(8));
        }
        state.status = kStoredBytes;
    }
    if (state.status == kStoredBytes) {
        std::ptrdiff_t n = state.storedRemaining;
        if (n < 0) {
            // Held bytes behind the block have been written too: step back over them.
            state.windowPos = static_cast<Zep32s>((state.windowPos + n) & (kWindowBytes - 1));
        } else {
            const std::ptrdiff_t available = in.empty() ? 0 : in.end - in.next;
            const std::ptrdiff_t room = dst >= dstEnd ? 0 : dstEnd - dst;
            if (n > available) n = available;
            if (n > room) n = room;
            copyRising(state, dst, in.next, static_cast<std::size_t>(n));
        }
        in.next += n;
        dst += n;
        state.storedRemaining -= static_cast<Zep32s>(n);
        if (state.storedRemaining != 0)
            return dst < dstEnd ? zepStsSrcSizeLessExpected : zepStsDstSizeLessExpected;
        state.status = kBlockHeader;
    }
    return state.finalBlock == 1 ? zepStsStreamEnd : zepStsNoErr;
}

}  // namespace

ZepStatus zepsDecodeLZ77StoredBlock_8u(Zep8u** ppSrc, Zep32s* pSrcLen, Zep8u** ppDst,
                                       Zep32s* pDstLen, ZepLZ77State* pState) {
    if (anyNull(ppSrc, pSrcLen, ppDst, pDstLen, pState) || *ppSrc == nullptr || *ppDst == nullptr)
        return zepStsNullPtrErr;
    if (*pDstLen == 0) return zepStsDstSizeLessExpected;
    ZepLZ77State& state = *pState;
    if (state.status < kStoredAlign || state.status > kStoredBytes) return zepStsErr;

    BitInput in(*ppSrc, *pSrcLen, state);
    Zep8u* dst = *ppDst;
    Zep8u* const dstEnd = dst + *pDstLen;
    const ZepStatus status = decodeStored(in, dst, dstEnd, state);
    in.save(ppSrc, pSrcLen, state);
    *ppDst = dst;
    *pDstLen = static_cast<Zep32s>(dstEnd - dst);
    return status;
}

}  // namespace zep::ZEP_VARIANT
