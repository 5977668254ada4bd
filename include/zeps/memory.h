/** @file
 * Typed aligned memory.
 */
#ifndef ZEPS_MEMORY_H
#define ZEPS_MEMORY_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Releases a block of zepMalloc or zepsMalloc_*, as zepFree does. Null is ignored. */
ZEP_API void zepsFree(void* ptr);
/** The same as zepsFree. */
ZEP_API void zepiFree(void* ptr);

/**
 * @name Typed allocation
 * 32-byte aligned block of len elements, uninitialised, to be released by zepsFree.
 *
 * @param len  elements.
 * @return     the block; null when len is not greater than 0 or memory is short.
 * @warning    The byte count is formed in 32 bits and not checked for overflow: a count of 2^31
 *             bytes and more is cut to its low 32 bits, which gives null or a smaller block. Keep
 *             len times the element size below 2^31.
 * @{
 */
ZEP_API Zep8u* zepsMalloc_8u(int len);
ZEP_API Zep8s* zepsMalloc_8s(int len);
ZEP_API Zep16u* zepsMalloc_16u(int len);
ZEP_API Zep16s* zepsMalloc_16s(int len);
ZEP_API Zep8sc* zepsMalloc_8sc(int len);
ZEP_API Zep32u* zepsMalloc_32u(int len);
ZEP_API Zep32s* zepsMalloc_32s(int len);
ZEP_API Zep32f* zepsMalloc_32f(int len);
ZEP_API Zep16sc* zepsMalloc_16sc(int len);
ZEP_API Zep64s* zepsMalloc_64s(int len);
ZEP_API Zep64f* zepsMalloc_64f(int len);
ZEP_API Zep32sc* zepsMalloc_32sc(int len);
ZEP_API Zep32fc* zepsMalloc_32fc(int len);
ZEP_API Zep64sc* zepsMalloc_64sc(int len);
ZEP_API Zep64fc* zepsMalloc_64fc(int len);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
