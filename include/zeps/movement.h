/** @file
 * Initialisation, movement and bit operations.
 */
#ifndef ZEPS_MOVEMENT_H
#define ZEPS_MOVEMENT_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
