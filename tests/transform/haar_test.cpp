#include <climits>

#include "tests/support/binding.h"
#include "tests/support/exact.h"
#include "tests/support/rounded.h"
#include "tests/support/table.h"
#include "zpp/transform.h"

namespace zpp::test {
namespace {

class Haar : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Haar);

// What becomes of a pair of samples forward, and of a low and a high one back; and of one without a partner.
template <class T>
struct Definition {
    std::function<std::pair<T, T>(T, T)> forward, inverse;
    std::function<T(T)> last;
};

// The forward form on the values, and the inverse on them as a low band with a high one behind it.
template <class T, class Forward, class Inverse>
void expectHaar(const std::string& what, const Forward& forward, const Inverse& inverse,
                const Definition<T>& definition, const std::vector<T>& values) {
    const std::size_t n = values.size(), pairs = n / 2, lows = n - pairs;
    std::vector<T> low(lows), high(pairs), signal(n);
    for (std::size_t i = 0; i < pairs; ++i) {
        std::tie(low[i], high[i]) = definition.forward(values[2 * i], values[2 * i + 1]);
        std::tie(signal[2 * i], signal[2 * i + 1]) = definition.inverse(values[i], values[lows + i]);
    }
    if (lows > pairs) {
        low[pairs] = definition.last(values[n - 1]);
        signal[n - 1] = definition.last(values[pairs]);
    }
    Guarded<T> src(values), dstLow(lows), dstHigh(pairs), dst(n);
    EXPECT_EQ(forward(src.data(), src.len(), dstLow.data(), dstHigh.data()), zppStatusOk) << what;
    EXPECT_TRUE(same(low, dstLow.values()) && dstLow.intact()) << what << n << ", low band";
    EXPECT_TRUE(same(high, dstHigh.values()) && dstHigh.intact()) << what << n << ", high band";
    EXPECT_EQ(inverse(src.data(), src.data() + lows, dst.data(), dst.len()), zppStatusOk) << what;
    EXPECT_TRUE(same(signal, dst.values()) && dst.intact()) << what << n << ", inverse";
}

// The same on all kinds of drawn data.
template <class T, class Forward, class Inverse>
void expectDrawn(const std::string& what, const Forward& forward, const Inverse& inverse,
                 const Definition<T>& definition, const std::vector<int>& lengths) {
    Random random;
    for (const Draw draw : kDraws)
        for (const int len : lengths)
            expectHaar(what, forward, inverse, definition,
                       drawn<T>(random, draw, static_cast<std::size_t>(len)));
}

const Definition<double> kDoubles = {
    [](double a, double b) {
        const double high = product(difference(b, a), 0.5);
        return std::pair(sum(a, high), high);
    },
    [](double l, double h) { return std::pair(difference(l, h), sum(l, h)); }, [](double a) { return a; }};

// In numbers that hold the sums and differences.
Definition<Zpp32s> integers(int factor) {
    const auto stored = [=](Exact x) { return rounded<Zpp32s>(scaled(x, factor)); };
    return {[=](Zpp32s a, Zpp32s b) {
                if (factor == 0 && Exact(b >> 1) - (a >> 1) == INT_MAX) return std::pair(0, INT_MAX);
                return std::pair(stored((Exact(a) + b) / 2), stored((Exact(b) - a) / 2));
            },
            [=](Zpp32s l, Zpp32s h) { return std::pair(stored(Exact(l) - h), stored(Exact(l) + h)); },
            stored};
}

TEST_P(Haar, IsExactAndRoundedAsStated) {
    expectDrawn("64f, ", zppsWTHaarFwd_64f, zppsWTHaarInv_64f, kDoubles, awkwardLengths());
    expectDrawn("32s, ", zppsWTHaarFwd_32s, zppsWTHaarInv_32s, integers(0), awkwardLengths());
    std::vector<int> factors = {INT_MIN, INT_MIN + 1, INT_MAX - 1, INT_MAX};
    for (int factor = -34; factor <= 34; ++factor) factors.push_back(factor);
    for (const int factor : factors)
        expectDrawn(
            "32s_Sfs by " + std::to_string(factor) + ", ",
            [=](auto... p) { return zppsWTHaarFwd_32s_Sfs(p..., factor); },
            [=](auto... p) { return zppsWTHaarInv_32s_Sfs(p..., factor); }, integers(factor), {1, 15, 331});
}

// As they come out by hand: ties, and the ends of the range, at which the plain form is not exact.
TEST_P(Haar, OfAFewPairs) {
    const struct {
        Zpp32s a, b, low, high;
    } cases[] = {{-3, 0, -2, 2},
                 {1, 4, 2, 2},
                 {INT_MIN, INT_MAX, 0, INT_MAX},
                 {INT_MIN, INT_MAX - 1, 0, INT_MAX},
                 {INT_MIN + 1, INT_MAX - 1, 0, INT_MAX},
                 {INT_MIN, INT_MAX - 2, -2, INT_MAX - 1},
                 {INT_MIN + 2, INT_MAX, 0, INT_MAX - 1},
                 {INT_MAX, INT_MIN, 0, INT_MIN}};
    for (const auto& c : cases) {
        std::vector<Zpp32s> signal, low(17), high(17);
        for (int i = 0; i < 17; ++i) signal.insert(signal.end(), {c.a, c.b});
        zppsWTHaarFwd_32s_Sfs(signal.data(), 34, low.data(), high.data(), 0);
        EXPECT_EQ(low, std::vector(17, c.low)) << c.a << ' ' << c.b;
        EXPECT_EQ(high, std::vector(17, c.high)) << c.a << ' ' << c.b;
    }
}

// Beyond the length from which on results go past the caches; with numbers that nothing rounds.
TEST_P(Haar, StoresLongResults) {
    std::vector<double> values((1 << 22) + 3);
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<double>(i * i % 1001);
    const Definition<double> exact = {[](double a, double b) { return std::pair((a + b) / 2, (b - a) / 2); },
                                      [](double l, double h) { return std::pair(l - h, l + h); },
                                      [](double a) { return a; }};
    expectHaar("64f, ", zppsWTHaarFwd_64f, zppsWTHaarInv_64f, exact, values);
}

}  // namespace
}  // namespace zpp::test
