// The floating-point environment of a call: round to nearest, no flushing of results, no exception traps.
#pragma once

#include "core/simd.h"

namespace zpp::ZPP_ISA {

// Settings and exception flags. restore() brings the settings back; the flags are those of both moments.
class FloatingState {
  public:
    FloatingState() { read(); }
#ifdef __SSE2_MATH__
    void restore() const {
        const FloatingState now;
        if (now.word_ != word_) [[unlikely]]
            load(word_ | (now.word_ & kFlags));
    }
    // Denormal operands are zeros where the caller has set that.
    void setOurs() const {
        const uint32_t ours = (word_ & ~(kRounding | kFlushToZero)) | kMasks;
        if (ours != word_) [[unlikely]]
            load(ours);
    }

  private:
    static constexpr uint32_t kRounding = 0x6000, kFlushToZero = 0x8000, kMasks = 0x1F80, kFlags = 0x3F;

    void read() { __asm__ volatile("stmxcsr %0" : "=m"(word_) : : "memory"); }
    static void load(uint32_t word) { __asm__ volatile("ldmxcsr %0" : : "m"(word) : "memory"); }

    uint32_t word_;
#else
    void restore() const {
        // A new flag that the caller has not masked would trap in the next operation of the unit.
        FloatingState now;
        now.control_ = control_;
        now.status_ = (now.status_ & ~kFlags) | ((status_ | (now.status_ & control_)) & kFlags);
        __asm__ volatile("fldenv %0" : : "m"(now) : "memory");
    }
    // Of 53 bits, so that kernels for builds without a fused multiply-add do here what they do elsewhere.
    void setOurs() const {
        const uint16_t word = 0x27F;
        __asm__ volatile("fldcw %0" : : "m"(word) : "memory");
    }

  private:
    static constexpr uint32_t kFlags = 0x3F;

    void read() { __asm__ volatile("fnstenv %0; fldcw %0" : "=m"(*this) : : "memory"); }

    uint32_t control_, status_, rest_[5];
#endif
};

// For its life; the caller's settings come back at the end, with the exception flags that were raised
// besides.
class Environment {
  public:
    Environment() { caller_.setOurs(); }
    ~Environment() { caller_.restore(); }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

  private:
    const FloatingState caller_;
};

}  // namespace zpp::ZPP_ISA
