#include "tests/support/binding.h"

namespace zpp::test {
namespace {

const char* nameOf(Column column) {
    constexpr const char* kNames[] = {"px", "a6", "w7"};
    return kNames[column];
}

const char* nameOf(Isa isa) {
    constexpr const char* kNames[] = {"x87", "sse", "sse2", "avx2", "avx512"};
    return kNames[isa];
}

}  // namespace

std::string Binding::name() const { return std::string(nameOf(column)) + "_" + nameOf(isa); }

void Binding::bind() const { ASSERT_TRUE(fillColumn(kDispatchTable, column, isa)); }

const std::vector<Binding>& allBindings() {
    static const std::vector<Binding> bindings = {
#ifdef __i386__
        {kPx, kX87Isa}, {kPx, kSse2Isa}, {kPx, kAvx2Isa}, {kPx, kAvx512Isa}, {kA6, kSseIsa}, {kW7, kSse2Isa},
#else
        {kPx, kSse2Isa}, {kPx, kAvx2Isa}, {kPx, kAvx512Isa}, {kA6, kSse2Isa}, {kW7, kSse2Isa},
#endif
    };
    return bindings;
}

const std::vector<Binding>& runnableBindings() {
    static const std::vector<Binding> bindings = [] {
        std::vector<Binding> runnable;
        for (const Binding& binding : allBindings())
            if (supportsIsa(binding.isa)) runnable.push_back(binding);
        return runnable;
    }();
    return bindings;
}

std::ostream& operator<<(std::ostream& out, const Binding& binding) { return out << binding.name(); }

std::string bindingName(const testing::TestParamInfo<Binding>& param) { return param.param.name(); }

namespace {

// Shows in every run which bindings its machine left out.
class Coverage : public testing::TestWithParam<Binding> {};

TEST_P(Coverage, MachineRunsTheBuild) {
    if (!supportsIsa(GetParam().isa))
        GTEST_SKIP() << "this machine cannot run " << GetParam() << ": no test has covered it here";
}

INSTANTIATE_TEST_SUITE_P(All, Coverage, testing::ValuesIn(allBindings()), zpp::test::bindingName);

}  // namespace
}  // namespace zpp::test
