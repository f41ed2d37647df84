// Cube roots and their inverses.
//
// The inverse root r of |x| comes to 22 bits from the bits of x (vm/roots.h). What 1 - x r^3 is then brings
// it to all; of the cube root t = x r^2 what x - t^3 is, of which nothing is lost to rounding.
//
// Error: .51 units in the last place.
#pragma once

#include "vm/cbrt_tables.h"
#include "vm/roots.h"

namespace zpp::ZPP_ISA {

// 1 / x^(1/3), to 22 bits.
template <class V>
ZPP_INLINE V roughInverseCubeRoot(V x) {
    using I = Vec<int64_t, sizeof(V) / 8>;
    // The third of the upper half of the bits is formed in a double behind 2^52, whose own third is added
    // again.
    constexpr double start = 0x1p52 + kInverseCubeRootStart + 0x5555555555555;
    const V upper = bitCast<V>(bitCast<I>(asUnsigned(bitCast<I>(x)) >> 32) | 0x4330000000000000);
    const V y = bitCast<V>(bitCast<I>(mulAdd(upper, broadcast<V>(-1.0 / 3), broadcast<V>(start))) << 32);
    return y * polynomial(kInverseCubeRoot, mulSubFrom(x * y, y * y, broadcast<V>(1)));
}

template <class F>
struct CubicRoot : SeriesRoot<F> {
    static constexpr bool kOdd = true;
    static constexpr double kLeast = 0x1p-960, kMost = 0x1p1020;  // x - t^3 has all bits, t^3 is finite
};

struct Cbrt : CubicRoot<Cbrt> {
    static constexpr double kStep = 0x1p300, kBack = 0x1p-100, kBackOfSubnormal = 0x1p-358;

    template <class V>
    ZPP_INLINE static V root(V x) {
        // Of the root (1 + h) t it lacks (x - t^3) r^2 / 3 (1 + 2 (1 - t r) - h), and where t is x r^2 but
        // for a rounding h is 2 (1 - t r) / 3.
        const V r = roughInverseCubeRoot(x), inverse = r * r;
        V t = x * inverse, root;
        if constexpr (kFuses) {
            const V square = t * t, rest = mulSubFrom(mulAdd(t, t, -square), t, mulSubFrom(square, t, x));
            const V more =
                mulAdd(mulSubFrom(t, r, broadcast<V>(1)), broadcast<V>(4.0 / 9), broadcast<V>(1.0 / 3));
            root = mulAdd(rest * inverse, more, t);
        } else {
            t = firstHalf(t);
            const V square = t * t, half = firstHalf(square);
            const V step = ((x - half * t) - (square - half) * t) * inverse * (1.0 / 3);
            root = t + step * ((1 - t * r) * 2 + (1 - step * r));
        }
        return root;
    }
    static double atLimit(double x) { return x + x; }
};

struct InvCbrt : CubicRoot<InvCbrt> {
    static constexpr double kStep = 0x1p300, kBack = 0x1p100, kBackOfSubnormal = 0x1p358;

    template <class V>
    ZPP_INLINE static V root(V x) {
        V r = roughInverseCubeRoot(x);
        if constexpr (!kFuses) r = firstHalf(r);
        const Sum<V> square = exactProduct(r, r), product = exactProduct(x, r);
        const V one = lessProduct(broadcast<V>(1), product.high, square.high);
        const V e = mulSubFrom(product.high, square.low, mulSubFrom(product.low, square.high, one));
        const V root = mulAdd(r * e, mulAdd(broadcast<V>(2.0 / 9), e, broadcast<V>(1.0 / 3)), r);
        return root;
    }
    static double atLimit(double x) { return 1 / x; }
};

}  // namespace zpp::ZPP_ISA
