// What sorting needs of the SIMD vocabulary: elements put in order lane by lane, and parted by a
// pivot. Elements are doubles, none of them NaN, and signed
// integers of 32 bits; of equal ones, such as zeros of both signs, each is kept.
#pragma once

#include <utility>

#include "core/simd_fold.h"
#include "core/simd_partial.h"

namespace zpp::ZPP_ISA {

// Lane by lane the lower one of a and b into a, the other one into b. min and max take the second operand of
// equal ones.
template <class V>
ZPP_INLINE void putInOrder(V& a, V& b) {
    if constexpr (kVectorBytes == 16 && std::is_same_v<V, Vec<int32_t>>) {  // without instructions for both
        const V changed = pinned((a ^ b) & (a > b));  // GCC 12 makes two selections of it otherwise
        a ^= changed;
        b ^= changed;
    } else {
        const V lower = min(a, b);
        b = max(b, a);
        a = lower;
    }
}

// Lanes of a, those of b where the bit kBit of the lane's number is set.
template <int kBit, class V, int... I>
ZPP_INLINE V blend(V a, V b, std::integer_sequence<int, I...>) {
    constexpr int n = sizeof...(I);
    return shuffle<((I & kBit) != 0 ? n + I : I)...>(a, b);
}
template <int kBit, class V>
ZPP_INLINE V blend(V a, V b) {
    return blend<kBit>(a, b, std::make_integer_sequence<int, kLanes<Lane<V>>>());
}

// Lane i is lane i ^ kOther.
template <int kOther, class V, int... I>
ZPP_INLINE V exchangeLanes(V v, std::integer_sequence<int, I...>) {
    return shuffle<(I ^ kOther)...>(v, v);
}
template <int kOther, class V>
ZPP_INLINE V exchangeLanes(V v) {
    return exchangeLanes<kOther>(v, std::make_integer_sequence<int, kLanes<Lane<V>>>());
}

// The lanes of b with kBit cleared go where the lanes of a have it set, and those to where they came from.
template <int kBit, class V, int... I>
ZPP_INLINE void tradeLanes(V& a, V& b, std::integer_sequence<int, I...>) {
    constexpr int n = sizeof...(I);
    const V low = shuffle<((I & kBit) != 0 ? n + (I ^ kBit) : I)...>(a, b);
    b = shuffle<((I & kBit) != 0 ? n + I : (I ^ kBit))...>(a, b);
    a = low;
}
template <int kBit, class V>
ZPP_INLINE void tradeLanes(V& a, V& b) {
    tradeLanes<kBit>(a, b, std::make_integer_sequence<int, kLanes<Lane<V>>>());
}

// Lane i is the lane whose number is that of i with its bits turned to the right by kPlaces.
template <int kPlaces, class V, int... I>
ZPP_INLINE V rotateLaneNumbers(V v, std::integer_sequence<int, I...>) {
    constexpr int n = sizeof...(I);
    return shuffle<((I >> kPlaces) | (I * (n >> kPlaces) & (n - 1)))...>(v, v);
}
template <int kPlaces, class V>
ZPP_INLINE V rotateLaneNumbers(V v) {
    return rotateLaneNumbers<kPlaces>(v, std::make_integer_sequence<int, kLanes<Lane<V>>>());
}

// Lanes of a step that parts elements by a pivot: as many as a table of orders has room for, or single
// elements where there are no permutations by variable numbers.
template <class T>
inline constexpr int kPartedLanes = kVectorBytes <= 16 ? 1
                                    : kLanes<T> <= 8   ? kLanes<T>
                                                       : 8;

#ifdef __AVX2__
// For each set of lanes that are low, as bits, the order of all lanes that has these first: one byte for each
// part of a lane.
struct LaneOrders {
    uint64_t order[256];
};
constexpr LaneOrders makeLaneOrders(int lanes, int parts) {
    LaneOrders all{};
    for (unsigned low = 0; low < 1u << lanes; ++low) {
        int place = 0;
        for (const unsigned wanted : {1u, 0u})
            for (int lane = 0; lane < lanes; ++lane)
                if ((low >> lane & 1) == wanted)
                    for (int part = 0; part < parts; ++part)
                        all.order[low] |= static_cast<uint64_t>(lane * parts + part) << 8 * place++;
    }
    return all;
}
template <int kParted>
static constexpr LaneOrders kLaneOrders = makeLaneOrders(kParted, 8 / kParted);

// The low lanes first.
template <class V>
ZPP_INLINE V inLaneOrder(V v, unsigned low) {
    const __m128i order = loadBytes<8>(&kLaneOrders<sizeof(V) / sizeof(Lane<V>)>.order[low]);
#ifdef __AVX512F__
    if constexpr (sizeof(V) == 64)
        return _mm512_maskz_permutexvar_pd(kAllLanes & 0xFF,
                                           _mm512_maskz_cvtepu8_epi64(kAllLanes & 0xFF, order), v);
#endif
    if constexpr (sizeof(V) == 32)
        return bitCast<V>(_mm256_permutevar8x32_epi32(bitCast<__m256i>(v), _mm256_cvtepu8_epi32(order)));
}
#endif

// Which lanes are below the pivot, or not above it, as bits.
template <bool kOrEqual, class V>
ZPP_INLINE unsigned lowLanes(V v, V pivot) {
    constexpr bool doubles [[maybe_unused]] = std::is_same_v<Lane<V>, double>;
    if constexpr (std::is_arithmetic_v<V>) return kOrEqual ? v <= pivot : v < pivot;
#ifdef __AVX512F__
    else if constexpr (doubles)
        return laneBits(_mm512_cmp_pd_mask(v, pivot, kOrEqual ? _CMP_LE_OQ : _CMP_LT_OQ));
    else
        return laneBits(_mm256_cmp_epi32_mask(bitCast<__m256i>(v), bitCast<__m256i>(pivot),
                                              kOrEqual ? _MM_CMPINT_LE : _MM_CMPINT_LT));
#elif defined(__AVX2__)
    else if constexpr (doubles)
        return static_cast<unsigned>(
            _mm256_movemask_pd(_mm256_cmp_pd(v, pivot, kOrEqual ? _CMP_LE_OQ : _CMP_LT_OQ)));
    else if constexpr (kOrEqual)
        return static_cast<unsigned>(_mm256_movemask_ps(bitCast<__m256>(v > pivot))) ^ 0xFF;
    else
        return static_cast<unsigned>(_mm256_movemask_ps(bitCast<__m256>(v < pivot)));
#endif
}

// Of `count` places from `begin` on some at both ends are free. Puts the low lanes of v at the beginning and
// the others at the end, and takes their places off. Whole registers are stored: so many places must be free
// at each end, or be all that there are.
template <bool kOrEqual, class V, class T>
ZPP_INLINE void part(V v, V pivot, T*& begin, size_t& count) {
    const unsigned low = lowLanes<kOrEqual>(v, pivot);
    if constexpr (std::is_arithmetic_v<V>) {
        begin[0] = v;
        begin[--count] = v;
        begin += low;
    }
#ifdef __AVX2__
    else {
        const V parted = inLaneOrder(v, low);
        count -= kPartedLanes<T>;
        store(begin, parted);
        store(begin + count, parted);
        begin += static_cast<unsigned>(__builtin_popcount(low));
    }
#endif
}

// Whether a double among those that it saw is a NaN or -0.
template <class V>
class OddWatch {
  public:
    ZPP_INLINE void look(V v) {
#ifdef __AVX512F__
        if constexpr (sizeof(V) == 64) {
            constexpr int oddClasses = 0x01 | 0x04 | 0x80;  // quiet NaN, -0, signalling NaN
            lanes_ |= laneBits(_mm512_fpclass_pd_mask(v, oddClasses));
            return;
        }
#endif
        using Bits = Vec<int64_t, sizeof(V) / sizeof(int64_t)>;
        met_ |= (v != v) | ((v == 0) & bitCast<Bits>(v));  // SSE2 compares no integers of 64 bits
    }
    ZPP_INLINE bool met() const { return lanes_ != 0 || any(met_); }

  private:
    using Mask = decltype(V{} < V{});
    Mask met_{};
    unsigned lanes_ = 0;  // where comparisons give bits, not lanes
};

inline bool hasNansOrNegativeZeros(const double* p, size_t len) {
    constexpr size_t n = kLanes<double>;
    if (len < n) return true;  // soon looked at
    OddWatch<Vec<double>> watch;
    for (size_t i = 0; i < len - n; i += n) watch.look(load<Vec<double>>(p + i));
    watch.look(load<Vec<double>>(p + (len - n)));
    return watch.met();
}

}  // namespace zpp::ZPP_ISA
