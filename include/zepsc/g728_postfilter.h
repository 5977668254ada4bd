/** @file
 * Decoder side of ITU-T G.728 (fixed point, Annex G): pitch extraction and the postfilter.
 *
 * States are in memory of the caller: a function tells the size, an init function clears. They hold
 * no pointers and may be moved. One state serves one stream, one thread at a time.
 */
#ifndef ZEPSC_G728_POSTFILTER_H
#define ZEPSC_G728_POSTFILTER_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/** State of a postfilter: opaque, 64 bytes. Cleared it has unity gain. */
typedef struct ZepPostFilterState ZepPostFilterState;
/** State of a pitch extraction: opaque, 176 bytes. Cleared its past period is 50. */
typedef struct ZepPostFilterAdapterState ZepPostFilterAdapterState;

/**
 * Size of a postfilter's state.
 *
 * @param pSize  takes the bytes, 64.
 * @return       zepStsNullPtrErr (pSize); else zepStsNoErr.
 */
ZEP_API ZepStatus zepsPostFilterGetStateSize_G728_16s(Zep32u* pSize);

/**
 * Clears a postfilter.
 *
 * @param pState  memory of the size that zepsPostFilterGetStateSize_G728_16s tells.
 * @return        zepStsNullPtrErr (pState); else zepStsNoErr.
 */
ZEP_API ZepStatus zepsPostFilterInit_G728_16s(ZepPostFilterState* pState);

/**
 * Size of a pitch extraction's state.
 *
 * @param pSize  takes the bytes, 176.
 * @return       zepStsNullPtrErr (pSize); else zepStsNoErr.
 */
ZEP_API ZepStatus zepsPostFilterAdapterGetStateSize_G728(Zep32u* pSize);

/**
 * Clears a pitch extraction.
 *
 * @param pState  memory of the size that zepsPostFilterAdapterGetStateSize_G728 tells.
 * @return        zepStsNullPtrErr (pState); else zepStsNoErr.
 */
ZEP_API ZepStatus zepsPostFilterAdapterStateInit_G728(ZepPostFilterAdapterState* pState);

/**
 * Pitch period of a residual, once for every 20 samples.
 *
 * The new samples are low-pass filtered and every fourth is kept. The best of the lags 5 .. 35 of
 * that signal, over its 25 newest samples, times 4 is refined on the residual itself, over its 100
 * newest samples, 6 to each side; the same is done around the past period. The latter wins if its
 * tap, the correlation over the energy of the delayed segment and limited to 0 .. 1, exceeds 0.4 of
 * the other's (26214 in 16 bits). All periods are limited to 20 .. 140; of equal correlations the
 * lower lag counts, so silence gives 20.
 *
 * @param pSrc    the 20 newest samples of the residual, oldest first; 220 older ones stand before
 *                it and are read.
 * @param pKp     takes the period.
 * @param pState  from zepsPostFilterAdapterStateInit_G728.
 * @return        zepStsNullPtrErr (any pointer); else zepStsNoErr. On an error nothing is written.
 */
ZEP_API ZepStatus zepsPitchPeriodExtraction_G728_16s(const Zep16s* pSrc, Zep32s* pKp,
                                                     ZepPostFilterAdapterState* pState);

/**
 * Postfilter on one vector of 5 samples x:
 * - long-term: u[n] = gl * (x[n] + glb * x[n-kp]), the sum in brackets and the product both
 *   rounded from Q14, u limited to 16 bits;
 * - short-term: v[n] = u[n] + sum of az[i] * u[n-i] - sum of ap[i] * v[n-i], i = 1 .. 10, kept in 16
 *   bits; w[n] = v[n] + tiltz * v[n-1] with v[n] before rounding;
 * - gain: g moves by 1/100 of the way to the ratio of the magnitudes of x and w with each sample;
 *   y[n] = g * w[n].
 *
 * @param gl       gain of the long-term postfilter, Q14.
 * @param glb      its tap, Q14.
 * @param kp       pitch period, 0 to 140.
 * @param tiltz    tilt compensation, Q14.
 * @param pCoeffs  20 words, Q14: az[1] .. az[10], ap[1] .. ap[10].
 * @param pSrc     5 samples of decoded speech, Q2; kp older ones stand before it and are read.
 * @param pDst     5 samples; may be pSrc.
 * @param pState   from zepsPostFilterInit_G728_16s.
 * @return         zepStsNullPtrErr (any pointer); else zepStsNoErr. On an error nothing is written.
 */
ZEP_API ZepStatus zepsPostFilter_G728_16s(Zep16s gl, Zep16s glb, Zep16s kp, Zep16s tiltz,
                                          const Zep16s* pCoeffs, const Zep16s* pSrc, Zep16s* pDst,
                                          ZepPostFilterState* pState);

#ifdef __cplusplus
}
#endif

#endif
