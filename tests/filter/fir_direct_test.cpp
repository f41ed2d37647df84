#include "tests/filter/fir_support.h"
#include "tests/support/binding.h"

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

template <class Check>
void forBothTypes(Check check) {
    check(Functions<Zpp64f>{zppsFIR_Direct_64f, zppsFIR_Direct_64f_I, zppsFIROne_Direct_64f,
                            zppsFIROne_Direct_64f_I},
          Zpp64f{});
    check(Functions<Zpp64fc>{zppsFIR_Direct_64fc, zppsFIR_Direct_64fc_I, zppsFIROne_Direct_64fc,
                             zppsFIROne_Direct_64fc_I},
          Zpp64fc{});
}

enum Form { kBlock, kBlockInPlace, kOne, kOneInPlace };

// One filter with its doubled delay line, whose oldest sample, the last of `past`, stands at `index`.
template <class T>
struct DirectFilter {
    Guarded<T> taps;
    std::vector<T> past;
    Guarded<T> line;
    int index;

    DirectFilter(std::size_t tapsLen, int start)
        : taps(randomElements<T>(tapsLen, 1)),
          past(randomElements<T>(tapsLen, 2)),
          line(2 * tapsLen),
          index(start) {
        for (std::size_t j = 0; j < tapsLen; ++j)
            line[(index + j) % tapsLen] = line[(index + j) % tapsLen + tapsLen] = past[tapsLen - 1 - j];
    }

    void run(const Functions<T>& f, Form form, Guarded<T>& src, Guarded<T>& dst) {
        const int n = src.len(), len = taps.len();
        if (form == kBlock)
            EXPECT_EQ(f.filter(src, dst, n, taps, len, line, &index), zppStatusOk);
        else if (form == kBlockInPlace)
            EXPECT_EQ(f.filterInPlace(dst, n, taps, len, line, &index), zppStatusOk);
        else
            for (int i = 0; i < n; ++i)
                EXPECT_EQ(form == kOne ? f.one(src[i], dst + i, taps, len, line, &index)
                                       : f.oneInPlace(dst + i, taps, len, line, &index),
                          zppStatusOk);
    }

    // Whether both copies of the delay line follow the past and this signal, from the right index on.
    testing::AssertionResult remembers(const std::vector<T>& signal, int start) const {
        const std::size_t len = past.size();
        if (static_cast<std::size_t>(index) != (static_cast<std::size_t>(start) + signal.size()) % len)
            return testing::AssertionFailure() << "index " << index;
        std::vector<T> all(past.rbegin(), past.rend()), expected(2 * len);
        all.insert(all.end(), signal.begin(), signal.end());
        for (std::size_t j = 0; j < len; ++j) {
            const std::size_t place = (static_cast<std::size_t>(index) + j) % len;
            expected[place] = expected[place + len] = all[signal.size() + j];
        }
        return sameBits(expected, line.values());
    }
};

TEST_P(FirDirect, IsTheConvolutionSum) {
    forBothTypes([](const auto& functions, auto zero) {
        using T = decltype(zero);
        for (const std::size_t tapsLen : {1, 2, 3, 8, 13, 31, 64, 500, 1030})
            for (const std::size_t len : {1, 3, 4, 5, 17, 64, 65, 2500}) {
                const auto signal = randomElements<T>(len, 3);
                for (const std::size_t start : {std::size_t{0}, tapsLen / 2, tapsLen - 1}) {
                    const int index = static_cast<int>(start);
                    const Convolution expected = [&] {
                        const DirectFilter<T> filter(tapsLen, index);
                        return Convolution(filter.taps.values(), filter.past, signal);
                    }();
                    for (const Form form : {kBlock, kBlockInPlace, kOne, kOneInPlace}) {
                        DirectFilter<T> filter(tapsLen, index);
                        Guarded<T> src(signal), dst(signal);
                        filter.run(functions, form, src, dst);
                        EXPECT_TRUE(expected.isNear(dst.values()))
                            << tapsLen << " taps, " << len << ", form " << form;
                        EXPECT_TRUE(filter.remembers(signal, index))
                            << tapsLen << " taps, " << len << ", form " << form;
                        EXPECT_TRUE(dst.intact() && filter.line.intact());
                    }
                }
            }
    });
}

TEST_P(FirDirect, ChecksInOrder) {
    forBothTypes([](const auto& f, auto zero) {
        using T = decltype(zero);
        Guarded<T> x(4), y(4), line(4);
        const T taps[2] = {};
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
