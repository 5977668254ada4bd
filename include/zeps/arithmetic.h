/** @file
 * Element-wise floating arithmetic.
 */
#ifndef ZEPS_ARITHMETIC_H
#define ZEPS_ARITHMETIC_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Sum of two vectors: pDst[n] = pSrc1[n] + pSrc2[n].
 *
 * @param pSrc1  len elements.
 * @param pSrc2  len elements.
 * @param pDst   len elements; may equal a source, must not overlap one otherwise.
 * @param len    elements.
 * @return       zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else zepStsNoErr.
 * @note         All variants give the same bits.
 */
ZEP_API ZepStatus zepsAdd_32f(const Zep32f* pSrc1, const Zep32f* pSrc2, Zep32f* pDst, int len);

#ifdef __cplusplus
}
#endif

#endif
