/** @file
 * Discrete Fourier transforms of any length N, complex and real.
 *
 * Set-up and execution are apart, as for the transforms of zeps/fft.h: zepsDFTInitAlloc_* decides
 * once how a length runs and builds the tables, execution only reads them. The routes:
 * - 1 to 16 points: straight-line code.
 * - Powers of two: the transform of fft.h.
 * - Products of small primes: passes of radix 2 to 16, 11 and 13, and sums by the definition for
 *   other odd factors up to 50, the last of them up to 150 where 4 divides N (in double precision up
 *   to 90, and 150 where N is even).
 * - Primes up to 47 (89 in double precision): the definition.
 * - All others: a convolution with a chirp (L. Bluestein, 1970), at three to eight times the cost of
 *   a smooth length.
 *
 * A real transform of even length is a complex one of half the length, which takes its own route,
 * and a sweep; one of odd length computes half spectra throughout.
 *
 * What holds for every transform here:
 * - Sums: forward X[k] = s * sum over n of x[n] * exp(-2*pi*i*n*k/N), inverse with the opposite
 *   sign of the exponent; the factor s follows the object's flag, see @ref ZEP_FFT_SCALE_FWD and
 *   its companions. 1/N is formed in the transform's precision, 1/sqrt(N) in double precision and
 *   rounded; lengths of fft.h have the factors of fft.h.
 * - Alignment, in place or not, own or given scratch never change a value. Variants agree within
 *   rounding, not bit for bit. One object serves any number of transforms and threads, provided that
 *   each concurrent call has scratch of its own.
 * - No value is examined: NaN and infinity propagate.
 */
#ifndef ZEPS_DFT_H
#define ZEPS_DFT_H

#include "fft.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Object of a complex transform of any length: opaque, read-only between creation and release. */
typedef struct DFTSpecC32fc DFTSpecC32fc;
/** Object of a double-precision complex transform of any length. */
typedef struct DFTSpecC64fc DFTSpecC64fc;
/** Object of a real transform of any length. */
typedef struct DFTSpecR32f DFTSpecR32f;

/**
 * Builds the object of a complex transform of any length in single precision. Allocates the object and its tables, and
 * during the call one table of len roots of unity; to be released by zepsDFTFree_C_32fc.
 *
 * @param ppSpec  receives the object; unwritten on every failure.
 * @param len     length, 1 to 134217727, and 2^27 and 2^28.
 * @param flag    one of ZEP_FFT_SCALE_FWD, _INV, _SQRT, _NONE.
 * @param hint    any value; kept in the object, without effect.
 * @return        zepStsNullPtrErr (ppSpec), zepStsSizeErr (len below 1), zepStsMemAllocErr (the
 *                object), zepStsFftFlagErr, zepStsFftOrderErr (a power of two that the power-of-two
 *                transform refuses), zepStsSizeErr (len above the limit, or without factors as above
 *                67108863 points), zepStsMemAllocErr (a table), tested in this order; else
 *                zepStsNoErr.
 * @note          May be called from several threads.
 */
ZEP_API ZepStatus zepsDFTInitAlloc_C_32fc(DFTSpecC32fc** ppSpec, int len, int flag, int hint);

/**
 * Builds the object of a complex transform of any length in double precision. Allocates the object and its tables, and
 * during the call one table of len roots of unity; to be released by zepsDFTFree_C_64fc.
 *
 * @param ppSpec  receives the object; unwritten on every failure.
 * @param len     length, 1 to 67108863, and 2^26 and 2^27.
 * @param flag    one of ZEP_FFT_SCALE_FWD, _INV, _SQRT, _NONE.
 * @param hint    any value; kept in the object, without effect.
 * @return        zepStsNullPtrErr (ppSpec), zepStsSizeErr (len below 1), zepStsMemAllocErr (the
 *                object), zepStsFftFlagErr, zepStsFftOrderErr (a power of two that the power-of-two
 *                transform refuses), zepStsSizeErr (len above the limit, or without factors as above
 *                33554431 points), zepStsMemAllocErr (a table), tested in this order; else
 *                zepStsNoErr.
 * @note          May be called from several threads.
 */
ZEP_API ZepStatus zepsDFTInitAlloc_C_64fc(DFTSpecC64fc** ppSpec, int len, int flag, int hint);

