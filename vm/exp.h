// The exponential.
//
// x = k ln 2 / 16 + r (without a fused multiply-add ln 2 / 64), e^x = 2^(k div 16) T (1 + p) with T = 2^(k
// mod 16 / 16) of a table in two parts and p = e^r - 1 by a polynomial. (Tang, "Table-driven implementation
// of the exponential function in IEEE floating-point arithmetic", 1989.)
//
// Error: r has one rounding, p two that count, and |p| <= 0.022 (0.0055): with the last sum 0.53 units in the
// last place.
#pragma once

#include "core/checks.h"
#include "core/scale.h"
#include "core/simd_lookup.h"
#include "vm/exp_tables.h"
#include "vm/polynomial.h"
#include "vm/sums.h"

namespace zpp::ZPP_ISA {

// 1.5 * 2^52: of a sum with it the last bits are the integer that the other one is next to.
inline constexpr double kToInteger = 0x1.8p52;

// The bits of the table less those that k << 48 adds to them.
struct ExpHeads {
    double at[16];
    constexpr ExpHeads() : at() {
        for (int i = 0; i < 16; ++i)
            at[i] =
                __builtin_bit_cast(double, __builtin_bit_cast(uint64_t, kExpHead[i]) - (uint64_t(i) << 48));
    }
};
inline constexpr ExpHeads kExpHeads;
inline constexpr Table<2, 16> kExpTable(kExpHeads.at, kExpTail);
inline constexpr Table<2, 64> kExpFineTable(kExpFineHead, kExpFineTail);

// e^x = 2^(k >> kBits) (head + more); in the register kernels of the fused builds `more` is left to the last
// operation.
template <class V>
struct ExpParts {
    static constexpr int kBits = kFuses ? 4 : 6;
    using I = Vec<int64_t, sizeof(V) / 8>;

    V head, p;
    V tail;  // what the head lacks; p has it where there is none
    I k;     // in the low bits

    // Of x, or of x and what is small beside a step.
    template <class... Low>
    ZPP_INLINE explicit ExpParts(V x, Low... low) {
        constexpr double perStep = (1 << kBits) * 1.44269504088896340736;
        const V shifted = mulAdd(x, broadcast<V>(perStep), broadcast<V>(kToInteger));
        const V steps = shifted - kToInteger;
        k = bitCast<I>(shifted);
        V row[2];
        if constexpr (kFuses) {
            lookUp(kExpTable, k, row);
            const V r = mulAdd(steps, broadcast<V>(-kExpStepHigh), x) +
                        (mulAdd(steps, broadcast<V>(-kExpStepLow), row[1]) + ... + low);
            p = mulAdd(r * r, polynomial(kExpPolynomial, r), r);
            tail = V{};
        } else {
            lookUp(kExpFineTable, k, row);
            const V r = (x - steps * kExpFineStepHigh) - ((steps * kExpFineStepLow) - ... - low);
            p = r + r * r * polynomial(kExpFinePolynomial, r);
            tail = row[1];
        }
        head = row[0];
    }

    // What stands in the table, without the power of two.
    double number() const { return kFuses ? kExpHead[k & 15] : head; }

    // The power of two, a normal number.
    ZPP_INLINE V power() const {
        constexpr int64_t fraction = (1 << kBits) - 1, one = int64_t{1023} << kBits;
        return bitCast<V>(((k + one) & ~fraction) << (52 - kBits));
    }
};

// e^x for |x| <= 708.
template <class V, class... Low>
ZPP_INLINE V expOrdinary(V x, Low... low) {
    const ExpParts<V> e(x, low...);
    if constexpr (kFuses) {
        const V head = plusBits(e.head, e.k << 48);
        return mulAdd(head, e.p, head);
    } else {
        return plusBits(e.head + (e.tail + e.head * e.p), (e.k & ~int64_t{63}) << 46);
    }
}

// 2^n (high + low), rounded once: where the result has fewer bits, beside the number whose last bit is that
// of all subnormal results.
inline double scaledOnce(double high, double low, int n) {
    const double sum = high + low, lost = (high - sum) + low;
    if (n >= 0 || sum >= powerOfTwo<double>(-1022 - n))
        return sum * powerOfTwo<double>(n / 2) * powerOfTwo<double>(n - n / 2);
    const double least = powerOfTwo<double>(-1022 - n), rounded = least + sum;
    const double result = (rounded + (((least - rounded) + sum) + lost)) - least;
    return subnormal(result * powerOfTwo<double>(n + 1074));
}

// e^x where the power of two is no double, or the result has fewer bits.
template <class... Low>
double expNearLimits(double x, Low... low) {
    const ExpParts<double> e(x, low...);
    const double head = e.number();
    return scaledOnce(head, e.tail + head * e.p, static_cast<int>(e.k) >> e.kBits);
}

struct Exp {
    static constexpr const char* kName = "dExp_HA";
    static constexpr int kSources = 1, kDestinations = 1;
    static constexpr double kOverflow = 0x1.62e42fefa39efp9, kUnderflow = -0x1.74910d52d3051p9;

    template <class V>
    ZPP_INLINE static auto run(const V (&x)[1], V (&y)[1]) {
        y[0] = expOrdinary(x[0]);
        return (magnitude(x[0]) <= 708.0) == 0;
    }

    static ZppStatus special(const double* x, double* y) {
        const bool infinite = magnitude(*x) > kMostFinite;
        if (*x > kOverflow) {
            *y = __builtin_inf();
            return infinite ? zppStatusOk : zppStatusOverflow;
        }
        if (*x < kUnderflow) {
            *y = 0;
            return infinite ? zppStatusOk : zppStatusUnderflow;
        }
        *y = *x < 0 || *x > 0 ? expNearLimits(*x) : *x + *x;  // a NaN, quiet
        return zppStatusOk;
    }
};

}  // namespace zpp::ZPP_ISA
