#include <climits>

#include "tests/support/binding.h"
#include "tests/support/exact.h"
#include "tests/support/table.h"
#include "zpp/arith.h"

namespace zpp::test {
namespace {

class Integers : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Integers);

// Where one loop ends and the next begins, beside it, and at the ends.
const std::vector<int> kFactors = {0,  -1, -2, -7, -30, -31, -32, -33, -63, -64, INT_MIN, 1,  2,      3,
                                   16, 30, 31, 32, 33,  34,  61,  62,  63,  64,  65,      66, INT_MAX};
const std::vector<Zpp32s> kLimits = {INT_MIN, INT_MIN + 1, -1, 0, 1, INT_MAX};

// Results that are exact still.
struct ExactComplex {
    Exact re, im;
};
struct Fraction {
    std::int64_t numerator, denominator;
};

Zpp32s result(Exact x, int factor) { return rounded<Zpp32s>(scaled(x, factor)); }
Zpp32sc result(ExactComplex x, int factor) { return {result(x.re, factor), result(x.im, factor)}; }

// By long division, bit by bit.
Warned<Zpp32s> result(Fraction x, int factor) {
    const bool negative = (x.numerator < 0) != (x.denominator < 0);
    if (x.denominator == 0) return {x.numerator > 0 ? INT_MAX : negative ? INT_MIN : 0, zppStatusDivByZero};
    if (factor > 32) return 0;
    const auto dividend = static_cast<std::uint64_t>(std::llabs(x.numerator)),
               divisor = static_cast<std::uint64_t>(std::llabs(x.denominator)) << std::max(factor, 0);
    std::uint64_t quotient = dividend / divisor, rest = dividend % divisor;
    for (int place = std::max(factor, -64); place < 0; ++place) {
        const bool bit = rest >= divisor - rest;
        rest = bit ? rest - (divisor - rest) : 2 * rest;
        quotient = std::min(2 * quotient + bit, std::uint64_t{1} << 40);
    }
    const bool up = rest > divisor - rest || (rest == divisor - rest && quotient % 2 == 1);
    const auto magnitude = static_cast<std::int64_t>(quotient + up);
    return static_cast<Zpp32s>(negative ? std::max<std::int64_t>(-magnitude, INT_MIN)
                                        : std::min<std::int64_t>(magnitude, INT_MAX));
}

Exact sumOf(Exact a, Exact b) { return a + b; }
Exact differenceFrom(Exact a, Exact b) { return b - a; }
Exact differenceOf(Exact a, Exact b) { return a - b; }
Exact productOf(Exact a, Exact b) { return a * b; }
Fraction quotientOf(Zpp32s divisor, Zpp32s dividend) { return {dividend, divisor}; }
template <Exact (*op)(Exact, Exact)>
ExactComplex byParts(Zpp32sc a, Zpp32sc b) {
    return {op(a.re, b.re), op(a.im, b.im)};
}
ExactComplex complexProduct(Zpp32sc a, Zpp32sc b) {
    return {Exact{productOf(a.re, b.re)} - productOf(a.im, b.im),
            Exact{productOf(a.re, b.im)} + productOf(a.im, b.re)};
}
ExactComplex realTimesComplex(Zpp32s a, Zpp32sc b) { return {productOf(a, b.re), productOf(a, b.im)}; }

// Four numbers, of which each combination of limits is there: enough for two complex operands.
struct Operands {
    std::vector<Zpp32s> a, b, c;
    std::vector<Zpp32sc> ab, cd;

