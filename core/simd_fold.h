// What folds of vectors to one element need of the SIMD vocabulary.
#pragma once

#include <utility>

#include "core/simd_shuffle.h"

namespace zpp::ZPP_ISA {

// op(v, v with its halves exchanged), and the same within halves of halves: op over all lanes, in every lane.
template <int Distance, class Op, class V, int... I>
ZPP_INLINE V overLanes(Op op, V v, std::integer_sequence<int, I...> lanes) {
    const V folded = op(v, shuffle<(I ^ Distance)...>(v, v));
    if constexpr (Distance > 1)
        return overLanes<Distance / 2>(op, folded, lanes);
    else
        return folded;
}
template <class Op, class V>
ZPP_INLINE V overLanes(Op op, V v) {
    if constexpr (std::is_arithmetic_v<V>) {
        return v;
    } else {
        constexpr int n = sizeof(V) / sizeof(v[0]);
        return overLanes<n / 2>(op, v, std::make_integer_sequence<int, n>{});
    }
}

template <class V>
ZPP_INLINE auto firstLane(V v) {
    if constexpr (std::is_arithmetic_v<V>)
        return v;
    else
        return v[0];
}

#ifdef __AVX512F__
// The bits of a mask. GCC 12 for 32 bits widens a mask in memory, with what lies beside it there.
ZPP_INLINE unsigned laneBits(__mmask8 lanes) {
    unsigned bits;
    __asm__("kmovb\t%1, %0" : "=r"(bits) : "k"(lanes));
    return bits;
}
ZPP_INLINE unsigned laneBits(__mmask16 lanes) {
    unsigned bits;
    __asm__("kmovw\t%1, %0" : "=r"(bits) : "k"(lanes));
    return bits;
}
#endif

// The lanes in which a and b, doubles or integers of 32 bits, are equal, as bits: the first lane is bit 0.
template <class V>
ZPP_INLINE unsigned equalLanes(V a, V b) {
    constexpr bool doubles [[maybe_unused]] = std::is_same_v<V, Vec<double, sizeof(V) / sizeof(double)>>;
    if constexpr (std::is_arithmetic_v<V>) return a == b;
#ifdef __AVX512F__
    else if constexpr (sizeof(V) == 64) {
        if constexpr (doubles)
            return laneBits(_mm512_cmp_pd_mask(a, b, _CMP_EQ_OQ));
        else
            return laneBits(_mm512_cmpeq_epi32_mask(bitCast<__m512i>(a), bitCast<__m512i>(b)));
    }
#endif
#ifdef __AVX2__
    else if constexpr (sizeof(V) == 32)
        return static_cast<unsigned>(doubles ? _mm256_movemask_pd(bitCast<__m256d>(a == b))
                                             : _mm256_movemask_ps(bitCast<__m256>(a == b)));
#endif
#ifdef __SSE2__
    else
        return static_cast<unsigned>(doubles ? _mm_movemask_pd(bitCast<__m128d>(a == b))
                                             : _mm_movemask_ps(bitCast<__m128>(a == b)));
#endif
}

// Whether there is a NaN among the doubles that it saw: one comparison for two vectors of them.
template <class V>
class NanWatch {
  public:
    ZPP_INLINE void look(V a, V b) {
#ifdef __AVX512F__
        if constexpr (sizeof(V) == 64) ordered_ = _mm512_mask_cmp_pd_mask(ordered_, a, b, _CMP_ORD_Q);
#endif
#ifdef __AVX2__
        if constexpr (sizeof(V) == 32) met_ |= bitCast<Mask>(_mm256_cmp_pd(a, b, _CMP_UNORD_Q));
#endif
#ifdef __SSE2__
        if constexpr (sizeof(V) == 16) met_ |= bitCast<Mask>(_mm_cmpunord_pd(a, b));
#endif
        if constexpr (std::is_arithmetic_v<V>) met_ |= a != a || b != b;
    }
    ZPP_INLINE bool met() const { return ordered_ != kAll || any(met_); }

  private:
    using Mask = decltype(V{} < V{});
    static constexpr uint8_t kAll = 0xFF;
    Mask met_{};
    uint8_t ordered_ = kAll;  // where comparisons give bits, not lanes
};

// The magnitudes of signed integers of 32 bits, passed as unsigned ones, which have room for that of -2^31.
template <class V>
ZPP_INLINE V magnitudeOfInts(V v) {
#ifdef __AVX512F__
    if constexpr (sizeof(V) == 64) return bitCast<V>(_mm512_maskz_abs_epi32(0xFFFF, bitCast<__m512i>(v)));
#endif
#ifdef __AVX2__
    if constexpr (sizeof(V) == 32) return bitCast<V>(_mm256_abs_epi32(bitCast<__m256i>(v)));
#endif
    if constexpr (std::is_arithmetic_v<V>) {
        return v >> 31 != 0 ? 0 - v : v;
    } else {
        const V negative = bitCast<V>(bitCast<decltype(v > v)>(v) >> 31);
        return (v ^ negative) - negative;
    }
}

}  // namespace zpp::ZPP_ISA
