/** @file
 * Speech coding domain: companding (G.711), ADPCM (G.726) and the blocks of the low-delay CELP
 * coder (G.728). Included by zeps.h.
 *
 * What all functions here share: the arithmetic is that of 16-bit fixed point and every variant
 * gives the same bits. "Qn" means n fraction bits; round16(v) is (v + 32768) >> 16, at most 32767;
 * right shifts are arithmetic; sat16 and sat32 limit to the range of the type. Arrays and states
 * may stand at any address. Nothing is allocated.
 */
#ifndef ZEPSC_H
#define ZEPSC_H

#include "zepcore.h"
#include "zepsc/g711.h"
#include "zepsc/g726.h"
#include "zepsc/g728_analysis.h"
#include "zepsc/g728_filters.h"
#include "zepsc/g728_postfilter.h"
#include "zepsc/rates.h"

#endif
