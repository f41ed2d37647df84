// Two vectors the elements of which lie in turn in memory, as the parts of complex numbers do: taken apart
// when they are loaded, and put together again, both in the order of memory. Where their order in the
// registers does not matter, evenLanes() and oddLanes() are fewer shuffles.
#pragma once

#include <utility>

#include "core/simd_convert.h"

namespace zpp::ZPP_ISA {

// The lanes of the concatenation of a and b with an even index, and those with an odd one.
template <class V, int... I>
ZPP_INLINE Halves<V> deinterleaved(V a, V b, std::integer_sequence<int, I...>) {
    return {shuffle<2 * I...>(a, b), shuffle<(2 * I + 1)...>(a, b)};
}
// The elements of a and b in turn, of `Unit` lanes each.
template <int Unit, class V, int... I>
ZPP_INLINE Halves<V> interleaved(V a, V b, std::integer_sequence<int, I...>) {
    constexpr int n = sizeof...(I);
    return {shuffle<(I / (2 * Unit) * Unit + I % Unit + I / Unit % 2 * n)...>(a, b),
            shuffle<(n / 2 + I / (2 * Unit) * Unit + I % Unit + I / Unit % 2 * n)...>(a, b)};
}
template <class V>
using LaneIndices = std::make_integer_sequence<int, sizeof(V) / sizeof(Lane<V>)>;

#ifdef __AVX2__
// The same of 32-bit lanes within each 16 bytes. GCC 12 makes two shuffles and a blend of one of integers.
template <class V>
ZPP_INLINE Halves<V> deinterleavedWithin16(V a, V b) {
    const auto x = bitCast<__m256>(a), y = bitCast<__m256>(b);
    return {bitCast<V>(_mm256_shuffle_ps(x, y, 0x88)), bitCast<V>(_mm256_shuffle_ps(x, y, 0xDD))};
}
#endif

template <class V>
ZPP_INLINE Halves<V> deinterleaved(V a, V b) {
#ifdef __AVX2__
    if constexpr (sizeof(V) == 32 && sizeof(Lane<V>) == 4) {
        const auto inOrder = [](V v) ZPP_INLINE_LAMBDA {
            const auto pairs = bitCast<Vec<double, 4>>(v);
            return bitCast<V>(shuffle<0, 2, 1, 3>(pairs, pairs));
        };
        return mapRegisters(inOrder, deinterleavedWithin16(a, b));
    } else
#endif
        return deinterleaved(a, b, LaneIndices<V>());
}

#ifdef __AVX2__
// 16 bytes each from two places.
template <class V>
ZPP_INLINE V loadHalves(const void* low, const void* high) {
    return bitCast<V>(
        _mm256_loadu2_m128i(static_cast<const __m128i*>(high), static_cast<const __m128i*>(low)));
}
#endif

// From p on: in the lower register the elements with an even index, in the higher one those with an odd
// index.
template <class V, class T>
ZPP_INLINE Halves<V> loadDeinterleaved(const T* p) {
    static_assert(sizeof(T) == sizeof(Lane<V>) && sizeof(T) >= 4);
    constexpr size_t n = sizeof(V) / sizeof(T);
    if constexpr (n == 1) return {load<V>(p), load<V>(p + 1)};
#ifdef __AVX2__
    // AVX2 shuffles within 16 bytes. That these are the right ones costs nothing when they are loaded.
    else if constexpr (sizeof(V) == 32) {
        const V a = loadHalves<V>(p, p + n), b = loadHalves<V>(p + n / 2, p + n / 2 + n);
        if constexpr (sizeof(T) == 8) return {evenLanes(a, b), oddLanes(a, b)};
        return deinterleavedWithin16(a, b);
    }
#endif
    else
        return deinterleaved(load<V>(p), load<V>(p + n));
}

// 2 N elements as Numbers, those of each kind in as many registers as they need.
template <int N, class Number, class T>
ZPP_INLINE auto loadDeinterleaved(const T* p) {
    if constexpr (N > kLanes<Number>) {
        const auto low = loadDeinterleaved<N / 2, Number>(p), high = loadDeinterleaved<N / 2, Number>(p + N);
        return halves(halves(low.low, high.low), halves(low.high, high.high));
    } else {
        return loadDeinterleaved<Vec<Number, N>>(p);
    }
}

// The inverse: registers to be stored in turn, of elements of `Unit` lanes. A pair of single elements is one
// already.
template <int Unit = 1, class V>
ZPP_INLINE Halves<V> interleaved(Halves<V> v) {
    if constexpr (sizeof(V) == Unit * sizeof(Lane<V>)) return v;
#ifdef __AVX2__
    // Of 64-bit lanes GCC 12 makes six shuffles where four do.
    else if constexpr (sizeof(V) == 32 && Unit * sizeof(Lane<V>) == 8) {
        const V even = evenLanes(v.low, v.high), odd = oddLanes(v.low, v.high);
        return {shuffle<0, 1, 4, 5>(even, odd), shuffle<2, 3, 6, 7>(even, odd)};
    }
#endif
    else
        return interleaved<Unit>(v.low, v.high, LaneIndices<V>());
}

}  // namespace zpp::ZPP_ISA
