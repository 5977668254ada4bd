/** @file
 * Per-vector blocks of ITU-T G.728 (fixed point, Annex G): the filters of encoder and decoder on
 * vectors of 5 samples, the energies of the shape codebook and the codebook search.
 *
 * What the functions here share:
 * - States are in memory of the caller: a function tells the size, an init function clears. They
 *   hold no pointers and may be moved. One state serves one direction of one stream, one thread at
 *   a time.
 * - Synthesis coefficients are those of A(z) = 1 + sum of a[i] * z^-i, i = 1 .. 50, Q14, a[1] first.
 * - Weighting coefficients are 20 words, Q14: the zero section b[1] .. b[10], then the pole section
 *   c[1] .. c[10], both without the leading 1.
 * - Filter sums are of Q14 products, limited to 32 bits after each term, shifted right by 14 and
 *   limited to 16 bits; where a function differs it says so.
 * - A vector with exponent e holds the values word / 2^e.
 * - Every function tests its pointers first and returns zepStsNullPtrErr if one is null, with
 *   nothing written; the filters have no other failure. Saturation is not reported.
 */
#ifndef ZEPSC_G728_FILTERS_H
#define ZEPSC_G728_FILTERS_H

#include "../zepcore.h"
#include "rates.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Encoder: synthesis filter and weighting filter in cascade. Opaque, 208 bytes; its first 5 words
 * are the newest vector of the synthesis filter. */
typedef struct ZepCombinedFilterState ZepCombinedFilterState;
/** Weighting filter. Opaque, 64 bytes: 10 past inputs, 10 past outputs, newest first. */
typedef struct ZepIIR16sState ZepIIR16sState;
/** Decoder: synthesis filter. Opaque, 144 bytes. */
typedef struct ZepSynthesisFilterState ZepSynthesisFilterState;

/**
 * Size of a cascade's state.
 *
 * @param pSize  takes the bytes, 208.
 * @return       zepStsNullPtrErr (pSize); else zepStsNoErr.
 */
ZEP_API ZepStatus zepsCombinedFilterGetStateSize_G728_16s(Zep32u* pSize);

/**
 * Clears a cascade: silence in all memories.
 *
 * @param pState  memory of the size that zepsCombinedFilterGetStateSize_G728_16s tells.
 * @return        zepStsNullPtrErr (pState); else zepStsNoErr.
 */
ZEP_API ZepStatus zepsCombinedFilterInit_G728_16s(ZepCombinedFilterState* pState);

/**
 * Ringing of the cascade: its response of 5 samples to no input, before each vector is coded.
 *
 * The synthesis filter's response becomes its newest vector, normalised: the peak is brought to
 * 8192 .. 16383 (a negative one of 16384 may stay), a vector of zeros has exponent 14 more than
 * the smallest in the history. In Q2 it then goes through the weighting filter, whose inputs before
 * it are the synthesis filter's past output and whose outputs become the newest in its memory.
 *
 * @param pSyn      50 synthesis coefficients.
 * @param pWeights  20 weighting coefficients.
 * @param pDst      5 samples of ringing, Q2.
 * @param pState    from zepsCombinedFilterInit_G728_16s.
 * @return          zepStsNullPtrErr (any pointer); else zepStsNoErr.
 */
ZEP_API ZepStatus zepsCombinedFilterZeroInput_G728_16s(const Zep16s* pSyn, const Zep16s* pWeights,
                                                       Zep16s* pDst,
                                                       ZepCombinedFilterState* pState);

/**
 * Adds the response of the cascade to a coded vector to the ringing of
 * zepsCombinedFilterZeroInput_G728_16s, which comes before every call of this function.
 *
 * The responses from rest are added to the newest vector of the synthesis filter, which is limited
 * to +-4095 and normalised to 14 bits, and in Q2 to the 5 newest outputs of the weighting filter.
 * If the synthesis filter's sum leaves 28 bits and sign the whole vector is halved.
 *
 * @param pCoeffs   50 synthesis coefficients, of which the first 4 have an effect.
 * @param pWeights  20 weighting coefficients.
 * @param pSrc      excitation, 5 samples.
 * @param scale     the exponent of the excitation is scale + *pScale1 + *pScale2: those of gain
 *                  and shape vector may be given apart.
 * @param pScale1   one exponent.
 * @param pScale2   one exponent.
 * @param pState    as above.
 * @return          zepStsNullPtrErr (any pointer); else zepStsNoErr.
 */
ZEP_API ZepStatus zepsCombinedFilterZeroState_G728_16s(const Zep16s* pCoeffs,
                                                       const Zep16s* pWeights, const Zep16s* pSrc,
                                                       Zep32s scale, const Zep16s* pScale1,
                                                       const Zep16s* pScale2,
                                                       ZepCombinedFilterState* pState);

/**
 * Size of a decoder's synthesis filter.
 *
 * @param pSize  takes the bytes, 144.
 * @return       zepStsNullPtrErr (pSize); else zepStsNoErr.
 */
ZEP_API ZepStatus zepsSynthesisFilterGetStateSize_G728_16s(Zep32u* pSize);

/**
 * Clears a decoder's synthesis filter: silence, each vector with exponent 16.
 *
 * @param pState  memory of the size that zepsSynthesisFilterGetStateSize_G728_16s tells.
 * @return        zepStsNullPtrErr (pState); else zepStsNoErr.
 */
ZEP_API ZepStatus zepsSynthesisFilterInit_G728_16s(ZepSynthesisFilterState* pState);

