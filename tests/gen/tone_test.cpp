#include <cfenv>
#include <cfloat>

#include "tests/gen/oracle.h"
#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/guarded.h"
#include "zpp/gen.h"

namespace zpp::test {
namespace {

class Tone : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Tone);

constexpr double kFrequencies[] = {0,       0x1p-1074, 1e-300, 1e-9, 1.0 / 3000, 0.01234,      0.1,
                                   0.12345, 0.25,      1 / 3., 0.4,  0.499999,   0.5 - 0x1p-54};

// Both tones, which agree in their phases; the largest error in units of magn.
double errorOf(int len, double magn, double frequency, double phase) {
    Guarded<Zpp64f> real(static_cast<std::size_t>(len));
    Guarded<Zpp64fc> complex(static_cast<std::size_t>(len), Edge::kStart);
    const double expected = static_cast<double>(phaseOf(phase, frequency, len));
    double behind = phase, behindComplex = phase, worst = 0;
    EXPECT_EQ(zppsTone_Direct_64f(real, len, magn, frequency, &behind), zppStatusOk);
    EXPECT_EQ(zppsTone_Direct_64fc(complex, len, magn, frequency, &behindComplex), zppStatusOk);
    EXPECT_EQ(behind, expected < kRoundedTurn ? expected : 0)
        << len << " samples of " << frequency << " from " << phase;
    EXPECT_EQ(behindComplex, behind);
    EXPECT_TRUE(real.intact() && complex.intact());
    for (int n = 0; n < len; n += len < 200 ? 1 : len / 150) {
        const Wide angle = phaseOf(phase, frequency, n), cosine = cosq(angle);
        for (const Wide error : {real.data()[n] / magn - cosine, complex.data()[n].re / magn - cosine,
                                 complex.data()[n].im / magn - sinq(angle)})
            if (!(std::fabs(static_cast<double>(error)) <= worst))
                worst = std::fabs(static_cast<double>(error));
    }
    return worst;
}

TEST_P(Tone, IsTheCosineOfItsExactPhase) {
    double worst = 0;
    for (const double frequency : kFrequencies)
        for (const int len : {1, 2, 31, 32, 33, 63, 64, 65, 127, 128, 129, 1031, 20000}) {
            const double phase = std::fmod(0.7 * len + 3 * frequency, 2) * (len % 2 == 0 ? kRoundedPi : 0);
            const double error = errorOf(len, 1.5, frequency, phase);
            EXPECT_LE(error, len <= 32 ? 0x1p-49 : 0x1p-46)
                << len << " samples of " << frequency << " from " << phase;
            worst = std::fmax(worst, error);
        }
    for (const double frequency : {0.1, 0.12345, 0.5 - 0x1p-54}) {
        const double error = errorOf(1000000, 1.5, frequency, 5);
        EXPECT_LE(error, 0x1p-46) << frequency;
        worst = std::fmax(worst, error);
    }
    RecordProperty("LargestError", std::to_string(worst * 0x1p53));
}

// Where products would overflow, or lose bits.
TEST_P(Tone, TakesAnyMagnitude) {
    for (const int len : {20, 100, 129})
        for (const double magn : {DBL_MAX, 1e300, 0x1p1000, 0x1p-900, DBL_MIN, 0x1p-1040})
            EXPECT_LE(errorOf(len, magn, 0.01, 0), 0x1p-46 + 0.5 * (DBL_TRUE_MIN / magn)) << magn;
}

TEST_P(Tone, OfManyCallsDriftsByARoundingEach) {
    constexpr int calls = 100000;
    for (const double frequency : {0.1, 0.31416}) {
        double phase = 1, sample;
        for (int i = 0; i < calls; ++i)
            EXPECT_EQ(zppsTone_Direct_64f(&sample, 1, 1, frequency, &phase), zppStatusOk);
        EXPECT_NEAR(phase, static_cast<double>(phaseOf(1, frequency, calls)), calls * 0x1p-51);
    }
}

TEST_P(Tone, IsTheSameInAnyEnvironment) {
    for (const int len : {7, 300}) {
        std::vector<double> expected(static_cast<std::size_t>(len)), actual(expected);
        double phase = 3, otherPhase = 3;
        EXPECT_EQ(zppsTone_Direct_64f(expected.data(), len, 1, 0.123, &phase), zppStatusOk);
        std::fesetround(FE_UPWARD);
        EXPECT_EQ(zppsTone_Direct_64f(actual.data(), len, 1, 0.123, &otherPhase), zppStatusOk);
        EXPECT_EQ(std::fegetround(), FE_UPWARD);
        std::fesetround(FE_TONEAREST);
        EXPECT_TRUE(sameBits(expected, actual));
        EXPECT_EQ(phase, otherPhase);
    }
}

}  // namespace
}  // namespace zpp::test
