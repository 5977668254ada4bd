/** @file
 * Test signals: tones, straight lines, normally distributed noise.
 *
 * Destinations stand at any address; nothing but them, and the words that pointers name, is
 * written. Different calls may run in several threads; a noise state belongs to one at a time.
 */
#ifndef ZEPS_GENERATORS_H
#define ZEPS_GENERATORS_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @name Tones
 * Real: pDst[n] = magn * cos(2*pi*rFreq*n + phase), n = 0 .. len-1; complex: magn * exp(i * (2*pi *
 * rFreq * n + phase)). Samples are sums of angles about centres, in double precision; centres are
 * turned from one to the next, and come from the C library's sine and cosine anew at fixed distances.
 *
 * Accuracy: against the exact sinusoid of the given numbers no sample of ten million is off by more
 * than 3 * 2^-25 * magn in single precision, two thirds of which are the rounding to the format; in
 * double precision by more than 5e-14 * magn in the accurate form, and 1.5e-13 * magn in the fast
 * one. There is no drift: the last sample is as near as the first ones.
 *
 * @param pDst    len samples.
 * @param len     number of samples.
 * @param magn    greater than 0.
 * @param rFreq   cycles per sample, 0 <= rFreq < 0.5.
 * @param pPhase  phase of sample 0 in radians, 0 <= phase < 2*pi; receives the phase of sample len
 *                in the same range, so that the next call goes on without a break.
 * @param hint    1 (zepAlgHintFast): the accurate form, whose centres come from the library every
 *                8192 samples; any other value: the fast form, every 32768 samples.
 * @return        zepStsNullPtrErr (pPhase), zepStsToneMagnErr, zepStsToneFreqErr,
 *                zepStsTonePhaseErr, zepStsNullPtrErr (pDst), zepStsSizeErr, tested in this order;
 *                else zepStsNoErr. After an error *pPhase is what it was.
 * @note          Variants agree within rounding.
 * @{
 */
ZEP_API ZepStatus zepsTone_Direct_32f(Zep32f* pDst, int len, Zep32f magn, Zep32f rFreq,
                                      Zep32f* pPhase, ZepHintAlgorithm hint);
ZEP_API ZepStatus zepsTone_Direct_32fc(Zep32fc* pDst, int len, Zep32f magn, Zep32f rFreq,
                                       Zep32f* pPhase, ZepHintAlgorithm hint);
ZEP_API ZepStatus zepsTone_Direct_64f(Zep64f* pDst, int len, Zep64f magn, Zep64f rFreq,
                                      Zep64f* pPhase, ZepHintAlgorithm hint);
ZEP_API ZepStatus zepsTone_Direct_64fc(Zep64fc* pDst, int len, Zep64f magn, Zep64f rFreq,
                                       Zep64f* pPhase, ZepHintAlgorithm hint);
/** @} */

/** @name Straight lines
 * Element n, n = 0 .. len-1, the same bits in all variants:
 * - zepsVectorRamp_32f, zepsVectorSlope_32f: (float)n * slope + offset, in single precision, each
 *   operation rounded;
 * - zepsVectorRamp_32s: the same number, rounded to the nearest integer, halves away from zero,
 *   and saturated to the range of the type;
 * - zepsVectorSlope_32s: n * slope + offset in double precision, rounded and saturated alike.
 *
 * A line that is NaN gives the lowest integer.
 *
 * @param pDst    len elements.
 * @param len     number of elements.
 * @param offset  element 0.
 * @param slope   step from element to element.
 * @return        zepStsNullPtrErr, zepStsSizeErr, tested in this order; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsVectorRamp_32f(Zep32f* pDst, int len, Zep32f offset, Zep32f slope);
ZEP_API ZepStatus zepsVectorRamp_32s(Zep32s* pDst, int len, Zep32f offset, Zep32f slope);
ZEP_API ZepStatus zepsVectorSlope_32f(Zep32f* pDst, int len, Zep32f offset, Zep32f slope);
ZEP_API ZepStatus zepsVectorSlope_32s(Zep32s* pDst, int len, Zep64f offset, Zep64f slope);
/** @} */

/** A stream of normally distributed numbers: opaque. */
typedef struct ZepRandGaussState ZepRandGaussState;

/**
 * Makes a stream of normally distributed numbers; to be released by zepsRandGaussFree_32f. The same
 * seed gives the same numbers in every variant, bit for bit.
 *
 * @param ppState  receives the stream; unwritten on a failure.
 * @param mean     mean.
 * @param stdDev   standard deviation; any value: 0 gives the mean throughout.
 * @param seed     any word.
 * @return         zepStsNullPtrErr, zepStsMemAllocErr, tested in this order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsRandGaussInitAlloc_32f(ZepRandGaussState** ppState, Zep32f mean,
                                             Zep32f stdDev, Zep32u seed);

/**
 * Releases a stream.
 *
 * @param pState  from zepsRandGaussInitAlloc_32f.
 * @return        zepStsNullPtrErr, zepStsContextMatchErr (no stream, or one released before; nothing
 *                is released), tested in this order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsRandGaussFree_32f(ZepRandGaussState* pState);

/**
 * The next len numbers of a stream. However a caller cuts it into calls, the stream is the same.
 *
 * Uniform pairs come from a subtract-with-borrow sequence of lag 3 modulo 2^32 - 18 added to a linear
 * congruential one; the polar method (Marsaglia and Bray, 1964) turns each pair within the unit disc
 * into two numbers: u * stdDev * sqrt(-2 ln s / s) in double precision, rounded to float, plus the
 * mean in single precision.
 *
 * @param pDst    len numbers.
 * @param len     count.
 * @param pState  the stream; it moves on.
 * @return        zepStsNullPtrErr, zepStsSizeErr, zepStsContextMatchErr, tested in this order; else
 *                zepStsNoErr.
 */
ZEP_API ZepStatus zepsRandGauss_32f(Zep32f* pDst, int len, ZepRandGaussState* pState);

/**
 * The first len numbers of the stream with the seed *pSeed, without a state. *pSeed receives a word
 * of the source behind the pair that follows the last whole one, which makes a new seed: a chain of
 * calls is another sequence than a stream.
 *
 * @param pDst    len numbers.
 * @param len     count.
 * @param mean    mean.
 * @param stdDev  standard deviation, any value.
 * @param pSeed   the seed; receives the next one.
 * @return        zepStsNullPtrErr, zepStsSizeErr, tested in this order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsRandGauss_Direct_32f(Zep32f* pDst, int len, Zep32f mean, Zep32f stdDev,
                                           Zep32u* pSeed);

#ifdef __cplusplus
}
#endif

#endif
