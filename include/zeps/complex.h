/** @file
 * Complex and polar operations.
 *
 * Taking complex vectors apart, putting them together, conjugates, and the way between cartesian
 * and polar form. What holds for all of them:
 *
 * - len counts complex elements; in zepsConjPerm_* it is the length of the real transform.
 * - Any alignment, and none changes a result. Destinations must not overlap sources or each other;
 *   the functions whose name ends in _I work in place.
 * - Statuses, unless a function says otherwise, in this order: zepStsNullPtrErr (any pointer null),
 *   zepStsSizeErr (len not greater than 0); else zepStsNoErr. After an error nothing has been
 *   written.
 * - No function allocates; all may run on several threads at once on different data.
 * - What moves bits only (parts, conjugates) has the same bits in all variants, and not-a-numbers
 *   keep theirs.
 */
#ifndef ZEPS_COMPLEX_H
#define ZEPS_COMPLEX_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @name Conj
 * Conjugate: pDst[n] = conj(pSrc[n]), n = 0 .. len-1. The sign bit of the imaginary part is
 * flipped, of zeros and not-a-numbers too.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else
 *         zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsConj_32fc(const Zep32fc* pSrc, Zep32fc* pDst, int len);
ZEP_API ZepStatus zepsConj_32fc_I(Zep32fc* pSrcDst, int len);
/** @} */

/**
 * Conjugate in reverse order: pDst[n] = conj(pSrc[len - 1 - n]), n = 0 .. len-1.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else
 *         zepStsNoErr.
 */
ZEP_API ZepStatus zepsConjFlip_32fc(const Zep32fc* pSrc, Zep32fc* pDst, int len);

/**
 * @name ConjPerm
 * Full spectrum from the Perm packed one of a real signal of len samples. Packed are, for even len,
 * R(0), R(len/2), R(1), I(1), R(2), I(2), ..., and for odd len R(0), R(1), I(1), ...; the result is
 * pDst[k] = R(k) + i I(k) for k = 0 .. len/2, with imaginary parts +0 at k = 0 and, for even len,
 * at k = len/2, and pDst[len - k] = conj(pDst[k]).
 *
 * @param pSrc  len values in Perm format.
 * @param pDst  len complex bins. The form named _I has pSrcDst in place of both: room for len
 *              complex bins, whose first len real values are in Perm format.
 * @param len   length of the real transform.
 * @return      zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else
 *              zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsConjPerm_32fc(const Zep32f* pSrc, Zep32fc* pDst, int len);
ZEP_API ZepStatus zepsConjPerm_32fc_I(Zep32fc* pSrcDst, int len);
/** @} */

/**
 * @name Real and imaginary parts
 * pDstRe[n] = re(pSrc[n]), pDstIm[n] = im(pSrc[n]), n = 0 .. len-1.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else
 *         zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsReal_32fc(const Zep32fc* pSrc, Zep32f* pDstRe, int len);
ZEP_API ZepStatus zepsReal_64fc(const Zep64fc* pSrc, Zep64f* pDstRe, int len);
ZEP_API ZepStatus zepsImag_32fc(const Zep32fc* pSrc, Zep32f* pDstIm, int len);
ZEP_API ZepStatus zepsCplxToReal_16sc(const Zep16sc* pSrc, Zep16s* pDstRe, Zep16s* pDstIm, int len);
ZEP_API ZepStatus zepsCplxToReal_32fc(const Zep32fc* pSrc, Zep32f* pDstRe, Zep32f* pDstIm, int len);
ZEP_API ZepStatus zepsCplxToReal_64fc(const Zep64fc* pSrc, Zep64f* pDstRe, Zep64f* pDstIm, int len);
/** @} */

/**
 * @name RealToCplx
 * pDst[n] = pSrcRe[n] + i pSrcIm[n], n = 0 .. len-1. A null source stands for a vector of +0.
 * @return zepStsNullPtrErr (pDst), zepStsSizeErr (len not greater than 0), zepStsNullPtrErr (both
 *         sources null), tested in this order; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsRealToCplx_32f(const Zep32f* pSrcRe, const Zep32f* pSrcIm, Zep32fc* pDst,
                                     int len);
ZEP_API ZepStatus zepsRealToCplx_64f(const Zep64f* pSrcRe, const Zep64f* pSrcIm, Zep64fc* pDst,
                                     int len);
/** @} */

/**
 * @name Magnitude
 * Modulus: pDst[n] = sqrt(re * re + im * im), n = 0 .. len-1.
 *
 * The sum of squares s is formed in single precision, each operation rounded, without scaling:
 * parts above about 1.8e19 give infinity, and where both are below about 1e-23 the result is 0. Of
 * a normal s the root comes from the processor's estimate and one Newton step, with a relative
 * error below 2^-22; of any other s it is the correctly rounded one. Variants agree in bits on one
 * processor.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else
 *         zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsMagnitude_32fc(const Zep32fc* pSrc, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsMagnitude_32f(const Zep32f* pSrcRe, const Zep32f* pSrcIm, Zep32f* pDst,
                                    int len);
/** @} */

/**
 * Argument in radians: pDst[n] = atan2(im(pSrc[n]), re(pSrc[n])), from -pi to pi, n = 0 .. len-1.
 *
 * Where both parts are zero or both are infinite the result is that of the two-argument arctangent
 * too: of (+0, +0) it is +0, of (-0, +0) pi. On the negative real axis the sign bit of the imaginary
 * part decides. A not-a-number gives one.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else
 *         zepStsNoErr.
 * @note The error is below 2 units in the last place. Variants may differ in the last bits.
 */
ZEP_API ZepStatus zepsPhase_32fc(const Zep32fc* pSrc, Zep32f* pDst, int len);

/**
 * Power spectrum: pDst[n] = re * re + im * im of pSrc[n], each operation rounded, n = 0 .. len-1.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else
 *         zepStsNoErr.
 */
ZEP_API ZepStatus zepsPowerSpectr_32fc(const Zep32fc* pSrc, Zep32f* pDst, int len);

/**
 * Cartesian to polar form: zepsMagnitude_32fc into pDstMagn, then zepsPhase_32fc into pDstPhase.
 *
 * @return the first status of the two calls that is not zepStsNoErr. The second one runs even when
 *         the first has failed: with a null pDstPhase the magnitudes have been written, with a null
 *         pDstMagn the phases.
 */
ZEP_API ZepStatus zepsCartToPolar_32fc(const Zep32fc* pSrc, Zep32f* pDstMagn, Zep32f* pDstPhase,
                                       int len);

/**
 * Polar to cartesian form: pDst[n] = pSrcMagn[n] * (cos(pSrcPhase[n]) + i sin(pSrcPhase[n])),
 * n = 0 .. len-1.
 *
 * Any finite phase is reduced with the whole of its value. The error of a part is below 1.5 * 2^-23
 * of the magnitude. An infinite phase, or a not-a-number, gives not-a-numbers.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr (len not greater than 0), tested in this order; else
 *         zepStsNoErr.
 * @note Variants may differ in the last bits.
 */
ZEP_API ZepStatus zepsPolarToCart_32fc(const Zep32f* pSrcMagn, const Zep32f* pSrcPhase,
                                       Zep32fc* pDst, int len);

#ifdef __cplusplus
}
#endif

#endif
