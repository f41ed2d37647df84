// Numbers as sums of two, of which the second is small.
#pragma once

#include "core/simd.h"

namespace zpp::ZPP_ISA {

inline constexpr double kMostFinite = 0x1.fffffffffffffp1023;

// A sum of two numbers, the first of which is larger or 0.
template <class V>
struct Sum {
    V high, low;
};
template <class V>
ZPP_INLINE Sum<V> sumOf(V a, V b) {
    const V high = a + b;
    return {high, (a - high) + b};
}

template <class V>
using BitsOf = Vec<int64_t, sizeof(V) / 8>;

// The number that v becomes by these bits added to its own, as to its exponent. Lanes without meaning may
// wrap.
template <class V>
ZPP_INLINE V plusBits(V v, BitsOf<V> bits) {
    return bitCast<V>(asUnsigned(bitCast<BitsOf<V>>(v)) + asUnsigned(bits));
}

// n 2^-1074, of a whole n up to 2^52: from its bits, as a multiplication that gives a subnormal number would
// take a hundred times as long. And back. (Compilers for 32 bits convert 64-bit integers in the x87 unit.)
inline double subnormal(double n) {
    return bitCast<double>(bitCast<uint64_t>(n + 0x1p52) - 0x4330000000000000);
}
inline double ofSubnormal(double x) {
    return bitCast<double>(bitCast<uint64_t>(x) + 0x4330000000000000) - 0x1p52;
}

// The first 26 bits: products of such numbers are exact.
template <class V>
ZPP_INLINE V firstHalf(V v) {
    return bitCast<V>(bitCast<BitsOf<V>>(v) & ~int64_t{0x7FFFFFF});
}

// a b and what it lacks of the product.
template <class V>
ZPP_INLINE Sum<V> exactProduct(V a, V b) {
    const V product = a * b;
    if constexpr (kFuses) {
        return {product, mulAdd(a, b, -product)};
    } else {
        const V aHalf = firstHalf(a), aRest = a - aHalf, bHalf = firstHalf(b), bRest = b - bHalf;
        return {product, ((aHalf * bHalf - product) + (aHalf * bRest + aRest * bHalf)) + aRest * bRest};
    }
}

// v^2; without a fused multiply-add the low part may be 2^-25 of it.
template <class V>
ZPP_INLINE Sum<V> squareOf(V v) {
    if constexpr (kFuses) {
        return exactProduct(v, v);
    } else {
        const V half = firstHalf(v);
        return {half * half, (v - half) * (v + half)};
    }
}

// a / b, right to 2^-60 before it is rounded, where the low parts are within the roundings of the high ones.
template <class V>
ZPP_INLINE V quotientOf(const Sum<V>& a, const Sum<V>& b) {
    const V inverse = 1.0 / b.high, quotient = a.high * inverse;
    const Sum<V> back = exactProduct(quotient, b.high);
    const V rest = ((a.high - back.high) - back.low) + mulSubFrom(quotient, b.low, a.low);
    return mulAdd(rest, inverse, quotient);
}

// c - a b, rounded once where c is next to the product.
template <class V>
ZPP_INLINE V lessProduct(V c, V a, V b) {
    if constexpr (kFuses) {
        return mulSubFrom(a, b, c);
    } else {
        const Sum<V> product = exactProduct(a, b);
        return (c - product.high) - product.low;
    }
}

}  // namespace zpp::ZPP_ISA
