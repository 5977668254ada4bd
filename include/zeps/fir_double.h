/** @file
 * FIR filters of single-precision samples with double-precision taps and sums, for long or sharply
 * tuned filters. At one rate, or with a change of rate by upFactor / downFactor.
 *
 * With x[i] the input, h[k] the tapsLen taps (0 outside them), the output is
 *
 *     y[q] = sum over i of x[i] * h[q*downFactor + downPhase - upPhase - i*upFactor],
 *
 * which with both factors 1 is y[n] = sum over k of h[k] * x[n-k]. Inputs before the first call
 * come from the initial delay line. All products and sums are in double precision, their order is
 * free, and each output is rounded to float once.
 *
 * One call takes numIters*downFactor samples and gives numIters*upFactor, so that every call begins
 * in the same phase: a stream may be cut into calls anywhere. At one rate, long filters go through
 * the fast Fourier transform, in double precision too; the results then agree with direct sums
 * within double's rounding of the largest sums, before the last rounding.
 *
 * Source: R. E. Crochiere and L. R. Rabiner, Multirate Digital Signal Processing, 1983 (polyphase
 * structures, overlap-save).
 */
#ifndef ZEPS_FIR_DOUBLE_H
#define ZEPS_FIR_DOUBLE_H

#include "../zepcore.h"
#include "fir_state.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Makes the state of a filter with double-precision taps.
 *
 * @param ppState     receives the state; null if memory is short, else unwritten on an error.
 * @param pTaps       tapsLen taps; any alignment.
 * @param tapsLen     at least 1.
 * @param upFactor    at least 1.
 * @param upPhase     0 to upFactor-1.
 * @param downFactor  at least 1.
 * @param downPhase   0 to downFactor-1.
 * @param pDlyLine    the samples before the stream, newest first, or null for zeros:
 *                    ceil(tapsLen / upFactor) of them. At one rate the last one has no effect.
 * @return            zepStsNullPtrErr (ppState, pTaps), zepStsFIRLenErr (tapsLen),
 *                    zepStsFIRMRFactorErr (a factor below 1), zepStsFIRMRPhaseErr (a phase outside
 *                    its range), zepStsMemAllocErr, tested in this order; else zepStsNoErr.
 * @note              At one rate and from 64 taps on, a transform is prepared; where there is no
 *                    memory for it the filter stays with direct sums, and no error is reported.
 * @note              No function releases these states: they are made for the life of a process.
 *                    zepsFree returns the state's block, but not the transform of a long filter.
 */
ZEP_API ZepStatus zepsFIRMRInitAlloc64f_32f(ZepFIRState** ppState, const Zep64f* pTaps, int tapsLen,
                                            int upFactor, int upPhase, int downFactor,
                                            int downPhase, const Zep32f* pDlyLine);

/**
 * Filters in place.
 *
 * @param pSrcDst   numIters*downFactor samples, replaced by numIters*upFactor results; the array
 *                  holds the larger number. Samples behind the results stay as they were. Any
 *                  alignment.
 * @param numIters  at least 1.
 * @param pState    from zepsFIRMRInitAlloc64f_32f; one call at a time.
 * @return          zepStsNullPtrErr (pState, pSrcDst), zepStsSizeErr, zepStsContextMatchErr (not a
 *                  state of zepsFIRMRInitAlloc64f_32f), zepStsMemAllocErr, tested in this order;
 *                  else zepStsNoErr.
 * @note            Only a call with upFactor above downFactor, or above 4096, allocates: a copy of
 *                  its input. If that fails, data and state are untouched.
 * @note            Calls of 512 samples or more use the transform, if the state has one. A NaN or
 *                  an infinity may then reach all outputs of a block; with a change of rate, also
 *                  outputs beside those whose sums contain it.
 */
ZEP_API ZepStatus zepsFIR64f_32f_I(Zep32f* pSrcDst, int numIters, ZepFIRState* pState);

/**
 * Filters complex samples with complex double-precision taps in place. No function makes a state
 * for it, so that every state is refused.
 *
 * @param pSrcDst   the samples.
 * @param numIters  at least 1.
 * @param pState    a state.
 * @return          zepStsNullPtrErr (pState, pSrcDst), zepStsSizeErr, zepStsContextMatchErr, tested
 *                  in this order.
 */
ZEP_API ZepStatus zepsFIR64fc_32fc_I(Zep32fc* pSrcDst, int numIters, ZepFIRState* pState);

#ifdef __cplusplus
}
#endif

#endif
