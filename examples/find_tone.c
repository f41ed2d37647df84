/* Finds the strongest tone of a signal by the FFT, in C89: prints 440 Hz, amplitude 0.500. */
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <zpp.h>

enum { ORDER = 12, LENGTH = 1 << ORDER, RATE = 8192 };

static void check(ZppStatus status) {
    if (status == zppStatusOk) return;
    fprintf(stderr, "%s\n", zppGetStatusString(status));
    exit(EXIT_FAILURE);
}

int main(void) {
    static Zpp64f signal[LENGTH], spectrum[LENGTH + 2]; /* CCS: real and imaginary parts in turn */
    const double pi = acos(-1.0);
    double magnitude, strongest = 0;
    int k, size, peak = 0;
    ZppsFFTSpec* spec;
    Zpp8u* buffer;

    for (k = 0; k < LENGTH; ++k)
        signal[k] = 0.5 * sin(2 * pi * 440 * k / RATE) + 0.25 * cos(2 * pi * 1000 * k / RATE);

    check(zppsFFTInitAlloc_R_64f(&spec, ORDER, 1, 0)); /* flag 1: the forward transform divides by LENGTH */
    check(zppsFFTGetBufSize_R_64f(spec, &size));
    buffer = malloc((size_t)size); /* null would do as well: then the transform allocates what it needs */
    check(zppsFFTFwd_RToCCS_64f(signal, spectrum, spec, buffer));
    free(buffer);
    check(zppsFFTFree_R_64f(spec));

    for (k = 1; k < LENGTH / 2; ++k) {
        magnitude = sqrt(spectrum[2 * k] * spectrum[2 * k] + spectrum[2 * k + 1] * spectrum[2 * k + 1]);
        if (magnitude <= strongest) continue;
        strongest = magnitude;
        peak = k;
    }
    /* A tone shares its amplitude with its mirror image at -peak. */
    printf("%g Hz, amplitude %.3f\n", (double)RATE * peak / LENGTH, 2 * strongest);
    return 0;
}
