// Doubles in the x87 unit, which the builds without SSE2 compute them with. It rounds to 64 bits by default
// and keeps exponents far beyond those of a double, and a result that is rounded again when it is stored is
// not always the one that is promised. With DoublePrecision around a call, product(), quotient() and stored()
// make each operation the one of IEEE 754 on doubles; in the other builds they are plain operations.
#pragma once

#include "core/simd.h"

namespace zpp::ZPP_ISA {

// For its life the x87 unit rounds to the bits that its control word's field names. The caller's word comes
// back at the end. Memory is not read or written across either end; a value that is in a register already is
// kept inside by stored().
template <uint16_t kField>
class X87Precision {
  public:
    ZPP_INLINE X87Precision() {
        __asm__ volatile("fnstcw %0" : "=m"(caller_));
        const uint16_t word = static_cast<uint16_t>((caller_ & ~kPrecisionField) | kField);
        __asm__ volatile("fldcw %0" : : "m"(word) : "memory");
    }
    ZPP_INLINE ~X87Precision() { __asm__ volatile("fldcw %0" : : "m"(caller_) : "memory"); }
    X87Precision(const X87Precision&) = delete;
    X87Precision& operator=(const X87Precision&) = delete;

  private:
    static constexpr uint16_t kPrecisionField = 0x300;
    uint16_t caller_;
};

// For doubles. What remains is the range of exponents.
#ifdef __SSE2_MATH__
struct DoublePrecision {
    DoublePrecision() {}  // not trivial, so that an unused guard is no warning
};
#else
using DoublePrecision = X87Precision<0x200>;
#endif
// For long double, in every build.
using ExtendedPrecision = X87Precision<0x300>;

// For its life a bit of the SSE unit's control word is set or not, in the builds that compute with it; the
// caller's comes back at the end.
template <uint32_t kBit, bool kSet>
class SseControl {
  public:
    ZPP_INLINE SseControl() {
#ifdef __SSE2_MATH__
        __asm__ volatile("stmxcsr %0" : "=m"(caller_));
        if (differs()) load(caller_ ^ kBit);
#endif
    }
    ZPP_INLINE ~SseControl() {
#ifdef __SSE2_MATH__
        if (differs()) load(caller_);
#endif
    }
    SseControl(const SseControl&) = delete;
    SseControl& operator=(const SseControl&) = delete;

  private:
#ifdef __SSE2_MATH__
    // Programs seldom set the bits.
    ZPP_INLINE bool differs() const { return __builtin_expect(((caller_ & kBit) != 0) != kSet, kSet); }
    ZPP_INLINE static void load(uint32_t word) { __asm__ volatile("ldmxcsr %0" : : "m"(word) : "memory"); }

    uint32_t caller_;
#endif
};

// Comparisons, minima and maxima take subnormal numbers for what they are, not for zeros.
using SubnormalsKept = SseControl<0x40, false>;
// Results below the normal range are zeros: a recursion that fades away would otherwise compute with
// subnormal numbers for long, which takes some processors 50 times as long.
using SubnormalsFlushed = SseControl<0x8000, true>;

// An intermediate sum or difference, infinite where a double is: the x87 register is stored and loaded again.
// Nothing more is needed of a sum, as one below 2^-1022 is exact.
template <class V>
ZPP_INLINE V stored(V v) {
#ifndef __SSE2_MATH__
    __asm__ volatile("" : "+m"(v));
#endif
    return v;
}

#ifndef __SSE2_MATH__
// An operand scaled down by the difference of the two exponent ranges: a result that is subnormal as a double
// is so in the register too, and rounded there, once, to the bits that it has as a double. To scale it up
// again is exact, but for the overflow of a double. (Golliver, "Efficiently producing default orthogonal IEEE
// double results using extended IEEE hardware", 1998.)
inline constexpr long double kScaleDown = 0x1p-15360L;
inline constexpr long double kScaleUp = 0x1p15360L;
#endif

// a * b, of vectors, of single numbers, or of a vector and a number for all lanes. (Singles need no more than
// to be stored: they have less than half of the bits.)
template <class A, class B>
ZPP_INLINE auto product(A a, B b) {
#ifdef __SSE2_MATH__
    return a * b;
#else
    if constexpr (std::is_same_v<decltype(a * b), double>)
        return static_cast<double>(kScaleDown * a * b * kScaleUp);
    else
        return stored(a * b);
#endif
}

// a / b
template <class A, class B>
ZPP_INLINE auto quotient(A a, B b) {
#ifdef __SSE2_MATH__
    return a / b;
#else
    if constexpr (std::is_same_v<decltype(a / b), double>)
        return static_cast<double>(kScaleDown * a / b * kScaleUp);
    else
        return stored(a / b);
#endif
}

// 1 / x, rounded once.
inline double reciprocal(double x) {
    const DoublePrecision precision;
    return stored(quotient(1.0, stored(x)));
}

}  // namespace zpp::ZPP_ISA
