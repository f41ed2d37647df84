// The SIMD vocabulary: vectors of the width of the ISA build, and the few operations that the vector
// extensions of GCC and clang lack. Arithmetic and comparison are the extensions' own (+ - * / & | < ...),
// and a vector of one lane is the plain type, so a kernel written once also runs on single elements and in
// the builds without vectors.
//
// This header and core/precision.h are the only places that ask which instructions there are.
//
// What compilers do that a kernel has to know, with the versions that were looked at:
// - GCC 12 does not make minps or maxps of a ternary on vectors: min() and max().
// - GCC 12 converts vectors of bytes to wider ones element by element, and of words by halves
//   (__builtin_convertvector with AVX-512): there are intrinsics for each width in core/simd_convert.h.
// - GCC 12 warns of undefined lanes in its own header for most unmasked AVX-512 intrinsics: the masked forms
//   with all lanes are the same instructions.
// - GCC 12 loads a vector that several fused multiply-adds use once for each of them: pinned().
// - GCC 12 makes fused vfmaddsub of a product beside a sum, in spite of -ffp-contract=off, in vectors of its
//   own: automatic vectors are off (cmake/Options.cmake).
// - GCC 12 leaves out vzeroupper with -fipa-ra, and takes the stack of 64-bit Windows to be aligned for AVX:
//   flags in cmake/Isa.cmake.
// - clang 14 passes a double argument through the x87 unit in builds without SSE2, which makes a signalling
//   NaN quiet: functions of core/ that must keep one take references to it.
#pragma once

#include <type_traits>

#include "core/isa.h"

#ifdef __SSE__
#include <immintrin.h>
#endif

#define ZPP_INLINE [[gnu::always_inline]] inline
#define ZPP_INLINE_LAMBDA __attribute__((always_inline))  // between the parameters and the body of a lambda

