/* What the programs ask of a loaded library, however they came by its functions. */
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "zpp.h"

#define ZPP_USED(use)                                                                            \
    use(zppGetCpuType) use(zppGetStatusString) use(zppsGetLibVersion) use(zppvmGetLibVersion)    \
        use(zppsMalloc_64f) use(zppsFree) use(zppsAdd_64f) use(zppsSubC_64f_I) use(zppsMul_64fc) \
            use(zppsCopy_8u)

#define MEMBER(name) __typeof__(name)* name;
typedef struct {
    ZPP_USED(MEMBER)
} Library;

enum { kMaxLen = 67 };

static int wrongAnswers, answers;

static void expect(int right, const char* what, int len) {
    ++answers;
    if (right) return;
    ++wrongAnswers;
    printf("wrong: %s, length %d\n", what, len);
}

/* Every length up to some unrolled vectors; small whole numbers, so that each result is known and exact. */
static void exerciseLength(const Library* zpp, int len) {
    double* a = zpp->zppsMalloc_64f(3 * len);
    double *b = a + len, *sum = b + len;
    Zpp64fc pair[kMaxLen], square[kMaxLen];
    Zpp8u bytes[kMaxLen + 1], copy[kMaxLen + 1] = {0};
    int i, right;
    expect(a != NULL && (uintptr_t)a % 32 == 0, "zppsMalloc_64f", len);
    if (a == NULL) return;
    for (i = 0; i < len; ++i) {
        a[i] = i + 0.5;
        b[i] = 3.0 * i;
        pair[i].re = i;
        pair[i].im = i + 1;
        bytes[i] = (Zpp8u)(i + 1);
    }
    right = zpp->zppsAdd_64f(a, b, sum, len) == zppStatusOk;
    for (i = 0; i < len; ++i) right &= sum[i] == 4.0 * i + 0.5;
    expect(right, "zppsAdd_64f", len);
    right = zpp->zppsSubC_64f_I(0.5, sum, len) == zppStatusOk;
    for (i = 0; i < len; ++i) right &= sum[i] == 4.0 * i;
    expect(right, "zppsSubC_64f_I", len);
    right = zpp->zppsMul_64fc(pair, pair, square, len) == zppStatusOk;
    for (i = 0; i < len; ++i) right &= square[i].re == -2.0 * i - 1 && square[i].im == 2.0 * i * (i + 1);
    expect(right, "zppsMul_64fc", len);
    right = zpp->zppsCopy_8u(bytes, copy, len) == zppStatusOk;
    expect(right && memcmp(bytes, copy, (size_t)len) == 0 && copy[len] == 0, "zppsCopy_8u", len);
    zpp->zppsFree(a);
}

/* Prints type and column; returns the exit status of the program. */
static int exercise(const Library* zpp) {
    /* Just above the middle of two doubles: rounded to a longer significand first, it becomes the middle. */
    const double one = 1.0, justAboveHalf = 0x1.0000008p-53;
    double sum = 0.0;
    int len;
    for (len = 1; len <= kMaxLen; ++len) exerciseLength(zpp, len);
    expect(zpp->zppsAdd_64f(&one, &justAboveHalf, &sum, 1) == zppStatusOk && sum == 0x1.0000000000001p0,
           "zppsAdd_64f rounds once", 1);
    expect(zpp->zppsAdd_64f(NULL, &one, &sum, 1) == zppStatusNullPointer, "zppsAdd_64f of null", 1);
    expect(strcmp(zpp->zppGetStatusString(zppStatusOk), "No error, it's OK") == 0, "zppGetStatusString", 0);
    expect(memcmp(zpp->zppsGetLibVersion()->targetCpu, zpp->zppvmGetLibVersion()->targetCpu, 4) == 0,
           "one column for both parts", 0);
    printf("type %d column %.4s\n", zpp->zppGetCpuType(), zpp->zppsGetLibVersion()->targetCpu);
    printf("%d answers, %d wrong\n", answers, wrongAnswers);
    return wrongAnswers != 0;
}
