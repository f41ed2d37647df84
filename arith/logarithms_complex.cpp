// Logarithms of complex numbers.
//
// ln |z| is half of ln(re^2 + im^2), with the squares exact and their sum in two parts, as in vm/ln.h: what
// is beside the sum's first part goes into the rest of r. Next to |z| = 1 r is that first part less 1, which
// is exact, so that the logarithm has but the error of the second part, 2^-106. Elsewhere it is .55 units in
// the last place.
#include "arith/exports.h"
#include "core/scale.h"
#include "vm/arctangent.h"
#include "vm/driver.h"
#include "vm/ln.h"

namespace zpp::ZPP_ISA {
namespace {

// 2^exponent ln sqrt(a^2 + b^2), a >= b >= 0, of which the squares neither overflow nor, but for 0,
// underflow.
template <class V>
ZPP_INLINE V lnOfMagnitude(V a, V b, V exponent) {
    constexpr int bits = kFuses ? 4 : 7;
    const Sum<V> squareA = exactProduct(a, a), squareB = exactProduct(b, b);
    const Sum<V> sum = sumOf(squareA.high, squareB.high);
    const LnParts<bits, 0, V> parts(sum.high);
    const V k = parts.k + (exponent + exponent);
    const V zLow = (sum.low + (squareA.low + squareB.low)) * parts.scale();
    V rest, square;
    Sum<V> whole;
    if constexpr (kFuses) {
        V row[2];
        lookUp(kLnTable, parts.index, row);
        const V t = parts.z * row[0], r = t - 1.0;
        const V e = mulAdd(zLow, row[0], mulAdd(parts.z, row[0], -t));
        whole = sumOf(mulAdd(k, broadcast<V>(kLnOf2High), row[1]), r);
        rest = mulAdd(k, broadcast<V>(kLnOf2Low), mulSubFrom(r, mulSubFrom(r, e, e), e));
        square = r * r * polynomial(kLnPolynomial, r);
    } else {
        V row[4];
        lookUp(kLnFineTable, parts.index, row);
        const Sum<V> ratio = parts.ratio(row[0]);
        const V r = ratio.high, e = ratio.low + zLow * row[0];
        whole = sumOf(k * kLnOf2High + row[1], r);
        rest = k * kLnOf2Low + (row[2] + (e - e * r));
        square = r * r * polynomial(kLnFinePolynomial, r);
    }
    return 0.5 * (whole.high + ((whole.low + rest) + square));
}

struct ComplexLn {
    static constexpr int kSources = 2, kDestinations = 2;

    template <class V>
    ZPP_INLINE static auto run(const V (&x)[2], V (&y)[2]) {
        const V re = magnitude(x[0]), im = magnitude(x[1]);
        y[0] = lnOfMagnitude(max(re, im), min(re, im), V{});
        y[1] = angleOf(x[1], x[0]);
        return whereNot(hasOrdinaryAngle(x[1], x[0]));
    }

    static ZppStatus special(const double* x, double* y) {
        const double re = magnitude(x[0]), im = magnitude(x[1]);
        if (isZero(re + im) && re == re && im == im) {
            y[0] = -__builtin_inf();
            y[1] = 0;
            return zppStatusLnZeroArg;
        }
        y[0] = re > kMostFinite || im > kMostFinite ? __builtin_inf()
               : re == re && im == im               ? ofFinite(max(re, im), min(re, im))
                                                    : re + im;
        y[1] = angleOfAny(x[1], x[0]);
        return zppStatusOk;
    }

  private:
    static double ofFinite(double a, double b) {
        // The square of so small a number is seen only beside 1 - 1.
        constexpr double least = 0x1p-460;
        if (b < least && a == 1) return 0.5 * b * b;
        const double up = a < least ? 0x1p600 : 1;
        const int exponent = static_cast<int>(bitCast<int64_t>(a * up) >> 52) - 1023;
        const double half = powerOfTwo<double>(-exponent / 2),
                     rest = powerOfTwo<double>(-exponent - -exponent / 2);
        const double aScaled = a * up * half * rest, bScaled = b * up * half * rest;
        return lnOfMagnitude(aScaled, bScaled < least ? 0.0 : bScaled, exponent - (up > 1 ? 600.0 : 0.0));
    }
};

}  // namespace

ZppStatus zppsLn_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len) {
    return evaluateElements<LastWarning>(ComplexLn(), Vectors{{pSrc}, {pDst}}, len);
}
ZppStatus zppsLn_64fc_I(Zpp64fc* pSrcDst, int len) { return zppsLn_64fc(pSrcDst, pSrcDst, len); }

}  // namespace zpp::ZPP_ISA
