#include <cfloat>
#include <climits>

#include "tests/support/binding.h"
#include "tests/support/exact.h"
#include "tests/support/rounded.h"
#include "tests/support/table.h"
#include "zpp/data.h"

namespace zpp::test {
namespace {

class ComplexVectors : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(ComplexVectors);

double power(double re, double im) { return sum(product(re, re), product(im, im)); }
double length(double re, double im) { return squareRoot(power(re, im)); }
Zpp64fc joined(double re, double im) { return {re, im}; }

TEST_P(ComplexVectors, AreTakenApartPutTogetherAndMeasured) {
    unary("Conj_64fc", zppsConj_64fc, zppsConj_64fc_I, conjugate);
    unary("Real_64fc", zppsReal_64fc, nullptr, [](Zpp64fc z) { return z.re; });
    unary("Imag_64fc", zppsImag_64fc, nullptr, [](Zpp64fc z) { return z.im; });
    unary("Magnitude_64fc", zppsMagnitude_64fc, nullptr, [](Zpp64fc z) { return length(z.re, z.im); });
    unary("PowerSpectr_64fc", zppsPowerSpectr_64fc, nullptr, [](Zpp64fc z) { return power(z.re, z.im); });
    binary("Magnitude_64f", zppsMagnitude_64f, nullptr, length);
    binary("PowerSpectr_64f", zppsPowerSpectr_64f, nullptr, power);
    binary("RealToCplx_64f", zppsRealToCplx_64f, nullptr, joined);
}

TEST_P(ComplexVectors, OfOnePartHaveZerosForTheOther) {
    const auto numbers = drawnEachWay<double>(20);
    const auto ofReal = [](int len, auto* src, auto* dst) {
        return zppsRealToCplx_64f(src, nullptr, dst, len);
    };
    const auto ofImaginary = [](int len, auto* src, auto* dst) {
        return zppsRealToCplx_64f(nullptr, src, dst, len);
    };
    const auto re = [](double x) { return Zpp64fc{x, 0}; };
    const auto im = [](double x) { return Zpp64fc{0, x}; };
    expectRow<Zpp64fc>("RealToCplx_64f, no imaginary part", ofReal, re, Lengths::kEvery, numbers);
    expectRow<Zpp64fc>("RealToCplx_64f, no real part", ofImaginary, im, Lengths::kEvery, numbers);
    Zpp64fc kept = {7, 7};
    EXPECT_EQ(zppsRealToCplx_64f(nullptr, nullptr, &kept, 1), zppStatusNullPointer);
    EXPECT_EQ(zppsRealToCplx_64f(nullptr, nullptr, &kept, 0), zppStatusSizeError);
    EXPECT_TRUE(same(kept, Zpp64fc{7, 7}));
}

TEST_P(ComplexVectors, AreSplitIntoTwoAndTurned) {
    for (const int len : awkwardLengths()) {
        const auto n = static_cast<std::size_t>(len);
        Random random;
        Guarded<Zpp64fc> z(drawn<Zpp64fc>(random, Draw::kSpecial, n));
        Guarded<double> re(n), im(n);
        Guarded<Zpp64fc> turned(n);
        ASSERT_EQ(zppsCplxToReal_64fc(z, re, im, len), zppStatusOk);
        ASSERT_EQ(zppsConjFlip_64fc(z, turned, len), zppStatusOk);
        for (std::size_t i = 0; i < n; ++i) {
            EXPECT_TRUE(same(z[i], joined(re[i], im[i]))) << i << " of " << len;
            EXPECT_TRUE(same(conjugate(z[i]), turned[n - 1 - i])) << i << " of " << len;
        }
        EXPECT_TRUE(re.intact() && im.intact() && turned.intact());
    }
}

// The integers of which a sum of squares is 2^63, next to it, or a tie; and any.
std::vector<Zpp32sc> integers() {
    std::vector<Zpp32sc> values = {{3, 4}, {1, 1}, {1, 0}, {0, 0}, {46341, 0}, {32768, 32768}};
    for (const Zpp32s re : {INT_MIN, INT_MIN + 1, INT_MAX, 1 << 30, 0})
        for (const Zpp32s im : {INT_MIN, INT_MAX, -(1 << 30), 1}) values.push_back({re, im});
    const auto drawn = drawnEachWay<Zpp32sc>(150);
    values.insert(values.end(), drawn.begin(), drawn.end());
    return values;
}

TEST_P(ComplexVectors, OfIntegersAreMeasuredAndScaled) {
    const std::vector<Zpp32sc> values = integers();
    for (const int factor : {0,  -1, -2, -15, -29, -30, -31, -32, INT_MIN, 1,  2,  16,
                             30, 31, 32, 33,  34,  61,  62,  63,  64,      65, 66, INT_MAX}) {
        const auto magnitude = [=](Zpp32sc z) {
            const double exact = std::ldexp(1.0, -std::clamp(factor, -40, 100));
            const double y = sum(product(length(z.re, z.im), exact), 0.5);
            return y > 2147483647.0 ? INT_MAX : static_cast<Zpp32s>(y);
        };
        const auto square = [=](Zpp32sc z) {
            const Exact re = z.re, im = z.im;
            return rounded<Zpp32s>(scaled(re * re + im * im, factor));
        };
        const std::string what = "_Sfs, scaleFactor " + std::to_string(factor) + ',';
        expectRow<Zpp32s>("Magnitude_32sc" + what, outOfPlace(zppsMagnitude_32sc_Sfs, factor), magnitude,
                          Lengths::kEvery, values);
        expectRow<Zpp32s>("MagSquared_32sc32s" + what, outOfPlace(zppsMagSquared_32sc32s_Sfs, factor), square,
                          Lengths::kEvery, values);
    }
}

TEST_P(ComplexVectors, AreNormalizedByOneReciprocal) {
    for (const double vdiv : {2.0, -3.0, DBL_MIN, DBL_MAX, kInf, kNan})
        for (const double vsub : {0.0, 1.5, kInf}) {
            const auto normal = [=](double x) { return product(difference(x, vsub), quotient(1, vdiv)); };
            const Zpp64fc offset = {1, vsub};
            const auto complexNormal = [=](Zpp64fc z) {
                return product(quotient(1, vdiv), difference(z, offset));
            };
            const std::string what = " by " + shown(vdiv) + ", less " + shown(vsub) + ',';
            expectDrawn<double, double>("Normalize_64f" + what, outOfPlace(zppsNormalize_64f, vsub, vdiv),
                                        normal);
            expectDrawn<Zpp64fc, Zpp64fc>("Normalize_64fc" + what,
                                          outOfPlace(zppsNormalize_64fc, offset, vdiv), complexNormal);
        }
}

}  // namespace
}  // namespace zpp::test
