#include <climits>
#include <utility>

#include "tests/filter/fir_support.h"
#include "tests/support/binding.h"
#include "tests/support/objects.h"
#include "zpp/transform.h"

namespace zpp::test {
namespace {

class FirState : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(FirState);

TEST_P(FirState, SizesAreExact) {
    // With 4-byte pointers; the header takes 96 bytes more with 8-byte ones.
    struct Case {
        int tapsLen, real, complex;
    };
    for (const Case& c : {Case{1, 32975, 65776},
                          {2, 32991, 65840},
                          {3, 33039, 65904},
                          {16, 33439, 66736},
                          {64, 34975, 69808},
                          {1001, 64975, 129776}}) {
        const int header = sizeof(void*) == 4 ? 0 : 96;
        forEachPair([&](const auto& pair) {
            int size = 0;
            EXPECT_EQ(pair.getStateSize(c.tapsLen, &size), zppStatusOk);
            EXPECT_EQ(size, (pair.kComplex ? c.complex : c.real) + header) << c.tapsLen;
        });
    }
}

// Before it asks for memory.
TEST_P(FirState, RefusesLengths) {
    forEachPair([]<class T, class D>(const FirPair<T, D>& pair) {
        int size, longest = INT_MAX / (pair.kComplex ? 64 : 32);
        while (pair.getStateSize(longest, &size) != zppStatusOk) --longest;
        EXPECT_GT(size, INT_MAX - 64);
        EXPECT_GT(longest, INT_MAX / (pair.kComplex ? 64 : 32) - 2000);
        for (const int tapsLen : {0, -1, INT_MIN, longest + 1, INT_MAX / 16, INT_MAX - 1, INT_MAX}) {
            const ZppStatus expected = tapsLen <= 0 ? zppStatusFirLength : zppStatusSizeError;
            T tap{};
            Zpp8u buffer = 0;
            size = 5;
            EXPECT_EQ(pair.getStateSize(tapsLen, &size), expected);
            EXPECT_EQ(size, 5);
            const auto init = [&](ZppsFIRState** pp) {
                return pair.init(pp, &tap, tapsLen, nullptr, &buffer);
            };
            const auto initAlloc = [&](ZppsFIRState** pp) {
                return pair.initAlloc(pp, &tap, tapsLen, nullptr);
            };
            expectRefused<ZppsFIRState>(expected, init, 0);
            expectRefused<ZppsFIRState>(expected, initAlloc, 0);
        }
    });
}

TEST_P(FirState, ChecksInOrder) {
    forEachPair([]<class T, class D>(const FirPair<T, D>& pair) {
        T taps[2] = {};
        D line[2] = {};
        Guarded<int> other({0x46493132});  // nothing but the identifier is read
        auto* wrong = reinterpret_cast<ZppsFIRState*>(other.data());
        expectAll(zppStatusNullPointer,
                  {pair.getStateSize(0, nullptr), pair.init(nullptr, taps, 0, line, nullptr),
                   pair.initAlloc(nullptr, taps, 0, line), pair.getTaps(wrong, nullptr),
                   pair.setTaps(nullptr, wrong), pair.getDlyLine(wrong, nullptr),
                   pair.filter(nullptr, line, 0, wrong), pair.filterInPlace(nullptr, 0, wrong),
                   pair.filterOne(D{}, nullptr, wrong)});
        expectAll(zppStatusSizeError,
                  {pair.filter(line, line, 0, wrong), pair.filterInPlace(line, -1, wrong)});
    });
}

TEST_P(FirState, MakesStatesOfItsOwnKind) {
    forEachPair([]<class T, class D>(const FirPair<T, D>& pair) {
        T tap{};
        ZppsFIRState* state = nullptr;
        ASSERT_EQ(pair.initAlloc(&state, &tap, 1, nullptr), zppStatusOk);
        EXPECT_EQ(identifierOf(state), pair.singleRate);
        EXPECT_EQ(pair.free(state), zppStatusOk);
    });
}

// With 0 to 16 spare bytes behind it the state begins at any alignment.
TEST_P(FirState, FitsTheCallersBufferAtAnyAlignment) {
    forEachPair([]<class T, class D>(const FirPair<T, D>& pair) {
        const auto signal = randomElements<D>(5000, 5);
        for (const int tapsLen : {1, 2, 5, 63, 200})
            for (int spare = 0; spare < 17; ++spare) {
                Filter<T, D> filter(pair, tapsLen, spare);
                EXPECT_EQ(reinterpret_cast<std::uintptr_t>(filter.state) % 16, 0u);
                EXPECT_TRUE(filter.remembers());
                EXPECT_EQ(filter.renewTaps(6), zppStatusOk);
                EXPECT_TRUE(filter.remembers());
                filter.run(signal, true, [n = 0]() mutable { return n++ == 0 ? 4990 : 0; });
                EXPECT_TRUE(filter.remembers(signal));
                EXPECT_EQ(pair.setDlyLine(filter.state, nullptr), zppStatusOk);
                filter.past.assign(filter.past.size(), D{});
                EXPECT_TRUE(filter.remembers());
            }
    });
}

// With an FFT path a state has a specification too, which is made from a block that is released again.
TEST_P(FirState, AllocatesAllOrNothing) {
    forEachPair([]<class T, class D>(const FirPair<T, D>& pair) {
        for (const int tapsLen : {1, 15, 16, 31, 32, 100, 3000}) {
            const std::vector<T> taps(static_cast<std::size_t>(tapsLen));
            const auto init = [&](ZppsFIRState** pp) {
                return pair.initAlloc(pp, taps.data(), tapsLen, nullptr);
            };
            // Without a work buffer for the transform of the taps.
            expectAllOrNothing<ZppsFIRState>(tapsLen < (pair.kComplex ? 16 : 32) ? 1 : 3, init, pair.free);
        }
    });
}

TEST_P(FirState, GivesUpTheFftWhenItFails) {
    forEachPair([]<class T, class D>(const FirPair<T, D>& pair) {
        Filter<T, D> filter(pair, 40);
        int* spec = specificationOf(filter.state);
        const int id = std::exchange(*spec, 0);
        EXPECT_EQ(filter.renewTaps(6), zppStatusContextMismatch);
        EXPECT_EQ(specificationOf(filter.state), nullptr);
        *spec = id;  // the state could not release it
        auto* owned = reinterpret_cast<ZppsFFTSpec*>(spec);
        EXPECT_EQ(pair.kComplex ? zppsFFTFree_C_64fc(owned) : zppsFFTFree_R_64f(owned), zppStatusOk);

        const auto signal = randomElements<D>(1000, 3);
        const auto y = filter.run(signal, false, [] { return 1000; });
        EXPECT_TRUE(Convolution(filter.taps, filter.past, signal).isNear(y));
        EXPECT_EQ(filter.renewTaps(7), zppStatusOk);
    });
}

}  // namespace
}  // namespace zpp::test
