/** @file
 * Version of each domain: which variant of the library runs on this processor.
 */
#ifndef ZEPS_VERSION_H
#define ZEPS_VERSION_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Record of the signal domain for the variant that runs: its targetTag is "m7" (SSE2 or SSE3), "u8"
 * (SSSE3), "n8" (SSSE3 and MOVBE), "y8" (SSE4.1) or "e9" (AVX), its libName the domain and tag.
 *
 * @return constant record, never null.
 */
ZEP_API const ZepVersionRecord* zepsGetLibVersion(void);
/** As zepsGetLibVersion, for the speech coding domain. */
ZEP_API const ZepVersionRecord* zepscGetLibVersion(void);
/** As zepsGetLibVersion, for the matrix domain. */
ZEP_API const ZepVersionRecord* zepmGetLibVersion(void);

/**
 * @name Domains that have no primitives here
 * As zepsGetLibVersion; each names its own domain.
 * @{
 */
ZEP_API const ZepVersionRecord* zepacGetLibVersion(void);
ZEP_API const ZepVersionRecord* zepccGetLibVersion(void);
ZEP_API const ZepVersionRecord* zepchGetLibVersion(void);
ZEP_API const ZepVersionRecord* zepcvGetLibVersion(void);
ZEP_API const ZepVersionRecord* zepdcGetLibVersion(void);
ZEP_API const ZepVersionRecord* zepiGetLibVersion(void);
ZEP_API const ZepVersionRecord* zepjGetLibVersion(void);
ZEP_API const ZepVersionRecord* zeprGetLibVersion(void);
ZEP_API const ZepVersionRecord* zepvcGetLibVersion(void);
ZEP_API const ZepVersionRecord* zepvmGetLibVersion(void);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
