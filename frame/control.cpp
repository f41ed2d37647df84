// Control of the SSE unit, and the time-stamp counter.
#include "frame/cpu.h"
#include "frame/shared.h"

namespace zpp {
namespace {

// MXCSR bits.
constexpr uint32_t kDenormalsAreZero = 0x40;
constexpr uint32_t kUnderflowMask = 0x800;
constexpr uint32_t kExceptionMasks = 0x1F80;
constexpr uint32_t kFlushToZero = 0x8000;

// Replaces the bits of MXCSR under `mask` by those of `value`; returns the old MXCSR.
uint32_t updateMxcsr(uint32_t value, uint32_t mask) {
    uint32_t old;
    __asm__ volatile("stmxcsr %0" : "=m"(old));
    const uint32_t updated = (old & ~mask) | (value & mask);
    __asm__ volatile("ldmxcsr %0" : : "m"(updated));
    return old;
}

}  // namespace
}  // namespace zpp

namespace zpp::shared {

ZppStatus zppSetFlushToZero(Zpp32s value, Zpp32u* pUMask) {
    if (!hasSse()) return zppStatusCpuNotSupported;
    if (value != 0) {
        const uint32_t masks = updateMxcsr(kFlushToZero, kFlushToZero) & kExceptionMasks;
        updateMxcsr(masks | kUnderflowMask, kExceptionMasks);
        if (pUMask != nullptr) *pUMask = masks & kUnderflowMask;
    } else {
        updateMxcsr(0, kFlushToZero);
        if (pUMask != nullptr && *pUMask == 0) updateMxcsr(0, kUnderflowMask);
    }
    return zppStatusOk;
}

ZppStatus zppSetDenormAreZeros(Zpp32s value) {
    if (!hasSse() || (cpuReader.mxcsrMask() & kDenormalsAreZero) == 0) return zppStatusCpuNotSupported;
    updateMxcsr(value != 0 ? kDenormalsAreZero : 0, kDenormalsAreZero);
    return zppStatusOk;
}

Zpp64u zppGetCpuClocks() { return __builtin_ia32_rdtsc(); }

}  // namespace zpp::shared
