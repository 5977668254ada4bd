/** @file
 * Initialisation, movement and bit operations.
 *
 * Elements are bit patterns here: nothing is computed with them, and not-a-numbers keep their bits.
 * All variants give the same bits. No function allocates; all may run on several threads at once on
 * different data. Blocks that exceed the largest cache are written past it where the processor
 * tells its cache sizes; results do not depend on it.
 *
 * The typed forms form byte counts in 32 bits: keep len * sizeof(element) below 2^31.
 */
#ifndef ZEPS_MOVEMENT_H
#define ZEPS_MOVEMENT_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @name Copy
 * Copy of a vector: pDst[n] = pSrc[n], n = 0 .. len-1.
 *
 * @param pSrc  len elements; any alignment.
 * @param pDst  len elements; any alignment; must not overlap pSrc (zepsMove_* is for that).
 * @param len   elements.
 * @return      zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else
 *              zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsCopy_8u(const Zep8u* pSrc, Zep8u* pDst, int len);
ZEP_API ZepStatus zepsCopy_16s(const Zep16s* pSrc, Zep16s* pDst, int len);
ZEP_API ZepStatus zepsCopy_32s(const Zep32s* pSrc, Zep32s* pDst, int len);
ZEP_API ZepStatus zepsCopy_32f(const Zep32f* pSrc, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsCopy_32fc(const Zep32fc* pSrc, Zep32fc* pDst, int len);
ZEP_API ZepStatus zepsCopy_64f(const Zep64f* pSrc, Zep64f* pDst, int len);
/** @} */

/**
 * @name Move
 * Copy of a vector to a place that may overlap it: pDst[n] = what pSrc[n] was before the call, n =
 * 0 .. len-1.
 *
 * @param pSrc  len elements; any alignment.
 * @param pDst  len elements; any alignment; may overlap pSrc in any way, also by part of an
 *              element.
 * @param len   elements.
 * @return      zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else
 *              zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsMove_8u(const Zep8u* pSrc, Zep8u* pDst, int len);
ZEP_API ZepStatus zepsMove_16s(const Zep16s* pSrc, Zep16s* pDst, int len);
ZEP_API ZepStatus zepsMove_32s(const Zep32s* pSrc, Zep32s* pDst, int len);
ZEP_API ZepStatus zepsMove_32f(const Zep32f* pSrc, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsMove_64f(const Zep64f* pSrc, Zep64f* pDst, int len);
/** @} */

/**
 * @name Zero
 * Clear of a vector: pDst[n] = 0 (all bits 0), n = 0 .. len-1.
 *
 * @param pDst  len elements; any alignment.
 * @param len   elements.
 * @return      zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else
 *              zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsZero_8u(Zep8u* pDst, int len);
ZEP_API ZepStatus zepsZero_16s(Zep16s* pDst, int len);
ZEP_API ZepStatus zepsZero_32s(Zep32s* pDst, int len);
ZEP_API ZepStatus zepsZero_32f(Zep32f* pDst, int len);
ZEP_API ZepStatus zepsZero_32fc(Zep32fc* pDst, int len);
ZEP_API ZepStatus zepsZero_64f(Zep64f* pDst, int len);
ZEP_API ZepStatus zepsZero_64fc(Zep64fc* pDst, int len);
/** @} */

/**
 * @name Set
 * Fill of a vector: pDst[n] = val, n = 0 .. len-1.
 *
 * @param val   value of every element; its bits are kept.
 * @param pDst  len elements; any alignment.
 * @param len   elements.
 * @return      zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else
 *              zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsSet_8u(Zep8u val, Zep8u* pDst, int len);
ZEP_API ZepStatus zepsSet_16s(Zep16s val, Zep16s* pDst, int len);
ZEP_API ZepStatus zepsSet_32s(Zep32s val, Zep32s* pDst, int len);
ZEP_API ZepStatus zepsSet_32f(Zep32f val, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsSet_32fc(Zep32fc val, Zep32fc* pDst, int len);
ZEP_API ZepStatus zepsSet_64f(Zep64f val, Zep64f* pDst, int len);
ZEP_API ZepStatus zepsSet_64s(Zep64s val, Zep64s* pDst, int len);
/** @} */

/**
 * Copy of a run of bits. Bits are numbered from the most significant bit of each byte: bit
 * dstBitOffset + n of pDst becomes bit srcBitOffset + n of pSrc, n = 0 .. len-1. All other bits of
 * the destination keep their values, and only bytes that hold bits of the run are touched.
 *
 * @param pSrc          byte that holds the first bit of the run; any alignment.
 * @param srcBitOffset  first bit within that byte; only the low three bits count, so that 8 means
 *                      the same as 0.
 * @param pDst          byte that holds the first bit to be written; the bytes of both runs must not
 *                      overlap.
 * @param dstBitOffset  as srcBitOffset.
 * @param len           bits.
 * @return              zepStsNullPtrErr, zepStsSizeErr (len not greater than 0, or an offset below
 *                      0), tested in this order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsCopy_1u(const Zep8u* pSrc, int srcBitOffset, Zep8u* pDst, int dstBitOffset,
                              int len);

/**
 * @name Flip
 * Reversal of a vector: pDst[n] = pSrc[len - 1 - n], n = 0 .. len-1.
 *
 * @param pSrc     len elements; any alignment.
 * @param pDst     len elements; any alignment; must not overlap pSrc. The forms named _I have
 *                 pSrcDst in place of both.
 * @param len      elements.
 * @return         zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order;
 *                 else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsFlip_32f(const Zep32f* pSrc, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsFlip_64f(const Zep64f* pSrc, Zep64f* pDst, int len);
ZEP_API ZepStatus zepsFlip_32f_I(Zep32f* pSrcDst, int len);
ZEP_API ZepStatus zepsFlip_8u_I(Zep8u* pSrcDst, int len);
/** @} */

/**
 * @name Interleave
 * Channels to frames: pDst[i * ch + c] = pSrc[c][i], c = 0 .. ch-1, i = 0 .. len-1.
 *
 * @param pSrc  ch pointers, each to the len samples of one channel; any alignment.
 * @param ch    channels.
 * @param len   samples of each channel.
 * @param pDst  ch * len samples; any alignment; must not overlap a channel.
 * @return      zepStsNullPtrErr (pSrc or pDst), zepStsNumChannelsErr (ch not greater than 0),
 *              zepStsSizeErr (len not greater than 0), zepStsNullPtrErr (a channel), tested in this
 *              order; zepStsMisalignedBuf where a channel or pDst is not 16-byte aligned, a
 *              warning: the output is complete; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsInterleave_16s(const Zep16s* const* pSrc, int ch, int len, Zep16s* pDst);
ZEP_API ZepStatus zepsInterleave_32f(const Zep32f* const* pSrc, int ch, int len, Zep32f* pDst);
/** @} */

/**
 * @name And with a constant
 * pDst[n] = pSrc[n] & val, n = 0 .. len-1; in place: pSrcDst[n] = pSrcDst[n] & val. A val of 0
 * clears the destination without reading the source.
 *
 * @param pSrc     len elements; any alignment.
 * @param val      mask.
 * @param pDst     len elements; any alignment; may equal pSrc, must not overlap it otherwise. The
 *                 forms named _I have pSrcDst in place of both.
 * @param len      elements.
 * @return         zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order;
 *                 else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsAndC_16u(const Zep16u* pSrc, Zep16u val, Zep16u* pDst, int len);
ZEP_API ZepStatus zepsAndC_32u(const Zep32u* pSrc, Zep32u val, Zep32u* pDst, int len);
ZEP_API ZepStatus zepsAndC_16u_I(Zep16u val, Zep16u* pSrcDst, int len);
ZEP_API ZepStatus zepsAndC_32u_I(Zep32u val, Zep32u* pSrcDst, int len);
/** @} */

/**
 * @name Exclusive or
 * pDst[n] = pSrc1[n] ^ pSrc2[n], n = 0 .. len-1; in place: pSrcDst[n] = pSrcDst[n] ^ pSrc[n].
 *
 * @param pSrc1    len elements; any alignment.
 * @param pSrc2    len elements; any alignment.
 * @param pDst     len elements; any alignment; may equal a source, must not overlap one otherwise.
 *                 The forms named _I have pSrc, one source, and pSrcDst, the other and the
 *                 destination, under the same rule.
 * @param len      elements.
 * @return         zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order;
 *                 else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsXor_16u(const Zep16u* pSrc1, const Zep16u* pSrc2, Zep16u* pDst, int len);
ZEP_API ZepStatus zepsXor_8u_I(const Zep8u* pSrc, Zep8u* pSrcDst, int len);
/** @} */

/**
 * Complement in place: pSrcDst[n] = ~pSrcDst[n], n = 0 .. len-1.
 *
 * @param pSrcDst  len elements; any alignment.
 * @param len      elements.
 * @return         zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order;
 *                 else zepStsNoErr.
 */
ZEP_API ZepStatus zepsNot_32u_I(Zep32u* pSrcDst, int len);

/**
 * Shift left by a constant: pDst[n] = pSrc[n] * 2^val modulo 2^32, n = 0 .. len-1. A val of 32 or
 * more gives 0, a val of 0 the source.
 *
 * @param pSrc  len elements; any alignment.
 * @param val   bits to shift by.
 * @param pDst  len elements; any alignment; may equal pSrc, must not overlap it otherwise.
 * @param len   elements.
 * @return      zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), zepStsShiftErr (val below
 *              0), tested in this order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsLShiftC_32s(const Zep32s* pSrc, int val, Zep32s* pDst, int len);

/**
 * Shift left by a constant, in place: pSrcDst[n] = pSrcDst[n] * 2^val modulo 2^32, n = 0 .. len-1.
 * A val of 32 or more gives 0.
 *
 * @param val      bits to shift by.
 * @param pSrcDst  len elements; any alignment.
 * @param len      elements.
 * @return         zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), zepStsShiftErr (val
 *                 below 0), tested in this order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsLShiftC_32s_I(int val, Zep32s* pSrcDst, int len);

/**
 * @name Byte order
 * Reversal of the bytes of every element, in place.
 *
 * @param pSrcDst  len elements; any alignment.
 * @param len      elements.
 * @return         zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order;
 *                 else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsSwapBytes_16u_I(Zep16u* pSrcDst, int len);
ZEP_API ZepStatus zepsSwapBytes_32u_I(Zep32u* pSrcDst, int len);
ZEP_API ZepStatus zepsSwapBytes_64u_I(Zep64u* pSrcDst, int len);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
