#include "frame/cpu.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/processor.h"
#include "zpp/frame.h"

namespace zpp::test {
namespace {

constexpr CpuidRegisters kOther = {7, 0x68747541, 0x444D4163, 0x69746E65};

constexpr std::uint32_t kMmx = 1u << 23, kSse = 1u << 25, kSse2 = 1u << 26, kHt = 1u << 28;
constexpr std::uint32_t kSse3 = 1, kTwoLogical = 2u << 16;

CpuidRegisters leaf1(std::uint32_t family, std::uint32_t edx, std::uint32_t ecx = 0, std::uint32_t ebx = 0) {
    return {family << 8 | 0x21, ebx, ecx, edx};
}

TEST(Cpu, ClassifiesProcessors) {
    const struct {
        const char* what;
        CpuidRegisters leaf1;
        ZppCpuType expected;
    } cases[] = {
        {"family 4", leaf1(4, 0), zppCpuUnknown},
        {"family 8", leaf1(8, kMmx | kSse | kSse2), zppCpuUnknown},
        {"family 5", leaf1(5, 0), zppCpuFamily5},
        {"family 5, SSE2 plays no part", leaf1(5, kMmx | kSse | kSse2), zppCpuFamily5Mmx},
        {"family 6", leaf1(6, 0), zppCpuFamily6},
        {"family 6, MMX", leaf1(6, kMmx), zppCpuFamily6Mmx},
        {"family 6, SSE", leaf1(6, kMmx | kSse), zppCpuFamily6Sse},
        {"family 6, SSE without MMX", leaf1(6, kSse), zppCpuFamily6Sse},
        {"family 6, SSE2", leaf1(6, kMmx | kSse | kSse2, kSse3), zppCpuFamily6Sse2},
        {"family 7", leaf1(7, 0), zppCpuFamily7},
        {"family 15", leaf1(15, kMmx | kSse), zppCpuFamily15WithoutSse2},
        {"family 15, SSE2", leaf1(15, kSse2), zppCpuFamily15Sse2},
        {"family 15, hyper-threading", leaf1(15, kSse2 | kHt, 0, kTwoLogical), zppCpuFamily15Sse2Ht},
        {"family 15, one logical processor", leaf1(15, kSse2 | kHt, 0, 1u << 16), zppCpuFamily15Sse2},
        {"family 15, no HT bit", leaf1(15, kSse2, 0, kTwoLogical), zppCpuFamily15Sse2},
        {"family 15, SSE3 and HT", leaf1(15, kSse2 | kHt, kSse3, kTwoLogical), zppCpuFamily15Sse3},
        {"the extended family does not count", {0x00A00F11, 0, 0, kSse2}, zppCpuFamily15Sse2},
    };
    for (const auto& c : cases) {
        const ReplacedProcessor replaced({.leaves = {{0, kVaren}, {1, c.leaf1}}});
        EXPECT_EQ(zppGetCpuType(), c.expected) << c.what;
    }
}

TEST(Cpu, NeedsCpuidToBeKnown) {
    const ReplacedProcessor replaced(
        {.hasCpuid = false, .leaves = {{0, kVaren}, {1, leaf1(15, kSse | kSse2)}}});
    EXPECT_EQ(zppGetCpuType(), zppCpuUnknown);
    EXPECT_FALSE(hasSse());
}

TEST(Cpu, ComparesEveryLetterOfTheVendor) {
    for (const auto word : {&CpuidRegisters::ebx, &CpuidRegisters::edx, &CpuidRegisters::ecx})
        for (int letter = 0; letter < 4; ++letter) {
            CpuidRegisters other = kVaren;
            other.*word ^= 1u << 8 * letter;
            const ReplacedProcessor replaced({.leaves = {{0, other}, {1, leaf1(15, kSse2)}}});
            EXPECT_EQ(zppGetCpuType(), zppCpuUnknown) << letter;
        }
}

// A processor and a system that have all that the builds ask for, without one thing at a time: the build that
// asks for it is not taken.
TEST(Cpu, TunesPxByFeaturesAndOperatingSystem) {
    constexpr auto ecx = &CpuidRegisters::ecx, edx = &CpuidRegisters::edx, ebx = &CpuidRegisters::ebx;
    const struct {
        const char* what;
        std::uint32_t leaf;
        std::uint32_t CpuidRegisters::*word;
        std::uint32_t bit;
        Isa without;
    } features[] = {
        {"SSE", 1, edx, 25, kPlainestIsa},  {"SSE2", 1, edx, 26, kPlainestIsa},
        {"FMA", 1, ecx, 12, kSse2Isa},      {"SSE4.2", 1, ecx, 20, kSse2Isa},
        {"POPCNT", 1, ecx, 23, kSse2Isa},   {"OSXSAVE", 1, ecx, 27, kSse2Isa},
        {"AVX", 1, ecx, 28, kSse2Isa},      {"F16C", 1, ecx, 29, kSse2Isa},
        {"AVX2", 7, ebx, 5, kSse2Isa},      {"BMI2", 7, ebx, 8, kSse2Isa},
        {"AVX512F", 7, ebx, 16, kAvx2Isa},  {"AVX512DQ", 7, ebx, 17, kAvx2Isa},
        {"AVX512BW", 7, ebx, 30, kAvx2Isa}, {"AVX512VL", 7, ebx, 31, kAvx2Isa},
    };
    const struct {
        const char* what;
        std::uint64_t mask;
        Isa without;
    } states[] = {
        {"XMM", 0x02, kSse2Isa},   {"YMM", 0x04, kSse2Isa},    {"opmasks", 0x20, kAvx2Isa},
        {"ZMM 0", 0x40, kAvx2Isa}, {"ZMM 16", 0x80, kAvx2Isa},
    };
    for (const CpuidRegisters vendor : {kVaren, kOther}) {  // the vendor plays no part
        Processor all{.leaves = {{0, vendor}, {1, leaf1(6, 0)}, {7, {}}}, .extendedControl = 0xE7};
        for (const auto& f : features) all.leaves[f.leaf].*f.word |= 1u << f.bit;
        const auto expectBest = [](const Processor& processor, const char* what, Isa expected) {
            const ReplacedProcessor replaced(processor);
            EXPECT_EQ(bestIsa(), expected) << "without " << what;
            for (const Isa limit : {kX87Isa, kSse2Isa, kAvx2Isa})  // lowers, never raises
                EXPECT_EQ(bestIsa(limit), std::max(kPlainestIsa, std::min(expected, limit)))
                    << "without " << what;
        };
        expectBest(all, "nothing", kAvx512Isa);
        for (const auto& f : features) {
            Processor lacking = all;
            lacking.leaves[f.leaf].*f.word &= ~(1u << f.bit);
            expectBest(lacking, f.what, f.without);
        }
        for (const auto& state : states) {
            Processor lacking = all;
            lacking.extendedControl &= ~state.mask;
            expectBest(lacking, state.what, state.without);
        }
        all.leaves[0].eax = 2;  // leaf 7 of such a processor is undefined
        expectBest(all, "leaf 7", kSse2Isa);
    }
}

TEST(Cpu, ReadsThisProcessor) {
    EXPECT_TRUE(cpuReader.hasCpuid());
    EXPECT_NE(cpuReader.cpuid(0, 0).eax, 0u);
    if (!hasSse()) GTEST_SKIP() << "no SSE: its control register's mask was not read";
    EXPECT_EQ(cpuReader.mxcsrMask() & 0x1FBFu, 0x1FBFu);  // the bits that every SSE unit has
}

}  // namespace
}  // namespace zpp::test
