// The power.
//
// x^y = e^(y ln x), with a logarithm that is right to 2^-66: as in vm/ln.h ln x = k ln 2 + ln c + ln(1 + r),
// z / c = 1 + r. Here 1 / c has so few bits that r is a double, and ln c has two parts, of which the last
// bits of the second one are those of 1 / c. The sum and the product with y are kept in two parts, of which
// the exponential (vm/exp.h) takes the small one with the angle that is left. (Tang, 1989 and 1990, as there;
// short inverses: Wong and Goto, "Fast hardware-based algorithms for elementary function computations using
// rectangular multipliers", 1994.)
//
// Error: that of r^3 / 3 beside ln x, next to 1 with |r| <= 1/61, is at most two roundings, and with |y ln x|
// = 709 .06 units in the last place; with the exponential's it is .60 next to x = 1.016, and .53 for ordinary
// x and y. Without a fused multiply-add |r| <= 1/189: .53.
#pragma once

#include "vm/exp.h"
#include "vm/ln.h"
#include "vm/pow_tables.h"
#include "vm/sums.h"

namespace zpp::ZPP_ISA {

inline constexpr Table<2, 32> kPowTable(kPowLog, kPowTail);
inline constexpr Table<2, 128> kPowFineTable(kPowFineLog, kPowFineTail);

// ln(1 + r). What the first number has of r^2 and r^3 (r^2) is in the second to the last bit.
template <class V>
ZPP_INLINE Sum<V> lnNear1(V r) {
    if constexpr (kFuses) {
        const V minusHalf = r * -0.5, third = r * (1.0 / 3);
        const V w = mulAdd(r, third, minusHalf), wLow = mulAdd(r, third, minusHalf - w);
        const V high = mulAdd(r, w, r), low = mulAdd(r, wLow, mulAdd(r, w, r - high)), square = r * r;
        return {high, mulAdd(square * square, polynomial(kPowPolynomial, r), low)};
    } else {
        const Sum<V> square = squareOf(r);
        const Sum<V> sum = sumOf(r, square.high * -0.5);
        const V low = sum.low - square.low * 0.5;
        return {sum.high, low + r * r * (r * polynomial(kPowFinePolynomial, r))};
    }
}

// ln(2^-kScaled x) of positive normal numbers.
template <int kScaled = 0, class V>
ZPP_INLINE Sum<V> lnInTwoParts(V x) {
    const LnParts<kFuses ? 5 : 7, kScaled, V> parts(x);
    using I = Vec<int64_t, sizeof(V) / 8>;
    V row[2], r;
    if constexpr (kFuses)
        lookUp(kPowTable, parts.index, row);
    else
        lookUp(kPowFineTable, parts.index, row);
    const V inverse = bitCast<V>((bitCast<I>(row[1]) << 44) ^ 0x3FF0000000000000);
    if constexpr (kFuses)
        r = mulAdd(parts.z, inverse, broadcast<V>(-1.0));
    else
        r = parts.ratio(inverse).high;
    const Sum<V> small = lnNear1(r);
    const Sum<V> sum = sumOf(mulAdd(parts.k, broadcast<V>(kLnOf2High), row[0]), small.high);
    return {sum.high, mulAdd(parts.k, broadcast<V>(kLnOf2Low), row[1]) + (sum.low + small.low)};
}

// y a, of which the low part is within 2^-24 of the product.
template <class V>
ZPP_INLINE Sum<V> multiple(V y, const Sum<V>& a) {
    if constexpr (kFuses) {
        const Sum<V> sum = sumOf(a.high, a.low), product = exactProduct(y, sum.high);
        return {product.high, mulAdd(y, sum.low, product.low)};
    } else {
        const V sum = a.high + a.low, first = firstHalf(sum), yFirst = firstHalf(y);
        return {yFirst * first, yFirst * ((a.high - first) + a.low) + (y - yFirst) * sum};
    }
}

// Up to this of |y ln x| the exponential is ordinary.
inline constexpr double kMostOrdinary = 708;

// x^y where the mask that it gives does not hold.
template <class V>
ZPP_INLINE auto powOrdinary(V x, V y, V& result) {
    const Sum<V> exponent = multiple(y, lnInTwoParts(x));
    result = expOrdinary(exponent.high, exponent.low);
    return whereNot(x >= Ln::kLeast, x <= Ln::kMost, magnitude(exponent.high) <= kMostOrdinary);
}

// x^y of positive finite x and finite y.
inline double powOfPositive(double x, double y) {
    const Sum<double> logarithm = x < Ln::kLeast ? lnInTwoParts<kSubnormal>(ofSubnormal(x)) : lnInTwoParts(x);
    const Sum<double> exponent = multiple(y, logarithm);
    if (magnitude(exponent.high) <= kMostOrdinary) return expOrdinary(exponent.high, exponent.low);
    if (magnitude(exponent.high) < 750) return expNearLimits(exponent.high, exponent.low);
    return exponent.high > 0 ? __builtin_inf() : 0;
}

// Whether an exponent is a whole number, and whether an odd one; of its bits, which raise no exception.
struct Wholeness {
    bool whole, odd;

