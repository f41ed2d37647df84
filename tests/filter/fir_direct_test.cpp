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

// Calls check(functions, 0) for real and complex numbers.
template <class Check>
void forBothTypes(Check check) {
#define FUNCTIONS(T, x) \
    Functions<T>{zppsFIR_Direct##x, zppsFIR_Direct##x##_I, zppsFIROne_Direct##x, zppsFIROne_Direct##x##_I}
    check(FUNCTIONS(Zpp64f, _64f), Zpp64f{});
    check(FUNCTIONS(Zpp64fc, _64fc), Zpp64fc{});
#undef FUNCTIONS
}

// The doubled delay line that holds the last tapsLen samples, the oldest of them at `index`.
template <class T>
std::vector<T> delayLine(const std::vector<T>& samples, std::size_t tapsLen, std::size_t index) {
    std::vector<T> line(2 * tapsLen);
    for (std::size_t j = 0; j < tapsLen; ++j) {
        const std::size_t place = (index + j) % tapsLen;
        line[place] = line[place + tapsLen] = samples[samples.size() - tapsLen + j];
    }
    return line;
}

enum Form { kBlock, kBlockInPlace, kOne, kOneInPlace };

TEST_P(FirDirect, IsTheConvolutionSum) {
    forBothTypes([](const auto& f, auto zero) {
        using T = decltype(zero);
        for (const std::size_t tapsLen : {1u, 2u, 3u, 8u, 13u, 31u, 64u, 500u, 1030u})
            for (const std::size_t len : {1u, 3u, 4u, 5u, 17u, 64u, 65u, 2500u}) {
                Guarded<T> taps(randomElements<T>(tapsLen, 1)), src(randomElements<T>(len, 3));
                const auto past = randomElements<T>(tapsLen, 2), signal = src.values();
                const std::vector<T> before(past.rbegin(), past.rend());
                auto all = before;
                all.insert(all.end(), signal.begin(), signal.end());
                const Convolution expected(taps.values(), past, signal);
                for (const std::size_t start : {std::size_t{0}, tapsLen / 2, tapsLen - 1}) {
                    if (tapsLen > 100 && start != tapsLen / 2) continue;  // the short have gone through all
                    for (const Form form : {kBlock, kBlockInPlace, kOne, kOneInPlace}) {
                        SCOPED_TRACE(testing::Message() << tapsLen << " taps, " << len << ", form " << form);
                        Guarded<T> dst(signal);
                        Guarded<T> line(delayLine(before, tapsLen, start));
                        int index = static_cast<int>(start);
                        if (form == kBlock)
                            EXPECT_EQ(f.filter(src, dst, src.len(), taps, taps.len(), line, &index),
                                      zppStatusOk);
                        else if (form == kBlockInPlace)
                            EXPECT_EQ(f.filterInPlace(dst, src.len(), taps, taps.len(), line, &index),
                                      zppStatusOk);
                        else
                            for (int i = 0; i < src.len(); ++i)
                                EXPECT_EQ(form == kOne
                                              ? f.one(src[i], dst + i, taps, taps.len(), line, &index)
                                              : f.oneInPlace(dst + i, taps, taps.len(), line, &index),
                                          zppStatusOk);
                        EXPECT_TRUE(expected.isNear(dst.values()));
                        const std::size_t end = (start + len) % tapsLen;
                        EXPECT_EQ(index, static_cast<int>(end));
                        EXPECT_TRUE(sameBits(delayLine(all, tapsLen, end), line.values()));
                        EXPECT_TRUE(dst.intact() && line.intact());
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
