#include "frame/cpu.h"

#include <cpuid.h>
#include <string.h>

#include "frame/shared.h"

namespace zpp {
namespace {

bool readHasCpuid() {
#ifdef __i386__
    constexpr uint32_t kIdFlag = 0x200000;
    uint32_t before, after;
    __asm__ volatile(
        "pushfl\n\t"
        "popl %0\n\t"
        "movl %0, %1\n\t"
        "xorl %2, %1\n\t"
        "pushl %1\n\t"
        "popfl\n\t"
        "pushfl\n\t"
        "popl %1\n\t"
        "pushl %0\n\t"
        "popfl"
        : "=&r"(before), "=&r"(after)
        : "i"(kIdFlag)
        : "cc");
    return ((before ^ after) & kIdFlag) != 0;
#else
    return true;
#endif
}

CpuidRegisters readCpuid(uint32_t leaf, uint32_t subleaf) {
    CpuidRegisters r;
    __cpuid_count(leaf, subleaf, r.eax, r.ebx, r.ecx, r.edx);
    return r;
}

uint64_t readExtendedControl() {
    uint32_t low, high;
    __asm__ volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    return static_cast<uint64_t>(high) << 32 | low;
}

uint32_t readMxcsrMask() {
    struct alignas(16) {
        uint8_t bytes[512];
    } area = {};
    __asm__ volatile("fxsave %0" : "+m"(area));
    uint32_t mask;
    memcpy(&mask, area.bytes + 28, sizeof mask);
    return mask;
}

constexpr uint32_t bit(int n) { return uint32_t{1} << n; }

bool hasAll(uint32_t word, uint32_t bits) { return (word & bits) == bits; }

constexpr uint32_t kMmxEdx = bit(23), kSseEdx = bit(25), kSse2Edx = bit(26);
constexpr uint32_t kSse3Ecx = bit(0), kHyperThreadingEdx = bit(28);

// What the AVX builds may use, by the flags in cmake/Isa.cmake.
constexpr uint32_t kFma = bit(12), kSse42 = bit(20), kPopcnt = bit(23), kOsxsave = bit(27), kAvx = bit(28),
                   kF16c = bit(29);
constexpr uint32_t kAvx2Leaf1Ecx = kFma | kSse42 | kPopcnt | kOsxsave | kAvx | kF16c;
constexpr uint32_t kAvx2 = bit(5), kBmi2 = bit(8);
constexpr uint32_t kAvx2Leaf7Ebx = kAvx2 | kBmi2;
constexpr uint32_t kAvx512F = bit(16), kAvx512Dq = bit(17), kAvx512Bw = bit(30), kAvx512Vl = bit(31);
constexpr uint32_t kAvx512Leaf7Ebx = kAvx512F | kAvx512Dq | kAvx512Bw | kAvx512Vl;

// What the operating system must keep for them, in XCR0: the registers XMM and YMM; the masks, the upper
// halves of ZMM 0 to 15, and ZMM 16 to 31.
constexpr uint64_t kYmmState = 0x02 | 0x04;
constexpr uint64_t kZmmState = kYmmState | 0x20 | 0x40 | 0x80;

bool supportsAvx(uint32_t leaf7Ebx, uint64_t state) {
    if (cpuReader.cpuid(0, 0).eax < 7) return false;
    if (!hasAll(cpuReader.cpuid(1, 0).ecx, kAvx2Leaf1Ecx)) return false;
    if ((cpuReader.extendedControl() & state) != state) return false;
    return hasAll(cpuReader.cpuid(7, 0).ebx, leaf7Ebx);
}

}  // namespace

constinit CpuReader cpuReader = {readHasCpuid, readCpuid, readExtendedControl, readMxcsrMask};

bool supportsIsa(Isa isa) {
    if (isa <= kPlainestIsa) return isa == kPlainestIsa;  // below it nothing is built
    if (!hasSse()) return false;
    if (isa == kSseIsa) return true;
    if (!hasAll(cpuReader.cpuid(1, 0).edx, kSse2Edx)) return false;
    if (isa == kSse2Isa) return true;
    if (isa == kAvx2Isa) return supportsAvx(kAvx2Leaf7Ebx, kYmmState);
    return supportsAvx(kAvx2Leaf7Ebx | kAvx512Leaf7Ebx, kZmmState);
}

Isa bestIsa(Isa limit) {
    constexpr Isa fastestFirst[] = {kAvx512Isa, kAvx2Isa, kSse2Isa};
    for (const Isa isa : fastestFirst)
        if (isa <= limit && supportsIsa(isa)) return isa;
    return kPlainestIsa;
}

bool hasSse() { return cpuReader.hasCpuid() && hasAll(cpuReader.cpuid(1, 0).edx, kSseEdx); }

}  // namespace zpp

namespace zpp::shared {

ZppCpuType zppGetCpuType() {
    if (!cpuReader.hasCpuid()) return zppCpuUnknown;
    const CpuidRegisters vendor = cpuReader.cpuid(0, 0);
    char name[12];
    memcpy(name, &vendor.ebx, 4);
    memcpy(name + 4, &vendor.edx, 4);
    memcpy(name + 8, &vendor.ecx, 4);
    if (memcmp(name, "GenuineVaren", sizeof name) != 0) return zppCpuUnknown;

    const CpuidRegisters r = cpuReader.cpuid(1, 0);
    const bool mmx = hasAll(r.edx, kMmxEdx);
    const bool sse = hasAll(r.edx, kSseEdx);
    const bool sse2 = hasAll(r.edx, kSse2Edx);
    const bool hyperThreading = hasAll(r.edx, kHyperThreadingEdx) && (r.ebx >> 16 & 0xFF) > 1;
    switch (r.eax >> 8 & 0xF) {
        case 5:
            return mmx ? zppCpuFamily5Mmx : zppCpuFamily5;
        case 6:
            return sse2 ? zppCpuFamily6Sse2 : sse ? zppCpuFamily6Sse : mmx ? zppCpuFamily6Mmx : zppCpuFamily6;
        case 7:
            return zppCpuFamily7;
        case 15:
            if (!sse2) return zppCpuFamily15WithoutSse2;
            return hasAll(r.ecx, kSse3Ecx) ? zppCpuFamily15Sse3
                   : hyperThreading        ? zppCpuFamily15Sse2Ht
                                           : zppCpuFamily15Sse2;
        default:
            return zppCpuUnknown;
    }
}

}  // namespace zpp::shared
