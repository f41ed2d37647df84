// Exponentials of complex numbers.
//
// e^re, sine and cosine are sums of two numbers each, right to 2^-57, and so are the products, which are
// rounded once: .58 units in the last place. Where e^re leaves the range of doubles, and the product may be
// in it, or where that has fewer bits, the exponent is kept apart.
#include "arith/exports.h"
#include "vm/driver.h"
#include "vm/exp.h"
#include "vm/ln_tables.h"
#include "vm/sine.h"

namespace zpp::ZPP_ISA {
namespace {

struct ComplexExp {
    static constexpr int kSources = 2, kDestinations = 2;
    // Beyond it every product is infinite or 0.
    static constexpr double kFarthest = 1480, kMostOrdinary = 640, kLeast = 0x1p-960;

    template <class V>
    ZPP_INLINE static auto run(const V (&x)[2], V (&y)[2]) {
        // Tiny angles and results, which are special, would take long here too.
        const V size = magnitude(x[1]);
        const auto ordinary = magnitude(x[0]) <= kMostOrdinary;
        const SineAngle<V> angle = SineAngle<V>::template of<0>(select(size < kLeast, V{}, size));
        const SmallAngle<V> small(angle);
        const ExpParts<V> e(select(ordinary, x[0], V{}));
        const Factor<V> factor(e);
        y[0] = withSignOf(angle.k, factor.times(cosineSum(angle, small)));
        y[1] = withSignOfArgument(x[1], withSignOf(angle.k, factor.times(sineSum(angle, small))));
        // The exact products of parts are normal numbers too, before and behind the power of 2.
        const V sizeOfFirst = magnitude(y[0]);
        const V least = min(sizeOfFirst, select(size == 0, sizeOfFirst, min(size, magnitude(y[1]))));
        return whereNot(ordinary, size <= kSineLimit, least >= kLeast);
    }

    static ZppStatus special(const double* x, double* y) {
        const double re = x[0], im = x[1];
        if (isZero(im) && im == im) {
            Exp::special(x, y);
            y[1] = im;
        } else if (magnitude(im) <= kMostFinite && re == re) {
            ofAny(re, im, y);
        } else if (magnitude(re) > kMostFinite) {  // and no angle
            y[0] = re > 0 ? re : 0;
            y[1] = re > 0 ? im - im : 0;
        } else {
            y[0] = y[1] = (re + im) - im;
        }
        return zppStatusOk;
    }

  private:
    // e^x, but for the power of 2 where that is multiplied by at the end.
    template <class V>
    struct Factor {
        Sum<V> value;
        V power;

        ZPP_INLINE explicit Factor(const ExpParts<V>& e)
            : Factor(e, kFuses ? plusBits(e.head, e.k << 48) : e.head) {
            if constexpr (!kFuses) power = e.power();
        }
        ZPP_INLINE Factor(const ExpParts<V>& e, V head) {
            if constexpr (kFuses) {
                value.high = mulAdd(head, e.p, head);
                value.low = mulAdd(head, e.p, head - value.high);
            } else {
                value = sumOf(head, e.tail + head * e.p);
            }
        }

        ZPP_INLINE Sum<V> product(Sum<V> s) const {
            const Sum<V> first = exactProduct(value.high, s.high);
            return {first.high, first.low + mulAdd(value.high, s.low, value.low * s.high)};
        }
        ZPP_INLINE V times(Sum<V> s) const {
            const Sum<V> both = product(s);
            if constexpr (kFuses)
                return both.high + both.low;
            else
                return (both.high + both.low) * power;
        }
    };

    // Of finite numbers, and of an infinite real part.
    static void ofAny(double re, double im, double* y) {
        const double size = magnitude(im);
        // So small an angle is its sine, scaled.
        const bool tiny = size < 0x1p-500, isSubnormal = size < 0x1p-1022;
        const auto angle = size <= kSineLimit ? SineAngle<double>::of<0>(tiny ? 0 : size)
                                              : SineAngle<double>::ofHuge<0>(size);
        const SmallAngle<double> small(angle);
        const Sum<double> sine = isSubnormal ? Sum<double>{ofSubnormal(size), 0}
                                 : tiny      ? Sum<double>{size * 0x1p600, 0}
                                             : sineSum(angle, small);
        const int exponent = isSubnormal ? -1074 : tiny ? -600 : 0;
        // Of a large number half of the range is taken off before, which is exact, and added to the exponent.
        const double x = re > kFarthest ? kFarthest : re < -kFarthest ? -kFarthest : re;
        const int half = x > 600 ? 1024 : x < -600 ? -1024 : 0;
        const ExpParts<double> e(x - half * kLnOf2High, -(half * kLnOf2Low));
        const Factor<double> factor(e, e.number());
        const int power = half + static_cast<int>(e.k >> e.kBits);
        y[0] = withSignOf(angle.k, scaled(factor.product(cosineSum(angle, small)), power));
        y[1] = withSignOfArgument(im, withSignOf(angle.k, scaled(factor.product(sine), power + exponent)));
    }
    // Sums in tables may be negative. The number is 0 or in 2^-540 .. 2^101.
    static double scaled(Sum<double> s, int exponent) {
        const bool negative = s.high < 0;
        const Sum<double> size = negative ? Sum<double>{-s.high, -s.low} : s;
        const double result = exponent > 1600    ? __builtin_inf()
                              : exponent < -1500 ? 0
                                                 : scaledOnce(size.high, size.low, exponent);
        return negative ? -result : result;
    }
};

}  // namespace

ZppStatus zppsExp_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int len) {
    return evaluateElements<LastWarning>(ComplexExp(), Vectors{{pSrc}, {pDst}}, len);
}
ZppStatus zppsExp_64fc_I(Zpp64fc* pSrcDst, int len) { return zppsExp_64fc(pSrcDst, pSrcDst, len); }

}  // namespace zpp::ZPP_ISA