    explicit Wholeness(double y) {
        const uint64_t bits = bitCast<uint64_t>(y), mantissa = (bits & 0xFFFFFFFFFFFFF) | 0x10000000000000;
        const int place = 1075 - static_cast<int>(bits >> 52 & 0x7FF);  // that of the unit
        const uint64_t unit = place > 0 && place < 53 ? uint64_t{1} << place : 1;
        whole = place < 53 ? (mantissa & (unit - 1)) == 0 : bits << 1 == 0;
        odd = whole && place >= 0 && place < 53 && (mantissa & unit) != 0;
    }
};

struct Pow {
    static constexpr const char* kName = "";
    static constexpr int kSources = 2, kDestinations = 1;

    template <class V>
    ZPP_INLINE static auto run(const V (&x)[2], V (&y)[1]) {
        return powOrdinary(x[0], x[1], y[0]);
    }

    static ZppStatus special(const double* x, double* y) {
        const double base = x[0], exponent = x[1], size = magnitude(base), infinity = __builtin_inf();
        const Wholeness wholeness(exponent);
        ZppStatus warning = zppStatusOk;
        double result;
        if (size > 0 && size < infinity && magnitude(exponent) < infinity) {
            const bool real = base > 0 || wholeness.whole;
            result = real ? powOfPositive(size, exponent) : quietNan<double>();
            warning = real ? zppStatusOk : zppStatusDomain;
        } else if (exponent == 0 || base == 1) {
            result = 1;
        } else if (base != base || exponent != exponent) {
            result = base + exponent;
        } else if (size == 0 || size == infinity) {
            result = (size == 0) == (exponent < 0) ? infinity : 0;
            warning = size == 0 && exponent < 0 ? zppStatusSingularity : zppStatusOk;
        } else {
            result = size == 1 ? 1 : (size > 1) == (exponent > 0) ? infinity : 0;
        }
        *y = wholeness.odd && __builtin_signbit(base) ? -result : result;
        return warning;
    }
};

// With one exponent the sign of the power costs next to nothing.
class Powx {
  public:
    static constexpr const char* kName = "";
    static constexpr int kSources = 1, kDestinations = 1;

    explicit Powx(double exponent) : exponent_(exponent) {
        constexpr int64_t sign = INT64_MIN;
        const Wholeness wholeness(exponent);
        ofBase_ = wholeness.whole ? ~sign : ~int64_t{0};
        ofSign_ = wholeness.odd ? sign : 0;
    }

    template <class V>
    ZPP_INLINE auto run(const V (&x)[1], V (&y)[1]) const {
        using I = Vec<int64_t, sizeof(V) / 8>;
        const I bits = bitCast<I>(x[0]);
        V power;
        const auto special = powOrdinary(bitCast<V>(bits & ofBase_), broadcast<V>(exponent_), power);
        y[0] = bitCast<V>(bitCast<I>(power) ^ (bits & ofSign_));
        return special;
    }

    ZppStatus special(const double* x, double* y) const {
        const double both[] = {*x, exponent_};
        return Pow::special(both, y);
    }

  private:
    double exponent_;
    int64_t ofBase_, ofSign_;  // the bits of the argument that the base takes, and the sign
};

}  // namespace zpp::ZPP_ISA
