// The inverse hyperbolic functions: logarithms of sums and quotients, each computed in two parts.
//
// acosh x = ln(x + s), s = sqrt((x - 1)(x + 1)); asinh x = ln(x + s), s = sqrt(x^2 + 1), next to 0 a
// polynomial; atanh x = ln(q) / 2, q = (1 + x) / (1 - x). The last place of a root or quotient is followed by
// what it lacks: the rest of its square or product, which is exact, by an inverse that is right to 9 bits, or
// by (q + 1) / 2 = 1 / (1 - x).
//
// Error: .54 units in the last place.
#pragma once

#include "vm/inverse_hyperbolic_tables.h"
#include "vm/ln.h"
#include "vm/sums.h"

namespace zpp::ZPP_ISA {

// ln(x + more), x in 1 .. 2^1000, |more| a few units in its last place.
template <class V>
ZPP_INLINE V lnOfSum(V x, V more) {
    using I = Vec<int64_t, sizeof(V) / 8>;
    const LnParts<kFuses ? 4 : 7, 0, V> parts(x);
    more = more * parts.scale();
    if constexpr (kFuses) {
        V row[2];
        lookUp(kLnTable, parts.index, row);
        const V t = parts.z * row[0], r = t - 1.0;
        const V e = mulAdd(more, row[0], mulAdd(parts.z, row[0], -t)), both = r + e;
        const Sum<V> sum = sumOf(mulAdd(parts.k, broadcast<V>(kLnOf2High), row[1]), r);
        const V low = sum.low + mulAdd(parts.k, broadcast<V>(kLnOf2Low), e);
        return sum.high + mulAdd(both * both, polynomial(kLnPolynomial, both), low);
    } else {
        V row[4];
        lookUp(kLnFineTable, parts.index, row);
        const V zHigh = bitCast<V>(bitCast<I>(parts.z) & ~int64_t{0xFFFFF});
        const Sum<V> r = sumOf(zHigh * row[0] - 1.0, ((parts.z - zHigh) + more) * row[0]);
        const Sum<V> sum = sumOf(parts.k * kLnOf2High + row[1], r.high);
        const V low = sum.low + (parts.k * kLnOf2Low + (row[2] + r.low));
        return sum.high + (low + r.high * r.high * polynomial(kLnFinePolynomial, r.high));
    }
}

// What the root of v + more has behind that of v.
template <class V>
ZPP_INLINE V restOfRoot(V v, V more, V root) {
    using I = Vec<int64_t, sizeof(V) / 8>;
    // Right to 1/20 by the bits, and by Newton's step, with a constant that halves its largest error.
    const V rough = bitCast<V>(0x7FDE624DD2F1A9FC - asUnsigned(bitCast<I>(root)));
    const V inverse = rough * mulSubFrom(root, rough, broadcast<V>(2.00127));
    return (lessProduct(v, root, root) + more) * (0.5 * inverse);
}

template <class F>
struct InverseHyperbolic {
    static constexpr const char* kName = "";
    static constexpr int kSources = 1, kDestinations = 1;
    static constexpr double kMost = 0x1p500;  // its square is finite

    // The logarithm of 2 |x|, which asinh and acosh are for large x, and infinity.
    static double ofHuge(double x) { return x <= Ln::kMost ? lnOrdinary<-1>(x) : x; }
};

struct Acosh : InverseHyperbolic<Acosh> {
    template <class V>
    ZPP_INLINE static auto run(const V (&x)[1], V (&y)[1]) {
        const V less = x[0] - 1.0;
        const Sum<V> more = sumOf(x[0], broadcast<V>(1));
        const V v = less * more.high, s = squareRoot(v);
        const V rest = restOfRoot(v, mulAdd(less, more.low, -lessProduct(v, less, more.high)), s);
        const Sum<V> sum = sumOf(x[0], s);
        y[0] = lnOfSum(sum.high, sum.low + rest);
        return whereNot(x[0] > 1, x[0] <= kMost);
    }
    static ZppStatus special(const double* x, double* y) {
        const bool outside = *x < 1;
        *y = outside ? quietNan<double>() : *x > 1 ? ofHuge(*x) : *x - 1;  // of 1, or a NaN
        return outside ? zppStatusDomain : zppStatusOk;
    }
};

struct Asinh : InverseHyperbolic<Asinh> {
    template <class V>
    ZPP_INLINE static auto run(const V (&x)[1], V (&y)[1]) {
        const V size = magnitude(x[0]), square = size * size;
        const V v = mulAdd(size, size, broadcast<V>(1)), s = squareRoot(v);
        const Sum<V> sum = sumOf(s, size);
        const V large = lnOfSum(sum.high, sum.low + restOfRoot(v, -lessProduct(v - 1, size, size), s));
        const V small = mulAdd(size * square, polynomial(kAsinhPolynomial, square), size);
        y[0] = withSignOfArgument(x[0], select(size < 0.0625, small, large));
        return (size <= kMost) == 0;
    }
    static ZppStatus special(const double* x, double* y) {
        *y = *x != *x ? *x + *x : __builtin_copysign(ofHuge(magnitude(*x)), *x);
        return zppStatusOk;
    }
};

struct Atanh : InverseHyperbolic<Atanh> {
    template <class V>
    ZPP_INLINE static auto run(const V (&x)[1], V (&y)[1]) {
        const V size = magnitude(x[0]), one = broadcast<V>(1);
        const Sum<V> more = sumOf(one, size), less = sumOf(one, -size);
        const V q = more.high / less.high;
        const V rest = lessProduct(more.high, q, less.high) + mulSubFrom(q, less.low, more.low);
        const V half = 0.5 * lnOfSum(q, rest * mulAdd(broadcast<V>(.5), q, broadcast<V>(.5)));
        y[0] = withSignOfArgument(x[0], select(size < 0x1p-28, size, half));
        return (size < 1) == 0;
    }
    static ZppStatus special(const double* x, double* y) {
        const double size = magnitude(*x);
        const bool infinite = size == 1, outside = size > 1;
        *y = infinite ? __builtin_copysign(__builtin_inf(), *x) : outside ? quietNan<double>() : *x + *x;
        return infinite ? zppStatusSingularity : outside ? zppStatusDomain : zppStatusOk;
    }
};

}  // namespace zpp::ZPP_ISA
