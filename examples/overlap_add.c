// A long signal through a long filter, by transforms of short blocks (overlap-add): overlap_add
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <zeps.h>

// A block of L samples and the TAPS - 1 by which the filter prolongs it fit the transform.
enum { ORDER = 9, N = 1 << ORDER, TAPS = 129, L = N - TAPS + 1, LENGTH = 10000 };
static const double pi = 3.14159265358979323846;

static Zep32fc x[LENGTH];          // two real signals at once: one in re, one in im
static Zep32fc y[LENGTH + 2 * N];  // the last blocks reach beyond the signal
static Zep32fc spectrum[N], block[N];
static double taps[TAPS];

// A low pass at a quarter of the sampling rate.
static void makeFilter(void) {
    for (int n = 0; n < TAPS; ++n) {
        const double t = n - (TAPS - 1) / 2;
        const double window = 0.54 - 0.46 * cos(2 * pi * n / (TAPS - 1));
        taps[n] = window * (t == 0 ? 0.5 : sin(pi * t / 2) / (pi * t));
    }
}

static double worstDifference(void) {
    double worst = 0;
    for (int n = 0; n < LENGTH; ++n) {
        double re = 0, im = 0;
        for (int m = 0; m < TAPS && m <= n; ++m) {
            re += taps[m] * x[n - m].re;
            im += taps[m] * x[n - m].im;
        }
        worst = fmax(worst, fmax(fabs(y[n].re - re), fabs(y[n].im - im)));
    }
    return worst;
}

int main(void) {
    makeFilter();
    for (int n = 0; n < LENGTH; ++n) {
        x[n].re = (Zep32f)sin(0.001 * n * n);
        x[n].im = n % 100 == 0;
    }

    // The inverse transform divides by N, the forward one does not: then the product of two
    // spectra is the spectrum of the convolution, without a factor.
    FFTSpecC32fc* fft = NULL;
    int bytes = 0;
    ZepStatus status = zepsFFTInitAlloc_C_32fc(&fft, ORDER, ZEP_FFT_SCALE_INV, zepAlgHintNone);
    // Scratch that is asked for once keeps the calls below from allocating it each time.
    if (status >= 0) status = zepsFFTGetBufSize_C_32fc(fft, &bytes);
    Zep8u* scratch = zepsMalloc_8u(bytes + 1);

    for (int n = 0; n < TAPS; ++n) spectrum[n].re = (Zep32f)taps[n];
    if (status >= 0) status = zepsFFTFwd_CToC_32fc(spectrum, spectrum, fft, scratch);

    for (int start = 0; status >= 0 && start < LENGTH; start += L) {
        const int count = LENGTH - start < L ? LENGTH - start : L;
        zepsCopy_32fc(x + start, block, count);
        zepsZero_32fc(block + count, N - count);
        zepsFFTFwd_CToC_32fc(block, block, fft, scratch);
        zepsMul_32fc_I(spectrum, block, N);
        status = zepsFFTInv_CToC_32fc(block, block, fft, scratch);
        // The ends of neighbouring blocks lie over each other, and add.
        zepsAdd_32fc_I(block, y + start, N);
    }
    if (status < 0) fprintf(stderr, "overlap_add: %s\n", zepGetStatusString(status));
    if (status >= 0)
        printf("differs from the direct sum by less than 1e-6: %s\n",
               worstDifference() < 1e-6 ? "yes" : "no");
    zepsFree(scratch);
    zepsFFTFree_C_32fc(fft);
    return status < 0 ? EXIT_FAILURE : EXIT_SUCCESS;
}
