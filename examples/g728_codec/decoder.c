/* Decoder, with or without the postfilter. */
#include <stdlib.h>
#include <string.h>

#include "adapter.h"
#include "codec.h"
#include "tables.h"

enum { kMaxPeriod = 140, kPitchWindow = 100, kResidual = kMaxPeriod + kPitchWindow };

typedef struct Postfilter {
    Zep16s inverse[kShortOrder], inverseMemory[kShortOrder]; /* Q14 */
    Zep16s shortTerm[2 * kShortOrder], tilt;                 /* Q14 */
    Zep16s longTermGain, longTermTap, period;                /* Q14 */
    Zep16s residual[kResidual];                              /* oldest first */
    Zep16s speech[kResidual + kVector];                      /* decoded, Q2, oldest first */
    _Alignas(16) unsigned char pitch[176], filter[64];
} Postfilter;

struct G728Decoder {
    Adapter adapter;
    int hasPostfilter;
    Postfilter postfilter;
};

G728Decoder* g728DecoderCreate(int postfilter) {
    G728Decoder* const d = aligned_alloc(16, (sizeof *d + 15) / 16 * 16);
    if (d == NULL) return NULL;
    memset(d, 0, sizeof *d);
    Postfilter* const p = &d->postfilter;
    d->hasPostfilter = postfilter;
    p->longTermGain = 16384;
    p->period = 50;
    if (adapterInit(&d->adapter) != 0 ||
        zepsPostFilterInit_G728_16s((ZepPostFilterState*)p->filter) != zepStsNoErr ||
        zepsPostFilterAdapterStateInit_G728((ZepPostFilterAdapterState*)p->pitch) != zepStsNoErr) {
        free(d);
        return NULL;
    }
    return d;
}

void g728DecoderFree(G728Decoder* decoder) { free(decoder); }

/* Coefficients that follow from the order 10 of a cycle's analysis. */
static void adaptShortTerm(Postfilter* p, const Predictor* predictor) {
    if (!predictor->good) return;
    for (int i = 0; i < kShortOrder; ++i)
        p->inverse[i] = round16(scale32(predictor->a[i], 30 - predictor->scale));
    Zep16s coefficients[2 * kShortOrder];
    if (!expandBandwidth(predictor, g728PostfilterZeroExpansion, kShortOrder, coefficients) ||
        !expandBandwidth(predictor, g728PostfilterPoleExpansion, kShortOrder,
                         coefficients + kShortOrder))
        return;
    memcpy(p->shortTerm, coefficients, sizeof coefficients);
    p->tilt = round16(predictor->reflection * 4915);
}

/* The tap of the long-term postfilter from the decoded speech before the current vector. */
static void adaptLongTerm(Postfilter* p) {
    Zep32s period = 0;
    zepsPitchPeriodExtraction_G728_16s(p->residual + kResidual - kCycle, &period,
                                       (ZepPostFilterAdapterState*)p->pitch);
    p->period = (Zep16s)period;
    Zep64s num = 0, den = 0;
    for (int k = kResidual - kPitchWindow; k < kResidual; ++k) {
        const Zep32s now = p->speech[k] >> 2, past = p->speech[k - period] >> 2;
        num += now * past;
        den += past * past;
    }
    Zep16s tap = 0;
    if (num >= den && den > 0) {
        tap = 16384;
    } else if (num > 0 && den > 0) {
        const int n = normShift(sat32(num), 32), d = normShift(sat32(den), 32);
        const Scaled numerator = {round16(scale32(sat32(num), n)), n},
                     denominator = {round16(scale32(sat32(den), d)), d};
        const Scaled ratio = divide(numerator, denominator);
        tap = sat16(scale32(ratio.word, 14 - ratio.exponent));
    }
    if (tap < 9830) tap = 0;
    p->longTermTap = (Zep16s)((9830 * tap) >> 16);
    const Scaled one = {16384, 14}, sum = {(Zep16s)(p->longTermTap + 16384), 14};
    const Scaled gain = divide(one, sum);
    p->longTermGain = (Zep16s)(gain.word >> (gain.exponent - 14));
}

static void postfilter(Postfilter* p, int count, const Zep16s* speech, Zep16s* filtered) {
    memmove(p->speech, p->speech + kVector, kResidual * sizeof(Zep16s));
    memcpy(p->speech + kResidual, speech, kVector * sizeof(Zep16s));
    memmove(p->residual, p->residual + kVector, (kResidual - kVector) * sizeof(Zep16s));
    Zep16s* const residual = p->residual + kResidual - kVector;
    zepsLPCInverseFilter_G728_16s(p->inverse, speech, residual, p->inverseMemory);
    for (int k = 0; k < kVector; ++k) residual[k] = (Zep16s)((residual[k] + 1) >> 1); /* Q1 */
    if (count == 2) adaptLongTerm(p);
    zepsPostFilter_G728_16s(p->longTermGain, p->longTermTap, p->period, p->tilt, p->shortTerm,
                            p->speech + kResidual, filtered, (ZepPostFilterState*)p->filter);
}

void g728Decode(G728Decoder* decoder, Zep16s code, Zep16s* pcm) {
    G728Decoder* const d = decoder;
    const int count = d->adapter.count, shape = code >> 3 & 127, level = code & 7;
    const Excitation excitation = makeExcitation(adapterGain(&d->adapter), shape, level);
    Zep16s speech[kVector], exponent;
    adapterAdvance(&d->adapter, &excitation, shape, level, speech, &exponent);
    if (!d->hasPostfilter) {
        for (int k = 0; k < kVector; ++k) pcm[k] = round16(scale32(speech[k], 19 - exponent));
        return;
    }
    Zep16s decoded[kVector], filtered[kVector];
    for (int k = 0; k < kVector; ++k) decoded[k] = round16(scale32(speech[k], 18 - exponent));
    postfilter(&d->postfilter, count, decoded, filtered);
    for (int k = 0; k < kVector; ++k) pcm[k] = sat16(filtered[k] * 2);
    if (count == 3) adaptShortTerm(&d->postfilter, &d->adapter.shortPredictor);
}