/**
 * Builds the object of a real transform of any length in single precision. Allocates the object and its tables, and
 * during the call one table of len roots of unity; to be released by zepsDFTFree_R_32f.
 *
 * @param ppSpec  receives the object; unwritten on every failure.
 * @param len     length, 1 to 134217727, and 2^27 to 2^29.
 * @param flag    one of ZEP_FFT_SCALE_FWD, _INV, _SQRT, _NONE.
 * @param hint    any value; kept in the object, without effect.
 * @return        zepStsNullPtrErr (ppSpec), zepStsSizeErr (len below 1), zepStsMemAllocErr (the
 *                object), zepStsFftFlagErr, zepStsFftOrderErr (a power of two that the power-of-two
 *                transform refuses), zepStsSizeErr (len above the limit, or without factors as above
 *                67108863 points), zepStsMemAllocErr (a table), tested in this order; else
 *                zepStsNoErr.
 * @note          May be called from several threads.
 */
ZEP_API ZepStatus zepsDFTInitAlloc_R_32f(DFTSpecR32f** ppSpec, int len, int flag, int hint);

/**
 * Releases a complex object and its tables.
 *
 * @param pSpec  from zepsDFTInitAlloc_C_32fc; no transform may be running on it.
 * @return       zepStsNullPtrErr, zepStsContextMatchErr (another kind of object), tested in this
 *               order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsDFTFree_C_32fc(DFTSpecC32fc* pSpec);

/**
 * Releases a double-precision complex object and its tables.
 *
 * @param pSpec  from zepsDFTInitAlloc_C_64fc; no transform may be running on it.
 * @return       zepStsNullPtrErr, zepStsContextMatchErr (another kind of object), tested in this
 *               order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsDFTFree_C_64fc(DFTSpecC64fc* pSpec);

/**
 * Releases a real object and its tables.
 *
 * @param pSpec  from zepsDFTInitAlloc_R_32f; no transform may be running on it.
 * @return       zepStsNullPtrErr, zepStsContextMatchErr (another kind of object), tested in this
 *               order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsDFTFree_R_32f(DFTSpecR32f* pSpec);

/**
 * Bytes of scratch that one complex transform needs, room for its alignment included; 0 up to 16
 * points.
 *
 * @param pSpec     from zepsDFTInitAlloc_C_32fc.
 * @param pBufSize  receives the bytes; unwritten on an error.
 * @return          zepStsNullPtrErr, zepStsContextMatchErr, tested in this order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsDFTGetBufSize_C_32fc(const DFTSpecC32fc* pSpec, int* pBufSize);

/**
 * Bytes of scratch that one complex transform needs, room for its alignment included; 0 up to 16
 * points.
 *
 * @param pSpec     from zepsDFTInitAlloc_C_64fc.
 * @param pBufSize  receives the bytes; unwritten on an error.
 * @return          zepStsNullPtrErr, zepStsContextMatchErr, tested in this order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsDFTGetBufSize_C_64fc(const DFTSpecC64fc* pSpec, int* pBufSize);

/**
 * Bytes of scratch that one real transform needs, room for its alignment included; 0 up to 16
 * points.
 *
 * @param pSpec     from zepsDFTInitAlloc_R_32f.
 * @param pBufSize  receives the bytes; unwritten on an error.
 * @return          zepStsNullPtrErr, zepStsContextMatchErr, tested in this order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsDFTGetBufSize_R_32f(const DFTSpecR32f* pSpec, int* pBufSize);

/**
 * Forward transform of a complex signal: pDst[k] = s * sum over n of pSrc[n] *
 * exp(-2*pi*i*n*k/len), k = 0 .. len-1.
 *
 * @param pSrc     len complex samples; any alignment.
 * @param pDst     len complex bins in natural order; may equal pSrc, must not overlap it otherwise.
 * @param pSpec    from zepsDFTInitAlloc_C_32fc; s is 1/len with ZEP_FFT_SCALE_FWD, 1/sqrt(len) with
 *                 ZEP_FFT_SCALE_SQRT, else 1.
 * @param pBuffer  at least zepsDFTGetBufSize_C_32fc bytes, any alignment, one per thread; null:
 *                 allocated and released by this call. Ignored where the size is 0.
 * @return         zepStsNullPtrErr (pSpec), zepStsContextMatchErr (another kind of object, or
 *                 released), zepStsNullPtrErr (pSrc, pDst), zepStsMemAllocErr, tested in this order;
 *                 else zepStsNoErr.
 * @note           On an error nothing is written.
 */
