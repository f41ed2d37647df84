#include <climits>

#include "tests/filter/fir_support.h"
#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/guarded.h"
#include "tests/support/heap.h"

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

// The values of taps and delay line of a state.
template <class T, class D>
void expectHolds(const FirPair<T, D>& pair, const ZppsFIRState* state, const std::vector<T>& taps,
                 const std::vector<D>& line) {
    Guarded<T> tapsOut(taps.size());
    Guarded<D> lineOut(line.size());
    EXPECT_EQ(pair.getTaps(state, tapsOut), zppStatusOk);
    EXPECT_EQ(pair.getDlyLine(state, lineOut), zppStatusOk);
    EXPECT_TRUE(sameBits(taps, tapsOut.values()));
    EXPECT_TRUE(sameBits(line, lineOut.values()));
    EXPECT_TRUE(tapsOut.intact() && lineOut.intact());
}

TEST_P(FirState, FitsTheCallersBufferAtAnyAlignment) {
    forEachPair([]<class T, class D>(const FirPair<T, D>& pair) {
        for (const int tapsLen : {1, 2, 5, 63, 200})
            for (std::size_t shift = 0; shift < 17; ++shift) {
                const auto n = static_cast<std::size_t>(tapsLen);
                const auto taps = randomElements<T>(n, 1), otherTaps = randomElements<T>(n, 2);
                const auto line = randomElements<D>(n, 3), otherLine = randomElements<D>(n, 4);
                int size = 0;
                ASSERT_EQ(pair.getStateSize(tapsLen, &size), zppStatusOk);
                Guarded<Zpp8u> buffer(static_cast<std::size_t>(size) + shift);
                const std::vector<Zpp8u> rest(buffer.end() - shift, buffer.end());
                ZppsFIRState* state = nullptr;
                ASSERT_EQ(pair.init(&state, taps.data(), tapsLen, line.data(), buffer), zppStatusOk);
                EXPECT_EQ(reinterpret_cast<std::uintptr_t>(state) % 16, 0u);
                expectHolds(pair, state, taps, line);
                EXPECT_EQ(pair.setTaps(otherTaps.data(), state), zppStatusOk);
                expectHolds(pair, state, otherTaps, line);

                Guarded<D> signal(randomElements<D>(5000, 5));
                D y;
                EXPECT_EQ(pair.filterInPlace(signal, signal.len(), state), zppStatusOk);
                EXPECT_EQ(pair.filterOne(line[0], &y, state), zppStatusOk);
                EXPECT_EQ(pair.setDlyLine(state, otherLine.data()), zppStatusOk);
                expectHolds(pair, state, otherTaps, otherLine);
                EXPECT_EQ(pair.setDlyLine(state, nullptr), zppStatusOk);
                expectHolds(pair, state, otherTaps, std::vector<D>(n));

                const auto before = buffer.values();
                EXPECT_EQ(pair.free(state), zppStatusOk);
                EXPECT_TRUE(sameBits(before, buffer.values()));
                EXPECT_TRUE(buffer.intact() && signal.intact());
                EXPECT_TRUE(sameBits(rest, std::vector<Zpp8u>(buffer.end() - shift, buffer.end())));
            }
    });
}

TEST_P(FirState, AllocatesAllOrNothing) {
    const long before = liveBlocks();
    forEachPair([]<class T, class D>(const FirPair<T, D>& pair) {
        for (const int tapsLen : {1, 15, 16, 31, 32, 100, 3000}) {
            const auto taps = randomElements<T>(static_cast<std::size_t>(tapsLen), 1);
            const auto line = randomElements<D>(taps.size(), 2);
            ZppsFIRState* state = nullptr;
            int failures = 0;
            for (ZppStatus status = zppStatusError; status != zppStatusOk; ++failures) {
                const long live = liveBlocks();
                {
                    const FailingHeap heap(failures);
                    status = pair.initAlloc(&state, taps.data(), tapsLen, line.data());
                }
                if (status == zppStatusOk) break;
                EXPECT_EQ(status, zppStatusAllocationFailed);
                EXPECT_EQ(state, nullptr);
                EXPECT_EQ(liveBlocks(), live);
                ASSERT_LT(failures, 100);
            }
            EXPECT_GE(failures,
                      tapsLen < (pair.kComplex ? 16 : 32) ? 1 : 2);  // with FFT: its specification too
            expectHolds(pair, state, taps, line);
            EXPECT_EQ(pair.free(state), zppStatusOk);
        }
    });
    EXPECT_EQ(liveBlocks(), before);
}

TEST_P(FirState, GivesUpTheFftWhenItFails) {
    forEachPair([]<class T, class D>(const FirPair<T, D>& pair) {
        const auto taps = randomElements<T>(40, 1), otherTaps = randomElements<T>(40, 2);
        ZppsFIRState* state = nullptr;
        ASSERT_EQ(pair.initAlloc(&state, taps.data(), 40, nullptr), zppStatusOk);
        int* spec = specificationOf(state);
        const int id = *spec;
        *spec = 0;
        EXPECT_EQ(pair.setTaps(otherTaps.data(), state), zppStatusContextMismatch);
        EXPECT_EQ(specificationOf(state), nullptr);
        *spec = id;  // the state could not release it
        auto* owned = reinterpret_cast<ZppsFFTSpec*>(spec);
        EXPECT_EQ(pair.kComplex ? zppsFFTFree_C_64fc(owned) : zppsFFTFree_R_64f(owned), zppStatusOk);

        std::vector<D> signal = randomElements<D>(1000, 3), y(1000);
        EXPECT_EQ(pair.filter(signal.data(), y.data(), 1000, state), zppStatusOk);
        EXPECT_TRUE(Convolution(otherTaps, std::vector<D>(40), signal).isNear(y, 40));
        EXPECT_EQ(pair.setTaps(taps.data(), state), zppStatusOk);
        EXPECT_EQ(pair.free(state), zppStatusOk);
    });
}

}  // namespace
}  // namespace zpp::test
