#include <climits>

#include "tests/support/binding.h"
#include "tests/support/rounded.h"
#include "tests/support/table.h"
#include "zpp/arith.h"

namespace zpp::test {
namespace {

class Roots : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Roots);

Warned<double> root(double x) {
    if (x >= 0) return squareRoot(x);
    return {kNan, zppStatusSqrtNegative};
}

Zpp64fc square(Zpp64fc z) {
    return {product(sum(z.re, z.im), difference(z.re, z.im)), product(product(z.re, z.im), 2)};
}

// As it is written down, step by step.
Zpp64fc complexRoot(Zpp64fc z) {
    const double a = product(z.re, 0.5), b = product(z.im, 0.5);
    const double r = squareRoot(sum(product(a, a), product(b, b)));
    if (a < 0) {
        const double t = squareRoot(difference(r, a)), turned = b < 0 ? -t : t;
        return {quotient(b, turned), turned};
    }
    if (a == 0) {
        const double s = squareRoot(b < 0 ? -b : b);
        return {s, b < 0 ? -s : s};
    }
    const double s = squareRoot(sum(a, r));
    return {s, quotient(b, s)};
}

TEST_P(Roots, AreRoundedStepByStep) {
    unary("Abs_32s", zppsAbs_32s, zppsAbs_32s_I,
          [](Zpp32s x) { return x == INT_MIN ? INT_MAX : std::abs(x); });
    unary("Abs_64f", zppsAbs_64f, zppsAbs_64f_I, [](double x) { return std::fabs(x); });
    unary("Sqr_64f", zppsSqr_64f, zppsSqr_64f_I, [](double x) { return product(x, x); });
    unary("Sqr_64fc", zppsSqr_64fc, zppsSqr_64fc_I, square);
    unary("Sqrt_64f", zppsSqrt_64f, zppsSqrt_64f_I, root);
    unary("Sqrt_64fc", zppsSqrt_64fc, zppsSqrt_64fc_I, complexRoot);
}

// As they come out by hand: signs of zero, and vectors in which all and in which some elements are special.
TEST_P(Roots, OfAFewComplexNumbers) {
    const struct {
        Zpp64fc z, root;
    } cases[] = {
        {{-4, 0.0}, {0.0, 2}},    {{-4, -0.0}, {-0.0, 2}}, {{0, -8}, {2, -2}},          {{3, 4}, {2, 1}},
        {{0.0, 0.0}, {0.0, 0.0}}, {{-0.0, 8}, {2, 2}},     {{0.0, -0.0}, {-0.0, -0.0}}, {{-3, -4}, {1, -2}},
        {{kNan, 1}, {kNan, kNan}}};
    for (const auto& c : cases) {
        const std::vector<Zpp64fc> sources(9, c.z);
        std::vector<Zpp64fc> roots(9);
        ASSERT_EQ(zppsSqrt_64fc(sources.data(), roots.data(), 9), zppStatusOk);
        for (const Zpp64fc& root : roots)
            EXPECT_TRUE(same(c.root, root)) << shown(c.z) << ": " << shown(root);
    }
}

class Shifts : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Shifts);

TEST_P(Shifts, LeaveOrEnterAtTheEnds) {
    const std::vector<int> counts = {0, 1, 7, 30, 31, 32, INT_MAX};
    withConstant(
        "LShiftC_32s", zppsLShiftC_32s, zppsLShiftC_32s_I,
        [](Zpp32s x, int val) { return val > 31 ? 0 : static_cast<Zpp32s>(std::uint32_t(x) << val); },
        counts);
    withConstant(
        "RShiftC_32s", zppsRShiftC_32s, zppsRShiftC_32s_I,
        [](Zpp32s x, int val) {
            return static_cast<Zpp32s>(std::floor(std::ldexp(static_cast<double>(x), -std::min(val, 40))));
        },
        counts);
}

}  // namespace
}  // namespace zpp::test
