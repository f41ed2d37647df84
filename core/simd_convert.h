// Conversions of the SIMD vocabulary: loads that widen, stores that saturate, and numbers between integers
// and floating types. Integers and singles are worked on in lanes of 32 bits, doubles in lanes of 64.
#pragma once

#include "core/scale.h"
#include "core/simd_shuffle.h"

namespace zpp::ZPP_ISA {

// Several registers as one value: Halves<V> two of them, Halves<Halves<V>> four.
template <class H>
struct Halves {
    H low, high;
};
template <class V>
inline constexpr bool kIsHalves = false;
template <class H>
inline constexpr bool kIsHalves<Halves<H>> = true;

template <class V>
ZPP_INLINE Halves<V> halves(V low, V high) {
    return {low, high};
}

// op on every register of operands that have as many.
template <class Op, class V, class... W>
ZPP_INLINE auto mapRegisters(Op op, V v, W... others) {
    if constexpr (kIsHalves<V>)
        return halves(mapRegisters(op, v.low, others.low...), mapRegisters(op, v.high, others.high...));
    else
        return op(v, others...);
}

// What op makes of the registers of one value, two at a time.
template <class Op, class V>
ZPP_INLINE auto foldRegisters(Op op, V v) {
    if constexpr (kIsHalves<V>)
        return op(foldRegisters(op, v.low), foldRegisters(op, v.high));
    else
        return v;
}

#ifdef __SSE2__
// A vector as the type that integer instructions take.
template <class V>
ZPP_INLINE auto asRegister(V v) {
    if constexpr (sizeof(V) == 16) return bitCast<__m128i>(v);
#ifdef __AVX2__
    else if constexpr (sizeof(V) == 32)
        return bitCast<__m256i>(v);
#endif
#ifdef __AVX512F__
    else
        return bitCast<__m512i>(v);
#endif
}

// The first bytes of a register.
template <int Bytes>
ZPP_INLINE __m128i loadBytes(const void* p) {
    if constexpr (Bytes == 16) {
        return _mm_loadu_si128(static_cast<const __m128i*>(p));
    } else if constexpr (Bytes == 8) {
        return _mm_loadl_epi64(static_cast<const __m128i*>(p));
    } else {
        static_assert(Bytes == 4);
        return _mm_cvtsi32_si128(load<int32_t>(static_cast<const char*>(p)));
    }
}
template <int Bytes>
ZPP_INLINE void storeBytes(void* p, __m128i v) {
    if constexpr (Bytes == 16)
        _mm_storeu_si128(static_cast<__m128i*>(p), v);
    else if constexpr (Bytes == 8)
        _mm_storel_epi64(static_cast<__m128i*>(p), v);
    else
        store(static_cast<char*>(p), _mm_cvtsi128_si32(v));
}

// The first four elements of type S as lanes of 32 bits.
template <class S>
ZPP_INLINE __m128i widenFour(__m128i v) {
    constexpr bool isSigned = std::is_signed_v<S>;
    if constexpr (sizeof(S) == 4) {
        return v;
    } else {
#ifdef __SSE4_1__
        if constexpr (sizeof(S) == 1)
            return isSigned ? _mm_cvtepi8_epi32(v) : _mm_cvtepu8_epi32(v);
        else
            return isSigned ? _mm_cvtepi16_epi32(v) : _mm_cvtepu16_epi32(v);
#else
        // Signed numbers go into the upper end of the lanes, and down; unsigned ones get zeros above.
        const __m128i zero = _mm_setzero_si128();
        if constexpr (sizeof(S) == 1) v = _mm_unpacklo_epi8(v, isSigned ? v : zero);
        v = _mm_unpacklo_epi16(v, isSigned ? v : zero);
        return isSigned ? _mm_srai_epi32(v, 32 - 8 * static_cast<int>(sizeof(S))) : v;
#endif
    }
}
#endif

// N integers of any type as lanes of 32 bits.
template <int N, class S>
ZPP_INLINE Vec<int32_t, N> loadAsInts(const S* p) {
    using V [[maybe_unused]] = Vec<int32_t, N>;
    if constexpr (N == 1) return static_cast<int32_t>(*p);
#ifdef __SSE2__
    else if constexpr (sizeof(S) == 4)
        return load<V>(p);
    else if constexpr (N == 4)
        return bitCast<V>(widenFour<S>(loadBytes<4 * sizeof(S)>(p)));
#endif
#ifdef __AVX2__
    else if constexpr (N == 8) {
        constexpr bool isSigned = std::is_signed_v<S>;
        const __m128i v = loadBytes<8 * sizeof(S)>(p);
        if constexpr (sizeof(S) == 1)
            return bitCast<V>(isSigned ? _mm256_cvtepi8_epi32(v) : _mm256_cvtepu8_epi32(v));
        else
            return bitCast<V>(isSigned ? _mm256_cvtepi16_epi32(v) : _mm256_cvtepu16_epi32(v));
    }
#endif
#ifdef __AVX512F__
    else {
        constexpr bool isSigned = std::is_signed_v<S>;
        if constexpr (sizeof(S) == 1) {
            const __m128i v = loadBytes<16>(p);
            return bitCast<V>(isSigned ? _mm512_maskz_cvtepi8_epi32(kAllLanes, v)
                                       : _mm512_maskz_cvtepu8_epi32(kAllLanes, v));
        } else {
            const __m256i v = load<__m256i>(p);
            return bitCast<V>(isSigned ? _mm512_maskz_cvtepi16_epi32(kAllLanes, v)
                                       : _mm512_maskz_cvtepu16_epi32(kAllLanes, v));
        }
    }
#endif
}

// The same in a register, or in several where N is too many for one.
template <int N, class S>
ZPP_INLINE auto loadRegisters(const S* p) {
    if constexpr (N > kLanes<int32_t>)
        return halves(loadRegisters<N / 2>(p), loadRegisters<N / 2>(p + N / 2));
    else
        return loadAsInts<N>(p);
}
template <class T, class V>
ZPP_INLINE void storeRegisters(T* p, V v) {
    if constexpr (kIsHalves<V>) {
        storeRegisters(p, v.low);
        storeRegisters(p + sizeof(v.low) / sizeof(T), v.high);
    } else {
        store(p, v);
    }
}

// N signed bytes as words.
template <int N>
ZPP_INLINE Vec<int16_t, N> loadAsWords(const int8_t* p) {
    using V [[maybe_unused]] = Vec<int16_t, N>;
    if constexpr (N == 1) return *p;
#ifdef __SSE2__
    else if constexpr (N == 8) {
        const __m128i v = loadBytes<8>(p);
        return bitCast<V>(_mm_srai_epi16(_mm_unpacklo_epi8(v, v), 8));
    }
#endif
#ifdef __AVX2__
    else if constexpr (N == 16)
        return bitCast<V>(_mm256_cvtepi8_epi16(loadBytes<16>(p)));
#endif
#ifdef __AVX512F__
    else
        return bitCast<V>(_mm512_maskz_cvtepi8_epi16(0xFFFFFFFF, load<__m256i>(p)));
#endif
}

ZPP_INLINE float toFloat(int32_t v) { return static_cast<float>(v); }
template <class V>
ZPP_INLINE auto toFloat(V v) {
    return __builtin_convertvector(v, Vec<float, sizeof(V) / sizeof(int32_t)>);
}

// N integers, singles or doubles as doubles.
template <int N, class S>
ZPP_INLINE Vec<double, N> loadAsDoubles(const S* p) {
    using V = Vec<double, N>;
    if constexpr (N == 1)
        return static_cast<double>(*p);
    else if constexpr (std::is_same_v<S, double>)
        return load<V>(p);
#ifdef __SSE2__
    else if constexpr (N == 2) {
        const __m128i v = loadBytes<2 * sizeof(S)>(p);
        if constexpr (std::is_same_v<S, float>)
            return _mm_cvtps_pd(bitCast<__m128>(v));
        else
            return _mm_cvtepi32_pd(widenFour<S>(v));
    }
#endif
#ifdef __AVX2__
    else if constexpr (N == 4 && std::is_same_v<S, float>)
        return _mm256_cvtps_pd(load<__m128>(p));
    else if constexpr (N == 4)
        return _mm256_cvtepi32_pd(bitCast<__m128i>(loadAsInts<4>(p)));
#endif
#ifdef __AVX512F__
    else if constexpr (std::is_same_v<S, float>)
        return _mm512_maskz_cvtps_pd(kAllLanes & 0xFF, load<__m256>(p));
    else if constexpr (sizeof(S) == 2)
        return _mm512_maskz_cvtepi64_pd(kAllLanes & 0xFF,
                                        _mm512_maskz_cvtepi16_epi64(kAllLanes & 0xFF, loadBytes<16>(p)));
    else
        return _mm512_maskz_cvtepi32_pd(kAllLanes & 0xFF, bitCast<__m256i>(loadAsInts<8>(p)));
#endif
}

// The same in a register, or in several where N is too many for one.
template <int N, class S>
ZPP_INLINE auto loadManyAsDoubles(const S* p) {
    if constexpr (N > kLanes<double>)
        return halves(loadManyAsDoubles<N / 2>(p), loadManyAsDoubles<N / 2>(p + N / 2));
    else
        return loadAsDoubles<N>(p);
}

// Doubles as the nearest singles.
template <class V>
ZPP_INLINE void storeAsFloats(float* p, V v) {
    constexpr int n = sizeof(V) / sizeof(double);
    if constexpr (n == 1) store(p, static_cast<float>(v));
#ifdef __SSE2__
    else if constexpr (n == 2)
        storeBytes<8>(p, bitCast<__m128i>(_mm_cvtpd_ps(v)));
#endif
#ifdef __AVX2__
    else if constexpr (n == 4)
        store(p, _mm256_cvtpd_ps(v));
#endif
#ifdef __AVX512F__
    else
        store(p, _mm512_maskz_cvtpd_ps(kAllLanes & 0xFF, v));
#endif
}

// Doubles as doubles or as the nearest singles.
template <class T, class V>
ZPP_INLINE void storeFromDoubles(T* p, V v) {
    if constexpr (std::is_same_v<T, float>)
        storeAsFloats(p, v);
    else
        store(p, v);
}

enum class Rounding { kNearest, kZero };  // kNearest: ties to even, as the processor's default is

// Calls run with the rounding that a mode stands for, as a constant.
template <class Run>
inline ZppStatus withRounding(ZppRoundMode mode, Run run) {
    return mode == zppRoundNear ? run(std::integral_constant<Rounding, Rounding::kNearest>{})
                                : run(std::integral_constant<Rounding, Rounding::kZero>{});
}

// Singles as integers. Instructions make -2^31 of what has no place in 32 bits and of a NaN; a single element
// must have one.
template <Rounding rounding, class V>
ZPP_INLINE auto toInts(V v) {
    constexpr bool nearest = rounding == Rounding::kNearest;
    constexpr int n = sizeof(V) / sizeof(float);
    using Ints [[maybe_unused]] = Vec<int32_t, n>;
    if constexpr (n == 1)
        return nearest ? static_cast<int32_t>(__builtin_lrintf(v)) : static_cast<int32_t>(v);
#ifdef __SSE2__
    else if constexpr (n == 4)
        return bitCast<Ints>(nearest ? _mm_cvtps_epi32(v) : _mm_cvttps_epi32(v));
#endif
#ifdef __AVX2__
    else if constexpr (n == 8)
        return bitCast<Ints>(nearest ? _mm256_cvtps_epi32(v) : _mm256_cvttps_epi32(v));
#endif
#ifdef __AVX512F__
    else
        return bitCast<Ints>(nearest ? _mm512_maskz_cvtps_epi32(kAllLanes, v)
                                     : _mm512_maskz_cvttps_epi32(kAllLanes, v));
#endif
}

// Doubles as the integers next to them, a NaN as the least.
template <Rounding rounding, class V>
ZPP_INLINE void storeAsInts(int32_t* p, V v) {
    constexpr bool nearest = rounding == Rounding::kNearest;
    constexpr int n = sizeof(V) / sizeof(double);
    constexpr Range<double> range = {kRange<int32_t>.lower, kRange<int32_t>.upper};
    [[maybe_unused]] const V bounded = min(broadcast<V>(range.upper), v);  // as in toIntsOf
    if constexpr (n == 1) {
        const double inside = saturate(v, range);
        store(p, nearest ? static_cast<int32_t>(__builtin_lrint(inside)) : static_cast<int32_t>(inside));
    }
#ifdef __SSE2__
    else if constexpr (n == 2)
        storeBytes<8>(p, nearest ? _mm_cvtpd_epi32(bounded) : _mm_cvttpd_epi32(bounded));
#endif
#ifdef __AVX2__
    else if constexpr (n == 4)
        storeBytes<16>(p, nearest ? _mm256_cvtpd_epi32(bounded) : _mm256_cvttpd_epi32(bounded));
#endif
#ifdef __AVX512F__
    else
        store(p, nearest ? _mm512_maskz_cvtpd_epi32(kAllLanes & 0xFF, bounded)
                         : _mm512_maskz_cvttpd_epi32(kAllLanes & 0xFF, bounded));
#endif
}

template <Rounding rounding, class V>
ZPP_INLINE void storeManyAsInts(int32_t* p, V v) {
    if constexpr (kIsHalves<V>) {
        storeManyAsInts<rounding>(p, v.low);
        storeManyAsInts<rounding>(p + sizeof(v.low) / sizeof(double), v.high);
    } else {
        storeAsInts<rounding>(p, v);
    }
}

}  // namespace zpp::ZPP_ISA
