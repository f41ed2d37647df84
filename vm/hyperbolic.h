// Hyperbolic sine, cosine and tangent.
//
// |x| = k ln 2 / 16 + r (without a fused multiply-add ln 2 / 64), r in two parts, and with the sum and the
// difference C and S of 2^(k / 16) / 2 and its inverse's half, sinh x = S cosh r + C sinh r, cosh x = C cosh
// r + S sinh r. S is 0 where k is, so the sine is as right there as elsewhere. (Tang's tables, see vm/exp.h.)
// tanh x = (e^(2x) - 1) / (e^(2x) + 1), both in two parts.
//
// Error: of S + C r nothing is lost, nor of C; what is added to them is at most 2^-5 of it: .53 units in the
// last place (cosine .55).
#pragma once

#include "core/checks.h"
#include "core/simd_lookup.h"
#include "vm/exp.h"
#include "vm/hyperbolic_tables.h"
#include "vm/sums.h"

namespace zpp::ZPP_ISA {

// Halves of powers of two and of their inverses, and what these lack.
template <int kRows>
struct HalfPowers {
    double head[kRows], tail[kRows], inverse[kRows], inverseTail[kRows];
    constexpr HalfPowers() : head(), tail(), inverse(), inverseTail() {
        for (int i = 0; i < kRows; ++i) {
            const int fine = i * 64 / kRows, back = (64 - fine) % 64;
            head[i] = kExpFineHead[fine] / 2, tail[i] = kExpFineTail[fine] / 2;
            inverse[i] = kExpFineHead[back] / (i == 0 ? 2 : 4),
            inverseTail[i] = kExpFineTail[back] / (i == 0 ? 2 : 4);
        }
    }
};
inline constexpr int kHyperbolicBits = kFuses ? 4 : 6;
inline constexpr HalfPowers<1 << kHyperbolicBits> kHalfPowers;
inline constexpr Table<4, 1 << kHyperbolicBits> kHalfPowerTable(kHalfPowers.head, kHalfPowers.tail,
                                                                kHalfPowers.inverse, kHalfPowers.inverseTail);

// x = k ln 2 / 2^kBits + r, with r in two parts.
template <class V>
struct ExpArgument {
    static constexpr int kBits = kHyperbolicBits;
    using I = Vec<int64_t, sizeof(V) / 8>;
    V shifted;  // k beside kToInteger
    I k;        // in the low bits
    Sum<V> r;

    ZPP_INLINE explicit ExpArgument(V x) {
        constexpr double perStep = (1 << kBits) * 1.44269504088896340736;
        shifted = mulAdd(x, broadcast<V>(perStep), broadcast<V>(kToInteger));
        k = bitCast<I>(shifted);
        const V steps = shifted - kToInteger;
        const V first = mulSubFrom(steps, broadcast<V>(kFuses ? kExpStepHigh : kExpFineStepHigh), x);
        r = sumOf(first, steps * (kFuses ? -kExpStepLow : -kExpFineStepLow));
    }
    // The exponent of 2^(k >> kBits), in its place.
    ZPP_INLINE static I exponent(I k) { return (k & ~int64_t{(1 << kBits) - 1}) << (52 - kBits); }
};

// Both, but for the power of two.
template <class V>
struct HyperbolicParts {
    using I = Vec<int64_t, sizeof(V) / 8>;
    ExpArgument<V> x;
    Sum<V> s, c;
    V odd, even;  // sinh r - r, cosh r - 1

    ZPP_INLINE explicit HyperbolicParts(V size) : x(size) {
        V row[4];
        lookUp(kHalfPowerTable, x.k, row);
        // The inverse by the square of that power, or by 2^-128.
        const V limit = broadcast<V>(kToInteger + (64 << x.kBits));
        const I exponent = x.exponent(bitCast<I>(min(x.shifted, limit)));
        const V power = bitCast<V>((int64_t{1023} << 52) - (exponent << 1));
        const V inverse = row[2] * power;
        s = sumOf(row[0], -inverse), c = sumOf(row[0], inverse);
        s.low += mulSubFrom(row[3], power, row[1]), c.low += mulAdd(row[3], power, row[1]);
        const V r = x.r.high, square = r * r;
        odd = mulAdd(r * square, polynomial(kSinhPolynomial, square), x.r.low);
        even = square * mulAdd(square, polynomial(kCoshPolynomial, square), broadcast<V>(0.5));
    }
    ZPP_INLINE V scaled(V v) const { return plusBits(v, x.exponent(x.k)); }