    Operands() {
        for (const Zpp32s x : kLimits)
            for (const Zpp32s y : kLimits)
                for (const Zpp32s z : kLimits)
                    for (const Zpp32s w : kLimits) add(x, y, z, w);
        Random random;
        for (const Draw draw : kDraws)
            for (int i = 0; i < 150; ++i) {
                const auto one = [&] { return drawn<Zpp32s>(random, draw); };
                const Zpp32s x = one(), y = one(), z = one();
                add(x, y, z, one());
            }
    }
    void add(Zpp32s x, Zpp32s y, Zpp32s z, Zpp32s w) {
        a.push_back(x);
        b.push_back(y);
        c.push_back(z);
        ab.push_back({x, y});
        cd.push_back({z, w});
    }
};

template <class D, class Call, class Rule, class... S>
void expectScaled(const std::string& name, int factor, const Call& call, Rule exact,
                  const std::vector<S>&... values) {
    const bool chooses = factor >= -1 && factor <= 2;
    expectRow<D>(
        name + ", scaleFactor " + std::to_string(factor) + ',', call,
        [=](S... x) { return result(exact(x...), factor); }, chooses ? Lengths::kEvery : Lengths::kWhole,
        values...);
}

template <class A, class D, class F, class I, class Rule>
void vectors(const std::string& name, F call, I callInPlace, Rule exact, const std::vector<A>& a,
             const std::vector<D>& b, const std::vector<int>& factors = kFactors) {
    for (const int factor : factors) {
        expectScaled<D>(name, factor, outOfPlace(call, factor), exact, a, b);
        expectScaled<D>(name + ", in place", factor, inPlace(callInPlace, factor), exact, a, b);
    }
}

template <class T, class F, class I, class Rule>
void constants(const std::string& name, F call, I callInPlace, Rule exact, const std::vector<T>& a,
               const std::vector<T>& values) {
    for (const int factor : kFactors)
        for (const T& val : values) {
            const auto bound = [=](const T* src, T* dst, int len) {
                return call(src, val, dst, len, factor);
            };
            const auto boundInPlace = [=](T* dst, int len) { return callInPlace(val, dst, len, factor); };
            const std::string what = name + ", constant " + shown(val);
            const auto rule = [=](T x) { return exact(x, val); };
            expectScaled<T>(what, factor, outOfPlace(bound), rule, a);
            expectScaled<T>(what + ", in place", factor, inPlace(boundInPlace), rule, a);
        }
}

TEST_P(Integers, VectorWithVector) {
    const Operands x;
    vectors("Add_32s", zppsAdd_32s_Sfs, zppsAdd_32s_ISfs, sumOf, x.a, x.b);
    vectors("Sub_32s", zppsSub_32s_Sfs, zppsSub_32s_ISfs, differenceFrom, x.a, x.b);
    vectors("Mul_32s", zppsMul_32s_Sfs, zppsMul_32s_ISfs, productOf, x.a, x.b);
    vectors("Div_32s", zppsDiv_32s_Sfs, zppsDiv_32s_ISfs, quotientOf, x.a, x.b);
    vectors("Mul_32sc", zppsMul_32sc_Sfs, zppsMul_32sc_ISfs, complexProduct, x.ab, x.cd);
    vectors("Mul_32s32sc", zppsMul_32s32sc_Sfs, zppsMul_32s32sc_ISfs, realTimesComplex, x.b, x.cd);
    for (const int factor : kFactors)
        expectScaled<Zpp32s>(
            "AddProduct_32s", factor, inPlace(zppsAddProduct_32s_Sfs, factor),
            [](Exact a, Exact b, Exact sum) { return sum + a * b; }, x.a, x.b, x.c);
}

TEST_P(Integers, VectorWithConstant) {
    const auto reals = drawnEachWay<Zpp32s>(150);
    const std::vector<Zpp32s> values = {INT_MIN, -1, 0, 3, 0x40000001, INT_MAX};
    constants("AddC_32s", zppsAddC_32s_Sfs, zppsAddC_32s_ISfs, sumOf, reals, values);
    constants("SubC_32s", zppsSubC_32s_Sfs, zppsSubC_32s_ISfs, differenceOf, reals, values);
    constants("SubCRev_32s", zppsSubCRev_32s_Sfs, zppsSubCRev_32s_ISfs, differenceFrom, reals, values);
    constants("MulC_32s", zppsMulC_32s_Sfs, zppsMulC_32s_ISfs, productOf, reals, values);
    const auto numbers = drawnEachWay<Zpp32sc>(150);
    const std::vector<Zpp32sc> pairs = {{INT_MIN, INT_MIN}, {INT_MIN, INT_MAX}, {-1, 3}, {0x40000001, 0}};
    constants("AddC_32sc", zppsAddC_32sc_Sfs, zppsAddC_32sc_ISfs, byParts<sumOf>, numbers, pairs);
    constants("SubC_32sc", zppsSubC_32sc_Sfs, zppsSubC_32sc_ISfs, byParts<differenceOf>, numbers, pairs);
    constants("SubCRev_32sc", zppsSubCRev_32sc_Sfs, zppsSubCRev_32sc_ISfs, byParts<differenceFrom>, numbers,
              pairs);
    constants("MulC_32sc", zppsMulC_32sc_Sfs, zppsMulC_32sc_ISfs, complexProduct, numbers, pairs);
}

// Quotients beside a tie, nearer to it than doubles are to each other: for an odd d and p its inverse modulo
// 2^places, n = (p d - 1) / 2^places makes n / d = p / 2^places - 1 / (d 2^places).
TEST_P(Integers, RoundsQuotientsBesideTies) {
    Random random;
    for (int places = 20; places <= 32; ++places) {
        std::vector<Zpp32s> divisors = {1362286843}, dividends = {997489182};
        for (int i = 0; i < 200; ++i) {
            const std::uint64_t d = (random.bits() >> 33) | 0x40000001, modulus = std::uint64_t{1} << places;
            std::uint64_t inverse = d;  // right in three bits, and each step doubles them
            for (int bits = 3; bits < 32; bits *= 2) inverse *= 2 - d * inverse;
            const std::uint64_t above = inverse % modulus, below = modulus - above;
            const int sign = i % 2 == 0 ? 1 : -1;
            divisors.insert(divisors.end(), 2, static_cast<Zpp32s>(d));
            dividends.push_back(sign * static_cast<Zpp32s>((above * d - 1) >> places));
            dividends.push_back(sign * static_cast<Zpp32s>((below * d + 1) >> places));
        }
        vectors("Div_32s", zppsDiv_32s_Sfs, zppsDiv_32s_ISfs, quotientOf, divisors, dividends, {1 - places});
    }
    const Zpp32s divisor = 1362286843;
    Zpp32s number = 997489182;
    EXPECT_EQ(zppsDiv_32s_ISfs(&divisor, &number, 1, -31), zppStatusOk);
    EXPECT_EQ(number, 1572423399);
}

}  // namespace
}  // namespace zpp::test
