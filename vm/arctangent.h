// Arctangents of a number and of a quotient.
//
// t = y / x >= 0 lies in one of 16 rows, most of half an octave, found by the difference of the bits of y and
// x, which is nearly a logarithm. The row has a point c of 26 bits and its arctangent A, a double to 2^-61 of
// it (nearly exact entries: Gal, "Computing elementary functions", 1986). With r = (t - c) / (1 + c t) = (y -
// c x) / (x + c y), |r| <= 0.13, arctan t = A + arctan r. Numerator and denominator are kept in two parts,
// and so is r; arctan r - r is a polynomial.
//
// Error: r + A is exact but for 2^-60 of it, and what is added to it is small: .53 units in the last place.
#pragma once

#include "core/checks.h"
#include "core/precision.h"
#include "core/simd_lookup.h"
#include "vm/arctangent_tables.h"
#include "vm/polynomial.h"
#include "vm/sums.h"

namespace zpp::ZPP_ISA {

inline constexpr Table<2, 16> kArctangentTable(kArctangentPoint, kArctangent);
inline constexpr double kPi = 3.14159265358979323846;

// v^2, but no tiny number: of these, products take long. 2^-70 is lost in what squares are added to.
template <class V>
ZPP_INLINE V squareNotTiny(V v) {
    return kFuses ? mulAdd(v, v, broadcast<V>(0x1p-70)) : v * v;
}

// The index of a row, from the quotient or from y's bits less those of x, plus those of 1. All that is
// negative, or is no number then, comes from a y far smaller than x.
template <class V>
ZPP_INLINE BitsOf<V> rowOfQuotient(V quotient) {
    const V inRows = min(max(quotient, broadcast<V>(0.0625)), broadcast<V>(12.0));
    return bitCast<BitsOf<V>>(asUnsigned(bitCast<BitsOf<V>>(inRows)) >> 51);
}
template <class V>
ZPP_INLINE V nearQuotient(V y, V x) {
    using I = BitsOf<V>;
    return bitCast<V>(asUnsigned(bitCast<I>(y)) - asUnsigned(bitCast<I>(x)) + uint64_t{0x3FF0000000000000});
}

// An angle: one of the table, a small one to be added, and what both lack.
template <class V>
struct Angle {
    V turn, step, rest;

    ZPP_INLINE V sum() const {
        const V high = turn + step;
        return high + (((turn - high) + step) + rest);
    }
};

// r = (t - c) / (1 + c t), all in two parts; of t itself the numerator has one.
template <class V>
struct Quotient {
    V numerator, numeratorLow, denominator, denominatorLow;
    bool exact;  // the first numerator

    // t = y / x.
    ZPP_INLINE Quotient(V y, V x, V c) : exact(false) {
        const V cy = c * y;
        denominator = x + cy;
        const V most = max(x, cy), least = min(x, cy), lost = (most - denominator) + least;
        if constexpr (kFuses) {
            const V cx = c * x;
            numerator = y - cx;
            numeratorLow = mulSubFrom(c, x, cx);
            denominatorLow = lost + mulAdd(c, y, -cy);
        } else {
            const V xHalf = firstHalf(x), yHalf = firstHalf(y);
            numerator = y - c * xHalf;
            numeratorLow = -(c * (x - xHalf));
            denominatorLow = lost + ((c * yHalf - cy) + c * (y - yHalf));
        }
    }
    ZPP_INLINE Quotient(V t, V c) : numerator(t - c), numeratorLow(), exact(true) {
        denominator = mulAdd(c, t, broadcast<V>(1.0));
        if constexpr (kFuses) {
            denominatorLow = mulAdd(c, t, 1.0 - denominator);
        } else {
            const V half = firstHalf(t);
            denominatorLow = ((1.0 - denominator) + c * half) + c * (t - half);
        }
    }

