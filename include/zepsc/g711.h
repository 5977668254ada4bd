/** @file
 * Companding of ITU-T G.711: 8-bit codes to 16-bit linear samples and back.
 *
 * What all four functions share:
 * - Code bytes are those on the line: mu-law inverted, A-law with its even bits inverted.
 * - pSrc and pDst may have any alignment and must not overlap.
 * - Statuses: zepStsNullPtrErr (pSrc or pDst), zepStsSizeErr (len below 1), tested in this order;
 *   else zepStsNoErr. On an error nothing is written.
 */
#ifndef ZEPSC_G711_H
#define ZEPSC_G711_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Expands A-law codes: the 13-bit values of G.711 Table 1 times 8. With c = code ^ 0x55, segment
 * s = (c >> 4) & 7 and mantissa m = c & 15 the magnitude is 16 * m + 8 for s = 0, else
 * (16 * m + 264) << (s - 1); bit 7 of c marks positive values. From -32256 to 32256.
 *
 * @param pSrc  len codes.
 * @param pDst  len samples.
 * @param len   count of samples.
 * @return      see the top of this file.
 */
ZEP_API ZepStatus zepsALawToLin_8u16s(const Zep8u* pSrc, Zep16s* pDst, int len);

/**
 * Expands mu-law codes: the 14-bit values of G.711 Table 2 times 4. With c = ~code, segment
 * s = (c >> 4) & 7 and mantissa m = c & 15 the magnitude is ((8 * m + 132) << s) - 132; bit 7 of c
 * marks negative values. From -32124 to 32124; the codes 127 and 255 both give 0.
 *
 * @param pSrc  len codes.
 * @param pDst  len samples.
 * @param len   count of samples.
 * @return      see the top of this file.
 */
ZEP_API ZepStatus zepsMuLawToLin_8u16s(const Zep8u* pSrc, Zep16s* pDst, int len);

/**
 * Compresses samples to A-law; the three low bits of a sample have no effect. With v = x >> 3 and
 * m = v for v >= 0, else -v - 1, s is the first segment with m <= (256 << s) / 8 - 1; the code is
 * (16 * s | mantissa) ^ mask, mantissa (m >> max(s, 1)) & 15, mask 0xD5 for v >= 0, else 0x55. The
 * codes of zepsALawToLin_8u16s come back unchanged.
 *
 * @param pSrc  len samples.
 * @param pDst  len codes.
 * @param len   count of samples.
 * @return      see the top of this file.
 */
ZEP_API ZepStatus zepsLinToALaw_16s8u(const Zep16s* pSrc, Zep8u* pDst, int len);

/**
 * Compresses samples to mu-law; the two low bits of a sample have no effect. With
 * m = min((y >> 2) + 33, 8191), y = x for x >= 0, else ~x, and e = floor(log2(m)) - 4, the code is
 * 16 * (8 - e) + 15 - ((m >> e) & 15), plus 128 for x >= 0. The codes of zepsMuLawToLin_8u16s come
 * back unchanged, but for 127, the second zero, which becomes 255.
 *
 * @param pSrc  len samples.
 * @param pDst  len codes.
 * @param len   count of samples.
 * @return      see the top of this file.
 */
ZEP_API ZepStatus zepsLinToMuLaw_16s8u(const Zep16s* pSrc, Zep8u* pDst, int len);

#ifdef __cplusplus
}
#endif

#endif
