#include <algorithm>
#include <functional>
#include <utility>

#include "tests/filter/fir_support.h"
#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/guarded.h"

namespace zpp::test {
namespace {

class Fir : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Fir);

// A filter with random taps and a random past; with or without FFT path.
template <class T, class D>
struct Filter {
    const FirPair<T, D>& pair;
    std::vector<T> taps;
    std::vector<D> past;
    ZppsFIRState* state = nullptr;

    Filter(const FirPair<T, D>& p, int tapsLen, bool withFft)
        : pair(p),
          taps(randomElements<T>(static_cast<std::size_t>(tapsLen), 1)),
          past(randomElements<D>(taps.size(), 2)) {
        if (withFft) {
            EXPECT_EQ(pair.initAlloc(&state, taps.data(), tapsLen, past.data()), zppStatusOk);
            return;
        }
        int size = 0;
        EXPECT_EQ(pair.getStateSize(tapsLen, &size), zppStatusOk);
        buffer_.resize(static_cast<std::size_t>(size));
        EXPECT_EQ(pair.init(&state, taps.data(), tapsLen, past.data(), buffer_.data()), zppStatusOk);
    }
    ~Filter() { EXPECT_EQ(pair.free(state), zppStatusOk); }
    Filter(const Filter&) = delete;
    Filter& operator=(const Filter&) = delete;

    // The signal from the past on, in blocks of the lengths that nextLen gives; a length of 0 is one sample
    // by filterOne.
    std::vector<D> run(const std::vector<D>& signal, bool inPlace, const std::function<int()>& nextLen) {
        EXPECT_EQ(pair.setDlyLine(state, past.data()), zppStatusOk);
        Guarded<D> src(signal), dst(signal);
        for (int done = 0, n; done < src.len(); done += n) {
            const int asked = nextLen();
            n = std::min(std::max(asked, 1), src.len() - done);
            EXPECT_EQ(asked == 0 ? pair.filterOne(src[done], dst + done, state)
                      : inPlace  ? pair.filterInPlace(dst + done, n, state)
                                 : pair.filter(src + done, dst + done, n, state),
                      zppStatusOk);
        }
        EXPECT_TRUE(dst.intact());
        EXPECT_TRUE(sameBits(signal, src.values()));
        return dst.values();
    }

    // Whether the delay line is what follows the past and this signal.
    testing::AssertionResult remembers(const std::vector<D>& signal) const {
        std::vector<D> all(past.rbegin(), past.rend()), line(past.size());
        all.insert(all.end(), signal.begin(), signal.end());
        EXPECT_EQ(pair.getDlyLine(state, line.data()), zppStatusOk);
        return sameBits(std::vector<D>(all.rbegin(), all.rbegin() + static_cast<std::ptrdiff_t>(past.size())),
                        line);
    }

  private:
    std::vector<Zpp8u> buffer_;
};

// Blocks of 1, B, B + 1, more than the chunks of a 32-bit signal, and random (0), where B is the length up to
// which the delay buffer holds a block; single samples.
TEST_P(Fir, IsTheConvolutionSumHoweverSplit) {
    forEachPair([]<class T, class D>(const FirPair<T, D>& pair) {
        const auto signal = randomElements<D>(3001, 3);
        for (const int tapsLen : {1, 2, 3, 5, 6, 7, 8, 9, 16, 31, 64, 75, 131, 1100}) {
            SCOPED_TRACE(tapsLen);
            Filter<T, D> filter(pair, tapsLen, false);
            EXPECT_EQ(specificationOf(filter.state), nullptr);
            const Convolution expected(filter.taps, filter.past, signal);
            const auto whole = filter.run(signal, false, [] { return 3001; });
            EXPECT_TRUE(expected.isNear(whole, filter.taps.size()));
            EXPECT_TRUE(expected.isNear(filter.run(signal, false, [] { return 0; }), filter.taps.size()));
            EXPECT_TRUE(filter.remembers(signal));
            const int limit = (tapsLen + 3) / 4 * 4 + 1;
            Random random(4);
            for (const int len : {tapsLen > 1000 ? 97 : 1, limit, limit + 1, 1025, 3000, 0})
                for (const bool inPlace : {false, true}) {
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
            Filter<T, D> filter(pair, tapsLen, true);
            Random random(5);
            const auto nextLen = [&] {
                return static_cast<int>(random.below(random.below(8) == 0 ? 500 : 4));
            };
            for (const std::uint64_t stream : {6, 7}) {
                const auto y = filter.run(signal, false, nextLen);
                EXPECT_TRUE(Convolution(filter.taps, filter.past, signal).isNearByNorm(y, 4))
                    << tapsLen << " taps";
                EXPECT_TRUE(filter.remembers(signal)) << tapsLen << " taps";
                filter.taps = randomElements<T>(filter.taps.size(), stream);
                EXPECT_EQ(pair.setTaps(filter.taps.data(), filter.state), zppStatusOk);
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
                          {1500, 4096, 4096}}) {
        forEachPair([&]<class T, class D>(const FirPair<T, D>& pair) {
            SCOPED_TRACE(c.tapsLen);
            const int fftLen = pair.kComplex ? c.complexLen : c.realLen;
            Filter<T, D> filter(pair, c.tapsLen, true);
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
                    EXPECT_TRUE(expected.isNearByNorm(result, 4)) << "blocks of " << len;
                    EXPECT_TRUE(filter.remembers(signal)) << "blocks of " << len;
                }
        });
    }
}

}  // namespace
}  // namespace zpp::test
