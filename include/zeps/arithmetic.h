/** @file
 * Element-wise floating arithmetic.
 *
 * One operation on each element of real or complex vectors in single or double precision. What
 * holds for all of them:
 *
 * - pSrc, pSrc1, pSrc2, pDst, pSrcDst: vectors of len elements; a complex element counts once. Any
 *   alignment; it changes no result but last bits of zepsSqrt_32f, which says which.
 * - A destination may equal a source; other overlap is not supported. The _I forms work in place.
 * - Statuses, tested in this order: zepStsNullPtrErr (any pointer null), zepStsSizeErr (len not
 *   greater than 0), then what the function adds; else zepStsNoErr. After an error nothing has been
 *   written; after a warning all elements have.
 * - No function allocates; all may run on several threads at once on different data.
 * - Sums, differences, products, squares and absolute values have the same bits in all variants:
 *   each operation rounds once, multiply-and-add twice, by the caller's rounding mode. Of a NaN
 *   only that it is one is defined. Quotients and square roots rest on the processor's estimate
 *   instructions: the variants agree in bits on one processor, and within the stated error on all.
 * - In the variants m7, u8 and y8 results of more than about 1 MiB of traffic are stored past the
 *   cache where that pays.
 */
#ifndef ZEPS_ARITHMETIC_H
#define ZEPS_ARITHMETIC_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @name Add
 * Sum of two vectors: pDst[n] = pSrc1[n] + pSrc2[n]; in place pSrcDst[n] = pSrcDst[n] + pSrc[n].
 * @return zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsAdd_32f(const Zep32f* pSrc1, const Zep32f* pSrc2, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsAdd_32fc(const Zep32fc* pSrc1, const Zep32fc* pSrc2, Zep32fc* pDst, int len);
ZEP_API ZepStatus zepsAdd_64f(const Zep64f* pSrc1, const Zep64f* pSrc2, Zep64f* pDst, int len);
ZEP_API ZepStatus zepsAdd_32f_I(const Zep32f* pSrc, Zep32f* pSrcDst, int len);
ZEP_API ZepStatus zepsAdd_32fc_I(const Zep32fc* pSrc, Zep32fc* pSrcDst, int len);
ZEP_API ZepStatus zepsAdd_64f_I(const Zep64f* pSrc, Zep64f* pSrcDst, int len);
/** @} */

/**
 * @name Subtract
 * Difference of two vectors, second minus first: pDst[n] = pSrc2[n] - pSrc1[n]; in place
 * pSrcDst[n] = pSrcDst[n] - pSrc[n]. The first vector is the subtrahend.
 * @return zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsSub_32f(const Zep32f* pSrc1, const Zep32f* pSrc2, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsSub_32fc(const Zep32fc* pSrc1, const Zep32fc* pSrc2, Zep32fc* pDst, int len);
ZEP_API ZepStatus zepsSub_32f_I(const Zep32f* pSrc, Zep32f* pSrcDst, int len);
ZEP_API ZepStatus zepsSub_32fc_I(const Zep32fc* pSrc, Zep32fc* pSrcDst, int len);
ZEP_API ZepStatus zepsSub_64f_I(const Zep64f* pSrc, Zep64f* pSrcDst, int len);
/** @} */

/**
 * @name Multiply
 * Product of two vectors: pDst[n] = pSrc1[n] * pSrc2[n]; in place pSrcDst[n] = pSrcDst[n] *
 * pSrc[n]. Complex: (a + ib)(c + id) = (ac - bd) + i(ad + bc), four products and two sums, each
 * rounded, no guard for infinities.
 * @return zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsMul_32f(const Zep32f* pSrc1, const Zep32f* pSrc2, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsMul_32fc(const Zep32fc* pSrc1, const Zep32fc* pSrc2, Zep32fc* pDst, int len);
ZEP_API ZepStatus zepsMul_64f(const Zep64f* pSrc1, const Zep64f* pSrc2, Zep64f* pDst, int len);
ZEP_API ZepStatus zepsMul_32f_I(const Zep32f* pSrc, Zep32f* pSrcDst, int len);
ZEP_API ZepStatus zepsMul_32fc_I(const Zep32fc* pSrc, Zep32fc* pSrcDst, int len);
ZEP_API ZepStatus zepsMul_64fc_I(const Zep64fc* pSrc, Zep64fc* pSrcDst, int len);
/** @} */

/**
 * @name Divide, real
 * Quotient of two vectors, second over first: pDst[n] = pSrc2[n] / pSrc1[n]; in place pSrcDst[n] =
 * pSrcDst[n] / pSrc[n]. The first vector is the divisor.
 *
 * Elements are treated in blocks of 8, counted from the first; the last block may be short.
 * - A block without a zero divisor: from the processor's estimate r of 1 / d (about 12 bits), q =
 *   x * r and e = 1 - d * r give q + e * (q + e * q). The relative error is below 2^-22 where
 *   neither r nor a product leaves the normal range. It is not the correctly rounded quotient. An
 *   infinite, denormal or NaN divisor gives NaN.
 * - A block with a zero divisor: a divisor that is neither zero nor NaN gives the correctly rounded
 *   quotient. A zero divisor, of either sign, gives infinity with the sign of the dividend, or NaN
 *   for a dividend of zero or NaN; a NaN divisor gives NaN.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr; the warning zepStsDivByZero where a divisor is zero;
 *         else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsDiv_32f(const Zep32f* pSrc1, const Zep32f* pSrc2, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsDiv_32f_I(const Zep32f* pSrc, Zep32f* pSrcDst, int len);
/** @} */

/**
 * @name Divide, complex
 * Quotient of two vectors, second over first: pDst[n] = pSrc2[n] / pSrc1[n]; in place pSrcDst[n] =
 * pSrcDst[n] / pSrc[n]. The first vector is the divisor.
 *
 * For the divisor c + id and the dividend a + ib: m = c*c + d*d, the parts are (c*a + d*b) * w and
 * (c*b - d*a) * w with w = r * (2 - m * r), r the processor's estimate of 1 / m. Each part's error
 * is below 2^-20 of the quotient's magnitude while the products stay normal numbers. Where m is 0
 * both parts are NaN, whatever the dividend; so they are where m is infinite or denormal.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr; the warning zepStsDivByZero where an m is zero; else
 *         zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsDiv_32fc(const Zep32fc* pSrc1, const Zep32fc* pSrc2, Zep32fc* pDst, int len);
ZEP_API ZepStatus zepsDiv_32fc_I(const Zep32fc* pSrc, Zep32fc* pSrcDst, int len);
/** @} */

/**
 * @name Add a constant
 * pDst[n] = pSrc[n] + val; in place pSrcDst[n] = pSrcDst[n] + val.
 *
 * A real val of 0 (either sign) copies the source as it is, in place it leaves everything
 * untouched: a -0 stays -0. zepsAddC_64f makes this copy with a 32-bit count of bytes: with val 0
 * and len of 2^28 or more it returns zepStsSizeErr (where 8 * len as a 32-bit number is not
 * positive). The complex form always adds.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsAddC_32f(const Zep32f* pSrc, Zep32f val, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsAddC_64f(const Zep64f* pSrc, Zep64f val, Zep64f* pDst, int len);
ZEP_API ZepStatus zepsAddC_32f_I(Zep32f val, Zep32f* pSrcDst, int len);
ZEP_API ZepStatus zepsAddC_32fc_I(Zep32fc val, Zep32fc* pSrcDst, int len);
/** @} */

/**
 * @name Subtract a constant
 * pDst[n] = pSrc[n] - val; in place pSrcDst[n] = pSrcDst[n] - val.
 *
 * A real val of 0 (either sign) copies the source as it is, in place it leaves everything
 * untouched. The complex forms always subtract.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsSubC_32f(const Zep32f* pSrc, Zep32f val, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsSubC_32fc(const Zep32fc* pSrc, Zep32fc val, Zep32fc* pDst, int len);
ZEP_API ZepStatus zepsSubC_64f(const Zep64f* pSrc, Zep64f val, Zep64f* pDst, int len);
ZEP_API ZepStatus zepsSubC_32f_I(Zep32f val, Zep32f* pSrcDst, int len);
ZEP_API ZepStatus zepsSubC_32fc_I(Zep32fc val, Zep32fc* pSrcDst, int len);
ZEP_API ZepStatus zepsSubC_64f_I(Zep64f val, Zep64f* pSrcDst, int len);
/** @} */

/**
 * @name Multiply by a constant
 * pDst[n] = pSrc[n] * val; in place pSrcDst[n] = pSrcDst[n] * val.
 *
 * A real val of 1 copies the source as it is, in place it leaves everything untouched. A real val
 * of 0 (either sign) clears the destination to +0 without reading the source: an infinity or NaN
 * there gives +0 too. The complex forms always multiply, as zepsMul_32fc does.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsMulC_32f(const Zep32f* pSrc, Zep32f val, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsMulC_32fc(const Zep32fc* pSrc, Zep32fc val, Zep32fc* pDst, int len);
ZEP_API ZepStatus zepsMulC_64f(const Zep64f* pSrc, Zep64f val, Zep64f* pDst, int len);
ZEP_API ZepStatus zepsMulC_32f_I(Zep32f val, Zep32f* pSrcDst, int len);
ZEP_API ZepStatus zepsMulC_32fc_I(Zep32fc val, Zep32fc* pSrcDst, int len);
ZEP_API ZepStatus zepsMulC_64f_I(Zep64f val, Zep64f* pSrcDst, int len);
/** @} */

/**
 * @name Divide by a constant
 * pDst[n] = pSrc[n] * (1 / val); in place pSrcDst[n] = pSrcDst[n] * (1 / val).
 *
 * The reciprocal is rounded once and the product goes through zepsMulC_*, short cuts included: the
 * result may differ in the last bit from a division, a val of 1 copies, an infinite val clears the
 * destination to +0. Complex: d = re*re + im*im of val, and the constant of the product is (re *
 * (1 / d), 0 - im * (1 / d)).
 *
 * @return zepStsNullPtrErr, zepStsSizeErr, zepStsDivByZeroErr (val is 0 of either sign; complex: d
 *         is 0, also by underflow); else zepStsNoErr. A NaN val is no error and makes every element
 *         NaN.
 * @{
 */
ZEP_API ZepStatus zepsDivC_32f(const Zep32f* pSrc, Zep32f val, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsDivC_32f_I(Zep32f val, Zep32f* pSrcDst, int len);
ZEP_API ZepStatus zepsDivC_32fc_I(Zep32fc val, Zep32fc* pSrcDst, int len);
ZEP_API ZepStatus zepsDivC_64f_I(Zep64f val, Zep64f* pSrcDst, int len);
/** @} */

/**
 * @name Absolute value
 * pDst[n] = |pSrc[n]|; in place pSrcDst[n] = |pSrcDst[n]|. Clears the sign bit: -0 becomes +0, a
 * NaN keeps its payload.
 * @return zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsAbs_32f(const Zep32f* pSrc, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsAbs_64f(const Zep64f* pSrc, Zep64f* pDst, int len);
ZEP_API ZepStatus zepsAbs_32f_I(Zep32f* pSrcDst, int len);
ZEP_API ZepStatus zepsAbs_64f_I(Zep64f* pSrcDst, int len);
/** @} */

/**
 * @name Square
 * pDst[n] = pSrc[n] * pSrc[n]; in place pSrcDst[n] = pSrcDst[n] * pSrcDst[n].
 * @return zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 * @{
 */
ZEP_API ZepStatus zepsSqr_32f(const Zep32f* pSrc, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsSqr_64f(const Zep64f* pSrc, Zep64f* pDst, int len);
ZEP_API ZepStatus zepsSqr_32f_I(Zep32f* pSrcDst, int len);
ZEP_API ZepStatus zepsSqr_64f_I(Zep64f* pSrcDst, int len);
/** @} */

/**
 * @name Square root, real
 * pDst[n] = sqrt(pSrc[n]); in place pSrcDst[n] = sqrt(pSrcDst[n]).
 *
 * From the first 16-byte boundary of the destination on, elements are treated in blocks of 16. A
 * block of positive normal numbers takes the processor's estimate r of 1 / sqrt(x) (about 12 bits)
 * and one step: with s = x * r, (s * -0.5) * (s * r - 3), relative error below 2^-21. Every other
 * block, the elements in front of the boundary and the rest behind the last block take the
 * correctly rounded root. A negative element gives NaN and leaves the others unharmed; sqrt(-0) is
 * -0; NaN stays NaN.
 *
 * Floating-point exceptions do not trap during the call; where the caller has unmasked some, its
 * control word comes back with the denormal, overflow, underflow and inexact flags of the run
 * added.
 *
 * @return zepStsNullPtrErr, zepStsSizeErr; the warning zepStsSqrtNegArg where an element is less
 *         than 0; else zepStsNoErr.
 * @note   The alignment of the destination decides which elements take the correctly rounded root,
 *         and so their last bits.
 * @{
 */
ZEP_API ZepStatus zepsSqrt_32f(const Zep32f* pSrc, Zep32f* pDst, int len);
ZEP_API ZepStatus zepsSqrt_32f_I(Zep32f* pSrcDst, int len);
/** @} */

/**
 * Principal square root of a complex vector, in place: the root with a real part not less than 0.
 *
 * For a + ib with m = sqrt((a/2)^2 + (b/2)^2), t = m + |a/2|: the parts are sqrt(t) and |b/2| /
 * sqrt(t), the former the real part unless a is less than 0; the imaginary part is negative where b
 * is less than 0 or NaN. Roots come from the processor's estimates with one refinement each; each
 * part's relative error is below 2^-20. The result is finite wherever a and b are; an element so
 * small that (a/2)^2 + (b/2)^2 is 0 gives 0.
 *
 * @param pSrcDst  len elements.
 * @param len      elements.
 * @return         zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsSqrt_32fc_I(Zep32fc* pSrcDst, int len);

/**
 * Adds the product of two vectors: pSrcDst[n] = pSrcDst[n] + pSrc1[n] * pSrc2[n]. Product and sum
 * are rounded each.
 *
 * @param pSrc1    len elements.
 * @param pSrc2    len elements.
 * @param pSrcDst  len elements; may equal a source.
 * @param len      elements.
 * @return         zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsAddProduct_32f(const Zep32f* pSrc1, const Zep32f* pSrc2, Zep32f* pSrcDst,
                                     int len);

/**
 * Adds a multiple of a vector: pSrcDst[n] = pSrcDst[n] + pSrc[n] * val. Product and sum are rounded
 * each.
 *
 * @param pSrc     len elements.
 * @param val      factor; no value is special.
 * @param pSrcDst  len elements; may equal pSrc.
 * @param len      elements.
 * @return         zepStsNullPtrErr, zepStsSizeErr; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsAddProductC_32f(const Zep32f* pSrc, Zep32f val, Zep32f* pSrcDst, int len);

#ifdef __cplusplus
}
#endif

#endif
