/** @file
 * Resumable decoding of raw Deflate streams (RFC 1951), block by block.
 */
#ifndef ZEPS_DEFLATE_H
#define ZEPS_DEFLATE_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
