#include <climits>

#include "tests/filter/fir_multirate_support.h"
#include "tests/support/binding.h"
#include "tests/support/objects.h"
#include "tests/support/x87.h"

namespace zpp::test {
namespace {

class FirMultiRate : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(FirMultiRate);

constexpr MultiRate kFilters[] = {
    // one factor 1, few taps
    {3, 2, 0, 1, 0},
    {1, 3, 2, 1, 0},
    {1, 1, 0, 2, 1},
    {5, 1, 0, 2, 0},
    // the phases at their limits
    {9, 5, 4, 3, 0},
    {9, 5, 0, 3, 2},
    {9, 3, 2, 5, 4},
    // common factors, with and without taps for all phases met
    {13, 6, 5, 4, 1},
    {24, 6, 1, 9, 8},
    {8, 4, 3, 4, 0},
    {3, 12, 7, 8, 2},
    {5, 90, 70, 60, 3},
    // the usual ones
    {48, 6, 0, 1, 0},
    {383, 6, 3, 1, 0},
    {96, 1, 0, 6, 5},
    {385, 1, 0, 6, 0},
    {100, 3, 1, 2, 1},
    {31, 2, 0, 3, 1},
    {940, 147, 146, 160, 0},
    {640, 160, 20, 147, 100},
    // fewer taps than phases, and few inputs met
    {9, 130, 0, 9, 3},
    {40, 1000, 999, 999, 3},
    {2, 1, 0, 700, 640},
    // windows longer than the chunks and rows on the stack
    {1100, 2, 0, 5, 4},
    {2500, 1, 0, 3, 0},
    {2600, 1, 0, 1, 0},
};

// All at once and in runs of blocks, in place and not, with a state and without.
TEST_P(FirMultiRate, IsTheFilteredSignalWithZerosPutInHoweverSplit) {
    Random random(4);
    forEachMultiRate([&]<class T, class D>(const MultiRatePair<T, D>& pair) {
        for (const MultiRateInput& input : kMultiRateInputs)
            for (const MultiRate& r : kFilters) {
                SCOPED_TRACE(testing::Message() << r << ", " << input.name);
                const bool slow = &input != kMultiRateInputs &&
                                  r.tapsLen > 400;  // each NaN takes the x87 unit a hundred cycles
                if (slow) continue;
                // Inputs are taken in chunks of up to 2048: of short filters there are several.
                const bool many = r.tapsLen < 10 && r.down < 10;
                const Problem problem(pair, r, many ? 2500 / r.down : 2 + 400 / std::max(r.up, r.down),
                                      input);
                const int blocks = problem.blocks();
                const auto all = [=] { return blocks; };
                const auto some = [&] {
                    return static_cast<int>(random.below(static_cast<std::uint64_t>(blocks)));
                };
                std::vector<D> whole;
                if (!r.isSingleRate()) {
                    ZppsFIRState* state = nullptr;
                    ASSERT_EQ(pair.allocate(&state, problem.taps.data(), r, nullptr), zppStatusOk);
                    whole = problem.solve(false, state, all);
                    EXPECT_TRUE(problem.isSolvedBy(whole));
                    EXPECT_TRUE(same(whole, problem.solve(true, state, all)));
                    EXPECT_TRUE(same(whole, problem.solve(false, state, some)));
                    EXPECT_TRUE(same(whole, problem.solve(true, state, some)));
                    EXPECT_EQ(pair.states.free(state), zppStatusOk);
                }
                if constexpr (std::is_same_v<T, D>) {
                    const auto direct = problem.solveDirectly(false, all);
                    EXPECT_TRUE(r.isSingleRate() ? problem.isSolvedBy(direct) : same(whole, direct));
                    EXPECT_TRUE(same(direct, problem.solveDirectly(true, all)));
                    EXPECT_TRUE(same(direct, problem.solveDirectly(true, some)));
                }
            }
    });
}

// At every alignment, with a guard page behind it; taps and delay line come out as they went in.
TEST_P(FirMultiRate, FitsTheCallersBufferAtAnyAlignment) {
    forEachMultiRate([]<class T, class D>(const MultiRatePair<T, D>& pair) {
        for (const MultiRate& r : {MultiRate{3, 2, 1, 1, 0},
                                   {7, 4, 1, 6, 1},
                                   {50, 3, 0, 7, 6},
                                   {3, 40, 39, 1, 0},
                                   {9, 1, 0, 1, 0}})
            for (std::size_t spare = 0; spare < 17; ++spare) {
                SCOPED_TRACE(testing::Message() << r << ", " << spare);
                const Problem problem(pair, r, 150 / r.down);
                int size = 0;
                ASSERT_EQ(pair.getStateSize(r.tapsLen, r.up, r.down, &size), zppStatusOk);
                Guarded<Zpp8u> buffer(static_cast<std::size_t>(size) + spare);
                ZppsFIRState* state = nullptr;
                const auto other = randomElements<T>(problem.taps.size(), 9);
                ASSERT_EQ(pair.initIn(&state, other.data(), r, problem.past.data(), buffer), zppStatusOk);
                EXPECT_EQ(identifierOf(state),
                          r.isSingleRate() ? pair.states.singleRate : pair.states.multiRate);
                Guarded<D> line(problem.past.size());
                EXPECT_EQ(pair.states.getDlyLine(state, line), zppStatusOk);
                EXPECT_TRUE(sameBits(problem.past, line.values()));

                Guarded<T> taps(problem.taps.size());
                EXPECT_EQ(pair.states.setTaps(problem.taps.data(), state), zppStatusOk);
                EXPECT_TRUE(problem.isSolvedBy(problem.solve(true, state, [] { return 20; })));
                EXPECT_EQ(pair.states.getTaps(state, taps), zppStatusOk);
                EXPECT_TRUE(sameBits(problem.taps, taps.values()));
                EXPECT_EQ(pair.states.setDlyLine(state, nullptr), zppStatusOk);
                EXPECT_EQ(pair.states.getDlyLine(state, line), zppStatusOk);
                EXPECT_TRUE(sameBits(std::vector<D>(line.size()), line.values()));
                EXPECT_EQ(pair.states.free(state), zppStatusOk);
                EXPECT_TRUE(buffer.intact() && taps.intact() && line.intact());
                EXPECT_TRUE(
                    std::all_of(buffer + size, buffer.end(), [](Zpp8u byte) { return byte == 0xA5; }));
            }
    });
}

TEST_P(FirMultiRate, IsSingleRateWithFactorsOfOne) {
    forEachMultiRate([]<class T, class D>(const MultiRatePair<T, D>& pair) {
        int size = 0, single = 0;
        EXPECT_EQ(pair.getStateSize(77, 1, 1, &size), zppStatusOk);
        EXPECT_EQ(pair.states.getStateSize(77, &single), zppStatusOk);
        EXPECT_EQ(size, single);
        const std::vector<T> taps(77);
        ZppsFIRState* state = nullptr;
        ASSERT_EQ(pair.allocate(&state, taps.data(), {77, 1, 0, 1, 0}, nullptr), zppStatusOk);
        EXPECT_EQ(identifierOf(state), pair.states.singleRate);
        EXPECT_NE(specificationOf(state), nullptr);
        EXPECT_EQ(pair.states.free(state), zppStatusOk);
    });
}

// Numbers of which the first that is wrong decides, before memory is asked for.
TEST_P(FirMultiRate, RefusesNumbersInOrder) {
    struct Case {
        ZppStatus expected;
        MultiRate rates;
    };
    const Case cases[] = {
        {zppStatusFirLength, {0, 0, 0, 0, 0}},
        {zppStatusFirLength, {INT_MIN, 1, 0, 1, 0}},
        {zppStatusFirMrFactor, {3, 0, 0, 1, 0}},
        {zppStatusFirMrFactor, {3, 1, 0, -1, 0}},
        {zppStatusFirMrFactor, {INT_MAX, INT_MIN, -1, 1, 0}},
        {zppStatusFirMrPhase, {3, 2, 2, 1, 0}},
        {zppStatusFirMrPhase, {3, 2, -1, 1, 0}},
        {zppStatusFirMrPhase, {3, 2, 0, 3, 3}},
        {zppStatusFirMrPhase, {INT_MAX, INT_MAX, 0, INT_MAX, INT_MIN}},
        {zppStatusSizeError, {INT_MAX, 1, 0, 2, 0}},
        {zppStatusSizeError, {INT_MAX, 2, 0, 1, 0}},
        {zppStatusSizeError, {INT_MAX, INT_MAX, 0, INT_MAX - 1, 0}},
        {zppStatusSizeError, {INT_MAX, 1, 0, 1, 0}},
        {zppStatusSizeError, {INT_MAX / 16, INT_MAX - 1, 0, INT_MAX, 0}},
    };
    forEachMultiRate([&]<class T, class D>(const MultiRatePair<T, D>& pair) {
        for (const auto& [expected, r] : cases) {
            SCOPED_TRACE(testing::Message() << r);
            const T tap{};
            Guarded<Zpp8u> buffer(1);
            int size = 5;
            const ZppStatus sized = pair.getStateSize(r.tapsLen, r.up, r.down, &size);
            EXPECT_TRUE(sized == expected || expected == zppStatusFirMrPhase);
            size = sized == zppStatusOk ? 5 : size;
            EXPECT_EQ(size, 5);
            expectRefused<ZppsFIRState>(
                expected,
                [&, &rates = r](ZppsFIRState** pp) { return pair.initIn(pp, &tap, rates, nullptr, buffer); },
                0);
            expectRefused<ZppsFIRState>(
                expected,
                [&, &rates = r](ZppsFIRState** pp) { return pair.allocate(pp, &tap, rates, nullptr); }, 0);
            EXPECT_TRUE(buffer.untouched());
            if constexpr (std::is_same_v<T, D>) {
                if (expected == zppStatusSizeError) continue;
                Guarded<T> y(1);
                const T x{};
                EXPECT_EQ(pair.filterDirectly(&x, y, 1, &tap, r, nullptr), expected);
                EXPECT_EQ(pair.filterDirectly(y, y, 1, &tap, r, nullptr), expected);
                EXPECT_TRUE(y.untouched());
            }
        }
    });
}

// The largest factors need no more memory than the taps, and each size is that of all phases.
TEST_P(FirMultiRate, TakesTheLargestFactors) {
    forEachMultiRate([]<class T, class D>(const MultiRatePair<T, D>& pair) {
        for (const MultiRate& r : {MultiRate{5, INT_MAX, INT_MAX - 1, INT_MAX - 1, 0},
                                   {5, INT_MAX, 0, INT_MAX, INT_MAX - 1},
                                   {5, 1, 0, INT_MAX, INT_MAX - 1}}) {
            int size = 0;
            EXPECT_EQ(pair.getStateSize(r.tapsLen, r.up, r.down, &size), zppStatusOk);
            EXPECT_LT(size, 100000);
            ZppsFIRState* state = nullptr;
            const Problem problem(pair, {5, 1, 0, 1, 0}, 1);
            ASSERT_EQ(pair.allocate(&state, problem.taps.data(), r, problem.past.data()), zppStatusOk);
            EXPECT_EQ(pair.states.free(state), zppStatusOk);
        }
    });
}

TEST_P(FirMultiRate, ChecksPointersAndBlocksInOrder) {
    forEachMultiRate([]<class T, class D>(const MultiRatePair<T, D>& pair) {
        const T taps[2] = {};
        Zpp8u buffer = 0;
        ZppsFIRState* state = nullptr;
        const MultiRate wrong{0, 0, 0, 0, 0};
        expectAll(
            zppStatusNullPointer,
            {pair.getStateSize(0, 0, 0, nullptr), pair.initIn(nullptr, taps, wrong, nullptr, &buffer),
             pair.initIn(&state, nullptr, wrong, nullptr, &buffer),
             pair.initIn(&state, taps, wrong, nullptr, nullptr), pair.allocate(nullptr, taps, wrong, nullptr),
             pair.allocate(&state, nullptr, wrong, nullptr)});
        if constexpr (std::is_same_v<T, D>) {
            Guarded<T> x(4), y(4), line(2);
            const MultiRate right{2, 1, 0, 2, 1};
            expectAll(zppStatusNullPointer, {pair.filterDirectly(nullptr, y, 0, nullptr, wrong, nullptr),
                                             pair.filterDirectly(x, nullptr, 0, nullptr, wrong, nullptr),
                                             pair.directInPlace(nullptr, 0, nullptr, 0, 0, 0, 0, 0, nullptr),
                                             pair.filterDirectly(x, y, 1, nullptr, wrong, nullptr),
                                             pair.filterDirectly(y, y, 1, nullptr, wrong, nullptr),
                                             pair.filterDirectly(x, y, 1, taps, right, nullptr),
                                             pair.filterDirectly(y, y, 1, taps, right, nullptr)});
            expectAll(zppStatusSizeError, {pair.filterDirectly(x, y, 0, nullptr, wrong, nullptr),
                                           pair.filterDirectly(y, y, -1, nullptr, wrong, nullptr)});
            EXPECT_TRUE(y.untouched() && line.untouched());
        }
    });
}

TEST_P(FirMultiRate, MakesStatesOfItsOwnKind) {
    forEachMultiRate([]<class T, class D>(const MultiRatePair<T, D>& pair) {
        const T tap{};
        ZppsFIRState* state = nullptr;
        ASSERT_EQ(pair.allocate(&state, &tap, {1, 2, 0, 1, 0}, nullptr), zppStatusOk);
        EXPECT_EQ(identifierOf(state), pair.states.multiRate);
        EXPECT_EQ(pair.states.free(state), zppStatusOk);
    });
}

TEST_P(FirMultiRate, AllocatesAllOrNothing) {
    forEachMultiRate([]<class T, class D>(const MultiRatePair<T, D>& pair) {
        const std::vector<T> taps(40);
        const auto init = [&](ZppsFIRState** pp) {
            return pair.allocate(pp, taps.data(), {40, 3, 1, 2, 0}, nullptr);
        };
        expectAllOrNothing<ZppsFIRState>(1, init, pair.states.free);
    });
}

// Whatever precision the caller has set the x87 unit to.
TEST_P(FirMultiRate, ComputesInDoublePrecision) {
    if (!loadsAreExact()) GTEST_SKIP() << "this emulated processor rounds doubles that it loads at 24 bits";
    forEachMultiRate([]<class T, class D>(const MultiRatePair<T, D>& pair) {
        const Problem problem(pair, {40, 3, 1, 2, 0}, 60);
        ZppsFIRState* state = nullptr;
        ASSERT_EQ(pair.allocate(&state, problem.taps.data(), problem.rates, problem.past.data()),
                  zppStatusOk);
        std::vector<D> y(180);
        {
            const X87ControlWord single(0x07F);
            pair.states.filter(problem.signal.data(), y.data(), 60, state);
            EXPECT_EQ(x87ControlWord(), 0x07F);
        }
        EXPECT_TRUE(problem.isSolvedBy(y));
        EXPECT_EQ(pair.states.free(state), zppStatusOk);
        if constexpr (std::is_same_v<T, D>) {
            std::vector<T> direct(180), line = problem.past;
            {
                const X87ControlWord single(0x07F);
                pair.filterDirectly(problem.signal.data(), direct.data(), 60, problem.taps.data(),
                                    problem.rates, line.data());
            }
            EXPECT_TRUE(sameBits(y, direct));
        }
    });
}

}  // namespace
}  // namespace zpp::test
