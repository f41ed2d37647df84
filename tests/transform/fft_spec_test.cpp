#include <algorithm>

#include "tests/support/binding.h"
#include "tests/support/objects.h"
#include "tests/transform/fft_support.h"

namespace zpp::test {
namespace {

class FftSpec : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(FftSpec);

TEST_P(FftSpec, ChecksInOrder) {
    struct Row {
        int order, flag, failing;  // the allocation that fails
        ZppStatus expected;
    };
    constexpr int kNone = INT_MAX;
    for (const Kind& kind : kKinds) {
        SCOPED_TRACE(kind.name);
        EXPECT_EQ(kind.init(nullptr, 31, 0, 0), zppStatusNullPointer);
        for (const Row& row : {Row{31, 0, 0, zppStatusFftOrder},
                               {-1, 0, 0, zppStatusFftOrder},
                               {5, 0, 0, zppStatusAllocationFailed},  // of the object
                               {5, 0, 1, zppStatusFftFlag},
                               {0, 3, kNone, zppStatusFftFlag},
                               {5, 5, kNone, zppStatusFftFlag},
                               {5, 6, kNone, zppStatusFftFlag},
                               {5, 7, kNone, zppStatusFftFlag},
                               {30, 16, kNone, zppStatusFftFlag},
                               {5, -1, kNone, zppStatusFftFlag}})
            expectRefused<ZppsFFTSpec>(
                row.expected, [&](ZppsFFTSpec** pp) { return kind.init(pp, row.order, row.flag, 0); },
                row.failing);
    }
}

// Orders 0 to 3 have no tables, the others allocate what these are made from.
TEST_P(FftSpec, AllocatesAllOrNothing) {
    for (const Kind& kind : kKinds)
        for (const int order : {0, 1, 2, 3, 4, 16, 27}) {
            SCOPED_TRACE(testing::Message() << kind.name << " " << order);
            const auto init = [&](ZppsFFTSpec** pp) { return kind.init(pp, order, 8, 0); };
            expectAllOrNothing<ZppsFFTSpec>(order <= 3 ? 1 : 2, init, kind.free);
        }
}

// The work buffer of the longest transforms is that of the longest for which it has a size.
TEST_P(FftSpec, KnowsItsKindAndItsBuffer) {
    for (const Kind& kind : kKinds) {
        int longest = 0;
        for (int order = 0; order <= 30; ++order) {
            SCOPED_TRACE(testing::Message() << kind.name << " " << order);
            const int halvings = order - kind.real;  // of the complex transform
            const Spec spec(kind, order);
            int size = -1;
            for (const Kind& other : kKinds) {
                EXPECT_EQ(other.bufSize(spec, nullptr), zppStatusNullPointer);
                EXPECT_EQ(other.bufSize(nullptr, &size), zppStatusNullPointer);
                EXPECT_EQ(other.free(nullptr), zppStatusNullPointer);
                if (other.init == kind.init) continue;
                EXPECT_EQ(other.free(spec), zppStatusContextMismatch);
                EXPECT_EQ(other.bufSize(spec, &size), zppStatusContextMismatch);
            }
            EXPECT_EQ(size, -1);
            EXPECT_EQ(kind.bufSize(spec, &size), zppStatusOk);
            if (halvings == 26) longest = size;
            EXPECT_TRUE(halvings <= 9    ? size == 0
                        : halvings <= 26 ? size > 16 << halvings
                                         : size == longest)
                << size;
        }
    }
}

}  // namespace
}  // namespace zpp::test
