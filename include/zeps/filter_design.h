/** @file
 * Design of finite impulse responses by the window method, in double precision.
 *
 * An ideal response is cut to tapsLen taps and multiplied by a window. With L = tapsLen, the tap at
 * distance m from the centre (m = 1, 2, ... for odd L, 0.5, 1.5, ... for even L) of the ideal
 * response is
 *
 * | Design | Tap | Centre, odd L |
 * |---|---|---|
 * | lowpass | sin(2 pi f m) / (pi m) | 2 f |
 * | highpass, odd L | -sin(2 pi f m) / (pi m) | 1 - 2 f |
 * | highpass, even L | cos(2 pi f m) / (pi m); opposite sign above the centre | |
 * | bandpass | (sin(2 pi f2 m) - sin(2 pi f1 m)) / (pi m) | 2 (f2 - f1) |
 * | bandstop, odd L | (sin(2 pi f1 m) - sin(2 pi f2 m)) / (pi m) | 1 - 2 (f2 - f1) |
 * | bandstop, even L | the same with (-1)^(m - 0.5) added to the numerator | |
 *
 * The windows are those of windows.h over all L taps, in double precision; Blackman has alpha =
 * -(0.5 / cos(pi / (L - 1)))^2. With doNormal other than 0 all taps are divided by the magnitude of
 * the filter's gain: at frequency 0 for lowpass and bandstop, at half the sampling rate for
 * highpass, in the middle of the band for bandpass.
 *
 * Taps are symmetric, bit for bit (antisymmetric for a highpass of even length), and the same in
 * all variants. No memory is allocated. Any alignment.
 */
#ifndef ZEPS_FILTER_DESIGN_H
#define ZEPS_FILTER_DESIGN_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Window of a filter design. Any other value: no window. */
typedef enum ZepWinType {
    zepWinBartlett = 0,
    zepWinBlackman = 1,
    zepWinHamming = 2,
    zepWinHann = 3
} ZepWinType;

/**
 * @name FIRGenLowpass, FIRGenHighpass
 * Taps of a lowpass, or highpass, filter with the cut-off rFreq, by the formulas above.
 *
 * @param rFreq     cut-off, relative to the sampling rate, between 0 and 0.5.
 * @param pTaps     receives tapsLen taps.
 * @param tapsLen   taps, at least 5.
 * @param winType   a ZepWinType, or any other value.
 * @param doNormal  not 0: unit gain.
 * @return          zepStsNullPtrErr; zepStsSizeErr (tapsLen below 5; rFreq not above 0 or not below
 *                  0.5), tested in this order; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsFIRGenLowpass_64f(Zep64f rFreq, Zep64f* pTaps, int tapsLen, int winType,
                                        Zep32s doNormal);
ZEP_API ZepStatus zepsFIRGenHighpass_64f(Zep64f rFreq, Zep64f* pTaps, int tapsLen, int winType,
                                         Zep32s doNormal);
/** @} */

/**
 * @name FIRGenBandpass, FIRGenBandstop
 * Taps of a filter that passes, or stops, the band between two edges, by the formulas above.
 *
 * @param rLowFreq   lower edge f1 of the band, between 0 and 0.5.
 * @param rHighFreq  upper edge f2, above f1 and below 0.5.
 * @param pTaps      receives tapsLen taps.
 * @param tapsLen    taps, at least 5.
 * @param winType    a ZepWinType, or any other value.
 * @param doNormal   not 0: unit gain.
 * @return           zepStsNullPtrErr; zepStsSizeErr (tapsLen below 5; a frequency not above 0 or
 *                   not below 0.5; rHighFreq not above rLowFreq), tested in this order; else
 *                   zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsFIRGenBandpass_64f(Zep64f rLowFreq, Zep64f rHighFreq, Zep64f* pTaps,
                                         int tapsLen, int winType, Zep32s doNormal);
ZEP_API ZepStatus zepsFIRGenBandstop_64f(Zep64f rLowFreq, Zep64f rHighFreq, Zep64f* pTaps,
                                         int tapsLen, int winType, Zep32s doNormal);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
