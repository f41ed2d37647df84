#include <algorithm>
#include <functional>
#include <memory>

#include "tests/filter/fir_support.h"
#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/guarded.h"

namespace zpp::test {
namespace {

class Fir : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Fir);

template <class Pair>
using TapsOf = std::vector<typename Pair::Taps>;
template <class Pair>
using DataOf = std::vector<typename Pair::Data>;

// A filter with random taps and a random past; with or without FFT path.
template <class Pair>
struct Filter {
    const Pair& pair;
    TapsOf<Pair> taps;
    DataOf<Pair> past;
    ZppsFIRState* state = nullptr;

    Filter(const Pair& p, int tapsLen, bool withFft)
        : pair(p),
          taps(randomElements<typename Pair::Taps>(static_cast<std::size_t>(tapsLen), 1)),
          past(randomElements<typename Pair::Data>(taps.size(), 2)) {
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
    DataOf<Pair> run(const DataOf<Pair>& signal, bool inPlace, const std::function<int()>& nextLen) {
        EXPECT_EQ(pair.setDlyLine(state, past.data()), zppStatusOk);
        Guarded<typename Pair::Data> src(signal), dst(signal);
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
    DataOf<Pair> runWhole(const DataOf<Pair>& signal, bool inPlace = false) {
        return run(signal, inPlace, [&] { return static_cast<int>(signal.size()); });
    }

    // Whether the delay line is what follows the past and this signal.
    testing::AssertionResult remembers(const DataOf<Pair>& signal) const {
        DataOf<Pair> all(past.rbegin(), past.rend()), line(past.size());
        all.insert(all.end(), signal.begin(), signal.end());
        EXPECT_EQ(pair.getDlyLine(state, line.data()), zppStatusOk);
        return sameBits(DataOf<Pair>(all.rbegin(), all.rbegin() + static_cast<std::ptrdiff_t>(past.size())),
                        line);
    }

  private:
    std::vector<Zpp8u> buffer_;
};

TEST_P(Fir, IsTheConvolutionSum) {
    forEachPair([](const auto& pair) {
        using Pair = std::decay_t<decltype(pair)>;
        for (const int tapsLen : {1, 2, 3, 5, 7, 8, 9, 16, 31, 64, 131}) {
            Filter<Pair> filter(pair, tapsLen, false);
            const auto n = static_cast<std::size_t>(tapsLen);
            for (const int len : awkwardLengths()) {
                const auto signal = randomElements<typename Pair::Data>(static_cast<std::size_t>(len), 3);
                const Convolution expected(filter.taps, filter.past, signal);
                const auto y = filter.runWhole(signal);
                EXPECT_TRUE(expected.isNear(y, n)) << tapsLen << " taps, " << len;
                EXPECT_TRUE(filter.remembers(signal)) << tapsLen << " taps, " << len;
                EXPECT_TRUE(sameBits(y, filter.runWhole(signal, true))) << tapsLen << " taps, " << len;
                EXPECT_TRUE(filter.remembers(signal)) << tapsLen << " taps, " << len;
                EXPECT_TRUE(expected.isNear(filter.run(signal, false, [] { return 0; }), n));
                EXPECT_TRUE(filter.remembers(signal)) << tapsLen << " taps, " << len;
            }
        }
    });
}

// Blocks of 1, B, B + 1, more than the chunks of a 32-bit signal, and random; in and out of place.
TEST_P(Fir, GivesTheSameBitsHoweverSplit) {
    forEachPair([](const auto& pair) {
        using Pair = std::decay_t<decltype(pair)>;
        const auto signal = randomElements<typename Pair::Data>(3001, 3);
        for (const int tapsLen : {1, 6, 8, 64, 75, 1100}) {
            Filter<Pair> filter(pair, tapsLen, false);
            const auto whole = filter.runWhole(signal);
            const int limit = (tapsLen + 3) / 4 * 4 + 1;
            for (const int len : {tapsLen > 1000 ? 97 : 1, limit, limit + 1, 1025, 3000})
                for (const bool inPlace : {false, true}) {
                    EXPECT_TRUE(sameBits(whole, filter.run(signal, inPlace, [=] { return len; })))
                        << tapsLen << " taps, blocks of " << len;
                    EXPECT_TRUE(filter.remembers(signal));
                }
            Random random(4);
            const auto randomLen = [&] { return static_cast<int>(1 + random.below(300)); };
            EXPECT_TRUE(sameBits(whole, filter.run(signal, random.below(2) == 0, randomLen)));
        }
    });
}

TEST_P(Fir, MixesBlocksAndSingleSamples) {
    forEachPair([](const auto& pair) {
        using Pair = std::decay_t<decltype(pair)>;
        const auto signal = randomElements<typename Pair::Data>(1500, 3);
        for (const int tapsLen : {1, 3, 16, 50}) {
            Filter<Pair> filter(pair, tapsLen, true);
            const Convolution expected(filter.taps, filter.past, signal);
            Random random(5);
            // Mostly short, at times long enough for the FFT.
            const auto nextLen = [&] {
                return static_cast<int>(random.below(random.below(8) == 0 ? 500 : 4));
            };
            const auto y = filter.run(signal, false, nextLen);
            EXPECT_TRUE(expected.isNearByNorm(y, 4)) << tapsLen << " taps";
            EXPECT_TRUE(filter.remembers(signal));
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
        forEachPair([&](const auto& pair) {
            using Pair = std::decay_t<decltype(pair)>;
            const int fftLen = pair.kComplex ? c.complexLen : c.realLen;
            Filter<Pair> filter(pair, c.tapsLen, true);
            Filter<Pair> direct(pair, c.tapsLen, false);
            EXPECT_EQ(specificationOf(direct.state), nullptr);
            ASSERT_EQ(specificationOf(filter.state) != nullptr, fftLen > 0) << c.tapsLen;
            const auto upTo = randomElements<typename Pair::Data>(static_cast<std::size_t>(fftLen + 1), 3);
            const auto signal = randomElements<typename Pair::Data>(
                static_cast<std::size_t>(std::max(4 * fftLen + 17, 1000)), 3);
            if (fftLen == 0) {
                EXPECT_TRUE(sameBits(direct.runWhole(signal), filter.runWhole(signal)));
                return;
            }
            const auto splits = [=] { return fftLen; };
            EXPECT_TRUE(sameBits(direct.runWhole(signal), filter.run(signal, false, splits)));

            // A transform that fails ends the call with its status; the past has advanced by then.
            std::vector<typename Pair::Data> y(upTo.size());
            int& id = *specificationOf(filter.state);
            const int right = std::exchange(id, 0);
            EXPECT_EQ(pair.filter(upTo.data(), y.data(), fftLen, filter.state), zppStatusOk);
            EXPECT_EQ(pair.filter(upTo.data(), y.data(), fftLen + 1, filter.state), zppStatusContextMismatch);
            id = right;

            const Convolution expected(filter.taps, filter.past, signal);
            for (const int len : {fftLen + 1, 2 * fftLen, static_cast<int>(signal.size())})
                for (const bool inPlace : {false, true}) {
                    const auto result = filter.run(signal, inPlace, [=] { return len; });
                    EXPECT_TRUE(expected.isNearByNorm(result, 4)) << c.tapsLen << " taps, blocks of " << len;
                    EXPECT_TRUE(filter.remembers(signal));
                }
        });
    }
}

TEST_P(Fir, RunsTheNewTaps) {
    forEachPair([](const auto& pair) {
        using Pair = std::decay_t<decltype(pair)>;
        for (const bool withFft : {false, true}) {
            Filter<Pair> filter(pair, 40, withFft);
            const auto signal = randomElements<typename Pair::Data>(1000, 3);
            filter.runWhole(signal);
            filter.taps = randomElements<typename Pair::Taps>(40, 6);
            EXPECT_EQ(pair.setTaps(filter.taps.data(), filter.state), zppStatusOk);
            EXPECT_TRUE(filter.remembers(signal));
            EXPECT_TRUE(
                Convolution(filter.taps, filter.past, signal).isNearByNorm(filter.runWhole(signal), 4));
        }
    });
}

TEST_P(Fir, ChecksInOrder) {
    forEachPair([](const auto& pair) {
        using D = typename std::decay_t<decltype(pair)>::Data;
        Guarded<int> other({0x46493132});
        auto* wrong = reinterpret_cast<ZppsFIRState*>(other.data());
        Guarded<D> src(4), dst(4);
        expectAll(zppStatusNullPointer,
                  {pair.filter(nullptr, dst, 0, wrong), pair.filter(src, nullptr, 0, wrong),
                   pair.filter(src, dst, 0, nullptr), pair.filterInPlace(nullptr, 0, wrong),
                   pair.filterInPlace(dst, 0, nullptr), pair.filterOne(D{}, nullptr, wrong),
                   pair.filterOne(D{}, dst, nullptr)});
        expectAll(zppStatusSizeError, {pair.filter(src, dst, 0, wrong), pair.filterInPlace(dst, -1, wrong)});
        forEachPair([&](const auto& owner) {
            if (owner.singleRate == pair.singleRate) return;
            other.assign({owner.singleRate});
            expectAll(zppStatusContextMismatch,
                      {pair.filter(src, dst, 4, wrong), pair.filterInPlace(dst, 4, wrong),
                       pair.filterOne(D{}, dst, wrong)});
        });
        other.assign({pair.multiRate});
        EXPECT_EQ(pair.filterOne(D{}, dst, wrong), zppStatusContextMismatch);
        EXPECT_TRUE(dst.untouched());
    });
}

}  // namespace
}  // namespace zpp::test
