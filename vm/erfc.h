// The complementary error function.
//
// Of |x| it is e^(-x^2) g, x^2 in two parts and g = e^(x^2) erfc |x| by a polynomial of degree 15 in each of
// 16 intervals; of a negative x it is 2 less that.
//
// Error: the first two terms of g are exact and so is their product with the head of the exponential; what
// that lacks, at most 2^-4 of it, has a few roundings: .62 units in the last place.
#pragma once

#include "core/checks.h"
#include "vm/erfc_tables.h"
#include "vm/exp.h"
#include "vm/row.h"

namespace zpp::ZPP_ISA {

inline constexpr RowTable kErfcTable(kErfcRows);

// e^(-x^2) in parts, and e^(x^2) erfc x, 0 <= x < 28.
template <class V>
struct ErfcFactors {
    using I = Vec<int64_t, sizeof(V) / 8>;
    ExpParts<V> exponential;
    Sum<V> g;

    ZPP_INLINE explicit ErfcFactors(V x) : ErfcFactors(x, x, squareOf(x)) {}
    // With the row of another number.
    ZPP_INLINE ErfcFactors(V x, V near) : ErfcFactors(x, near, squareOf(x)) {}
    ZPP_INLINE ErfcFactors(V x, V near, const Sum<V>& square)
        : exponential(-square.high, -square.low),
          g(valueOfRow(kErfcTable, bitCast<I>(asUnsigned(bitCast<I>(near + 1.75)) >> 50), x)) {}

    // The product, of the table's number and what it lacks, scaled.
    ZPP_INLINE Sum<V> product(V head, V tail) const {
        const V more = mulAdd(head, exponential.p, tail);
        if constexpr (kFuses) {
            const Sum<V> first = exactProduct(head, g.high);
            return {first.high, mulAdd(more, g.high + g.low, mulAdd(head, g.low, first.low))};
        } else {
            const V a = firstHalf(head), b = firstHalf(g.high), bMore = (g.high - b) + g.low;
            return {a * b, a * bMore + ((head - a) + more) * (b + bMore)};
        }
    }
};

struct Erfc {
    static constexpr const char* kName = "";
    static constexpr int kSources = 1, kDestinations = 1;
    static constexpr double kMost = 25.5;  // the errors of products are normal numbers

    template <class V>
    ZPP_INLINE static auto run(const V (&x)[1], V (&y)[1]) {
        using I = Vec<int64_t, sizeof(V) / 8>;
        const ErfcFactors<V> factors(min(magnitude(x[0]), broadcast<V>(kMost)));
        const ExpParts<V>& e = factors.exponential;
        Sum<V> product;
        if constexpr (kFuses) {
            product = factors.product(plusBits(e.head, e.k << 48), V{});
        } else {
            const V power = e.power();
            product = factors.product(e.head * power, e.tail * power);
        }
        const I sign = bitCast<I>(x[0]) & INT64_MIN;
        const V from = bitCast<V>(bitCast<I>(asUnsigned(sign) >> 1));  // 0 or 2, from its bit
        const V high = exclusiveOr(product.high, bitCast<V>(sign)),
                low = exclusiveOr(product.low, bitCast<V>(sign));
        const Sum<V> sum = sumOf(from, high);
        y[0] = sum.high + (sum.low + low);
        return (x[0] <= kMost) == 0;
    }

    static ZppStatus special(const double* x, double* y) {
        if (*x != *x || *x > kMostFinite) {
            *y = *x > 0 ? 0 : *x + *x;
            return zppStatusOk;
        }
        const ErfcFactors<double> factors(min(*x, 27.5), 26.0);  // the last row has all of these
        const ExpParts<double>& e = factors.exponential;
        const Sum<double> product = factors.product(e.number(), e.tail);
        *y = scaledOnce(product.high, product.low, static_cast<int>(e.k) >> e.kBits);
        return *y == 0 ? zppStatusUnderflow : zppStatusOk;
    }
};

}  // namespace zpp::ZPP_ISA
