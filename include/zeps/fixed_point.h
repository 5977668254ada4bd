/** @file
 * Scaled fixed-point arithmetic.
 *
 * Integer operations whose result is scaled by a power of two. With r the result of the operation,
 * held exactly, and k = scaleFactor, every function but zepsDivC_16s_ISfs gives
 *
 * - k > 0: r / 2^k, rounded to the nearest integer, ties to even, then saturated to the type;
 * - k = 0: r saturated to the type;
 * - k < 0: r * 2^-k, saturated to the type.
 *
 * No value of k is an error; a large one gives 0, a very negative one the limit of the type on r's
 * side. What holds for all of them:
 *
 * - pSrc, pSrc1, pSrc2, pDst, pSrcDst: vectors of len elements; any alignment, and none changes a
 *   result. A destination may equal a source; other overlap is not supported. The ISfs forms work
 *   in place.
 * - Statuses, tested in this order: zepStsNullPtrErr (any pointer null), zepStsSizeErr (len not
 *   greater than 0), then what the function adds; else zepStsNoErr. After an error nothing has been
 *   written.
 * - No function allocates; all may run on several threads at once on different data.
 * - The same bits in all variants. zepsDivC_16s_ISfs follows the caller's rounding mode, the others
 *   use integers alone.
 */
#ifndef ZEPS_FIXED_POINT_H
#define ZEPS_FIXED_POINT_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @name Add, scaled
 * Sum of two vectors: r = pSrc1[n] + pSrc2[n]; in place r = pSrcDst[n] + pSrc[n].
 *
 * A scaleFactor above 32 clears the destination and reads no source.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsAdd_32s_Sfs(const Zep32s* pSrc1, const Zep32s* pSrc2, Zep32s* pDst, int len,
                                  int scaleFactor);
ZEP_API ZepStatus zepsAdd_32s_ISfs(const Zep32s* pSrc, Zep32s* pSrcDst, int len, int scaleFactor);
/** @} */

/**
 * Difference of two vectors, second minus first: r = pSrc2[n] - pSrc1[n]. The first vector is the
 * subtrahend. A scaleFactor above 32 clears pDst and reads no source.
 *
 * @param pSrc1        len subtrahends.
 * @param pSrc2        len minuends.
 * @param pDst         len elements; may equal a source.
 * @param len          elements.
 * @param scaleFactor  k.
 * @return             zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsSub_32s_Sfs(const Zep32s* pSrc1, const Zep32s* pSrc2, Zep32s* pDst, int len,
                                  int scaleFactor);

/**
 * @name Add or subtract a constant, scaled
 * r = pSrc[n] + val or pSrc[n] - val; in place with pSrcDst[n].
 *
 * With a val of 0 and a scaleFactor of 0 the source is copied, in place nothing is touched. A
 * scaleFactor above 32 clears the destination and does not read the source.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsAddC_32s_Sfs(const Zep32s* pSrc, Zep32s val, Zep32s* pDst, int len,
                                   int scaleFactor);
ZEP_API ZepStatus zepsAddC_32s_ISfs(Zep32s val, Zep32s* pSrcDst, int len, int scaleFactor);
ZEP_API ZepStatus zepsSubC_32s_Sfs(const Zep32s* pSrc, Zep32s val, Zep32s* pDst, int len,
                                   int scaleFactor);
ZEP_API ZepStatus zepsSubC_32s_ISfs(Zep32s val, Zep32s* pSrcDst, int len, int scaleFactor);
/** @} */

/**
 * Product of a vector and a constant in 64 bits, scaled, in place: r = pSrcDst[n] * val.
 *
 * A val of 0 clears the vector, whatever scaleFactor is; so does a scaleFactor above 62. With a val
 * of 1 and a scaleFactor of 0 nothing is touched.
 *
 * @param val          factor.
 * @param pSrcDst      len elements.
 * @param len          elements.
 * @param scaleFactor  k.
 * @return             zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsMulC_32s_ISfs(Zep32s val, Zep32s* pSrcDst, int len, int scaleFactor);

/**
 * Product of two vectors of 16-bit integers, saturated: pDst[n] = pSrc1[n] * pSrc2[n], limited to
 * -32768 and 32767.
 *
 * @param pSrc1  len elements.
 * @param pSrc2  len elements.
 * @param pDst   len elements; may equal a source.
 * @param len    elements.
 * @return       zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsMul_16s(const Zep16s* pSrc1, const Zep16s* pSrc2, Zep16s* pDst, int len);

/**
 * Quotient of a vector and a constant, scaled, in place, in single-precision arithmetic.
 *
 * - scaleFactor from -30 to 15: f = 2^-scaleFactor / val is formed once in single precision;
 *   pSrcDst[n] * f, again in single precision, is rounded to an integer and saturated to 16 bits.
 *   All three steps round by the caller's rounding mode. Since f is rounded, a quotient may land on
 *   the other side of a tie.
 * - scaleFactor below -30: 0 stays 0; 32767 where element and val have the same sign, else -32768.
 * - scaleFactor above 15: the vector is cleared.
 *
 * @param val          divisor.
 * @param pSrcDst      len elements.
 * @param len          elements.
 * @param scaleFactor  power of two that divides the quotient.
 * @return             zepStsNullPtrErr, zepStsSizeErr, zepStsDivByZeroErr (val is 0); else
 *                     zepStsNoErr.
 */
ZEP_API ZepStatus zepsDivC_16s_ISfs(Zep16s val, Zep16s* pSrcDst, int len, int scaleFactor);

#ifdef __cplusplus
}
#endif

#endif
