/** @file
 * Linear convolution, autocorrelation and cross-correlation of whole arrays, without state.
 *
 * What holds for all of them:
 * - Sums run over all indices for which both factors exist. They are formed in single precision;
 *   the order of the additions is free, so variants agree within rounding, not bit for bit.
 * - Each call goes by direct sums or by Fourier transforms, by thresholds that are the same in all
 *   variants. The error of a direct sum is relative to the sum of the magnitudes of its own
 *   products; that of a transform is relative to the norms of both sequences, so small results
 *   beside large ones lose digits, and a NaN or an infinity spreads over the whole block, and over
 *   another that is transformed with it.
 * - Any alignment. pDst overlaps no source; the two sources may be the same array.
 * - Statuses, tested in this order: zepStsNullPtrErr (any pointer null), zepStsSizeErr (a length
 *   below 1), and where a transform is used zepStsFftOrderErr (more than 2^29 real or 2^28 complex
 *   points would be needed) and zepStsMemAllocErr (also where the scratch of one call would pass
 *   2 GiB); else zepStsNoErr. Everything allocated is released before the call returns.
 * - May run on several threads at once on different data.
 */
#ifndef ZEPS_CONVOLUTION_H
#define ZEPS_CONVOLUTION_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @name Conv
 * Linear convolution: pDst[n] = sum over k of pSrc1[k] * pSrc2[n - k], n = 0 .. src1Len+src2Len-2.
 * The sources may change places.
 *
 * Direct where src1Len + src2Len - 1 is below 512 or the shorter length below 64. Else, with the
 * longer length below three times the shorter, one transform; with a longer one overlap-save in
 * blocks of four to eight times the shorter length.
 *
 * zepsConv_16s_Sfs sums in floats too; the results are multiplied by 2^-scaleFactor, rounded to the
 * nearest integer and saturated as zepsConvert_32f16s_Sfs does, for any scaleFactor. It always allocates;
 * zepsConv_32f allocates for transforms only.
 *
 * @param pDst         src1Len + src2Len - 1 values.
 * @return             zepStsNullPtrErr, zepStsSizeErr, zepStsFftOrderErr, zepStsMemAllocErr; else
 *                     zepStsNoErr. On an error nothing has been written but by a transform that
 *                     failed half-way.
 * @{
 */
ZEP_API ZepStatus zepsConv_32f(const Zep32f* pSrc1, int src1Len, const Zep32f* pSrc2, int src2Len,
                               Zep32f* pDst);
ZEP_API ZepStatus zepsConv_16s_Sfs(const Zep16s* pSrc1, int src1Len, const Zep16s* pSrc2,
                                   int src2Len, Zep16s* pDst, int scaleFactor);
/** @} */

/**
 * @name AutoCorr
 * Autocorrelation: pDst[k] = sum over i of pSrc[i + k] * conj(pSrc[i]), k = 0 .. n-1 with
 * n = min(srcLen, dstLen); zeros from pDst[srcLen] on.
 *
 * The _NormA forms multiply the n values by 1/srcLen, a factor that is formed once in single
 * precision (the biased estimate); the _NormB forms divide value k by srcLen - k (the unbiased
 * one). Direct for n below 856, complex ones below 152; else by transforms of at least 2*srcLen
 * points.
 *
 * @param pDst  dstLen values.
 * @return      zepStsNullPtrErr, zepStsSizeErr, zepStsFftOrderErr, zepStsMemAllocErr; else
 *              zepStsNoErr. A _NormB form that gets no memory for its denominators ends with
 *              zepStsMemAllocErr; pDst then holds the autocorrelation, not normalised.
 * @note        Allocates for transforms, the _NormB forms always.
 * @{
 */
ZEP_API ZepStatus zepsAutoCorr_32f(const Zep32f* pSrc, int srcLen, Zep32f* pDst, int dstLen);
ZEP_API ZepStatus zepsAutoCorr_NormA_32f(const Zep32f* pSrc, int srcLen, Zep32f* pDst, int dstLen);
ZEP_API ZepStatus zepsAutoCorr_NormB_32f(const Zep32f* pSrc, int srcLen, Zep32f* pDst, int dstLen);
ZEP_API ZepStatus zepsAutoCorr_32fc(const Zep32fc* pSrc, int srcLen, Zep32fc* pDst, int dstLen);
ZEP_API ZepStatus zepsAutoCorr_NormA_32fc(const Zep32fc* pSrc, int srcLen, Zep32fc* pDst,
                                          int dstLen);
ZEP_API ZepStatus zepsAutoCorr_NormB_32fc(const Zep32fc* pSrc, int srcLen, Zep32fc* pDst,
                                          int dstLen);
/** @} */

/**
 * @name CrossCorr
 * Cross-correlation over dstLen lags from lowLag on: pDst[n] = sum over k of conj(pSrc1[k]) *
 * pSrc2[k + n + lowLag], n = 0 .. dstLen-1. Lags below 1 - src1Len and from src2Len on have no
 * product and give zeros.
 *
 * Direct where shorter * lags / longer is below 384, for complex data below 256, with the two
 * lengths and the count of lags that are not zeros outright. Else one transform where the longer
 * length is below three times the shorter or the first lag more than the shorter length above
 * 1 - src1Len; overlap-save otherwise.
 *
 * @param pDst    dstLen values.
 * @param lowLag  any value, negative ones too.
 * @return        zepStsNullPtrErr, zepStsSizeErr, zepStsFftOrderErr, zepStsMemAllocErr; else
 *                zepStsNoErr. After one of the last two errors the zeros have been written.
 * @note          Allocates for transforms only.
 * @{
 */
ZEP_API ZepStatus zepsCrossCorr_32f(const Zep32f* pSrc1, int src1Len, const Zep32f* pSrc2,
                                    int src2Len, Zep32f* pDst, int dstLen, int lowLag);
ZEP_API ZepStatus zepsCrossCorr_32fc(const Zep32fc* pSrc1, int src1Len, const Zep32fc* pSrc2,
                                     int src2Len, Zep32fc* pDst, int dstLen, int lowLag);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
