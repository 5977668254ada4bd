/** @file
 * Sorting.
 *
 * Comparison sorts in place, with or without the indices that the elements had, and a stable radix
 * sort of indices that leaves its keys where they are. What holds for all of them:
 *
 * - Any alignment; the arrays of one call must not overlap.
 * - No function allocates; all may run on several threads at once on different data. The stack
 *   that a call needs is bounded whatever the data: 26 KiB for the radix sort, less for the others.
 * - Sorting itself cannot fail. A not-a-number compares false with everything: in the comparison
 *   sorts the final place of elements is not defined when there is one among them, but they remain
 *   the elements that were given, each as often as before.
 */
#ifndef ZEPS_SORTING_H
#define ZEPS_SORTING_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @name SortAscend
 * Sort in place: afterwards pSrcDst[n] <= pSrcDst[n + 1] for n = 0 .. len-2. Integers compare as
 * signed ones. Zeros of both signs are equal, and may end in either order.
 *
 * Quicksort on vectors, with a heap sort behind it where the data defeat the choice of pivots: at
 * most in the order of len * log(len) steps. Data in order, or in reverse order, are found out in
 * one pass.
 *
 * @param pSrcDst  len elements.
 * @param len      elements.
 * @return         zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order;
 *                 else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsSortAscend_32f_I(Zep32f* pSrcDst, int len);
ZEP_API ZepStatus zepsSortAscend_32s_I(Zep32s* pSrcDst, int len);
/** @} */

/**
 * @name SortIndex
 * Sort in place with indices: pSrcDst becomes ascending, or descending, and pDstIdx[n] is the index
 * that the element now at pSrcDst[n] had before the call, n = 0 .. len-1.
 *
 * The sort is not stable, but the order of equal elements is defined, and the same in all variants.
 * It is that of the following steps on a range lo .. hi, given for the ascending order (for the
 * descending one each comparison is mirrored); an exchange moves element and index together.
 *
 * -# Ten or more elements: with mid = lo + count / 2, the elements at (lo, hi), then (mid, hi),
 *    then (lo, mid) are exchanged where they are strictly out of order. The pivot is the value that
 *    then stands at mid.
 * -# i moves up from lo past elements not above the pivot, j down from hi past elements above it;
 *    while i < j they are exchanged, and both go on.
 * -# i moves back down past elements that are at least the pivot, j up past elements not above it.
 *    The ranges lo .. i and j .. hi are sorted in the same way.
 * -# Nine or fewer elements: the largest element (the last one of several) is exchanged with the
 *    last of the range, and the range shrinks by one. Descending: the smallest, likewise.
 *
 * @param pSrcDst  len elements.
 * @param pDstIdx  len indices, 0 .. len-1.
 * @param len      elements.
 * @return         zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order;
 *                 else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsSortIndexAscend_32f_I(Zep32f* pSrcDst, int* pDstIdx, int len);
ZEP_API ZepStatus zepsSortIndexDescend_32f_I(Zep32f* pSrcDst, int* pDstIdx, int len);
ZEP_API ZepStatus zepsSortIndexDescend_32s_I(Zep32s* pSrcDst, int* pDstIdx, int len);
ZEP_API ZepStatus zepsSortIndexDescend_64f_I(Zep64f* pSrcDst, int* pDstIdx, int len);
/** @} */

/**
 * Stable sort of indices by a float field of records: pDstIndx[0] is the index of the largest key,
 * pDstIndx[len - 1] that of the smallest; equal keys keep ascending indices. Key n stands n *
 * srcStrideBytes bytes behind pSrc, and stays there.
 *
 * Keys are ordered as bit patterns, no floating comparison takes place: not-a-numbers with the sign
 * bit clear come before positive infinity, those with the sign bit set after negative infinity, and
 * +0 before -0. A radix sort: three passes over the vector, four where it
 * is short.
 *
 * @param pSrc            first key; any alignment.
 * @param srcStrideBytes  distance of two keys in bytes, at least 4; it need not be a multiple of 4.
 *                        A negative one steps backwards.
 * @param pDstIndx        len indices, 0 .. len-1.
 * @param pTmpIndx        scratch of len elements; its contents are undefined afterwards.
 * @param len             keys.
 * @return                zepStsNullPtrErr, zepStsSizeErr (len not greater than 0; srcStrideBytes 0
 *                        to 3), tested in this order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsSortRadixIndexDescend_32f(const Zep32f* pSrc, Zep32s srcStrideBytes,
                                                Zep32s* pDstIndx, Zep32s* pTmpIndx, Zep32s len);

#ifdef __cplusplus
}
#endif

#endif
