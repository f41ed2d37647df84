// The convolution that a user would write, compiled with -O3 -march=native.
#pragma once

#include "zpp/types.h"

namespace zpp::peers {

// y[n] = sum over k of h[k] x[n-k]; x has tapsLen - 1 older samples before it.
void fir(const double* x, double* y, int len, const double* h, int tapsLen);
void fir(const Zpp64fc* x, Zpp64fc* y, int len, const Zpp64fc* h, int tapsLen);

}  // namespace zpp::peers
