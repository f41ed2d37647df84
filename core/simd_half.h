// Half precision (IEEE 754 binary16) in the SIMD vocabulary. The builds with F16C use its instructions where
// they do what the library promises, which they do for most numbers; all else is computed from the bits.
#pragma once

#include "core/simd_pack.h"

namespace zpp::ZPP_ISA {

struct Half {
    uint16_t bits;
};

inline constexpr int32_t kHalfInfinity = 0x7C00;
inline constexpr int32_t kHalfNan = 0x7DFF;  // what the library writes for every NaN
inline constexpr int32_t kSingleInfinity = 0x7F800000;
inline constexpr int32_t kSingleNormal = 0x38800000;  // 2^-14, the least normal half
inline constexpr int32_t kSingleTie = 0x33000000;     // 2^-25, half the least subnormal half, is rounded up
inline constexpr int32_t kSingle65536 = 0x47800000;   // from here on halves are infinite
inline constexpr int kPlaces = 23 - 10;               // between the fractions of a half and a single
inline constexpr int32_t kRebias = (127 - 15) << 23;  // between the exponents

template <class V>
using FloatsOf = Vec<float, sizeof(V) / sizeof(float)>;

// A register of integers as one of singles of the same bits, and the single of these bits in every lane.
template <class V>
ZPP_INLINE auto asFloats(V bits) {
    return bitCast<FloatsOf<V>>(bits);
}
template <class V>
ZPP_INLINE auto floatsOf(int32_t bits) {
    return asFloats(broadcast<V>(bits));
}

// The singles, as bits, of halves that have no sign and are finite.
template <class V>
ZPP_INLINE V finiteToSingle(V half) {
    // With the exponent of a normal half, and with the next one: a normal number is the difference. In the
    // second the fraction of a subnormal number has its value, beside the 2^-14 of the leading one.
    const V once = (half << kPlaces) + kRebias;
    const V twice = once + (1 << 23);
    return bitCast<V>(asFloats(twice) - max(asFloats(once), floatsOf<V>(kSingleNormal)));
}
// A single number may ask which it is.
ZPP_INLINE int32_t finiteToSingle(int32_t half) {
    if (half < 0x400) return bitCast<int32_t>(toFloat(half) * 0x1p-24F);
    return (half << kPlaces) + kRebias;
}

// The halves of singles, given as bits, that have no sign. A NaN becomes infinite.
template <Rounding rounding, bool plain, class V>
ZPP_INLINE V unsignedToHalf(V single) {
    V bounded = bitCast<V>(min(asFloats(single), floatsOf<V>(kSingle65536)));
    if constexpr (rounding == Rounding::kNearest && !plain)
        bounded = addWhere(bounded == kSingleTie, bounded);

    // In units of its last place; those of subnormal halves are the ones of 2^-14.
    const V power = bitCast<V>(max(asFloats(bounded & kSingleInfinity), floatsOf<V>(kSingleNormal)));
    const V exponent = power - kSingleNormal;
    const V units = toInts<rounding>(asFloats(bounded) * asFloats((127 + 24) * (1 << 23) - exponent));
    return units + (exponent >> kPlaces);
}
template <Rounding rounding, bool plain>
ZPP_INLINE int32_t unsignedToHalf(int32_t single) {
    constexpr bool nearest = rounding == Rounding::kNearest;
    const int32_t bounded = min(single, kSingle65536);
    if (bounded < kSingleNormal)
        return toInts<rounding>(asFloats(bounded) * 0x1p24F) + (nearest && bounded == kSingleTie);
    const int32_t half = nearest ? (1 << (kPlaces - 1)) - 1 + (bounded >> kPlaces & 1) : 0;
    return (bounded - kRebias + half) >> kPlaces;
}

// The singles, as bits, of halves in lanes of 32 bits. NaNs keep their payload and stay signalling.
template <class V>
ZPP_INLINE V halfToSingle(V half) {
    const V magnitude = half & 0x7FFF;
    const V special = magnitude >= kHalfInfinity ? broadcast<V>(kSingleInfinity) : V{};
    return finiteToSingle(magnitude) | special | (half & 0x8000) << 16;
}

// The halves, as signed numbers in lanes of 32 bits, of singles given as bits. With `plain` none is a NaN or
// 2^-25.
template <Rounding rounding, bool plain, class V>
ZPP_INLINE V singleToHalf(V single) {
    const V magnitude = single & 0x7FFFFFFF;
    V half = unsignedToHalf<rounding, plain>(magnitude);
    if constexpr (!plain) half |= magnitude > kSingleInfinity ? broadcast<V>(kHalfNan - kHalfInfinity) : V{};
    return half | (single >> 16 & ~0x7FFF);
}

#ifdef __F16C__
// A comparison, for any(), by the predicate that its instruction has.
template <int predicate>
ZPP_INLINE auto compare(Vec<float, 8> a, Vec<float, 8> b) {
    return bitCast<Vec<int32_t, 8>>(_mm256_cmp_ps(a, b, predicate));
}
template <int mode>
ZPP_INLINE __m128i narrowToHalves(Vec<float, 8> v) {
    return _mm256_cvtps_ph(v, mode);
}
#ifdef __AVX512F__
template <int predicate>
ZPP_INLINE auto compare(Vec<float, 16> a, Vec<float, 16> b) {
    return _mm512_cmp_ps_mask(a, b, predicate);
}
template <int mode>
ZPP_INLINE __m256i narrowToHalves(Vec<float, 16> v) {
    return _mm512_maskz_cvtps_ph(kAllLanes, v, mode);
}
#endif

// Whether it holds anywhere.
ZPP_INLINE bool either(Vec<int32_t, 8> a, Vec<int32_t, 8> b) { return any(a | b); }
#ifdef __AVX512F__
ZPP_INLINE bool either(__mmask16 a, __mmask16 b) { return _mm512_kortestz(a, b) == 0; }
#endif

template <class V>
ZPP_INLINE bool anyNan(V v) {
    return any(compare<_CMP_UNORD_Q>(v, v));
}
template <class V>
ZPP_INLINE bool anyNan(Halves<V> v) {
    return any(compare<_CMP_UNORD_Q>(v.low, v.high));
}

// Where the instructions differ from singleToHalf: they keep the payload of a NaN, round 2^-25 to 0, and do
// not truncate to infinity.
template <Rounding rounding, class V>
ZPP_INLINE auto isOdd(V single) {
    const auto magnitude = asFloats(single & 0x7FFFFFFF);
    if constexpr (rounding == Rounding::kNearest)
        return compare<_CMP_EQ_UQ>(magnitude, floatsOf<V>(kSingleTie));
    else
        return compare<_CMP_NLT_UQ>(magnitude, floatsOf<V>(kSingle65536));
}
template <Rounding rounding, class V>
ZPP_INLINE bool anyOdd(V single) {
    return any(isOdd<rounding>(single));
}
template <Rounding rounding, class V>
ZPP_INLINE bool anyOdd(Halves<V> single) {
    return either(isOdd<rounding>(single.low), isOdd<rounding>(single.high));
}

template <Rounding rounding, class V>
ZPP_INLINE void storeByInstruction(Half* p, V single) {
    if constexpr (kIsHalves<V>) {
        storeByInstruction<rounding>(p, single.low);
        storeByInstruction<rounding>(p + sizeof(single.low) / sizeof(float), single.high);
    } else {
        constexpr int mode = rounding == Rounding::kNearest ? _MM_FROUND_TO_NEAREST_INT : _MM_FROUND_TO_ZERO;
        store(p, narrowToHalves<mode>(asFloats(single)));
    }
}
#endif

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

// N halves as the bits of singles, exactly, in a register or two.
template <int N>
ZPP_INLINE auto loadAsFloatBits(const Half* p) {
    const auto exact = [=]() ZPP_INLINE_LAMBDA {
        return mapRegisters([](auto half) ZPP_INLINE_LAMBDA { return halfToSingle(half); },
                            loadRegisters<N>(&p->bits));
    };
#ifdef __F16C__
    if constexpr (N > 1) {
        const auto v = loadAsFloats<N>(p);
        if (anyNan(v)) [[unlikely]]  // some of them may have become quiet
            return exact();
        return mapRegisters([](auto single) { return bitCast<Vec<int32_t, kLanes<float>>>(single); }, v);
    }
#endif
    return exact();
}

// Singles, given as bits, as halves; `plain` is that of singleToHalf. V is one register or
// kPackedRegisters<Half> of them.
template <Rounding rounding, bool plain, class V>
ZPP_INLINE void storeAsHalves(Half* p, V single) {
#ifdef __F16C__
    if constexpr (!std::is_same_v<V, int32_t>) {
        if (plain || !anyOdd<rounding>(single)) [[likely]] {
            storeByInstruction<rounding>(p, single);
            return;
        }
    }
#endif
    const auto half = [](auto v) ZPP_INLINE_LAMBDA { return singleToHalf<rounding, plain>(v); };
    if constexpr (std::is_same_v<V, int32_t>)
        p->bits = static_cast<uint16_t>(half(single));
    else
        storeSaturated(reinterpret_cast<int16_t*>(p), mapRegisters(half, single));
}

}  // namespace zpp::ZPP_ISA
