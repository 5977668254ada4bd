/** @file
 * Reductions, statistics and thresholds.
 *
 * Functions that fold a vector to one or a few values, and the element-wise maximum, minimum and
 * threshold. What holds for all of them:
 *
 * - Any alignment; a result depends on the data alone, never on their address. Sources may be the
 *   same vector; results must not overlap them.
 * - Statuses, unless a function says otherwise, in this order: zepStsNullPtrErr (any pointer null),
 *   zepStsSizeErr (len not greater than 0); else zepStsNoErr. After an error nothing has been
 *   written.
 * - No function allocates; all may run on several threads at once on different data.
 * - Floating sums run in several partial sums, which are combined in a fixed order that is not that
 *   of the elements. The width of a partial sum is stated, their number is not: variants may differ
 *   in the last bits of a floating sum. Everything else has the same bits in all variants.
 * - A scaled integer result is the exact total times 2^-scaleFactor, rounded to nearest, ties to
 *   even, and saturated to its type.
 */
#ifndef ZEPS_STATISTICS_H
#define ZEPS_STATISTICS_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @name Sum
 * *pSum = sum of pSrc[n], n = 0 .. len-1. Single precision is summed in double precision and
 * rounded once at the end.
 *
 * @param hint  zepAlgHintFast keeps more partial sums than any other value; both are double.
 * @return      zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else
 *              zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsSum_32f(const Zep32f* pSrc, int len, Zep32f* pSum, int hint);
ZEP_API ZepStatus zepsSum_32fc(const Zep32fc* pSrc, int len, Zep32fc* pSum, int hint);
ZEP_API ZepStatus zepsSum_64f(const Zep64f* pSrc, int len, Zep64f* pSum);
ZEP_API ZepStatus zepsSum_64fc(const Zep64fc* pSrc, int len, Zep64fc* pSum);
/** @} */

/**
 * Scaled sum of integers, exact until it is scaled.
 *
 * @param pSrc         len elements.
 * @param len          elements.
 * @param pSum         takes the sum.
 * @param scaleFactor  -31 .. 63; values beyond count as the nearest of them.
 * @return             zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this
 *                     order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsSum_32s_Sfs(const Zep32s* pSrc, int len, Zep32s* pSum, int scaleFactor);

/**
 * @name Mean
 * *pMean = sum of pSrc[n] / len. The sum is that of zepsSum_*, rounded to single precision; the
 * quotient is formed in double precision and rounded again.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else
 *         zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsMean_32f(const Zep32f* pSrc, int len, Zep32f* pMean, int hint);
ZEP_API ZepStatus zepsMean_32fc(const Zep32fc* pSrc, int len, Zep32fc* pMean, int hint);
/** @} */

/**
 * Scaled mean of integers: the exact sum divided by len * 2^scaleFactor.
 *
 * @param pSrc         len elements.
 * @param len          elements.
 * @param pMean        takes the mean.
 * @param scaleFactor  0 and above: one rounded division (nearest, ties to even). Below: where the
 *                     sum fits 32 bits it is shifted first and the quotient rounded; where it does
 *                     not, the mean is rounded first and shifted then. From -32 down only the sign
 *                     of the rounded mean counts: 2^31 - 1, 0 or -2^31.
 * @return             zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this
 *                     order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsMean_32s_Sfs(const Zep32s* pSrc, int len, Zep32s* pMean, int scaleFactor);

/**
 * @name Standard deviation
 * Of a sample: with s the sum of the elements and q that of their squares, *pStdDev = sqrt(max(q *
 * len - s * s, 0) / (len * (len - 1))), and *pMean = s / len, both formed in double precision and
 * rounded once. One pass over the data: where the mean is large against the deviation, digits
 * cancel.
 *
 * @param hint  zepAlgHintFast: the partial sums are of single precision, with relative errors of up
 *              to about len / 64 * 2^-24 of the sums of magnitudes. Any other value: of double
 *              precision, squares too.
 * @return      zepStsNullPtrErr, zepStsSizeErr (len below 2), tested in this order; else
 *              zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsStdDev_32f(const Zep32f* pSrc, int len, Zep32f* pStdDev, int hint);
ZEP_API ZepStatus zepsMeanStdDev_32f(const Zep32f* pSrc, int len, Zep32f* pMean, Zep32f* pStdDev,
                                     int hint);
/** @} */

