// Half precision (IEEE 754 binary16) in the SIMD vocabulary. The builds with F16C use its instructions, and
// correct them where they differ from the rules of the library; the others compute with the bits.
#pragma once

#include "core/simd_convert.h"

namespace zpp::ZPP_ISA {

struct Half {
    uint16_t bits;
};

inline constexpr int32_t kHalfRebias = (127 - 15) << 23;  // between the exponents of a half and a single
inline constexpr int32_t kHalfInfinity = 0x7C00;
inline constexpr int32_t kHalfNan = 0x7DFF;  // what the library writes for every NaN
inline constexpr int32_t kSingleInfinity = 0x7F800000;
inline constexpr int32_t kSingle65536 = 0x47800000;   // the first power of two that a half does not reach
inline constexpr int32_t kSingleNormal = 0x38800000;  // 2^-14, the least normal half
inline constexpr int32_t kSingleTie = 0x33000000;     // 2^-25, half the least subnormal half

// A register of integers as one of singles of the same bits.
template <class V>
ZPP_INLINE auto asFloats(V bits) {
    return bitCast<Vec<float, sizeof(V) / sizeof(float)>>(bits);
}

// The singles, as bits, of halves in lanes of 32 bits. NaNs keep their payload and stay signalling.
template <class V>
ZPP_INLINE V halfToSingle(V half) {
    const V magnitude = half & 0x7FFF;
    const V normal = (magnitude << 13) + kHalfRebias;
    const V special = normal + kHalfRebias;
    const V subnormal = bitCast<V>(toFloat(magnitude) * 0x1p-24f);
    const V single =
        select(magnitude < 0x400, subnormal, select(magnitude >= kHalfInfinity, special, normal));
    return single | (half & 0x8000) << 16;
}

// The halves, in lanes of 32 bits, of singles given as bits.
template <Rounding rounding, class V>
ZPP_INLINE V singleToHalf(V single) {
    constexpr bool nearest = rounding == Rounding::kNearest;
    const V magnitude = single & 0x7FFFFFFF;
    const V bounded = min(magnitude, broadcast<V>(kSingle65536));
    const V rounded = nearest ? bounded + 0xFFF + (bounded >> 13 & 1) : bounded;
    const V normal = (rounded - kHalfRebias) >> 13;

    // Subnormal halves are multiples of 2^-24.
    const V tiny = min(magnitude, broadcast<V>(kSingleNormal));
    V subnormal = toInts<rounding>(asFloats(tiny) * 0x1p24f);
    if constexpr (nearest) subnormal = addWhere(magnitude == kSingleTie, subnormal);

    const V half = select(magnitude < kSingleNormal, subnormal, normal);
    return select(magnitude > kSingleInfinity, broadcast<V>(kHalfNan), half) | (single >> 16 & 0x8000);
}

// N halves as singles, a register or several. NaNs may become quiet.
template <int N>
ZPP_INLINE auto loadAsFloats(const Half* p) {
    if constexpr (N > kLanes<float>) return halves(loadAsFloats<N / 2>(p), loadAsFloats<N / 2>(p + N / 2));
#ifdef __AVX512F__
    else if constexpr (N == 16)
        return bitCast<Vec<float, N>>(_mm512_maskz_cvtph_ps(kAllLanes, load<__m256i>(p)));
#endif
#ifdef __F16C__
    else if constexpr (N == 8)
        return bitCast<Vec<float, N>>(_mm256_cvtph_ps(loadBytes<16>(p)));
#endif
    else
        return asFloats(halfToSingle(loadAsInts<N>(&p->bits)));
}

// N halves as the bits of singles, exactly.
template <int N>
ZPP_INLINE auto loadAsFloatBits(const Half* p) {
    if constexpr (N > kLanes<int32_t>) {
        return halves(loadAsFloatBits<N / 2>(p), loadAsFloatBits<N / 2>(p + N / 2));
    } else {
        const auto half = loadAsInts<N>(&p->bits);
#ifdef __F16C__
        if constexpr (N > 1) {
            // The quiet bit of a NaN again as it was: the upper bit of the payload.
            const auto single = loadAsFloats<N>(p);
            const auto bits = bitCast<Vec<int32_t, N>>(single);
            return bits & ~((single != single) & ~(half << 13) & 0x400000);
        }
#endif
        return halfToSingle(half);
    }
}

#ifdef __F16C__
// Instructions round 2^-25 to 0, overflow to the largest number under truncation, and keep a NaN's payload.
template <Rounding rounding, class V>
ZPP_INLINE V adjustedForF16c(V single) {
    if constexpr (rounding == Rounding::kNearest)
        return addWhere((single & 0x7FFFFFFF) == kSingleTie, single);
    // Infinite from 65536 on, and otherwise as it was.
    else
        return bitCast<V>(asFloats(single) * 0x1p112f * 0x1p-112f);
}
template <class V>
ZPP_INLINE V adjustedFromF16c(V half) {
    return min(half & 0x7FFF, broadcast<V>(static_cast<int16_t>(kHalfNan))) | (half & -0x8000);
}

template <Rounding rounding>
ZPP_INLINE auto packHalves(Vec<int32_t, 8> single) {
    constexpr int mode = rounding == Rounding::kNearest ? _MM_FROUND_TO_NEAREST_INT : _MM_FROUND_TO_ZERO;
    return bitCast<Vec<int16_t, 8>>(
        _mm256_cvtps_ph(bitCast<__m256>(adjustedForF16c<rounding>(single)), mode));
}
template <Rounding rounding>
ZPP_INLINE auto packHalves(Halves<Vec<int32_t, 8>> single) {
    const __m128i low = bitCast<__m128i>(packHalves<rounding>(single.low));
    const __m128i high = bitCast<__m128i>(packHalves<rounding>(single.high));
    return bitCast<Vec<int16_t, 16>>(_mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1));
}
#ifdef __AVX512F__
template <Rounding rounding>
ZPP_INLINE auto packHalves(Vec<int32_t, 16> single) {
    constexpr int mode = rounding == Rounding::kNearest ? _MM_FROUND_TO_NEAREST_INT : _MM_FROUND_TO_ZERO;
    return bitCast<Vec<int16_t, 16>>(
        _mm512_maskz_cvtps_ph(kAllLanes, bitCast<__m512>(adjustedForF16c<rounding>(single)), mode));
}
#endif
#endif

// Singles, given as bits, as halves. V is one register or kPackedRegisters<Half> of them.
template <Rounding rounding, class V>
ZPP_INLINE void storeAsHalves(Half* p, V single) {
#ifdef __F16C__
    if constexpr (!std::is_same_v<V, int32_t>) {
        store(&p->bits, adjustedFromF16c(packHalves<rounding>(single)));
        return;
    }
#endif
    // As signed words: saturation must not meddle with the sign bit.
    const auto toWord = [](auto v) { return singleToHalf<rounding>(v) << 16 >> 16; };
    storeSaturated(reinterpret_cast<int16_t*>(p), mapRegisters(toWord, single));
}

}  // namespace zpp::ZPP_ISA
