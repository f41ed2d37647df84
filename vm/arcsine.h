// Arcsine and arccosine.
//
// Up to |x| = 1/2 arcsin x = u + u q(u^2) with u = x; beyond, pi / 2 + u + u q(u^2) with u = -2 s (and s^2 in
// place of u^2), s = sqrt((1 - |x|) / 2), and arccos x is what these lack of pi / 2. The root's error is
// taken into account, by an inverse that is right to 6 %. q is the sum of s^2 / 6, of which the rounding
// error is kept, and of a polynomial.
//
// Error: pi / 2 + u and the product u q are added without error; what is left is .05 of a unit in the last
// place beside the last sum: .53, at .54.
#pragma once

#include "core/checks.h"
#include "vm/arcsine_tables.h"
#include "vm/arctangent.h"

namespace zpp::ZPP_ISA {

// turn + step (1 + q) + rest; turn is larger than step, or 0.
template <class V>
struct Arcsine {
    V turn, step, q, qLow, rest;

    // arcsin x, 0 <= x <= 1.
    ZPP_INLINE explicit Arcsine(V x) {
        const V half = mulSubFrom(x, broadcast<V>(0.5), broadcast<V>(0.5));
        const auto upper = x > 0.5;
        const V square = select(upper, half, squareNotTiny(x)), root = squareRoot(half);
        step = select(upper, -2.0 * root, x);
        turn = select(upper, broadcast<V>(kPi / 2), V{});
        // 1 / root, and of what the root lacks the (1 + q) fold.
        const V inverse = bitCast<V>(uint64_t{0x7FDE800000000000} - asUnsigned(bitCast<BitsOf<V>>(root)));
        const V slope = mulAdd(half, broadcast<V>(0.18), broadcast<V>(1.0));
        rest =
            select(upper, mulSubFrom(missedOf(root, half) * inverse, slope, broadcast<V>(kPiLow / 2)), V{});
        setPolynomial(square);
    }

    // half - root^2
    ZPP_INLINE static V missedOf(V root, V half) {
        if constexpr (kFuses) return mulSubFrom(root, root, half);
        const V high = firstHalf(root);
        return (half - high * high) - (root - high) * (root + high);
    }
    ZPP_INLINE void setPolynomial(V square) {
        const V p = polynomial(kArcsinePolynomial, square);
        if constexpr (kFuses) {
            const V more = square * mulAdd(square, p, broadcast<V>(kSixthLow));
            const V sixth = square * kSixth, lost = mulAdd(square, broadcast<V>(kSixth), -sixth);
            q = sixth + more;
            qLow = ((sixth - q) + more) + lost;
        } else {
            const V high = firstHalf(square), sixth = high * kSixthHalf, more = square * square * p;
            q = firstHalf(sixth + more);
            qLow = ((sixth - q) + more) + ((square - high) * kSixthHalf + square * kSixthRest);
        }
    }

    ZPP_INLINE V sum() const {
        const V first = turn + step, firstLow = (turn - first) + step;
        V product, low;
        if constexpr (kFuses) {
            product = step * q;
            low = mulAdd(step, qLow, mulAdd(step, q, -product));
        } else {
            const V high = firstHalf(step);
            product = high * q;
            low = (step - high) * q + step * qLow;
        }
        const V second = first + product, secondLow = (first - second) + product;
        return second + ((firstLow + secondLow) + (low + rest));
    }
};

// What the functions have in common: numbers beyond 1 are outside the domain.
template <class F>
struct InverseTrigonometric {
    static constexpr const char* kName = "";
    static constexpr int kSources = 1, kDestinations = 1;

    template <class V>
    ZPP_INLINE static auto run(const V (&x)[1], V (&y)[1]) {
        const V size = magnitude(x[0]);
        y[0] = F::result(Arcsine<V>(size), exclusiveOr(x[0], size));
        return (size <= 1.0) == 0;
    }
    static ZppStatus special(const double* x, double* y) {
        const bool number = *x == *x;
        *y = number ? quietNan<double>() : *x + *x;
        return number ? zppStatusDomain : zppStatusOk;
    }
};

struct Asin : InverseTrigonometric<Asin> {
    template <class V>
    ZPP_INLINE static V result(const Arcsine<V>& a, V sign) {
        return exclusiveOr(a.sum(), sign);
    }
};
struct Acos : InverseTrigonometric<Acos> {
    template <class V>
    ZPP_INLINE static V result(Arcsine<V> a, V sign) {
        const V negative = exclusiveOr(sign, broadcast<V>(-0.0));
        a.turn = kPi / 2 - exclusiveOr(a.turn, sign);
        a.step = exclusiveOr(a.step, negative);
        a.rest = kPiLow / 2 - exclusiveOr(a.rest, sign);
        return a.sum();
    }
};

}  // namespace zpp::ZPP_ISA
