#include "tests/filter/fir_support.h"
#include "tests/support/binding.h"
#include "tests/support/draws.h"
#include "tests/support/x87.h"

namespace zpp::test {
namespace {

class FirDirect : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(FirDirect);

template <class T>
struct Functions {
    ZppStatus (*filter)(const T*, T*, int, const T*, int, T*, int*);
    ZppStatus (*filterInPlace)(T*, int, const T*, int, T*, int*);
    ZppStatus (*one)(T, T*, const T*, int, T*, int*);
    ZppStatus (*oneInPlace)(T*, const T*, int, T*, int*);
};

// Calls check(functions, pair) for real and complex numbers; the pair's states filter alike.
template <class Check>
void forBothTypes(Check check) {
#define FUNCTIONS(T, x) \
    Functions<T>{zppsFIR_Direct##x, zppsFIR_Direct##x##_I, zppsFIROne_Direct##x, zppsFIROne_Direct##x##_I}
    forEachPair([&]<class T, class D>(const FirPair<T, D>& pair) {
        if constexpr (std::is_same_v<D, Zpp64f>) check(FUNCTIONS(Zpp64f, _64f), pair);
        if constexpr (std::is_same_v<D, Zpp64fc>) check(FUNCTIONS(Zpp64fc, _64fc), pair);
    });
#undef FUNCTIONS
}

// A delay line and its index after the filter's past.
template <class T>
struct Direct {
    const Functions<T>& functions;
    Guarded<T> taps, line;
    int index;

    Direct(const Functions<T>& f, const Filter<T, T>& filter, int start)
        : functions(f), taps(filter.taps), line(2 * filter.taps.size()), index(start) {
        line.assign(lineAfter({filter.past.rbegin(), filter.past.rend()}, start));
    }

    // The doubled delay line that holds the last samples, the oldest of them at `start`.
    std::vector<T> lineAfter(const std::vector<T>& samples, int start) const {
        const auto len = taps.size();
        std::vector<T> values(2 * len);
        for (std::size_t j = 0; j < len; ++j) {
            const std::size_t place = (static_cast<std::size_t>(start) + j) % len;
            values[place] = values[place + len] = samples[samples.size() - len + j];
        }
        return values;
    }

    ZppStatus run(const T* src, T* dst, int len, bool inPlace) {
        if (!inPlace)
            return len > 0 ? functions.filter(src, dst, len, taps, taps.len(), line, &index)
                           : functions.one(*src, dst, taps, taps.len(), line, &index);
        return len > 0 ? functions.filterInPlace(dst, len, taps, taps.len(), line, &index)
                       : functions.oneInPlace(dst, taps, taps.len(), line, &index);
    }
};

// Those of a state that takes the signal at once, by blocks around the room in the window, of a few samples,
// of many, and by single samples. Special values, each of which takes the x87 unit a hundred cycles, are seen
// with fewer taps and samples.
TEST_P(FirDirect, HasTheBitsOfAStateHoweverSplit) {
    Random random(4);
    forBothTypes([&]<class T>(const Functions<T>& functions, const FirPair<T, T>& pair) {
        const int window = 16384 / sizeof(T);
        for (const Draw draw : kDraws)
            for (const int tapsLen :
                 {1, 2, 8, static_cast<int>(3 + random.below(60)), static_cast<int>(60 + random.below(300)),
                  window / 2 - 1, window / 2, window / 2 + 1, static_cast<int>(1100 + random.below(1900))}) {
                const bool ordinary = draw == Draw::kOrdinary;
                if (!ordinary && tapsLen > 300) continue;
                SCOPED_TRACE(testing::Message() << tapsLen << " taps");
                Filter<T, T> filter(pair, tapsLen, 0);
                EXPECT_EQ(filter.setTaps(drawn<T>(random, draw, filter.taps.size())), zppStatusOk);
                const Guarded<T> src(drawn<T>(random, draw, ordinary ? 2600 : 500));
                const auto signal = src.values(), whole = filter.runWhole(signal);
                auto all = std::vector<T>(filter.past.rbegin(), filter.past.rend());
                all.insert(all.end(), signal.begin(), signal.end());
                const int around[] = {1, 8, tapsLen, std::max(1, window - tapsLen)};
                for (const bool inPlace : {false, true}) {
                    const auto start = static_cast<int>(random.below(filter.taps.size()));
                    Direct<T> direct(functions, filter, start);
                    Guarded<T> dst(signal);
                    for (int done = 0, n; done < dst.len(); done += n) {
                        const int some = random.below(4) == 0 ? static_cast<int>(random.below(300))
                                                              : around[random.below(4)] +
                                                                    static_cast<int>(random.below(5)) - 2;
                        const int len = std::min(std::max(some, 0), dst.len() - done);
                        n = std::max(len, 1);
                        EXPECT_EQ(direct.run(src.data() + done, dst + done, len, inPlace), zppStatusOk);
                    }
                    EXPECT_TRUE(same(whole, dst.values()));
                    EXPECT_EQ(direct.index, (start + dst.len()) % tapsLen);
                    EXPECT_TRUE(sameBits(direct.lineAfter(all, direct.index), direct.line.values()));
                    EXPECT_TRUE(dst.intact() && direct.line.intact());
                }
            }
    });
}

TEST_P(FirDirect, ComputesInDoublePrecision) {
    if (!loadsAreExact()) GTEST_SKIP() << "this emulated processor rounds doubles that it loads at 24 bits";
    forBothTypes([]<class T>(const Functions<T>& functions, const FirPair<T, T>& pair) {
        Filter<T, T> filter(pair, 40, 0);
        const auto signal = randomElements<T>(100, 3), whole = filter.runWhole(signal);
        for (const int len : {100, 0}) {
            Direct<T> direct(functions, filter, 0);
            std::vector<T> y(signal.size());
            const X87ControlWord single(0x07F);
            for (std::size_t i = 0; i < 100; i += static_cast<std::size_t>(std::max(len, 1)))
                direct.run(&signal[i], &y[i], len, false);
            EXPECT_EQ(x87ControlWord(), 0x07F);
            EXPECT_TRUE(sameBits(whole, y));
        }
    });
}

TEST_P(FirDirect, ChecksInOrder) {
    forBothTypes([]<class T>(const Functions<T>& f, const FirPair<T, T>&) {
        Guarded<T> x(4), y(4), line(4);
        const T taps[2] = {}, zero{};
        int index = 0;
        expectAll(
            zppStatusNullPointer,
            {f.filter(nullptr, y, 0, nullptr, 0, line, &index),
             f.filterInPlace(nullptr, 0, nullptr, 0, line, &index),
             f.filter(x, y, 4, nullptr, 0, line, &index), f.filterInPlace(y, 4, nullptr, 0, line, &index),
             f.one(zero, nullptr, taps, 0, line, &index), f.one(zero, y, nullptr, 0, line, &index),
             f.oneInPlace(nullptr, taps, 0, line, &index), f.oneInPlace(y, nullptr, 0, line, &index)});
        expectAll(zppStatusSizeError, {f.filter(x, y, 0, nullptr, 0, nullptr, nullptr),
                                       f.filterInPlace(y, -3, nullptr, 0, nullptr, nullptr)});
        expectAll(
            zppStatusFirLength,
            {f.filter(x, y, 4, taps, 0, nullptr, nullptr), f.filterInPlace(y, 4, taps, -2, nullptr, nullptr),
             f.one(zero, y, taps, 0, nullptr, nullptr), f.oneInPlace(y, taps, -1, nullptr, nullptr)});
        EXPECT_TRUE(y.untouched() && line.untouched());
        EXPECT_EQ(index, 0);
    });
}

}  // namespace
}  // namespace zpp::test
