#include <immintrin.h>

#include <thread>

#include "core/cpu.h"
#include "tests/support/binding.h"
#include "tests/support/processor.h"

namespace zpp::test {
namespace {

constexpr unsigned kDefault = 0x1F80, kFlush = 0x8000, kDenormals = 0x40, kUnderflowMask = 0x800;

// The caller's MXCSR comes back after each test.
class Control : public BoundTest {
  protected:
    void SetUp() override {
        BoundTest::SetUp();
        saved_ = _mm_getcsr();
    }
    void TearDown() override { _mm_setcsr(saved_); }

  private:
    unsigned saved_ = 0;
};
ZPP_FOR_ALL_BINDINGS(Control);

TEST_P(Control, FlushToZero) {
    constexpr unsigned kNoWord = 0xFFFFFFFF;
    const struct {
        const char* what;
        unsigned before;
        int value;
        Zpp32u word;  // kNoWord: a null pointer
        unsigned after;
        Zpp32u wordAfter;
    } cases[] = {
        {"on, masked", kDefault, 1, 7, kDefault | kFlush, 0x800},
        {"on, unmasked", kDefault & ~kUnderflowMask, 1, 7, kDefault | kFlush, 0},
        {"on, other masks stay", 0x0080, 1, 7, 0x0880 | kFlush, 0},
        {"any value but 0 is on", kDefault, -1, 7, kDefault | kFlush, 0x800},
        {"on, no word", kDefault & ~kUnderflowMask, 2, kNoWord, kDefault | kFlush, 0},
        {"off, was masked", kDefault | kFlush, 0, 0x800, kDefault, 0x800},
        {"off, was unmasked", kDefault | kFlush, 0, 0, kDefault & ~kUnderflowMask, 0},
        {"off, no word", kDefault | kFlush, 0, kNoWord, kDefault, 0},
        {"denormals-are-zero stays", kDefault | kDenormals, 1, 7, kDefault | kDenormals | kFlush, 0x800},
    };
    for (const auto& c : cases) {
        Zpp32u word = c.word;
        _mm_setcsr(c.before);
        EXPECT_EQ(zppSetFlushToZero(c.value, c.word == kNoWord ? nullptr : &word), zppStatusOk) << c.what;
        EXPECT_EQ(_mm_getcsr(), c.after) << c.what;
        if (c.word != kNoWord) {
            EXPECT_EQ(word, c.wordAfter) << c.what;
        }
    }
}

TEST_P(Control, DenormalsAreZeros) {
    _mm_setcsr(kDefault);
    EXPECT_EQ(zppSetDenormAreZeros(5), zppStatusOk);
    EXPECT_EQ(_mm_getcsr(), kDefault | kDenormals);
    volatile double tiny = 0x1p-1074;
    EXPECT_EQ(tiny * 0x1p1000, 0.0);
    EXPECT_EQ(zppSetDenormAreZeros(0), zppStatusOk);
    EXPECT_EQ(_mm_getcsr(), kDefault);
}

TEST_P(Control, ActsOnTheCallingThread) {
    _mm_setcsr(kDefault);
    std::thread([] { EXPECT_EQ(zppSetFlushToZero(1, nullptr), zppStatusOk); }).join();
    EXPECT_EQ(_mm_getcsr(), kDefault);
}

TEST_P(Control, RefusesWithoutTheFacility) {
    const CpuidRegisters sse = {0, 0, 0, 1u << 25};
    const struct {
        const char* what;
        Processor processor;
        bool flushes;
    } cases[] = {
        {"no CPUID", {.hasCpuid = false, .leaves = {{1, sse}}}, false},
        {"no SSE", {.leaves = {{1, {0, 0, 0, 1u << 23}}}}, false},
        {"no mask field", {.leaves = {{1, sse}}, .mxcsrMask = 0}, true},
        {"no denormals-are-zero", {.leaves = {{1, sse}}, .mxcsrMask = 0xFFBF}, true},
    };
    for (const auto& c : cases) {
        const ReplacedProcessor replaced(c.processor);
        _mm_setcsr(kDefault);
        EXPECT_EQ(zppSetDenormAreZeros(1), zppStatusCpuNotSupported) << c.what;
        EXPECT_EQ(_mm_getcsr(), kDefault) << c.what;
        Zpp32u word = 7;
        EXPECT_EQ(zppSetFlushToZero(1, &word), c.flushes ? zppStatusOk : zppStatusCpuNotSupported) << c.what;
        EXPECT_EQ(_mm_getcsr(), c.flushes ? kDefault | kFlush : kDefault) << c.what;
        EXPECT_EQ(word, c.flushes ? 0x800u : 7u) << c.what;
    }
}

TEST_P(Control, ClocksAdvance) {
    const Zpp64u before = zppGetCpuClocks();
    EXPECT_GT(zppGetCpuClocks(), before);
}

}  // namespace
}  // namespace zpp::test
