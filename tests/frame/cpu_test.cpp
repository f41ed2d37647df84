#include "frame/cpu.h"

#include <gtest/gtest.h>

#include "tests/support/processor.h"
#include "zpp/frame.h"

namespace zpp::test {
namespace {

constexpr CpuidRegisters kVaren = {7, 0x756E6547, 0x6E657261,
                                   0x56656E69};  // "Genu" "ineV" "aren" in ebx, edx, ecx
constexpr CpuidRegisters kOther = {7, 0x68747541, 0x444D4163, 0x69746E65};

constexpr std::uint32_t kMmx = 1u << 23, kSse = 1u << 25, kSse2 = 1u << 26, kHt = 1u << 28;
constexpr std::uint32_t kSse3 = 1, kTwoLogical = 2u << 16;

CpuidRegisters leaf1(std::uint32_t family, std::uint32_t edx, std::uint32_t ecx = 0, std::uint32_t ebx = 0) {
    return {family << 8 | 0x21, ebx, ecx, edx};
}

TEST(Cpu, ClassifiesProcessors) {
    const struct {
        const char* what;
        CpuidRegisters leaf0, leaf1;
        ZppCpuType expected;
    } cases[] = {
        {"another vendor", kOther, leaf1(15, kMmx | kSse | kSse2), zppCpuUnknown},
        {"family 4", kVaren, leaf1(4, 0), zppCpuUnknown},
        {"family 8", kVaren, leaf1(8, kMmx | kSse | kSse2), zppCpuUnknown},
        {"family 5", kVaren, leaf1(5, 0), zppCpuFamily5},
        {"family 5, MMX", kVaren, leaf1(5, kMmx), zppCpuFamily5Mmx},
        {"family 5, SSE2 plays no part", kVaren, leaf1(5, kMmx | kSse | kSse2), zppCpuFamily5Mmx},
        {"family 6", kVaren, leaf1(6, 0), zppCpuFamily6},
        {"family 6, MMX", kVaren, leaf1(6, kMmx), zppCpuFamily6Mmx},
        {"family 6, SSE", kVaren, leaf1(6, kMmx | kSse), zppCpuFamily6Sse},
        {"family 6, SSE without MMX", kVaren, leaf1(6, kSse), zppCpuFamily6Sse},
        {"family 6, SSE2", kVaren, leaf1(6, kMmx | kSse | kSse2, kSse3), zppCpuFamily6Sse2},
        {"family 7", kVaren, leaf1(7, 0), zppCpuFamily7},
        {"family 15", kVaren, leaf1(15, kMmx | kSse), zppCpuFamily15WithoutSse2},
        {"family 15, SSE2", kVaren, leaf1(15, kSse2), zppCpuFamily15Sse2},
        {"family 15, hyper-threading", kVaren, leaf1(15, kSse2 | kHt, 0, kTwoLogical), zppCpuFamily15Sse2Ht},
        {"family 15, one logical processor", kVaren, leaf1(15, kSse2 | kHt, 0, 1u << 16), zppCpuFamily15Sse2},
        {"family 15, no HT bit", kVaren, leaf1(15, kSse2, 0, kTwoLogical), zppCpuFamily15Sse2},
        {"family 15, SSE3 and HT", kVaren, leaf1(15, kSse2 | kHt, kSse3, kTwoLogical), zppCpuFamily15Sse3},
    };
    for (const auto& c : cases) {
        Processor processor{.leaves = {{0, c.leaf0}, {1, c.leaf1}}};
        const ReplacedProcessor replaced(processor);
        EXPECT_EQ(zppGetCpuType(), c.expected) << c.what;
    }
    // The extended family does not count.
    Processor extended{.leaves = {{0, kVaren}, {1, {0x00A00F11, 0, 0, kSse2}}}};
    const ReplacedProcessor replaced(extended);
    EXPECT_EQ(zppGetCpuType(), zppCpuFamily15Sse2);
}

TEST(Cpu, NeedsCpuidToBeKnown) {
    Processor processor{.hasCpuid = false, .leaves = {{0, kVaren}, {1, leaf1(15, kSse2)}}};
    const ReplacedProcessor replaced(processor);
    EXPECT_EQ(zppGetCpuType(), zppCpuUnknown);
    EXPECT_FALSE(hasSse());
}

TEST(Cpu, TunesPxByFeaturesAndOperatingSystem) {
    constexpr std::uint32_t kSse2Edx = kMmx | kSse | kSse2;
    constexpr std::uint32_t kAvxEcx = 1u << 12 | 1u << 20 | 1u << 23 | 1u << 27 | 1u << 28 | 1u << 29;
    constexpr std::uint32_t kAvx2Ebx = 1u << 5 | 1u << 8;
    constexpr std::uint32_t kAvx512Ebx = kAvx2Ebx | 1u << 16 | 1u << 17 | 1u << 30 | 1u << 31;
    const struct {
        const char* what;
        std::uint32_t edx, ecx, leaf7Ebx;
        std::uint64_t state;
        Isa expected;
    } cases[] = {
        {"MMX alone", kMmx, 0, 0, 0, kX87Isa},
        {"SSE alone: a6 is not px", kMmx | kSse, 0, 0, 0, kX87Isa},
        {"SSE2", kSse2Edx, 0, 0, 0, kSse2Isa},
        {"AVX2", kSse2Edx, kAvxEcx, kAvx2Ebx, 0x7, kAvx2Isa},
        {"AVX2, state not saved", kSse2Edx, kAvxEcx, kAvx2Ebx, 0x3, kSse2Isa},
        {"AVX2, XGETBV not enabled", kSse2Edx, kAvxEcx & ~(1u << 27), kAvx2Ebx, 0x7, kSse2Isa},
        {"AVX2 without FMA", kSse2Edx, kAvxEcx & ~(1u << 12), kAvx2Ebx, 0x7, kSse2Isa},
        {"AVX2 without F16C", kSse2Edx, kAvxEcx & ~(1u << 29), kAvx2Ebx, 0x7, kSse2Isa},
        {"AVX2 without BMI2", kSse2Edx, kAvxEcx, 1u << 5, 0x7, kSse2Isa},
        {"AVX alone", kSse2Edx, kAvxEcx, 0, 0x7, kSse2Isa},
        {"AVX-512", kSse2Edx, kAvxEcx, kAvx512Ebx, 0xE7, kAvx512Isa},
        {"AVX-512, its state not saved", kSse2Edx, kAvxEcx, kAvx512Ebx, 0x7, kAvx2Isa},
        {"AVX-512, its upper registers not saved", kSse2Edx, kAvxEcx, kAvx512Ebx, 0x67, kAvx2Isa},
        {"AVX-512 without BW", kSse2Edx, kAvxEcx, kAvx512Ebx & ~(1u << 30), 0xE7, kAvx2Isa},
        {"AVX-512 without VL", kSse2Edx, kAvxEcx, kAvx512Ebx & ~(1u << 31), 0xE7, kAvx2Isa},
    };
    for (const auto& c : cases)
        for (const CpuidRegisters vendor : {kVaren, kOther}) {  // the vendor plays no part
            Processor processor{
                .leaves = {{0, vendor}, {1, leaf1(6, c.edx, c.ecx)}, {7, {0, c.leaf7Ebx, 0, 0}}},
                .extendedControl = c.state};
            const ReplacedProcessor replaced(processor);
            EXPECT_EQ(bestIsa(), c.expected) << c.what;
        }
}

TEST(Cpu, DoesNotReadLeavesThatAreNotThere) {
    CpuidRegisters short0 = kOther;
    short0.eax = 2;  // leaf 7 of such a processor is undefined
    Processor processor{.leaves = {{0, short0}, {1, leaf1(6, kSse | kSse2, ~0u)}, {7, {0, ~0u, 0, 0}}},
                        .extendedControl = 0xE7};
    const ReplacedProcessor replaced(processor);
    EXPECT_EQ(bestIsa(), kSse2Isa);
}

TEST(Cpu, ReadsThisProcessor) {
    EXPECT_TRUE(cpuReader.hasCpuid());
    EXPECT_NE(cpuReader.cpuid(0, 0).eax, 0u);
    if (!hasSse()) GTEST_SKIP() << "no SSE: its control register's mask was not read";
    EXPECT_EQ(cpuReader.mxcsrMask() & 0x1FBFu, 0x1FBFu);  // the bits that every SSE unit has
}

}  // namespace
}  // namespace zpp::test
