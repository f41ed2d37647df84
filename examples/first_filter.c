/* Three taps of one each sum the last three samples: prints 1 2 3 3 3 3 3 3. */
#include <stdio.h>
#include <zpp.h>

int main(void) {
    const Zpp64f taps[3] = {1, 1, 1}, signal[8] = {1, 1, 1, 1, 1, 1, 1, 1};
    Zpp64f filtered[8];
    ZppsFIRState* state;
    ZppStatus status = zppsFIRInitAlloc_64f(&state, taps, 3, NULL);
    if (status != zppStatusOk) {
        fprintf(stderr, "%s\n", zppGetStatusString(status));
        return 1;
    }
    zppsFIR_64f(signal, filtered, 8, state);
    for (int i = 0; i < 8; ++i) printf("%g%c", filtered[i], i < 7 ? ' ' : '\n');
    zppsFIRFree_64f(state);
    return 0;
}
