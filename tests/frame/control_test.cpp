#include <immintrin.h>

#include <future>
#include <thread>

#include "frame/cpu.h"
#include "tests/support/binding.h"
#include "tests/support/processor.h"
#include "zpp/frame.h"

namespace zpp::test {
namespace {

unsigned mxcsr() {
    unsigned value;
    __asm__ volatile("stmxcsr %0" : "=m"(value));
    return value;
}
void setMxcsr(unsigned value) { __asm__ volatile("ldmxcsr %0" : : "m"(value)); }
[[gnu::target("sse")]] bool denormalsCount() {
    const volatile float tiny = 0x1p-149F;
    return _mm_cvtss_f32(_mm_mul_ss(_mm_set_ss(tiny), _mm_set_ss(0x1p100F))) != 0;
}

constexpr unsigned kDefault = 0x1F80, kFlush = 0x8000, kDenormals = 0x40, kUnderflowMask = 0x800,
                   kRounding = 0x6000;

// The caller's MXCSR comes back after each test.
class Control : public BoundTest {
  protected:
    void SetUp() override {
        BoundTest::SetUp();
        if (!hasSse()) GTEST_SKIP() << "no SSE, nothing to control; tests/load looks at the refusal";
        saved_ = mxcsr();
    }
    void TearDown() override {
        if (hasSse()) setMxcsr(saved_);
    }

  private:
    unsigned saved_ = kDefault;
};
ZPP_FOR_ALL_BINDINGS(Control);

// What the control register holds besides stays: the mode of the other setter, the rounding.
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
        {"on, no word", kDefault & ~kUnderflowMask, 2, kNoWord, kDefault | kFlush, kNoWord},
        {"off, was masked", kDefault | kFlush, 0, 0x800, kDefault, 0x800},
        {"off, was unmasked", kDefault | kFlush, 0, 0, kDefault & ~kUnderflowMask, 0},
        {"off, no word", kDefault | kFlush, 0, kNoWord, kDefault, kNoWord},
    };
    for (const auto& c : cases)
        for (const unsigned beside : {0u, kDenormals, kRounding}) {
            Zpp32u word = c.word;
            setMxcsr(c.before | beside);
            const ZppStatus status = zppSetFlushToZero(c.value, c.word == kNoWord ? nullptr : &word);
            const unsigned after = mxcsr();
            setMxcsr(kDefault);
            EXPECT_EQ(status, zppStatusOk) << c.what;
            EXPECT_EQ(after, c.after | beside) << c.what;
            EXPECT_EQ(word, c.wordAfter) << c.what;
        }
}

TEST_P(Control, DenormalsAreZeros) {
    for (const int value : {5, -1, 0})
        for (const unsigned beside : {0u, kFlush, kRounding})
            for (const unsigned before : {0u, kDenormals}) {
                setMxcsr(kDefault | beside | before);
                EXPECT_EQ(zppSetDenormAreZeros(value), zppStatusOk);
                EXPECT_EQ(mxcsr(), kDefault | beside | (value != 0 ? kDenormals : 0)) << beside;
                EXPECT_EQ(denormalsCount(), value == 0);
            }
}

// A thread begins with the control register of the one that starts it.
TEST_P(Control, ActsOnTheCallingThread) {
    const auto setBoth = [](int value) {
        return zppSetFlushToZero(value, nullptr) == zppStatusOk && zppSetDenormAreZeros(value) == zppStatusOk;
    };
    std::promise<void> started, set;
    setMxcsr(kDefault);
    std::thread other([&] {
        EXPECT_TRUE(setBoth(1));
        started.set_value();
        set.get_future().wait();
        EXPECT_EQ(mxcsr(), kDefault | kFlush | kDenormals);  // whatever the first thread has set since
    });
    started.get_future().wait();
    EXPECT_EQ(mxcsr(), kDefault);
    EXPECT_TRUE(setBoth(1) && setBoth(0));
    set.set_value();
    other.join();
    EXPECT_EQ(mxcsr(), kDefault);
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
        setMxcsr(kDefault);
        EXPECT_EQ(zppSetDenormAreZeros(1), zppStatusCpuNotSupported) << c.what;
        EXPECT_EQ(mxcsr(), kDefault) << c.what;
        Zpp32u word = 7;
        EXPECT_EQ(zppSetFlushToZero(1, &word), c.flushes ? zppStatusOk : zppStatusCpuNotSupported) << c.what;
        EXPECT_EQ(mxcsr(), c.flushes ? kDefault | kFlush : kDefault) << c.what;
        EXPECT_EQ(word, c.flushes ? 0x800u : 7u) << c.what;
    }
}

class Clocks : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Clocks);

TEST_P(Clocks, AreTheTimeStamp) {
    const Zpp64u before = __builtin_ia32_rdtsc(), clocks = zppGetCpuClocks(), after = __builtin_ia32_rdtsc();
    EXPECT_LE(before, clocks);
    EXPECT_LE(clocks, after);
    if (before >> 32 == 0) GTEST_SKIP() << "this processor has just started: the upper half was zero";
}

}  // namespace
}  // namespace zpp::test
