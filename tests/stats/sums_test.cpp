#include <climits>

#include "tests/stats/in_order.h"
#include "tests/support/binding.h"
#include "tests/support/columns.h"
#include "tests/support/exact.h"
#include "tests/support/table.h"
#include "zpp.h"

namespace zpp::test {
namespace {

class Sums : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Sums);

double meanOf(double sum, double n) { return quotient(sum, n); }
Zpp64fc meanOf(Zpp64fc sum, double n) { return {quotient(sum.re, n), quotient(sum.im, n)}; }

double deviationInOrder(const std::vector<double>& x) {
    const auto n = static_cast<double>(x.size());
    const double s1 = sumInOrder(x), s2 = sumInOrder([](double v) { return product(v, v); }, x);
    const double spread = difference(product(s2, n), product(s1, s1));
    return spread > 0 ? squareRoot(quotient(spread, product(n - 1, n))) : 0;
}

TEST_P(Sums, AreFormedInOneOrder) {
    const auto sums = [](const auto& v) { return sumInOrder(v); };
    const auto means = [](const auto& v) { return meanOf(sumInOrder(v), static_cast<double>(v.size())); };
    reduction("Sum_64f", zppsSum_64f, sums);
    reduction("Sum_64fc", zppsSum_64fc, sums);
    reduction("Mean_64f", zppsMean_64f, means);
    reduction("Mean_64fc", zppsMean_64fc, means);
    reduction("StdDev_64f", zppsStdDev_64f, deviationInOrder, 2);
}

TEST_P(Sums, AreExactOfIntegers) {
    const auto exact = [](int factor, const std::vector<Zpp32s>& v) {
        Exact sum = 0;
        for (const Zpp32s x : v) sum += x;
        return rounded<Zpp32s>(scaled(sum, factor));
    };
    const std::vector<int> factors = {INT_MIN, -63, -32, -31, -30, -1, 0, 1, 5, 31, 32, 40, 63, 64, INT_MAX};
    scaledReduction<Zpp32s, Zpp32s>("Sum_32s_Sfs", zppsSum_32s_Sfs, exact, factors);
}

// At every alignment, for vectors that are long enough for loads to be aligned, and within the bound of the
// header.
TEST_P(Sums, KeepTheirBitsAndTheirBound) {
    Random random;
    constexpr int n = 40007;
    std::vector<double> values(n);
    for (double& x : values) x = std::ldexp(random.uniform(), static_cast<int>(random.below(40)));
    const auto* const asPairs = reinterpret_cast<const Zpp64fc*>(values.data());
    const std::vector<Zpp64fc> pairs(asPairs, asPairs + n / 2);
    const double sum = sumInOrder(values), deviation = deviationInOrder(values);
    const double dot = sumInOrder([](double x) { return product(x, x); }, values);
    const Zpp64fc complexSum = sumInOrder(pairs);
    std::vector<double> buffer(n + 8), other(n + 8);
    for (std::size_t offset = 0; offset < 8; ++offset) {
        double* const src = buffer.data() + offset;
        double* const src2 = other.data() + 3 * offset % 8;
        std::copy(values.begin(), values.end(), src);
        std::copy(values.begin(), values.end(), src2);
        double result;
        Zpp64fc complex;
        EXPECT_TRUE(zppsSum_64f(src, n, &result) == zppStatusOk && same(sum, result)) << offset;
        EXPECT_TRUE(zppsStdDev_64f(src, n, &result) == zppStatusOk && same(deviation, result)) << offset;
        EXPECT_TRUE(zppsDotProd_64f(src, src2, n, &result) == zppStatusOk && same(dot, result)) << offset;
        zppsSum_64fc(reinterpret_cast<const Zpp64fc*>(src), n / 2, &complex);
        EXPECT_TRUE(same(complexSum, complex)) << offset;
    }
    Wide exact = 0, magnitudes = 0;
    for (const double x : values) {
        exact += x;
        magnitudes += std::fabs(x);
    }
    EXPECT_LE(std::fabs(static_cast<double>(sum - exact)),
              (n / 32.0 + 6) * 0x1p-53 * static_cast<double>(magnitudes));
}

TEST_P(Sums, DeviateAsTheFormulaDoes) {
    const struct {
        std::vector<double> values;
        double deviation;
    } cases[] = {{{1, 2, 3, 4}, std::sqrt(5.0 / 3)},
                 {{1, 1, 1}, 0},
                 {{1e8, 1e8 + 1}, 0},
                 {{1e200, 0}, 0},
                 {{1e200, -1e200}, kInf},
                 {{1.3, 1.3, 1.3}, 0},
                 {{kInf, 1}, 0},
                 {{1, kNan}, 0}};
    for (const auto& c : cases) {
        double deviation;
        ASSERT_EQ(zppsStdDev_64f(c.values.data(), static_cast<int>(c.values.size()), &deviation),
                  zppStatusOk);
        EXPECT_TRUE(same(c.deviation, deviation)) << shown(c.values[0]) << ": " << shown(deviation);
    }
}

}  // namespace
}  // namespace zpp::test
