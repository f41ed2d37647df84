// Shuffles of the SIMD vocabulary: lanes of vectors taken in another order.
#pragma once

#include <utility>

#include "core/simd.h"

namespace zpp::ZPP_ISA {

// Lanes of the concatenation of a and b, chosen by index.
template <int... I, class V>
ZPP_INLINE V shuffle(V a, V b) {
    return __builtin_shufflevector(a, b, I...);
}

// The lower and the upper half of a vector of 64-bit lanes.
template <class V>
ZPP_INLINE auto lowHalf(V v) {
    if constexpr (sizeof(V) == 64)
        return __builtin_shufflevector(v, v, 0, 1, 2, 3);
    else if constexpr (sizeof(V) == 32)
        return __builtin_shufflevector(v, v, 0, 1);
    else
        return v[0];
}
template <class V>
ZPP_INLINE auto highHalf(V v) {
    if constexpr (sizeof(V) == 64)
        return __builtin_shufflevector(v, v, 4, 5, 6, 7);
    else if constexpr (sizeof(V) == 32)
        return __builtin_shufflevector(v, v, 2, 3);
    else
        return v[1];
}

// N lanes, two of each lane of v; of a single number, one or two.
template <int N, class V>
ZPP_INLINE Vec<double, N> eachTwice(V v) {
    if constexpr (N == 8)
        return __builtin_shufflevector(v, v, 0, 0, 1, 1, 2, 2, 3, 3);
    else if constexpr (N == 4)
        return __builtin_shufflevector(v, v, 0, 0, 1, 1);
    else if constexpr (N == 2)
        return Vec<double, 2>{v, v};
    else
        return v;
}

// The even and the odd lanes of two vectors of doubles, taken from a and b in turn: a0 b0 a2 b2 ... and
// a1 b1 a3 b3 .... Applied to two vectors of (re, im) pairs they give a vector of re and one of im, in an
// order that applying them again undoes.
template <class V>
ZPP_INLINE V evenLanes(V a, V b) {
    if constexpr (sizeof(V) == 64)
        return shuffle<0, 8, 2, 10, 4, 12, 6, 14>(a, b);
    else if constexpr (sizeof(V) == 32)
        return shuffle<0, 4, 2, 6>(a, b);
    else
        return shuffle<0, 2>(a, b);
}
template <class V>
ZPP_INLINE V oddLanes(V a, V b) {
    if constexpr (sizeof(V) == 64)
        return shuffle<1, 9, 3, 11, 5, 13, 7, 15>(a, b);
    else if constexpr (sizeof(V) == 32)
        return shuffle<1, 5, 3, 7>(a, b);
    else
        return shuffle<1, 3>(a, b);
}

// The lanes of each pair exchanged: (im, re) for (re, im).
template <class V>
ZPP_INLINE V swapPairs(V v) {
    if constexpr (sizeof(V) == 64)
        return shuffle<1, 0, 3, 2, 5, 4, 7, 6>(v, v);
    else if constexpr (sizeof(V) == 32)
        return shuffle<1, 0, 3, 2>(v, v);
    else
        return shuffle<1, 0>(v, v);
}

// The even lanes of v, each twice, and the odd ones: (re, re) and (im, im) for (re, im). GCC makes a shuffle
// of the first even where a load can do it.
template <class V>
ZPP_INLINE V evenTwice(V v) {
#ifdef __AVX512F__
    if constexpr (sizeof(V) == 64) return _mm512_maskz_movedup_pd(0xFF, v);
#endif
#ifdef __AVX2__
    if constexpr (sizeof(V) == 32) return _mm256_movedup_pd(v);
#endif
    return evenLanes(v, v);
}
template <class V>
ZPP_INLINE V oddTwice(V v) {
    return oddLanes(v, v);
}

// a - b in the even lanes, a + b in the odd ones. A fused operation with 1 rounds as the sum does.
template <class V>
ZPP_INLINE V subtractAdd(V a, V b) {
#ifdef __AVX512F__
    if constexpr (sizeof(V) == 64) return _mm512_fmaddsub_pd(a, broadcast<V>(1.0), b);
#endif
#ifdef __AVX2__
    if constexpr (sizeof(V) == 32) return _mm256_addsub_pd(a, b);
    if constexpr (sizeof(V) == 16) return _mm_addsub_pd(a, b);
#endif
    return a + exclusiveOr(b, repeated<V>(Vec<double, 2>{-0.0, 0.0}));
}
// a + b in the even lanes, a - b in the odd ones.
template <class V>
ZPP_INLINE V addSubtract(V a, V b) {
#ifdef __FMA__
    if constexpr (sizeof(V) == 16) return _mm_fmsubadd_pd(a, broadcast<V>(1.0), b);
    if constexpr (sizeof(V) == 32) return _mm256_fmsubadd_pd(a, broadcast<V>(1.0), b);
#endif
#ifdef __AVX512F__
    if constexpr (sizeof(V) == 64) return _mm512_fmsubadd_pd(a, broadcast<V>(1.0), b);
#endif
    return a + exclusiveOr(b, repeated<V>(Vec<double, 2>{0.0, -0.0}));
}

// The pairs in reverse order.
template <class V>
ZPP_INLINE V reversePairs(V v) {
    if constexpr (sizeof(V) == 64)
        return shuffle<6, 7, 4, 5, 2, 3, 0, 1>(v, v);
    else if constexpr (sizeof(V) == 32)
        return shuffle<2, 3, 0, 1>(v, v);
    else
        return v;
}

// The lanes in reverse order.
template <class V, int... I>
ZPP_INLINE V reverseLanes(V v, std::integer_sequence<int, I...>) {
    return shuffle<(static_cast<int>(sizeof...(I)) - 1 - I)...>(v, v);
}
template <class V>
ZPP_INLINE V reverseLanes(V v) {
    if constexpr (std::is_arithmetic_v<V>)
        return v;
    else
        return reverseLanes(v, std::make_integer_sequence<int, sizeof(V) / sizeof(Lane<V>)>());
}

// Transposes a square of N vectors of N doubles: lane j of rows[i] and lane i of rows[j] change places.
template <class V, int N>
ZPP_INLINE void transpose(V (&rows)[N]) {
    static_assert(sizeof(V) == N * sizeof(double));
    if constexpr (N >= 2)
#pragma GCC unroll 8
        for (int i = 0; i < N; i += 2) {
            const V a = rows[i], b = rows[i + 1];
            rows[i] = evenLanes(a, b);
            rows[i + 1] = oddLanes(a, b);
        }
    if constexpr (N == 4)
#pragma GCC unroll 8
        for (int i = 0; i < 2; ++i) {
            const V a = rows[i], b = rows[i + 2];
            rows[i] = shuffle<0, 1, 4, 5>(a, b);
            rows[i + 2] = shuffle<2, 3, 6, 7>(a, b);
        }
    if constexpr (N == 8) {
#pragma GCC unroll 8
        for (int i = 0; i < 8; i += i % 4 == 1 ? 3 : 1) {
            const V a = rows[i], b = rows[i + 2];
            rows[i] = shuffle<0, 1, 8, 9, 4, 5, 12, 13>(a, b);
            rows[i + 2] = shuffle<2, 3, 10, 11, 6, 7, 14, 15>(a, b);
        }
#pragma GCC unroll 8
        for (int i = 0; i < 4; ++i) {
            const V a = rows[i], b = rows[i + 4];
            rows[i] = shuffle<0, 1, 2, 3, 8, 9, 10, 11>(a, b);
            rows[i + 4] = shuffle<4, 5, 6, 7, 12, 13, 14, 15>(a, b);
        }
    }
}

}  // namespace zpp::ZPP_ISA
