/* Threads that share specifications of FFT and DCT and have a FIR state or delay lines each. They are
 * released together, before any other call of the library; afterwards one thread alone must get the same
 * bits. With the argument "race" threads share a FIR state, which they must not: a race detector has to
 * report it. */
#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "zpp.h"

enum { kThreads = 8, kRounds = 20, kTaps = 64, kOrder = 10, kLen = 1 << kOrder, kCosines = 1000 };

typedef struct {
    const char* text;
    const ZppLibraryVersion* version;
    double filtered[kLen], packed[kLen], line[2 * kTaps];
    Zpp64fc spectrum[kLen], complexLine[2 * kTaps];
    int index, complexIndex;
} Results;

typedef struct {
    int index;
    Results results;
} Worker;

static pthread_barrier_t barrier;
static ZppsFFTSpec *realSpec, *complexSpec;
static ZppsDCTSpec* cosineSpec;
static ZppsFIRState* sharedState;
static double taps[kTaps];
static Zpp64fc complexTaps[kTaps];

static void need(ZppStatus status) {
    if (status == zppStatusOk) return;
    printf("status %d\n", status);
    exit(1);
}

static ZppsFIRState* makeFilter(void) {
    ZppsFIRState* state;
    need(zppsFIRInitAlloc_64f(&state, taps, kTaps, NULL));
    return state;
}

static void makeSpecs(void) {
    need(zppsFFTInitAlloc_R_64f(&realSpec, kOrder, 2, 0));
    need(zppsFFTInitAlloc_C_64fc(&complexSpec, kOrder, 2, 0));
    need(zppsDCTFwdInitAlloc_64f(&cosineSpec, kCosines, 0));
}

static void freeSpecs(void) {
    need(zppsFFTFree_R_64f(realSpec));
    need(zppsFFTFree_C_64fc(complexSpec));
    need(zppsDCTFwdFree_64f(cosineSpec));
}

/* The same signal goes round by round through filter and transforms, differently for each index. */
static void transform(ZppsFIRState* state, Results* r) {
    int realSize, complexSize, i;
    Zpp8u *realBuffer, *complexBuffer;
    need(zppsFFTGetBufSize_R_64f(realSpec, &realSize));
    need(zppsFFTGetBufSize_C_64fc(complexSpec, &complexSize));
    realBuffer = malloc((size_t)realSize + 1);
    complexBuffer = malloc((size_t)complexSize + 1);
    for (i = 0; i < kRounds; ++i) {
        need(zppsFIR_64f_I(r->filtered, kLen, state)); /* by FFT */
        need(zppsFIR_64f_I(r->filtered, kTaps, state));
        need(zppsFIR_Direct_64f_I(r->filtered, kTaps, taps, kTaps, r->line, &r->index));
        need(zppsFIR_Direct_64fc_I(r->spectrum, kTaps, complexTaps, kTaps, r->complexLine, &r->complexIndex));
        need(zppsFFTFwd_RToPack_64f(r->filtered, r->packed, realSpec, realBuffer));
        need(zppsFFTInv_PackToR_64f(r->packed, r->filtered, realSpec, realBuffer));
        need(zppsDCTFwd_64f(r->filtered, r->filtered, cosineSpec, NULL));
        need(zppsFFTFwd_CToC_64fc(r->spectrum, r->spectrum, complexSpec, complexBuffer));
        need(zppsMulC_64fc_I((Zpp64fc){0.01, 0.02}, r->spectrum, kLen));
    }
    free(realBuffer);
    free(complexBuffer);
}

static void begin(int index, Results* r) {
    int i;
    memset(r, 0, sizeof *r);
    for (i = 0; i < kLen; ++i) {
        r->filtered[i] = (i * 37 + index) % 101 - 50;
        r->spectrum[i].re = r->spectrum[i].im = (i * 53 + index) % 97 - 48;
    }
}

static void* work(void* argument) {
    Worker* worker = argument;
    Results* r = &worker->results;
    ZppsFIRState* state;
    begin(worker->index, r);
    pthread_barrier_wait(&barrier);
    state = makeFilter();
    r->text = zppGetStatusString(worker->index);
    r->version = zppsGetLibVersion();
    if (pthread_barrier_wait(&barrier) == PTHREAD_BARRIER_SERIAL_THREAD) makeSpecs();
    pthread_barrier_wait(&barrier);
    transform(state, r);
    need(zppsFIRFree_64f(state));
    return NULL;
}

/* Its name is in every report of the race: threads begin in it, and it still has to check a status. */
static void* filterBySharedState(void* argument) {
    Worker* worker = argument;
    begin(worker->index, &worker->results);
    need(zppsFIR_64f_I(worker->results.filtered, 16, sharedState));
    return NULL;
}

static void runThreads(void* (*body)(void*), Worker* workers) {
    pthread_t threads[kThreads];
    int i;
    for (i = 0; i < kThreads; ++i) {
        workers[i].index = i;
        if (pthread_create(&threads[i], NULL, body, &workers[i]) != 0) exit(1);
    }
    for (i = 0; i < kThreads; ++i) pthread_join(threads[i], NULL);
}

/* Whether one thread, with specifications of its own, gets what the many did. */
static int sameAlone(const Worker* worker) {
    static Results alone;
    ZppsFIRState* state = makeFilter();
    begin(worker->index, &alone);
    alone.text = zppGetStatusString(worker->index);
    alone.version = zppsGetLibVersion();
    transform(state, &alone);
    need(zppsFIRFree_64f(state));
    return memcmp(&alone, &worker->results, sizeof alone) == 0;
}

int main(int argc, char** argv) {
    static Worker workers[kThreads];
    int i, same = 0;
    for (i = 0; i < kTaps; ++i) complexTaps[i].re = -(complexTaps[i].im = taps[i] = 1.0 / (i + 1));
    if (argc == 2 && strcmp(argv[1], "race") == 0) {
        sharedState = makeFilter();
        runThreads(filterBySharedState, workers);
        need(zppsFIRFree_64f(sharedState));
        return 0;
    }
    pthread_barrier_init(&barrier, NULL, kThreads);
    runThreads(work, workers);
    freeSpecs();
    makeSpecs();
    for (i = 0; i < kThreads; ++i) same += sameAlone(&workers[i]);
    freeSpecs();
    printf("%d of %d threads got the bits that one alone gets\n", same, kThreads);
    return same != kThreads;
}
