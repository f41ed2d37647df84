#include <quadmath.h>

#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/draws.h"
#include "tests/support/rounded.h"
#include "zpp/stats.h"

namespace zpp::test {
namespace {

class SumsOfLogarithms : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(SumsOfLogarithms);

// With subnormal numbers among them, next to 1, where sums cancel, and as many as products are normalised
// for.
TEST_P(SumsOfLogarithms, AreWithinTheirBound) {
    Random random;
    const auto expect = [&](auto f, auto draw, int len) {
        using S = decltype(draw());
        std::vector<S> x(static_cast<std::size_t>(len));
        Wide exact = 0;
        for (S& v : x) v = static_cast<S>(draw()), exact += logq(Wide{v});
        double sum;
        ASSERT_EQ(f(x.data(), len, &sum), zppStatusOk);
        const double ulp = std::ldexp(1, std::ilogb(static_cast<double>(exact)) - 52);
        EXPECT_LE(std::fabs(static_cast<double>(Wide{sum} - exact)), 0x1p-53 * (len + 8) + 2 * ulp) << len;
    };
    for (const int len : {1, 2, 15, 16, 17, 63, 64, 65, 500, 8192, 20011}) {
        expect(
            zppsSumLn_64f, [&] { return 0x1p-1074 + std::fabs(drawn<double>(random, Draw::kLong)); }, len);
        expect(
            zppsSumLn_64f, [&] { return 0x1p-1074 + std::fabs(drawn<double>(random, Draw::kLimits)); }, len);
        expect(
            zppsSumLn_64f, [&] { return random.uniform(.999, 1.001); }, len);
        expect(
            zppsSumLn_64f, [&] { return random.uniform(1.9, 2); }, len);
        expect(
            zppsSumLn_32f64f, [&] { return 0x1p-149F + std::fabs(drawn<float>(random, Draw::kLong)); }, len);
    }
}

TEST_P(SumsOfLogarithms, OfSpecialElements) {
    const struct {
        double x, y, sum;
        ZppStatus status = zppStatusOk;
    } cases[] = {{-1, 2, kNan, zppStatusLnNegativeArg},
                 {0, -2, kNan, zppStatusLnNegativeArg},
                 {-kInf, 0, kNan, zppStatusLnNegativeArg},
                 {-0.0, 2, -kInf, zppStatusLnZeroArg},
                 {0, kInf, kNan, zppStatusLnZeroArg},
                 {kInf, 2, kInf},
                 {kNan, 2, kNan},
                 {1, 1, 0}};
    for (const auto& c : cases)
        for (const int len : {2, 64, 200}) {
            std::vector<double> x(static_cast<std::size_t>(len), 1);
            x[0] = c.x, x[x.size() - 1] = c.y;
            const std::vector<float> singles(x.begin(), x.end());
            double sum, ofSingles;
            EXPECT_EQ(zppsSumLn_64f(x.data(), len, &sum), c.status) << c.x << ' ' << c.y;
            EXPECT_EQ(zppsSumLn_32f64f(singles.data(), len, &ofSingles), c.status);
            EXPECT_TRUE(same(sum, c.sum)) << c.x << ' ' << c.y;
            EXPECT_TRUE(same(sum, ofSingles));
        }
}

}  // namespace
}  // namespace zpp::test
