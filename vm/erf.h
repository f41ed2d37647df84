// The error function.
//
// By a polynomial of degree 15 in each of 16 intervals of |x|, narrow where the result is small; from 6 on it
// is 1. (Intervals with nearly exact values: Gal, "Computing elementary functions", 1986.)
//
// Error: the first two terms are exact, the others have a few roundings of 2^-8 of the result: .53 units in
// the last place.
#pragma once

#include "core/checks.h"
#include "vm/erf_tables.h"
#include "vm/exp.h"
#include "vm/row.h"

namespace zpp::ZPP_ISA {

inline constexpr RowTable kErfTable(kErfRows);

// erf x of x >= 0; NaN of NaN. Below 2^-960 the product has lost bits.
template <class V>
ZPP_INLINE Sum<V> erfSum(V x) {
    using I = Vec<int64_t, sizeof(V) / 8>;
    const V cut = min(broadcast<V>(6.0), x);
    const I index = bitCast<I>(asUnsigned(bitCast<I>(cut + 0.5)) >> 50);
    return valueOfRow(kErfTable, index, cut);
}

struct Erf {
    static constexpr const char* kName = "";
    static constexpr int kSources = 1, kDestinations = 1;

    template <class V>
    ZPP_INLINE static auto run(const V (&x)[1], V (&y)[1]) {
        const V size = magnitude(x[0]);
        const Sum<V> sum = erfSum(size);
        y[0] = withSignOfArgument(x[0], sum.high + sum.low);
        return allHeld(0 < size, size < 0x1p-960);
    }

    // Scaled, which leaves the function linear.
    static ZppStatus special(const double* x, double* y) {
        const double size = magnitude(*x);
        const Sum<double> sum = erfSum(size < 0x1p-1022 ? ofSubnormal(size) * 0x1p-874 : size * 0x1p200);
        *y = withSignOfArgument(*x, scaledOnce(sum.high, sum.low, -200));
        return zppStatusOk;
    }
};

}  // namespace zpp::ZPP_ISA
