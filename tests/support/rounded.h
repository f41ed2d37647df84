// Arithmetic for oracles: every result is the exact one, rounded once to a double, whatever unit the compiler
// computes doubles with. The x87 unit would round twice, and keep intermediate results beyond the range of a
// double.
#pragma once

#include "zpp/types.h"

namespace zpp::test {

#ifdef __SSE2_MATH__
using Wide = double;
#else
// With 113 bits, more than twice the 53 of a double, the rounding before the last cannot be seen (Figueroa,
// "When is double rounding innocuous?", 1995).
using Wide = __float128;
#endif
// Compilers know that as well, and would leave out the wider arithmetic: hence volatile.
inline double rounded(Wide x) {
    const volatile Wide kept = x;
    return static_cast<double>(kept);
}

inline double sum(double a, double b) { return rounded(Wide{a} + b); }
inline double difference(double a, double b) { return rounded(Wide{a} - b); }
inline double product(double a, double b) { return rounded(Wide{a} * b); }
inline double quotient(double a, double b) { return rounded(Wide{a} / b); }

inline Zpp64fc sum(Zpp64fc a, Zpp64fc b) { return {sum(a.re, b.re), sum(a.im, b.im)}; }
inline Zpp64fc difference(Zpp64fc a, Zpp64fc b) { return {difference(a.re, b.re), difference(a.im, b.im)}; }
inline Zpp64fc product(Zpp64fc a, Zpp64fc b) {
    return {difference(product(a.re, b.re), product(a.im, b.im)),
            sum(product(a.re, b.im), product(a.im, b.re))};
}
inline Zpp64fc conjugate(Zpp64fc a) { return {a.re, -a.im}; }

}  // namespace zpp::test
