// Integers in lanes of 32 bits to narrower ones, saturated, in the SIMD vocabulary.
#pragma once

#include "core/simd_convert.h"

namespace zpp::ZPP_ISA {

// How many registers of 32-bit lanes are stored as D at a time: as many as fill one.
template <class D>
inline constexpr int kPackedRegisters = kVectorBytes == 0 ? 1 : static_cast<int>(sizeof(int32_t) / sizeof(D));

// Whether storing lanes as D saturates all numbers below its range. SSE2 packs to unsigned words by way of
// signed ones, 2^15 below, where the least numbers wrap around.
template <class D>
inline constexpr bool kSaturatesBelow = sizeof(D) < 3 && (kVectorBytes > 16 || !std::is_same_v<D, uint16_t>);

// Singles as the integers of D next to them, a NaN as the least. For D of 8 and 16 bits the lanes may hold
// less than that: storing saturates.
template <class D, Rounding rounding, class V>
ZPP_INLINE auto toIntsOf(V v) {
    constexpr Range<int32_t> range = kRange<D>;
    constexpr bool wide = range.upper == kRange<int32_t>.upper;
    constexpr float kBelow31Bits = 0x7FFFFF80;
    constexpr float lower = static_cast<float>(range.lower);
    constexpr float upper = wide ? kBelow31Bits : static_cast<float>(range.upper);
    if constexpr (std::is_same_v<V, float>) {
        const int32_t bounded = toInts<rounding>(saturate(v, Range<float>{lower, upper}));
        return wide && v > upper ? range.upper : bounded;
    } else if constexpr (wide) {
        auto ints = toInts<rounding>(v);
        if constexpr (sizeof(V) == 64)
            return select(v > upper, broadcast<decltype(ints)>(range.upper), ints);  // one instruction
        else
            return ints ^ (v > upper);  // of -2^31
    } else {
        const V bounded = min(broadcast<V>(upper), v);  // in this order a NaN stays
        return toInts<rounding>(kSaturatesBelow<D> ? bounded : max(bounded, broadcast<V>(lower)));
    }
}

// Packing halves the width of the lanes, saturated, within each 128 bits of two registers: words of D or for
// bytes of D, bytes of words.
#ifdef __SSE2__
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

// What is packed of whole registers, in the order of its elements.
template <class D>
ZPP_INLINE __m128i inOrder(__m128i packed) {
    return packed;
}

// The first N lanes that are left of a single register.
template <class D>
ZPP_INLINE void storeRegister(D* p, __m128i v) {
    const __m128i words = packWords<D>(v, v);
    storeBytes<4 * sizeof(D)>(p, sizeof(D) == 1 ? packBytes<D>(words, words) : words);
}
#endif

#ifdef __AVX2__
template <class D>
ZPP_INLINE __m256i packWords(__m256i a, __m256i b) {
    return std::is_signed_v<D> || sizeof(D) == 1 ? _mm256_packs_epi32(a, b) : _mm256_packus_epi32(a, b);
}
template <class D>
ZPP_INLINE __m256i packBytes(__m256i a, __m256i b) {
    return std::is_signed_v<D> ? _mm256_packs_epi16(a, b) : _mm256_packus_epi16(a, b);
}
template <class D>
ZPP_INLINE __m256i inOrder(__m256i packed) {
    if constexpr (sizeof(D) == 2)
        return _mm256_permute4x64_epi64(packed, 0xD8);
    else
        return _mm256_permutevar8x32_epi32(packed, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
}
template <class D>
ZPP_INLINE void storeRegister(D* p, __m256i v) {
    const __m128i words = packWords<D>(_mm256_castsi256_si128(v), _mm256_extracti128_si256(v, 1));
    storeBytes<8 * sizeof(D)>(p, sizeof(D) == 1 ? packBytes<D>(words, words) : words);
}
#endif

#ifdef __AVX512F__
template <class D>
ZPP_INLINE __m512i packWords(__m512i a, __m512i b) {
    return std::is_signed_v<D> || sizeof(D) == 1 ? _mm512_packs_epi32(a, b) : _mm512_packus_epi32(a, b);
}
template <class D>
ZPP_INLINE __m512i packBytes(__m512i a, __m512i b) {
    return std::is_signed_v<D> ? _mm512_packs_epi16(a, b) : _mm512_packus_epi16(a, b);
}
template <class D>
ZPP_INLINE __m512i inOrder(__m512i packed) {
    if constexpr (sizeof(D) == 2)
        return _mm512_maskz_permutexvar_epi64(kAllLanes & 0xFF, _mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7),
                                              packed);
    else
        return _mm512_maskz_permutexvar_epi32(
            kAllLanes, _mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15), packed);
}
template <class D>
ZPP_INLINE void storeRegister(D* p, __m512i v) {
    if constexpr (std::is_signed_v<D> && sizeof(D) == 1)
        storeBytes<16>(p, _mm512_maskz_cvtsepi32_epi8(kAllLanes, v));
    else if constexpr (std::is_signed_v<D>)
        store(p, _mm512_maskz_cvtsepi32_epi16(kAllLanes, v));
    else {
        const __m512i positive = _mm512_maskz_max_epi32(kAllLanes, v, __m512i{});
        if constexpr (sizeof(D) == 1)
            storeBytes<16>(p, _mm512_maskz_cvtusepi32_epi8(kAllLanes, positive));
        else
            store(p, _mm512_maskz_cvtusepi32_epi16(kAllLanes, positive));
    }
}
#endif

// Integers of 32 bits as D, saturated; where not kSaturatesBelow, from -2^31 + 2^15 on. V is one register or
// kPackedRegisters<D> of them.
template <class D, class V>
ZPP_INLINE void storeSaturated(D* p, V v) {
    if constexpr (std::is_same_v<V, int32_t>)
        *p = static_cast<D>(clamp(v, kRange<D>.lower, kRange<D>.upper));
    else
        storeRegister(p, asRegister(v));
}
template <class D, class V>
ZPP_INLINE void storeSaturated(D* p, Halves<V> v) {
    store(p, inOrder<D>(packWords<D>(asRegister(v.low), asRegister(v.high))));
}
template <class D, class V>
ZPP_INLINE void storeSaturated(D* p, Halves<Halves<V>> v) {
    const auto low = packWords<D>(asRegister(v.low.low), asRegister(v.low.high));
    const auto high = packWords<D>(asRegister(v.high.low), asRegister(v.high.high));
    store(p, inOrder<D>(packBytes<D>(low, high)));
}

}  // namespace zpp::ZPP_ISA
