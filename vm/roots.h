// Inverses, quotients, square roots and inverse square roots.
//
// The processor rounds the first three correctly. An inverse root needs neither its root nor its division:
// from the bits of x comes y, right to 1/30, a polynomial in 1 - x y^n brings it to 20 bits, and the terms of
// the binomial series in what 1 - x y^n is then, of which nothing is lost to rounding, to all. (The start:
// Kahan and Ng, 1986.)
//
// Error: inverse square root .52 units in the last place.
#pragma once

#include "core/checks.h"
#include "core/precision.h"
#include "vm/polynomial.h"
#include "vm/roots_tables.h"
#include "vm/sums.h"

namespace zpp::ZPP_ISA {

struct Inv {
    static constexpr const char* kName = "";
    static constexpr int kSources = 1, kDestinations = 1;

    template <class V>
    ZPP_INLINE static auto run(const V (&x)[1], V (&y)[1]) {
        y[0] = quotient(1.0, x[0]);
        return x[0] == 0;
    }
    static ZppStatus special(const double* x, double* y) {
        *y = __builtin_copysign(__builtin_inf(), *x);
        return zppStatusSingularity;
    }
};

struct Div {
    static constexpr const char* kName = "";
    static constexpr int kSources = 2, kDestinations = 1;

    template <class V>
    ZPP_INLINE static auto run(const V (&x)[2], V (&y)[1]) {
        y[0] = quotient(x[0], x[1]);
        return x[1] == 0;
    }
    static ZppStatus special(const double* x, double* y) {
        *y = x[0] / x[1];
        return x[0] == x[0] ? zppStatusSingularity : zppStatusOk;
    }
};

struct Sqrt {
    static constexpr const char* kName = "dSqrt_HA";
    static constexpr int kSources = 1, kDestinations = 1;

    template <class V>
    ZPP_INLINE static auto run(const V (&x)[1], V (&y)[1]) {
        y[0] = squareRoot(x[0]);
        return x[0] < 0;
    }
    static ZppStatus special(const double*, double* y) {
        constexpr uint64_t invalid = 0x7FF8A5A55A5A5A5A;
        memcpy(y, &invalid, sizeof invalid);
        return zppStatusDomain;
    }
};

// Roots without division: F::root(x) for x in F::kLeast .. F::kMost. Other numbers are brought there by
// F::kStep, and their roots back by F::kBack; those of subnormal numbers by F::kBackOfSubnormal.
template <class F>
struct SeriesRoot {
    static constexpr const char* kName = "";
    static constexpr int kSources = 1, kDestinations = 1;

    template <class V>
    ZPP_INLINE static auto run(const V (&x)[1], V (&y)[1]) {
        const V size = F::kOdd ? magnitude(x[0]) : x[0], root = F::root(size);
        y[0] = F::kOdd ? withSignOfArgument(x[0], root) : root;
        return whereNot(size >= F::kLeast, size <= F::kMost);
    }
    static ZppStatus special(const double* x, double* y) {
        const double size = F::kOdd ? magnitude(*x) : *x;
        if (!(size > 0 && size <= kMostFinite)) {
            *y = F::atLimit(*x);
            return zppStatusOk;
        }
        const double root = size > 1           ? F::root(size * (1 / F::kStep)) * (1 / F::kBack)
                            : size < 0x1p-1022 ? F::root(ofSubnormal(size)) * F::kBackOfSubnormal
                                               : F::root(size * F::kStep) * F::kBack;
        *y = F::kOdd ? withSignOfArgument(*x, root) : root;
        return zppStatusOk;
    }
};

struct InvSqrt : SeriesRoot<InvSqrt> {
    static constexpr bool kOdd = false;
    static constexpr double kLeast = 0x1p-1022, kMost = 0x1p960;  // y^2 is a normal number, what it lacks too
    static constexpr double kStep = 0x1p200, kBack = 0x1p100, kBackOfSubnormal = 0x1p537;

    template <class V>
    ZPP_INLINE static V root(V x) {
        using I = Vec<int64_t, sizeof(V) / 8>;
        // Of a negative number, which has any result, it would be a tiny one: products of such take long.
        V y = bitCast<V>(kInverseRootStart - bitCast<I>(asUnsigned(bitCast<I>(magnitude(x))) >> 1));
        y = y * polynomial(kInverseRoot, mulSubFrom(x * y, y, broadcast<V>(1)));
        if constexpr (kFuses) {
            const V square = y * y, less = mulSubFrom(x, square, broadcast<V>(1));
            const V e = mulSubFrom(x, mulAdd(y, y, -square), less);
            return mulAdd(y * e, mulAdd(broadcast<V>(.375), e, broadcast<V>(.5)), y);
        } else {
            // Of 18 bits: the square is exact, and so is its product with 17 bits of x.
            y = bitCast<V>(bitCast<I>(y) & ~int64_t{0x7FFFFFFFF});
            const V square = y * y, high = bitCast<V>(bitCast<I>(x) & ~int64_t{0xFFFFFFFFF});
            const V e = (1.0 - high * square) - (x - high) * square;
            return y + y * e * (e * (e * .3125 + .375) + .5);
        }
    }
    static double atLimit(double x) { return x < 0 ? quietNan<double>() : 1 / x; }
};

}  // namespace zpp::ZPP_ISA
