// Power spectrum of a long signal by Welch's method, scaled in both usual ways: welch
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <zeps.h>

enum { ORDER = 12, N = 1 << ORDER, LENGTH = 480000 };
static const double rate = 48000, pi = 3.14159265358979323846;

// Ten seconds of a tone of amplitude 0.5 at 3 kHz, and white noise spread evenly over -0.01 .. 0.01.
static void makeSignal(Zep32f* x) {
    unsigned seed = 1;
    for (int n = 0; n < LENGTH; ++n) {
        seed = seed * 1664525u + 1013904223u;
        const double noise = 0.01 * (seed / 2147483648.0 - 1);
        x[n] = (Zep32f)(0.5 * sin(2 * pi * 3000 / rate * n) + noise);
    }
}

int main(void) {
    Zep32f* x = zepsMalloc_32f(LENGTH);
    Zep32f *window = zepsMalloc_32f(N), *spectrum = zepsMalloc_32f(N), *sums = zepsMalloc_32f(N);
    FFTSpecR32f* fft = NULL;
    if (x == NULL || window == NULL || spectrum == NULL || sums == NULL) return EXIT_FAILURE;
    makeSignal(x);

    // Hann window, and the two sums that undo what it takes away.
    double sum = 0, sumOfSquares = 0;
    for (int n = 0; n < N; ++n) {
        window[n] = (Zep32f)(0.5 - 0.5 * cos(2 * pi * n / N));
        sum += window[n];
        sumOfSquares += (double)window[n] * window[n];
    }

    ZepStatus status = zepsFFTInitAlloc_R_32f(&fft, ORDER, ZEP_FFT_SCALE_NONE, zepAlgHintNone);
    if (status >= 0) status = zepsZero_32f(sums, N);
    int blocks = 0;
    for (int start = 0; status >= 0 && start + N <= LENGTH; start += N / 2, ++blocks) {
        zepsMul_32f(x + start, window, spectrum, N);
        status = zepsFFTFwd_RToPerm_32f(spectrum, spectrum, fft, NULL);
        // The squares of all parts, added up; a bin's power is the sum of its two.
        if (status >= 0) status = zepsAddProduct_32f(spectrum, spectrum, sums, N);
    }
    if (status < 0) {
        fprintf(stderr, "welch: %s\n", zepGetStatusString(status));
        return EXIT_FAILURE;
    }

    // By amplitude: a sine of amplitude 1 reads 0 dB. For tones.
    const int k = (int)(3000 / rate * N);
    const double tone = ((double)sums[2 * k] + sums[2 * k + 1]) / blocks * 4 / (sum * sum);
    printf("tone at %.0f Hz: %.2f dB\n", k * rate / N, 10 * log10(tone));

    // By density: power per hertz, one-sided, the same whatever N is. For noise.
    double noise = 0;
    for (int bin = N / 4; bin < N / 2; ++bin) noise += (double)sums[2 * bin] + sums[2 * bin + 1];
    noise = noise / (N / 4) / blocks * 2 / (rate * sumOfSquares);
    printf("noise: %.1f dB per hertz; its variance spread over the band: %.1f\n", 10 * log10(noise),
           10 * log10(0.01 * 0.01 / 3 / (rate / 2)));

    zepsFFTFree_R_32f(fft);
    zepsFree(sums);
    zepsFree(spectrum);
    zepsFree(window);
    zepsFree(x);
    return EXIT_SUCCESS;
}
