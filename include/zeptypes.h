/** @file
 * Element types. A complex element is two consecutive scalars, real part first, with no gap: a
 * vector of N complex elements is 2N scalars.
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

typedef uint8_t Zep8u;   /**< unsigned integer, 8 bits */
typedef int8_t Zep8s;    /**< signed integer, 8 bits */
typedef uint16_t Zep16u; /**< unsigned integer, 16 bits */
typedef int16_t Zep16s;  /**< signed integer, 16 bits */
typedef uint32_t Zep32u; /**< unsigned integer, 32 bits */
typedef int32_t Zep32s;  /**< signed integer, 32 bits */
typedef uint64_t Zep64u; /**< unsigned integer, 64 bits */
typedef int64_t Zep64s;  /**< signed integer, 64 bits */
typedef float Zep32f;    /**< IEEE 754 binary32 */
typedef double Zep64f;   /**< IEEE 754 binary64 */

/** Complex number of two 8-bit integers. */
typedef struct Zep8sc {
    Zep8s re; /**< real part */
    Zep8s im; /**< imaginary part */
} Zep8sc;
/** Complex number of two 16-bit integers. */
typedef struct Zep16sc {
    Zep16s re; /**< real part */
    Zep16s im; /**< imaginary part */
} Zep16sc;
/** Complex number of two 32-bit integers. */
typedef struct Zep32sc {
    Zep32s re; /**< real part */
    Zep32s im; /**< imaginary part */
} Zep32sc;
/** Complex number of two 64-bit integers. */
typedef struct Zep64sc {
    Zep64s re; /**< real part */
    Zep64s im; /**< imaginary part */
} Zep64sc;
/** Complex number of two binary32. */
typedef struct Zep32fc {
    Zep32f re; /**< real part */
    Zep32f im; /**< imaginary part */
} Zep32fc;
/** Complex number of two binary64. */
typedef struct Zep64fc {
    Zep64f re; /**< real part */
    Zep64f im; /**< imaginary part */
} Zep64fc;

/** Speed or accuracy preference; where a function uses it, its own comment says how. */
typedef enum ZepHintAlgorithm {
    zepAlgHintNone = 0,    /**< no preference */
    zepAlgHintFast = 1,    /**< the faster of two ways */
    zepAlgHintAccurate = 2 /**< the more accurate of two ways */
} ZepHintAlgorithm;

#endif
