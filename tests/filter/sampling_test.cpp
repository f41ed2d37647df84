#include <climits>

#include "tests/support/binding.h"
#include "tests/support/table.h"
#include "zpp/filter.h"

namespace zpp::test {
namespace {

class Sampling : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Sampling);

template <class T>
using Sample = ZppStatus (*)(const T*, int, T*, int*, int, int*);

// One call of each, on all bit patterns, which the results must keep.
template <class T>
void expectSampled(Sample<T> up, Sample<T> down, int len, int factor, int phase) {
    SCOPED_TRACE(testing::Message() << len << " by " << factor << " from " << phase);
    using Bits = Raw<T>;
    const auto values = Random().patterns<Bits>(static_cast<std::size_t>(len));
    const auto step = static_cast<std::size_t>(factor), first = static_cast<std::size_t>(phase);
    std::vector<Bits> spread(values.size() * step), kept;
    for (std::size_t k = 0; k < values.size(); ++k) spread[k * step + first] = values[k];
    for (std::size_t i = first; i < values.size(); i += step) kept.push_back(values[i]);

    Guarded<Bits> src(values), dst(spread.size());
    int dstLen = -1, position = phase;
    ASSERT_EQ(up(passed(src.data()), len, passed(dst.data()), &dstLen, factor, &position), zppStatusOk);
    ASSERT_TRUE(sameBits(spread, dst.values()) && dst.intact());
    ASSERT_EQ(std::pair(dstLen, position), std::pair(len * factor, phase));

    // Of the source nothing is there behind the last sample that is kept.
    const std::size_t read = kept.empty() ? 0 : (kept.size() - 1) * step + first + 1;
    Guarded<Bits> needed(
        std::vector<Bits>(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(read)));
    Guarded<Bits> few(kept.size());
    for (Bits* to : {few.data(), needed.data()}) {  // the last time in place
        position = phase;
        ASSERT_EQ(down(passed(needed.data()), len, passed(to), &dstLen, factor, &position), zppStatusOk);
        ASSERT_TRUE(sameBits(kept, std::vector<Bits>(to, to + kept.size())) && few.intact() &&
                    needed.intact());
        ASSERT_EQ(std::pair(dstLen, position), std::pair(few.len(), phase + few.len() * factor - len));
    }
}

TEST_P(Sampling, MovesSamplesToTheirPlaces) {
    for (const int len : awkwardLengths())
        for (const int factor : {1, 2, 3, 8, 300})
            for (const int phase : {0, factor / 2, factor - 1}) {
                expectSampled(zppsSampleUp_64f, zppsSampleDown_64f, len, factor, phase);
                expectSampled(zppsSampleUp_64fc, zppsSampleDown_64fc, len, factor, phase);
            }
}

// Beyond the length from which on results go past the caches.
TEST_P(Sampling, StoresLongResults) {
    for (const int factor : {2, 3})
        expectSampled(zppsSampleUp_64f, zppsSampleDown_64f, (1 << 21) / factor + 5, factor, 1);
    expectSampled(zppsSampleUp_64fc, zppsSampleDown_64fc, (1 << 20) / 7 + 3, 7, 6);
}

// Whatever the blocks, the results are those of one call.
TEST_P(Sampling, CarriesItsPhaseOverThousandsOfBlocks) {
    Random random;
    const auto signal = random.reals(30000);
    for (const int factor : {1, 2, 3, 7, 64}) {
        std::vector<double> up(signal.size() * static_cast<std::size_t>(factor)), down(signal.size());
        std::vector<double> upBlocks = up, downBlocks = down;
        int phase = factor / 3, last = phase, dstLen = 0;
        zppsSampleUp_64f(signal.data(), 30000, up.data(), &dstLen, factor, &phase);
        zppsSampleDown_64f(signal.data(), 30000, down.data(), &dstLen, factor, &last);
        double *toUp = upBlocks.data(), *toDown = downBlocks.data();
        int samePhase = phase;
        for (int at = 0, len = 0; at < 30000; at += len) {
            const double* src = signal.data() + at;
            len = std::min(1 + static_cast<int>(random.below(20)), 30000 - at);
            zppsSampleUp_64f(src, len, toUp, &dstLen, factor, &samePhase);
            toUp += dstLen;
            zppsSampleDown_64f(src, len, toDown, &dstLen, factor, &phase);
            toDown += dstLen;
        }
        EXPECT_TRUE(sameBits(up, upBlocks) && sameBits(down, downBlocks) && phase == last) << factor;
    }
}

// By hand, and with numbers that 32 bits do not hold.
TEST_P(Sampling, AtItsLimits) {
    const struct {
        int len, factor, phase;
        ZppStatus up, down;
        int kept, next;
    } cases[] = {{0, 0, -1, zppStatusSizeError, zppStatusSizeError, 0, 0},
                 {INT_MAX, INT_MIN, -1, zppStatusSampleFactor, zppStatusSampleFactor, 0, 0},
                 {INT_MAX, 2, 2, zppStatusSamplePhase, zppStatusSamplePhase, 0, 0},
                 {3, INT_MAX, -1, zppStatusSamplePhase, zppStatusSamplePhase, 0, 0},
                 {2, 1 << 30, 0, zppStatusSizeError, zppStatusOk, 1, (1 << 30) - 2},
                 {10, INT_MAX, INT_MAX - 1, zppStatusSizeError, zppStatusOk, 0, INT_MAX - 11},
                 {10, INT_MAX, 9, zppStatusSizeError, zppStatusOk, 1, INT_MAX - 1},
                 {10, INT_MAX - 3, 5, zppStatusSizeError, zppStatusOk, 1, INT_MAX - 8},
                 {6, 1 << 30, 5, zppStatusSizeError, zppStatusOk, 1, (1 << 30) - 1}};
    const std::vector<double> src(10);
    const auto expect = [&](const auto& c, Sample<double> call, ZppStatus status) {
        Guarded<double> dst(static_cast<std::size_t>(c.kept));
        Guarded<int> dstLen(1), phase{c.phase};
        ASSERT_EQ(call(src.data(), c.len, dst, dstLen, c.factor, phase), status)
            << c.len << " by " << c.factor;
        if (status == zppStatusOk) {
            EXPECT_EQ(std::pair(*dstLen, *phase), std::pair(c.kept, c.next)) << c.len << " by " << c.factor;
            return;
        }
        EXPECT_TRUE(dst.untouched() && dstLen.untouched() && *phase == c.phase);
        for (int missing = 0; missing < 4; ++missing)
            EXPECT_EQ(
                call(missing == 0 ? nullptr : src.data(), c.len, missing == 1 ? nullptr : dst.data(),
                     missing == 2 ? nullptr : dstLen.data(), c.factor, missing == 3 ? nullptr : phase.data()),
                zppStatusNullPointer);
    };
    for (const auto& c : cases) {
        expect(c, zppsSampleUp_64f, c.up);
        expect(c, zppsSampleDown_64f, c.down);
    }
}

}  // namespace
}  // namespace zpp::test
