#include <algorithm>
#include <cfloat>
#include <cmath>

#include "tests/filter/iir_support.h"
#include "tests/support/binding.h"
#include "tests/support/draws.h"
#include "tests/support/rounded.h"
#include "tests/support/x87.h"

namespace zpp::test {
namespace {

class Iir : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Iir);

struct Number {
    Wide re = 0, im = 0;
};
Number operator+(Number a, Number b) { return {a.re + b.re, a.im + b.im}; }
Number operator-(Number a, Number b) { return {a.re - b.re, a.im - b.im}; }
Number operator*(Number a, Number b) { return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re}; }
Number operator/(Number a, Number b) {
    const Wide norm = b.re * b.re + b.im * b.im;
    return a * Number{b.re / norm, -b.im / norm};
}
template <class T>
Number wide(const T& x) {
    if constexpr (requires { x.re; })
        return {x.re, x.im};
    else
        return {x, 0};
}
double size(Number a) {
    return static_cast<double>(std::fabs(static_cast<long double>(a.re))) +
           static_cast<double>(std::fabs(static_cast<long double>(a.im)));
}

// The stated recursion of one filter, as written: taps b0 .. b(order), a0 .. a(order), and the delay line.
template <class T>
void recur(const T* taps, std::size_t order, std::vector<Number> d, std::vector<Number>& signal) {
    const T* a = taps + order + 1;
    std::vector<Number> ratios;
    for (std::size_t i = 0; i < 2 * order + 2; ++i) ratios.push_back(wide(taps[i]) / wide(a[0]));
    d.resize(order + 1);
    for (Number& x : signal) {
        const Number y = ratios[0] * x + d[0];
        for (std::size_t i = 0; i < order; ++i)
            d[i] = ratios[i + 1] * x - ratios[order + 2 + i] * y + d[i + 1];
        x = y;
    }
}

template <class Kind>
std::vector<Number> expectedOf(const IirFilter<Kind>& filter,
                               const std::vector<typename Kind::Data>& signal) {
    std::vector<Number> y, line;
    for (const auto& x : signal) y.push_back(wide(x));
    for (const auto& d : filter.line) line.push_back(wide(d));
    if (!filter.kind.cascade) {
        recur(filter.taps.data(), line.size(), line, y);
        return y;
    }
    for (std::size_t i = 0; 2 * i < line.size(); ++i)
        recur(&filter.taps[6 * i], 2, {line[2 * i], line[2 * i + 1]}, y);
    return y;
}

// Orders and numbers of sections around those that kernels take: order 0, small orders, whole and broken
// blocks of larger ones; sections that fill registers, and more than all.
const int kOrders[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 15, 16, 20, 33, 50};

TEST_P(Iir, IsTheRecursion) {
    forEachKind([](const auto& kind) {
        using D = typename std::decay_t<decltype(kind)>::Data;
        for (const int order : kOrders) {
            if (kind.cascade && order == 0) continue;
            SCOPED_TRACE(order);
            IirFilter filter(kind, order);
            const auto signal = randomNumbers<D>(60, 3);
            const auto expected = expectedOf(filter, signal);
            double largest = 1;
            for (const Number& y : expected) largest = std::max(largest, size(y));
            for (const int block : {60, 7, 0}) {
                const auto y = filter.run(signal, false, [=] { return block; });
                for (std::size_t n = 0; n < y.size(); ++n)
                    ASSERT_LE(size(wide(y[n]) - expected[n]),
                              0x1p-53 * 40 * (order + 1) * largest +
                                  (kind.kSingle ? 0x1p-23 * size(expected[n]) : 0))
                        << "output " << n << " in blocks of " << block;
            }
        }
    });
}

