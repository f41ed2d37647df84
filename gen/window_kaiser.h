// The Kaiser window, I0(|alpha| sqrt(n (len - 1 - n))) / I0(|alpha| (len - 1) / 2), with the modified Bessel
// function I0 by a polynomial of (x / 4)^2 below 4, and by one of 4 / x beside e^x / sqrt(x) from there on.
//
// n (len - 1 - n) is an integer that is rounded once, which is what the product of two doubles does. The
// exponential turns a relative error of x into x times as large a one: what the product with alpha lacks is
// kept.
//
// Error: that of the root, .75 * 2^-53, times x; and 4 units in the last place.
#pragma once

#include "gen/window.h"
#include "vm/exp.h"
#include "vm/sine.h"

namespace zpp::ZPP_ISA {

inline constexpr double kBesselSmall[] = {0.9999999985, 4.0000001935, 3.9999959541, 1.777809969,
                                          0.4443189384, 0.0713758187, 0.0075942968, 0.0008267816};
inline constexpr double kBesselLarge[] = {
    0.3989422809,  0.0124667783, 0.0017623668,  0.00026,      0.0022585672,  -0.0128314822, 0.0495811118,
    -0.1209940805, 0.1895476618, -0.1867783276, 0.1113315511, -0.0366694767, 0.0051246015};

// I0(x) / scale. The low part of x counts for the exponential alone.
template <class V>
ZPP_INLINE V besselQuotient(Sum<V> x, V scale) {
    const V quarter = x.high * 0.25;
    const V far = max(broadcast<V>(4.0), x.high);  // or a NaN
    const V power = expOrdinary(far);
    const V large = polynomial(kBesselLarge, 4.0 / far) * mulAdd(power, x.low, power);
    const auto isSmall = x.high < 4.0;
    return select(isSmall, polynomial(kBesselSmall, quarter * quarter), large) /
           (select(isSmall, broadcast<V>(1.0), squareRoot(far)) * scale);
}

class KaiserWindow {
  public:
    static constexpr size_t kBlock = size_t{1} << 31, kGroup = 1;

    KaiserWindow(double alpha, int len)
        : alpha_(magnitude(alpha)),
          last_(len - 1),
          middle_(besselQuotient(exactProduct(alpha_, last_ * 0.5), 1.0)) {}

    static bool hasGroups() { return false; }
    static bool endsWeighNothing() { return false; }
    static bool zeroEnds() { return false; }

    static void prepare(size_t, size_t) {}

    ZPP_INLINE auto weights(size_t first) const {
        return [this, first](size_t k) ZPP_INLINE_LAMBDA {
            using V = Vec<double>;
            const V n = countedFrom<V>(first + k), root = squareRoot(n * (last_ - n));
            return besselQuotient(exactProduct(broadcast<V>(alpha_), root), broadcast<V>(middle_));
        };
    }

  private:
    const double alpha_, last_, middle_;
};

}  // namespace zpp::ZPP_ISA
