#include <cfloat>

#include "tests/gen/oracle.h"
#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/guarded.h"
#include "zpp/gen.h"

namespace zpp::test {
namespace {

class Triangle : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Triangle);

// Slopes added sample by sample, and what leaves an edge folded into the next one.
class Sums {
  public:
    Sums(Wide frequency, double asym, Wide phase)
        : falling_(Wide{kRoundedPi} + asym),
          rising_(Wide{kRoundedPi} - asym),
          slope_(4 * Wide{kRoundedPi} * frequency) {
        rises_ = phase >= falling_;
        v_ = rises_ ? (phase - falling_) * 2 / rising_ - 1 : 1 - 2 * phase / falling_;
    }
    Wide next() {
        const Wide v = v_;
        const Wide edge = rises_ ? rising_ : falling_, other = rises_ ? falling_ : rising_;
        const Wide sign = rises_ ? 1 : -1, sum = sign * v + slope_ / edge;  // as if it rose
        if (sum <= 1) return v_ = sign * sum, v;
        const Wide folded = 1 - (sum - 1) * edge / other;
        if (folded >= -1) {
            rises_ = !rises_;
            v_ = sign * folded;
        } else {
            v_ = sign * (sum - 4 * Wide{kRoundedPi} / edge);
        }
        return v;
    }

