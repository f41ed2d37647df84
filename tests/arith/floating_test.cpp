#include <cfloat>
#include <cmath>
#include <limits>

#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/guarded.h"
#include "tests/support/random.h"
#include "tests/support/rounded.h"
#include "zpp/arith.h"

namespace zpp::test {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

class Floating : public BoundTest {
  protected:
    // Equal to the bit, all NaNs being one; but the builds that compute with the x87 unit may round a
    // subnormal result twice.
    testing::AssertionResult same(double expected, double actual) const {
        if (std::isnan(expected) && std::isnan(actual)) return testing::AssertionSuccess();
        const auto e = std::bit_cast<std::int64_t>(expected);
        const auto a = std::bit_cast<std::int64_t>(actual);
        const bool twice = GetParam().isa < kSse2Isa && std::fabs(expected) < DBL_MIN;
        if (e == a || (twice && std::abs(e - a) <= 1)) return testing::AssertionSuccess();
        return testing::AssertionFailure() << std::hexfloat << actual << ", expected " << expected;
    }
    testing::AssertionResult same(Zpp64fc expected, Zpp64fc actual) const {
        const auto re = same(expected.re, actual.re);
        return re ? same(expected.im, actual.im) : re;
    }
    template <class T>
    void expectSame(const std::vector<T>& expected, const Guarded<T>& actual, const char* what) const {
        for (std::size_t i = 0; i < expected.size(); ++i)
            ASSERT_TRUE(same(expected[i], actual.data()[i]))
                << what << ", element " << i << " of " << expected.size();
        ASSERT_TRUE(actual.intact()) << what;
    }
};
ZPP_FOR_ALL_BINDINGS(Floating);

// One number in four is special. Tiny ones are powers of two.
double drawNumber(Random& random) {
    constexpr double kSpecial[] = {0.0, -0.0,    kInf,     -kInf,   kNan,     1,
                                   -1,  DBL_MAX, -DBL_MAX, DBL_MIN, 0x1p-1074};
    return random.below(4) == 0 ? kSpecial[random.below(std::size(kSpecial))] : random.uniform(-4, 4);
}
void draw(Random& random, double& x) { x = drawNumber(random); }
void draw(Random& random, Zpp64fc& x) { x = {drawNumber(random), drawNumber(random)}; }

template <class T>
std::vector<T> drawVector(Random& random, int len) {
    std::vector<T> values(static_cast<std::size_t>(len));
    for (T& x : values) draw(random, x);
    return values;
}

double signedInfinity(double a) { return a > 0 ? kInf : a < 0 ? -kInf : kNan; }

double subtract(double a, double b) { return difference(b, a); }
double divide(double a, double b) { return a == 0 || std::isnan(a) ? signedInfinity(b) : quotient(b, a); }

Zpp64fc subtract(Zpp64fc a, Zpp64fc b) { return difference(b, a); }
double squaredNorm(Zpp64fc x) { return sum(product(x.im, x.im), product(x.re, x.re)); }
Zpp64fc divide(Zpp64fc b, Zpp64fc a) {
    const double norm = squaredNorm(b);
    if (norm == 0 || std::isnan(norm)) return {signedInfinity(a.re), signedInfinity(a.im)};
    const double inverse = quotient(1, norm);
    const Zpp64fc scaled = product(a, conjugate(b));
    return {product(scaled.re, inverse), product(scaled.im, inverse)};
}
double multiplyC(double x, double v) { return v == 1 || std::isnan(v) ? x : v == 0 ? 0.0 : product(x, v); }

template <class T>
struct Binary {
    const char* name;
    ZppStatus (*call)(const T*, const T*, T*, int);
    ZppStatus (*inPlace)(const T*, T*, int);
    T (*expected)(T, T);
    bool divides = false;
};

const Binary<double> kBinary[] = {
    {"Add_64f", zppsAdd_64f, zppsAdd_64f_I, sum},
    {"Sub_64f", zppsSub_64f, zppsSub_64f_I, subtract},
    {"Mul_64f", zppsMul_64f, zppsMul_64f_I, product},
    {"Div_64f", zppsDiv_64f, zppsDiv_64f_I, divide, true},
};
const Binary<Zpp64fc> kComplexBinary[] = {
    {"Add_64fc", zppsAdd_64fc, zppsAdd_64fc_I, sum},
    {"Sub_64fc", zppsSub_64fc, zppsSub_64fc_I, subtract},
    {"Mul_64fc", zppsMul_64fc, zppsMul_64fc_I, product},
    {"Div_64fc", zppsDiv_64fc, zppsDiv_64fc_I, divide, true},
};

bool isZeroOrNan(double x) { return x == 0 || std::isnan(x); }
bool isZeroOrNan(Zpp64fc x) { return isZeroOrNan(squaredNorm(x)); }

TEST_P(Floating, VectorWithVector) {
    const auto run = [&]<class T>(const Binary<T>& c) {
        Random random(1);
        for (const int len : awkwardLengths()) {
            const auto a = drawVector<T>(random, len), b = drawVector<T>(random, len);
            std::vector<T> expected;
            bool zeroMet = false;
            for (std::size_t i = 0; i < a.size(); ++i) {
                expected.push_back(c.expected(a[i], b[i]));
                zeroMet |= c.divides && isZeroOrNan(a[i]);
            }
            const ZppStatus status = zeroMet ? zppStatusDivByZero : zppStatusOk;
            Guarded<T> src1(a), src2(b), dst(a.size());
            EXPECT_EQ(c.call(src1, src2, dst, len), status) << c.name;
            expectSame(expected, dst, c.name);
            EXPECT_EQ(c.inPlace(src1, src2, len), status) << c.name;
            expectSame(expected, src2, c.name);
        }
        EXPECT_EQ(c.call(nullptr, nullptr, nullptr, 0), zppStatusNullPointer) << c.name;
        EXPECT_EQ(c.inPlace(nullptr, nullptr, 0), zppStatusNullPointer) << c.name;
    };
    for (const auto& c : kBinary) run(c);
    for (const auto& c : kComplexBinary) run(c);
}

template <class T>
struct WithConstant {
    const char* name;
    ZppStatus (*call)(const T*, T, T*, int);
    ZppStatus (*inPlace)(T, T*, int);
    T (*expected)(T src, T val);
};
const WithConstant<double> kWithConstant[] = {
    {"AddC_64f", zppsAddC_64f, zppsAddC_64f_I,
     [](double x, double v) { return isZeroOrNan(v) ? x : sum(x, v); }},
    {"SubC_64f", zppsSubC_64f, zppsSubC_64f_I,
     [](double x, double v) { return isZeroOrNan(v) ? x : difference(x, v); }},
    {"SubCRev_64f", zppsSubCRev_64f, zppsSubCRev_64f_I, subtract},
    {"MulC_64f", zppsMulC_64f, zppsMulC_64f_I, multiplyC},
    {"DivC_64f", zppsDivC_64f, zppsDivC_64f_I,
     [](double x, double v) { return multiplyC(x, quotient(1, v)); }},
};
const WithConstant<Zpp64fc> kWithComplexConstant[] = {
    {"AddC_64fc", zppsAddC_64fc, zppsAddC_64fc_I, sum},
    {"SubC_64fc", zppsSubC_64fc, zppsSubC_64fc_I, difference},
    {"SubCRev_64fc", zppsSubCRev_64fc, zppsSubCRev_64fc_I, subtract},
    {"MulC_64fc", zppsMulC_64fc, zppsMulC_64fc_I, product},
    {"DivC_64fc", zppsDivC_64fc, zppsDivC_64fc_I, [](Zpp64fc x, Zpp64fc v) { return divide(v, x); }},
};

TEST_P(Floating, VectorWithConstant) {
    const auto run = [&]<class T>(const WithConstant<T>& c, T val) {
        Random random(2);
        for (const int len : awkwardLengths()) {
            const auto values = drawVector<T>(random, len);
            std::vector<T> expected;
            for (const T& x : values) expected.push_back(c.expected(x, val));
            Guarded<T> src(values), dst(values.size());
            EXPECT_EQ(c.call(src, val, dst, len), zppStatusOk) << c.name;
            expectSame(expected, dst, c.name);
            EXPECT_EQ(c.inPlace(val, src, len), zppStatusOk) << c.name;
            expectSame(expected, src, c.name);
        }
        // Some constants go a way of their own.
        Guarded<T> src(4), dst(4);
        EXPECT_EQ(c.call(nullptr, val, dst, 0), zppStatusNullPointer) << c.name;
        EXPECT_EQ(c.call(src, val, nullptr, 0), zppStatusNullPointer) << c.name;
        EXPECT_EQ(c.inPlace(val, nullptr, 0), zppStatusNullPointer) << c.name;
        EXPECT_EQ(c.call(src, val, dst, 0), zppStatusSizeError) << c.name;
        EXPECT_EQ(c.inPlace(val, dst, -1), zppStatusSizeError) << c.name;
        EXPECT_TRUE(dst.untouched()) << c.name;
    };
    for (const auto& c : kWithConstant)
        for (const double val : {0.0, -0.0, 1.0, -1.0, 3.0, -0.7, 1e300, kInf, kNan}) {
            const bool refused = c.call == zppsDivC_64f && isZeroOrNan(val);
            if (!refused) run(c, val);
        }
    for (const auto& c : kWithComplexConstant)
        for (const Zpp64fc val : {Zpp64fc{1, 0}, {0.3, -2}, {0, 5}, {1e-3, 1e5}, {kInf, 1}}) run(c, val);
}

TEST_P(Floating, AddsProducts) {
    const auto run = [&]<class T>(ZppStatus (*call)(const T*, const T*, T*, int)) {
        Random random(3);
        for (const int len : awkwardLengths()) {
            const auto a = drawVector<T>(random, len), b = drawVector<T>(random, len);
            auto total = drawVector<T>(random, len);
            Guarded<T> src1(a), src2(b), dst(total);
            for (std::size_t i = 0; i < a.size(); ++i) total[i] = sum(total[i], product(a[i], b[i]));
            EXPECT_EQ(call(src1, src2, dst, len), zppStatusOk);
            expectSame(total, dst, "AddProduct");
        }
        EXPECT_EQ(call(nullptr, nullptr, nullptr, 0), zppStatusNullPointer);
    };
    run(zppsAddProduct_64f);
    run(zppsAddProduct_64fc);
}

TEST_P(Floating, DividesByZero) {
    constexpr std::uint64_t kQuietNan = 0xFFF8000000000000;
    const std::vector<double> divisors = {0, -0.0, 2, 0, kNan, kNan, 0},
                              dividends = {3, -3, 4, 0, 5, kNan, kNan};
    Guarded<double> src1(divisors), src2(dividends), dst(divisors.size());
    EXPECT_EQ(zppsDiv_64f(src1, src2, dst, dst.len()), zppStatusDivByZero);
    EXPECT_TRUE(sameBits({kInf, -kInf, 2.0, std::bit_cast<double>(kQuietNan), kInf,
                          std::bit_cast<double>(kQuietNan), std::bit_cast<double>(kQuietNan)},
                         dst.values()));

    // The second divisor is too small for its squared norm.
    const std::vector<Zpp64fc> zeros = {{0, -0.0}, {1e-200, 1e-200}}, numbers = {{1, -1}, {0, kInf}};
    Guarded<Zpp64fc> src1c(zeros), src2c(numbers), dstc(2);
    EXPECT_EQ(zppsDiv_64fc(src1c, src2c, dstc, 2), zppStatusDivByZero);
    EXPECT_TRUE(sameBits({{kInf, -kInf}, {std::bit_cast<double>(kQuietNan), kInf}}, dstc.values()));
}

TEST_P(Floating, RefusesToDivideByZeroConstants) {
    Guarded<double> dst(1);
    Guarded<Zpp64fc> dstc(1);
    double x = 1;
    Zpp64fc xc{1, 1};
    for (const double zero : {0.0, -0.0, kNan}) {
        EXPECT_EQ(zppsDivC_64f(nullptr, zero, dst, 0), zppStatusDivideByZeroError);  // before the pointers
        EXPECT_EQ(zppsDivC_64f(&x, zero, dst, 1), zppStatusDivideByZeroError);
        EXPECT_EQ(zppsDivC_64f_I(zero, dst, 1), zppStatusDivideByZeroError);
        EXPECT_EQ(zppsDivC_64fc(nullptr, {zero, 0}, dstc, 0), zppStatusNullPointer);  // behind them
        EXPECT_EQ(zppsDivC_64fc(&xc, {zero, 0}, dstc, 0), zppStatusSizeError);
        EXPECT_EQ(zppsDivC_64fc(&xc, {zero, -0.0}, dstc, 1), zppStatusDivideByZeroError);
        EXPECT_EQ(zppsDivC_64fc_I({0, zero}, dstc, 1), zppStatusDivideByZeroError);
    }
    EXPECT_TRUE(dst.untouched() && dstc.untouched());
}

}  // namespace
}  // namespace zpp::test
