/* C89, as old as the headers promise to be. */
#include <zpp.h>

#include <float.h>
#include <stdio.h>

int main(void) {
    const Zpp64fc constant = {0.0, 1.0};
    volatile double subnormal = DBL_MIN / 2; /* not flushed to zero by what the library brings */
    Zpp64fc* x = zppsMalloc_64fc(3);
    int right = subnormal * 0.5 != 0.0 && x != NULL && zppsSet_64fc(constant, x, 3) == zppStatusOk &&
                zppsMul_64fc_I(x, x, 3) == zppStatusOk;
    right = right && x[0].re == -1.0 && x[2].re == -1.0 && x[2].im == 0.0;
    zppsFree(x);
    printf("consumer: %s %s %s\n", right ? "right" : "wrong", zppsGetLibVersion()->Version,
           zppGetStatusString(zppStatusNullPointer));
    return right ? 0 : 1;
}
