// Sums of two doubles as numbers of some 104 bits, for single arguments. (Dekker, "A floating-point technique
// for extending the available precision", 1971.) Each operation is right to 2^-102 of the larger operand.
#pragma once

#include "vm/exp.h"
#include "vm/sine.h"

namespace zpp::ZPP_ISA {

using Long = Sum<double>;

inline Long operator+(Long a, Long b) {
    const double high = a.high + b.high, back = high - a.high;
    const double lost = (a.high - (high - back)) + (b.high - back);
    return sumOf(high, lost + (a.low + b.low));
}
inline Long operator*(Long a, Long b) {
    const Long product = exactProduct(a.high, b.high);
    return sumOf(product.high, product.low + (a.high * b.low + a.low * b.high));
}
// Where it is exact: by a power of two.
inline Long scaled(Long a, double power) { return {a.high * power, a.low * power}; }

// c[0] + c[1] x + ...
template <int N>
inline Long polynomial(const double (&c)[N][2], Long x) {
    Long sum = {c[N - 1][0], c[N - 1][1]};
    for (int i = N - 2; i >= 0; --i) sum = sum * x + Long{c[i][0], c[i][1]};
    return sum;
}

// To the nearest integer, ties to even, of |a| < 2^52.
inline double rounded(Long a) {
    const double toInteger = a.high < 0 ? -0x1p52 : 0x1p52;
    const double integer = (a.high + toInteger) - toInteger, rest = a.high - integer;
    // Between two integers the lower part decides; beside that it is too small to.
    if (magnitude(rest) >= 0.5 && rest * a.low > 0) return integer + (rest > 0 ? 1 : -1);
    return integer;
}

}  // namespace zpp::ZPP_ISA
