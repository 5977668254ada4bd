/** @file
 * Vector mathematics: exponentials, logarithms, sines, cosines and powers of single precision
 * vectors, in accuracy classes.
 *
 * The suffix names the class: the correct bits of every result, _A11, _A21 or _A24 (all 24 bits to
 * about the last: at most 1 unit in the last place, ULP). Functions without one are plain and
 * cheaper. What holds for all of them:
 *
 * - pSrc, pSrc1, pSrc2, pDst, pDstSin, pDstCos, pSrcDst: vectors of len elements, at any address. A
 *   destination may equal a source; other overlap is not supported. The _I forms work in place.
 * - A result depends on its element alone: not on position, length or address, nor on the caller's
 *   rounding mode, flush-to-zero or denormals-are-zero. Those are cleared for the run where the
 *   caller has set them, exceptions do not trap meanwhile, and the caller's control word comes back
 *   with the sticky flags of the run added.
 * - Variants agree within the class, not in bits: wider ones fuse products with sums and keep their
 *   tables in registers.
 * - Statuses, tested in this order (but for complex powers): zepStsNullPtrErr (any pointer null),
 *   zepStsSizeErr (len not greater than 0); nothing has been written then. A special element does not stop the others: all
 *   are computed, and the call returns the warning of the last special one (zepsLn_32f_I: of the
 *   first), with the processor's sticky flag to match. NaN gives a quiet NaN and no warning.
 * - No function allocates; all may run on several threads at once on different data.
 *
 * Accuracy, the largest error over all variants: see each function. Those of one argument were
 * computed for all 2^32 numbers in every column (docs/accuracy/vector_math.md); the tests sweep
 * every n-th.
 *
 * Methods: tables in the manner of Tang, "Table-driven implementation of the exponential function
 * in IEEE floating-point arithmetic", ACM TOMS 15 (1989), and "... of the logarithm function ...",
 * 16 (1990); argument reduction by Cody and Waite, Software Manual for the Elementary Functions
 * (1980), and, for large ones, Payne and Hanek, "Radian reduction for trigonometric functions", ACM
 * SIGNUM 18 (1983).
 */
#ifndef ZEPS_VECTOR_MATH_H
#define ZEPS_VECTOR_MATH_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Exponential: pDst[n] = exp(pSrc[n]), within 0.61 ULP (0.81
 * in the variant e9 without AVX2).
 *
 * Denormal results are rounded once, like all others. Infinity stays, minus infinity gives 0.
 *
 * @param pSrc  len elements.
 * @param pDst  len elements.
 * @param len   elements.
 * @return      zepStsNullPtrErr, zepStsSizeErr; the warnings zepStsOverflow (an element above
 *              88.72283172607422; the result is infinity) and zepStsUnderflow (below
 *              -87.33654022216797; the result is denormal, or 0 below -103.97207641601563); else
 *              zepStsNoErr.
 */
ZEP_API ZepStatus zepsExp_32f_A24(const Zep32f* pSrc, Zep32f* pDst, Zep32s len);

/**
 * Exponential in place, plain: pSrcDst[n] = exp(pSrcDst[n]), within 5 ULP (m7, u8, n8, y8), 0.81
 * ULP (e9) or 0.61 ULP (e9 with AVX2).
 *
 * Elements up to -87.33650207519531 give 0, and those above 87.0999984741211 infinity, though
 * smaller and larger results would exist. A NaN gives the NaN 0x7FC00000, or 0xFFC00000 if its sign
 * bit is set.
 *
 * @param pSrcDst  len elements.
 * @param len      elements.
 * @return         zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsExp_32f_I(Zep32f* pSrcDst, Zep32s len);

/**
 * Natural logarithm in place, plain: pSrcDst[n] = ln(pSrcDst[n]), within 2.9 ULP for positive
 * normal numbers.
 *
 * Zero of either sign gives minus infinity, a negative number or minus infinity the NaN 0xFFC00000.
 * Other elements are read by their exponent and mantissa fields alone: infinity counts as 2^128, a
 * denormal as if it had a leading one.
 *
 * @param pSrcDst  len elements.
 * @param len      elements.
 * @return         zepStsNullPtrErr, zepStsSizeErr; the warning of the first zero (zepStsLnZeroArg)
 *                 or negative element (zepStsLnNegArg), whichever comes first; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsLn_32f_I(Zep32f* pSrcDst, Zep32s len);

/**
 * @name Decimal logarithm
 * pDst[n] = log10(pSrc[n]): _A11 with at least 14 correct bits, _A24 within 0.65 ULP.
 *
 * Zero of either sign gives minus infinity; a negative element, minus infinity and a NaN with its
 * sign bit set give the NaN 0xFFC00000. Infinity and other NaN stay. Denormal elements have their
 * logarithm, in the class's accuracy.
 *
 * @param pSrc  len elements.
 * @param pDst  len elements.
 * @param len   elements.
 * @return      zepStsNullPtrErr, zepStsSizeErr; the warnings zepStsSingularity (a zero) and
 *              zepStsDomain (a negative element); else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsLog10_32f_A11(const Zep32f* pSrc, Zep32f* pDst, Zep32s len);
ZEP_API ZepStatus zepsLog10_32f_A24(const Zep32f* pSrc, Zep32f* pDst, Zep32s len);
/** @} */