    ZPP_INLINE V sine() const {
        const Sum<V> product = exactProduct(c.high, x.r.high), sum = sumOf(s.high, product.high);
        const V small = mulAdd(s.high, even, mulAdd(c.high, odd, mulAdd(c.low, x.r.high, s.low)));
        return scaled(sum.high + (sum.low + (product.low + small)));
    }
    ZPP_INLINE V cosine() const {
        return scaled(c.high + mulAdd(s.high, x.r.high + odd, mulAdd(c.high, even, c.low)));
    }
};

// What Sinh and Cosh have in common: arguments up to the largest one with a finite result are ordinary.
template <class F>
struct Hyperbolic {
    static constexpr const char* kName = "";
    static constexpr int kSources = 1, kDestinations = 1;
    static constexpr double kMost = 0x1.633ce8fb9f87dp9;

    template <class V>
    ZPP_INLINE static auto run(const V (&x)[1], V (&y)[1]) {
        const V size = magnitude(x[0]);
        y[0] = F::result(HyperbolicParts<V>(size), x[0]);
        return (size <= kMost) == 0;
    }
    static ZppStatus special(const double* x, double* y) {
        *y = *x != *x ? *x + *x : F::kOdd && *x < 0 ? -__builtin_inf() : __builtin_inf();
        return magnitude(*x) <= kMostFinite ? zppStatusOverflow : zppStatusOk;
    }
};

struct Sinh : Hyperbolic<Sinh> {
    static constexpr bool kOdd = true;
    template <class V>
    ZPP_INLINE static V result(const HyperbolicParts<V>& parts, V x) {
        return withSignOfArgument(x, parts.sine());
    }
};
struct Cosh : Hyperbolic<Cosh> {
    static constexpr bool kOdd = false;
    template <class V>
    ZPP_INLINE static V result(const HyperbolicParts<V>& parts, V) {
        return parts.cosine();
    }
};

// tanh x, 0 <= x <= 20; NaN of NaN.
template <class V>
ZPP_INLINE V tanhOrdinary(V x) {
    const ExpArgument<V> twice(x + x);
    const V r = twice.r.high;
    V row[2], head, tail, rest;
    if constexpr (kFuses) {
        lookUp(kExpTable, twice.k, row);
        head = plusBits(row[0], twice.k << 48), tail = head * row[1];
        rest = mulAdd(r * r, polynomial(kExpPolynomial, r), twice.r.low);
    } else {
        lookUp(kExpFineTable, twice.k, row);
        const V power = bitCast<V>(twice.exponent(twice.k) + (int64_t{1023} << 52));
        head = row[0] * power, tail = row[1] * power;
        rest = mulAdd(r * r, polynomial(kExpFinePolynomial, r), twice.r.low);
    }
    const Sum<V> less = sumOf(head, broadcast<V>(-1.0)), more = sumOf(head, broadcast<V>(1.0));
    const Sum<V> product = exactProduct(head, r);
    const Sum<V> above = sumOf(less.high, product.high), below = sumOf(more.high, product.high);
    const V small = tail + (product.low + mulAdd(tail, r, head * rest));
    return quotientOf(sumOf(above.high, above.low + (less.low + small)),
                      sumOf(below.high, below.low + (more.low + small)));
}

struct Tanh {
    static constexpr const char* kName = "";
    static constexpr int kSources = 1, kDestinations = 1;

    template <class V>
    ZPP_INLINE static auto run(const V (&x)[1], V (&y)[1]) {
        y[0] = withSignOfArgument(x[0], tanhOrdinary(min(broadcast<V>(20.0), magnitude(x[0]))));
        return x[0] != x[0];
    }
    static ZppStatus special(const double* x, double* y) {
        *y = *x + *x;
        return zppStatusOk;
    }
};

}  // namespace zpp::ZPP_ISA
