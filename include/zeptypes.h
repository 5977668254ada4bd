/** @file
 * Element types. A complex element is two consecutive scalars, real part first, with no gap: a vector of N complex
 * elements is 2N scalars.
 */
#ifndef ZEPTYPES_H
#define ZEPTYPES_H

#include <stdint.h>

/** Marks an exported function. */
#if defined(__GNUC__)
#define ZEP_API __attribute__((visibility("default")))
#else
#define ZEP_API
#endif

typedef uint8_t Zep8u;
typedef int8_t Zep8s;
typedef uint16_t Zep16u;
typedef int16_t Zep16s;
typedef uint32_t Zep32u;
typedef int32_t Zep32s;
typedef uint64_t Zep64u;
typedef int64_t Zep64s;
typedef float Zep32f;  /**< IEEE 754 binary32 */
typedef double Zep64f; /**< IEEE 754 binary64 */

typedef struct Zep8sc {
    Zep8s re, im;
} Zep8sc;
typedef struct Zep16sc {
    Zep16s re, im;
} Zep16sc;
typedef struct Zep32sc {
    Zep32s re, im;
} Zep32sc;
typedef struct Zep64sc {
    Zep64s re, im;
} Zep64sc;
typedef struct Zep32fc {
    Zep32f re, im;
} Zep32fc;
typedef struct Zep64fc {
    Zep64f re, im;
} Zep64fc;

/** Speed or accuracy preference; where a function uses it, its own comment says how. */
typedef enum ZepHintAlgorithm {
    zepAlgHintNone = 0,
    zepAlgHintFast = 1,
    zepAlgHintAccurate = 2
} ZepHintAlgorithm;

#endif