ZEP_API ZepStatus zepsDFTFwd_CToC_32fc(const Zep32fc* pSrc, Zep32fc* pDst,
                                       const DFTSpecC32fc* pSpec, Zep8u* pBuffer);

/**
 * Inverse transform of a complex spectrum: pDst[n] = s * sum over k of pSrc[k] *
 * exp(2*pi*i*n*k/len), n = 0 .. len-1.
 *
 * @param pSrc     len complex bins in natural order; any alignment.
 * @param pDst     len complex samples in natural order; may equal pSrc, must not overlap it otherwise.
 * @param pSpec    from zepsDFTInitAlloc_C_32fc; s is 1/len with ZEP_FFT_SCALE_INV, 1/sqrt(len) with
 *                 ZEP_FFT_SCALE_SQRT, else 1.
 * @param pBuffer  at least zepsDFTGetBufSize_C_32fc bytes, any alignment, one per thread; null:
 *                 allocated and released by this call. Ignored where the size is 0.
 * @return         zepStsNullPtrErr (pSpec), zepStsContextMatchErr (another kind of object, or
 *                 released), zepStsNullPtrErr (pSrc, pDst), zepStsMemAllocErr, tested in this order;
 *                 else zepStsNoErr.
 * @note           On an error nothing is written.
 */
ZEP_API ZepStatus zepsDFTInv_CToC_32fc(const Zep32fc* pSrc, Zep32fc* pDst,
                                       const DFTSpecC32fc* pSpec, Zep8u* pBuffer);

/**
 * Forward transform of a complex signal in double precision: pDst[k] = s * sum over n of pSrc[n] *
 * exp(-2*pi*i*n*k/len), k = 0 .. len-1.
 *
 * @param pSrc     len complex samples; any alignment.
 * @param pDst     len complex bins in natural order; may equal pSrc, must not overlap it otherwise.
 * @param pSpec    from zepsDFTInitAlloc_C_64fc; s is 1/len with ZEP_FFT_SCALE_FWD, 1/sqrt(len) with
 *                 ZEP_FFT_SCALE_SQRT, else 1.
 * @param pBuffer  at least zepsDFTGetBufSize_C_64fc bytes, any alignment, one per thread; null:
 *                 allocated and released by this call. Ignored where the size is 0.
 * @return         zepStsNullPtrErr (pSpec), zepStsContextMatchErr (another kind of object, or
 *                 released), zepStsNullPtrErr (pSrc, pDst), zepStsMemAllocErr, tested in this order;
 *                 else zepStsNoErr.
 * @note           On an error nothing is written.
 */
ZEP_API ZepStatus zepsDFTFwd_CToC_64fc(const Zep64fc* pSrc, Zep64fc* pDst,
                                       const DFTSpecC64fc* pSpec, Zep8u* pBuffer);

/**
 * Forward transform of a real signal into a packed spectrum: with X[k] = s * sum over n of pSrc[n] *
 * exp(-2*pi*i*n*k/len) = R(k) + i*I(k), pDst holds R(0), R(len/2), R(1), I(1), R(2), I(2), .. for an
 * even len, and R(0), R(1), I(1), R(2), I(2), .. for an odd one.
 *
 * @param pSrc     len samples; any alignment.
 * @param pDst     len values; may equal pSrc, must not overlap it otherwise.
 * @param pSpec    from zepsDFTInitAlloc_R_32f; s is 1/len with ZEP_FFT_SCALE_FWD, 1/sqrt(len) with
 *                 ZEP_FFT_SCALE_SQRT, else 1.
 * @param pBuffer  at least zepsDFTGetBufSize_R_32f bytes, any alignment, one per thread; null:
 *                 allocated and released by this call. Ignored where the size is 0.
 * @return         zepStsNullPtrErr (pSpec), zepStsContextMatchErr (another kind of object, or
 *                 released), zepStsNullPtrErr (pSrc, pDst), zepStsMemAllocErr, tested in this order;
 *                 else zepStsNoErr.
 * @note           On an error nothing is written.
 */
ZEP_API ZepStatus zepsDFTFwd_RToPerm_32f(const Zep32f* pSrc, Zep32f* pDst, const DFTSpecR32f* pSpec,
                                         Zep8u* pBuffer);

#ifdef __cplusplus
}
#endif

#endif
