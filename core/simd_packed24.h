// Packed 24-bit integers in the SIMD vocabulary: three bytes an element, least significant first. Nothing
// outside the elements is touched.
#pragma once

#include "core/simd_pack.h"

namespace zpp::ZPP_ISA {

struct Int24 {
    uint8_t bytes[3];
};
struct UInt24 {
    uint8_t bytes[3];
};
template <>
inline constexpr Range<int32_t> kRange<Int24> = {-0x800000, 0x7FFFFF};
template <>
inline constexpr Range<int32_t> kRange<UInt24> = {0, 0xFFFFFF};

template <>
inline constexpr int kPackedRegisters<Int24> = kVectorBytes == 0    ? 1
                                               : kVectorBytes == 64 ? 2
                                                                    : 4;
template <>
inline constexpr int kPackedRegisters<UInt24> = kPackedRegisters<Int24>;

template <class T>
inline constexpr bool kIsPacked24 = std::is_same_v<T, Int24> || std::is_same_v<T, UInt24>;

// In a register, packed elements are as many as it has lanes of 32 bits: four at the lower end of each 128
// bits, or, where there is no shuffle of bytes, two in each 64 bits. A single one is a number.

// N elements as they are, a register or several. AVX2 has those of the upper 128 bits kUpperStart bytes up.
inline constexpr int kUpperStart = kVectorBytes == 32 ? 4 : 0;
template <int N>
ZPP_INLINE auto loadPacked(const uint8_t* p) {
    using V [[maybe_unused]] = Vec<int32_t, N>;
    if constexpr (N > kLanes<int32_t>)
        return halves(loadPacked<N / 2>(p), loadPacked<N / 2>(p + 3 * N / 2));
    else if constexpr (N == 1)
        return p[0] | p[1] << 8 | p[2] << 16;
#if defined(__AVX512F__)
    else {
        const __m512i spread = _mm512_setr_epi32(0, 1, 2, 2, 3, 4, 5, 5, 6, 7, 8, 8, 9, 10, 11, 11);
        const __m512i bytes = _mm512_maskz_loadu_epi32(0xFFF, p);
        return bitCast<V>(_mm512_maskz_permutexvar_epi32(kAllLanes, spread, bytes));
    }
#elif defined(__AVX2__)
    else {
        const __m256i low = _mm256_castsi128_si256(loadBytes<16>(p));
        return bitCast<V>(_mm256_inserti128_si256(low, loadBytes<16>(p + 12 - kUpperStart), 1));
    }
#elif defined(__SSE2__)
    else
        return bitCast<V>(_mm_unpacklo_epi64(loadBytes<8>(p), _mm_srli_epi64(loadBytes<8>(p + 4), 16)));
#endif
}

#ifdef __AVX2__
// The bytes of each 128 bits in another order, in which kNone is a 0; in the upper 128 bits of two, of the
// bytes from upperStart on.
inline constexpr char kNone = -0x80;
template <class V>
ZPP_INLINE V shuffleBytes(V v, __m128i order, [[maybe_unused]] int upperStart = 0) {
#ifdef __AVX512F__
    const __m512i orders = _mm512_maskz_broadcast_i32x4(kAllLanes, order);
    return bitCast<V>(_mm512_shuffle_epi8(bitCast<__m512i>(v), orders));
#else
    const __m128i upper = _mm_add_epi8(order, _mm_set1_epi8(static_cast<char>(upperStart)));
    return bitCast<V>(_mm256_shuffle_epi8(bitCast<__m256i>(v), _mm256_setr_m128i(order, upper)));
#endif
}
#elif defined(__SSE2__)
using Pairs = Vec<uint64_t, 2>;
#endif

// Packed elements as lanes of their values.
template <class T, class V>
ZPP_INLINE V unpack24(V packed) {
    constexpr bool isSigned = std::is_same_v<T, Int24>;
    if constexpr (std::is_same_v<V, int32_t>) return isSigned ? packed << 8 >> 8 : packed;
#if defined(__AVX2__)
    else if constexpr (isSigned) {
        const __m128i toUpper =
            _mm_setr_epi8(kNone, 0, 1, 2, kNone, 3, 4, 5, kNone, 6, 7, 8, kNone, 9, 10, 11);
        return shuffleBytes(packed, toUpper, kUpperStart) >> 8;
    } else {
        const __m128i toLower =
            _mm_setr_epi8(0, 1, 2, kNone, 3, 4, 5, kNone, 6, 7, 8, kNone, 9, 10, 11, kNone);
        return shuffleBytes(packed, toLower, kUpperStart);
    }
#elif defined(__SSE2__)
    else {
        const Pairs pairs = bitCast<Pairs>(packed);
        const V lower = bitCast<V>((pairs & 0xFFFFFF) | (pairs << 8 & 0xFFFFFF00000000));
        return isSigned ? lower << 8 >> 8 : lower;
    }
#endif
}

// The lower three bytes of lanes as packed elements.
template <class V>
ZPP_INLINE V pack24(V v) {
    if constexpr (std::is_same_v<V, int32_t>) return v;
#if defined(__AVX2__)
    else
        return shuffleBytes(
            v, _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, kNone, kNone, kNone, kNone));
#elif defined(__SSE2__)
    else {
        const Pairs pairs = bitCast<Pairs>(v);
        return bitCast<V>((pairs & 0xFFFFFF) | (pairs & 0xFFFFFF00000000) >> 8);
    }
#endif
}

