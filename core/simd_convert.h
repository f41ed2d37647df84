// Conversions of the SIMD vocabulary: loads that widen, stores that saturate, and numbers between integers
// and floating types. Integers and singles are worked on in lanes of 32 bits, doubles in lanes of 64.
#pragma once

#include "core/scale.h"

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

#ifdef __SSE2__
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

// All lanes, for the masked forms of intrinsics (core/simd.h says why).
inline constexpr uint16_t kAllLanes = 0xFFFF;

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
        // Into the upper end of the lanes, and down.
        constexpr int count = 32 - 8 * static_cast<int>(sizeof(S));
        if constexpr (sizeof(S) == 1) v = _mm_unpacklo_epi8(v, v);
        v = _mm_unpacklo_epi16(v, v);
        return isSigned ? _mm_srai_epi32(v, count) : _mm_srli_epi32(v, count);
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
    else
        return _mm512_maskz_cvtepi32_pd(kAllLanes & 0xFF, bitCast<__m256i>(loadAsInts<8>(p)));
#endif
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

// Singles inside the range of int32_t as integers.
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

// Doubles inside the range of int32_t as integers.
template <Rounding rounding, class V>
ZPP_INLINE void storeAsInts(int32_t* p, V v) {
    constexpr bool nearest = rounding == Rounding::kNearest;
    constexpr int n = sizeof(V) / sizeof(double);
    if constexpr (n == 1)
        store(p, nearest ? static_cast<int32_t>(__builtin_lrint(v)) : static_cast<int32_t>(v));
#ifdef __SSE2__
    else if constexpr (n == 2)
        storeBytes<8>(p, nearest ? _mm_cvtpd_epi32(v) : _mm_cvttpd_epi32(v));
#endif
#ifdef __AVX2__
    else if constexpr (n == 4)
        storeBytes<16>(p, nearest ? _mm256_cvtpd_epi32(v) : _mm256_cvttpd_epi32(v));
#endif
#ifdef __AVX512F__
    else
        store(p, nearest ? _mm512_maskz_cvtpd_epi32(kAllLanes & 0xFF, v)
                         : _mm512_maskz_cvttpd_epi32(kAllLanes & 0xFF, v));
#endif
}

// How many registers of 32-bit lanes are stored as D at a time: as many as fill one, where packing several
// together pays. AVX-512 narrows each in one instruction.
template <class D>
inline constexpr int kPackedRegisters = kVectorBytes == 16 || kVectorBytes == 32
                                            ? static_cast<int>(sizeof(int32_t) / sizeof(D))
                                            : 1;

#ifdef __SSE2__
// The lanes of a and b, which hold values of D or beyond (for unsigned words: above -2^31 + 2^15), as words.
template <class D>
ZPP_INLINE __m128i packWords(__m128i a, __m128i b) {
    if constexpr (std::is_signed_v<D> || sizeof(D) == 1) return _mm_packs_epi32(a, b);
#ifdef __SSE4_1__
    else
        return _mm_packus_epi32(a, b);
#else
    else {
        const __m128i bias = _mm_set1_epi32(32768);
        const __m128i words = _mm_packs_epi32(_mm_sub_epi32(a, bias), _mm_sub_epi32(b, bias));
        return _mm_xor_si128(words, _mm_set1_epi16(-32768));
    }
#endif
}
template <class D>
ZPP_INLINE __m128i packBytes(__m128i a, __m128i b) {
    return std::is_signed_v<D> ? _mm_packs_epi16(a, b) : _mm_packus_epi16(a, b);
}
#endif

#ifdef __AVX2__
// The same within the halves of the registers.
template <class D>
ZPP_INLINE __m256i packWords(__m256i a, __m256i b) {
    return std::is_signed_v<D> || sizeof(D) == 1 ? _mm256_packs_epi32(a, b) : _mm256_packus_epi32(a, b);
}
template <class D>
ZPP_INLINE __m256i packBytes(__m256i a, __m256i b) {
    return std::is_signed_v<D> ? _mm256_packs_epi16(a, b) : _mm256_packus_epi16(a, b);
}
#endif