/**
 * @name Extreme values
 * The largest element, the smallest, or both. Which of two zeros of different sign is returned is
 * not defined, nor is the value when a not-a-number is among the elements.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else
 *         zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsMax_32f(const Zep32f* pSrc, int len, Zep32f* pMax);
ZEP_API ZepStatus zepsMax_32s(const Zep32s* pSrc, int len, Zep32s* pMax);
ZEP_API ZepStatus zepsMax_64f(const Zep64f* pSrc, int len, Zep64f* pMax);
ZEP_API ZepStatus zepsMin_32f(const Zep32f* pSrc, int len, Zep32f* pMin);
ZEP_API ZepStatus zepsMin_32s(const Zep32s* pSrc, int len, Zep32s* pMin);
ZEP_API ZepStatus zepsMin_64f(const Zep64f* pSrc, int len, Zep64f* pMin);
ZEP_API ZepStatus zepsMinMax_8u(const Zep8u* pSrc, int len, Zep8u* pMin, Zep8u* pMax);
ZEP_API ZepStatus zepsMinMax_16s(const Zep16s* pSrc, int len, Zep16s* pMin, Zep16s* pMax);
ZEP_API ZepStatus zepsMinMax_32f(const Zep32f* pSrc, int len, Zep32f* pMin, Zep32f* pMax);
/** @} */

/**
 * @name Extreme values with index
 * The extreme value and the lowest index at which it stands. Zeros of both signs are equal. A
 * not-a-number is passed over, unless it is the first element: then it is the result, with index 0.
 *
 * @param pIndx  of zepsMaxIndx_* and zepsMinIndx_*: may be null, and the index is not wanted.
 * @return       zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order;
 *               else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsMaxIndx_32f(const Zep32f* pSrc, int len, Zep32f* pMax, int* pIndx);
ZEP_API ZepStatus zepsMaxIndx_32s(const Zep32s* pSrc, int len, Zep32s* pMax, int* pIndx);
ZEP_API ZepStatus zepsMinIndx_32f(const Zep32f* pSrc, int len, Zep32f* pMin, int* pIndx);
ZEP_API ZepStatus zepsMinIndx_32s(const Zep32s* pSrc, int len, Zep32s* pMin, int* pIndx);
ZEP_API ZepStatus zepsMinMaxIndx_32f(const Zep32f* pSrc, int len, Zep32f* pMin, int* pMinIndx,
                                     Zep32f* pMax, int* pMaxIndx);
ZEP_API ZepStatus zepsMinMaxIndx_32s(const Zep32s* pSrc, int len, Zep32s* pMin, int* pMinIndx,
                                     Zep32s* pMax, int* pMaxIndx);
/** @} */

/**
 * Binary order of the largest magnitude: the k with 2^(k-1) <= max |pSrc[n]| < 2^k, so that 1.0
 * gives 1 and 0.75 gives 0. Every denormal gives -126, zeros alone give 0. Infinities and
 * not-a-numbers count as 0 and are reported.
 *
 * The invalid flag of the calling thread's control word (MXCSR) is clear afterwards, also when it
 * was set before.
 *
 * @return zepStsSizeErr (len not greater than 0), zepStsNullPtrErr, tested in this order, which is
 *         the reverse of the usual one; zepStsNanArg where an element is infinite or a
 *         not-a-number, a warning: the order is that of the others; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsMaxOrder_32f(const Zep32f* pSrc, int len, int* pOrder);

/**
 * Euclidean norm: *pNorm = sqrt(sum of pSrc[n]^2), summed in single precision without scaling:
 * elements above about 1.8e19 give infinity.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else
 *         zepStsNoErr.
 */
