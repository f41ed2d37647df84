// The logarithm of positive integers of 31 bits where a double is not enough.
//
// As in vm/ln.h, with the rows of 128 intervals: the product with an inverse of 20 bits is exact, and of
// ln(1 + r) = r (1 - r / 2 + r^2 / 3 - ...) three terms are sums of two numbers. Right to 2^-85.
#pragma once

#include "vm/ln.h"
#include "vm/long_ln_tables.h"
#include "vm/long_sums.h"

namespace zpp::ZPP_ISA {

inline Long longLn(int32_t x) {
    const LnParts<7, 0, double> parts(static_cast<double>(x));
    double row[4];
    lookUp(kLnFineTable, parts.index, row);
    const double r = parts.z * row[0] - 1;
    Long sum = {r * polynomial(kLongLnRest, r), 0};
    for (int i = 2; i >= 0; --i) sum = (sum + Long{kLongLnFirst[i][0], kLongLnFirst[i][1]}) * Long{r, 0};
    return Long{parts.k * kLnOf2High + row[1], parts.k * kLnOf2Low + row[2]} + sum;
}

}  // namespace zpp::ZPP_ISA
