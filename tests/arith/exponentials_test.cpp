#include <quadmath.h>

#include <climits>
#include <numbers>
#include <span>

#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/draws.h"
#include "tests/support/rounded.h"
#include "zpp.h"

namespace zpp::test {
namespace {

class Exponentials : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Exponentials);

// The vector-math function's results, rounded where they are single, with the warning of the last element
// that has one.
template <class S, class D>
void expectExponentials(const char* name, ZppStatus (*f)(const S*, D*, int), double span) {
    Random random;
    for (const int len : {1, 3, 64, 515}) {
        const auto n = static_cast<std::size_t>(len);
        std::vector<S> x(n);
        for (S& v : x) v = static_cast<S>(random.uniform(-span, span));
        for (std::size_t i = 0; i < n; i += 7) x[i] = drawn<S>(random, Draw::kSpecial);
        const std::vector<double> arguments(x.begin(), x.end());
        std::vector<double> exact(n);
        zppsExp_64f_A53(arguments.data(), exact.data(), len);
        ZppStatus expected = zppStatusOk;
        for (std::size_t i = 0; i < n; ++i) {
            const D result = static_cast<D>(exact[i]);
            if (std::isfinite(x[i]) && std::isinf(result)) expected = zppStatusOverflow;
            if (std::isfinite(x[i]) && result == 0) expected = zppStatusUnderflow;
        }
        std::vector<D> results(n);
        EXPECT_EQ(f(x.data(), results.data(), len), expected) << name << " of " << len;
        for (std::size_t i = 0; i < n; ++i)
            ASSERT_TRUE(same(results[i], static_cast<D>(exact[i]))) << name << " of " << shown(x[i]);
    }
}

TEST_P(Exponentials, AreThoseOfVectorMathWithTheirOwnWarnings) {
    expectExponentials("Exp_64f", zppsExp_64f, 800);
    expectExponentials("Exp_32f64f", zppsExp_32f64f, 800);
    expectExponentials("Exp_64f32f", zppsExp_64f32f, 120);
    expectExponentials<double, double>(
        "Exp_64f_I",
        [](const double* x, double* y, int n) {
            std::copy(x, x + n, y);
            return zppsExp_64f_I(y, n);
        },
        800);
}

// Ordinary numbers; parts that are finite though e^re is not, or subnormal; angles of any size, and next to
// those where a part is 0; subnormal angles and numbers at whose sides half of the exponent is taken off.
TEST_P(Exponentials, OfComplexNumbersAreWithinTheirBound) {
    constexpr int n = 4000;
    Random random;
    std::vector<Zpp64fc> z(n), results(n);
    for (int kind = 0; kind < 7; ++kind) {
        for (Zpp64fc& v : z) {
            const double u = random.uniform();
            v = {random.uniform(-10, 10), 20 * u - 10};
            if (kind == 1) v = {random.uniform(-745, -680), 8 * u};
            if (kind == 2)
                v.re = random.uniform(700, 1440),
                v.im = std::ldexp(u, static_cast<int>((700 - v.re) * 1.4427));
            if (kind == 3) v.im = std::ldexp(u, static_cast<int>(random.below(1000)));
            if (kind == 4) v.im = std::numbers::pi / 2 * static_cast<double>(random.below(30000));
            if (kind == 5)
                v = {random.uniform(-660, 1440),
                     std::ldexp(u - .5, -900 - static_cast<int>(random.below(174)))};
            if (kind == 6)
                v = {random.uniform(590, 650) * (u < .5 ? -1 : 1),
                     std::ldexp(u, -static_cast<int>(random.below(600)))};
        }
        ASSERT_EQ(zppsExp_64fc(z.data(), results.data(), n), zppStatusOk);
        WorstError re, im;
        const auto add = [](WorstError& worst, double x, double result, Wide exact) {
            if (std::isinf(static_cast<double>(exact)))
                EXPECT_EQ(result, static_cast<double>(exact)) << x;
            else
                worst.add(x, result, exact);
        };
        for (std::size_t i = 0; i < n; ++i) {
            const Wide size = expq(Wide{z[i].re});
            add(re, z[i].re, results[i].re, size * cosq(Wide{z[i].im}));
            add(im, z[i].re, results[i].im, size * sinq(Wide{z[i].im}));
        }
        EXPECT_LE(re.ulps, .6) << kind << ", real part of " << re.argument;
        EXPECT_LE(im.ulps, .6) << kind << ", imaginary part of " << im.argument;
    }
}

TEST_P(Exponentials, OfSpecialComplexNumbers) {
    const struct {
        Zpp64fc z, result;
    } cases[] = {{{0.0, -0.0}, {1, -0.0}},     {{800, -0.0}, {kInf, -0.0}},  {{-kInf, 2}, {-0.0, 0.0}},
                 {{-kInf, kInf}, {0.0, 0.0}},  {{-kInf, kNan}, {0.0, 0.0}},  {{kInf, 2}, {-kInf, kInf}},
                 {{kInf, kInf}, {kInf, kNan}}, {{kInf, kNan}, {kInf, kNan}}, {{kInf, -0.0}, {kInf, -0.0}},
                 {{1, kInf}, {kNan, kNan}},    {{kNan, 0.0}, {kNan, 0.0}},   {{kNan, 1}, {kNan, kNan}},
                 {{2000, 2}, {-kInf, kInf}},   {{-2000, 2}, {-0.0, 0.0}},    {{0.0, kNan}, {kNan, kNan}}};
    for (const auto& c : cases)
        for (const int len : {1, 9, 70}) {
            std::vector<Zpp64fc> z(static_cast<std::size_t>(len), c.z);
            EXPECT_EQ(zppsExp_64fc_I(z.data(), len), zppStatusOk);
            for (const Zpp64fc& result : z)
                ASSERT_TRUE(same(result, c.result)) << shown(c.z) << ": " << shown(result);
        }
}

// All elements around those that are neither 0 nor saturated, at small factors, and at some that take e^x out
// of the range of doubles, and one near whose arguments ends.
TEST_P(Exponentials, OfIntegersAreRoundedOnce) {
    std::vector<int> factors = {INT_MIN, -2000000000, -77777,     -1100,  1100,
                                5000,    123456789,   2000000001, INT_MAX};
    for (int factor = -40; factor <= 40; ++factor) factors.push_back(factor);
    for (const int factor : factors) {
        const int first = static_cast<int>(std::floor(factor * std::numbers::ln2));
        std::vector<Zpp32s> x = {INT_MIN, INT_MAX};
        for (int i = -4; i < 30; ++i) x.push_back(first + i);
        std::vector<Zpp32s> results(x.size());
        const int len = static_cast<int>(x.size());
        ASSERT_EQ(zppsExp_32s_Sfs(x.data(), results.data(), len, factor), zppStatusOk);
        for (std::size_t i = 0; i < x.size(); ++i) {
            const Wide exact = expq(Wide{double(x[i])} - Wide{double(factor)} * logq(Wide{2}));
            // The one argument of which the exponential is rational.
            const double expected =
                x[i] == 0 && factor == 1
                    ? 0
                    : std::min(static_cast<double>(rintq(fminq(exact, Wide{1e10}))), double(INT_MAX));
            ASSERT_EQ(results[i], expected) << x[i] << ", scaleFactor " << factor;
        }
        EXPECT_EQ(zppsExp_32s_ISfs(x.data(), len, factor), zppStatusOk);
        EXPECT_EQ(x, results);
    }
}

}  // namespace
}  // namespace zpp::test
