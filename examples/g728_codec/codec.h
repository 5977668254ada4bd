/* G.728 at 16 kbit/s: one code word of 10 bits for 5 samples of 16-bit speech at 8 kHz. */
#ifndef G728_CODEC_H
#define G728_CODEC_H

#include <zeps.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct G728Encoder G728Encoder;
typedef struct G728Decoder G728Decoder;

/* Null if memory is short or the library refuses. */
G728Encoder* g728EncoderCreate(void);
void g728EncoderFree(G728Encoder* encoder);
/* 5 samples to a code word: 8 * shape + gain. */
Zep16s g728Encode(G728Encoder* encoder, const Zep16s* pcm);

/* Without postfilter the speech is that of the recommendation to the bit. With it the library's rule
 * for the period of voices differs: alike to 33 dB on the official sequence. */
G728Decoder* g728DecoderCreate(int postfilter);
void g728DecoderFree(G728Decoder* decoder);
/* A code word, of which the low 10 bits count, to 5 samples. */
void g728Decode(G728Decoder* decoder, Zep16s code, Zep16s* pcm);

#ifdef __cplusplus
}
#endif

#endif
