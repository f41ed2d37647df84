// What the caller's floating-point environment does to the elementary functions: nothing; and what a call
// does to it.
#include <algorithm>
#include <cstring>

#include "frame/cpu.h"
#include "frame/vm_hook.h"
#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/draws.h"
#include "tests/support/x87.h"
#include "tests/vm/elementary.h"
#include "zpp/vm.h"

namespace zpp::test {
namespace {

// Settings and exception flags of both units.
struct Units {
    std::uint16_t control = 0x37F;
    std::uint32_t mxcsr = 0x1F80;
    std::uint16_t flags = 0;  // of the x87 unit

    static Units current() {
        Units units;
        units.control = x87ControlWord();
        __asm__ volatile("fnstsw %0" : "=m"(units.flags));
        units.flags &= 0x3F;
        if (hasSse()) __asm__ volatile("stmxcsr %0" : "=m"(units.mxcsr));
        return units;
    }
    void load() const {
        std::uint32_t environment[7];
        __asm__ volatile("fnstenv %0" : "=m"(environment));
        environment[0] = control;
        environment[1] = (environment[1] & ~0x3Fu) | flags;
        __asm__ volatile("fldenv %0" : : "m"(environment));
        if (hasSse()) __asm__ volatile("ldmxcsr %0" : : "m"(mxcsr));
    }
};

constexpr std::uint32_t kSseFlags = 0x3F;

// What the caller has, and of what the call may have raised more flags.
testing::AssertionResult restored(const Units& before, const Units& after) {
    const bool sse = !hasSse() || ((before.mxcsr & ~kSseFlags) == (after.mxcsr & ~kSseFlags) &&
                                   (before.mxcsr & ~after.mxcsr) == 0);
    if (sse && before.control == after.control && (before.flags & ~after.flags) == 0)
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << std::hex << "x87 " << before.control << " to " << after.control << ", flags " << before.flags
           << " to " << after.flags << ", MXCSR " << before.mxcsr << " to " << after.mxcsr;
}

class VmEnvironment : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(VmEnvironment);

TEST_P(VmEnvironment, ChangesNoResultAndComesBack) {
    // Rounding up, down, to zero and flushing; 24 and 53 bits in the x87 unit; flags raised; no exception
    // masked.
    const std::uint16_t narrow = loadsAreExact() ? 0x007F : 0x027F;  // an emulated unit rounds what is loaded
    const Units callers[] = {
        {0x0B7F, 0x5F80}, {0x077F, 0x3F80}, {0x0F7F, 0xFF80}, {narrow, 0x9F80}, {0x027F, 0x1F80 | 0x3D, 0x3D},
        {0x0340, 0x0000}};
    const Units ours = Units::current();
    for (const Elementary& f : elementaryFunctions()) {
        Random random;
        ElementaryArguments arguments = drawArguments(f, 150, random);
        for (const Units& caller : callers) {
            const bool traps = (caller.mxcsr & 0x1F80) == 0;
            if (traps)  // ordinary ones only
                for (double& x : arguments.x) x = std::clamp(std::fabs(x), 0.25, 0.75);
            const int n = static_cast<int>(arguments.x.size());
            std::vector<double> expected(arguments.x.size()), results(arguments.x.size());
            f.call(arguments.x.data(), arguments.y.data(), expected.data(), n);
            caller.load();
            f.call(arguments.x.data(), arguments.y.data(), results.data(), n);
            const Units after = Units::current();
            ours.load();
            EXPECT_TRUE(restored(caller, after)) << f.name;
            EXPECT_TRUE(std::memcmp(results.data(), expected.data(), results.size() * sizeof(double)) == 0)
                << f.name << " with " << caller.mxcsr;
        }
    }
}

// What the hook was told.
struct Report {
    ZppStatus warning;
    int index;
    const double *src1, *src2;
    double *dst1, *dst2;
    std::string name;
    bool operator==(const Report&) const = default;
};
std::vector<Report> reports;
std::function<void()> atReport;

TEST_P(VmEnvironment, HookIsToldOfEachElementThatRaisesAWarning) {
    std::vector<double> x(140, 1.0), y(140), z(140);
    for (const std::size_t i : {std::size_t{3}, std::size_t{63}, std::size_t{64}, std::size_t{139}})
        x[i] = kInf;
    reports.clear();
    EXPECT_EQ(zppsSinCos_64f_A53(x.data(), y.data(), z.data(), 140), zppStatusDomain);
    std::vector<Report> expected;
    for (const int i : {3, 63, 64, 139})
        expected.push_back({zppStatusDomain, i, x.data(), x.data(), y.data(), z.data(), "dSinCos_HA"});
    EXPECT_EQ(reports, expected);

    reports.clear();
    x[3] = 800, x[64] = -800, x[63] = x[139] = 0;
    EXPECT_EQ(zppsExp_64f_A53(x.data(), y.data(), 140), zppStatusUnderflow);
    expected = {{zppStatusOverflow, 3, x.data(), x.data(), y.data(), y.data(), "dExp_HA"},
                {zppStatusUnderflow, 64, x.data(), x.data(), y.data(), y.data(), "dExp_HA"}};
    EXPECT_EQ(reports, expected);
}

// Whatever it does in the unit that the build computes with: the results behind it and the caller's state are
// those of a hook that does nothing.
TEST_P(VmEnvironment, IsKeptAroundTheHook) {
    std::vector<double> x(140, 0.75), expected(140), results(140);
    x[5] = 800;
    zppsExp_64f_A53(x.data(), expected.data(), 140);
    const bool x87 = GetParam().isaName() == "x87" || GetParam().isaName() == "sse";
    atReport = [=] { (x87 ? Units{0x0F7F, 0x1F80 | 0x21, 0} : Units{0x037F, 0x7F80, 0x21}).load(); };
    const Units ours = Units::current(), raised = {0x37F, 0x1F80 | 0x21, 0x21};
    raised.load();
    zppsExp_64f_A53(x.data(), results.data(), 140);
    const Units after = Units::current();
    ours.load();
    atReport = nullptr;
    EXPECT_TRUE(restored(raised, after));
    EXPECT_EQ(results, expected);
}

}  // namespace
}  // namespace zpp::test

// The library's calls of zpp::vmErrorHook: the linker sends them here.
extern "C" void __wrap__ZN3zpp11vmErrorHookEiiPKdS1_PdS2_PKc(ZppStatus warning, int index, const Zpp64f* src1,
                                                             const Zpp64f* src2, Zpp64f* dst1, Zpp64f* dst2,
                                                             const char* name);
extern "C" void __wrap__ZN3zpp11vmErrorHookEiiPKdS1_PdS2_PKc(ZppStatus warning, int index, const Zpp64f* src1,
                                                             const Zpp64f* src2, Zpp64f* dst1, Zpp64f* dst2,
                                                             const char* name) {
    zpp::test::reports.push_back({warning, index, src1, src2, dst1, dst2, name});
    if (zpp::test::atReport) zpp::test::atReport();
}
