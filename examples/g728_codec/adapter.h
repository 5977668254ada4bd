/*
 * What encoder and decoder of G.728 at 16 kbit/s share: the local decoder, which turns indices into
 * quantized speech, and the backward adaptation of its synthesis filter and gain predictor.
 *
 * Four vectors of 5 samples make a cycle; `count` is the place in it. The work of adaptation is
 * spread over the cycle in a fixed order, since its results are used at fixed vectors.
 */
#ifndef G728_ADAPTER_H
#define G728_ADAPTER_H

#include "fixed.h"

enum { kVector = 5, kCycle = 20, kOrder = 50, kShortOrder = 10 };

/* Room for a hybrid window of up to 50 lags; the window must not be moved. */
typedef struct Window {
    _Alignas(16) unsigned char bytes[512];
} Window;

/* Predictor coefficients as the recursion gives them: Q(scale). */
typedef struct Predictor {
    int good; /* the recursion succeeded */
    Zep16s scale, residual, reflection;
    Zep16s a[kOrder];
} Predictor;

typedef struct Adapter {
    int count; /* of the coming vector */

    Window synthesisWindow;
    Zep16s cycle[kCycle + 4]; /* the cycle's vectors, then their exponents */
    Zep16s lags[kOrder + 1];
    Predictor predictor;      /* of order 10, then of order 50 */
    Predictor shortPredictor; /* the order 10 of it, for the postfilter */
    Zep16s synthesis[kOrder], waiting[kOrder];
    _Alignas(16) unsigned char filter[144];

    Window logGainWindow;
    Zep16s logGains[kShortOrder]; /* Q9 less 32 dB, newest first */
    Zep16s gainPredictor[kShortOrder];
    Zep32s predictedLogGain;
} Adapter;

/* Starts a stream. Returns 0, or -1 if the library refuses. */
int adapterInit(Adapter* adapter);

/* The excitation gain of the coming vector, which the indices then scale. */
Scaled adapterGain(Adapter* adapter);

/* An excitation, in the pieces of its exponent: kExcitationScale + gainExponent + shapeShift. */
enum { kExcitationScale = 11 - 16 };
typedef struct Excitation {
    Zep16s x[kVector];
    Zep16s gainExponent, shapeShift;
} Excitation;
Excitation makeExcitation(Scaled gain, int shape, int level);

/* Synthesizes a vector and takes it up: log-gain and the adaptation due at this count. */
void adapterAdvance(Adapter* adapter, const Excitation* excitation, int shape, int level,
                    Zep16s* speech, Zep16s* exponent);

/* Helpers of adaptation, also for the weighting filter. */
int windowInit(Window* window, const Zep16s* table, int order, int nonRecursive, int block, int div,
               Zep16s decay);
int expandBandwidth(const Predictor* predictor, const Zep16s* factors, int order, Zep16s* result);
/* Window and recursion of order 10 in one; 0 if there is no usable result. */
int shortAnalysis(Window* window, const Zep16s* samples, Predictor* predictor);

#endif
