// The decimal logarithm: as the natural one in vm/ln.h, of the same intervals, with log10 of 2 and of c, and
// the product r / ln 10 in two parts.
//
// Error: .55 units in the last place.
#pragma once

#include "vm/ln.h"
#include "vm/log10_tables.h"
#include "vm/sums.h"

namespace zpp::ZPP_ISA {

inline constexpr Table<2, 16> kLog10Table(kLog10Inverse, kLog10Log);
inline constexpr Table<4, 128> kLog10FineTable(kLnFineInverse, kLog10FineLog, kLog10FineTail, kZeros.at);

// log10(2^-kScaled x) of positive normal numbers.
template <int kScaled, class V>
ZPP_INLINE V log10Ordinary(V x) {
    const V perLn = broadcast<V>(kLog10PerLnHigh), perLnLow = broadcast<V>(kLog10PerLnLow);
    if constexpr (kFuses) {
        const LnParts<4, kScaled, V> parts(x);
        V row[2];
        lookUp(kLog10Table, parts.index, row);
        const V t = parts.z * row[0], e = mulAdd(parts.z, row[0], -t), r = t - 1.0;
        const Sum<V> linear = exactProduct(r, perLn);
        const Sum<V> sum = sumOf(mulAdd(parts.k, broadcast<V>(kLog10Of2High), row[1]), linear.high);
        const V rest = mulSubFrom(r, e, e);
        const V small = mulAdd(rest, perLn, mulAdd(r, perLnLow, linear.low));
        const V low = sum.low + mulAdd(parts.k, broadcast<V>(kLog10Of2Low), small);
        return sum.high + mulAdd(r * r, polynomial(kLog10Polynomial, r), low);
    } else {
        const LnParts<7, kScaled, V> parts(x);
        V row[4];
        lookUp(kLog10FineTable, parts.index, row);
        const Sum<V> r = parts.ratio(row[0]);
        const V first = firstHalf(r.high);
        const Sum<V> sum = sumOf(parts.k * kLog10Of2High + row[1], first * kLog10PerLnHalf);
        const V small = ((r.high - first) + r.low) * perLn + first * (perLn - kLog10PerLnHalf + perLnLow);
        const V low = sum.low + (parts.k * kLog10Of2Low + (row[2] + small));
        return sum.high + (low + r.high * r.high * polynomial(kLog10FinePolynomial, r.high));
    }
}

struct Log10 : Logarithm<Log10> {
    template <int kScaled, class V>
    ZPP_INLINE static V ordinary(V x) {
        return log10Ordinary<kScaled>(x);
    }
};

}  // namespace zpp::ZPP_ISA
