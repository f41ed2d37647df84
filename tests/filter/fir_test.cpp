#include <utility>

#include "tests/filter/fir_support.h"
#include "tests/support/binding.h"

namespace zpp::test {
namespace {

class Fir : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Fir);

// Blocks of 1, B, B + 1, more than the chunks of a 32-bit signal, and random (0), where B is the length up to
// which the delay buffer holds a block; single samples.
TEST_P(Fir, IsTheConvolutionSumHoweverSplit) {
    forEachPair([]<class T, class D>(const FirPair<T, D>& pair) {
        const auto signal = randomElements<D>(3001, 3);
        for (const int tapsLen : {1, 2, 3, 5, 6, 7, 8, 9, 16, 31, 64, 75, 131, 1100}) {
            SCOPED_TRACE(tapsLen);
            Filter<T, D> filter(pair, tapsLen, 0);
            EXPECT_EQ(specificationOf(filter.state), nullptr);
            const Convolution expected(filter.taps, filter.past, signal);
            const auto whole = filter.run(signal, false, [] { return 3001; });
            EXPECT_TRUE(expected.isNear(whole));
            EXPECT_TRUE(expected.isNear(filter.run(signal, false, [] { return 0; })));
            EXPECT_TRUE(filter.remembers(signal));
            const int limit = (tapsLen + 3) / 4 * 4 + 1;
            Random random(4);
            for (const int len : {tapsLen > 1000 ? 97 : 1, limit, limit + 1, 1025, 3000, 0})
                for (const bool inPlace : {false, true}) {
                    if (tapsLen > 1000 && inPlace == (len % 2 == 0))
                        continue;  // the short have gone through both
                    const auto nextLen = [&] {
                        return len > 0 ? len : static_cast<int>(1 + random.below(300));
                    };
                    EXPECT_TRUE(sameBits(whole, filter.run(signal, inPlace, nextLen))) << "blocks of " << len;
                    EXPECT_TRUE(filter.remembers(signal)) << "blocks of " << len;
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
            Filter<T, D> filter(pair, tapsLen);
            EXPECT_TRUE(filter.remembers()) << tapsLen << " taps";
            Random random(5);
            const auto nextLen = [&] {
                return static_cast<int>(random.below(random.below(8) == 0 ? 500 : 4));
            };
            for (const std::uint64_t stream : {6u, 7u}) {
                const auto y = filter.run(signal, false, nextLen);
                EXPECT_TRUE(Convolution(filter.taps, filter.past, signal).isNearByNorm(y))
                    << tapsLen << " taps";
                EXPECT_TRUE(filter.remembers(signal)) << tapsLen << " taps";
                EXPECT_EQ(filter.renewTaps(stream), zppStatusOk);
                EXPECT_TRUE(filter.remembers(signal)) << tapsLen << " taps";
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
                          {300, 1024, 1024},
                          {600, 2048, 2048}}) {
        forEachPair([&]<class T, class D>(const FirPair<T, D>& pair) {
            SCOPED_TRACE(c.tapsLen);
            const int fftLen = pair.kComplex ? c.complexLen : c.realLen;
            Filter<T, D> filter(pair, c.tapsLen);
            ASSERT_EQ(specificationOf(filter.state) != nullptr, fftLen > 0);
            if (fftLen == 0) return;
            const auto signal = randomElements<D>(static_cast<std::size_t>(4 * fftLen + 17), 3);

            // A transform that fails ends the call with its status.
            std::vector<D> y(signal.size());
            int& id = *specificationOf(filter.state);
            const int right = std::exchange(id, 0);
            EXPECT_EQ(pair.filter(signal.data(), y.data(), fftLen, filter.state), zppStatusOk);
            EXPECT_EQ(pair.filter(signal.data(), y.data(), fftLen + 1, filter.state),
                      zppStatusContextMismatch);
            id = right;

            const Convolution expected(filter.taps, filter.past, signal);
            for (const int len : {fftLen + 1, 2 * fftLen, static_cast<int>(signal.size())})
                for (const bool inPlace : {false, true}) {
                    const auto result = filter.run(signal, inPlace, [=] { return len; });
                    EXPECT_TRUE(expected.isNearByNorm(result)) << "blocks of " << len;
                    EXPECT_TRUE(filter.remembers(signal)) << "blocks of " << len;
                }
        });
    }
}

}  // namespace
}  // namespace zpp::test
