#include "tests/support/binding.h"
#include "tests/support/rounded.h"
#include "tests/support/table.h"
#include "zpp/data.h"

namespace zpp::test {
namespace {

class Threshold : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Threshold);

// Both forms, with what follows their length.
template <class T, class Call, class InPlace, class... Extra>
void expectReplaced(const std::string& name, Call call, InPlace callInPlace,
                    const std::type_identity_t<Oracle<T, T>>& oracle, Extra... extra) {
    expectDrawn<T, T>(name, outOfPlace(call, extra...), oracle);
    expectDrawn<T, T>(name + "_I", inPlace(callInPlace, extra...), oracle);
}

double norm(Zpp64fc z) { return sum(product(z.re, z.re), product(z.im, z.im)); }
Zpp64fc scaledTo(double level, Zpp64fc z) {
    if (norm(z) == 0) return {level, 0};
    return product(squareRoot(quotient(product(level, level), norm(z))), z);
}

const double kLevels[] = {0.0, -0.0, 1, 0.7, 300, 1e-170, kInf};

TEST_P(Threshold, OfRealNumbers) {
    for (const double level : {-2.0, 0.0, -0.0, 1.0, kInf, -kInf, kNan}) {
        const auto less = [=](double x) { return x < level ? level : x; };
        const auto greater = [=](double x) { return x > level ? level : x; };
        for (const ZppCmpOp relOp : {zppCmpLess + 0, zppCmpGreater + 0, 7})
            if (relOp == zppCmpGreater)
                expectReplaced<double>("64f", zppsThreshold_64f, zppsThreshold_64f_I, greater, level, relOp);
            else
                expectReplaced<double>("64f", zppsThreshold_64f, zppsThreshold_64f_I, less, level, relOp);
        expectReplaced<double>("LT_64f", zppsThreshold_LT_64f, zppsThreshold_LT_64f_I, less, level);
        expectReplaced<double>("GT_64f", zppsThreshold_GT_64f, zppsThreshold_GT_64f_I, greater, level);
        expectReplaced<double>(
            "LTVal_64f", zppsThreshold_LTVal_64f, zppsThreshold_LTVal_64f_I,
            [=](double x) { return x >= level ? x : 77; }, level, 77.0);
        expectReplaced<double>(
            "GTVal_64f", zppsThreshold_GTVal_64f, zppsThreshold_GTVal_64f_I,
            [=](double x) { return x > level ? -0.0 : x; }, level, -0.0);
        for (const double apart : {0.0, 2.0}) {
            const double upper = level + apart;
            if (std::isnan(upper)) continue;
            expectReplaced<double>(
                "LTValGTVal_64f", zppsThreshold_LTValGTVal_64f, zppsThreshold_LTValGTVal_64f_I,
                [=](double x) { return x >= level ? x > upper ? 88 : x : 77; }, level, 77.0, upper, 88.0);
        }
    }
    for (const Zpp32s level : {-5, 0, 1000, std::numeric_limits<Zpp32s>::max()})
        expectReplaced<Zpp32s>(
            "LT_32s", zppsThreshold_LT_32s, zppsThreshold_LT_32s_I,
            [=](Zpp32s x) { return std::max(x, level); }, level);
}

TEST_P(Threshold, OfMagnitudes) {
    for (const double level : kLevels) {
        const double square = product(level, level);
        const Zpp64fc value = {7, -0.0};
        const auto less = [=](Zpp64fc z) { return norm(z) < square ? scaledTo(level, z) : z; };
        const auto greater = [=](Zpp64fc z) { return norm(z) > square ? scaledTo(level, z) : z; };
        expectReplaced<Zpp64fc>("64fc", zppsThreshold_64fc, zppsThreshold_64fc_I, less, level, 7);
        expectReplaced<Zpp64fc>("LT_64fc", zppsThreshold_LT_64fc, zppsThreshold_LT_64fc_I, less, level);
        expectReplaced<Zpp64fc>("GT_64fc", zppsThreshold_GT_64fc, zppsThreshold_GT_64fc_I, greater, level);
        expectReplaced<Zpp64fc>(
            "LTVal_64fc", zppsThreshold_LTVal_64fc, zppsThreshold_LTVal_64fc_I,
            [=](Zpp64fc z) { return norm(z) < square ? value : z; }, level, value);
        expectReplaced<Zpp64fc>(
            "GTVal_64fc", zppsThreshold_GTVal_64fc, zppsThreshold_GTVal_64fc_I,
            [=](Zpp64fc z) { return norm(z) > square ? value : z; }, level, value);
    }
}

TEST_P(Threshold, OfInverses) {
    for (const double level : kLevels) {
        const double square = product(level, level);
        const auto inverted = [=](double x) -> Warned<double> {
            if (std::fabs(x) > level) return quotient(1, x);
            if (level == 0) return {kInf, zppStatusInvZero};
            return quotient(x < 0 ? -1 : 1, level);
        };
        const auto invertedComplex = [=](Zpp64fc z) -> Warned<Zpp64fc> {
            const double n = norm(z), d = n >= square ? n : product(squareRoot(n), level);
            if (n > 0) return Zpp64fc{quotient(z.re, d), quotient(-z.im, d)};
            if (square == 0) return {{kInf, 0.0}, zppStatusInvZero};
            return Zpp64fc{quotient(1, level), 0.0};
        };
        expectReplaced<double>("LTInv_64f", zppsThreshold_LTInv_64f, zppsThreshold_LTInv_64f_I, inverted,
                               level);
        expectReplaced<Zpp64fc>("LTInv_64fc", zppsThreshold_LTInv_64fc, zppsThreshold_LTInv_64fc_I,
                                invertedComplex, level);
    }
}

// As they come out by hand.
TEST_P(Threshold, OfAFewNumbers) {
    const Zpp64fc few[] = {{0, 0}, {3, 4}, {0.6, 0.8}}, expected[] = {{2, 0}, {3, 4}, {1.2, 1.6}};
    Zpp64fc clamped[3];
    EXPECT_EQ(zppsThreshold_LT_64fc(few, clamped, 3, 2), zppStatusOk);
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(same(expected[i], clamped[i])) << shown(clamped[i]);
    double values[] = {-0.25, 0.5, 4};
    EXPECT_EQ(zppsThreshold_LTInv_64f_I(values, 3, 0.5), zppStatusOk);
    EXPECT_EQ(values[0], -2);
    EXPECT_EQ(values[1], 2);
    EXPECT_EQ(values[2], 0.25);
}

}  // namespace
}  // namespace zpp::test
