#include "tests/support/binding.h"

namespace zpp::test {
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
