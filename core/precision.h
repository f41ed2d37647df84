// The precision of the x87 unit, which the builds without SSE2 compute doubles with: it rounds to 64 bits by
// default, then to 53 when a result is stored, and two roundings are not always the one that is promised.
#pragma once

#include "core/simd.h"

namespace zpp::ZPP_ISA {

#ifdef __SSE2_MATH__
struct DoublePrecision {
    DoublePrecision() {}  // not trivial, so that an unused guard is no warning
};
#else
// For its life the x87 unit rounds to the 53 bits of a double. What remains is the exponent range, that of
// the registers: see stored(). The caller's control word comes back at the end. Memory is not read or written
// across either end; a value that is in a register already is kept inside by stored().
class DoublePrecision {
  public:
    ZPP_INLINE DoublePrecision() {
        __asm__ volatile("fnstcw %0" : "=m"(caller_));
        const uint16_t word = static_cast<uint16_t>((caller_ & ~kPrecisionField) | kPrecision53);
        __asm__ volatile("fldcw %0" : : "m"(word) : "memory");
    }
    ZPP_INLINE ~DoublePrecision() { __asm__ volatile("fldcw %0" : : "m"(caller_) : "memory"); }
    DoublePrecision(const DoublePrecision&) = delete;
    DoublePrecision& operator=(const DoublePrecision&) = delete;

  private:
    static constexpr uint16_t kPrecisionField = 0x300;
    static constexpr uint16_t kPrecision53 = 0x200;
    uint16_t caller_;
};
#endif

// An intermediate result with the exponent range of a double too, as the vector builds have it: the x87
// register is stored and loaded again. A result below 2^-1022 is then rounded twice.
template <class V>
ZPP_INLINE V stored(V v) {
#ifndef __SSE2_MATH__
    __asm__ volatile("" : "+m"(v));
#endif
    return v;
}

// 1 / x, rounded once.
inline double reciprocal(double x) {
    const DoublePrecision precision;
    return stored(1.0 / stored(x));
}

}  // namespace zpp::ZPP_ISA
