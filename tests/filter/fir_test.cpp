#include <utility>

#include "tests/filter/fir_support.h"
#include "tests/support/binding.h"
#include "tests/support/draws.h"
#include "tests/support/x87.h"

namespace zpp::test {
namespace {

class Fir : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Fir);

// Taps and samples. Roundings of one sign add up, which random ones do not.
struct Input {
    const char* name;
    double (*tap)(Random&, std::size_t);
    double (*sample)(Random&, std::size_t);
};
constexpr auto any = [](Random& random, std::size_t) { return random.uniform(); };
const Input kInputs[] = {
    {"ordinary", any, any},
    {"roundings of one sign", [](Random&, std::size_t) { return 1.0; },
     [](Random&, std::size_t n) { return n % 256 < 8 ? 1 : 0x1.001p-53; }},
    {"one of few, roundings of one sign", [](Random&, std::size_t) { return 1.0; },
     [](Random&, std::size_t n) { return n % 32 < 1 ? 1 : 0x1.001p-53; }},
    {"loud beside quiet", any,
     [](Random& random, std::size_t n) { return random.uniform() * (n % 400 < 20 ? 1e15 : 1e-3); }},
    {"beyond numbers", any,
     [](Random& random, std::size_t n) { return n == 30   ? kNan
                                                : n == 90 ? kInf
                                                          : random.uniform(); }},
};

TEST_P(Fir, IsTheConvolutionSum) {
    for (const Input& input : kInputs) {
        SCOPED_TRACE(input.name);
        forEachPair([&]<class T, class D>(const FirPair<T, D>& pair) {
            for (const int tapsLen : {1, 2, 5, 31, 32, 47, 128, 256, 520}) {
                SCOPED_TRACE(tapsLen);
                Filter<T, D> filter(pair, tapsLen, 0);
                EXPECT_EQ(specificationOf(filter.state), nullptr);
                EXPECT_EQ(filter.setTaps(elements<T>(filter.taps.size(), 1, input.tap)), zppStatusOk);
                const auto signal = elements<D>(filter.taps.size() + 280, 3, input.sample);
                const Convolution expected(filter.taps, filter.past, signal);
                EXPECT_TRUE(expected.isNear(filter.runWhole(signal)));
                EXPECT_TRUE(expected.isNear(filter.run(signal, false, [] { return 0; })));
            }
        });
    }
}

// Blocks around the length up to which the delay buffer holds one and around the chunks of a 32-bit signal,
// random ones, and single samples. Special values, each of which takes the x87 unit a hundred cycles, are
// seen with fewer taps and samples.
TEST_P(Fir, HasTheSameBitsHoweverSplit) {
    Random random(4);
    forEachPair([&]<class T, class D>(const FirPair<T, D>& pair) {
        for (const Draw draw : kDraws)
            for (const int longest : {16, 64, 300, 3000}) {
                const bool ordinary = draw == Draw::kOrdinary;
                if (!ordinary && longest > 300) continue;
                const auto tapsLen = static_cast<int>(1 + random.below(static_cast<std::uint64_t>(longest)));
                SCOPED_TRACE(tapsLen);
                Filter<T, D> filter(pair, tapsLen, 0);
                EXPECT_EQ(filter.setTaps(drawn<T>(random, draw, filter.taps.size())), zppStatusOk);
                const auto signal = drawn<D>(random, draw, ordinary ? 1100 : 300);
                const auto whole = filter.runWhole(signal);
                const int around[] = {1, 5, (tapsLen + 3) / 4 * 4 + 1, 1024};
                const auto nextLen = [&] {
                    const auto spread = static_cast<int>(random.below(5)) - 2;
                    return random.below(4) == 0 ? static_cast<int>(random.below(300))
                                                : std::max(0, around[random.below(4)] + spread);
                };
                for (const bool inPlace : {false, true}) {
                    EXPECT_TRUE(same(whole, filter.run(signal, inPlace, nextLen)));
                    EXPECT_TRUE(filter.remembers(signal));
                }
            }
    });
}

// Blocks mostly short, at times long enough for the FFT, and single samples; with the first taps and with new
// ones.
TEST_P(Fir, MixesBlocksAndSingleSamples) {
    forEachPair([]<class T, class D>(const FirPair<T, D>& pair) {
        const auto signal = randomElements<D>(1500, 3);
        for (const int tapsLen : {1, 3, 16, 50}) {
            SCOPED_TRACE(tapsLen);
            Filter<T, D> filter(pair, tapsLen);
            EXPECT_TRUE(filter.remembers());
            Random random(5);
            const auto nextLen = [&] {
                return static_cast<int>(random.below(random.below(8) == 0 ? 500 : 4));
            };
            for (const std::uint64_t stream : {6u, 7u}) {
                const auto y = filter.run(signal, false, nextLen);
                EXPECT_TRUE(Convolution(filter.taps, filter.past, signal).isNearByNorm(y));
                EXPECT_TRUE(filter.remembers(signal));
                EXPECT_EQ(filter.renewTaps(stream), zppStatusOk);
                EXPECT_TRUE(filter.remembers(signal));
            }
        }
    });
}

// The FFT length is the power of two above tapsLen, doubled.
TEST_P(Fir, TakesTheFftForBlocksAboveItsLength) {
    struct Case {
        int tapsLen, realLen, complexLen;  // 0: none
    };
    for (const Case& c : {Case{15, 0, 0},
                          {16, 0, 64},
                          {31, 0, 64},
                          {32, 128, 128},
                          {63, 128, 128},
                          {64, 256, 256},
                          {300, 1024, 1024}})
        forEachPair([&]<class T, class D>(const FirPair<T, D>& pair) {
            SCOPED_TRACE(c.tapsLen);
            const int fftLen = pair.kComplex ? c.complexLen : c.realLen;
            Filter<T, D> filter(pair, c.tapsLen);
            ASSERT_EQ(specificationOf(filter.state) != nullptr, fftLen > 0);
            if (fftLen == 0) return;
            const auto signal = randomElements<D>(static_cast<std::size_t>(3 * fftLen + 17), 3);

            // A transform that fails ends the call with its status.
            std::vector<D> y(signal.size());
            int& id = *specificationOf(filter.state);
            const int right = std::exchange(id, 0);
            EXPECT_EQ(pair.filter(signal.data(), y.data(), fftLen, filter.state), zppStatusOk);
            EXPECT_EQ(pair.filter(signal.data(), y.data(), fftLen + 1, filter.state),
                      zppStatusContextMismatch);
            id = right;

            const Convolution expected(filter.taps, filter.past, signal);
            for (const int len : {fftLen + 1, 3 * fftLen + 17})
                for (const bool inPlace : {false, true}) {
                    EXPECT_TRUE(expected.isNearByNorm(filter.run(signal, inPlace, [=] { return len; })));
                    EXPECT_TRUE(filter.remembers(signal)) << "blocks of " << len;
                }
        });
}

// Three blocks of the FFT, of which the second has loud samples that the history of the last does not reach:
// they leave no trace in the others.
TEST_P(Fir, KeepsTheBlocksOfTheFftApart) {
    constexpr int tapsLen = 40, history = tapsLen - 1, room = 128 - history;
    forEachPair([]<class T, class D>(const FirPair<T, D>& pair) {
        Filter<T, D> filter(pair, tapsLen);
        for (const double loud : {1e15, kInf, kNan})
            for (const int last : {1, 2, history - 2, history - 1, history, history + 1, history + 2,
                                   room - 2, room - 1, room}) {
                SCOPED_TRACE(testing::Message() << loud << ", " << last << " samples in the last block");
                const auto signal = elements<D>(2 * room + last, 3, [=](Random& random, std::size_t n) {
                    return random.uniform() * (n >= room && n < 2 * room - history ? loud : 1e-3);
                });
                const auto y = filter.runWhole(signal, last % 2 == 0);
                const auto first = signal.begin(), end = first + 2 * room;
                const std::vector<D> quiet(first, first + room), tail(end, signal.end());
                const std::vector<D> before(std::make_reverse_iterator(end),
                                            std::make_reverse_iterator(end - history));
                EXPECT_TRUE(Convolution(filter.taps, filter.past, quiet)
                                .isNearByNorm(std::vector<D>(y.begin(), y.begin() + room)));
                EXPECT_TRUE(Convolution(filter.taps, before, tail)
                                .isNearByNorm(std::vector<D>(y.begin() + 2 * room, y.end())));
                EXPECT_TRUE(filter.remembers(signal));
            }
    });
}

// With and without the FFT, whatever precision the caller has set the x87 unit to.
TEST_P(Fir, ComputesInDoublePrecision) {
    if (!loadsAreExact()) GTEST_SKIP() << "this emulated processor rounds doubles that it loads at 24 bits";
    forEachPair([]<class T, class D>(const FirPair<T, D>& pair) {
        Filter<T, D> filter(pair, 40);
        const auto signal = randomElements<D>(300, 3);
        std::vector<D> y(signal.size());
        for (const int len : {300, 100, 0}) {
            EXPECT_EQ(pair.setDlyLine(filter.state, filter.past.data()), zppStatusOk);
            {
                const X87ControlWord single(0x07F);
                for (int i = 0; i < 300; i += std::max(len, 1))
                    len > 0 ? pair.filter(&signal[i], &y[i], len, filter.state)
                            : pair.filterOne(signal[i], &y[i], filter.state);
                EXPECT_EQ(x87ControlWord(), 0x07F);
            }
            const Convolution expected(filter.taps, filter.past, signal);
            EXPECT_TRUE(len == 300 ? expected.isNearByNorm(y) : expected.isNear(y)) << len;
        }
    });
}

}  // namespace
}  // namespace zpp::test
