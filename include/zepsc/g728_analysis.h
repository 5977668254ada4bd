/** @file
 * Backward adaptation of ITU-T G.728 (fixed point, Annex G): hybrid windows, which turn a stream of
 * samples into autocorrelation, and the Levinson-Durbin recursion, which turns that into predictor
 * coefficients.
 *
 * A predictor here is A(z) = 1 + sum over i of a[i] * z^-i, i from 1; arrays hold a[1] first.
 */
#ifndef ZEPSC_G728_ANALYSIS_H
#define ZEPSC_G728_ANALYSIS_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/** State of a hybrid window: opaque, in memory of the caller. It holds pointers into itself: it
 * must not be moved. One thread at a time. */
typedef struct ZepWinHybridState ZepWinHybridState;

/**
 * Size of a hybrid window's state.
 *
 * @param M      highest lag.
 * @param N      samples of the non-recursive part.
 * @param L      samples per update.
 * @param div    samples that share an exponent, for zepsWinHybridBlock_G728_16s; below 1: none do.
 * @param pSize  takes the bytes: 2 * (N + L + 2 * M) + 52, plus 2 * ((M + N + L) / div) if div is
 *               positive.
 * @return       zepStsNullPtrErr (pSize), zepStsSizeErr (M, N or L below 1, or their sum above
 *               32767), tested in this order; else zepStsNoErr. On an error nothing is written.
 */
ZEP_API ZepStatus zepsWinHybridGetStateSize_G728_16s(Zep32s M, Zep32s N, Zep32s L, Zep32s div,
                                                     Zep32u* pSize);

/**
 * Starts a hybrid window: history and recursive part are silence.
 *
 * @param pWindow  M + N + L window values, Q15, as the recommendation prints them: the first one
 *                 weighs the newest sample. Kept by reference, read only.
 * @param M        as for zepsWinHybridGetStateSize_G728_16s, and so are:
 * @param N        samples of the non-recursive part.
 * @param L        samples per update.
 * @param div      samples that share an exponent.
 * @param decay    0x3000: the recursive part decays by 3/4 an update; 0x2000: by 1/2. Other words
 *                 have no defined decay.
 * @param pState   memory of the size that zepsWinHybridGetStateSize_G728_16s tells.
 * @return         zepStsNullPtrErr (pWindow or pState), zepStsSizeErr (as above), tested in this
 *                 order; else zepStsNoErr. On an error nothing is written.
 */
ZEP_API ZepStatus zepsWinHybridInit_G728_16s(const Zep16s* pWindow, Zep32s M, Zep32s N, Zep32s L,
                                             Zep32s div, Zep16s decay, ZepWinHybridState* pState);

/** @name Update of a hybrid window
 * Takes L new samples and gives M + 1 autocorrelation values of the windowed past, normalised so
 * that lag 0, after the white noise correction by 257/256, fills 16 bits.
 *
 * The window covers T = M + N + L samples, oldest first. Those from M to M + L - 1 enter the
 * recursive part, which decays with each update; the newest N are summed afresh. Products are
 * summed exactly; recursive components are kept in 16 bits with one exponent, at most 41.
 *
 * zepsWinHybrid_G728_16s normalises the windowed samples to 15 bits together.
 * zepsWinHybridBlock_G728_16s is for samples in block floating point: every div samples share an
 * exponent, and the samples are aligned to the smallest exponent in the history. There M + N + L
 * and L should be multiples of div; on a state without div it is zepsWinHybrid_G728_16s.
 *
 * @param bfi     without effect.
 * @param pSrc    L samples, oldest first; for the block form followed by L / div exponents e, the
 *                value of a sample x being x / 2^e.
 * @param pDst    M + 1 values, lag 0 first.
 * @param pState  from zepsWinHybridInit_G728_16s.
 * @return        zepStsNullPtrErr (pSrc, pDst or pState); else zepStsUnderflow if lag M is zero in
 *                32 bits, when a recursion should not be run; else zepStsNoErr. With an error
 *                nothing is written, with the warning all is.
 * @{
 */
ZEP_API ZepStatus zepsWinHybrid_G728_16s(Zep32s bfi, const Zep16s* pSrc, Zep16s* pDst,
                                         ZepWinHybridState* pState);
ZEP_API ZepStatus zepsWinHybridBlock_G728_16s(Zep32s bfi, const Zep16s* pSrc, Zep16s* pDst,
                                              ZepWinHybridState* pState);
/** @} */

/**
 * Levinson-Durbin recursion from order 0.
 *
 * Coefficients come in Q(*pScale): they start in Q15, and when an update leaves 32 bits all are
 * halved. A scale of 13, 14 or 15 is a success. After a failure at order m the coefficients of the
 * orders below m stand in pDst, *pScale holds 15 and *pResidual the residual of order 1.
 *
 * @param pSrc       order + 1 autocorrelation values, lag 0 first, pSrc[0] above 0.
 * @param order      1 or more.
 * @param pDst       order coefficients. Must not overlap pSrc.
 * @param pReflect   takes the first reflection coefficient, Q15.
 * @param pResidual  takes the prediction residual, in the scale of pSrc[0].
 * @param pScale     takes the scale.
 * @return           zepStsNullPtrErr (any pointer), zepStsRangeErr (order below 1, or pSrc[0] below
 *                   1), tested in this order, nothing written; zepStsLPCCalcErr (failure at an
 *                   order below 12, or a scale of 12 or less with order below 10); zepStsOverflow
 *                   (failure at order 12 or above, or a scale of 12 or less with order from 10 on);
 *                   else zepStsNoErr. With a scale of 12 or less the residual is not brought up to
 *                   date.
 */
ZEP_API ZepStatus zepsLevinsonDurbin_G728_16s_Sfs(const Zep16s* pSrc, Zep32s order, Zep16s* pDst,
                                                  Zep16s* pReflect, Zep16s* pResidual,
                                                  Zep16s* pScale);

/**
 * Levinson-Durbin recursion from one order to a higher one; with start 0 it is
 * zepsLevinsonDurbin_G728_16s_Sfs.
 *
 * @param pSrc       end + 1 autocorrelation values, lag 0 first.
 * @param start      order reached so far, 0 or more.
 * @param end        order to reach, at least start.
 * @param pSrcDst    start coefficients; becomes end coefficients.
 * @param pResidual  residual of order start; that of order end. Neither it nor the scale is written
 *                   on a failure (with start 0 see there).
 * @param pScale     scale of the coefficients, 0 to 15.
 * @return           zepStsNullPtrErr (any pointer), zepStsRangeErr (start negative or end below
 *                   start), zepStsScaleRangeErr (*pScale, unless start is 0), tested in this order,
 *                   nothing written; then as zepsLevinsonDurbin_G728_16s_Sfs with end for order.
 */
ZEP_API ZepStatus zepsLevinsonDurbin_G728_16s_ISfs(const Zep16s* pSrc, Zep32s start, Zep32s end,
                                                   Zep16s* pSrcDst, Zep16s* pResidual,
                                                   Zep16s* pScale);

#ifdef __cplusplus
}
#endif

#endif
