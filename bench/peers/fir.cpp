#include "bench/peers/fir.h"

namespace zpp::peers {

void fir(const double* x, double* y, int len, const double* h, int tapsLen) {
    for (int n = 0; n < len; ++n) {
        double sum = 0;
        for (int k = 0; k < tapsLen; ++k) sum += h[k] * x[n - k];
        y[n] = sum;
    }
}
void fir(const Zpp64fc* x, Zpp64fc* y, int len, const Zpp64fc* h, int tapsLen) {
    for (int n = 0; n < len; ++n) {
        Zpp64fc sum = {0, 0};
        for (int k = 0; k < tapsLen; ++k) {
            sum.re += h[k].re * x[n - k].re - h[k].im * x[n - k].im;
            sum.im += h[k].re * x[n - k].im + h[k].im * x[n - k].re;
        }
        y[n] = sum;
    }
}

}  // namespace zpp::peers
