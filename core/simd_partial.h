// What is left of a vector, fewer elements than a register has lanes: the lanes behind them are 0, or what
// the caller says, and the memory behind them is neither read nor written.
#pragma once

#include "core/complex.h"

namespace zpp::ZPP_ISA {

#ifdef __AVX2__
// The first `count` elements, or all where V has fewer, of 4 or 8 bytes; count < 256.
template <class V, class T>
ZPP_INLINE V loadFirst(const T* p, size_t count) {
    static_assert(sizeof(T) == 4 || sizeof(T) == 8);
#ifdef __AVX512F__
    const auto mask = static_cast<__mmask8>(_bzhi_u32(0xFF, static_cast<uint32_t>(count)));
    if constexpr (sizeof(V) == 64)
        return bitCast<V>(_mm512_maskz_loadu_pd(mask, p));
    else if constexpr (sizeof(V) == 32 && sizeof(T) == 8)
        return bitCast<V>(_mm256_maskz_loadu_pd(mask, p));
    else if constexpr (sizeof(V) == 32)
        return bitCast<V>(_mm256_maskz_loadu_epi32(mask, p));
    else
        return bitCast<V>(_mm_maskz_loadu_epi32(mask, p));
#else
    using Index = Vec<std::conditional_t<sizeof(T) == 8, int64_t, int32_t>, 4>;
    const Index mask = Index{0, 1, 2, 3} < static_cast<int32_t>(count);
    if constexpr (sizeof(T) == 8)
        return bitCast<V>(_mm256_maskload_pd(reinterpret_cast<const double*>(p), bitCast<__m256i>(mask)));
    else
        return bitCast<V>(_mm_maskload_epi32(reinterpret_cast<const int*>(p), bitCast<__m128i>(mask)));
#endif
}
#endif

// The first `count` of N numbers as doubles.
template <int N, class S>
ZPP_INLINE Vec<double, N> loadAsDoubles(const S* p, size_t count) {
    using V = Vec<double, N>;
    if constexpr (N == 1) return count > 0 ? static_cast<double>(*p) : 0;
#ifdef __AVX2__
    else if constexpr (N > 2)
        return __builtin_convertvector(loadFirst<Vec<S, N>>(p, count), V);
#endif
    else if (count >= 2)
        return loadAsDoubles<2>(p);
    else
        return V{count > 0 ? static_cast<double>(*p) : 0, 0};
}

// The first `count` of N complex numbers, as loadComplex.
template <int N, class T>
ZPP_INLINE Complex<Vec<double, N>> loadComplex(const T* p, size_t count) {
    const size_t parts = 2 * count;
    return takenApart(loadAsDoubles<N>(p, parts), loadAsDoubles<N>(p + N, parts > N ? parts - N : 0));
}

// N integers of 32 bits, or the first `count` of them, as integers of 64.
template <int N>
ZPP_INLINE Vec<int64_t, N> loadAsLongs(const int32_t* p) {
    using V [[maybe_unused]] = Vec<int64_t, N>;
    if constexpr (N == 1) return *p;
#ifdef __SSE2__
    else if constexpr (N == 2) {
        const __m128i v = loadBytes<8>(p);
        return bitCast<V>(_mm_unpacklo_epi32(v, _mm_srai_epi32(v, 31)));
    }
#endif
#ifdef __AVX2__
    else if constexpr (N == 4)
        return bitCast<V>(_mm256_cvtepi32_epi64(load<__m128i>(p)));
#endif
#ifdef __AVX512F__
    else
        return bitCast<V>(_mm512_maskz_cvtepi32_epi64(kAllLanes & 0xFF, load<__m256i>(p)));
#endif
}
template <int N>
ZPP_INLINE Vec<int64_t, N> loadAsLongs(const int32_t* p, size_t count) {
    using V [[maybe_unused]] = Vec<int64_t, N>;
    if constexpr (N == 1) return count > 0 ? *p : 0;
#ifdef __AVX2__
    else if constexpr (N > 2)
        return __builtin_convertvector(loadFirst<Vec<int32_t, N>>(p, count), V);
#endif
    else if (count >= 2)
        return loadAsLongs<2>(p);
    else
        return V{count > 0 ? *p : 0, 0};
}

#ifdef __AVX2__
#ifdef __AVX512F__
template <class T>
ZPP_INLINE auto firstLanes(size_t count) {
    constexpr unsigned all = kAllLanes >> (16 - kLanes<T>);
    return static_cast<std::conditional_t<sizeof(T) == 8, __mmask8, __mmask16>>(
        _bzhi_u32(all, static_cast<uint32_t>(count)));
}
#else
template <class T>
ZPP_INLINE __m256i firstLanes(size_t count) {
    if constexpr (sizeof(T) == 8)
        return bitCast<__m256i>(Vec<int64_t>{0, 1, 2, 3} < static_cast<int64_t>(count));
    else
        return bitCast<__m256i>(Vec<int32_t>{0, 1, 2, 3, 4, 5, 6, 7} < static_cast<int32_t>(count));
}
#endif
#endif

// The first `count` lanes, fewer than 256, from memory, and `fill` in the others.
template <class V, class T>
ZPP_INLINE V loadFirst(const T* p, size_t count, T fill) {
    V v = broadcast<V>(fill);
#if defined(__AVX512F__)
    if constexpr (sizeof(T) == 8)
        return _mm512_mask_loadu_pd(v, firstLanes<T>(count), p);
    else
        return bitCast<V>(_mm512_mask_loadu_epi32(bitCast<__m512i>(v), firstLanes<T>(count), p));
#elif defined(__AVX2__)
    const __m256i lanes = firstLanes<T>(count);
    if constexpr (sizeof(T) == 8)
        return _mm256_blendv_pd(v, _mm256_maskload_pd(p, lanes), bitCast<__m256d>(lanes));
    else
        return bitCast<V>(_mm256_blendv_epi8(bitCast<__m256i>(v), _mm256_maskload_epi32(p, lanes), lanes));
#else
    if (count >= sizeof(V) / sizeof(T)) return load<V>(p);
    for (size_t i = 0; i < count; ++i) v[i] = p[i];
    return v;
#endif
}

// The first `count` lanes, fewer than 256, to memory.
template <class V, class T>
ZPP_INLINE void storeFirst(T* p, V v, size_t count) {
#if defined(__AVX512F__)
    if constexpr (sizeof(T) == 8)
        _mm512_mask_storeu_pd(p, firstLanes<T>(count), v);
    else
        _mm512_mask_storeu_epi32(p, firstLanes<T>(count), bitCast<__m512i>(v));
#elif defined(__AVX2__)
    if constexpr (sizeof(T) == 8)
        _mm256_maskstore_pd(p, firstLanes<T>(count), v);
    else
        _mm256_maskstore_epi32(p, firstLanes<T>(count), bitCast<__m256i>(v));
#else
    if (count >= sizeof(V) / sizeof(T)) return store(p, v);
    for (size_t i = 0; i < count; ++i) p[i] = v[i];
#endif
}

}  // namespace zpp::ZPP_ISA
