#include <cmath>
#include <complex>

#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/guarded.h"
#include "tests/support/random.h"
#include "tests/support/rounded.h"
#include "tests/support/x87.h"
#include "zpp/transform.h"

namespace zpp::test {
namespace {

class Goertzel : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Goertzel);

using Elements = std::vector<Zpp64fc>;

Elements signalOf(std::size_t n) {
    Random random(n);
    Elements x(n);
    for (Zpp64fc& e : x) e = {random.uniform(), random.uniform()};
    return x;
}

Zpp64fc valueAt(const Elements& x, double frequency) {
    Zpp64fc value = {NAN, NAN};
    EXPECT_EQ(zppsGoertz_64fc(x.data(), static_cast<int>(x.size()), &value, frequency), zppStatusOk);
    return value;
}

// exp(2 pi i turns), the angle of which is reduced before it is rounded.
std::complex<long double> turned(Wide turns) {
    const auto fraction = static_cast<long double>(turns - static_cast<Wide>(static_cast<long long>(turns)));
    return std::polar(1.0L, 2 * 3.14159265358979323846264338327950288L * fraction);
}

// How far a value is from the sum that defines it, in units of the promised bound.
double errorOf(const Elements& x, double frequency, Zpp64fc value) {
    Wide re = 0, im = 0;
    double magnitudes = 0;
    const std::size_t n = x.size(), segment = n < 128 ? n : n / 4;
    for (std::size_t i = 0; i < n; ++i) {
        const auto root = turned(Wide{frequency} * static_cast<Wide>(n - i));
        re += Wide{x[i].re} * root.real() - Wide{x[i].im} * root.imag();
        im += Wide{x[i].re} * root.imag() + Wide{x[i].im} * root.real();
        magnitudes += std::hypot(x[i].re, x[i].im);
    }
    const double error = std::hypot(static_cast<double>(value.re - re), static_cast<double>(value.im - im));
    const double sine =
        std::fabs(std::sin(2 * std::acos(-1.0) * (frequency < 0.5 ? frequency : frequency - 1)));
    const auto length = static_cast<double>(segment);
    return error / (8 * 0x1p-53 * length * (2 + std::fmin(length, 1 / sine)) * magnitudes);
}

const double kFrequencies[] = {0,          -0.0,  0x1p-1074,  1e-9, 1e-5,    1e-4,       0.001,
                               0.03125,    0.125, 0.2,        0.25, 1 / 3.0, 0.499,      0.4999,
                               0.5 - 1e-9, 0.5,   0.5 + 1e-5, 0.75, 0.9999,  1 - 0x1p-53};

TEST_P(Goertzel, IsTheSumThatDefinesIt) {
    double worst = 0;
    for (const std::size_t n : {1, 2, 3, 7, 64, 127, 128, 129, 135, 1000, 1031, 4096, 16384}) {
        const Elements x = signalOf(n);
        for (const double f : kFrequencies) {
            const double error = errorOf(x, f, valueAt(x, f));
            EXPECT_LE(error, 1) << n << " samples at " << f;
            worst = std::fmax(worst, error);
        }
    }
    RecordProperty("LargestError", std::to_string(worst));
}

// One tone, and a constant: the values that have a closed form, near 0 and 1 / 2 too.
TEST_P(Goertzel, FindsATone) {
    constexpr std::size_t n = 2048;
    for (const std::size_t m : {0, 1, 2, 300, 1023, 1024, 1025, 2047}) {
        Elements x;
        for (std::size_t i = 0; i < n; ++i) {
            const auto e = turned(static_cast<Wide>(i * m) / n);
            x.push_back({static_cast<double>(e.real()), static_cast<double>(e.imag())});
        }
        for (const std::size_t other : {m, (m + 1) % n, (m + 700) % n}) {
            const Zpp64fc value = valueAt(x, static_cast<double>(other) / n);
            EXPECT_NEAR(value.re, other == m ? n : 0, 1e-8) << m << " " << other;
            EXPECT_NEAR(value.im, 0, 1e-8) << m << " " << other;
        }
    }
}

TEST_P(Goertzel, TwoFrequenciesAreAsOne) {
    for (const std::size_t n : {1, 5, 127, 128, 131, 1000, 1007}) {
        const Elements x = signalOf(n);
        Guarded<Zpp64fc> src(x);
        src.protect();
        for (const double f : kFrequencies)
            for (const std::uint16_t word : x87Words()) {
                const double both[] = {f, 1 - 0x1p-53 - f};
                const Elements expected = {valueAt(x, both[0]), valueAt(x, both[1])};
                Guarded<Zpp64fc> values(2);
                const X87ControlWord narrow(word);
                EXPECT_EQ(zppsGoertzTwo_64fc(src, src.len(), values, both), zppStatusOk);
                EXPECT_EQ(x87ControlWord(), word);
                EXPECT_TRUE(sameBits(expected, values.values())) << n << " samples at " << f;
                EXPECT_TRUE(values.intact());
            }
    }
}

TEST_P(Goertzel, ChecksInOrder) {
    const Zpp64fc x[2] = {};
    Guarded<Zpp64fc> values(2);
    const double good = 0.25, none[] = {1, 1};
    EXPECT_EQ(zppsGoertz_64fc(nullptr, 0, values, 1), zppStatusNullPointer);
    EXPECT_EQ(zppsGoertz_64fc(x, 0, nullptr, 1), zppStatusNullPointer);
    EXPECT_EQ(zppsGoertz_64fc(x, 0, values, 1), zppStatusSizeError);
    EXPECT_EQ(zppsGoertzTwo_64fc(nullptr, 0, values, none), zppStatusNullPointer);
    EXPECT_EQ(zppsGoertzTwo_64fc(x, 0, nullptr, none), zppStatusNullPointer);
    EXPECT_EQ(zppsGoertzTwo_64fc(x, 0, values, nullptr), zppStatusNullPointer);
    EXPECT_EQ(zppsGoertzTwo_64fc(x, -1, values, none), zppStatusSizeError);
    for (const double bad : {1.0, -0x1p-1074, 1e300, -HUGE_VAL, HUGE_VAL, std::nan("")}) {
        EXPECT_EQ(zppsGoertz_64fc(x, 2, values, bad), zppStatusRelativeFrequency) << bad;
        const double second[] = {good, bad}, first[] = {bad, good};
        EXPECT_EQ(zppsGoertzTwo_64fc(x, 2, values, second), zppStatusRelativeFrequency) << bad;
        EXPECT_EQ(zppsGoertzTwo_64fc(x, 2, values, first), zppStatusRelativeFrequency) << bad;
    }
    EXPECT_TRUE(values.untouched());
}

}  // namespace
}  // namespace zpp::test