// Packed elements with their bytes in reverse order.
template <class V>
ZPP_INLINE V reversePacked(V packed) {
    if constexpr (std::is_same_v<V, int32_t>) return packed << 16 | (packed & 0xFF00) | packed >> 16;
#if defined(__AVX2__)
    else {
        const __m128i order = _mm_setr_epi8(2, 1, 0, 5, 4, 3, 8, 7, 6, 11, 10, 9, kNone, kNone, kNone, kNone);
        return shuffleBytes(packed, order, kUpperStart);
    }
#elif defined(__SSE2__)
    else {
        const Pairs pairs = bitCast<Pairs>(packed);
        return bitCast<V>((pairs << 16 & 0xFF0000FF0000) | (pairs & 0x00FF0000FF00) |
                          (pairs >> 16 & 0x0000FF0000FF));
    }
#endif
}

// Packed elements to memory. With `spare`, a few bytes behind them may be written too, because they are going
// to be.
template <bool spare = false, class V>
ZPP_INLINE void storePacked(uint8_t* p, V v) {
    if constexpr (std::is_same_v<V, int32_t>)
        for (int i = 0; i < 3; ++i) p[i] = static_cast<uint8_t>(v >> 8 * i);
#if defined(__AVX512F__)
    else {
        const __m512i close = _mm512_setr_epi32(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 3, 7, 11, 15);
        const __m512i bytes = _mm512_maskz_permutexvar_epi32(kAllLanes, close, bitCast<__m512i>(v));
        _mm512_mask_storeu_epi32(p, 0xFFF, bytes);
    }
#elif defined(__AVX2__)
    else {
        const __m256i close = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7);
        const __m256i bytes = _mm256_permutevar8x32_epi32(bitCast<__m256i>(v), close);
        if constexpr (spare) {
            store(p, bytes);
        } else {
            storeBytes<16>(p, _mm256_castsi256_si128(bytes));
            storeBytes<8>(p + 16, _mm256_extracti128_si256(bytes, 1));
        }
    }
#elif defined(__SSE2__)
    else {
        const __m128i low = bitCast<__m128i>(v), high = _mm_srli_si128(low, 8);
        storeBytes<8>(p, low);
        if constexpr (spare)
            storeBytes<8>(p + 6, high);
        else
            storeBytes<8>(p + 4, _mm_or_si128(_mm_srli_epi64(low, 32), _mm_slli_epi64(high, 16)));
    }
#endif
}
#ifdef __AVX512F__
// A register and a half.
template <bool spare = false>
ZPP_INLINE void storePacked(uint8_t* p, Halves<Vec<int32_t, 16>> v) {
    const __m512i low = bitCast<__m512i>(v.low), high = bitCast<__m512i>(v.high);
    const __m512i first = _mm512_setr_epi32(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 16, 17, 18, 20);
    const __m512i rest = _mm512_setr_epi32(5, 6, 8, 9, 10, 12, 13, 14, 0, 0, 0, 0, 0, 0, 0, 0);
    store(p, _mm512_permutex2var_epi32(low, first, high));
    store(p + 64, lowHalf(bitCast<Vec<int64_t>>(_mm512_maskz_permutexvar_epi32(kAllLanes, rest, high))));
}
#endif
template <bool spare = false, class V>
ZPP_INLINE void storePacked(uint8_t* p, Halves<V> v) {
    storePacked<true>(p, v.low);
    storePacked<spare>(p + sizeof(v) * 3 / 8, v.high);
}

}  // namespace zpp::ZPP_ISA
