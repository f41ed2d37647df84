// The exponential of single arguments where a double is not enough.
//
// x = n ln 2 + 256 s, with the multiple taken off in exact steps; e^s - 1 by its series, and from there eight
// times e^(2s) - 1 = (e^s - 1)^2 + 2 (e^s - 1). Right to 2^-95.
#pragma once

#include "vm/long_exp_tables.h"
#include "vm/long_sums.h"

namespace zpp::ZPP_ISA {

// e^x = value 2^exponent, value in 0.7 .. 1.42.
struct LongExp {
    Long value;
    double exponent;  // an integer, which may have more than 32 bits
};

// |x| < 1500, or an integer below 2^31.
inline LongExp longExp(double x) {
    const double n = (x * 1.44269504088896340736 + kToInteger) - kToInteger;
    Long r = {x, 0};
    r.high -= n * kLnOf2Parts[0];
    for (int i = 1; i < 5; ++i) r = r + Long{-(n * kLnOf2Parts[i]), 0};
    const Long s = scaled(r, 0x1p-8);
    Long less1 = s * polynomial(kLongExpSeries, s);
    for (int i = 0; i < 8; ++i) less1 = scaled(less1, 2) + less1 * less1;
    return {Long{1, 0} + less1, n};
}

}  // namespace zpp::ZPP_ISA
