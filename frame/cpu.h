// What the processor is and can do.
#pragma once

#include <stdint.h>

namespace zpp {

// ISA builds, from the plainest up.
enum Isa : int { kX87Isa, kSseIsa, kSse2Isa, kAvx2Isa, kAvx512Isa, kIsaCount };

// The build that every processor of the target runs.
#ifdef __i386__
inline constexpr Isa kPlainestIsa = kX87Isa;
#else
inline constexpr Isa kPlainestIsa = kSse2Isa;
#endif

struct CpuidRegisters {
    uint32_t eax, ebx, ecx, edx;
};

// The ways to ask the processor; tests replace them.
struct CpuReader {
    bool (*hasCpuid)();
    CpuidRegisters (*cpuid)(uint32_t leaf, uint32_t subleaf);
    uint64_t (*extendedControl)();  // XCR0, by XGETBV
    uint32_t (*mxcsrMask)();        // MXCSR_MASK of the FXSAVE area
};

extern CpuReader cpuReader;

// Whether processor and operating system run code of an ISA build; decided by features, never by vendor.
bool supportsIsa(Isa isa);

// The build that px is tuned to, of x87, sse2, avx2 and avx512: the best that the machine runs, none above
// `limit`.
Isa bestIsa(Isa limit = kAvx512Isa);

// CPUID and its feature bit of SSE.
bool hasSse();

}  // namespace zpp
