#include <quadmath.h>

#include <climits>
#include <numbers>

#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/draws.h"
#include "tests/support/rounded.h"
#include "zpp.h"

namespace zpp::test {
namespace {

class Logarithms : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Logarithms);

// The vector-math function's results, rounded where they are single; of the warnings the one of negative
// numbers.
template <class S, class D>
void expectLogarithms(const char* name, ZppStatus (*f)(const S*, D*, int)) {
    Random random;
    for (const Draw draw : kDraws)
        for (const int len : {1, 3, 64, 515}) {
            const auto n = static_cast<std::size_t>(len);
            std::vector<S> x = drawn<S>(random, draw, n);
            if (len == 3) x = {-1, 0, 2};
            const std::vector<double> arguments(x.begin(), x.end());
            std::vector<double> exact(n);
            zppsLn_64f_A53(arguments.data(), exact.data(), len);
            ZppStatus expected = zppStatusOk;
            for (const S v : x)
                if (v < 0)
                    expected = zppStatusLnNegativeArg;
                else if (v == 0 && expected == zppStatusOk)
                    expected = zppStatusLnZeroArg;
            std::vector<D> results(n);
            EXPECT_EQ(f(x.data(), results.data(), len), expected) << name << " of " << len;
            for (std::size_t i = 0; i < n; ++i)
                ASSERT_TRUE(same(results[i], static_cast<D>(exact[i]))) << name << " of " << shown(x[i]);
        }
}

TEST_P(Logarithms, AreThoseOfVectorMathWithTheirOwnWarnings) {
    expectLogarithms("Ln_64f", zppsLn_64f);
    expectLogarithms("Ln_32f64f", zppsLn_32f64f);
    expectLogarithms("Ln_64f32f", zppsLn_64f32f);
}

TEST_P(Logarithms, OfNegativeNumbersAreOneNan) {
    double x[] = {-1, -kInf, -0x1p-1074};
    float singles[3];
    EXPECT_EQ(zppsLn_64f32f(x, singles, 3), zppStatusLnNegativeArg);
    EXPECT_EQ(zppsLn_64f_I(x, 3), zppStatusLnNegativeArg);
    for (const double v : x) EXPECT_EQ(std::bit_cast<std::uint64_t>(v), 0xFFF8000000000000);
    for (const float v : singles) EXPECT_EQ(std::bit_cast<std::uint32_t>(v), 0xFFC00000);
}

// ln |z|, without what re^2 + im^2 loses next to 1.
Wide lnOfMagnitude(Zpp64fc z) {
    const Wide a = std::max(std::fabs(z.re), std::fabs(z.im)), b = std::min(std::fabs(z.re), std::fabs(z.im));
    const Wide less1 = (a - 1) * (a + 1) + b * b;
    return less1 > -.5 && less1 < 1 ? log1pq(less1) / 2 : logq(a * a + b * b) / 2;
}

// Ordinary numbers, numbers of any size, and numbers on the unit circle, far from it by little, and by
// nothing but a small part.
TEST_P(Logarithms, OfComplexNumbersAreWithinTheirBound) {
    constexpr int n = 4000;
    Random random;
    std::vector<Zpp64fc> z(n), results(n);
    for (int kind = 0; kind < 5; ++kind) {
        for (Zpp64fc& v : z) {
            const double angle = random.uniform(-4, 4), u = random.uniform(-1, 1);
            v = {10 * u, random.uniform(-10, 10)};
            if (kind == 1) v = drawn<Zpp64fc>(random, Draw::kLong);
            if (kind == 2) v = drawn<Zpp64fc>(random, Draw::kLimits);
            if (kind == 3) v = {std::cos(angle) * (1 + u * 1e-6), std::sin(angle)};
            if (kind == 4) v = {u < 0 ? -1.0 : 1.0, std::ldexp(u, -27 - static_cast<int>(random.below(510)))};
        }
        ASSERT_EQ(zppsLn_64fc(z.data(), results.data(), n), zppStatusOk);
        WorstError re, im;
        for (std::size_t i = 0; i < n; ++i) {
            const Wide ln = lnOfMagnitude(z[i]);
            const double size = std::fabs(static_cast<double>(ln));
            if (kind == 3 && size < 0x1p-50)
                EXPECT_LE(static_cast<double>(fabsq(results[i].re - ln)), std::max(0x1p-52 * size, 0x1p-105));
            else
                re.add(z[i].re, results[i].re, ln);
            im.add(z[i].re, results[i].im, atan2q(Wide{z[i].im}, Wide{z[i].re}));
        }
        EXPECT_LE(re.ulps, .56) << kind << ", real part of " << re.argument;
        EXPECT_LE(im.ulps, .56) << kind << ", imaginary part of " << im.argument;
    }
}

TEST_P(Logarithms, OfSpecialComplexNumbers) {
    const struct {
        Zpp64fc z, result;
        ZppStatus status = zppStatusOk;
    } cases[] = {{{-0.0, -0.0}, {-kInf, 0.0}, zppStatusLnZeroArg},
                 {{-1, 0.0}, {0.0, std::numbers::pi}},
                 {{-1, -0.0}, {0.0, -std::numbers::pi}},
                 {{1, -0.0}, {0.0, -0.0}},
                 {{-kInf, 2}, {kInf, std::numbers::pi}},
                 {{kInf, -2}, {kInf, -0.0}},
                 {{2, -kInf}, {kInf, -(std::numbers::pi / 2)}},
                 {{kInf, kInf}, {kInf, (std::numbers::pi / 4)}},
                 {{kNan, kInf}, {kInf, kNan}},
                 {{kNan, 0.0}, {kNan, kNan}}};
    for (const auto& c : cases)
        for (const int len : {1, 9, 70}) {
            std::vector<Zpp64fc> z(static_cast<std::size_t>(len), c.z);
            EXPECT_EQ(zppsLn_64fc_I(z.data(), len), c.status) << shown(c.z);
            for (const Zpp64fc& result : z)
                ASSERT_TRUE(same(result, c.result)) << shown(c.z) << ": " << shown(result);
        }
}

// With the arguments of which logarithms are nearest to a half at a factor, found among all, and the powers
// of ten, of which the decibels are integers and so may be halves.
TEST_P(Logarithms, OfIntegersAreRoundedOnce) {
    Random random;
    std::vector<Zpp32s> x = drawn<Zpp32s>(random, Draw::kOrdinary, 300);
    const std::size_t drawnOnes = x.size();
    for (const Zpp32s hard :
         {1737584610, 484112971, 323556877, 622995539, 132498994, 1324989940, 266785406, 1786364959})
        x.push_back(hard);
    for (int power = 1; x.push_back(power), power < 1000000000; power *= 10) {
    }
    const int len = static_cast<int>(x.size());
    std::vector<Wide> ln;
    for (const Zpp32s v : x) ln.push_back(logq(Wide{double(std::max(v, 1))}));
    std::vector<Wide> decibels;
    for (const Wide v : ln) decibels.push_back(v / logq(Wide{10}) * 10);
    for (std::size_t i = drawnOnes + 8; i < x.size(); ++i) decibels[i] = rintq(decibels[i]);
    for (int factor = -36; factor <= 9; ++factor) {
        const auto expect = [&](const char* name, auto f, const std::vector<Wide>& exact) {
            std::vector<Zpp32s> results(x.size());
            ASSERT_EQ(f(x.data(), results.data(), len, factor), zppStatusLnNegativeArg);
            for (std::size_t i = 0; i < x.size(); ++i) {
                const Wide scaled = fminq(scalbnq(exact[i], -factor), Wide{double(INT_MAX)});
                ASSERT_EQ(results[i], x[i] <= 0 ? INT_MIN : static_cast<int>(rintq(scaled)))
                    << name << " of " << x[i] << ", scaleFactor " << factor;
            }
        };
        expect("Ln_32s_Sfs", zppsLn_32s_Sfs, ln);
        expect("10Log10_32s_Sfs", zpps10Log10_32s_Sfs, decibels);
    }
}

TEST_P(Logarithms, OfIntegersThatHaveNone) {
    const struct {
        Zpp32s x[2];
        int factor;
        Zpp32s results[2];
        ZppStatus status;
    } cases[] = {{{1, 2}, INT_MIN, {0, INT_MAX}, zppStatusOk},
                 {{1, INT_MAX}, INT_MAX, {0, 0}, zppStatusOk},
                 {{1, 0}, 0, {0, INT_MIN}, zppStatusLnZeroArg},
                 {{-5, 0}, INT_MAX, {INT_MIN, INT_MIN}, zppStatusLnNegativeArg}};
    for (const auto& c : cases)
        for (const auto f : {zppsLn_32s_ISfs, zpps10Log10_32s_ISfs}) {
            std::vector<Zpp32s> x(c.x, c.x + 2);
            EXPECT_EQ(f(x.data(), 2, c.factor), c.status);
            EXPECT_EQ(x, std::vector<Zpp32s>(c.results, c.results + 2)) << c.factor;
        }
}

}  // namespace
}  // namespace zpp::test
