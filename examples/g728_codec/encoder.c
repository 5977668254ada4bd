/* Encoder: analysis by synthesis in the perceptually weighted domain. */
#include <stdlib.h>
#include <string.h>

#include "adapter.h"
#include "codec.h"
#include "tables.h"

struct G728Encoder {
    Adapter adapter;
    Window weightingWindow;
    Zep16s newest[kCycle];           /* input, Q2, oldest first */
    Zep16s weights[2 * kShortOrder]; /* zero section, pole section, Q14 */
    Zep16s impulse[kVector];         /* of the cascade, Q13 */
    Zep16s energies[128];
    _Alignas(16) unsigned char inputFilter[64], cascade[208];
};

static ZepCombinedFilterState* cascadeOf(G728Encoder* e) {
    return (ZepCombinedFilterState*)e->cascade;
}
static ZepIIR16sState* inputFilterOf(G728Encoder* e) { return (ZepIIR16sState*)e->inputFilter; }

/* Impulse response of synthesis and weighting filter in cascade, and the energies that follow. */
static void updateImpulseResponse(G728Encoder* e) {
    const Zep16s* const a = e->adapter.synthesis;
    const Zep16s* const b = e->weights;
    const Zep16s* const c = e->weights + kShortOrder;
    Zep16s f[kVector] = {8192}, h[kVector] = {8192};
    for (int n = 1; n < kVector; ++n) {
        Zep64s synthesis = 0, weighting = 0;
        for (int k = 0; k < n; ++k) {
            synthesis -= a[k] * f[n - 1 - k];
            weighting += (Zep64s)b[k] * f[n - 1 - k] - (Zep64s)c[k] * h[n - 1 - k];
        }
        f[n] = sat16(synthesis >> 14);
        h[n] = sat16((synthesis + weighting) >> 14);
    }
    memcpy(e->impulse, h, sizeof h);
    zepsImpulseResponseEnergy_G728_16s(h, e->energies);
}

static void adaptWeights(G728Encoder* e) {
    Predictor p;
    Zep16s weights[2 * kShortOrder];
    if (!shortAnalysis(&e->weightingWindow, e->newest, &p)) return;
    if (expandBandwidth(&p, g728WeightingZeroExpansion, kShortOrder, weights) &&
        expandBandwidth(&p, g728WeightingPoleExpansion, kShortOrder, weights + kShortOrder))
        memcpy(e->weights, weights, sizeof weights);
}

G728Encoder* g728EncoderCreate(void) {
    G728Encoder* const e = aligned_alloc(16, (sizeof *e + 15) / 16 * 16);
    if (e == NULL) return NULL;
    memset(e, 0, sizeof *e);
    if (adapterInit(&e->adapter) != 0 ||
        windowInit(&e->weightingWindow, g728WeightingWindow, kShortOrder, 30, kCycle, 0, 0x2000) !=
            0 ||
        zepsIIR16sInit_G728_16s(inputFilterOf(e)) != zepStsNoErr ||
        zepsCombinedFilterInit_G728_16s(cascadeOf(e)) != zepStsNoErr) {
        free(e);
        return NULL;
    }
    updateImpulseResponse(e);
    return e;
}

void g728EncoderFree(G728Encoder* encoder) { free(encoder); }

/* The target in the gain's scale, correlated with the impulse response: Q7. */
static void correlateTarget(const G728Encoder* e, Scaled gain, Zep16s* target,
                            Zep16s* correlation) {
    const Scaled one = {16384, 14};
    const Scaled inverse = divide(one, gain);
    for (int k = 0; k < kVector; ++k) target[k] = (Zep16s)((inverse.word * target[k]) >> 15);
    const int shift = vectorShift(target, kVector, 16);
    const int exponent = 2 + inverse.exponent - 15 + shift;
    for (int k = 0; k < kVector; ++k) target[k] = sat16(scale32(target[k], shift));
    for (int k = 0; k < kVector; ++k) {
        Zep64s sum = 0;
        for (int j = k; j < kVector; ++j) sum += target[j] * e->impulse[j - k];
        correlation[k] = sat16(scale32(sat32(sum), 7 - 13 - exponent));
    }
}

Zep16s g728Encode(G728Encoder* encoder, const Zep16s* pcm) {
    G728Encoder* const e = encoder;
    const int count = e->adapter.count;
    Zep16s x[kVector], weighted[kVector], ringing[kVector], target[kVector], correlation[kVector];
    for (int k = 0; k < kVector; ++k) x[k] = (Zep16s)(pcm[k] >> 1);
    memmove(e->newest, e->newest + kVector, (kCycle - kVector) * sizeof(Zep16s));
    memcpy(e->newest + kCycle - kVector, x, sizeof x);

    const Scaled gain = adapterGain(&e->adapter);
    zepsCombinedFilterZeroInput_G728_16s(e->adapter.synthesis, e->weights, ringing, cascadeOf(e));
    zepsIIR16s_G728_16s(e->weights, x, weighted, inputFilterOf(e));
    for (int k = 0; k < kVector; ++k) target[k] = sat16(weighted[k] - ringing[k]);
    correlateTarget(e, gain, target, correlation);

    Zep32s shape = 0, level = 0;
    Zep16s code = 0;
    zepsCodebookSearch_G728_16s(correlation, e->energies, &shape, &level, &code, ZEP_SPCHBR_16000);

    const Excitation excitation = makeExcitation(gain, shape, level);
    zepsCombinedFilterZeroState_G728_16s(e->adapter.synthesis, e->weights, excitation.x,
                                         kExcitationScale, &excitation.gainExponent,
                                         &excitation.shapeShift, cascadeOf(e));
    Zep16s speech[kVector], exponent;
    adapterAdvance(&e->adapter, &excitation, shape, level, speech, &exponent);
    if (count == 1) {
        adaptWeights(e);
        updateImpulseResponse(e);
    }
    return code;
}
