/** @file
 * Fast Fourier transforms of 2^order points.
 */
#ifndef ZEPS_FFT_H
#define ZEPS_FFT_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
