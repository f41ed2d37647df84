#include <climits>

#include "tests/stats/in_order.h"
#include "tests/support/binding.h"
#include "tests/support/exact.h"
#include "tests/support/table.h"
#include "zpp.h"

namespace zpp::test {
namespace {

class DotProducts : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(DotProducts);

constexpr auto inOrder = [](const auto& v, const auto& w) {
    return sumInOrder([](auto a, auto b) { return product(widened(a), widened(b)); }, v, w);
};

TEST_P(DotProducts, AreFormedInOneOrder) {
    reduction("DotProd_64f", zppsDotProd_64f, inOrder);
    reduction("DotProd_64fc", zppsDotProd_64fc, inOrder);
    reduction("DotProd_64f64fc", zppsDotProd_64f64fc, inOrder);
    reduction("DotProd_32f64f", zppsDotProd_32f64f, inOrder);
    reduction("DotProd_32fc64fc", zppsDotProd_32fc64fc, inOrder);
    reduction("DotProd_32f32fc64fc", zppsDotProd_32f32fc64fc, inOrder);
}

Zpp32s finished(int factor, double sum) { return rounded<Zpp32s>(scaled(sum, std::clamp(factor, -31, 93))); }
Zpp32sc finished(int factor, Zpp64fc sum) { return {finished(factor, sum.re), finished(factor, sum.im)}; }

TEST_P(DotProducts, OfIntegersAreScaled) {
    const auto oracle = [](int factor, const auto& v, const auto& w) {
        return finished(factor, inOrder(v, w));
    };
    const std::vector<int> factors = {INT_MIN, -32, -31, -30, -1, 0, 1, 20, 36, 62, 66, 93, INT_MAX};
    scaledReduction<Zpp32s, Zpp32s, Zpp32s>("DotProd_32s_Sfs", zppsDotProd_32s_Sfs, oracle, factors);
    scaledReduction<Zpp32sc, Zpp32sc, Zpp32sc>("DotProd_32sc_Sfs", zppsDotProd_32sc_Sfs, oracle, factors);
    scaledReduction<Zpp32sc, Zpp32s, Zpp32sc>("DotProd_32s32sc_Sfs", zppsDotProd_32s32sc_Sfs, oracle,
                                              factors);
}

// Steps of the rounding that drawn numbers do not meet, of a * b + c * 1, and of its negative.
TEST_P(DotProducts, OfIntegersRoundStepByStep) {
    const struct {
        Zpp32s a, b, c;
        int factor;
        Zpp32s expected;
    } cases[] = {{1, 3, 0, 1, 2},                   // 1.5
                 {1, 5, 0, 1, 2},                   // 2.5
                 {1, 5, 1, 2, 2},                   // 1.5, of a sum
                 {1 << 26, 1 << 26, 1, 53, 0},      // a half and 2^-53: the half added rounds to 1
                 {1 << 26, 1 << 26, 2, 53, 1},      // a half and 2^-52
                 {1 << 26, 1 << 26, -1, 53, 0},     // below a half
                 {INT_MAX, 2, 1, 1, INT_MAX},       // 2^31 - 1/2
                 {INT_MAX, 2, -1, 1, INT_MAX - 1},  // a tie below the limit
                 {1 << 16, 1 << 15, 0, 0, INT_MAX}};
    for (const auto& c : cases)
        for (const int sign : {1, -1}) {
            const Zpp32s v[] = {sign * c.a, sign * c.c}, w[] = {c.b, 1};
            const Zpp32s expected = sign > 0 ? c.expected : c.expected == INT_MAX ? INT_MIN : -c.expected;
            Zpp32s result = 77;
            EXPECT_EQ(zppsDotProd_32s_Sfs(v, w, 2, &result, c.factor), zppStatusOk);
            EXPECT_EQ(result, expected) << c.a << " * " << c.b << " + " << c.c << ", factor " << c.factor;
        }
}

}  // namespace
}  // namespace zpp::test