ZEP_API ZepStatus zepsNorm_L2_32f(const Zep32f* pSrc, int len, Zep32f* pNorm);

/**
 * @name Dot product
 * *pDp = sum of pSrc1[n] * pSrc2[n], n = 0 .. len-1; complex factors are not conjugated. Double
 * precision is summed in double, single precision in single precision. Products may be fused with
 * their sum.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else
 *         zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsDotProd_64f(const Zep64f* pSrc1, const Zep64f* pSrc2, int len, Zep64f* pDp);
ZEP_API ZepStatus zepsDotProd_32fc(const Zep32fc* pSrc1, const Zep32fc* pSrc2, int len,
                                   Zep32fc* pDp);
ZEP_API ZepStatus zepsDotProd_64fc(const Zep64fc* pSrc1, const Zep64fc* pSrc2, int len,
                                   Zep64fc* pDp);
/** @} */

/**
 * Scaled dot product of 32-bit integers, in double precision: exact while the partial sums stay
 * below 2^53, else with the rounding of their 53 bits. The total is multiplied by 2^-scaleFactor,
 * rounded to nearest, ties to even, and saturated.
 *
 * @param pSrc1        len elements.
 * @param pSrc2        len elements.
 * @param len          elements.
 * @param pDp          takes the product.
 * @param scaleFactor  -31 .. 93; values beyond count as the nearest of them.
 * @return             zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this
 *                     order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsDotProd_32s_Sfs(const Zep32s* pSrc1, const Zep32s* pSrc2, int len,
                                      Zep32s* pDp, int scaleFactor);

/**
 * Scaled dot product of 16-bit by 32-bit integers. The total is kept modulo 2^64, so it is exact
 * for len up to 2^17 whatever the elements.
 *
 * @param pSrc1        len elements.
 * @param pSrc2        len elements.
 * @param len          elements.
 * @param pDp          takes the product.
 * @param scaleFactor  -31 .. 31; values beyond count as the nearest of them.
 * @return             zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this
 *                     order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsDotProd_16s32s_Sfs(const Zep16s* pSrc1, const Zep32s* pSrc2, int len,
                                         Zep32s* pDp, int scaleFactor);

/**
 * @name MaxEvery, MinEvery
 * pSrcDst[n] = the larger, or the smaller, of pSrcDst[n] and pSrc[n]; pSrc[n] where either is a
 * not-a-number or both are zero. pSrc may equal pSrcDst, other overlap is not supported.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else
 *         zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsMaxEvery_32f_I(const Zep32f* pSrc, Zep32f* pSrcDst, int len);
ZEP_API ZepStatus zepsMinEvery_32f_I(const Zep32f* pSrc, Zep32f* pSrcDst, int len);
/** @} */

/**
 * @name Threshold
 * Limit on one side. relOp 0: elements below level become level; relOp 4: elements above it.
 * zepsThreshold_LT_32f_I is the form with relOp 0. A not-a-number, and a zero where level is one,
 * becomes level.
 *
 * @param pDst   may equal pSrc, other overlap is not supported.
 * @param relOp  0 (less than) or 4 (greater than).
 * @return       zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), zepStsBadArgErr (any
 *               other relOp), tested in this order; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsThreshold_32f(const Zep32f* pSrc, Zep32f* pDst, int len, Zep32f level,
                                    int relOp);
ZEP_API ZepStatus zepsThreshold_32f_I(Zep32f* pSrcDst, int len, Zep32f level, int relOp);
ZEP_API ZepStatus zepsThreshold_LT_32f_I(Zep32f* pSrcDst, int len, Zep32f level);
/** @} */

/**
 * @name Threshold with a value
 * Elements strictly above (GTVal) or strictly below (LTVal) level become value; all others, and
 * not-a-numbers, stay.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else
 *         zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsThreshold_GTVal_32f_I(Zep32f* pSrcDst, int len, Zep32f level, Zep32f value);
ZEP_API ZepStatus zepsThreshold_LTVal_32f_I(Zep32f* pSrcDst, int len, Zep32f level, Zep32f value);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
