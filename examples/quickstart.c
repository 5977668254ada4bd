#include <stdio.h>
#include <zeps.h>

int main(void) {
    const Zep32f x[8] = {1, 0, -1, 0, 1, 0, -1, 0};  // two cycles in eight samples
    Zep32f spectrum[8];
    FFTSpecR32f* fft = NULL;
    ZepStatus status = zepsFFTInitAlloc_R_32f(&fft, 3, ZEP_FFT_SCALE_NONE, zepAlgHintNone);
    if (status == zepStsNoErr) status = zepsFFTFwd_RToPerm_32f(x, spectrum, fft, NULL);
    if (status == zepStsNoErr) printf("bin 2: %g\n", spectrum[4]);
    zepsFFTFree_R_32f(fft);
    printf("%s\n", zepGetStatusString(status));
    return status != zepStsNoErr;
}
