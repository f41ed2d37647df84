// Sine, cosine and tangent.
//
// With a fused multiply-add x = k pi / 16 + d + r, where d makes the sine S and the cosine C of k pi / 16 + d
// doubles to 2^-60 (tables of nearly exact entries: Gal, 1986). Then sin x = S cos r + C sin r is the sum of
// S, of the exact product C r, and of what is small beside them. pi / 16 is taken off in three parts (Cody
// and Waite, 1980): the first one's multiple from x is exact, the second has few bits, so that what r lacks
// of the difference is a double. Without it steps are pi / 64, S has two parts, and the exact product is one
// of numbers with half of the bits.
//
// Error: .53 units in the last place (tangent .55).
#pragma once

#include "core/simd_lookup.h"
#include "vm/polynomial.h"
#include "vm/reduction.h"
#include "vm/sine_tables.h"
#include "vm/sums.h"

namespace zpp::ZPP_ISA {

struct NoColumn {
    double at[16];
};
inline constexpr NoColumn kNoColumn{};
inline constexpr Table<4, 16> kSineTable(kSine, kCosine, kSineOffset, kNoColumn.at);
inline constexpr Table<4, 64> kSineFineTable(kSineFine, kSineFineTail, kCosineFine, kCosineFineTail);

// Steps in half a turn, and the arguments up to which multiples of the parts are exact.
inline constexpr int kSineBits = kFuses ? 4 : 6;
inline constexpr double kSineLimit = kFuses ? 0x1p20 : 0x1p18;

// An angle as a row of the table and what is left, of which `rest` is small.
template <class V>
struct SineAngle {
    using I = Vec<int64_t, sizeof(V) / 8>;
    I k;  // steps, in the low bits
    V row[4], r, rest;

    // x + kQuarters / 4 of half a turn, |x| up to kSineLimit.
    template <int kQuarters>
    ZPP_INLINE static SineAngle of(V x) {
        constexpr int firstStep = (kQuarters << kSineBits) / 4;
        constexpr double toInteger = 0x1.8p52 + firstStep;
        SineAngle a;
        const V shifted =
            mulAdd(x, broadcast<V>((1 << kSineBits) * 0.318309886183790671538), broadcast<V>(toInteger));
        const V steps = shifted - toInteger;
        a.k = bitCast<I>(shifted);
        a.lookUpRow();
        if constexpr (kFuses) {
            const V first = mulAdd(steps, broadcast<V>(-kPi16First), x) - a.row[2];
            a.r = mulAdd(steps, broadcast<V>(-kPi16Second), first);
            a.rest = mulAdd(steps, broadcast<V>(-kPi16Third),
                            mulAdd(steps, broadcast<V>(-kPi16Second), first - a.r));
        } else {
            const V first = x - steps * kPi64[0];
            const Sum<V> second = sumOf(first, -(steps * kPi64[1]));
            const Sum<V> third = sumOf(second.high, -(steps * kPi64[2]));
            a.r = third.high;
            a.rest = second.low + third.low - steps * kPi64[3];
        }
        return a;
    }

    // The same of any finite x.
    template <int kQuarters>
    static SineAngle ofHuge(double x) {
        const ReducedAngle reduced = reducedAngle<kSineBits + 1>(x);
        constexpr double step = 3.14159265358979323846 / (1 << kSineBits),
                         stepLow = 0x1.1a62633145c07p-53 / (1 << kSineBits);
        SineAngle a;
        a.k = reduced.steps + (kQuarters << kSineBits) / 4;
        a.lookUpRow();
        // The product in halves: exact but for the last bits of the low one.
        const double half = firstHalf(reduced.high);
        const double stepHalf = firstHalf(step);
        const double lower = (reduced.high - half) + reduced.low;
        const Sum<V> angle =
            sumOf(half * stepHalf, half * (step - stepHalf) + lower * step + reduced.high * stepLow);
        const double offset = kFuses ? a.row[2] : 0;
        a.r = angle.high - offset;
        const double back = a.r + offset;
        a.rest = angle.low + (angle.high - back);
        return a;
    }

    ZPP_INLINE void lookUpRow() {
        if constexpr (kFuses)
            lookUp(kSineTable, k, row);
        else
            lookUp(kSineFineTable, k, row);
    }
};

// Those of r and `rest`, less r and 1.
template <class V>
struct SmallAngle {
    V sine, cosine;

