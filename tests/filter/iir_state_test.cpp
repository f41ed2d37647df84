#include <climits>

#include "tests/filter/iir_support.h"
#include "tests/support/binding.h"
#include "tests/support/draws.h"
#include "tests/support/objects.h"

namespace zpp::test {
namespace {

class IirState : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(IirState);

TEST_P(IirState, SizesAreExact) {
    struct Case {
        int order, real, complex, realCascade, complexCascade;  // 0: refused
    };
    for (const Case& c : {Case{0, 96, 96, 0, 0},
                          {1, 112, 144, 112, 176},
                          {2, 144, 192, 160, 288},
                          {3, 160, 240, 224, 400},
                          {8, 288, 480, 496, 960},
                          {1001, 24112, 48144, 56112, 112176}})
        forEachKind([&](const auto& kind) {
            const int expected = kind.cascade ? (kind.kComplex ? c.complexCascade : c.realCascade)
                                              : (kind.kComplex ? c.complex : c.real);
            int size = 0;
            EXPECT_EQ(kind.getStateSize(c.order, &size), expected == 0 ? zppStatusIirOrder : zppStatusOk);
            EXPECT_EQ(size, expected) << c.order;
        });
}

// Before anything is asked for or read.
TEST_P(IirState, RefusesOrders) {
    forEachKind([](const auto& kind) {
        typename std::decay_t<decltype(kind)>::Sample tap{};
        int size, longest = INT_MAX / (kind.cascade ? 56 : 24) / (kind.kComplex ? 2 : 1);
        while (kind.getStateSize(longest, &size) != zppStatusOk) --longest;
        EXPECT_GT(size, INT_MAX - 128);
        for (const int order : {kind.cascade ? 0 : -1, -1, INT_MIN, longest + 1, INT_MAX - 1, INT_MAX}) {
            const ZppStatus expected = order <= 0 ? zppStatusIirOrder : zppStatusSizeError;
            Zpp8u buffer = 0;
            size = 5;
            EXPECT_EQ(kind.getStateSize(order, &size), expected);
            EXPECT_EQ(size, 5);
            const auto init = [&](ZppsIIRState** pp) { return kind.init(pp, &tap, order, nullptr, &buffer); };
            const auto initAlloc = [&](ZppsIIRState** pp) {
                return kind.initAlloc(pp, &tap, order, nullptr);
            };
            expectRefused<ZppsIIRState>(expected, init, 0);
            expectRefused<ZppsIIRState>(expected, initAlloc, 0);
        }
    });
}

TEST_P(IirState, ChecksInOrder) {
    forEachKind([](const auto& kind) {
        using T = typename std::decay_t<decltype(kind)>::Sample;
        using D = typename std::decay_t<decltype(kind)>::Data;
        T taps[12] = {};
        D data[2] = {};
        Guarded<int> other({kind.id ^ 1 << 30});
        auto* wrong = reinterpret_cast<ZppsIIRState*>(other.data());
        for (const ZppStatus status :
             {kind.getStateSize(0, nullptr), kind.init(nullptr, taps, -1, taps, nullptr),
              kind.initAlloc(nullptr, taps, -1, taps), kind.free(nullptr), kind.setTaps(taps, nullptr),
              kind.setTaps(nullptr, wrong), kind.getDlyLine(wrong, nullptr), kind.getDlyLine(nullptr, taps),
              kind.setDlyLine(nullptr, taps), kind.filter(nullptr, data, 0, wrong),
              kind.filter(data, data, 0, nullptr), kind.filterInPlace(nullptr, 0, wrong),
              kind.filterOne(D{}, nullptr, wrong), kind.filterOne(D{}, data, nullptr)})
            EXPECT_EQ(status, zppStatusNullPointer);
        EXPECT_EQ(kind.filter(data, data, 0, wrong), zppStatusSizeError);
        EXPECT_EQ(kind.filterInPlace(data, -1, wrong), zppStatusSizeError);
        for (const ZppStatus status :
             {kind.free(wrong), kind.setTaps(taps, wrong), kind.getDlyLine(wrong, taps),
              kind.setDlyLine(wrong, nullptr), kind.filter(data, data, 1, wrong),
              kind.filterInPlace(data, 1, wrong), kind.filterOne(D{}, data, wrong)})
            EXPECT_EQ(status, zppStatusContextMismatch);
    });
}

TEST_P(IirState, FitsTheCallersBuffer) {
    forEachKind([](const auto& kind) {
        const auto signal = randomNumbers<typename std::decay_t<decltype(kind)>::Data>(40, 3);
        for (const int order : {1, 2, 3, 7, 9, 20})
            for (int offset = 0; offset < 16; ++offset) {
                IirFilter filter(kind, order, offset);
                EXPECT_EQ(*reinterpret_cast<const int*>(filter.state), kind.id);
                EXPECT_TRUE(sameBits(filter.line, filter.delayLine()));
                filter.runWhole(signal);
                EXPECT_EQ(kind.setDlyLine(filter.state, nullptr), zppStatusOk);
                filter.line.assign(filter.line.size(), {});
                EXPECT_TRUE(sameBits(filter.line, filter.delayLine()));
            }
    });
}

TEST_P(IirState, AllocatesAllOrNothing) {
    forEachKind([](const auto& kind) {
        for (const int order : {1, 3, 200}) {
            auto taps = randomTaps(kind, order, 1);
            const auto init = [&](ZppsIIRState** pp) {
                return kind.initAlloc(pp, taps.data(), order, nullptr);
            };
            expectAllOrNothing<ZppsIIRState>(1, init, kind.free);
            taps[kind.cascade ? 3 : taps.size() / 2] = {};
            expectRefused<ZppsIIRState>(zppStatusDivideByZeroError, init);
        }
    });
}

// The response to an impulse tells the taps: an order of 1, or one section behind the other.
TEST_P(IirState, RefusesToDivideByZero) {
    forEachKind([](const auto& kind) {
        using T = typename std::decay_t<decltype(kind)>::Sample;
        using D = typename std::decay_t<decltype(kind)>::Data;
        const T one = number<T>(1), zero = number<T>(-0.0, -0.0), nan = number<T>(kNan, 1),
                nanBeside = number<T>(kind.kComplex ? 1 : kNan, kNan), tiny = number<T>(0, 0x1p-1000);
        const auto gain = [&](ZppsIIRState* state) -> double {
            D y;
            EXPECT_EQ(kind.setDlyLine(state, nullptr), zppStatusOk);
            EXPECT_EQ(kind.filterOne(number<D>(1), &y, state), zppStatusOk);
            if constexpr (requires { y.re; })
                return y.re;
            else
                return y;
        };
        const auto taps = [&](double first, double second) {
            std::vector<T> values(kind.taps(2));
            values[0] = number<T>(first);
            values[3] = one;
            if (kind.cascade) values[6] = number<T>(second), values[9] = one;
            return values;
        };
        IirFilter filter(kind, 2);
        ASSERT_EQ(kind.setTaps(taps(2, 3).data(), filter.state), zppStatusOk);
        for (const T& bad : {zero, nan, nanBeside})
            for (const std::size_t place : {std::size_t{3}, std::size_t{9}, std::size_t{6}}) {
                if (!kind.cascade && place > 3) continue;
                auto refused = taps(5, 7);
                refused[place] = bad;
                ZppsIIRState* none = nullptr;
                std::vector<Zpp64fc> buffer(100);
                EXPECT_EQ(
                    kind.init(&none, refused.data(), 2, nullptr, reinterpret_cast<Zpp8u*>(buffer.data())),
                    zppStatusDivideByZeroError);
                EXPECT_EQ(none, nullptr);
                EXPECT_EQ(kind.setTaps(refused.data(), filter.state), zppStatusDivideByZeroError);
                EXPECT_EQ(gain(filter.state), !kind.cascade ? 2.0 : place == 3 ? 6.0 : 15.0);
                ASSERT_EQ(kind.setTaps(taps(2, 3).data(), filter.state), zppStatusOk);
            }
        auto accepted = taps(2, 3);
        if (kind.kComplex) accepted[3] = tiny;  // and no b0 but those of sections is refused
        if (!kind.cascade) accepted[0] = zero;
        EXPECT_EQ(kind.setTaps(accepted.data(), filter.state), zppStatusOk);
    });
}

}  // namespace
}  // namespace zpp::test