// Special values, each of which takes the x87 unit a hundred cycles, are seen with fewer samples.
TEST_P(Iir, HasTheSameBitsHoweverSplit) {
    Random random(4);
    forEachKind([&](const auto& kind) {
        using D = typename std::decay_t<decltype(kind)>::Data;
        for (const int order : kOrders)
            for (const Draw draw : kDraws) {
                if (kind.cascade && order == 0) continue;
                SCOPED_TRACE(testing::Message() << order << ", draw " << static_cast<int>(draw));
                IirFilter filter(kind, order);
                const bool ordinary = draw == Draw::kOrdinary;
                auto signal = drawn<D>(random, draw, ordinary ? 1100 : 150);
                // What is not a number stays: it comes late.
                for (std::size_t i = 0; !ordinary && i < 100; ++i) signal[i] = randomNumber<D>(random);
                const auto whole = filter.runWhole(signal);
                const auto line = filter.delayLine();
                const auto nextLen = [&] {
                    return static_cast<int>(random.below(random.below(4) == 0 ? 150 : 12));
                };
                for (const bool inPlace : {false, true}) {
                    ASSERT_TRUE(same(whole, filter.run(signal, inPlace, nextLen)));
                    ASSERT_TRUE(same(line, filter.delayLine()));
                }
                ASSERT_TRUE(same(whole, filter.run(signal, false, [] { return 0; })));
            }
    });
}

TEST_P(Iir, RespondsToAnImpulse) {
    const double taps[] = {1, 0, 1, -0.5};
    ZppsIIRState* state = nullptr;
    ASSERT_EQ(zppsIIRInitAlloc_64f(&state, taps, 1, nullptr), zppStatusOk);
    std::vector<double> y(100);
    y[0] = 1;
    EXPECT_EQ(zppsIIR_64f_I(y.data(), 100, state), zppStatusOk);
    for (int n = 0; n < 100; ++n) EXPECT_EQ(y[static_cast<std::size_t>(n)], std::ldexp(1, -n));
    EXPECT_EQ(zppsIIRFree_64f(state), zppStatusOk);
}

// What fades away ends in zeros; of its outputs the single ones have all their bits to the end.
TEST_P(Iir, EndsInZeros) {
    const bool flushes = GetParam().isaName() != "x87" && GetParam().isaName() != "sse";
    forEachKind([=](const auto& kind) {
        using D = typename std::decay_t<decltype(kind)>::Data;
        using T = typename std::decay_t<decltype(kind)>::Sample;
        for (const int order : {1, 2, 8, 20}) {
            IirFilter filter(kind, order);
            std::vector<T> taps(filter.taps.size());
            taps[0] = number<T>(1);  // a pole at 0.5, and ones at 0
            taps[kind.cascade ? 3 : taps.size() / 2] = number<T>(1);
            taps[kind.cascade ? 4 : taps.size() / 2 + 1] = number<T>(-0.5);
            for (int i = 1; kind.cascade && i < order; ++i)
                taps[static_cast<std::size_t>(6 * i)] = taps[static_cast<std::size_t>(6 * i + 3)] =
                    number<T>(1);
            EXPECT_EQ(kind.setTaps(taps.data(), filter.state), zppStatusOk);
            filter.line.assign(filter.line.size(), {});
            std::vector<D> signal(1200);
            signal[0] = number<D>(1);
            const auto y = filter.runWhole(signal);
            for (int n = 0; n < 1022; ++n)
                ASSERT_TRUE(same(y[static_cast<std::size_t>(n)], number<D>(std::ldexp(1, -n)), 1)) << n;
            if (!flushes) continue;
            for (std::size_t n = 1023; n < y.size(); ++n) ASSERT_EQ(size(wide(y[n])), 0) << n;
            for (const auto& d : filter.delayLine()) EXPECT_EQ(size(wide(d)), 0);
        }
    });
}

// With the same bits, whatever precision the caller has set the x87 unit to.
TEST_P(Iir, ComputesInDoublePrecision) {
    if (!loadsAreExact()) GTEST_SKIP() << "this emulated processor rounds doubles that it loads at 24 bits";
    forEachKind([](const auto& kind) {
        using D = typename std::decay_t<decltype(kind)>::Data;
        for (const int order : {0, 2, 9}) {
            if (kind.cascade && order == 0) continue;
            IirFilter filter(kind, order);
            const auto signal = randomNumbers<D>(50, 3);
            const auto expected = filter.runWhole(signal);
            EXPECT_EQ(kind.setDlyLine(filter.state, filter.line.data()), zppStatusOk);
            std::vector<D> y(signal.size());
            {
                const X87ControlWord single(0x07F);
                kind.setTaps(filter.taps.data(), filter.state);
                kind.filter(signal.data(), y.data(), 50, filter.state);
                EXPECT_EQ(x87ControlWord(), 0x07F);
            }
            EXPECT_TRUE(sameBits(expected, y)) << order;
        }
    });
}

}  // namespace
}  // namespace zpp::test