#ifdef __AVX512F__
template <class D>
ZPP_INLINE void storeRegister(D* p, Vec<int32_t, 16> v) {
    if constexpr (std::is_signed_v<D> && sizeof(D) == 1)
        storeBytes<16>(p, _mm512_maskz_cvtsepi32_epi8(kAllLanes, bitCast<__m512i>(v)));
    else if constexpr (std::is_signed_v<D>)
        store(p, _mm512_maskz_cvtsepi32_epi16(kAllLanes, bitCast<__m512i>(v)));
    else if constexpr (sizeof(D) == 1)
        storeBytes<16>(p, _mm512_maskz_cvtusepi32_epi8(kAllLanes, bitCast<__m512i>(max(v, v - v))));
    else
        store(p, _mm512_maskz_cvtusepi32_epi16(kAllLanes, bitCast<__m512i>(max(v, v - v))));
}
#endif
#ifdef __AVX2__
template <class D>
ZPP_INLINE void storeRegister(D* p, Vec<int32_t, 8> v) {
    const __m256i bits = bitCast<__m256i>(v);
    const __m128i words = packWords<D>(_mm256_castsi256_si128(bits), _mm256_extracti128_si256(bits, 1));
    storeBytes<8 * sizeof(D)>(p, sizeof(D) == 1 ? packBytes<D>(words, words) : words);
}
// Registers that fill one of D. Packing within halves leaves the elements of the lower halves of all
// registers before those of the upper ones.
template <class D>
ZPP_INLINE void storePacked(D* p, Halves<Vec<int32_t, 8>> v) {
    const __m256i words = packWords<D>(bitCast<__m256i>(v.low), bitCast<__m256i>(v.high));
    store(p, _mm256_permute4x64_epi64(words, 0xD8));
}
template <class D>
ZPP_INLINE void storePacked(D* p, Halves<Halves<Vec<int32_t, 8>>> v) {
    const __m256i low = packWords<D>(bitCast<__m256i>(v.low.low), bitCast<__m256i>(v.low.high));
    const __m256i high = packWords<D>(bitCast<__m256i>(v.high.low), bitCast<__m256i>(v.high.high));
    const __m256i order = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
    store(p, _mm256_permutevar8x32_epi32(packBytes<D>(low, high), order));
}
#elif defined(__SSE2__)
template <class D>
ZPP_INLINE void storeRegister(D* p, Vec<int32_t, 4> v) {
    const __m128i words = packWords<D>(bitCast<__m128i>(v), bitCast<__m128i>(v));
    storeBytes<4 * sizeof(D)>(p, sizeof(D) == 1 ? packBytes<D>(words, words) : words);
}
template <class D>
ZPP_INLINE void storePacked(D* p, Halves<Vec<int32_t, 4>> v) {
    store(p, packWords<D>(bitCast<__m128i>(v.low), bitCast<__m128i>(v.high)));
}
template <class D>
ZPP_INLINE void storePacked(D* p, Halves<Halves<Vec<int32_t, 4>>> v) {
    const __m128i low = packWords<D>(bitCast<__m128i>(v.low.low), bitCast<__m128i>(v.low.high));
    const __m128i high = packWords<D>(bitCast<__m128i>(v.high.low), bitCast<__m128i>(v.high.high));
    store(p, packBytes<D>(low, high));
}
#endif

// Integers of 32 bits as D, saturated. V is one register or kPackedRegisters<D> of them. To unsigned words
// the values must lie above -2^31 + 2^15.
template <class D, class V>
ZPP_INLINE void storeSaturated(D* p, V v) {
    if constexpr (std::is_same_v<V, int32_t>) {
        constexpr Range<int32_t> range = kRange<D>;
        *p = static_cast<D>(clamp(v, range.lower, range.upper));
    } else if constexpr (kIsHalves<V>)
        storePacked(p, v);
    else
        storeRegister(p, v);
}

}  // namespace zpp::ZPP_ISA
