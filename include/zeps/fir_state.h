/** @file
 * The state of an FIR filter.
 */
#ifndef ZEPS_FIR_STATE_H
#define ZEPS_FIR_STATE_H

/** Taps, tables and delay line of one stream: opaque; one call at a time. */
typedef struct ZepFIRState ZepFIRState;

#endif
