#include "bench/plain.h"

namespace zpp::plain {

void add(const double* a, const double* b, double* dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = a[i] + b[i];
}
void multiply(const double* a, const double* b, double* dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = a[i] * b[i];
}
void divide(const double* a, const double* b, double* dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = b[i] / a[i];
}
void addConstant(const double* a, double val, double* dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = a[i] + val;
}
void multiplyConstant(const double* a, double val, double* dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = a[i] * val;
}
void addProduct(const double* a, const double* b, double* dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] += a[i] * b[i];
}

void multiply(const Zpp64fc* a, const Zpp64fc* b, Zpp64fc* dst, int len) {
    for (int i = 0; i < len; ++i)
        dst[i] = {a[i].re * b[i].re - a[i].im * b[i].im, a[i].re * b[i].im + a[i].im * b[i].re};
}
void divide(const Zpp64fc* a, const Zpp64fc* b, Zpp64fc* dst, int len) {
    for (int i = 0; i < len; ++i) {
        const double inverse = 1.0 / (a[i].re * a[i].re + a[i].im * a[i].im);
        dst[i] = {(b[i].re * a[i].re + b[i].im * a[i].im) * inverse,
                  (b[i].im * a[i].re - b[i].re * a[i].im) * inverse};
    }
}
void multiplyConstant(const Zpp64fc* a, Zpp64fc val, Zpp64fc* dst, int len) {
    for (int i = 0; i < len; ++i)
        dst[i] = {a[i].re * val.re - a[i].im * val.im, a[i].re * val.im + a[i].im * val.re};
}
void addProduct(const Zpp64fc* a, const Zpp64fc* b, Zpp64fc* dst, int len) {
    for (int i = 0; i < len; ++i) {
        dst[i].re += a[i].re * b[i].re - a[i].im * b[i].im;
        dst[i].im += a[i].re * b[i].im + a[i].im * b[i].re;
    }
}

}  // namespace zpp::plain
