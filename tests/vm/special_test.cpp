// Arguments that are special for a function, their results and warnings.
#include <bit>
#include <initializer_list>
#include <numbers>

#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/draws.h"
#include "zpp/vm.h"

namespace zpp::test {
namespace {

class SpecialArguments : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(SpecialArguments);

using OneToOne = ZppStatus(const Zpp64f*, Zpp64f*, int);

struct One {
    double x, result;
    ZppStatus status = zppStatusOk;
};

// Each in a vector of its own kind, and among ordinary ones at each place.
void one(const char* name, OneToOne f, std::initializer_list<One> rows) {
    for (const One& row : rows) {
        for (const int len : {1, 5, 70}) {
            const auto n = static_cast<std::size_t>(len);
            const std::vector<double> all(n, row.x);
            std::vector<double> results(n);
            ASSERT_EQ(f(all.data(), results.data(), len), row.status) << name << " of " << shown(row.x);
            for (const double result : results)
                ASSERT_TRUE(same(result, row.result))
                    << name << " of " << shown(row.x) << ": " << shown(result);
        }
    }
}

struct Two {
    double x, y, result;
    ZppStatus status = zppStatusOk;
};

// The same of a function that is given the vectors x and y.
template <class F>
void two(const char* name, F f, std::initializer_list<Two> rows) {
    for (const Two& row : rows) {
        for (const int len : {1, 5, 70}) {
            const auto n = static_cast<std::size_t>(len);
            const std::vector<double> x(n, row.x), y(n, row.y);
            std::vector<double> results(n + 1, 7);
            ASSERT_EQ(f(x.data(), y.data(), results.data(), len), row.status)
                << name << " of " << shown(row.x) << ", " << shown(row.y);
            EXPECT_EQ(results.back(), 7) << name << " writes behind the last element";
            results.pop_back();
            for (const double result : results)
                ASSERT_TRUE(same(result, row.result))
                    << name << " of " << shown(row.x) << ", " << shown(row.y) << ": " << shown(result);
        }
    }
}

TEST_P(SpecialArguments, HaveTheirResultsAndWarnings) {
    constexpr auto domain = zppStatusDomain, singular = zppStatusSingularity, overflow = zppStatusOverflow,
                   underflow = zppStatusUnderflow;
    one("Inv", zppsInv_64f_A53,
        {{0.0, kInf, singular},
         {-0.0, -kInf, singular},
         {-kInf, -0.0},
         {kNan, kNan},
         {-0x1p-1024, -kInf},
         {0x1.fffffffffffffp1023, 0x1p-1024}});
    one("Sqrt", zppsSqrt_64f_A53,
        {{0.0, 0.0},
         {-0.0, -0.0},
         {kInf, kInf},
         {-0x1p-1074, kNan, domain},
         {-1, kNan, domain},
         {-kInf, kNan, domain},
         {kNan, kNan},
         {0x1p-1074, 0x1p-537}});
    one("InvSqrt", zppsInvSqrt_64f_A53,
        {{0.0, kInf},
         {-0.0, -kInf},
         {kInf, 0.0},
         {-kInf, kNan},
         {-1, kNan},
         {-0x1p-1074, kNan},
         {kNan, kNan}});
    one("Cbrt", zppsCbrt_64f_A53,
        {{0.0, 0.0}, {-0.0, -0.0}, {kInf, kInf}, {-kInf, -kInf}, {kNan, kNan}, {-0x1p-1074, -0x1p-358}});
    one("InvCbrt", zppsInvCbrt_64f_A53,
        {{0.0, kInf}, {-0.0, -kInf}, {kInf, 0.0}, {-kInf, -0.0}, {kNan, kNan}, {-0x1p-1074, -0x1p358}});
    one("Acosh", zppsAcosh_64f_A53,
        {{1, 0.0},
         {0x1.fffffffffffffp-1, kNan, domain},
         {-0.0, kNan, domain},
         {-2, kNan, domain},
         {-kInf, kNan, domain},
         {kInf, kInf},
         {kNan, kNan}});
    one("Asinh", zppsAsinh_64f_A53,
        {{0.0, 0.0}, {-0.0, -0.0}, {kInf, kInf}, {-kInf, -kInf}, {kNan, kNan}, {-0x1p-1074, -0x1p-1074}});
    one("Atanh", zppsAtanh_64f_A53,
        {{0.0, 0.0},
         {-0.0, -0.0},
         {1, kInf, singular},
         {-1, -kInf, singular},
         {-0x1.0000000000001p0, kNan, domain},
         {kInf, kNan, domain},
         {kNan, kNan},
         {-0x1p-1074, -0x1p-1074}});
    one("Exp", zppsExp_64f_A53,
        {{kInf, kInf},
         {-kInf, 0.0},
         {0.0, 1},
         {-0.0, 1},
         {710, kInf, overflow},
         {0x1.62e42fefa39efp9, 0x1.fffffffffff2ap1023},
         {0x1.62e42fefa39f0p9, kInf, overflow},
         {-0x1.74910d52d3051p9, 0x1p-1074},
         {-0x1.74910d52d3052p9, 0.0, underflow}});
    one("Ln", zppsLn_64f_A53,
        {{0.0, -kInf, singular},
         {-0.0, -kInf, singular},
         {-1, kNan, domain},
         {-0x1p-1074, kNan, domain},
         {-kInf, kNan, domain},
         {kInf, kInf},
         {kNan, kNan},
         {1, 0.0}});
    one("Log10", zppsLog10_64f_A53,
        {{0.0, -kInf, singular},
         {-0.0, -kInf, singular},
         {-1, kNan, domain},
         {-kInf, kNan, domain},
         {kInf, kInf},
         {kNan, kNan},
         {1, 0.0}});
    one("Sin", zppsSin_64f_A53,
        {{0.0, 0.0}, {-0.0, -0.0}, {kInf, kNan, domain}, {-kInf, kNan, domain}, {kNan, kNan}});
    one("Cos", zppsCos_64f_A53, {{-0.0, 1}, {kInf, kNan, domain}, {kNan, kNan}});
    one("Cosh", zppsCosh_64f_A53,
        {{0.0, 1},
         {-0.0, 1},
         {0x1.633ce8fb9f87dp9, 0x1.ffffffffffd3bp1023},
         {0x1.633ce8fb9f87ep9, kInf, overflow},
         {-711, kInf, overflow},
         {-kInf, kInf},
         {kNan, kNan}});
    one("Sinh", zppsSinh_64f_A53,
        {{0.0, 0.0},
         {-0.0, -0.0},
         {-0x1p-1074, -0x1p-1074},
         {-0x1.633ce8fb9f87dp9, -0x1.ffffffffffd3bp1023},
         {0x1.633ce8fb9f87ep9, kInf, overflow},
         {-0x1.633ce8fb9f87ep9, -kInf, overflow},
         {-kInf, -kInf},
         {kNan, kNan}});
    one("Tanh", zppsTanh_64f_A53,
        {{0.0, 0.0}, {-0.0, -0.0}, {-0x1p-1074, -0x1p-1074}, {23, 1}, {-kInf, -1}, {kNan, kNan}});
    one("Erf", zppsErf_64f_A53,
        {{0.0, 0.0}, {-0.0, -0.0}, {-0x1p-1074, -0x1p-1074}, {-kInf, -1}, {7, 1}, {kNan, kNan}});
    one("Erfc", zppsErfc_64f_A53,
        {{0.0, 1},
         {-0.0, 1},
         {0x1p-1074, 1},
         {0x1.b39dc41e48bfcp4, 0x1p-1074},
         {0x1.b39dc41e48bfdp4, 0.0, underflow},
         {1e300, 0.0, underflow},
         {kInf, 0.0},
         {-7, 2},
         {-kInf, 2},
         {kNan, kNan}});
    one("Tan", zppsTan_64f_A53, {{0.0, 0.0}, {-0.0, -0.0}, {-kInf, kNan, domain}, {kNan, kNan}});
    one("Acos", zppsAcos_64f_A53,
        {{1, 0.0},
         {-1, std::numbers::pi},
         {0.0, std::numbers::pi / 2},
         {-0.0, std::numbers::pi / 2},
         {0x1.0000000000001p0, kNan, domain},
         {-kInf, kNan, domain},
         {kNan, kNan}});
    one("Asin", zppsAsin_64f_A53,
        {{1, std::numbers::pi / 2},
         {-0.0, -0.0},
         {0x1p-1074, 0x1p-1074},
         {-2, kNan, domain},
         {kInf, kNan, domain},
         {kNan, kNan}});
    one("Atan", zppsAtan_64f_A53,
        {{0.0, 0.0},
         {-0.0, -0.0},
         {kInf, std::numbers::pi / 2},
         {-kInf, -std::numbers::pi / 2},
         {0x1p-1074, 0x1p-1074},
         {kNan, kNan}});
}

// As C has them, for each pair: y, then x.
TEST_P(SpecialArguments, OfAnglesOfPoints) {
    constexpr double kParts[] = {0.0, -0.0, 0x1p-1074, -1, 3, 0x1p1023, -kInf, kInf, kNan};
    std::vector<double> y, x;
    for (const double a : kParts)
        for (const double b : kParts) y.push_back(a), x.push_back(b);
    std::vector<double> angles(y.size());
    ASSERT_EQ(zppsAtan2_64f_A53(y.data(), x.data(), angles.data(), static_cast<int>(y.size())), zppStatusOk);
    for (std::size_t i = 0; i < y.size(); ++i)
        EXPECT_TRUE(same(angles[i], std::atan2(y[i], x[i])))
            << shown(y[i]) << ", " << shown(x[i]) << ": " << shown(angles[i]);
}

TEST_P(SpecialArguments, OfQuotients) {
    const struct {
        double dividend, divisor, quotient;
        ZppStatus status = zppStatusOk;
    } rows[] = {
        {1, -0.0, -kInf, zppStatusSingularity},
        {-kInf, 0.0, -kInf, zppStatusSingularity},
        {0.0, 0.0, kNan, zppStatusSingularity},
        {kNan, 0.0, kNan},
        {kInf, kInf, kNan},
        {-1, kInf, -0.0},
        {0x1p1000, -0x1p-1000, -kInf},
        {-0x1.8p-1073, 2, -0x1p-1073},
    };
    for (const auto& row : rows) {
        double result;
        EXPECT_EQ(zppsDiv_64f_A53(&row.dividend, &row.divisor, &result, 1), row.status);
        EXPECT_TRUE(same(result, row.quotient)) << shown(row.dividend) << " / " << shown(row.divisor);
    }
}

TEST_P(SpecialArguments, OfPowersHaveTheirResultsAndWarnings) {
    constexpr auto domain = zppStatusDomain, singular = zppStatusSingularity;
    constexpr double kLeast = 0x1p-1074, kMost = 0x1.fffffffffffffp1023;
    const auto test = [&](const char* name, auto f) {
        two(name, f,
            {{0.0, -1, kInf, singular},
             {-0.0, -1, -kInf, singular},
             {-0.0, -2, kInf, singular},
             {-0.0, -.5, kInf, singular},
             {0.0, -kInf, kInf, singular},
             {-0.0, -kInf, kInf, singular},
             {0.0, 1, 0.0},
             {-0.0, 3, -0.0},
             {-0.0, 2, 0.0},
             {-0.0, kInf, 0.0},
             {0.0, 0.0, 1},
             {kNan, 0.0, 1},
             {-kInf, -0.0, 1},
             {1, kNan, 1},
             {1, -kInf, 1},
             {kNan, 1, kNan},
             {2, kNan, kNan},
             {0.0, kNan, kNan},
             {-1, kInf, 1},
             {-1, -kInf, 1},
             {.5, -kInf, kInf},
             {-.5, kInf, 0.0},
             {-2, kInf, kInf},
             {2, -kInf, 0.0},
             {kInf, .5, kInf},
             {kInf, -1, 0.0},
             {-kInf, 3, -kInf},
             {-kInf, 2, kInf},
             {-kInf, .5, kInf},
             {-kInf, -3, -0.0},
             {-kInf, -2, 0.0},
             {-kInf, 1e300, kInf},
             {-kInf, -kInf, 0.0},
             {-8, 1. / 3, kNan, domain},
             {-8, kLeast, kNan, domain},
             {-kLeast, .5, kNan, domain},
             {-2, 3, -8},
             {-3, 2, 9},
             {-1, 0x1p53 - 1, -1},
             {-1, 0x1p53, 1},
             {2, 1024, kInf},
             {-2, 1025, -kInf},
             {2, -1074, kLeast},
             {-2, -1073, -2 * kLeast},
             {2, -1075, 0.0},
             {-2, -1075, -0.0},
             {-1e300, -1e300, 0.0},
             {1 + 0x1p-52, 1e308, kInf},
             {kLeast, 1, kLeast},
             {-kLeast, -.5, kNan, domain},
             {kLeast, -.5, 0x1p537},
             {kMost, 1, kMost},
             {-kMost, 1, -kMost},
             {2, kLeast, 1}});
    };
    test("Pow", zppsPow_64f_A53);
    test("Powx", [](const double* x, const double* y, double* results, int len) {
        return zppsPowx_64f_A53(x, *y, results, len);
    });
}

TEST_P(SpecialArguments, PowersOfTenHaveWholeDecimalLogarithms) {
    for (int exponent = -307; exponent <= 308; ++exponent) {
        const double x = std::strtod(("1e" + std::to_string(exponent)).c_str(), nullptr);
        double y;
        zppsLog10_64f_A53(&x, &y, 1);
        EXPECT_EQ(y, exponent);
    }
}

// The sine goes to the first destination.
TEST_P(SpecialArguments, OfBothSineAndCosine) {
    const double x[] = {0.0, -0.0, kInf, 0.5, kNan};
    double sines[5], cosines[5];
    ASSERT_EQ(zppsSinCos_64f_A53(x, sines, cosines, 5), zppStatusDomain);
    EXPECT_TRUE(same(sines[0], 0.0) && same(sines[1], -0.0) && std::isnan(sines[2]) && std::isnan(sines[4]));
    EXPECT_TRUE(cosines[0] == 1 && cosines[1] == 1 && std::isnan(cosines[2]) && std::isnan(cosines[4]));
    EXPECT_LT(sines[3], cosines[3]);
}

// The NaN of the argument, quiet, with its payload and sign.
TEST_P(SpecialArguments, KeepThePayloadOfNan) {
    for (const std::uint64_t bits : {0x7FF0000000000001u, 0xFFF4000000012345u, 0x7FF8000000ABCDEFu}) {
        const double x[] = {1, std::bit_cast<double>(bits), 1};
        double y[3];
        ASSERT_EQ(zppsExp_64f_A53(x, y, 3), zppStatusOk);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(y[1]), bits | 0x0008000000000000u);
        ASSERT_EQ(zppsSqrt_64f_A53(x, y, 3), zppStatusOk);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(y[1]), bits | 0x0008000000000000u);
    }
    const double negative = -1;
    double root;
    EXPECT_EQ(zppsSqrt_64f_A53(&negative, &root, 1), zppStatusDomain);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(root), 0x7FF8A5A55A5A5A5Au);
}

// The last one in the order of elements, whatever the width of a register.
TEST_P(SpecialArguments, GiveTheLastWarning) {
    std::vector<double> x(131, 1.0), y(131);
    for (const std::size_t last :
         {std::size_t{1}, std::size_t{6}, std::size_t{63}, std::size_t{64}, std::size_t{130}}) {
        x.assign(131, 1.0);
        x[0] = -1, x[last] = 0;
        EXPECT_EQ(zppsLn_64f_A53(x.data(), y.data(), 131), zppStatusSingularity);
        x[0] = 0, x[last] = -1;
        EXPECT_EQ(zppsLn_64f_A53(x.data(), y.data(), 131), zppStatusDomain);
    }
}

}  // namespace
}  // namespace zpp::test
