// Phases, and complex numbers in polar form. The angles themselves are measured with the elementary
// functions.
#include <quadmath.h>

#include <climits>
#include <cmath>

#include "tests/support/binding.h"
#include "tests/support/rounded.h"
#include "tests/support/table.h"
#include "zpp/data.h"
#include "zpp/vm.h"

namespace zpp::test {
namespace {

class PolarForm : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(PolarForm);

double angle(double re, double im) {
    double result = 0;
    zppsAtan2_64f_A53(&im, &re, &result, 1);
    return result;
}
double length(double re, double im) {
    double result = 0;
    zppsMagnitude_64f(&re, &im, &result, 1);
    return result;
}

TEST_P(PolarForm, HasMagnitudeAndPhase) {
    binary("Phase_64f", zppsPhase_64f, nullptr, angle);
    unary("Phase_64fc", zppsPhase_64fc, nullptr, [](Zpp64fc z) { return angle(z.re, z.im); });
    for (const bool second : {false, true}) {
        const auto split = [=](int len, auto* re, auto* im, auto* dst) {
            std::vector<double> other(static_cast<std::size_t>(std::max(len, 1)));
            return zppsCartToPolar_64f(re, im, second ? other.data() : dst, second ? dst : other.data(), len);
        };
        const auto complexSplit = [=](int len, auto* z, auto* dst) {
            std::vector<double> other(static_cast<std::size_t>(std::max(len, 1)));
            return zppsCartToPolar_64fc(z, second ? other.data() : dst, second ? dst : other.data(), len);
        };
        const auto part = [=](double re, double im) { return second ? angle(re, im) : length(re, im); };
        expectDrawn<double, double, double>("CartToPolar_64f", split, part);
        expectDrawn<double, Zpp64fc>("CartToPolar_64fc", complexSplit,
                                     [=](Zpp64fc z) { return part(z.re, z.im); });
    }
}

// Destinations that are the sources, either way round.
TEST_P(PolarForm, ReplacesTheParts) {
    Random random;
    const auto re = drawn<double>(random, Draw::kOrdinary, 100),
               im = drawn<double>(random, Draw::kOrdinary, 100);
    std::vector<double> first[2] = {re, im}, second[2] = {re, im};
    ASSERT_EQ(zppsCartToPolar_64f(first[0].data(), first[1].data(), first[0].data(), first[1].data(), 100),
              0);
    ASSERT_EQ(
        zppsCartToPolar_64f(second[0].data(), second[1].data(), second[1].data(), second[0].data(), 100), 0);
    EXPECT_TRUE(sameBits(first[0], second[1]) && sameBits(first[1], second[0]));
    for (std::size_t i = 0; i < re.size(); ++i) EXPECT_EQ(first[1][i], angle(re[i], im[i]));
}

// Of phases of any size; then magnitudes and phases that are special.
TEST_P(PolarForm, IsTurnedBack) {
    Random random;
    std::vector<double> m, p;
    for (int i = 0; i < 3000; ++i) {
        m.push_back(random.uniform(-10, 10));
        p.push_back(
            std::ldexp(random.uniform(-1, 1), static_cast<int>(random.below(i % 3 == 0 ? 1023 : 12))));
    }
    std::vector<double> re(m.size()), im(m.size());
    std::vector<Zpp64fc> z(m.size());
    const int len = static_cast<int>(m.size());
    ASSERT_EQ(zppsPolarToCart_64f(m.data(), p.data(), re.data(), im.data(), len), zppStatusOk);
    ASSERT_EQ(zppsPolarToCart_64fc(m.data(), p.data(), z.data(), len), zppStatusOk);
    WorstError worst;
    for (std::size_t i = 0; i < m.size(); ++i) {
        worst.add(p[i], re[i], Wide{m[i]} * cosq(p[i]));
        worst.add(p[i], im[i], Wide{m[i]} * sinq(p[i]));
        EXPECT_TRUE(same(z[i], Zpp64fc{re[i], im[i]})) << i;
    }
    EXPECT_LE(worst.ulps, 1.6) << worst.argument;

    const double magnitudes[] = {1, 2, -3, 0.0, kInf, kNan}, phases[] = {kInf, kNan, -0.0, -kInf, 1, 0};
    double turned[2][6];
    ASSERT_EQ(zppsPolarToCart_64f(magnitudes, phases, turned[0], turned[1], 6), zppStatusOk);
    EXPECT_TRUE(turned[0][2] == -3 && same(turned[1][2], 0.0));
    EXPECT_TRUE(turned[0][4] == kInf && turned[1][4] == kInf);
    for (const int i : {0, 1, 3, 5}) EXPECT_TRUE(std::isnan(turned[0][i]) && std::isnan(turned[1][i])) << i;
}

// The one rounding is that of 113 bits.
Zpp32s scaledAngle(Zpp32sc z, int factor) {
    const Wide exact = atan2q(z.im, z.re) * exp2q(-std::clamp(factor, -100, 100));
    const Wide nearest = floorq(fabsq(exact) + 0.5);
    return static_cast<Zpp32s>(std::clamp<Wide>(exact < 0 ? -nearest : nearest, INT_MIN, INT_MAX));
}

// The last fraction of 31-bit integers by which one comes to a number: (denominator, numerator).
Zpp32sc nearFraction(Wide x) {
    Wide before[2] = {0, 1}, now[2] = {1, 0};  // numerators and denominators
    for (int i = 0; i < 40; ++i) {
        const Wide whole = floorq(x);
        const Wide next[2] = {whole * now[0] + before[0], whole * now[1] + before[1]};
        if (next[0] > INT_MAX || next[1] > INT_MAX) break;
        for (const int part : {0, 1}) before[part] = now[part], now[part] = next[part];
        if (x == whole) break;
        x = 1 / (x - whole);
    }
    return {static_cast<Zpp32s>(now[1]), static_cast<Zpp32s>(now[0])};
}

TEST_P(PolarForm, OfIntegersIsRoundedOnce) {
    std::vector<Zpp32sc> values = {{1, 0},        {0, 1},       {-1, 0},
                                   {0, -1},       {0, 0},       {INT_MIN, 1},
                                   {INT_MIN, -1}, {INT_MAX, 1}, {INT_MIN, INT_MIN},
                                   {INT_MIN, 0},  {0, INT_MIN}, {1 << 30, 1},
                                   {1 << 30, -3}};
    const auto drawn = drawnEachWay<Zpp32sc>(50);
    values.insert(values.end(), drawn.begin(), drawn.end());
    Random random;
    for (const int factor :
         {INT_MIN, -100, -63, -61, -58, -45, -33, -31, -30, -29, -28, -15, -2, -1, 0, 1, 2, 3, INT_MAX}) {
        // Next to halves, above and below, in each quadrant.
        std::vector<Zpp32sc> all = values;
        for (int i = 0; i < 60 && factor > -62 && factor < 2; ++i) {
            const double most = std::min(std::ldexp(1.5, -factor), 0x1p31);
            const Wide half = floorq(random.uniform(0, most)) + 0.5, h = half * exp2q(factor);
            if (h > 1.57 || h < 0x1p-30) continue;
            const Zpp32sc z = nearFraction(tanq(h));
            all.insert(all.end(), {z, {z.re, -z.im}, {-z.im, z.re}, {-z.re, z.im}});
        }
        expectRow<Zpp32s>(
            "Phase_32sc_Sfs, scaleFactor " + std::to_string(factor) + ',',
            outOfPlace(zppsPhase_32sc_Sfs, factor), [=](Zpp32sc z) { return scaledAngle(z, factor); },
            Lengths::kEvery, all);
    }
}

}  // namespace
}  // namespace zpp::test