namespace zpp::ZPP_ISA {

#if defined(__AVX512F__)
inline constexpr int kVectorBytes = 64;
#elif defined(__AVX2__)
inline constexpr int kVectorBytes = 32;
#elif defined(__SSE2__)
inline constexpr int kVectorBytes = 16;
#else
inline constexpr int kVectorBytes = 0;  // x87, and sse, which has no vectors of doubles or integers
#endif

// Whether vectors of 64-bit integers have an arithmetic shift to the right, and a comparison.
#ifdef __AVX512F__
inline constexpr bool kShiftsSigned64 = true;
#else
inline constexpr bool kShiftsSigned64 = kVectorBytes == 0;
#endif
#ifdef __AVX2__
inline constexpr bool kCompares64 = true;
#else
inline constexpr bool kCompares64 = kVectorBytes == 0;
#endif

// Lanes of a full vector of T.
template <class T>
inline constexpr int kLanes = kVectorBytes == 0 ? 1 : kVectorBytes / static_cast<int>(sizeof(T));

template <class T, int N>
struct VectorOf {
    typedef T Type __attribute__((vector_size(sizeof(T) * N)));
};
template <class T>
struct VectorOf<T, 1> {
    using Type = T;
};

// Registers of vectors.
inline constexpr int kRegisters = sizeof(void*) == 4 ? 8 : kVectorBytes == 64 ? 32 : 16;

template <class T, int N = kLanes<T>>
using Vec = typename VectorOf<T, N>::Type;

// The type of the lanes.
template <class V>
struct LaneOf {
    using Type = std::remove_cv_t<std::remove_reference_t<decltype(V{}[0])>>;
};
template <class V>
requires std::is_arithmetic_v<V>
struct LaneOf<V> {
    using Type = V;
};
template <class V>
using Lane = typename LaneOf<V>::Type;

template <class V, class T>
ZPP_INLINE V load(const T* p) {
    V v;
    __builtin_memcpy(&v, p, sizeof v);
    return v;
}

template <class V, class T>
ZPP_INLINE void store(T* p, V v) {
    __builtin_memcpy(p, &v, sizeof v);
}

// As store, but past the caches where p is aligned for it. The other threads see it after streamFence().
template <class V, class T>
ZPP_INLINE void stream(T* p, V v) {
#ifdef __SSE2__
    if (reinterpret_cast<uintptr_t>(p) % sizeof v == 0) {
#ifdef __AVX512F__
        if constexpr (sizeof v == 64)
            return _mm512_stream_si512(reinterpret_cast<__m512i*>(p), __builtin_bit_cast(__m512i, v));
#endif
#ifdef __AVX2__
        if constexpr (sizeof v == 32)
            return _mm256_stream_si256(reinterpret_cast<__m256i*>(p), __builtin_bit_cast(__m256i, v));
#endif
        if constexpr (sizeof v == 16)
            return _mm_stream_si128(reinterpret_cast<__m128i*>(p), __builtin_bit_cast(__m128i, v));
    }
#endif
    store(p, v);
}
ZPP_INLINE void streamFence() {
#ifdef __SSE2__
    _mm_sfence();
#endif
}

// Every lane = x.
template <class V, class T>
ZPP_INLINE V broadcast(T x) {
    return x - V{};  // and not x + V{}, which would lose the sign of -0
}

// A vector of 16 bytes, as often as V holds it. GCC 12 makes a 512-bit register of a shuffle in memory.
template <class V, class Part>
ZPP_INLINE V repeated(Part part) {
    static_assert(sizeof part == 16 && sizeof(V) % 16 == 0);
#ifdef __AVX512F__
    if constexpr (sizeof(V) == 64)
        return __builtin_bit_cast(V, _mm512_maskz_broadcast_i64x2(0xFF, __builtin_bit_cast(__m128i, part)));
#endif
#ifdef __AVX2__
    if constexpr (sizeof(V) == 32)
        return __builtin_bit_cast(V, _mm256_broadcastsi128_si256(__builtin_bit_cast(__m128i, part)));
#endif
    if constexpr (sizeof(V) == 16) return __builtin_bit_cast(V, part);
}

// The bits of v as another type of the same size.
template <class To, class V>
ZPP_INLINE To bitCast(V v) {
    static_assert(sizeof(To) == sizeof(V));
    return __builtin_bit_cast(To, v);
}

// The unsigned integers of the same bits.
template <class V>
ZPP_INLINE auto asUnsigned(V v) {
    if constexpr (std::is_arithmetic_v<V>)
        return static_cast<std::make_unsigned_t<V>>(v);
    else
        return bitCast<Vec<std::make_unsigned_t<Lane<V>>, sizeof(V) / sizeof(Lane<V>)>>(v);
}

// v shifted by count places, which are fewer than the lanes have. Vectors of 64-bit integers shift to the
// right as unsigned ones where kShiftsSigned64 is not set. AVX2 and AVX-512 have the count in every lane:
// with one count for all, the instructions are two operations on Intel's processors.
template <class V>
ZPP_INLINE V shiftLeft(V v, int count) {
#ifdef __AVX2__
    if constexpr (sizeof(V) == 32 && sizeof(Lane<V>) == 4)
        return bitCast<V>(_mm256_sllv_epi32(bitCast<__m256i>(v), _mm256_set1_epi32(count)));
    else
#endif
        return v << count;
}
template <class V>
ZPP_INLINE V shiftRight(V v, int count) {
    [[maybe_unused]] constexpr bool isSigned = std::is_signed_v<Lane<V>>, isLong = sizeof(Lane<V>) == 8;
#ifdef __AVX2__
    if constexpr (sizeof(V) == 32) {
        const __m256i bits = bitCast<__m256i>(v);
        if constexpr (isLong)
            return bitCast<V>(_mm256_srlv_epi64(bits, _mm256_set1_epi64x(count)));
        else
            return bitCast<V>(isSigned ? _mm256_srav_epi32(bits, _mm256_set1_epi32(count))
                                       : _mm256_srlv_epi32(bits, _mm256_set1_epi32(count)));
    }
#ifdef __AVX512F__
    else if constexpr (sizeof(V) == 64) {
        const __m512i bits = bitCast<__m512i>(v);
        if constexpr (isLong)
            return bitCast<V>(isSigned ? _mm512_maskz_srav_epi64(0xFF, bits, _mm512_set1_epi64(count))
                                       : _mm512_maskz_srlv_epi64(0xFF, bits, _mm512_set1_epi64(count)));
        else
            return bitCast<V>(isSigned ? _mm512_maskz_srav_epi32(0xFFFF, bits, _mm512_set1_epi32(count))
                                       : _mm512_maskz_srlv_epi32(0xFFFF, bits, _mm512_set1_epi32(count)));
    }
#endif
    else
#endif
        return v >> count;
}

// Exclusive or of the bits.
template <class V>
ZPP_INLINE V exclusiveOr(V a, V b) {
    using Bits = Vec<uint64_t, sizeof(V) / sizeof(uint64_t)>;
    return bitCast<V>(bitCast<Bits>(a) ^ bitCast<Bits>(b));
}

// The NaN that invalid operations give, where it is chosen without one: none raises an exception then.
template <class V>
ZPP_INLINE V quietNan() {
    return broadcast<V>(bitCast<double>(uint64_t{0xFFF8000000000000}));
}

// The operation that leaves its operand as it is.
inline constexpr auto itself = [](auto x) ZPP_INLINE_LAMBDA { return x; };

// Lane by lane a where the comparison held, b elsewhere.
template <class M, class V>
ZPP_INLINE V select(M condition, V a, V b) {
    return condition ? a : b;
}

// In this form it is one comparison; of (divisor == 0) | (divisor != divisor) GCC 12 takes the mask apart by
// lanes where there is no AVX.
template <class V>
ZPP_INLINE auto zeroOrNan(V divisor) {
    return ((divisor < 0) | (divisor > 0)) == 0;
}

// What is divided by instead of a zero divisor: 1, which does not raise the exception of a division by zero.
template <class M, class V>
ZPP_INLINE V oneWhere(M zero, V divisor) {
    return select(zero, broadcast<V>(1.0), divisor);
}

// All lanes, for the masked forms of intrinsics (above).
inline constexpr uint16_t kAllLanes = 0xFFFF;

// b where the comparison is unordered: as the instructions have it, which GCC does not find in the ternary.
template <class V>
ZPP_INLINE V min(V a, V b) {
#ifdef __SSE2__
    if constexpr (std::is_same_v<V, Vec<float, 4>>) return _mm_min_ps(a, b);
    if constexpr (std::is_same_v<V, Vec<double, 2>>) return _mm_min_pd(a, b);
#endif
#ifdef __AVX2__
    if constexpr (std::is_same_v<V, Vec<float, 8>>) return _mm256_min_ps(a, b);
    if constexpr (std::is_same_v<V, Vec<double, 4>>) return _mm256_min_pd(a, b);
#endif
#ifdef __AVX512F__
    if constexpr (std::is_same_v<V, Vec<float, 16>>) return _mm512_maskz_min_ps(kAllLanes, a, b);
    if constexpr (std::is_same_v<V, Vec<double, 8>>) return _mm512_maskz_min_pd(kAllLanes & 0xFF, a, b);
#endif
    return a < b ? a : b;
}
template <class V>
ZPP_INLINE V max(V a, V b) {
#ifdef __SSE2__
    if constexpr (std::is_same_v<V, Vec<float, 4>>) return _mm_max_ps(a, b);
    if constexpr (std::is_same_v<V, Vec<double, 2>>) return _mm_max_pd(a, b);
#endif
#ifdef __AVX2__
    if constexpr (std::is_same_v<V, Vec<float, 8>>) return _mm256_max_ps(a, b);
    if constexpr (std::is_same_v<V, Vec<double, 4>>) return _mm256_max_pd(a, b);
#endif
#ifdef __AVX512F__
    if constexpr (std::is_same_v<V, Vec<float, 16>>) return _mm512_maskz_max_ps(kAllLanes, a, b);
    if constexpr (std::is_same_v<V, Vec<double, 8>>) return _mm512_maskz_max_pd(kAllLanes & 0xFF, a, b);
#endif
    return a > b ? a : b;
}

// |v| of doubles.
template <class V>
ZPP_INLINE V magnitude(V v) {
    if constexpr (std::is_same_v<V, double>)
        return __builtin_fabs(v);
    else
        return bitCast<V>(bitCast<Vec<int64_t, sizeof(V) / 8>>(v) & 0x7FFFFFFFFFFFFFFF);
}

// v of an odd function of |x|.
template <class V>
ZPP_INLINE V withSignOfArgument(V x, V v) {
    return exclusiveOr(v, exclusiveOr(x, magnitude(x)));
}

template <class V>
ZPP_INLINE V squareRoot(V v) {
    if constexpr (std::is_same_v<V, double>) return __builtin_sqrt(v);
#ifdef __SSE2__
    else if constexpr (sizeof(V) == 16)
        return _mm_sqrt_pd(v);
#endif
#ifdef __AVX2__
    else if constexpr (sizeof(V) == 32)
        return _mm256_sqrt_pd(v);
#endif
#ifdef __AVX512F__
    else
        return _mm512_maskz_sqrt_pd(0xFF, v);
#endif
}

// Whether a comparison held in any lane.
template <class M>
ZPP_INLINE bool any(M condition) {
    if constexpr (std::is_arithmetic_v<M>) return condition;
#ifdef __AVX512F__
    else if constexpr (sizeof(M) == 64)
        return _mm512_test_epi64_mask(bitCast<__m512i>(condition), bitCast<__m512i>(condition)) != 0;
#endif
#ifdef __AVX2__
    else if constexpr (sizeof(M) == 32)
        return _mm256_movemask_epi8(bitCast<__m256i>(condition)) != 0;
#endif
#ifdef __SSE2__
    else
        return _mm_movemask_epi8(bitCast<__m128i>(condition)) != 0;
#endif
}

// The lanes of doubles in which a comparison held, lane i as bit i.
template <class M>
ZPP_INLINE uint64_t laneBits(M condition) {
    if constexpr (std::is_arithmetic_v<M>) return condition != 0;
#ifdef __AVX512F__
    else if constexpr (sizeof(M) == 64)
        return _mm512_movepi64_mask(bitCast<__m512i>(condition));
#endif
#ifdef __AVX2__
    else if constexpr (sizeof(M) == 32)
        return static_cast<uint64_t>(_mm256_movemask_pd(bitCast<__m256d>(condition)));
#endif
#ifdef __SSE2__
    else
        return static_cast<uint64_t>(_mm_movemask_pd(bitCast<__m128d>(condition)));
#endif
}

// Whether mulAdd rounds once.
#ifdef __FMA__
inline constexpr bool kFuses = true;
#else
inline constexpr bool kFuses = false;
#endif

// a * b + c, fused where the build has it: only for results that are promised to a bound, not to the bit.
template <class V>
ZPP_INLINE V mulAdd(V a, V b, V c) {
#ifdef __FMA__
    if constexpr (std::is_same_v<V, double>)
        return __builtin_fma(a, b, c);
    else if constexpr (sizeof(V) == 16)
        return _mm_fmadd_pd(a, b, c);
    else if constexpr (sizeof(V) == 32)
        return _mm256_fmadd_pd(a, b, c);
#ifdef __AVX512F__
    else
        return _mm512_fmadd_pd(a, b, c);
#endif
#else
    return a * b + c;
#endif
}

// c - a * b, fused as mulAdd.
template <class V>
ZPP_INLINE V mulSubFrom(V a, V b, V c) {
    return mulAdd(-a, b, c);
}

// v, held in a register from here on: a compiler otherwise loads a vector that several fused multiply-adds
// use once for each of them.
template <class V>
ZPP_INLINE V pinned(V v) {
#if defined(__AVX512F__)
    __asm__("" : "+v"(v));
#elif defined(__SSE2_MATH__)
    __asm__("" : "+x"(v));
#endif
    return v;
}

// Where several comparisons of doubles held, and where they did not hold together. Without AVX GCC 12 takes
// masks apart by lanes to combine them, unless it knows nothing about them.
template <class M, class... More>
ZPP_INLINE auto allHeld(M first, More... more) {
    if constexpr (sizeof(M) == 16)
        return (pinned(first) & ... & pinned(more));
    else
        return (first & ... & more);
}
template <class... M>
ZPP_INLINE auto whereNot(M... held) {
    const auto all = allHeld(held...);
    if constexpr (sizeof all == 16)
        return ~all;
    else
        return all == 0;
}

// An array that is in memory here, whole: of what a loop has too few registers for a compiler otherwise keeps
// some elements in registers, and spills what the loop works on.
template <class T, int N>
ZPP_INLINE void inMemory(T (&array)[N]) {
    __asm__("" : "+m"(array));
}

// The index i, about which a compiler knows nothing from here on. GCC 12 otherwise makes a pointer of its own
// for each vector that a loop walks through, and takes longer to prepare them than a short loop takes.
ZPP_INLINE size_t opaque(size_t i) {
    __asm__("" : "+r"(i));
    return i;
}

// Stores stay on their side of it. GCC 12 otherwise stores a block in another order than it is written in,
// which takes twice as long where the stores go beyond the first cache: lines are taken in turns.
ZPP_INLINE void keepStoreOrder() { __asm__ volatile("" ::: "memory"); }

}  // namespace zpp::ZPP_ISA
