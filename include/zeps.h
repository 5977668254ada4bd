/** @file
 * Signal domain: the one header that callers include.
 *
 * Every function checks its arguments in this order, unless its own comment says otherwise: null
 * pointers (zepStsNullPtrErr), lengths not greater than 0 (zepStsSizeErr), then what is particular
 * to it. Nothing is written before all checks have passed. Warnings (positive statuses) are
 * returned after the whole operation has finished. No alignment is asked of any pointer. All
 * functions may be called from several threads at once on different data.
 */
#ifndef ZEPS_H
#define ZEPS_H

#include "zepcore.h"
#include "zeps/arithmetic.h"
#include "zeps/complex.h"
#include "zeps/conversion.h"
#include "zeps/convolution.h"
#include "zeps/deflate.h"
#include "zeps/dft.h"
#include "zeps/fft.h"
#include "zeps/filter_design.h"
#include "zeps/fir.h"
#include "zeps/fir_double.h"
#include "zeps/fir_multirate.h"
#include "zeps/fir_state.h"
#include "zeps/fixed_point.h"
#include "zeps/generators.h"
#include "zeps/memory.h"
#include "zeps/movement.h"
#include "zeps/sampling.h"
#include "zeps/sorting.h"
#include "zeps/statistics.h"
#include "zeps/vector_math.h"
#include "zeps/version.h"
#include "zeps/windows.h"
#include "zepsc.h"

#endif
