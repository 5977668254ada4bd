/** @file
 * Sample format conversion.
 *
 * Between integers of 8, 16, 24 and 32 bits and floats of 32 and 64. No conversion to or from float
 * changes the scale by itself: full scale of 16 bits is 32767.0, not 1.0; the _Sfs forms multiply by
 * a power of two. A 24-bit sample is 3 bytes, least significant first, signed; a vector of len
 * samples is 3 * len bytes without gaps. What holds for all of them:
 *
 * - pSrc, pDst: vectors of len elements at any address, and no address changes a result. They must
 *   not overlap; where an element is as wide in pSrc as in pDst, pDst may equal pSrc. Nothing
 *   outside the two vectors is read or written, 24-bit forms included.
 * - Statuses, tested in this order: zepStsNullPtrErr (a pointer is null), zepStsSizeErr (len not
 *   greater than 0); else zepStsNoErr. There is no other error: overflow and NaN become the values
 *   stated. After an error nothing has been written.
 * - The caller's control bits (rounding, flush-to-zero, exception masks) are after the call what
 *   they were before; a conversion may raise sticky exception flags.
 * - No function allocates; all may run on several threads at once on different data.
 * - The same bits in all variants.
 */
#ifndef ZEPS_CONVERSION_H
#define ZEPS_CONVERSION_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/** How a float becomes an integer: one of the constants below; any other value acts as
 * zepRoundHalfAway. */
typedef int32_t ZepRoundMode;

/** Values of a ZepRoundMode. */
enum ZepRoundModeValue {
    zepRoundTruncate = 0, /**< toward zero */
    zepRoundNearest = 1,  /**< to the nearest integer, ties to even */
    zepRoundHalfAway = 2  /**< to the nearest integer, ties away from zero */
};

/**
 * @name Exact conversions
 * pDst[n] = pSrc[n]: every value of the source type is one of the destination type. A NaN of
 * zepsConvert_32f64f becomes a quiet one.
 * @return zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsConvert_8s16s(const Zep8s* pSrc, Zep16s* pDst, int len);
ZEP_API ZepStatus zepsConvert_8s32f(const Zep8s* pSrc, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsConvert_8u32f(const Zep8u* pSrc, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsConvert_16s32f(const Zep16s* pSrc, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsConvert_16u32f(const Zep16u* pSrc, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsConvert_16s32s(const Zep16s* pSrc, Zep32s* pDst, int len);
ZEP_API ZepStatus zepsConvert_32s64f(const Zep32s* pSrc, Zep64f* pDst, int len);
ZEP_API ZepStatus zepsConvert_32f64f(const Zep32f* pSrc, Zep64f* pDst, int len);
/** @} */

/**
 * From packed 24-bit samples to floats, exactly: bytes b0, b1, b2 give b0 + 256 * b1 + 65536 * b2,
 * b2 taken as signed. The bytes 00 00 80 give -8388608.
 *
 * @param pSrc  3 * len bytes.
 * @param pDst  len elements.
 * @param len   samples.
 * @return      zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsConvert_24s32f(const Zep8u* pSrc, Zep32f* pDst, int len);

/**
 * From 32 to 16 bits: pDst[n] = pSrc[n], limited to -32768 and 32767.
 *
 * @param pSrc  len elements.
 * @param pDst  len elements.
 * @param len   elements.
 * @return      zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsConvert_32s16s(const Zep32s* pSrc, Zep16s* pDst, int len);

/**
 * @name Conversions that round to a float
 * pDst[n] = pSrc[n], rounded by the caller's rounding mode. A double beyond the floats overflows as
 * that mode says: to infinity when it is to nearest. A NaN becomes a quiet one.
 * @return zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsConvert_32s32f(const Zep32s* pSrc, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsConvert_64f32f(const Zep64f* pSrc, Zep32f* pDst, int len);
/** @} */

/**
 * From 16-bit integers to scaled floats: pDst[n] = pSrc[n] * 2^-k with k = scaleFactor limited to
 * -112 and 126. Exact.
 *
 * @param pSrc         len elements.
 * @param pDst         len elements.
 * @param len          elements.
 * @param scaleFactor  any value.
 * @return             zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsConvert_16s32f_Sfs(const Zep16s* pSrc, Zep32f* pDst, int len,
                                         int scaleFactor);

/**
 * @name From float to 8, 16 and 32 bits
 * Each element x goes through these steps:
 *
 * 1. With a scaleFactor other than 0, x is multiplied by 2^-scaleFactor. That factor is 0 where
 *    scaleFactor exceeds 149, and infinity where it is below -127; so an infinity may become a NaN
 *    by the former, a zero by the latter.
 * 2. 8 and 16 bits: x is limited from above to 127 or 32767; a NaN of either sign becomes that
 *    limit.
 * 3. x is rounded as rndMode says, independently of the caller's rounding mode, and saturated to
 *    the type. 32 bits: from 2^31 on, infinity and NaN included, x becomes 0x7FFFFFFF, below -2^31,
 *    -infinity and any NaN with the sign bit set included, 0x80000000. The NaN that an operation on
 *    numbers gives has that bit set.
 *
 * zepRoundNearest and zepRoundHalfAway set the control word for the call where it differs, and put
 * the caller's back. Denormal elements count as zeros where the caller has set denormals-are-zero,
 * but for zepRoundNearest under a caller's rounding mode other than to nearest: that clears both.
 *
 * @param pSrc         len elements.
 * @param pDst         len elements.
 * @param len          elements.
 * @param rndMode      a ZepRoundMode; any other value acts as zepRoundHalfAway.
 * @param scaleFactor  any value.
 * @return             zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsConvert_32f8s_Sfs(const Zep32f* pSrc, Zep8s* pDst, int len,
                                        ZepRoundMode rndMode, int scaleFactor);
ZEP_API ZepStatus zepsConvert_32f16s_Sfs(const Zep32f* pSrc, Zep16s* pDst, int len,
                                         ZepRoundMode rndMode, int scaleFactor);
ZEP_API ZepStatus zepsConvert_32f32s_Sfs(const Zep32f* pSrc, Zep32s* pDst, int len,
                                         ZepRoundMode rndMode, int scaleFactor);
/** @} */

/**
 * From floats to packed 24-bit samples: x * 2^-k, limited to -8388608 and 8388607 and rounded to
 * the nearest integer, ties to even, whatever the caller's rounding mode. k = scaleFactor limited
 * to -127 and 127; 127 stands for a factor of 0. A NaN, also that of infinity times 0, becomes
 * -8388608.
 *
 * @param pSrc         len elements.
 * @param pDst         3 * len bytes.
 * @param len          samples.
 * @param scaleFactor  any value.
 * @return             zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsConvert_32f24s_Sfs(const Zep32f* pSrc, Zep8u* pDst, int len, int scaleFactor);

#ifdef __cplusplus
}
#endif

#endif
