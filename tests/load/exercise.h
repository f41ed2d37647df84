/* What the programs ask of a loaded library, however they came by its functions. */
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "slot.h"
#include "zpp.h"

#define ZPP_USED(use)                                                                            \
    use(zppGetCpuType) use(zppGetStatusString) use(zppsGetLibVersion) use(zppvmGetLibVersion)    \
        use(zppsMalloc_64f) use(zppsFree) use(zppsAdd_64f) use(zppsSubC_64f_I) use(zppsMul_64fc) \
            use(zppsCopy_8u) use(zppSetFlushToZero) use(zppSetDenormAreZeros)

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

/* Small whole numbers, so that each result is known and exact. */
static void exerciseLength(const Library* zpp, int len) {
    double* a = zpp->zppsMalloc_64f(3 * len);
    double *b = a + len, *sum = b + len;
    Zpp64fc pair[kMaxLen];
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
    right &= zpp->zppsSubC_64f_I(0.5, sum, len) == zppStatusOk;
    right &= zpp->zppsMul_64fc(pair, pair, pair, len) == zppStatusOk;
    right &= zpp->zppsCopy_8u(bytes, copy, len) == zppStatusOk && memcmp(bytes, copy, (size_t)len) == 0;
    for (i = 0; i < len; ++i)
        right &= sum[i] == 4.0 * i && pair[i].re == -2.0 * i - 1 && pair[i].im == 2.0 * i * (i + 1);
    expect(right && copy[len] == 0, "sum, difference, product or copy", len);
    zpp->zppsFree(a);
}

/* Prints what the setters return. A refusal leaves the word alone; else it tells of the mask, which is set
 * when a process begins. */
static void exerciseControl(const Library* zpp) {
    Zpp32u word = 7;
    const ZppStatus flush = zpp->zppSetFlushToZero(1, &word), denormals = zpp->zppSetDenormAreZeros(1);
    const Zpp32u expected = flush == zppStatusOk ? 0x800 : 7, before = word;
    expect(zpp->zppSetFlushToZero(0, &word) == flush && zpp->zppSetDenormAreZeros(0) == denormals,
           "off as on", 0);
    expect(before == expected && word == expected, "word of zppSetFlushToZero", 0);
    printf("flush to zero %d, denormals are zero %d\n", flush, denormals);
}

static void printVersion(const ZppLibraryVersion* v) {
    printf("%d.%d.%d.%d %.4s %s %s %s\n", v->major, v->minor, v->majorBuild, v->build, v->targetCpu, v->Name,
           v->Version, v->BuildDate);
}

/* Prints type, column and versions; returns the exit status of the program. */
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
    printLead("zppsAdd_64f", (uintptr_t)zpp->zppsAdd_64f);
    printf("type %d\n", zpp->zppGetCpuType());
    printVersion(zpp->zppsGetLibVersion());
    printVersion(zpp->zppvmGetLibVersion());
    exerciseControl(zpp);
    printf("%d answers, %d wrong\n", answers, wrongAnswers);
    return wrongAnswers != 0;
}
