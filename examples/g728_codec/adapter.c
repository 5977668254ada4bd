/* Backward adaptation and local decoder. */
#include "adapter.h"

#include <string.h>

#include "tables.h"

enum { kLogGainMin = -16384, kLogGainMax = 14336, kLogGainOffset = 16384 };

int windowInit(Window* window, const Zep16s* table, int order, int nonRecursive, int block, int div,
               Zep16s decay) {
    Zep32u size = 0;
    if (zepsWinHybridGetStateSize_G728_16s(order, nonRecursive, block, div, &size) != zepStsNoErr ||
        size > sizeof window->bytes)
        return -1;
    return zepsWinHybridInit_G728_16s(table, order, nonRecursive, block, div, decay,
                                      (ZepWinHybridState*)window->bytes) == zepStsNoErr
               ? 0
               : -1;
}

int adapterInit(Adapter* adapter) {
    memset(adapter, 0, sizeof *adapter);
    for (int i = 0; i < 3; ++i) adapter->logGains[i] = kLogGainMin;
    adapter->gainPredictor[0] = -16384;
    Zep32u size = 0;
    if (zepsSynthesisFilterGetStateSize_G728_16s(&size) != zepStsNoErr ||
        size > sizeof adapter->filter ||
        zepsSynthesisFilterInit_G728_16s((ZepSynthesisFilterState*)adapter->filter) != zepStsNoErr)
        return -1;
    if (windowInit(&adapter->synthesisWindow, g728SynthesisWindow, kOrder, 35, kCycle, kVector,
                   0x3000) != 0)
        return -1;
    return windowInit(&adapter->logGainWindow, g728LogGainWindow, kShortOrder, 20, 4, 0, 0x3000);
}

/* 10^(x / 20) for x in Q9, x >= 0. */
static Scaled powerOfTen(Zep32s x) {
    const Zep32s y = 10 * x + round16(2 * 20649 * x); /* x * log2(10) / 20, Q15 */
    const Zep32s fraction = y & 32767;
    Zep32s t = round16(2 * 323 * fraction + (1874 << 16));
    t = round16(2 * t * fraction + (7866 << 16));
    t = round16(2 * t * fraction + (22702 << 16));
    t = round16(t * fraction + (16384 << 16));
    const Scaled result = {(Zep16s)t, 14 - (y >> 15)};
    return result;
}

Scaled adapterGain(Adapter* adapter) {
    Zep64s sum = 0;
    for (int i = 0; i < kShortOrder; ++i) sum -= adapter->gainPredictor[i] * adapter->logGains[i];
    Zep32s p = sat32(sum) >> 14;
    if (p < kLogGainMin) p = kLogGainMin;
    if (p > kLogGainMax) p = kLogGainMax;
    adapter->predictedLogGain = p;
    return powerOfTen(p + kLogGainOffset);
}

Excitation makeExcitation(Scaled gain, int shape, int level) {
    Excitation e;
    const Zep16s* const y = g728Shape[shape];
    const int shift = vectorShift(y, kVector, 16);
    const Zep16s t = round16(scale32(gain.word * g728Gain[level], g728GainShift[level]));
    for (int k = 0; k < kVector; ++k) e.x[k] = round16(t * (y[k] * (1 << shift)));
    e.gainExponent = (Zep16s)(gain.exponent + 13 + g728GainShift[level] - 16);
    e.shapeShift = (Zep16s)shift;
    return e;
}

int expandBandwidth(const Predictor* predictor, const Zep16s* factors, int order, Zep16s* result) {
    Zep16s expanded[kOrder];
    for (int i = 0; i < order; ++i) {
        const Zep64s product =
            (Zep64s)predictor->a[i] * factors[i] * (1 << (16 - predictor->scale));
        if (product != sat32(product)) return 0;
        expanded[i] = round16((Zep32s)product);
    }
    memcpy(result, expanded, (size_t)order * sizeof *result);
    return 1;
}

static int recurseShort(const Zep16s* lags, Predictor* p) {
    p->good = zepsLevinsonDurbin_G728_16s_Sfs(lags, kShortOrder, p->a, &p->reflection, &p->residual,
                                              &p->scale) == zepStsNoErr;
    return p->good;
}

int shortAnalysis(Window* window, const Zep16s* samples, Predictor* predictor) {
    Zep16s lags[kShortOrder + 1];
    if (zepsWinHybrid_G728_16s(0, samples, lags, (ZepWinHybridState*)window->bytes) != zepStsNoErr)
        return 0;
    return recurseShort(lags, predictor);
}

static void beginSynthesisAnalysis(Adapter* adapter) {
    Predictor* const p = &adapter->predictor;
    p->good = 0;
    if (zepsWinHybridBlock_G728_16s(0, adapter->cycle, adapter->lags,
                                    (ZepWinHybridState*)adapter->synthesisWindow.bytes) ==
        zepStsNoErr)
        recurseShort(adapter->lags, p);
    adapter->shortPredictor = *p;
}

static void endSynthesisAnalysis(Adapter* adapter) {
    Predictor* const p = &adapter->predictor;
    if (!p->good) return;
    if (zepsLevinsonDurbin_G728_16s_ISfs(adapter->lags, kShortOrder, kOrder, p->a, &p->residual,
                                         &p->scale) != zepStsNoErr)
        return;
    expandBandwidth(p, g728SynthesisExpansion, kOrder, adapter->waiting);
}

static void adaptGainPredictor(Adapter* adapter) {
    Zep16s newest[4];
    for (int i = 0; i < 4; ++i) newest[i] = adapter->logGains[3 - i];
    Predictor p;
    if (shortAnalysis(&adapter->logGainWindow, newest, &p))
        expandBandwidth(&p, g728LogGainExpansion, kShortOrder, adapter->gainPredictor);
}

void adapterAdvance(Adapter* adapter, const Excitation* excitation, int shape, int level,
                    Zep16s* speech, Zep16s* exponent) {
    const int count = adapter->count;
    zepsSyntesisFilterZeroInput_G728_16s(
        adapter->synthesis, excitation->x,
        kExcitationScale + excitation->gainExponent + excitation->shapeShift, speech, exponent,
        (ZepSynthesisFilterState*)adapter->filter);
    memcpy(adapter->cycle + kVector * count, speech, kVector * sizeof *speech);
    adapter->cycle[kCycle + count] = *exponent;

    Zep32s logGain = (adapter->predictedLogGain * 128 + g728GainDecibels[level] * 32 +
                      g728ShapeDecibels[shape] * 32) >>
                     7;
    if (logGain < kLogGainMin) logGain = kLogGainMin;
    memmove(adapter->logGains + 1, adapter->logGains, (kShortOrder - 1) * sizeof(Zep16s));
    adapter->logGains[0] = sat16(logGain);

    if (count == 0) {
        endSynthesisAnalysis(adapter);
        adaptGainPredictor(adapter);
    } else if (count == 1) {
        memcpy(adapter->synthesis, adapter->waiting, sizeof adapter->synthesis);
    } else if (count == 3) {
        beginSynthesisAnalysis(adapter);
    }
    adapter->count = (count + 1) % 4;
}
