/** @file
 * Window functions: an array is multiplied in place by a window.
 *
 * With N = len, w[n] is the factor of samples n and N - 1 - n, for n below N / 2, rounded down; the
 * middle sample of an odd length stays as it is, bit for bit. A complex sample has both parts
 * multiplied by the factor. Any alignment.
 *
 * Factors are computed in double precision and rounded to single precision once, so that they are
 * within one unit in the last place of the formula at any length, also where it comes close to
 * zero. They are the same in all variants. (F. J. Harris, On the Use of Windows for Harmonic Analysis
 * with the Discrete Fourier Transform, Proceedings of the IEEE 66, 1978.)
 */
#ifndef ZEPS_WINDOWS_H
#define ZEPS_WINDOWS_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @name Windows of fixed shape
 * With a = 2 * pi * n / (N - 1):
 * - Bartlett: n * s, s = 2 / (N - 1) rounded to single precision;
 * - Blackman: (alpha + 1) / 2 - cos(a) / 2 - alpha / 2 * cos(2 * a), where alpha is -0.16 for
 *   zepsWinBlackmanStd_32f_I(), and any value, given last, for zepsWinBlackman_32fc_I();
 * - Hamming: 0.54 - 0.46 * cos(a);
 * - Hann: 0.5 - 0.5 * cos(a).
 *
 * At N = 3 all of them but Hamming set both outer samples to zero, whatever they hold.
 *
 * @param pSrcDst  len samples.
 * @param len      samples, at least 3.
 * @return         zepStsNullPtrErr, zepStsSizeErr (len below 3), tested in this order; else
 *                 zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsWinBartlett_32f_I(Zep32f* pSrcDst, int len);
ZEP_API ZepStatus zepsWinBartlett_32fc_I(Zep32fc* pSrcDst, int len);
ZEP_API ZepStatus zepsWinBlackmanStd_32f_I(Zep32f* pSrcDst, int len);
ZEP_API ZepStatus zepsWinBlackman_32fc_I(Zep32fc* pSrcDst, int len, Zep32f alpha);
ZEP_API ZepStatus zepsWinHamming_32f_I(Zep32f* pSrcDst, int len);
ZEP_API ZepStatus zepsWinHamming_32fc_I(Zep32fc* pSrcDst, int len);
ZEP_API ZepStatus zepsWinHann_32f_I(Zep32f* pSrcDst, int len);
ZEP_API ZepStatus zepsWinHann_32fc_I(Zep32fc* pSrcDst, int len);
/** @} */

/**
 * Kaiser window: w[n] = I0(|alpha| * sqrt(n * (N - 1 - n))) / I0(|alpha| * (N - 1) / 2).
 *
 * I0 is the modified Bessel function of order zero, by the polynomials 9.8.1 and 9.8.2 of
 * Abramowitz and Stegun, Handbook of Mathematical Functions, whose own error is below 2e-7.
 *
 * @param pSrcDst  len samples.
 * @param len      samples; a single one stays as it is, whatever alpha.
 * @param alpha    shape, for a half-width of one sample; 0 leaves all factors 1.
 * @return         zepStsNullPtrErr; zepStsSizeErr (len not greater than 0); zepStsHugeWinErr
 *                 (|alpha| * (len - 1) / 2 above 38), tested in this order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsWinKaiser_32f_I(Zep32f* pSrcDst, int len, Zep32f alpha);

#ifdef __cplusplus
}
#endif

#endif