    // Its arctangent as the small angle beside another one.
    ZPP_INLINE Angle<V> beside(V turn) const {
        const V inverse = 1.0 / denominator,
                r = (kFuses || exact ? numerator : numerator + numeratorLow) * inverse;
        V step = r, missed;
        if constexpr (kFuses) {
            missed = mulSubFrom(r, denominatorLow, mulSubFrom(r, denominator, numerator));
            if (!exact) missed += numeratorLow;
        } else {
            const V half = firstHalf(denominator), low = (denominator - half) + denominatorLow;
            step = firstHalf(r);
            missed = numerator - step * half;
            missed = exact ? missed - step * low : missed + (numeratorLow - step * low);
        }
        const V square = squareNotTiny(r), cube = r * square * polynomial(kArctangentPolynomial, square);
        return {turn, step, mulAdd(missed, inverse, cube)};
    }
};

// arctan t, t >= 0. Beyond 2^64 it is that of infinity; a NaN remains one.
template <class V>
ZPP_INLINE V arctangentOf(V t) {
    const V bounded = min(broadcast<V>(0x1p64), t);
    V row[2];
    lookUp(kArctangentTable, rowOfQuotient(bounded), row);
    return Quotient<V>(bounded, row[0]).beside(row[1]).sum();
}

// The angle of (x, y). What is not ordinary: numbers but zeros of less or more than these, and both zero.
inline constexpr double kLeastCoordinate = 0x1p-460, kMostCoordinate = 0x1p500;
template <class V>
ZPP_INLINE V angleOf(V y, V x) {
    const V sizeY = magnitude(y), sizeX = magnitude(x);
    V row[2];
    lookUp(kArctangentTable, rowOfQuotient(nearQuotient(sizeY, max(sizeX, broadcast<V>(kLeastCoordinate)))),
           row);
    const Angle<V> a = Quotient<V>(sizeY, sizeX, row[0]).beside(row[1]);
    const auto left = x < 0;
    const Angle<V> turned = {select(left, kPi - a.turn, a.turn), select(left, -a.step, a.step),
                             select(left, kPiLow - a.rest, a.rest)};
    return exclusiveOr(turned.sum(), exclusiveOr(y, sizeY));
}
template <class V>
ZPP_INLINE auto hasOrdinaryAngle(V y, V x) {
    const V sizeY = magnitude(y), sizeX = magnitude(x), both = sizeX + sizeY, least = min(sizeX, sizeY);
    return allHeld(both <= kMostCoordinate, select(least == 0, both, least) >= kLeastCoordinate);
}

// A positive finite number as 1 <= v < 2 and a power of two.
struct Scaled {
    double value;
    int exponent;

    explicit Scaled(double x) {
        const bool small = x < 0x1p-1022;
        const uint64_t bits = bitCast<uint64_t>(small ? ofSubnormal(x) : x);
        value = bitCast<double>((bits & 0xFFFFFFFFFFFFF) | 0x3FF0000000000000);
        exponent = static_cast<int>(bits >> 52) - (small ? 1074 : 0);
    }
};

// The same of any numbers.
inline double angleOfAny(double y, double x) {
    if (y != y || x != x) return x + y;
    const auto positive = [](double v) { return bitCast<int64_t>(v) >= 0; };
    const bool infiniteX = magnitude(x) > kMostFinite, infiniteY = magnitude(y) > kMostFinite;
    const double sizeX = infiniteY && !infiniteX ? 0 : magnitude(x),
                 sizeY = infiniteX && !infiniteY ? 0 : magnitude(y);
    const double left = positive(x) ? 0 : kPi;
    double angle;
    if (sizeY == 0) {
        angle = left;
    } else if (sizeX == 0) {
        angle = kPi / 2;
    } else if (infiniteX) {
        angle = positive(x) ? kPi / 4 : 3 * (kPi / 4);
    } else {
        const Scaled a(sizeY), b(sizeX);
        const int difference = a.exponent - b.exponent;
        if (difference > 70)
            angle = kPi / 2;
        else if (difference < -70)
            angle = positive(x) ? quotient(sizeY, sizeX) : kPi;
        else
            angle =
                angleOf(bitCast<double>(bitCast<int64_t>(a.value) + (static_cast<int64_t>(difference) << 52)),
                        positive(x) ? b.value : -b.value);
    }
    return positive(y) ? angle : -angle;
}

struct Atan {
    static constexpr const char* kName = "";
    static constexpr int kSources = 1, kDestinations = 1;

    template <class V>
    ZPP_INLINE static auto run(const V (&x)[1], V (&y)[1]) {
        const V size = magnitude(x[0]);
        y[0] = exclusiveOr(arctangentOf(size), exclusiveOr(x[0], size));
        return BitsOf<V>{};
    }
    static ZppStatus special(const double* x, double* y) {  // there is none
        *y = *x;
        return zppStatusOk;
    }
};

struct Atan2 {
    static constexpr const char* kName = "";
    static constexpr int kSources = 2, kDestinations = 1;

    template <class V>
    ZPP_INLINE static auto run(const V (&x)[2], V (&y)[1]) {
        const auto ordinary = hasOrdinaryAngle(x[0], x[1]);
        y[0] =
            angleOf(select(ordinary, x[0], V{}), x[1]);  // a tiny y would make tiny products, which take long
        return whereNot(ordinary);
    }
    static ZppStatus special(const double* x, double* y) {
        *y = angleOfAny(x[0], x[1]);
        return zppStatusOk;
    }
};

}  // namespace zpp::ZPP_ISA
