/*
 * g728_codec encode|decode|postfilter IN OUT
 *
 * Speech is raw 16-bit PCM at 8 kHz, mono, little-endian; code words stand in 16 bits each.
 * `postfilter` decodes with the postfilter.
 */
#include <stdio.h>
#include <string.h>

#include "codec.h"

static int encode(FILE* in, FILE* out) {
    G728Encoder* const encoder = g728EncoderCreate();
    Zep16s pcm[5], code;
    int ok = encoder != NULL;
    while (ok && fread(pcm, sizeof pcm, 1, in) == 1) {
        code = g728Encode(encoder, pcm);
        ok = fwrite(&code, sizeof code, 1, out) == 1;
    }
    g728EncoderFree(encoder);
    return ok;
}

static int decode(FILE* in, FILE* out, int postfilter) {
    G728Decoder* const decoder = g728DecoderCreate(postfilter);
    Zep16s pcm[5], code;
    int ok = decoder != NULL;
    while (ok && fread(&code, sizeof code, 1, in) == 1) {
        g728Decode(decoder, code, pcm);
        ok = fwrite(pcm, sizeof pcm, 1, out) == 1;
    }
    g728DecoderFree(decoder);
    return ok;
}

int main(int argc, char** argv) {
    const char* const task = argc == 4 ? argv[1] : "";
    const int encodes = strcmp(task, "encode") == 0, filters = strcmp(task, "postfilter") == 0;
    if (!encodes && !filters && strcmp(task, "decode") != 0) {
        fprintf(stderr, "usage: g728_codec encode|decode|postfilter IN OUT\n");
        return 2;
    }
    FILE* const in = fopen(argv[2], "rb");
    FILE* const out = in != NULL ? fopen(argv[3], "wb") : NULL;
    if (out == NULL) {
        perror(in == NULL ? argv[2] : argv[3]);
        if (in != NULL) fclose(in);
        return 1;
    }
    int ok = encodes ? encode(in, out) : decode(in, out, filters);
    ok &= !ferror(in);
    fclose(in);
    ok &= fclose(out) == 0;
    if (!ok) fprintf(stderr, "g728_codec: failed\n");
    return !ok;
}
