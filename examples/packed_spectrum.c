// The packed spectrum of a real signal, unpacked step by step: packed_spectrum
#include <stdio.h>
#include <stdlib.h>
#include <zeps.h>

enum { ORDER = 3, N = 1 << ORDER };

// packed: R(0), R(N/2), R(1), I(1), R(2), I(2), .. R(N/2-1), I(N/2-1): N numbers.
// bins:   X[0] .. X[N/2] as complex numbers: N/2 + 1 of them, the layout of an "rfft".
static void unpack(const Zep32f* packed, Zep32fc* bins) {
    // The first and the last bin of a real signal are real: no room is spent on their zeros.
    bins[0].re = packed[0];
    bins[0].im = 0;
    bins[N / 2].re = packed[1];
    bins[N / 2].im = 0;
    // The others stand in pairs, as complex numbers do: bin k at the places 2k and 2k + 1.
    for (int k = 1; k < N / 2; ++k) {
        bins[k].re = packed[2 * k];
        bins[k].im = packed[2 * k + 1];
    }
}

int main(void) {
    const Zep32f x[N] = {1, 2, 3, 4, 0, 0, 0, 0};
    Zep32f packed[N];
    Zep32fc bins[N / 2 + 1];
    FFTSpecR32f* fft = NULL;
    ZepStatus status = zepsFFTInitAlloc_R_32f(&fft, ORDER, ZEP_FFT_SCALE_NONE, zepAlgHintNone);
    if (status >= 0) status = zepsFFTFwd_RToPerm_32f(x, packed, fft, NULL);
    if (status < 0) {
        fprintf(stderr, "packed_spectrum: %s\n", zepGetStatusString(status));
        return EXIT_FAILURE;
    }
    unpack(packed, bins);

    printf("packed:");
    for (int n = 0; n < N; ++n) printf(" %7.3f", packed[n]);
    printf("\n");
    for (int k = 0; k <= N / 2; ++k) printf("X[%d] = %7.3f %+7.3fi\n", k, bins[k].re, bins[k].im);
    // The other half mirrors this one.
    for (int k = N / 2 + 1; k < N; ++k)
        printf("X[%d] = %7.3f %+7.3fi, conjugate of X[%d]\n", k, bins[N - k].re, -bins[N - k].im,
               N - k);
    zepsFFTFree_R_32f(fft);
    return EXIT_SUCCESS;
}
