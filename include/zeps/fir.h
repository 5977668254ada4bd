/** @file
 * Streaming finite impulse response filters.
 *
 * A state holds the taps h[0 .. L-1] and the last L-1 samples that it has seen; a call filters a
 * block of any length, as if the whole stream passed through one convolution: y[n] = sum over k of
 * h[k] * x[n - k], where x[-1], x[-2], .. are the samples of earlier calls or of the initial delay
 * line. Output n comes with input n; the delay of the filter is that of its taps, (L-1)/2 samples
 * for symmetrical ones.
 *
 * What holds for all of them:
 * - Sums are formed in single precision; the order of the additions is free. Variants, routes and
 *   ways of cutting a stream agree within rounding: relative to the sum of |h||x| on the direct
 *   route, on that of transforms to the norms of the taps and of one block of the input; in real
 *   filters of two blocks anywhere in the call, which share a transform. Complex products are
 *   plain, neither factor conjugated.
 * - Transforms are used by states of at least 64 real or 16 complex taps, in calls of at least 512
 *   real or 256 complex samples; in place, for blocks behind which at least so many are left. There
 *   a NaN or an infinity reaches all outputs of its transform, in real filters those of both
 *   blocks; on the direct route only those within L samples.
 * - Any alignment of the caller's arrays. Filtering allocates nothing.
 * - A call changes its state, so one state serves one thread at a time; different states are
 *   independent.
 */
#ifndef ZEPS_FIR_H
#define ZEPS_FIR_H

#include "../zepcore.h"
#include "fir_state.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @name FIRInitAlloc
 * Creates the state of a single-rate filter; to be released by zepsFIRFree_* of its type.
 *
 * @param ppState   receives the state; unwritten where an argument is refused or memory is short.
 * @param pTaps     tapsLen taps; copied.
 * @param tapsLen   at least 1.
 * @param pDlyLine  tapsLen past samples, the newest first: pDlyLine[0] = x[-1]; the last one has no
 *                  effect. Null: zeros. Copied.
 * @return          zepStsNullPtrErr (ppState, pTaps), zepStsFIRLenErr (tapsLen below 1),
 *                  zepStsNullPtrErr (the transform object could not be made), zepStsMemAllocErr,
 *                  tested in this order; else zepStsNoErr.
 * @note            Memory: about 4 times L samples, 15 to 60 times L with transforms, and 4096 to
 *                  4224 samples for calls in place.
 * @{
 */
ZEP_API ZepStatus zepsFIRInitAlloc_32f(ZepFIRState** ppState, const Zep32f* pTaps, int tapsLen,
                                       const Zep32f* pDlyLine);
ZEP_API ZepStatus zepsFIRInitAlloc_32fc(ZepFIRState** ppState, const Zep32fc* pTaps, int tapsLen,
                                        const Zep32fc* pDlyLine);
/** @} */

/**
 * @name FIRFree
 * Releases a state. Its identifying word is cleared first, so that a second release is refused as
 * long as the memory has not been used again.
 *
 * @return  zepStsNullPtrErr, zepStsContextMatchErr (a state of another type, or released), tested in
 *          this order; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsFIRFree_32f(ZepFIRState* pState);
ZEP_API ZepStatus zepsFIRFree_32fc(ZepFIRState* pState);
/** @} */

/**
 * @name FIR
 * Filters numIters samples, the _I forms in place.
 *
 * @param pSrc      numIters samples.
 * @param pDst      numIters results; must not overlap pSrc, which is not tested.
 * @param numIters  at least 1.
 * @param pState    from zepsFIRInitAlloc_* of this type.
 * @return          zepStsNullPtrErr (any pointer), zepStsSizeErr (numIters below 1),
 *                  zepStsContextMatchErr, tested in this order; else zepStsNoErr. On an error
 *                  nothing is written and the state stays.
 * @note            The _I forms run in blocks of 4096 samples, of 4224 in the variant e9; a call of
 *                  no more than one block is always direct.
 * @{
 */
ZEP_API ZepStatus zepsFIR_32f(const Zep32f* pSrc, Zep32f* pDst, int numIters, ZepFIRState* pState);
ZEP_API ZepStatus zepsFIR_32fc(const Zep32fc* pSrc, Zep32fc* pDst, int numIters,
                               ZepFIRState* pState);
ZEP_API ZepStatus zepsFIR_32f_I(Zep32f* pSrcDst, int numIters, ZepFIRState* pState);
ZEP_API ZepStatus zepsFIR_32fc_I(Zep32fc* pSrcDst, int numIters, ZepFIRState* pState);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
