/** @file
 * Fast Fourier transforms of N = 2^order points, complex and real, in single precision.
 *
 * Set-up and execution are apart: zepsFFTInitAlloc_* builds an object with every table, execution
 * only reads it. One object serves any number of transforms and threads, provided that each
 * concurrent call has scratch of its own. Angles come from double-precision sines, rounded to
 * float; execution makes no trigonometric call.
 *
 * What holds for every transform here:
 * - Sums: forward X[k] = s * sum over n of x[n] * exp(-2*pi*i*n*k/N), inverse with the opposite
 *   sign of the exponent; the factor s follows the object's flag, see @ref ZEP_FFT_SCALE_FWD and
 *   its companions.
 * - Alignment, in place or not, own or given scratch never change a value. Variants agree within
 *   rounding, not bit for bit. The error is that of a float transform with correctly rounded
 *   twiddles: about 0.6 * 2^-24 * sqrt(order) of the spectrum's norm, root mean square.
 * - No value is examined: NaN and infinity propagate.
 */
#ifndef ZEPS_FFT_H
#define ZEPS_FFT_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @name Normalisation flags
 * @{
 */
#define ZEP_FFT_SCALE_FWD 1  /**< the forward transform is divided by N */
#define ZEP_FFT_SCALE_INV 2  /**< the inverse transform is divided by N */
#define ZEP_FFT_SCALE_SQRT 4 /**< both directions are divided by sqrt(N) */
#define ZEP_FFT_SCALE_NONE 8 /**< no division */
/** @} */

/** Object of a complex transform: opaque, read-only between creation and release. */
typedef struct FFTSpecC32fc FFTSpecC32fc;
/** Object of a real transform: opaque, read-only between creation and release. */
typedef struct FFTSpecR32f FFTSpecR32f;

/**
 * Builds the object of a complex transform of N = 2^order points. Allocates the object, and during
 * the call a table of sines from order 11 on; to be released by zepsFFTFree_C_32fc.
 *
 * @param ppSpec  receives the object; unwritten on every failure.
 * @param order   0 to 28.
 * @param flag    one of ZEP_FFT_SCALE_FWD, _INV, _SQRT, _NONE.
 * @param hint    any value (see ZepHintAlgorithm); kept in the object, without effect.
 * @return        zepStsNullPtrErr (ppSpec), zepStsFftOrderErr (order below 0 or above 30),
 *                zepStsFftFlagErr, zepStsFftOrderErr (order above 28), zepStsMemAllocErr, tested in
 *                this order; else zepStsNoErr.
 * @note          1/N is formed in single precision and exact; 1/sqrt(N) is an estimate of the
 *                processor's reciprocal root with one Newton step, good to about 22 bits. May be
 *                called from several threads.
 */
ZEP_API ZepStatus zepsFFTInitAlloc_C_32fc(FFTSpecC32fc** ppSpec, int order, int flag, int hint);

/**
 * Builds the object of a real transform of N = 2^order points; to be released by zepsFFTFree_R_32f.
 *
 * @param ppSpec  receives the object; unwritten on every failure.
 * @param order   0 to 29.
 * @param flag    one of ZEP_FFT_SCALE_FWD, _INV, _SQRT, _NONE.
 * @param hint    any value; kept in the object, without effect.
 * @return        zepStsNullPtrErr (ppSpec), zepStsFftOrderErr (order below 0 or above 30),
 *                zepStsFftFlagErr, zepStsFftOrderErr (order above 29), zepStsMemAllocErr, tested in
 *                this order; else zepStsNoErr.
 * @note          Allocation, factors and threads as zepsFFTInitAlloc_C_32fc.
 */
ZEP_API ZepStatus zepsFFTInitAlloc_R_32f(FFTSpecR32f** ppSpec, int order, int flag, int hint);

/**
 * Releases a complex object. The object's identifying word is cleared first, so that a second
 * release is refused as long as the memory has not been used again.
 *
 * @param pSpec  from zepsFFTInitAlloc_C_32fc; no transform may be running on it.
 * @return       zepStsNullPtrErr, zepStsContextMatchErr (not a complex object, or released), tested
 *               in this order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsFFTFree_C_32fc(FFTSpecC32fc* pSpec);

/**
 * Releases a real object.
 *
 * @param pSpec  from zepsFFTInitAlloc_R_32f; no transform may be running on it.
 * @return       zepStsNullPtrErr, zepStsContextMatchErr (not a real object, or released), tested in
 *               this order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsFFTFree_R_32f(FFTSpecR32f* pSpec);

/**
 * Bytes of scratch that one complex transform needs: 0 for the shortest orders, else the work area
 * and 32 bytes for its alignment.
 *
 * @param pSpec     from zepsFFTInitAlloc_C_32fc.
 * @param pBufSize  receives the bytes; unwritten on an error.
 * @return          zepStsNullPtrErr, zepStsContextMatchErr, tested in this order; else zepStsNoErr.
 * @note            The size depends on the variant: ask for it on the machine that runs the
 *                  transform.
 */
ZEP_API ZepStatus zepsFFTGetBufSize_C_32fc(const FFTSpecC32fc* pSpec, int* pBufSize);

/**
 * Bytes of scratch that one real transform needs.
 *
 * @param pSpec     from zepsFFTInitAlloc_R_32f.
 * @param pBufSize  receives the bytes; unwritten on an error.
 * @return          zepStsNullPtrErr, zepStsContextMatchErr, tested in this order; else zepStsNoErr.
 * @note            The size depends on the variant: ask for it on the machine that runs the
 *                  transform.
 */
ZEP_API ZepStatus zepsFFTGetBufSize_R_32f(const FFTSpecR32f* pSpec, int* pBufSize);

/**
 * Forward FFT of a complex signal: pDst[k] = s * sum over n of pSrc[n] * exp(-2*pi*i*n*k/N), k =
 * 0 .. N-1.
 *
 * @param pSrc     N complex samples; any alignment.
 * @param pDst     N complex bins in natural order; may equal pSrc, must not overlap it otherwise.
 * @param pSpec    from zepsFFTInitAlloc_C_32fc; s is 1/N with ZEP_FFT_SCALE_FWD, 1/sqrt(N) with
 *                 ZEP_FFT_SCALE_SQRT, else 1.
 * @param pBuffer  at least zepsFFTGetBufSize_C_32fc bytes, any alignment, one per thread; null:
 *                 allocated and released by this call. Ignored where the size is 0.
 * @return         zepStsNullPtrErr (pSpec), zepStsContextMatchErr (not a complex object, or
 *                 released), zepStsNullPtrErr (pSrc, pDst), zepStsMemAllocErr, tested in this
 *                 order; else zepStsNoErr.
 * @note           On an error nothing is written.
 */
ZEP_API ZepStatus zepsFFTFwd_CToC_32fc(const Zep32fc* pSrc, Zep32fc* pDst,
                                       const FFTSpecC32fc* pSpec, Zep8u* pBuffer);

/**
 * Inverse FFT of a complex spectrum: pDst[n] = s * sum over k of pSrc[k] * exp(2*pi*i*n*k/N), n =
 * 0 .. N-1.
 *
 * @param pSrc     N complex bins in natural order; any alignment.
 * @param pDst     N complex samples; may equal pSrc, must not overlap it otherwise.
 * @param pSpec    from zepsFFTInitAlloc_C_32fc; s is 1/N with ZEP_FFT_SCALE_INV, 1/sqrt(N) with
 *                 ZEP_FFT_SCALE_SQRT, else 1.
 * @param pBuffer  as zepsFFTFwd_CToC_32fc.
 * @return         zepStsNullPtrErr (pSpec), zepStsContextMatchErr (not a complex object, or
 *                 released), zepStsNullPtrErr (pSrc, pDst), zepStsMemAllocErr, tested in this
 *                 order; else zepStsNoErr.
 * @note           On an error nothing is written.
 */
ZEP_API ZepStatus zepsFFTInv_CToC_32fc(const Zep32fc* pSrc, Zep32fc* pDst,
                                       const FFTSpecC32fc* pSpec, Zep8u* pBuffer);

/**
 * Forward FFT of a real signal into a packed spectrum: with X[k] = s * sum over n of pSrc[n] *
 * exp(-2*pi*i*n*k/N) = R(k) + i*I(k), pDst holds R(0), R(N/2), R(1), I(1), R(2), I(2), .. R(N/2-1),
 * I(N/2-1); one point gives R(0), two give R(0), R(1). The parts that are left out are I(0) =
 * I(N/2) = 0 and X[N-k], the conjugate of X[k].
 *
 * @param pSrc     N samples; any alignment.
 * @param pDst     N values; may equal pSrc, must not overlap it otherwise.
 * @param pSpec    from zepsFFTInitAlloc_R_32f; s is 1/N with ZEP_FFT_SCALE_FWD, 1/sqrt(N) with
 *                 ZEP_FFT_SCALE_SQRT, else 1.
 * @param pBuffer  at least zepsFFTGetBufSize_R_32f bytes, any alignment, one per thread; null:
 *                 allocated and released by this call. Ignored where the size is 0.
 * @return         zepStsNullPtrErr (pSpec), zepStsContextMatchErr (not a real object, or released),
 *                 zepStsNullPtrErr (pSrc, pDst), zepStsMemAllocErr, tested in this order; else
 *                 zepStsNoErr.
 * @note           On an error nothing is written.
 */
ZEP_API ZepStatus zepsFFTFwd_RToPerm_32f(const Zep32f* pSrc, Zep32f* pDst, const FFTSpecR32f* pSpec,
                                         Zep8u* pBuffer);

#ifdef __cplusplus
}
#endif

#endif