  private:
    Wide falling_, rising_, slope_, v_;
    bool rises_;
};

TEST_P(Triangle, IsTheFoldedSums) {
    double worst = 0;
    for (const double asym : {0.0, 1.0, -2.5, 3.0, -3.14, 3.1415, -3.14159265})
        for (const double frequency : {0.0, 1e-5, 0.00123, 0.0625, 0.2, 0.3, 0.4999})
            for (const int len : {1, 7, 255, 256, 1031}) {
                const double magn = len == 7 ? DBL_MAX : len == 256 ? 1e-310 : 2.5, phase = len % 5;
                Guarded<Zpp64f> real(static_cast<std::size_t>(len));
                Guarded<Zpp64fc> complex(static_cast<std::size_t>(len));
                double behind = phase, behindComplex = phase;
                EXPECT_EQ(zppsTriangle_Direct_64f(real, len, magn, frequency, asym, &behind), zppStatusOk);
                EXPECT_EQ(zppsTriangle_Direct_64fc(complex, len, magn, frequency, asym, &behindComplex),
                          zppStatusOk);
                EXPECT_EQ(behind, static_cast<double>(phaseOf(phase, frequency, len)))
                    << len << " samples of " << frequency;
                EXPECT_EQ(behindComplex, behind);
                EXPECT_TRUE(real.intact() && complex.intact());
                const Wide late = phase - kTurn / 4;
                Sums sums(frequency, asym, phase), lateSums(frequency, asym, late < 0 ? late + kTurn : late);
                double error = 0, largest = 0;
                for (int n = 0; n < len; ++n) {
                    const Wide expected = sums.next(), expectedLate = lateSums.next();
                    for (const double v : {real.data()[n], complex.data()[n].re, complex.data()[n].im})
                        largest = std::fmax(largest, std::fabs(v));
                    for (const Wide e : {real.data()[n] / Wide{magn} - expected,
                                         complex.data()[n].re / Wide{magn} - expected,
                                         complex.data()[n].im / Wide{magn} - expectedLate})
                        if (!(std::fabs(static_cast<double>(e)) <= error))
                            error = std::fabs(static_cast<double>(e));
                }
                EXPECT_LE(largest, magn);
                const double unit = kRoundedPi / (kRoundedPi - std::fabs(asym)),
                             rounding = DBL_TRUE_MIN / magn;
                EXPECT_LE(error, 0x1p-48 * unit + rounding)
                    << len << " samples of " << frequency << ", asymmetry " << asym;
                worst = std::fmax(worst, len == 256 ? 0 : error / unit);
            }
    RecordProperty("LargestError", std::to_string(worst * 0x1p53));
}

TEST_P(Triangle, RisesAsASawtoothWhereItsFallHasNoLength) {
    for (const double frequency : {0.25, 0.1, 0.03}) {
        std::vector<double> expected, actual(1000);
        std::vector<Zpp64fc> complex(1000);
        double v = -3, phase = 0, complexPhase = 0;
        for (std::size_t i = 0; i < actual.size(); ++i) {
            expected.push_back(v);
            v = sum(v, product(6, frequency));
            if (v > 3) v = difference(v, 6);
        }
        EXPECT_EQ(zppsTriangle_Direct_64f(actual.data(), 1000, 3, frequency, -kRoundedPi, &phase),
                  zppStatusOk);
        EXPECT_TRUE(sameBits(expected, actual)) << frequency;
        EXPECT_EQ(zppsTriangle_Direct_64fc(complex.data(), 1000, 3, frequency, -kRoundedPi, &complexPhase),
                  zppStatusOk);
        for (std::size_t i = 0; i < actual.size(); ++i) EXPECT_EQ(complex[i].re, expected[i]);
        EXPECT_EQ(complex[0].im, 1.5);
    }
}

// The sum is just below 2 pi, and rounded to what is no phase.
TEST_P(Triangle, KeepsAPhaseOfAWholeTurn) {
    const double start = 3 * (kRoundedPi / 2);
    double phase = start, tonePhase = start, sample;
    EXPECT_EQ(zppsTriangle_Direct_64f(&sample, 1, 1, 0.25, 0, &phase), zppStatusOk);
    EXPECT_EQ(phase, kRoundedTurn);
    EXPECT_EQ(zppsTriangle_Direct_64f(&sample, 1, 1, 0.25, 0, &phase), zppStatusTrianglePhase);
    EXPECT_EQ(zppsTone_Direct_64f(&sample, 1, 1, 0.25, &tonePhase), zppStatusOk);
    EXPECT_EQ(tonePhase, 0);
}

// Of each row one parameter is bad, and all behind it are.
TEST_P(Triangle, AndToneCheckInOrder) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr ZppStatus kTone[] = {zppStatusToneMagnitude, zppStatusToneFrequency, zppStatusOk,
                                   zppStatusTonePhase},
                        kTriangle[] = {zppStatusTriangleMagnitude, zppStatusTriangleFrequency,
                                       zppStatusTriangleAsymmetry, zppStatusTrianglePhase};
    const struct {
        int parameter;
        double value;
    } rows[] = {{0, 0},          {0, nan},          {1, 0.5}, {1, -0x1p-1074},
                {1, nan},        {2, kRoundedPi},   {2, nan}, {2, std::nextafter(-kRoundedPi, -4)},
                {3, -0x1p-1074}, {3, kRoundedTurn}, {3, nan}};
    EXPECT_EQ(zppsTone_Direct_64f(nullptr, 0, 0, 1, nullptr), zppStatusNullPointer);
    EXPECT_EQ(zppsTriangle_Direct_64f(nullptr, 0, 0, 1, 4, nullptr), zppStatusNullPointer);
    for (const auto& row : rows) {
        double p[] = {0, 0.5, 4, -1};
        for (int i = 0; i < row.parameter; ++i) p[i] = 0.25;
        p[row.parameter] = row.value;
        double phase = p[3];
        const ZppStatus tone = kTone[row.parameter], triangle = kTriangle[row.parameter];
        if (tone != zppStatusOk) {
            EXPECT_EQ(zppsTone_Direct_64f(nullptr, 0, p[0], p[1], &phase), tone);
            EXPECT_EQ(zppsTone_Direct_64fc(nullptr, 0, p[0], p[1], &phase), tone);
        }
        EXPECT_EQ(zppsTriangle_Direct_64f(nullptr, 0, p[0], p[1], p[2], &phase), triangle);
        EXPECT_EQ(zppsTriangle_Direct_64fc(nullptr, 0, p[0], p[1], p[2], &phase), triangle);
        EXPECT_TRUE(same(phase, p[3]));
    }
    double phase = 1;
    EXPECT_EQ(zppsTone_Direct_64f(nullptr, 0, 1, 0.25, &phase), zppStatusNullPointer);
    EXPECT_EQ(zppsTriangle_Direct_64f(nullptr, 0, 1, 0.25, 0, &phase), zppStatusNullPointer);
}

}  // namespace
}  // namespace zpp::test
