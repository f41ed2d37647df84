// A function in 16 intervals, each with a row of a table: c next to its middle, f(c), which is a double to
// 2^-62, f'(c) as a number of 26 bits and another, and the polynomial (f(c + t) - f(c) - f'(c) t) / t^2.
#pragma once

#include "core/simd_lookup.h"
#include "vm/polynomial.h"
#include "vm/sums.h"

namespace zpp::ZPP_ISA {

using RowTable = Table<18, 16>;

// f(x) of the row: the low part is below a fourth of the high one, and right to 2^-53 of itself.
template <class V, class I>
ZPP_INLINE Sum<V> valueOfRow(const RowTable& table, I index, V x) {
    V row[18];
    lookUp(table, index, row);
    const V t = x - row[0];
    V product, low;
    if constexpr (kFuses) {
        product = row[2] * t;
        low = mulAdd(row[2], t, -product);
    } else {
        const V half = firstHalf(t);
        product = row[2] * half;
        low = row[2] * (t - half);
    }
    const Sum<V> sum = sumOf(row[1], product);
    const V slopeRest = mulAdd(t, polynomialFrom<4>(row, t), row[3]);
    return {sum.high, mulAdd(t, slopeRest, sum.low + low)};
}

}  // namespace zpp::ZPP_ISA
