// Copy of a run of bits, numbered from the most significant bit of each byte. The destination is
// brought to a byte boundary first; from there each destination byte holds the end of one source
// byte and the start of the next:
//
//     dst[n] = src[n] << offset | src[n + 1] >> (8 - offset)
//
// Only bytes that hold bits of the run are read or written.
#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/bit_stream.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT {
namespace {

// The count bits from bit offset of *src on, count <= 8, at the top of a byte.
inline unsigned bitsAt(const Zep8u* src, int offset, int count) {
    unsigned bits = static_cast<unsigned>(src[0]) << offset;
    if (offset + count > 8) bits |= static_cast<unsigned>(src[1]) >> (8 - offset);
    return bits & 0xFF;
}

// Puts the top count bits of bits at bit offset of *dst; offset + count <= 8.
inline void mergeBits(Zep8u* dst, int offset, int count, unsigned bits) {
    const unsigned mask = (0xFF00u >> count & 0xFF) >> offset;
    *dst = static_cast<Zep8u>((*dst & ~mask) | ((bits >> offset) & mask));
}

// count whole bytes of dst from bit offset of *src on; 1 <= offset <= 7.
void shiftBytes(const Zep8u* src, int offset, Zep8u* dst, int count) {
    using B = simd::Block<simd::kIntBytes>;
    const simd::BitShift<B> shift(offset);
    const auto block = [=](int n) { shift(B::load(src + n), B::load(src + n + 1)).store(dst + n); };
    if (count >= B::bytes) {
        // The last block reads src[count], which holds the last bits of the run.
        for (int n = 0; n < count - B::bytes; n += B::bytes) block(n);
        block(count - B::bytes);
        return;
    }
    for (int n = 0; n < count; ++n) dst[n] = static_cast<Zep8u>(bitsAt(src + n, offset, 8));
}

}  // namespace

ZepStatus zepsCopy_1u(const Zep8u* pSrc, int srcBitOffset, Zep8u* pDst, int dstBitOffset, int len) {
    if (anyNull(pSrc, pDst)) return zepStsNullPtrErr;
    if (len <= 0 || srcBitOffset < 0 || dstBitOffset < 0) return zepStsSizeErr;
    int srcOffset = srcBitOffset & 7;
    const int dstOffset = dstBitOffset & 7;

    if (dstOffset != 0) {
        const int room = 8 - dstOffset;
        const int count = len < room ? len : room;
        mergeBits(pDst, dstOffset, count, bitsAt(pSrc, srcOffset, count));
        len -= count;
        ++pDst;
        pSrc += (srcOffset + count) >> 3;
        srcOffset = (srcOffset + count) & 7;
    }
    if (const int bytes = len >> 3; bytes != 0) {
        if (srcOffset == 0)
            zepsCopy_8u(pSrc, pDst, bytes);
        else
            shiftBytes(pSrc, srcOffset, pDst, bytes);
        pSrc += bytes;
        pDst += bytes;
    }
    if (const int count = len & 7; count != 0)
        mergeBits(pDst, 0, count, bitsAt(pSrc, srcOffset, count));
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
