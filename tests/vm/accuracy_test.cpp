// Errors of the elementary functions, a short look; bench/ulp has a long one.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/columns.h"
#include "tests/vm/elementary.h"

namespace zpp::test {

void PrintTo(const Elementary& f, std::ostream* out) { *out << f.name; }

namespace {

class Elementaries : public testing::TestWithParam<Elementary> {};
INSTANTIATE_TEST_SUITE_P(All, Elementaries, testing::ValuesIn(elementaryFunctions()),
                         [](const auto& param) { return std::string(param.param.name); });

bool fuses(const Binding& binding) { return binding.isaName().starts_with("avx"); }

TEST_P(Elementaries, AreWithinTheirBoundOnEveryBuild) {
    const Elementary& f = GetParam();
    Random random;
    const ElementaryArguments arguments = drawArguments(f, 50000, random);
    const std::size_t n = arguments.x.size();
    std::vector<Wide> exact;
    for (std::size_t i = 0; i < n; ++i) exact.push_back(f.exact(Wide{arguments.x[i]}, Wide{arguments.y[i]}));
    std::vector<double> fused;
    for (const Binding& binding : runnableBindings()) {
        binding.bind();
        std::vector<double> results(n);
        f.call(arguments.x.data(), arguments.y.data(), results.data(), static_cast<int>(n));
        WorstError worst;
        for (std::size_t i = 0; i < n; ++i) worst.add(arguments.x[i], results[i], exact[i]);
        EXPECT_LE(worst.ulps, f.bound) << binding.name() << ", at " << worst.argument;
        if (!fuses(binding)) continue;
        if (fused.empty()) fused = results;
        EXPECT_EQ(std::memcmp(fused.data(), results.data(), n * sizeof(double)), 0)
            << binding.name() << " has other bits than the build below";
    }
}

}  // namespace
}  // namespace zpp::test
