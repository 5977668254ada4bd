/** @file
 * ADPCM coder and decoder of ITU-T G.726, bit exact, at 16, 24, 32 and 40 kbit/s.
 *
 * The caller owns the state: a function tells its size, an init function fills it, and filling it
 * again restarts the stream. One state serves one direction of one stream, from one thread at a
 * time; an encoder state is no decoder state. Rate and law change only by init. A stream may be cut
 * into calls anywhere without effect on a bit. A state may be moved in memory.
 *
 * Codes stand one per byte, in the low 2, 3, 4 or 5 bits, not packed; the highest of these bits is
 * the sign. The bits above must be 0.
 */
#ifndef ZEPSC_G726_H
#define ZEPSC_G726_H

#include "../zepcore.h"
#include "rates.h"

#ifdef __cplusplus
extern "C" {
#endif

/** State of a G.726 encoder or decoder: opaque, in memory of the caller. */
typedef struct ZepG726State ZepG726State;

/** @name Law argument of the decoder
 * @{
 */
#define ZEP_G726_MULAW 0  /**< output is G.711 mu-law */
#define ZEP_G726_ALAW 1   /**< output is G.711 A-law */
#define ZEP_G726_LINEAR 2 /**< output is 14-bit linear */
/** @} */

/**
 * Size of an encoder state.
 *
 * @param pSize  takes the bytes, 88.
 * @return       zepStsNullPtrErr (pSize); else zepStsNoErr.
 */
ZEP_API ZepStatus zepsEncodeGetStateSize_G726_16s8u(Zep32u* pSize);

/**
 * Size of a decoder state.
 *
 * @param pSize  takes the bytes, 92.
 * @return       zepStsNullPtrErr (pSize); else zepStsNoErr.
 */
ZEP_API ZepStatus zepsDecodeGetStateSize_G726_8u16s(Zep32u* pSize);

/**
 * Starts an encoder.
 *
 * @param pState  memory of the size that zepsEncodeGetStateSize_G726_16s8u tells.
 * @param rate    17, 22, 23 or 24, see ZepSpchBitRate.
 * @return        zepStsNullPtrErr (pState), zepStsRangeErr (rate), tested in this order; else
 *                zepStsNoErr. On an error nothing is written.
 */
ZEP_API ZepStatus zepsEncodeInit_G726_16s8u(ZepG726State* pState, Zep32s rate);

/**
 * Starts a decoder.
 *
 * @param pState  memory of the size that zepsDecodeGetStateSize_G726_8u16s tells.
 * @param rate    17, 22, 23 or 24, see ZepSpchBitRate.
 * @param law     ZEP_G726_MULAW, ZEP_G726_ALAW or ZEP_G726_LINEAR.
 * @return        zepStsNullPtrErr (pState), zepStsRangeErr (rate, then law), tested in this order;
 *                else zepStsNoErr. On an error nothing is written.
 */
ZEP_API ZepStatus zepsDecodeInit_G726_8u16s(ZepG726State* pState, Zep32s rate, Zep32s law);

/**
 * Codes samples.
 *
 * @param pState  from zepsEncodeInit_G726_16s8u.
 * @param pSrc    len samples, 14-bit linear, -8192 to 8191: a G.711 code expanded and shifted right
 *                by 2, or a 16-bit sample shifted likewise. Larger values are taken as they are.
 * @param pDst    len codes. Must not overlap pSrc or the state.
 * @param len     count of samples; a negative count does nothing.
 * @return        zepStsNullPtrErr (any pointer), zepStsSizeErr (len equal to 0), tested in this
 *                order; else zepStsNoErr. On an error nothing is written.
 */
ZEP_API ZepStatus zepsEncode_G726_16s8u(ZepG726State* pState, const Zep16s* pSrc, Zep8u* pDst,
                                        Zep32s len);

/**
 * Decodes codes.
 *
 * With a law the output is the G.711 byte after the synchronous tandem adjustment of the
 * recommendation, in the low byte of each word, the high byte being 0. Without one it is the
 * reconstructed signal limited to -8192 to 8191, and there is no adjustment. A reconstructed signal
 * of exactly -32768, which only extreme code sequences reach, counts as 0 with mu-law and as -2
 * with A-law.
 *
 * @param pState  from zepsDecodeInit_G726_8u16s.
 * @param pSrc    len codes; bits above the width of a code are ignored.
 * @param pDst    len words. Must not overlap pSrc or the state.
 * @param len     count of codes; a negative count does nothing.
 * @return        zepStsNullPtrErr (any pointer), zepStsSizeErr (len equal to 0), tested in this
 *                order; else zepStsNoErr. On an error nothing is written.
 */
ZEP_API ZepStatus zepsDecode_G726_8u16s(ZepG726State* pState, const Zep8u* pSrc, Zep16s* pDst,
                                        Zep32s len);

#ifdef __cplusplus
}
#endif

#endif
