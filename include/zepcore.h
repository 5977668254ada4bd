/** @file
 * Core functions: version, status text, processor queries, memory, floating-point modes. Written
 * once, the same on every processor.
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
    int major;        /**< first number of the version */
    int minor;        /**< second number of the version */
    int releaseBuild; /**< build number of the release */
    int domainBuild;  /**< the domain's own build number */
    /** Variant that runs, NUL-filled; "core" in the core record fills all four bytes. */
    char targetTag[4];
    /** Library name; "+" behind it: the SSE4.1 variant on a processor with SSE4.2. */
    const char* libName;
    const char* versionText; /**< version as text */
    const char* buildDate;   /**< date of the domain's build, "Mmm dd yyyy" */
} ZepVersionRecord;

/**
 * Record of the core. It is the same on every processor and tells nothing of the variant that runs;
 * the domain functions (zepsGetLibVersion and its companions) do.
 *
 * @return constant record, never null.
 */
ZEP_API const ZepVersionRecord* zepGetLibVersion(void);

/**
 * Text of a status: its name, a colon and a message, such as "zepStsSizeErr: Wrong value of data
 * size".
 *
 * @param code  any value.
 * @return      constant text, never null; the text of zepStsUnknownStatusCodeErr for a value that
 *              is no status. "%s" in the text of -9700 is part of it: do not use a text as a
 *              format.
 */
ZEP_API const char* zepGetStatusString(ZepStatus code);

/**
 * @name Processor
 * @{
 */

/** Type of a processor: a product line where one is known, else the best of its instruction sets (64 and above). */
typedef enum ZepCpuType {
    zepCpuTypeUnknown = 0,
    zepCpuTypePentium = 1,
    zepCpuTypePentiumMmx = 2,
    zepCpuTypePentiumPro = 3,
    zepCpuTypePentium2 = 4,
    zepCpuTypePentium3 = 5,
    zepCpuTypePentium4 = 6,
    zepCpuTypePentium4Ht = 7,
    zepCpuTypePentium4Sse3 = 8,
    zepCpuTypeCentrino = 9,
    zepCpuTypeCoreSolo = 10,
    zepCpuTypeCoreDuo = 11,
    zepCpuTypeItanium = 16,
    zepCpuTypeItanium2 = 17,
    zepCpuTypeIntel64 = 32,
    zepCpuTypeCore2Duo = 33,
    zepCpuTypeCore2Quad = 34,
    zepCpuTypeCore2Sse41 = 35,
    zepCpuTypeAtom = 36,
    zepCpuTypeCoreI7 = 37,
    zepCpuTypeNext = 38,
    zepCpuTypeSse = 64,
    zepCpuTypeSse2 = 65,
    zepCpuTypeSse3 = 66,
    zepCpuTypeSsse3 = 67,
    zepCpuTypeSse41 = 68,
    zepCpuTypeSse42 = 69,
    zepCpuTypeAvx = 70,
    zepCpuTypeSse42LongMode = 71,
    zepCpuTypeLongMode = 96,
    zepCpuTypeMaxValue = 0x7FFFFFFF /**< no processor: makes the type 32 bits wide */
} ZepCpuType;

/**
 * Type of this processor. Intel processors of family 15 are zepCpuTypeSse3, some of family 6 have a
 * type of their own; any other processor goes by its feature bits, AVX first.
 *
 * @return  the type; zepCpuTypeAvx says that the processor has AVX, not that the operating system
 *          supports it. Values 1 to 11, 16, 17, 32, 38 and 71 are never returned.
 */
ZEP_API ZepCpuType zepGetCpuType(void);

/**
 * Time stamp counter, read without a fence: instructions around the call may run before or after
 * the reading. It counts at the rate of zepGetCpuFreqMhz, whatever the momentary clock of the core.
 */
ZEP_API Zep64u zepGetCpuClocks(void);

/**
 * Rate of the time stamp counter, measured over two whole seconds.
 *
 * @param pMhz  receives the rate in MHz, cut to an integer.
 * @return      zepStsNullPtrErr, else zepStsNoErr.
 * @note        Blocks for two to three seconds and keeps its core busy all the time.
 */
ZEP_API ZepStatus zepGetCpuFreqMhz(int* pMhz);

/**
 * Size of the largest data or unified cache.
 *
 * The processor is asked at the first call with a valid pointer; that answer, a failure too, is
 * given by every later call.
 *
 * @param pSizeByte  receives the size in bytes; 0 where the status is not zepStsNoErr.
 * @return           zepStsNullPtrErr (nothing is written); zepStsNotSupportedCpu: not an Intel
 *                   processor, or one that does not describe its caches; zepStsUnknownCacheSize: it
 *                   describes none that is known; else zepStsNoErr.
 */
ZEP_API ZepStatus zepGetMaxCacheSizeB(int* pSizeByte);

/**
 * Number of processor cores on the die, as the processor reports it. On Intel processors from the
 * topology leaf where there is one, else the number of core identifiers that the package reserves;
 * on AMD's from the size leaf; 1 on any other.
 */
ZEP_API int zepGetNumCoresOnDie(void);

/** @} */

/**
 * @name Memory
 * @{
 */

/**
 * Aligned memory from the C heap.
 *
 * @param length  bytes.
 * @return        32-byte aligned block of at least length bytes, uninitialised, to be released by
 *                zepFree; null when length is not greater than 0 or memory is short.
 */
ZEP_API void* zepMalloc(int length);

/**
 * Releases a block of zepMalloc or zepsMalloc_*. Null is ignored. A pointer that is not such a
 * block, or has been released, is not detected.
 */
ZEP_API void zepFree(void* ptr);

/**
 * The first address at or above ptr that is a multiple of alignBytes.
 *
 * @param ptr         any address; one that is aligned is returned as it is.
 * @param alignBytes  a power of two; this is not checked, and the result of another value is of no
 *                    use.
 */
ZEP_API void* zepAlignPtr(void* ptr, int alignBytes);

/** @} */

/**
 * @name Floating-point modes of the calling thread
 * They stay until they are changed again; other threads are not affected. Functions that need other
 * modes set them for their own run and restore the caller's.
 * @{
 */

/**
 * Flush to zero: denormal results become 0.
 *
 * @param value    0: off. Else: on, and underflow exceptions are masked, since flushing needs that.
 * @param pUMask   may be null. On: receives the underflow mask as it was, 2048 (masked) or 0. Off:
 *                 where it holds 0, underflow exceptions are unmasked again; so hand back what the
 *                 call that switched it on has stored.
 * @return         zepStsCpuNotSupportedErr on a processor without SSE (nothing changes), else
 *                 zepStsNoErr.
 */
ZEP_API ZepStatus zepSetFlushToZero(int value, unsigned int* pUMask);

/**
 * Denormals are zero: denormal operands count as 0.
 *
 * @param value  0: off; else: on.
 * @return       zepStsCpuNotSupportedErr on a processor without SSE or without the mode (nothing
 *               changes), else zepStsNoErr.
 */
ZEP_API ZepStatus zepSetDenormAreZeros(int value);

/** @} */

/**
 * @name Threads
 * The library runs on the calling thread alone. These two keep the interface of a library that does
 * not.
 * @{
 */

/** Ignores its argument. @return zepStsNoOperation. */
ZEP_API ZepStatus zepSetNumThreads(int numThr);

/**
 * Number of threads that a call uses: 1.
 *
 * @param pNumThr  receives 1. Not checked: a null pointer faults.
 * @return         zepStsNoOperation.
 */
ZEP_API ZepStatus zepGetNumThreads(int* pNumThr);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
