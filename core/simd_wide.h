// Integers in lanes of 64 bits in the SIMD vocabulary. A register of 32-bit lanes becomes two registers
// (Halves): what its even lanes give, and its odd ones. What is too short for a register is int32_t and
// int64_t, and a pair of numbers Halves of them.
#pragma once

#include <utility>

#include "core/simd_fold.h"
#include "core/simd_interleave.h"

namespace zpp::ZPP_ISA {

template <class V, int... I>
ZPP_INLINE V swapPairs32(V v, std::integer_sequence<int, I...>) {
    return shuffle<(I ^ 1)...>(v, v);
}
// The lanes of 32 bits of each pair exchanged.
template <class V>
ZPP_INLINE V swapPairs32(V v) {
    if constexpr (kIsHalves<V>)
        return {v.high, v.low};
    else
        return swapPairs32(v, std::make_integer_sequence<int, sizeof(V) / sizeof(int32_t)>());
}

// N integers, each in both lanes of a pair.
template <int N>
ZPP_INLINE auto loadTwice(const int32_t* p) {
    if constexpr (N == 1) return halves(*p, *p);
#ifdef __SSE2__
    else {
        using V = Vec<int32_t, 2 * N>;
#if defined(__AVX512F__)
        const V v = bitCast<V>(_mm512_maskz_cvtepu32_epi64(kAllLanes & 0xFF, load<__m256i>(p)));
        return v | swapPairs32(v);
#elif defined(__AVX2__)
        const V v = bitCast<V>(_mm256_cvtepu32_epi64(load<__m128i>(p)));
        return v | swapPairs32(v);
#else
        const __m128i v = loadBytes<8>(p);
        return bitCast<V>(_mm_unpacklo_epi32(v, v));
#endif
    }
#endif
}

// The products of the even and of the odd lanes of a and b.
template <class V>
ZPP_INLINE auto products(V a, V b) {
    if constexpr (kIsHalves<V>)
        return halves(products(a.low, b.low), products(a.high, b.high));
    else if constexpr (std::is_arithmetic_v<V>)
        return int64_t{a} * b;
#ifdef __SSE2__
    else {
        using Wide = Vec<int64_t>;
        using Bits = Vec<uint64_t>;
        const Bits oddA = bitCast<Bits>(a) >> 32, oddB = bitCast<Bits>(b) >> 32;
#if defined(__AVX512F__)
        const auto multiply = [](auto x, auto y) ZPP_INLINE_LAMBDA {
            return bitCast<Wide>(
                _mm512_maskz_mul_epi32(kAllLanes & 0xFF, bitCast<__m512i>(x), bitCast<__m512i>(y)));
        };
        return halves(multiply(a, b), multiply(oddA, oddB));
#elif defined(__AVX2__)
        const auto multiply = [](auto x, auto y) ZPP_INLINE_LAMBDA {
            return bitCast<Wide>(_mm256_mul_epi32(bitCast<__m256i>(x), bitCast<__m256i>(y)));
        };
        return halves(multiply(a, b), multiply(oddA, oddB));
#else
        // Of unsigned numbers, which a negative factor has made too large by 2^32 times the other one.
        const auto multiply = [](auto x, auto y) ZPP_INLINE_LAMBDA {
            return bitCast<Bits>(_mm_mul_epu32(bitCast<__m128i>(x), bitCast<__m128i>(y)));
        };
        using Words = Vec<uint32_t>;
        const Bits excess = bitCast<Bits>(bitCast<Words>(a >> 31 & b) + bitCast<Words>(b >> 31 & a));
        return halves(bitCast<Wide>(multiply(a, b) - (excess << 32)),
                      bitCast<Wide>(multiply(oddA, oddB) - (excess >> 32 << 32)));
#endif
    }
#endif
}

// The squares of the even and of the odd lanes, which have no sign.
template <class V>
ZPP_INLINE auto squares(V v) {
#if defined(__SSE2__) && !defined(__AVX2__)
    if constexpr (sizeof(V) == 16 && !kIsHalves<V>) {
        const auto even = asRegister(magnitudeOfInts(asUnsigned(v))), odd = _mm_srli_epi64(even, 32);
        using Wide = Vec<uint64_t>;
        return halves(bitCast<Wide>(_mm_mul_epu32(even, even)), bitCast<Wide>(_mm_mul_epu32(odd, odd)));
    } else
#endif
        return mapRegisters([](auto square) ZPP_INLINE_LAMBDA { return asUnsigned(square); }, products(v, v));
}

// a + b of 64-bit lanes, which wraps around.
template <class V>
ZPP_INLINE V wrappingSum(V a, V b) {
    return bitCast<V>(asUnsigned(a) + asUnsigned(b));
}

// The lower and the upper halves of 64-bit lanes, as the even and odd lanes of one register.
template <class V, int... I>
ZPP_INLINE auto halfLanes(Halves<V> v, bool upper, std::integer_sequence<int, I...>) {
    constexpr int n = sizeof...(I);
    using Ints = Vec<int32_t, n>;
    const Ints even = bitCast<Ints>(v.low), odd = bitCast<Ints>(v.high);
    return upper ? shuffle<(I % 2 == 0 ? I + 1 : n + I)...>(even, odd)
                 : shuffle<(I % 2 == 0 ? I : n + I - 1)...>(even, odd);
}

// Lanes of 64 bits saturated to 32, as the even and odd lanes of one register.
template <class V>
ZPP_INLINE auto saturatedTo32(V v) {
    constexpr Range<int32_t> range = kRange<int32_t>;
    if constexpr (std::is_arithmetic_v<V>) {
        return static_cast<int32_t>(v < range.lower ? range.lower : v > range.upper ? range.upper : v);
    } else if constexpr (std::is_same_v<V, Halves<int64_t>>) {
        return halves(saturatedTo32(v.low), saturatedTo32(v.high));
    } else {
        const auto lanes = std::make_integer_sequence<int, sizeof(v.low) / sizeof(int32_t)>();
        const auto lower = halfLanes(v, false, lanes), upper = halfLanes(v, true, lanes);
        return select(upper == lower >> 31, lower, upper >> 31 ^ range.upper);
    }
}

// Registers of 64-bit lanes without a sign saturated to 32 bits with one, in their order.
template <class V>
ZPP_INLINE auto saturatedInOrder(V v) {
    constexpr int32_t upper = kRange<int32_t>.upper;
    if constexpr (std::is_arithmetic_v<V>) {
        return static_cast<int32_t>(v > uint64_t{upper} ? upper : v);
    } else {
        using Ints = Vec<int32_t, sizeof(v.low) / sizeof(int32_t)>;
        const auto words = deinterleaved(bitCast<Ints>(v.low), bitCast<Ints>(v.high));
        return select((words.high | words.low >> 31) == 0, words.low, broadcast<Ints>(upper));
    }
}

}  // namespace zpp::ZPP_ISA