    ZPP_INLINE explicit SmallAngle(const SineAngle<V>& a) {
        const V square = a.r * a.r;
        if constexpr (kFuses) {
            sine = mulAdd(a.r * square, polynomial(kSinePolynomial, square), a.rest);
            cosine = square * mulAdd(square, polynomial(kCosinePolynomial, square), broadcast<V>(-0.5));
        } else {
            sine = a.r * square * polynomial(kSineFinePolynomial, square) + a.rest;
            cosine = square * (square * polynomial(kCosineFinePolynomial, square) - 0.5);
        }
    }
};

// A number in two parts, of which the first may be cut to half of the bits.
template <class V>
struct Parts {
    V value, rest;
};

// a cos r + b sin r. Without a fused multiply-add `value` of b has 26 bits.
template <class V>
ZPP_INLINE Sum<V> turned(const Parts<V>& a, const Parts<V>& b, const SineAngle<V>& angle,
                         const SmallAngle<V>& s) {
    if constexpr (kFuses) {
        const V product = b.value * angle.r;
        const Sum<V> sum = sumOf(a.value, product);
        const V low = sum.low + mulAdd(b.value, angle.r, -product);
        return {sum.high, mulAdd(a.value, s.cosine, mulAdd(b.value, s.sine, low))};
    } else {
        const V half = firstHalf(angle.r);
        const Sum<V> sum = sumOf(a.value, b.value * half);
        const V products = b.value * (angle.r - half) + b.rest * angle.r;
        const V small = (a.value + a.rest) * s.cosine + ((b.value + b.rest) * s.sine + (products + a.rest));
        return {sum.high, sum.low + small};
    }
}

// The sine, but for the sign that the steps give it.
template <class V>
ZPP_INLINE Sum<V> sineSum(const SineAngle<V>& a, const SmallAngle<V>& s) {
    if constexpr (kFuses)
        return turned<V>({a.row[0], V{}}, {a.row[1], V{}}, a, s);
    else
        return turned<V>({a.row[0], a.row[1]}, {a.row[2], a.row[3]}, a, s);
}
template <class V>
ZPP_INLINE Sum<V> cosineSum(const SineAngle<V>& a, const SmallAngle<V>& s) {
    if constexpr (kFuses) {
        return turned<V>({a.row[1], V{}}, {-a.row[0], V{}}, a, s);
    } else {
        const V half = firstHalf(a.row[0]);
        return turned<V>({a.row[2], a.row[3]}, {-half, (half - a.row[0]) - a.row[1]}, a, s);
    }
}

template <class V>
ZPP_INLINE V withSignOf(typename SineAngle<V>::I k, V v) {
    using I = typename SineAngle<V>::I;
    return bitCast<V>(bitCast<I>(v) ^ ((k & (1 << kSineBits)) << (63 - kSineBits)));
}

template <class V>
ZPP_INLINE V sineOf(const SineAngle<V>& a) {
    const Sum<V> sine = sineSum(a, SmallAngle<V>(a));
    return withSignOf(a.k, sine.high + sine.low);
}

template <class V>
ZPP_INLINE V tangentOf(const SineAngle<V>& a) {
    const SmallAngle<V> small(a);
    const Sum<V> sine = sineSum(a, small), cosine = cosineSum(a, small);
    return quotientOf(sumOf(sine.high, sine.low), sumOf(cosine.high, cosine.low));
}

// What the functions have in common: arguments up to kSineLimit are ordinary, others are reduced exactly.
template <class F, int kResults = 1>
struct Trigonometric {
    static constexpr int kSources = 1, kDestinations = kResults;

    template <class V>
    ZPP_INLINE static auto run(const V (&x)[1], V (&y)[kResults]) {
        F::results(SineAngle<V>::template of<F::kQuarters>(magnitude(x[0])), x[0], y);
        return (magnitude(x[0]) <= kSineLimit) == 0;
    }
    static ZppStatus special(const double* x, double* y) {
        const double size = magnitude(*x);
        const bool finite = size <= kMostFinite;
        double results[kResults];
        if (finite) F::results(SineAngle<double>::template ofHuge<F::kQuarters>(size), *x, results);
        for (int i = 0; i < kResults; ++i) y[i] = finite ? results[i] : *x - *x;
        return finite || *x != *x ? zppStatusOk : zppStatusDomain;
    }
};

struct Sin : Trigonometric<Sin> {
    static constexpr const char* kName = "dSin_HA";
    static constexpr int kQuarters = 0;
    template <class V>
    ZPP_INLINE static void results(const SineAngle<V>& a, V x, V (&y)[1]) {
        y[0] = withSignOfArgument(x, sineOf(a));
    }
};
struct Cos : Trigonometric<Cos> {
    static constexpr const char* kName = "dCos_HA";
    static constexpr int kQuarters = 2;
    template <class V>
    ZPP_INLINE static void results(const SineAngle<V>& a, V, V (&y)[1]) {
        y[0] = sineOf(a);
    }
};
struct Tan : Trigonometric<Tan> {
    static constexpr const char* kName = "dTan_HA";
    static constexpr int kQuarters = 0;
    template <class V>
    ZPP_INLINE static void results(const SineAngle<V>& a, V x, V (&y)[1]) {
        y[0] = withSignOfArgument(x, tangentOf(a));
    }
};
struct SinCos : Trigonometric<SinCos, 2> {
    static constexpr const char* kName = "dSinCos_HA";
    static constexpr int kQuarters = 0;
    template <class V>
    ZPP_INLINE static void results(const SineAngle<V>& a, V x, V (&y)[2]) {
        const SmallAngle<V> small(a);
        const Sum<V> sine = sineSum(a, small), cosine = cosineSum(a, small);
        y[0] = withSignOfArgument(x, withSignOf(a.k, sine.high + sine.low));
        y[1] = withSignOf(a.k, cosine.high + cosine.low);
    }
};

}  // namespace zpp::ZPP_ISA
