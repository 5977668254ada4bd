/** @file
 * Core functions: version, status text, processor queries, memory, floating-point modes. Written once, the same on
 * every processor.
 */
#ifndef ZEPCORE_H
#define ZEPCORE_H

#include "zepstatus.h"
#include "zeptypes.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Version of one library domain. */
typedef struct ZepVersionRecord {
    int major;
    int minor;
    int releaseBuild;
    int domainBuild;         /**< the domain's own build number */
    char targetTag[4];       /**< variant that runs, NUL-filled; "core" in the core record fills all four bytes */
    const char* libName;     /**< library name; "+" behind it: the SSE4.1 variant on a processor with SSE4.2 */
    const char* versionText; /**< version as text */
    const char* buildDate;
} ZepVersionRecord;

/**
 * Record of the core. It is the same on every processor and tells nothing of the variant that runs; the domain
 * functions (zepsGetLibVersion and its companions) do.
 *
 * @return constant record, never null.
 */
ZEP_API const ZepVersionRecord* zepGetLibVersion(void);

/**
 * Aligned memory from the C heap.
 *
 * @param length  bytes.
 * @return        32-byte aligned block of at least length bytes, to be released by zepFree; null when length is not
 *                greater than 0 or memory is short.
 */
ZEP_API void* zepMalloc(int length);

/** Releases a block of zepMalloc or zepsMalloc_*. Null is ignored. */
ZEP_API void zepFree(void* ptr);

#ifdef __cplusplus
}
#endif

#endif
