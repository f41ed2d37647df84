// Windows beside their formulas, in long double or, for sums that are promised to the bit, in double.
#include <cfenv>
#include <functional>

#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/draws.h"
#include "tests/support/guarded.h"
#include "tests/support/random.h"
#include "tests/support/rounded.h"
#include "zpp/gen.h"

namespace zpp::test {
namespace {

template <class T>
using OutOfPlace = std::function<ZppStatus(const T*, T*, int)>;
template <class T>
using InPlace = std::function<ZppStatus(T*, int)>;

struct Window {
    const char* name;
    OutOfPlace<Zpp64f> real;
    InPlace<Zpp64f> realInPlace;
    OutOfPlace<Zpp64fc> complex;
    InPlace<Zpp64fc> complexInPlace;
};

template <class... More>
Window window(const char* name, ZppStatus (*real)(const Zpp64f*, Zpp64f*, int, More...),
              ZppStatus (*realInPlace)(Zpp64f*, int, More...),
              ZppStatus (*complex)(const Zpp64fc*, Zpp64fc*, int, More...),
              ZppStatus (*complexInPlace)(Zpp64fc*, int, More...), std::type_identity_t<More>... more) {
    return {name, [=](auto src, auto dst, int len) { return real(src, dst, len, more...); },
            [=](auto p, int len) { return realInPlace(p, len, more...); },
            [=](auto src, auto dst, int len) { return complex(src, dst, len, more...); },
            [=](auto p, int len) { return complexInPlace(p, len, more...); }};
}

#define FORMS(name) #name, zpps##name##_64f, zpps##name##_64f_I, zpps##name##_64fc, zpps##name##_64fc_I
const Window kHann = window(FORMS(WinHann)), kHamming = window(FORMS(WinHamming)),
             kBlackmanStd = window(FORMS(WinBlackmanStd)), kBlackmanOpt = window(FORMS(WinBlackmanOpt)),
             kBartlett = window(FORMS(WinBartlett));
Window blackman(double alpha) { return window(FORMS(WinBlackman), alpha); }
Window kaiser(float alpha) { return window(FORMS(WinKaiser), alpha); }
#undef FORMS

std::vector<double> weightsOf(const Window& w, int len) {
    Guarded<double> ones(std::vector<double>(static_cast<std::size_t>(len), 1.0));
    EXPECT_EQ(w.realInPlace(ones, len), zppStatusOk) << w.name << ' ' << len;
    EXPECT_TRUE(ones.intact());
    std::vector<double> weights = ones.values();
    EXPECT_TRUE(sameBits(weights, std::vector<double>(weights.rbegin(), weights.rend())))
        << w.name << ' ' << len;
    EXPECT_TRUE(len % 2 == 0 || weights[static_cast<std::size_t>(len / 2)] == 1) << w.name << ' ' << len;
    return weights;
}

std::vector<int> lengths() {
    std::vector<int> all = {255, 256, 257, 258, 511, 513, 1023, 1024, 1025, 1026, 2049, 4100, 30011};
    for (int len = 4; len < 150; ++len) all.push_back(len);
    return all;
}

constexpr long double kPi = 3.14159265358979323846264L;

class Windows : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Windows);

TEST_P(Windows, OfCosinesAreTheirFormulas) {
    struct Row {
        Window window;
        double constant, alpha, bound;  // constant + (1 - constant) h with h the Blackman window
    };
    const Row rows[] = {{kHann, 0, 0, 2.5},         {kHamming, 0.08, 0, 3},     {kBlackmanStd, 0, -0.16, 4},
                        {kBlackmanOpt, 0, kNan, 4}, {blackman(0.5), 0, 0.5, 4}, {blackman(-0.5), 0, -0.5, 4},
                        {blackman(30), 0, 30, 240}, {blackman(-3), 0, -3, 24}};
    for (const Row& row : rows)
        for (const int len : lengths()) {
            const std::vector<double> actual = weightsOf(row.window, len);
            EXPECT_EQ(actual[0], row.constant) << row.window.name << ' ' << len;
            const long double step = kPi / (len - 1), middle = 1 - std::pow(std::sin(step), 2.0L);
            const long double alpha =
                std::isnan(row.alpha) ? -0.25L / middle : static_cast<long double>(row.alpha);
            for (int n = 1; n < len / 2; n += 1 + len / 4096) {
                const long double hann = std::pow(std::sin(n * step), 2.0L);
                const long double blackman = hann + 4 * alpha * hann * (1 - hann);
                const long double expected =
                    row.constant + (1 - static_cast<long double>(row.constant)) * blackman;
                const double error =
                    static_cast<double>(std::fabs(actual[static_cast<std::size_t>(n)] - expected));
                ASSERT_LE(error, row.bound * 0x1p-53)
                    << row.window.name << ' ' << row.alpha << ' ' << len << ' ' << n;
                if (row.alpha == 0 && row.constant == 0) {
                    ASSERT_LE(error, static_cast<double>(expected) * 0x1p-50) << len << ' ' << n;
                }
            }
        }
    EXPECT_EQ(weightsOf(kBlackmanOpt, 4), std::vector<double>(4, 0.0));
}

TEST_P(Windows, BartlettAddsItsSteps) {
    for (const int len : lengths()) {
        const std::vector<double> actual = weightsOf(kBartlett, len);
        const double step = quotient(2, len - 1);
        double weight = 0;
        for (int n = 0; n < len / 2; ++n, weight = sum(weight, step))
            ASSERT_EQ(actual[static_cast<std::size_t>(n)], weight) << len << ' ' << n;
    }
}

long double bessel(long double x) {
    constexpr double small[] = {0.0008267816, 0.0075942968, 0.0713758187, 0.4443189384,
                                1.777809969,  3.9999959541, 4.0000001935, 0.9999999985};
    constexpr double large[] = {0.0051246015,  -0.0366694767, 0.1113315511,  -0.1867783276, 0.1895476618,
                                -0.1209940805, 0.0495811118,  -0.0128314822, 0.0022585672,  0.00026,
                                0.0017623668,  0.0124667783,  0.3989422809};
    long double result = 0;
    if (x < 4)
        for (const double c : small) result = result * (x * x / 16) + c;
    else
        for (const double c : large) result = result * (4 / x) + c;
    return x < 4 ? result : result * std::exp(x) / std::sqrt(x);
}

TEST_P(Windows, KaiserIsItsPolynomials) {
    struct Row {
        int len;
        float alpha;
    };
    for (const auto [len, alpha] : {Row{2, 1},
                                    {3, 2},
                                    {5, 0},
                                    {9, 1},
                                    {10, -0.3F},
                                    {100, 0.07F},
                                    {617, 1},
                                    {1500, 0.02F},
                                    {30011, 0.0203F},
                                    {10007, 0.0008F}}) {
        const std::vector<double> actual = weightsOf(kaiser(alpha), len);
        const long double size = std::fabs(alpha), middle = bessel(size * (len - 1) / 2);
        for (int n = 0; n < len / 2; ++n) {
            const long double x = size * std::sqrt(static_cast<long double>(n) * (len - 1 - n));
            if (x != 4 && std::fabs(x - 4) < 1e-12L) continue;  // either polynomial
            const long double expected = bessel(x) / middle;
            const double ulp = std::ldexp(1.0, std::ilogb(static_cast<double>(expected)) - 52);
            ASSERT_LE(std::fabs(actual[static_cast<std::size_t>(n)] - expected), (4 + x) * ulp)
                << len << ' ' << n;
        }
    }
    EXPECT_EQ(weightsOf(kaiser(0), 8), std::vector<double>(8, 1.0));
}

// Every form gives the products with the weights, in whatever way the caller rounds, and copies the middle.
TEST_P(Windows, MultiplyInEveryForm) {
    Random random;
    std::vector<int> all = awkwardLengths();
    all.push_back(1090);
    for (const Window& w :
         {kHann, kHamming, kBlackmanStd, kBlackmanOpt, kBartlett, blackman(0.3), kaiser(0.25F)})
        for (const int len : all) {
            if (len < (std::string(w.name) == "WinBlackmanOpt" ? 4 : 3)) continue;
            const std::size_t n = static_cast<std::size_t>(len);
            const std::vector<double> weights = weightsOf(w, len);
            const std::vector<Zpp64fc> source = drawn<Zpp64fc>(random, kDraws[n % 4], n);
            std::vector<Zpp64fc> expected(n);
            std::vector<double> parts(n), realExpected(n);
            const std::string name = w.name;
            const bool clearsEnds = name == "WinBartlett" || (len == 3 && name.starts_with("WinBlackman"));
            for (std::size_t i = 0; i < n; ++i) {
                const bool isEnd = i == 0 || i == n - 1;
                expected[i] = isEnd && clearsEnds ? Zpp64fc{0, 0} : product(weights[i], source[i]);
                if (2 * i + 1 == n) expected[i] = source[i];
                parts[i] = source[i].re, realExpected[i] = expected[i].re;
            }
            Guarded<double> real(parts), realResult(n);
            Guarded<Zpp64fc> complex(source), complexResult(n);
            const int rounding = std::fegetround();
            std::fesetround(FE_UPWARD);
            w.real(real, realResult, len), w.realInPlace(real, len);
            w.complex(complex, complexResult, len), w.complexInPlace(complex, len);
            std::fesetround(rounding);
            for (const std::vector<double>& result : {real.values(), realResult.values()}) {
                EXPECT_TRUE(same(realExpected, result)) << w.name << ' ' << len;
                EXPECT_TRUE(n % 2 == 0 || sameBits(result[n / 2], parts[n / 2])) << w.name << ' ' << len;
            }
            for (const std::vector<Zpp64fc>& result : {complex.values(), complexResult.values()})
                EXPECT_TRUE(same(expected, result)) << w.name << ' ' << len;
        }
}

TEST_P(Windows, EndsAndParametersThatAreNoNumbers) {
    const auto of = [](const Window& w, std::vector<double> x) {
        EXPECT_EQ(w.realInPlace(x.data(), static_cast<int>(x.size())), zppStatusOk) << w.name;
        return x;
    };
    const std::vector<double> ends = {kNan, 7, 7, kInf};
    EXPECT_TRUE(std::isnan(of(kHann, ends)[0]) && std::isnan(of(kBlackmanStd, ends)[3]));
    EXPECT_EQ(of(kBartlett, ends)[0], 0);
    EXPECT_EQ(of(kBartlett, ends)[3], 0);
    for (const double alpha : {kInf, kNan, 1e308}) {
        EXPECT_EQ(of(blackman(alpha), {kNan, 7, kInf}), (std::vector<double>{0, 7, 0}));
        const std::vector<double> five = of(blackman(alpha), {1, 1, 3, 1, 1});
        EXPECT_EQ(five[0], 0);
        EXPECT_EQ(five[2], 3);
        EXPECT_EQ(std::isfinite(five[1]), alpha == 1e308);
    }
    const std::vector<double> unknown = of(kaiser(std::numeric_limits<float>::quiet_NaN()), {1, 3, 1});
    EXPECT_TRUE(std::isnan(unknown[0]) && unknown[1] == 3);
}

TEST_P(Windows, RefuseInTheOrderOfTheirChecks) {
    std::vector<double> x(800, 1.0);
    double* const none = nullptr;
    const auto optimal = zppsWinBlackmanOpt_64f_I;
    EXPECT_EQ(zppsWinHann_64f_I(x.data(), 2), zppStatusSizeError);
    EXPECT_EQ(zppsWinHann_64f_I(none, 2), zppStatusNullPointer);
    EXPECT_EQ(optimal(none, 3), zppStatusSizeError);
    EXPECT_EQ(optimal(none, 4), zppStatusNullPointer);
    EXPECT_EQ(zppsWinKaiser_64f_I(none, 0, 1000), zppStatusNullPointer);
    EXPECT_EQ(zppsWinKaiser_64f_I(x.data(), 0, 1000), zppStatusSizeError);
    EXPECT_EQ(zppsWinKaiser_64f_I(x.data(), 618, -1), zppStatusKaiserTooHuge);
    EXPECT_EQ(x, std::vector<double>(800, 1.0));
    EXPECT_EQ(zppsWinKaiser_64f_I(x.data(), 617, -1), zppStatusOk);
    EXPECT_EQ(zppsWinKaiser_64f_I(x.data() + 308, 1, 1e30F), zppStatusOk);
}

}  // namespace
}  // namespace zpp::test
