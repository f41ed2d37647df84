#include "frame/cpu.h"
#include "tests/support/binding.h"
#include "tests/support/rounded.h"
#include "tests/support/table.h"
#include "zpp/arith.h"

namespace zpp::test {
namespace {

class Floating : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Floating);

bool isZeroOrNan(double x) { return x == 0 || std::isnan(x); }
double signedInfinity(double a) { return a > 0 ? kInf : a < 0 ? -kInf : kNan; }

template <class T>
T differenceFrom(T a, T b) {
    return difference(b, a);
}
double copyOrSum(double x, double v) { return isZeroOrNan(v) ? x : sum(x, v); }
double copyOrDifference(double x, double v) { return isZeroOrNan(v) ? x : difference(x, v); }
double copyOrProduct(double x, double v) {
    return v == 1 || std::isnan(v) ? x : v == 0 ? 0.0 : product(x, v);
}
template <class T>
T sumWithProduct(T a, T b, T total) {
    return sum(total, product(a, b));
}

double squaredNorm(Zpp64fc x) { return sum(product(x.im, x.im), product(x.re, x.re)); }
Zpp64fc complexQuotient(Zpp64fc a, Zpp64fc b) {
    const double inverse = quotient(1, squaredNorm(b));
    const Zpp64fc scaled = product(a, conjugate(b));
    return {product(scaled.re, inverse), product(scaled.im, inverse)};
}
Warned<double> divided(double b, double a) {
    if (isZeroOrNan(b)) return {signedInfinity(a), zppStatusDivByZero};
    return quotient(a, b);
}
Warned<Zpp64fc> divided(Zpp64fc b, Zpp64fc a) {
    if (isZeroOrNan(squaredNorm(b)))
        return {{signedInfinity(a.re), signedInfinity(a.im)}, zppStatusDivByZero};
    return complexQuotient(a, b);
}

TEST_P(Floating, VectorWithVector) {
    binary("Add_64f", zppsAdd_64f, zppsAdd_64f_I, sum);
    binary("Sub_64f", zppsSub_64f, zppsSub_64f_I, differenceFrom<double>);
    binary("Mul_64f", zppsMul_64f, zppsMul_64f_I, product);
    binary("Div_64f", zppsDiv_64f, zppsDiv_64f_I, divided);
    binary("Add_64fc", zppsAdd_64fc, zppsAdd_64fc_I, sum);
    binary("Sub_64fc", zppsSub_64fc, zppsSub_64fc_I, differenceFrom<Zpp64fc>);
    binary("Mul_64fc", zppsMul_64fc, zppsMul_64fc_I, product);
    binary("Div_64fc", zppsDiv_64fc, zppsDiv_64fc_I, divided);
}

TEST_P(Floating, VectorWithConstant) {
    const std::vector<double> divisors = {1, -1, 3, -0.7, 1e300, 0x1.fffffffffffffp-1, 0x1p-1074, kInf};
    auto reals = divisors;
    reals.insert(reals.end(), {0.0, -0.0, kNan});
    withConstant("AddC_64f", zppsAddC_64f, zppsAddC_64f_I, copyOrSum, reals);
    withConstant("SubC_64f", zppsSubC_64f, zppsSubC_64f_I, copyOrDifference, reals);
    withConstant("SubCRev_64f", zppsSubCRev_64f, zppsSubCRev_64f_I, differenceFrom<double>, reals);
    withConstant("MulC_64f", zppsMulC_64f, zppsMulC_64f_I, copyOrProduct, reals);
    withConstant(
        "DivC_64f", zppsDivC_64f, zppsDivC_64f_I,
        [](double x, double v) { return copyOrProduct(x, quotient(1, v)); }, divisors);
    const std::vector<Zpp64fc> numbers = {{1, 0}, {0.3, -2}, {0, 5}, {1e-3, 1e5}, {0.6, 0.8}, {kInf, 1}};
    withConstant("AddC_64fc", zppsAddC_64fc, zppsAddC_64fc_I, sum, numbers);
    withConstant("SubC_64fc", zppsSubC_64fc, zppsSubC_64fc_I, difference, numbers);
    withConstant("SubCRev_64fc", zppsSubCRev_64fc, zppsSubCRev_64fc_I, differenceFrom<Zpp64fc>, numbers);
    withConstant("MulC_64fc", zppsMulC_64fc, zppsMulC_64fc_I, product, numbers);
    withConstant("DivC_64fc", zppsDivC_64fc, zppsDivC_64fc_I, complexQuotient, numbers);
}

TEST_P(Floating, AddsProducts) {
    expectDrawn<double, double, double, double>("AddProduct_64f", inPlace(zppsAddProduct_64f),
                                                sumWithProduct<double>);
    expectDrawn<Zpp64fc, Zpp64fc, Zpp64fc, Zpp64fc>("AddProduct_64fc", inPlace(zppsAddProduct_64fc),
                                                    sumWithProduct<Zpp64fc>);
}

// Results of 16 MiB and more are stored past the caches, but for the ends, which are not aligned for that.
TEST_P(Floating, StoresLongResults) {
    const auto words = Random(3).reals((1 << 21) + 5);
    expectRow<double>("Add_64f", outOfPlace(zppsAdd_64f), sum, Lengths::kWhole, words, words);
    const std::vector<Zpp64fc> pairs((1 << 20) + 3, {0.1, 0.7});
    expectRow<Zpp64fc>("Mul_64fc", outOfPlace(zppsMul_64fc), product, Lengths::kWhole, pairs, pairs);
    const auto addZero = [](const double* src, double* dst, int len) {
        return zppsAddC_64f(src, 0, dst, len);
    };
    expectRow<double>(
        "AddC_64f", outOfPlace(addZero), [](double x) { return x; }, Lengths::kWhole, words);
}

// Any digits, and an exponent near the given one.
void drawNear(Random& random, int exponent, double& x) {
    x = std::ldexp(random.uniform(-1, 1), exponent + static_cast<int>(random.below(4)));
}
void drawNear(Random& random, int exponent, Zpp64fc& x) {
    drawNear(random, exponent, x.re);
    drawNear(random, exponent, x.im);
}

template <class T, class Multiply, class Divide, class AddProduct>
void expectRoundedOnce(Multiply multiply, Divide divide, AddProduct addProduct) {
    // The exponents of factors, of which the first is also the divisor.
    const std::pair<int, int> exponents[] = {{-510, -515}, {513, -511}, {0, -1024}, {-1060, 36},
                                             {510, 511},   {-512, 510}, {-539, -2}, {511, 511}};
    for (const auto& [first, second] : exponents) {
        Random random;
        std::vector<T> a(500), b(500), total(500);
        for (T& x : a) drawNear(random, first, x);
        for (T& x : b) drawNear(random, second, x);
        for (T& x : total) drawNear(random, -1024, x);
        expectRow<T>("Mul", outOfPlace(multiply), product, Lengths::kWhole, a, b);
        expectRow<T>("Div", outOfPlace(divide), divided, Lengths::kWhole, a, b);
        expectRow<T>("AddProduct", inPlace(addProduct), sumWithProduct<T>, Lengths::kWhole, a, b, total);
    }
}

TEST_P(Floating, RoundsOnceAtTheEndsOfTheRange) {
    expectRoundedOnce<double>(zppsMul_64f, zppsDiv_64f, zppsAddProduct_64f);
    expectRoundedOnce<Zpp64fc>(zppsMul_64fc, zppsDiv_64fc, zppsAddProduct_64fc);

    double x = 0x0.fffffffffffffp-1022;
    EXPECT_EQ(zppsMulC_64f_I(0x1.fffffffffffffp-1, &x, 1), zppStatusOk);
    EXPECT_EQ(x, 0x0.fffffffffffffp-1022);
    const struct {
        Zpp64fc dividend, divisor, expected;
    } quotients[] = {{{1, 0}, {1.7e-162, 1.7e-162}, {kInf, -kInf}},
                     {{1.3e154, 0}, {1.3e154, 0}, {0x1.ffffffffffffcp-1, 0}}};
    for (const auto& q : quotients) {
        Zpp64fc byVector = q.dividend, byConstant = q.dividend;
        EXPECT_EQ(zppsDiv_64fc_I(&q.divisor, &byVector, 1), zppStatusOk);
        EXPECT_EQ(zppsDivC_64fc_I(q.divisor, &byConstant, 1), zppStatusOk);
        EXPECT_TRUE(same(q.expected, byVector)) << shown(byVector);
        EXPECT_TRUE(same(q.expected, byConstant)) << shown(byConstant);
    }
}

// The exception flags of both units.
void clearFlags() {
    const unsigned mxcsr = 0x1F80;
    __asm__ volatile("fnclex");
    if (hasSse()) __asm__ volatile("ldmxcsr %0" : : "m"(mxcsr));
}
bool dividedByZero() {
    unsigned mxcsr = 0;
    unsigned short x87;
    __asm__ volatile("fnstsw %0" : "=m"(x87));
    if (hasSse()) __asm__ volatile("stmxcsr %0" : "=m"(mxcsr));
    return ((mxcsr | x87) & 4) != 0;
}

// By their bits: the NaN is of one kind.
TEST_P(Floating, DividesByZeroWithoutRaisingTheFlag) {
    const auto nan = std::bit_cast<double>(std::uint64_t{0xFFF8000000000000});
    // The third complex divisor is too small for its squared norm.
    const std::vector<double> divisors = {0, -0.0, 2, 0, kNan, kNan, 0, -0.0},
                              dividends = {3, -3, 4, 0, 5, kNan, kNan, kInf},
                              quotients = {kInf, -kInf, 2, nan, kInf, nan, nan, kInf};
    const std::vector<Zpp64fc> zeros = {{0, 0}, {-0.0, 0}, {1e-200, 1e-200}, {kNan, 0}, {0, 2}},
                               numbers = {{1, -1}, {0, -3}, {0, kInf}, {kNan, 2}, {2, 4}},
                               results = {{kInf, -kInf}, {nan, -kInf}, {nan, kInf}, {nan, kInf}, {2, -1}};
    for (std::size_t n = 1; n <= divisors.size(); ++n) {
        const auto firstOf = [=](const auto& v) {
            return std::decay_t<decltype(v)>(v.begin(), v.begin() + static_cast<long>(std::min(n, v.size())));
        };
        Guarded<double> src1(firstOf(divisors)), src2(firstOf(dividends)), dst(src1.size());
        Guarded<Zpp64fc> src1c(firstOf(zeros)), src2c(firstOf(numbers)), dstc(src1c.size());
        clearFlags();
        const ZppStatus status = zppsDiv_64f(src1, src2, dst, dst.len()),
                        statusc = zppsDiv_64fc(src1c, src2c, dstc, dstc.len());
        EXPECT_FALSE(dividedByZero()) << n;
        EXPECT_TRUE(status == zppStatusDivByZero && statusc == zppStatusDivByZero) << n;
        EXPECT_TRUE(sameBits(firstOf(quotients), dst.values())) << n;
        EXPECT_TRUE(sameBits(firstOf(results), dstc.values())) << n;
    }
    for (const std::size_t n : {1, 40}) {  // integers are divided as doubles
        const std::vector<Zpp32s> none(n, 0);
        std::vector<Zpp32s> sevens(n, 7);
        clearFlags();
        EXPECT_EQ(zppsDiv_32s_ISfs(none.data(), sevens.data(), static_cast<int>(n), 0), zppStatusDivByZero);
        EXPECT_FALSE(dividedByZero()) << n;
    }
    Zpp64fc number{1, 2};  // the flag is raised where it is said to be
    EXPECT_EQ(zppsDivC_64fc_I({1e-200, 1e-200}, &number, 1), zppStatusOk);
    EXPECT_TRUE(dividedByZero() && same(number, {kInf, kInf}));
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

// Some constants go a way of their own: with the same checks, and without a write in place.
TEST_P(Floating, TakesShortcuts) {
    const struct {
        ZppStatus (*call)(const double*, double, double*, int);
        ZppStatus (*inPlace)(double, double*, int);
        double val;
        bool writes = false;
    } cases[] = {{zppsAddC_64f, zppsAddC_64f_I, 0}, {zppsAddC_64f, zppsAddC_64f_I, kNan},
                 {zppsSubC_64f, zppsSubC_64f_I, 0}, {zppsSubC_64f, zppsSubC_64f_I, kNan},
                 {zppsMulC_64f, zppsMulC_64f_I, 1}, {zppsMulC_64f, zppsMulC_64f_I, kNan},
                 {zppsDivC_64f, zppsDivC_64f_I, 1}, {zppsMulC_64f, zppsMulC_64f_I, 0, true}};
    for (const auto& c : cases) {
        Guarded<double> src{1, -0.0, kInf}, dst(3);
        EXPECT_EQ(c.call(nullptr, c.val, dst, 0), zppStatusNullPointer);
        EXPECT_EQ(c.call(src, c.val, nullptr, 0), zppStatusNullPointer);
        EXPECT_EQ(c.inPlace(c.val, nullptr, 0), zppStatusNullPointer);
        EXPECT_EQ(c.call(src, c.val, dst, 0), zppStatusSizeError);
        EXPECT_EQ(c.inPlace(c.val, dst, -1), zppStatusSizeError);
        EXPECT_TRUE(dst.untouched());
        if (c.writes) continue;
        src.protect();
        EXPECT_EQ(c.inPlace(c.val, src, 3), zppStatusOk);
        EXPECT_EQ(c.call(src, c.val, src, 3), zppStatusOk);
    }
}

}  // namespace
}  // namespace zpp::test
