#include "tests/stats/in_order.h"
#include "tests/support/binding.h"
#include "tests/support/table.h"
#include "zpp.h"

namespace zpp::test {
namespace {

class Norms : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Norms);

double magnitude(double x) { return std::fabs(x); }
double magnitude(Zpp64fc x) { return squareRoot(sum(product(x.re, x.re), product(x.im, x.im))); }
double squares(double x) { return product(x, x); }
Zpp64fc squares(Zpp64fc x) { return {product(x.re, x.re), product(x.im, x.im)}; }

// The norms of the elements that `of` makes of those of one vector or two.
template <class Of>
auto largest(Of of) {
    return [=](const auto& first, const auto&... others) {
        double most = 0;
        for (std::size_t i = 0; i < first.size(); ++i)
            if (const double x = magnitude(of(first[i], others[i]...)); x > most) most = x;
        return most;
    };
}
template <class Of>
auto l1(Of of) {
    return [=](const auto&... vectors) {
        return sumInOrder([=](auto... x) { return magnitude(of(x...)); }, vectors...);
    };
}
template <class Of>
auto l2(Of of) {
    return [=](const auto&... vectors) {
        return squareRoot(ofParts(sumInOrder([=](auto... x) { return squares(of(x...)); }, vectors...)));
    };
}

TEST_P(Norms, OfOneVector) {
    const auto element = [](auto x) { return widened(x); };
    reduction("Norm_Inf_64f", zppsNorm_Inf_64f, largest(element));
    reduction("Norm_L1_64f", zppsNorm_L1_64f, l1(element));
    reduction("Norm_L2_64f", zppsNorm_L2_64f, l2(element));
    reduction("Norm_Inf_64fc64f", zppsNorm_Inf_64fc64f, largest(element));
    reduction("Norm_L1_64fc64f", zppsNorm_L1_64fc64f, l1(element));
    reduction("Norm_L2_64fc64f", zppsNorm_L2_64fc64f, l2(element));
    reduction("Norm_L1_32fc64f", zppsNorm_L1_32fc64f, l1(element));
    reduction("Norm_L2_32fc64f", zppsNorm_L2_32fc64f, l2(element));
}

TEST_P(Norms, OfADifference) {
    const auto apart = [](auto x, auto y) { return difference(widened(x), widened(y)); };
    reduction("NormDiff_Inf_64f", zppsNormDiff_Inf_64f, largest(apart));
    reduction("NormDiff_L1_64f", zppsNormDiff_L1_64f, l1(apart));
    reduction("NormDiff_L2_64f", zppsNormDiff_L2_64f, l2(apart));
    reduction("NormDiff_Inf_64fc64f", zppsNormDiff_Inf_64fc64f, largest(apart));
    reduction("NormDiff_L1_64fc64f", zppsNormDiff_L1_64fc64f, l1(apart));
    reduction("NormDiff_L2_64fc64f", zppsNormDiff_L2_64fc64f, l2(apart));
    reduction("NormDiff_L1_32fc64f", zppsNormDiff_L1_32fc64f, l1(apart));
    reduction("NormDiff_L2_32fc64f", zppsNormDiff_L2_32fc64f, l2(apart));
}

// As they are written by hand.
TEST_P(Norms, OfAFewNumbers) {
    const double real[] = {3, kNan, -4};
    const Zpp64fc complex[] = {{3, 4}, {0, -6}, {kNan, 9}};
    double norm;
    EXPECT_EQ(zppsNorm_Inf_64f(real, 3, &norm), zppStatusOk);
    EXPECT_EQ(norm, 4);
    EXPECT_EQ(zppsNorm_Inf_64f(real + 1, 1, &norm), zppStatusOk);
    EXPECT_TRUE(same(norm, 0.0));
    EXPECT_EQ(zppsNorm_Inf_64fc64f(complex, 3, &norm), zppStatusOk);
    EXPECT_EQ(norm, 6);
    EXPECT_EQ(zppsNorm_L1_64fc64f(complex, 2, &norm), zppStatusOk);
    EXPECT_EQ(norm, 11);
    EXPECT_EQ(zppsNormDiff_L2_64fc64f(complex, complex + 1, 1, &norm), zppStatusOk);
    EXPECT_EQ(norm, std::sqrt(109.0));
}

}  // namespace
}  // namespace zpp::test