/**
 * Synthesis of one vector in the decoder: ringing plus the response to the excitation, limited to
 * +-4095 and normalised to 14 bits. It equals, bit for bit, what the encoder's cascade keeps.
 *
 * @param pCoeffs  50 synthesis coefficients.
 * @param pSrc     excitation, 5 samples.
 * @param scale    exponent of the excitation.
 * @param pDst     5 samples of decoded speech.
 * @param pExp     takes their exponent.
 * @param pState   from zepsSynthesisFilterInit_G728_16s.
 * @return         zepStsNullPtrErr (any pointer); else zepStsNoErr.
 */
ZEP_API ZepStatus zepsSyntesisFilterZeroInput_G728_16s(const Zep16s* pCoeffs, const Zep16s* pSrc,
                                                       Zep32s scale, Zep16s* pDst, Zep16s* pExp,
                                                       ZepSynthesisFilterState* pState);

/**
 * Size of a weighting filter's state.
 *
 * @param pSize  takes the bytes, 64.
 * @return       zepStsNullPtrErr (pSize); else zepStsNoErr.
 */
ZEP_API ZepStatus zepsIIR16sGetStateSize_G728_16s(Zep32u* pSize);

/**
 * Clears a weighting filter.
 *
 * @param pState  memory of the size that zepsIIR16sGetStateSize_G728_16s tells.
 * @return        zepStsNullPtrErr (pState); else zepStsNoErr.
 */
ZEP_API ZepStatus zepsIIR16sInit_G728_16s(ZepIIR16sState* pState);

/**
 * Perceptual weighting filter of order 10 on one vector:
 * y[n] = x[n] + sum of b[i] * x[n-i] - sum of c[i] * y[n-i], i = 1 .. 10.
 *
 * @param pCoeffs  20 weighting coefficients.
 * @param pSrc     5 samples.
 * @param pDst     5 samples; may be pSrc.
 * @param pState   from zepsIIR16sInit_G728_16s.
 * @return         zepStsNullPtrErr (any pointer); else zepStsNoErr.
 */
ZEP_API ZepStatus zepsIIR16s_G728_16s(const Zep16s* pCoeffs, const Zep16s* pSrc, Zep16s* pDst,
                                      ZepIIR16sState* pState);

/**
 * Inverse filter of order 10 on one vector, before pitch analysis:
 * y[n] = x[n] + sum of a[i] * x[n-i], i = 1 .. 10. Output and input have the same scale.
 *
 * @param pCoeffs  10 coefficients, Q14.
 * @param pSrc     5 samples.
 * @param pDst     5 samples of residual; may be pSrc.
 * @param pMem     10 past inputs, newest first; brought up to date.
 * @return         zepStsNullPtrErr (any pointer); else zepStsNoErr.
 */
ZEP_API ZepStatus zepsLPCInverseFilter_G728_16s(const Zep16s* pCoeffs, const Zep16s* pSrc,
                                                Zep16s* pDst, Zep16s* pMem);

/**
 * Energies of the 128 shape codevectors y (Q11) after the impulse response h: with
 * z[n] = sat16(sum over k <= n of h[k] * y[n-k] >> 14), n = 0 .. 4, the sum of z[n]^2 >> 15,
 * limited to 65535.
 *
 * @param pImpulse  5 samples of the impulse response, Q13.
 * @param pEnergy   128 energies, unsigned 16 bits each.
 * @return          zepStsNullPtrErr (any pointer); else zepStsNoErr.
 */
ZEP_API ZepStatus zepsImpulseResponseEnergy_G728_16s(const Zep16s* pImpulse, Zep16s* pEnergy);

/**
 * Codebook search: the shape, gain level and sign of least distance.
 *
 * For each shape j, P is the correlation of y[j] with pCorr and Q = |P|. The gain level is the
 * number of thresholds T, scaled by the energy E[j], that Q reaches, tested from the top and
 * counted while it does not reach the next: level 0 is the lowest. The distance is
 * a * min(Q >> 14, 32767) + b * E[j] with the pair (a, b) of the level, -2 times the gain and its
 * square; the least one wins, the lower shape of equals. The sign bit, 4, is set if P of the winner
 * is below 1.
 *
 * At 16 kbit/s 128 shapes are searched on 4 levels, at 12.8 kbit/s the first 64 on 2, at 9.6 kbit/s
 * the first 16 on 2. (The low rates' shapes follow from their bit budget; how they are chosen is
 * this library's own.)
 *
 * @param pCorr    5 samples of the target, correlated with the impulse response, Q7.
 * @param pEnergy  128 energies from zepsImpulseResponseEnergy_G728_16s.
 * @param pShape   takes the shape.
 * @param pGain    takes the level, plus 4 for a negative gain.
 * @param pCode    takes 8 * shape + gain.
 * @param rate     ZEP_SPCHBR_16000, ZEP_SPCHBR_12800 or ZEP_SPCHBR_9600.
 * @return         zepStsNullPtrErr (any pointer), zepStsRangeErr (rate), tested in this order;
 *                 else zepStsNoErr. On an error nothing is written.
 */
ZEP_API ZepStatus zepsCodebookSearch_G728_16s(const Zep16s* pCorr, const Zep16s* pEnergy,
                                              Zep32s* pShape, Zep32s* pGain, Zep16s* pCode,
                                              Zep32s rate);

#ifdef __cplusplus
}
#endif

#endif
