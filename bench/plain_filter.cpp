#include "bench/plain.h"

namespace zpp::plain {

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

// Independent chains, more than the latency of a multiply-add needs.
double multiplyAdds(long long count) {
#ifdef __AVX512F__
    constexpr int lanes = 8;
#elif defined(__AVX__)
    constexpr int lanes = 4;
#else
    constexpr int lanes = 2;
#endif
    constexpr int chains = 10;
    typedef double Vector __attribute__((vector_size(sizeof(double) * lanes)));
    Vector sums[chains], factor = Vector{} + 0.5;
    for (int i = 0; i < chains; ++i) sums[i] = Vector{} + i;  // or the compiler would make them one
    for (long long done = 0; done < count; done += lanes * chains) {
        __asm__("" : "+x"(factor));
#pragma GCC unroll 10
        for (Vector& sum : sums) sum = sum * factor + factor;
    }
    double total = 0;
    for (const Vector& sum : sums)
        for (int i = 0; i < lanes; ++i) total += sum[i];
    return total;
}

}  // namespace zpp::plain
