// The natural logarithm.
//
// x = 2^k z, z in 0.703 .. 1.406, in one of 16 intervals. Next to the inverse of its middle is 1 / c, whose
// logarithm is a multiple of 2^-42: with z / c = 1 + r, ln x = k ln 2 + ln c + r + r^2 q(r), of which the
// first sum is exact, and with r rounded only in the product that ends it. (Tang, "Table-driven
// implementation of the logarithm function in IEEE floating-point arithmetic", 1990; tables whose entries are
// nearly exact: Gal, "Computing elementary functions", 1986.)
//
// Error: .54 units in the last place with a fused multiply-add.
#pragma once

#include "core/checks.h"
#include "core/simd_lookup.h"
#include "vm/ln_tables.h"
#include "vm/polynomial.h"
#include "vm/sums.h"

namespace zpp::ZPP_ISA {

inline constexpr Table<2, 16> kLnTable(kLnInverse, kLnLog);
struct Zeros {
    double at[128];
};
inline constexpr Zeros kZeros{};
inline constexpr Table<4, 128> kLnFineTable(kLnFineInverse, kLnFineLog, kLnFineTail, kZeros.at);

// x = 2^(k + kScaled) z: both, and what the row of the table follows from, in intervals of 2^-kBits between
// which 1 is in a middle.
template <int kBits, int kScaled, class V>
struct LnParts {
    using I = Vec<int64_t, sizeof(V) / 8>;
    V k, z;
    I index;

    ZPP_INLINE explicit LnParts(V x) {
        constexpr uint64_t one = 0x3FF0000000000000, sign = 0x800, placeOf1 = 75 >> (7 - kBits);
        constexpr uint64_t exponent = 0xFFF0000000000000, most = (2 * placeOf1 + 1) << (51 - kBits);
        const auto bits = asUnsigned(bitCast<I>(x));
        const auto shifted = bits - (one - most);  // k in its first 12 bits
        k = bitCast<V>((shifted >> 52) ^ (uint64_t{0x4330000000000000} | sign)) - (0x1p52 + sign + kScaled);
        z = bitCast<V>(bits - (shifted & exponent));
        index = bitCast<I>(shifted >> (52 - kBits));
    }

    // 2^-k
    ZPP_INLINE V scale() const {
        return bitCast<V>(uint64_t{0x3FF0000000000000} - (asUnsigned(index) >> kBits << 52));
    }

    // z inverse - 1, of an inverse of 20 bits.
    ZPP_INLINE Sum<V> ratio(V inverse) const {
        const V zHigh = bitCast<V>(bitCast<I>(z) & ~int64_t{0xFFFFF});  // 33 bits: the product is exact
        return sumOf(zHigh * inverse - 1.0, (z - zHigh) * inverse);
    }
};

// ln(2^-kScaled x) of positive normal numbers.
template <int kScaled = 0, class V>
ZPP_INLINE V lnOrdinary(V x) {
    if constexpr (kFuses) {
        const LnParts<4, kScaled, V> parts(x);
        V row[2];
        lookUp(kLnTable, parts.index, row);
        const V t = parts.z * row[0], e = mulAdd(parts.z, row[0], -t), r = t - 1.0;
        const V w = mulAdd(parts.k, broadcast<V>(kLnOf2High), row[1]), high = w + r;
        const V rest = mulSubFrom(r, mulSubFrom(r, e, e), e);
        const V low = ((w - high) + r) + mulAdd(parts.k, broadcast<V>(kLnOf2Low), rest);
        return high + mulAdd(r * r, polynomial(kLnPolynomial, r), low);
    } else {
        const LnParts<7, kScaled, V> parts(x);
        V row[4];
        lookUp(kLnFineTable, parts.index, row);
        const Sum<V> r = parts.ratio(row[0]);
        const Sum<V> sum = sumOf(parts.k * kLnOf2High + row[1], r.high);
        const V low = sum.low + (parts.k * kLnOf2Low + (row[2] + r.low));
        return sum.high + (low + r.high * r.high * polynomial(kLnFinePolynomial, r.high));
    }
}

// The exponent of what subnormal numbers are counted in: ofSubnormal().
inline constexpr int kSubnormal = 1074;

// What a logarithm F has beside F::ordinary<kScaled>(x), that of 2^-kScaled x.
template <class F>
struct Logarithm {
    static constexpr const char* kName = "";
    static constexpr int kSources = 1, kDestinations = 1;
    static constexpr double kLeast = 0x1p-1022, kMost = kMostFinite;

    template <class V>
    ZPP_INLINE static auto run(const V (&x)[1], V (&y)[1]) {
        y[0] = F::template ordinary<0>(x[0]);
        return whereNot(x[0] >= kLeast, x[0] <= kMost);
    }

    static ZppStatus special(const double* x, double* y) {
        if (*x > 0) {
            *y = *x > kMost ? *x : F::template ordinary<kSubnormal>(ofSubnormal(*x));
        } else if (*x < 0) {
            *y = quietNan<double>();
            return zppStatusDomain;
        } else if (*x != *x) {
            *y = *x + *x;
        } else {
            *y = -__builtin_inf();
            return zppStatusSingularity;
        }
        return zppStatusOk;
    }
};

struct Ln : Logarithm<Ln> {
    template <int kScaled, class V>
    ZPP_INLINE static V ordinary(V x) {
        return lnOrdinary<kScaled>(x);
    }
};

}  // namespace zpp::ZPP_ISA
