/** @file
 * Matrix domain: transposition.
 *
 * A matrix is a base pointer and two strides in bytes: from one row to the next, and from one
 * element of a row to the next. So submatrices, padded rows and interleaved layouts are matrices.
 */
#ifndef ZEPM_H
#define ZEPM_H

#include "zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @name Transpose
 * Element (r, c) of the source goes to element (c, r) of the destination, r = 0 .. height-1, c = 0
 * .. width-1. Elements are bit patterns: a NaN keeps its bits.
 *
 * Rows without gaps between their elements (both second strides equal to the size of an element)
 * go by tiles in registers; other layouts element by element. No route changes a result, all
 * variants give the same bits, nothing outside the elements is read or written. No allocation; any
 * number of threads at once on different destinations.
 *
 * @param pSrc        element (0, 0) of the source: height rows of width elements; any alignment.
 * @param srcStride1  bytes from one row of the source to the next.
 * @param srcStride2  bytes from one element of a row to the next.
 * @param width       elements in a row of the source, rows of the destination.
 * @param height      rows of the source, elements in a row of the destination.
 * @param pDst        element (0, 0) of the destination: width rows of height elements; any
 *                    alignment; must not overlap the source.
 * @param dstStride1  bytes from one row of the destination to the next.
 * @param dstStride2  bytes from one element of a row to the next.
 * @return            zepStsNullPtrErr; zepStsSizeErr (width or height not greater than 0);
 *                    zepStsStrideMatrixErr (a stride not greater than 0 or not a multiple of the
 *                    element's size), tested in this order; else zepStsNoErr. After an error
 *                    nothing has been written.
 * @{
 */
ZEP_API ZepStatus zepmTranspose_m_32f(const Zep32f* pSrc, int srcStride1, int srcStride2, int width,
                                      int height, Zep32f* pDst, int dstStride1, int dstStride2);
ZEP_API ZepStatus zepmTranspose_m_64f(const Zep64f* pSrc, int srcStride1, int srcStride2, int width,
                                      int height, Zep64f* pDst, int dstStride1, int dstStride2);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
