/** @file
 * Median filter, preemphasis, and stepping of the sample rate.
 *
 * Any alignment of all pointers. Nothing is kept from call to call: the phase of a rate step
 * belongs to the caller.
 */
#ifndef ZEPS_SAMPLING_H
#define ZEPS_SAMPLING_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @name FilterMedian
 * Running median. With m = maskSize if that is odd, else maskSize - 1, and h = (m - 1) / 2: each
 * sample n becomes the median of the m unfiltered samples n - h to n + h, where the first sample
 * stands for all in front of it and the last one for all behind it. So the first and the last
 * sample stay as they are; with m = 1, or fewer than 3 samples, all do.
 *
 * Zeros of both signs are equal: either may be the result. A not-a-number may give any value to
 * the samples whose masks hold it, and to no others.
 *
 * Masks up to 10 allocate nothing. Wider ones allocate scratch of 2 * m + 65536 floats at most, or
 * of len floats where h is at least len - 1; what does not fit into 2 GiB is not allocated.
 *
 * @param pSrc      len samples.
 * @param pDst      len samples; may be pSrc, must not overlap it otherwise.
 * @param len       samples, those of pSrcDst filtered in place.
 * @param maskSize  samples that a median is taken of; any from 1 on.
 * @return          zepStsNullPtrErr; zepStsSizeErr (len or maskSize not greater than 0);
 *                  zepStsMemAllocErr (no memory for the scratch; pDst then holds a copy of pSrc,
 *                  pSrcDst is as it was), tested in this order; else zepStsEvenMedianMaskSize, a
 *                  warning, if maskSize is even, or zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsFilterMedian_32f(const Zep32f* pSrc, Zep32f* pDst, int len, int maskSize);
ZEP_API ZepStatus zepsFilterMedian_32f_I(Zep32f* pSrcDst, int len, int maskSize);
/** @} */

/**
 * First-order preemphasis in place: pSrcDst[n] = x[n] - val * x[n - 1] for n = 1 .. len-1, x being
 * the samples before the call; product and difference are both rounded. Sample 0 stays as it is,
 * in every call: a signal in blocks is not continuous over their borders.
 *
 * @param pSrcDst  len samples.
 * @param len      samples.
 * @param val      any value, usually near 0.95.
 * @return         zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order;
 *                 else zepStsNoErr.
 */
ZEP_API ZepStatus zepsPreemphasize_32f(Zep32f* pSrcDst, int len, Zep32f val);

/**
 * Puts zeros between samples: pDst[n * factor + *pPhase] = pSrc[n] for n = 0 .. srcLen-1, all other
 * elements of pDst are zero. Every call writes whole groups of `factor` elements, so that a signal
 * in blocks needs no other phase from block to block.
 *
 * @param pSrc     srcLen samples.
 * @param srcLen   samples.
 * @param pDst     srcLen * factor samples; must not overlap pSrc.
 * @param pDstLen  receives srcLen * factor.
 * @param factor   1 or more; 1 is a copy.
 * @param pPhase   place of the sample in its group, 0 .. factor-1; only read.
 * @return         zepStsNullPtrErr; zepStsSizeErr (srcLen not greater than 0);
 *                 zepStsSampleFactorErr (factor below 1); zepStsSamplePhaseErr (*pPhase not in
 *                 0 .. factor-1), tested in this order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsSampleUp_32fc(const Zep32fc* pSrc, int srcLen, Zep32fc* pDst, int* pDstLen,
                                    int factor, int* pPhase);

/**
 * @name SampleDown
 * Keeps every factor-th sample: pDst[n] = pSrc[*pPhase + n * factor], as long as there are such
 * samples; there may be none. *pPhase becomes the place, in the next block, of the next sample to
 * keep, so that a signal in blocks keeps its step over their borders. With a factor of 1 all
 * samples are copied.
 *
 * @param pSrc     srcLen samples.
 * @param srcLen   samples.
 * @param pDst     the samples kept, (srcLen + factor - 1 - *pPhase) / factor of them, rounded down;
 *                 may be pSrc, must not overlap it otherwise.
 * @param pDstLen  receives their number.
 * @param factor   1 or more.
 * @param pPhase   the first sample to keep, 0 .. factor-1; receives the phase of the next block.
 * @return         as for zepsSampleUp_32fc().
 * @{
 */
ZEP_API ZepStatus zepsSampleDown_32f(const Zep32f* pSrc, int srcLen, Zep32f* pDst, int* pDstLen,
                                     int factor, int* pPhase);
ZEP_API ZepStatus zepsSampleDown_32fc(const Zep32fc* pSrc, int srcLen, Zep32fc* pDst, int* pDstLen,
                                      int factor, int* pPhase);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
