// Registers of bytes in the SIMD vocabulary, and the ways to words and lanes of 32 bits and back, within each
// 128 bits.
#pragma once

#include "core/simd_pack.h"

namespace zpp::ZPP_ISA {

// The lanes of the bits of v as T.
template <class T, class V>
ZPP_INLINE auto lanesOf(V v) {
    return bitCast<Vec<T, sizeof(V) / sizeof(T)>>(v);
}

// Whether there are lookUp and sumsOfProducts.
#ifdef __SSSE3__
inline constexpr bool kLooksUpBytes = true;
#else
inline constexpr bool kLooksUpBytes = false;
#endif

// Half of v, rounded up.
ZPP_INLINE constexpr int32_t halvedUp(int32_t v) { return (v + 1) >> 1; }

#ifdef __SSE2__
ZPP_INLINE __m128i halvedUpBytes(__m128i v) { return _mm_avg_epu8(v, __m128i{}); }
ZPP_INLINE __m128i lowBytes(__m128i a, __m128i b) { return _mm_unpacklo_epi8(a, b); }
ZPP_INLINE __m128i highBytes(__m128i a, __m128i b) { return _mm_unpackhi_epi8(a, b); }
ZPP_INLINE __m128i lowWords(__m128i a, __m128i b) { return _mm_unpacklo_epi16(a, b); }
ZPP_INLINE __m128i highWords(__m128i a, __m128i b) { return _mm_unpackhi_epi16(a, b); }
template <int times>
ZPP_INLINE __m128i spreadBytes(__m128i v) {
    return v;
}
#endif
#ifdef __SSSE3__
ZPP_INLINE __m128i lookUpBytes(__m128i table, __m128i v) { return _mm_shuffle_epi8(table, v); }
ZPP_INLINE __m128i multiplyPairs(__m128i a, __m128i b) { return _mm_maddubs_epi16(a, b); }
#endif

#ifdef __AVX2__
ZPP_INLINE __m256i halvedUpBytes(__m256i v) { return _mm256_avg_epu8(v, __m256i{}); }
ZPP_INLINE __m256i lowBytes(__m256i a, __m256i b) { return _mm256_unpacklo_epi8(a, b); }
ZPP_INLINE __m256i highBytes(__m256i a, __m256i b) { return _mm256_unpackhi_epi8(a, b); }
ZPP_INLINE __m256i lowWords(__m256i a, __m256i b) { return _mm256_unpacklo_epi16(a, b); }
ZPP_INLINE __m256i highWords(__m256i a, __m256i b) { return _mm256_unpackhi_epi16(a, b); }
ZPP_INLINE __m256i lookUpBytes(__m256i table, __m256i v) { return _mm256_shuffle_epi8(table, v); }
ZPP_INLINE __m256i multiplyPairs(__m256i a, __m256i b) { return _mm256_maddubs_epi16(a, b); }
template <int times>
ZPP_INLINE __m256i spreadBytes(__m256i v) {
    if constexpr (times == 1)
        return _mm256_permute4x64_epi64(v, 0xD8);
    else
        return _mm256_permutevar8x32_epi32(v, _mm256_setr_epi32(0, 2, 4, 6, 1, 3, 5, 7));
}
#endif

#ifdef __AVX512F__
ZPP_INLINE __m512i halvedUpBytes(__m512i v) { return _mm512_avg_epu8(v, __m512i{}); }
ZPP_INLINE __m512i lowBytes(__m512i a, __m512i b) { return _mm512_unpacklo_epi8(a, b); }
ZPP_INLINE __m512i highBytes(__m512i a, __m512i b) { return _mm512_unpackhi_epi8(a, b); }
ZPP_INLINE __m512i lowWords(__m512i a, __m512i b) { return _mm512_unpacklo_epi16(a, b); }
ZPP_INLINE __m512i highWords(__m512i a, __m512i b) { return _mm512_unpackhi_epi16(a, b); }
ZPP_INLINE __m512i lookUpBytes(__m512i table, __m512i v) { return _mm512_shuffle_epi8(table, v); }
ZPP_INLINE __m512i multiplyPairs(__m512i a, __m512i b) { return _mm512_maddubs_epi16(a, b); }
template <int times>
ZPP_INLINE __m512i spreadBytes(__m512i v) {
    if constexpr (times == 1)
        return _mm512_maskz_permutexvar_epi64(kAllLanes & 0xFF, _mm512_setr_epi64(0, 4, 1, 5, 2, 6, 3, 7), v);
    else
        return inOrder<uint8_t>(v);
}
#endif

#ifdef __SSE2__
template <class V>
ZPP_INLINE V halvedUp(V bytes) {
    return bitCast<V>(halvedUpBytes(asRegister(bytes)));
}

// The bytes of two registers in turn, as words, the lower of which are those of a; and the words, as lanes of
// 32 bits.
template <class V>
ZPP_INLINE auto interleaveBytes(V a, V b) {
    return halves(lanesOf<int16_t>(lowBytes(asRegister(a), asRegister(b))),
                  lanesOf<int16_t>(highBytes(asRegister(a), asRegister(b))));
}
template <class V>
ZPP_INLINE auto interleaveWords(V a, V b) {
    return halves(lanesOf<int32_t>(lowWords(asRegister(a), asRegister(b))),
                  lanesOf<int32_t>(highWords(asRegister(a), asRegister(b))));
}

// Bytes in the order that one interleaving, of bytes, or two, of bytes and then of words, brings into that of
// v.
template <int times, class V>
ZPP_INLINE V spread(V v) {
    return bitCast<V>(spreadBytes<times>(asRegister(v)));
}

// Two registers of lanes of 32 bits as words, saturated.
template <class V>
ZPP_INLINE auto wordsOf(Halves<V> ints) {
    return lanesOf<int16_t>(packWords<int16_t>(asRegister(ints.low), asRegister(ints.high)));
}

// Two registers of words as unsigned bytes, saturated, in the order of memory: packed once, or twice where
// the words come from wordsOf.
template <int times, class V>
ZPP_INLINE auto packedInOrder(Halves<V> words) {
    const auto packed = packBytes<uint8_t>(asRegister(words.low), asRegister(words.high));
    using Packed = std::conditional_t<times == 1, int16_t, uint8_t>;
    return lanesOf<uint8_t>(inOrder<Packed>(packed));
}
#endif

#ifdef __SSSE3__
// Byte by byte the one of 16 that v, below 16, says.
template <class V, class Table>
ZPP_INLINE V lookUp(Table table, V v) {
    return bitCast<V>(lookUpBytes(asRegister(repeated<V>(table)), asRegister(v)));
}

// The sums of two products each, of unsigned bytes with signed ones, as words, which must hold them.
template <class V>
ZPP_INLINE V sumsOfProducts(V unsignedBytes, V signedBytes) {
    return bitCast<V>(multiplyPairs(asRegister(unsignedBytes), asRegister(signedBytes)));
}
#endif

}  // namespace zpp::ZPP_ISA
