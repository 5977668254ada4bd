/** @file
 * Multi-rate FIR filters: the sample rate is raised by upFactor, filtered, and lowered by
 * downFactor in one pass, without forming the raised stream.
 *
 * With x[i] the input and h[k] the tapsLen taps (0 outside them), the output is
 *
 *     y[q] = sum over i of x[i] * h[q*downFactor + downPhase - upPhase - i*upFactor].
 *
 * The states made here are filtered and released by the functions of zeps/fir.h: zepsFIR_32f,
 * zepsFIR_32f_I, zepsFIRFree_32f and their complex companions. One call takes numIters*downFactor
 * samples and gives numIters*upFactor, so that every call begins in the same phase: a stream may be
 * cut into calls anywhere. With upFactor above 1 finite results do not depend on the cuts by a
 * single bit; plain decimations take their sums in an order that may differ with the length of the
 * call, and agree within the rounding of a sum of tapsLen products. In place, samples behind the
 * results stay as they were, and where upFactor is above downFactor, or above 4096, the call
 * allocates a copy of its input: zepStsMemAllocErr, with data and state untouched, if that fails.
 * Sums are in single precision; a NaN or an infinity may also reach outputs beside those whose sums
 * contain it.
 *
 * Source: R. E. Crochiere and L. R. Rabiner, Multirate Digital Signal Processing, 1983 (polyphase
 * structures).
 */
#ifndef ZEPS_FIR_MULTIRATE_H
#define ZEPS_FIR_MULTIRATE_H

#include "../zepcore.h"
#include "fir_state.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Makes the state of a multi-rate filter of real samples. With both factors 1 it is that of
 * zepsFIRInitAlloc_32f.
 *
 * @param ppState     receives the state; null if memory is short, else unwritten on an error.
 * @param pTaps       tapsLen taps; any alignment.
 * @param tapsLen     at least 1.
 * @param upFactor    at least 1.
 * @param upPhase     0 to upFactor-1.
 * @param downFactor  at least 1.
 * @param downPhase   0 to downFactor-1.
 * @param pDlyLine    the ceil(tapsLen / upFactor) samples before the stream, newest first, or null
 *                    for zeros.
 * @return            zepStsNullPtrErr (ppState, pTaps), zepStsFIRLenErr (tapsLen),
 *                    zepStsFIRMRFactorErr (a factor below 1), zepStsFIRMRPhaseErr (a phase outside
 *                    its range), zepStsMemAllocErr, tested in this order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsFIRMRInitAlloc_32f(ZepFIRState** ppState, const Zep32f* pTaps, int tapsLen,
                                         int upFactor, int upPhase, int downFactor, int downPhase,
                                         const Zep32f* pDlyLine);

/**
 * Makes the state of a multi-rate filter of complex samples, also with both factors 1. The product
 * is the plain complex one, nothing is conjugated.
 *
 * @param ppState     receives the state; unwritten on every error.
 * @param pTaps       tapsLen taps; any alignment.
 * @param tapsLen     at least 1.
 * @param upFactor    at least 1.
 * @param upPhase     0 to upFactor-1.
 * @param downFactor  at least 1.
 * @param downPhase   0 to downFactor-1.
 * @param pDlyLine    as zepsFIRMRInitAlloc_32f.
 * @return            as zepsFIRMRInitAlloc_32f.
 */
ZEP_API ZepStatus zepsFIRMRInitAlloc_32fc(ZepFIRState** ppState, const Zep32fc* pTaps, int tapsLen,
                                          int upFactor, int upPhase, int downFactor, int downPhase,
                                          const Zep32fc* pDlyLine);

#ifdef __cplusplus
}
#endif

#endif
