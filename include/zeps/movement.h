/** @file
 * Initialisation, movement and bit operations.
 *
 * Elements are bit patterns here: nothing is computed with them, and not-a-numbers keep their bits. All variants give
 * the same bits. No function allocates; all may run on several threads at once on different data. Blocks that exceed
 * the largest cache are written past it where the processor tells its cache sizes; results do not depend on it.
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
 * @return      zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else zepStsNoErr.
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
 * Copy of a vector to a place that may overlap it: pDst[n] = what pSrc[n] was before the call, n = 0 .. len-1.
 *
 * @param pSrc  len elements; any alignment.
 * @param pDst  len elements; any alignment; may overlap pSrc in any way, also by part of an element.
 * @param len   elements.
 * @return      zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else zepStsNoErr.
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
 * @return      zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else zepStsNoErr.
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
 * @return      zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else zepStsNoErr.
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

#ifdef __cplusplus
}
#endif

#endif