/**
 * @name Sine and cosine
 * pDstSin[n] = sin(pSrc[n]), pDstCos[n] = cos(pSrc[n]), radians: _A11 with at least 15.9 correct
 * bits, _A21 with at least 22.4, _A24 within 0.57 ULP.
 *
 * Correct bits count from the result's own leading bit down to 2^-12, and absolutely below that
 * (close to zeros of sine and cosine). Elements beyond 10000 are computed one by one in double
 * precision, to within 0.51 ULP in all classes, however large. sin(-0) is -0. An infinite element
 * gives two NaN 0xFFC00000.
 *
 * @param pSrc     len elements, radians.
 * @param pDstSin  len elements.
 * @param pDstCos  len elements; not pDstSin.
 * @param len      elements.
 * @return         zepStsNullPtrErr, zepStsSizeErr; the warning zepStsDomain (an infinite element);
 *                 else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsSinCos_32f_A11(const Zep32f* pSrc, Zep32f* pDstSin, Zep32f* pDstCos,
                                     Zep32s len);
ZEP_API ZepStatus zepsSinCos_32f_A21(const Zep32f* pSrc, Zep32f* pDstSin, Zep32f* pDstCos,
                                     Zep32s len);
ZEP_API ZepStatus zepsSinCos_32f_A24(const Zep32f* pSrc, Zep32f* pDstSin, Zep32f* pDstCos,
                                     Zep32s len);
/** @} */

/**
 * @name Power
 * pDst[n] = pSrc1[n] to the power pSrc2[n], or pSrc[n] to the power val, within 0.55 ULP; computed
 * in double precision as exp(y ln x). Overflow and underflow give infinity and 0 (or a denormal, or
 * their negatives), with no warning. Special cases, the first that applies:
 *
 * - y = 0, or x = 1: 1, for NaN too. Then a NaN x, then a NaN y, stays.
 * - y infinite: 1 for x = -1; 0 or infinity as |x| and the sign of y say. For x = 0 and minus
 *   infinity: infinity, warning.
 * - x = 0: 0 for positive y and infinity, with the warning, for negative y; with the sign of x if y
 *   is an odd integer.
 * - x infinite: infinity for positive y, 0 for negative y; with the sign of x if y is an odd integer.
 * - x negative: minus |x|^y if y is an odd integer, |x|^y if it is even (as all numbers from 2^24
 *   on), else the NaN 0xFFC00000, warning.
 *
 * @param pSrc1  len bases.
 * @param pSrc2  len exponents.
 * @param pDst   len elements.
 * @param len    elements.
 * @return       zepStsNullPtrErr, zepStsSizeErr; the warning zepStsDomain (where "warning" stands
 *               above, a zero base with a negative exponent too); else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsPow_32f_A24(const Zep32f* pSrc1, const Zep32f* pSrc2, Zep32f* pDst,
                                  Zep32s len);
ZEP_API ZepStatus zepsPowx_32f_A24(const Zep32f* pSrc, Zep32f val, Zep32f* pDst, Zep32s len);
/** @} */

/**
 * @name Complex power
 * pDst[n] = pSrc1[n] to the power pSrc2[n], or pSrc[n] to the power val: exp(w ln z) with the
 * principal logarithm, each part within 1 ULP, but where it cancels: what a double precision product
 * w ln z rounds off (2^-53 of its larger term) remains as an absolute error of modulus and angle,
 * which shows where a part is that much smaller than the modulus, or w that large.
 *
 * No special value raises a status: ln of 0 has minus infinity as its real part and ln of an infinite
 * z plus infinity, and the result follows from product and exponential; a NaN in z or w gives NaN,
 * with the exponential's own zeros and infinities. A denormal part sets the underflow flag.
 *
 * @param pSrc1  len bases.
 * @param pSrc2  len exponents.
 * @param pDst   len elements.
 * @param len    elements.
 * @return       zepStsSizeErr (len is tested first), zepStsNullPtrErr; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsPow_32fc_A24(const Zep32fc* pSrc1, const Zep32fc* pSrc2, Zep32fc* pDst,
                                   Zep32s len);
ZEP_API ZepStatus zepsPowx_32fc_A24(const Zep32fc* pSrc, Zep32fc val, Zep32fc* pDst, Zep32s len);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
