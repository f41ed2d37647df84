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
inline constexpr int kPackedRegisters<Int24> = kVectorBytes == 0 ? 1 : 4;
template <>
inline constexpr int kPackedRegisters<UInt24> = kPackedRegisters<Int24>;

template <class T>
inline constexpr bool kIsPacked24 = std::is_same_v<T, Int24> || std::is_same_v<T, UInt24>;

// Lanes that hold the three bytes at their upper end, as lanes of the value.
template <class T, class V>
ZPP_INLINE V fromUpperBytes(V v) {
    if constexpr (std::is_same_v<T, Int24>)
        return v >> 8;
    else
        return v >> 8 & 0xFFFFFF;
}

// N packed elements as lanes of 32 bits.
template <int N, class T>
ZPP_INLINE Vec<int32_t, N> loadPacked24(const T* p) {
    using V [[maybe_unused]] = Vec<int32_t, N>;
    if constexpr (N == 1) {
        const uint32_t upper =
            static_cast<uint32_t>(p->bytes[0] << 8 | p->bytes[1] << 16) | uint32_t{p->bytes[2]} << 24;
        return fromUpperBytes<T>(static_cast<int32_t>(upper));
    }
#ifdef __AVX512F__
    else if constexpr (N == 16) {
        return __builtin_shufflevector(loadPacked24<8>(p), loadPacked24<8>(p + 8), 0, 1, 2, 3, 4, 5, 6, 7, 8,
                                       9, 10, 11, 12, 13, 14, 15);
    }
#endif
#ifdef __AVX2__
    else {
        // Elements 0 to 3 begin 0 bytes into the lower half, 4 to 7 4 bytes into the upper.
        const __m128i low = loadBytes<16>(p->bytes);
        const __m128i high = loadBytes<16>(p->bytes + 8);
        const __m256i bytes = _mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1);
        if constexpr (std::is_same_v<T, Int24>) {
            const __m256i toUpper =
                _mm256_setr_epi8(-1, 0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11,  //
                                 -1, 4, 5, 6, -1, 7, 8, 9, -1, 10, 11, 12, -1, 13, 14, 15);
            return fromUpperBytes<T>(bitCast<V>(_mm256_shuffle_epi8(bytes, toUpper)));
        } else {
            const __m256i toLower =
                _mm256_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1,  //
                                 4, 5, 6, -1, 7, 8, 9, -1, 10, 11, 12, -1, 13, 14, 15, -1);
            return bitCast<V>(_mm256_shuffle_epi8(bytes, toLower));
        }
    }
#elif defined(__SSE2__)
    else {
        const __m128i bytes = _mm_unpacklo_epi64(loadBytes<8>(p->bytes), loadBytes<4>(p->bytes + 8));
        const __m128i low = _mm_unpacklo_epi32(bytes, _mm_srli_si128(bytes, 3));
        const __m128i high = _mm_unpacklo_epi32(_mm_srli_si128(bytes, 6), _mm_srli_si128(bytes, 9));
        return fromUpperBytes<T>(bitCast<V>(_mm_unpacklo_epi64(low, high)) << 8);
    }
#endif
}

#ifdef __AVX2__
// The lower three bytes of the lanes, at the lower end of the register.
ZPP_INLINE __m256i pack24(Vec<int32_t, 8> v) {
    const __m256i pack = _mm256_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1,  //
                                          0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
    const __m256i halves = _mm256_shuffle_epi8(bitCast<__m256i>(v), pack);
    return _mm256_permutevar8x32_epi32(halves, _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7));
}
#endif

// The lower three bytes of the lanes as packed elements. With `spare`, a few bytes behind them may be written
// too, because they are going to be.
template <bool spare = false, class T, class V>
ZPP_INLINE void storePacked24(T* p, V v) {
    if constexpr (kIsHalves<V>) {
        storePacked24<true>(p, v.low);
        storePacked24<spare>(p + sizeof(v.low) / sizeof(int32_t), v.high);
    } else if constexpr (std::is_same_v<V, int32_t>) {
        for (int i = 0; i < 3; ++i) p->bytes[i] = static_cast<uint8_t>(v >> 8 * i);
    }
#ifdef __AVX512F__
    else if constexpr (sizeof(V) == 64) {
        storePacked24<true>(p, __builtin_shufflevector(v, v, 0, 1, 2, 3, 4, 5, 6, 7));
        storePacked24<spare>(p + 8, __builtin_shufflevector(v, v, 8, 9, 10, 11, 12, 13, 14, 15));
    }
#endif
#ifdef __AVX2__
    else if constexpr (spare) {
        store(p->bytes, pack24(v));
    } else {
        const __m256i bytes = pack24(v);
        storeBytes<16>(p->bytes, _mm256_castsi256_si128(bytes));
        storeBytes<8>(p->bytes + 16, _mm256_extracti128_si256(bytes, 1));
    }
#elif defined(__SSE2__)
    else {
        // Six bytes in each half of the register, then twelve at its lower end.
        const __m128i evenLanes = _mm_set_epi32(0, 0xFFFFFF, 0, 0xFFFFFF);
        const __m128i bits = bitCast<__m128i>(v & 0xFFFFFF);
        const __m128i sixes = _mm_or_si128(_mm_and_si128(bits, evenLanes),
                                           _mm_srli_epi64(_mm_andnot_si128(evenLanes, bits), 8));
        const __m128i lowHalf = _mm_set_epi32(0, 0, -1, -1);
        const __m128i twelve =
            _mm_or_si128(_mm_and_si128(sixes, lowHalf), _mm_srli_si128(_mm_andnot_si128(lowHalf, sixes), 2));
        storeBytes<8>(p->bytes, twelve);
        storeBytes<4>(p->bytes + 8, _mm_srli_si128(twelve, 8));
    }
#endif
}

// The lower three bytes of the lanes in reverse order; the upper byte is undefined.
template <class V>
ZPP_INLINE V reverseBytes24(V v) {
#ifdef __AVX2__
    if constexpr (sizeof(V) == 32) {
        const __m256i order = _mm256_setr_epi8(2, 1, 0, 3, 6, 5, 4, 7, 10, 9, 8, 11, 14, 13, 12, 15,  //
                                               2, 1, 0, 3, 6, 5, 4, 7, 10, 9, 8, 11, 14, 13, 12, 15);
        return bitCast<V>(_mm256_shuffle_epi8(bitCast<__m256i>(v), order));
    }
#endif
    return v << 16 | (v & 0xFF00) | (v >> 16 & 0xFF);
}

}  // namespace zpp::ZPP_ISA
