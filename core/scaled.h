// Sums and products of 32-bit integers, exact and then scaled, real or complex. Operands are registers of
// 32-bit lanes, single integers, or Halves of two, as single complex numbers come.
//
//     scaledSum<Sum>(a, b, pDst, len, scaleFactor)      a + b, by elements; of Difference a - b
//     scaledSum<Sum>(a, val, pDst, len, scaleFactor)    the same with a constant
//     scaledProduct<lanes>(multiply, pDst, len, scaleFactor, a, b...)
//     scaledProductC<lanes>(multiply, a, val, pDst, len, scaleFactor)
//
// multiply makes lanes of 64 bits, such as products(a, b).
#pragma once

#include "core/elementwise.h"
#include "core/simd_wide.h"

namespace zpp::ZPP_ISA {

// What has wrapped around where `overflow` is negative has the wrong sign: the end of the range instead.
template <class V, class U>
ZPP_INLINE V saturatedWhere(V overflow, U wrapped) {
    const V v = bitCast<V>(wrapped);
    return select(overflow < 0, v >> 31 ^ kRange<int32_t>.lower, v);
}

// A sum of two integers has 33 bits; a half of it, rounded down, has 32, and a ^ b the last one.
struct Sum {
    template <class V>
    ZPP_INLINE static V saturated(V a, V b) {
        const auto sum = asUnsigned(a) + asUnsigned(b);
        return saturatedWhere((bitCast<V>(sum) ^ a) & (bitCast<V>(sum) ^ b), sum);
    }
    template <class V>
    ZPP_INLINE static V half(V a, V b) {
        return (a & b) + ((a ^ b) >> 1);
    }
};
struct Difference {
    template <class V>
    ZPP_INLINE static V saturated(V a, V b) {
        const auto difference = asUnsigned(a) - asUnsigned(b);
        return saturatedWhere((bitCast<V>(difference) ^ a) & (a ^ b), difference);
    }
    template <class V>
    ZPP_INLINE static V half(V a, V b) {
        return ((a ^ b) >> 1) - (~a & b);
    }
};
template <class Terms>
struct Reversed {
    template <class V>
    ZPP_INLINE static V saturated(V a, V b) {
        return Terms::saturated(b, a);
    }
    template <class V>
    ZPP_INLINE static V half(V a, V b) {
        return Terms::half(b, a);
    }
};

// run(scaled), where scaled(Sum(), a, b) is a + b, scaled, and of Difference a - b: the case of the scale
// factor is chosen once for a call.
template <class Run>
ZPP_INLINE ZppStatus withScaledSums(int scaleFactor, Run run) {
    const auto runOn = [=](auto op) ZPP_INLINE_LAMBDA {
        return run([=](auto terms, auto a, auto b) ZPP_INLINE_LAMBDA {
            return mapRegisters([=](auto x, auto y) ZPP_INLINE_LAMBDA { return op(terms, x, y); }, a, b);
        });
    };
    if (scaleFactor == 0)
        return runOn([](auto terms, auto a, auto b) ZPP_INLINE_LAMBDA { return terms.saturated(a, b); });
    if (scaleFactor < 0) {
        const SaturatedShiftLeft<int32_t> shift(-clamp(scaleFactor, -31, 0), kRange<int32_t>);
        return runOn([=](auto terms, auto a, auto b)
                         ZPP_INLINE_LAMBDA { return shift(terms.saturated(a, b)); });
    }
    if (scaleFactor == 1)
        return runOn([](auto terms, auto a, auto b) ZPP_INLINE_LAMBDA {
            const auto half = terms.half(a, b);
            // Up from an odd one; but 2^31 - 1/2, which only a difference is, saturates.
            return half + ((half < kRange<int32_t>.upper) & half & (a ^ b) & 1);
        });
    if (scaleFactor > 32)
        return runOn([](auto, auto a, auto) ZPP_INLINE_LAMBDA { return a ^ a; });  // at most a half
    const RoundedShiftRight<int32_t> shift(scaleFactor - 1);
    return runOn([=](auto terms, auto a, auto b)
                     ZPP_INLINE_LAMBDA { return shift(terms.half(a, b), a ^ b); });
}
// The same for one of them, as op(a, b).
template <class Terms, class Run>
ZPP_INLINE ZppStatus withScaledSum(int scaleFactor, Run run) {
    return withScaledSums(scaleFactor, [=](auto scaled) ZPP_INLINE_LAMBDA {
        return run([=](auto a, auto b) ZPP_INLINE_LAMBDA { return scaled(Terms(), a, b); });
    });
}

// What lanes of 64 bits hold: products, -2^62 + 2^31 ... 2^62; sums of two, which are 2^31 away from the ends
// of the range or would be 2^63 (complex_integer.cpp); or anything.
enum class Lanes64 { kProducts, kPairs, kAny };

// run(scale) for lanes of 64 bits.
template <Lanes64 lanes, class Run>
ZPP_INLINE ZppStatus withScaledProduct(int scaleFactor, Run run) {
    if (scaleFactor <= 0) {
        const SaturatedShiftLeft<int32_t> shift(-clamp(scaleFactor, -31, 0), kRange<int32_t>);
        return run([=](auto v) ZPP_INLINE_LAMBDA { return mapRegisters(shift, saturatedTo32(v)); });
    }
    if (scaleFactor > (lanes == Lanes64::kProducts ? 62 : 63))
        return run([](auto v) ZPP_INLINE_LAMBDA {  // at most a half
            return mapRegisters([](auto ints) ZPP_INLINE_LAMBDA { return ints ^ ints; }, saturatedTo32(v));
        });
    const auto runWith = [=](auto shift) ZPP_INLINE_LAMBDA {
        return run([=](auto v) ZPP_INLINE_LAMBDA { return saturatedTo32(mapRegisters(shift, v)); });
    };
    // A factor below 32 adds less than 2^30.
    const bool small = lanes == Lanes64::kProducts || (lanes == Lanes64::kPairs && scaleFactor < 32);
    return small ? runWith(RoundedShiftRightOfSmall<int64_t>(scaleFactor))
                 : runWith(RoundedShiftRight<int64_t>(scaleFactor));
}

// What runs is inlined, though once for a call: to pass all that it captures through memory takes as long as
// fifty elements.
template <class Terms, class T>
inline ZppStatus scaledSum(const T* a, const T* b, T* pDst, int len, int scaleFactor) {
    return withScaledSum<Terms>(
        scaleFactor, [=](auto sum) ZPP_INLINE_LAMBDA { return elementwise(sum, pDst, len, a, b); });
}
template <class Terms, class T>
inline ZppStatus scaledSum(const T* a, T val, T* pDst, int len, int scaleFactor) {
    return withScaledSum<Terms>(
        scaleFactor, [=](auto sum) ZPP_INLINE_LAMBDA { return withConstant(sum, a, val, pDst, len); });
}

template <Lanes64 lanes, class Multiply, class D, class... S>
inline ZppStatus scaledProduct(Multiply multiply, D* pDst, int len, int scaleFactor, const S*... pSrc) {
    return withScaledProduct<lanes>(scaleFactor, [=](auto scale) ZPP_INLINE_LAMBDA {
        const auto op = [=](auto... x) ZPP_INLINE_LAMBDA { return scale(multiply(x...)); };
        return elementwise(op, pDst, len, pSrc...);
    });
}
template <Lanes64 lanes, class Multiply, class T>
inline ZppStatus scaledProductC(Multiply multiply, const T* pSrc, T val, T* pDst, int len, int scaleFactor) {
    return withScaledProduct<lanes>(scaleFactor, [=](auto scale) ZPP_INLINE_LAMBDA {
        const auto op = [=](auto x, auto y) ZPP_INLINE_LAMBDA { return scale(multiply(x, y)); };
        return withConstant(op, pSrc, val, pDst, len);
    });
}

}  // namespace zpp::ZPP_ISA
