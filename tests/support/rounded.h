// Arithmetic for oracles: every result is the exact one, rounded once to a double, whatever unit the compiler
// computes doubles with; and a type of higher precision, with a measure of errors against it.
#pragma once

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>

#include "tests/support/x87.h"
#include "zpp/types.h"

namespace zpp::test {

// Of higher precision: 113 bits, or 64 where clang has no __float128 that works.
#if defined(__clang__) && !defined(__x86_64__)
using Wide = long double;
#else
using Wide = __float128;
#endif

#ifdef __SSE2_MATH__
inline double rounded(double x) { return x; }
using Operand = double;
#else
// The x87 unit would round twice, and keep intermediate results beyond the range of a double. With 113 bits,
// more than twice the 53 of a double, the rounding before the last cannot be seen (Figueroa, "When is double
// rounding innocuous?", 1995). Compilers know that as well, and would leave out the wider arithmetic: hence
// volatile.
using Operand = Wide;
inline double rounded(Wide x) {
    const volatile Wide kept = x;
    return static_cast<double>(kept);
}
#endif

inline double sum(double a, double b) { return rounded(Operand{a} + b); }
inline double difference(double a, double b) { return rounded(Operand{a} - b); }
inline double product(double a, double b) { return rounded(Operand{a} * b); }
inline double quotient(double a, double b) { return rounded(Operand{a} / b); }

inline double squareRoot(double x) {
#ifndef __SSE2_MATH__
    const X87ControlWord word(0x27F);  // 113 bits would do as well, and have no root here
#endif
    const volatile double root = std::sqrt(x);
    return root;
}

inline Zpp64fc sum(Zpp64fc a, Zpp64fc b) { return {sum(a.re, b.re), sum(a.im, b.im)}; }
inline Zpp64fc difference(Zpp64fc a, Zpp64fc b) { return {difference(a.re, b.re), difference(a.im, b.im)}; }
inline Zpp64fc product(Zpp64fc a, Zpp64fc b) {
    return {difference(product(a.re, b.re), product(a.im, b.im)),
            sum(product(a.re, b.im), product(a.im, b.re))};
}
inline Zpp64fc product(double a, Zpp64fc b) { return {product(a, b.re), product(a, b.im)}; }
inline Zpp64fc conjugate(Zpp64fc a) { return {a.re, -a.im}; }

// The largest error of finite results, in units of the last place of the true value, and its argument.
struct WorstError {
    double ulps = -1, argument = 0;

    void add(double x, double actual, Wide expected) {
        const int exponent = std::max(std::ilogb(static_cast<double>(expected)), DBL_MIN_EXP - 1);
        // In full, though half of the least subnormal number is no double.
        const int more = exponent < 0 ? 200 : 0;
        const double distance = static_cast<double>((Wide{actual} - expected) * Wide{more > 0 ? 0x1p200 : 1});
        const double error = std::fabs(std::ldexp(distance, DBL_MANT_DIG - 1 - exponent - more));
        if (error <= ulps) return;
        ulps = std::isnan(error) ? std::numeric_limits<double>::infinity() : error;
        argument = x;
    }
};

}  // namespace zpp::test
