// The loops that a user would write, compiled with -O3 -march=native.
#pragma once

#include "zpp/types.h"

namespace zpp::plain {

void add(const double* a, const double* b, double* dst, int len);
void multiply(const double* a, const double* b, double* dst, int len);
void divide(const double* a, const double* b, double* dst, int len);
void addConstant(const double* a, double val, double* dst, int len);
void multiplyConstant(const double* a, double val, double* dst, int len);
void addProduct(const double* a, const double* b, double* dst, int len);

void multiply(const Zpp64fc* a, const Zpp64fc* b, Zpp64fc* dst, int len);
void divide(const Zpp64fc* a, const Zpp64fc* b, Zpp64fc* dst, int len);
void multiplyConstant(const Zpp64fc* a, Zpp64fc val, Zpp64fc* dst, int len);
void addProduct(const Zpp64fc* a, const Zpp64fc* b, Zpp64fc* dst, int len);

void copy(const double* a, double* dst, int len);
void set(double val, double* dst, int len);
void set(Zpp64fc val, Zpp64fc* dst, int len);
void flip(const double* a, double* dst, int len);
void flip(double* a, int len);

// y[n] = sum over k of h[k] x[n-k]; x has tapsLen - 1 older samples before it.
void fir(const double* x, double* y, int len, const double* h, int tapsLen);
void fir(const Zpp64fc* x, Zpp64fc* y, int len, const Zpp64fc* h, int tapsLen);

// About `count` products added up, as fast as the processor multiplies and adds.
double multiplyAdds(long long count);

}  // namespace zpp::plain
