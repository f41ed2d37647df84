#include <climits>
#include <utility>

#include "tests/filter/fir_support.h"
#include "tests/support/binding.h"
#include "tests/support/heap.h"
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

TEST_P(FirState, RefusesLengthsWhoseSizeIsNoInt) {
    forEachPair([]<class T, class D>(const FirPair<T, D>& pair) {
        int size = 5, longest = INT_MAX / (pair.kComplex ? 64 : 32);
        while (pair.getStateSize(longest, &size) != zppStatusOk) --longest;
        EXPECT_GT(size, INT_MAX - 64);
        EXPECT_GT(longest, INT_MAX / (pair.kComplex ? 64 : 32) - 2000);
        for (const int tapsLen : {longest + 1, INT_MAX / 16, INT_MAX - 1, INT_MAX}) {
            T tap{};
            Zpp8u buffer = 0;
            ZppsFIRState* state = nullptr;
            size = 5;
            expectAll(zppStatusSizeError,
                      {pair.getStateSize(tapsLen, &size), pair.init(&state, &tap, tapsLen, nullptr, &buffer),
                       pair.initAlloc(&state, &tap, tapsLen, nullptr)});
            EXPECT_TRUE(size == 5 && state == nullptr);
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

TEST_P(FirState, KnowsItsPair) {
    forEachPair([]<class T, class D>(const FirPair<T, D>& own) {
        T tap{};
        ZppsFIRState* state = nullptr;
        ASSERT_EQ(own.initAlloc(&state, &tap, 1, nullptr), zppStatusOk);
        EXPECT_EQ(identifierOf(state), own.singleRate);
        for (const int id : {0, 7, 9, 0x46493132, 0x46493235, 0x46493231, own.singleRate, own.multiRate}) {
            identifierOf(state) = id;
            forEachPair([&]<class U, class E>(const FirPair<U, E>& pair) {
                const bool single = id == pair.singleRate, known = single || id == pair.multiRate;
                U taps[1] = {};
                E line[1] = {};
                expectAll(known ? zppStatusOk : zppStatusContextMismatch,
                          {pair.getTaps(state, taps), pair.setTaps(taps, state), pair.getDlyLine(state, line),
                           pair.setDlyLine(state, line)});
                expectAll(single ? zppStatusOk : zppStatusContextMismatch,
                          {pair.filterOne(E{}, line, state)});
                if (known) return;
                expectAll(zppStatusContextMismatch, {pair.free(state), pair.filter(line, line, 1, state),
                                                     pair.filterInPlace(line, 1, state)});
            });
        }
        EXPECT_EQ(own.free(state), zppStatusOk);  // with the multi-rate identifier
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

TEST_P(FirState, AllocatesAllOrNothing) {
    forEachPair([]<class T, class D>(const FirPair<T, D>& pair) {
        for (const int tapsLen : {1, 15, 16, 31, 32, 100, 3000}) {
            const std::vector<T> taps(static_cast<std::size_t>(tapsLen));
            const long before = liveBlocks();
            ZppsFIRState* state = nullptr;
            ZppStatus status;
            int failures = -1;
            do {
                EXPECT_EQ(state, nullptr);
                EXPECT_EQ(liveBlocks(), before);
                const FailingHeap heap(++failures);
                status = pair.initAlloc(&state, taps.data(), tapsLen, nullptr);
            } while (status == zppStatusAllocationFailed && failures < 100);
            ASSERT_EQ(status, zppStatusOk);
            EXPECT_GE(failures,
                      tapsLen < (pair.kComplex ? 16 : 32) ? 1 : 2);  // with FFT: its specification too
            EXPECT_EQ(pair.free(state), zppStatusOk);
            EXPECT_EQ(liveBlocks(), before);
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
