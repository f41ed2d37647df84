#include <algorithm>
#include <climits>
#include <functional>
#include <string>

#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/draws.h"
#include "tests/support/guarded.h"
#include "tests/support/heap.h"
#include "zpp/filter.h"

namespace zpp::test {
namespace {

class Median : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Median);

template <class T>
struct Functions {
    ZppStatus (*filter)(const T*, T*, int, int);
    ZppStatus (*inPlace)(T*, int, int);
};
template <class Check>
void forBothTypes(Check check) {
    check(Functions<Zpp64f>{zppsFilterMedian_64f, zppsFilterMedian_64f_I});
    check(Functions<Zpp32s>{zppsFilterMedian_32s, zppsFilterMedian_32s_I});
}

// The order of the header: numbers, -0 before +0, then NaNs, those with a sign last, by their bits.
bool isBefore(std::int32_t a, std::int32_t b) { return a < b; }
bool isBefore(const double& a, const double& b) {
    const bool aNan = std::isnan(a), bNan = std::isnan(b);
    if (aNan || bNan) {
        const auto place = [](const double& x) {
            const auto bits = std::bit_cast<std::uint64_t>(x);
            return bits >> 63 == 0 ? bits : ~bits | std::uint64_t{1} << 63;
        };
        return aNan && bNan ? place(a) < place(b) : bNan;
    }
    return a < b || (a == b && std::signbit(a) && !std::signbit(b));
}

// The middle of each window, which is kept in order.
template <class T>
std::vector<T> medians(const std::vector<T>& x, int mask) {
    const auto before = [](const T& a, const T& b) { return isBefore(a, b); };
    const long len = static_cast<long>(x.size()), radius = std::min<long>((mask - 1) / 2, len);
    const auto at = [&](long i) { return x[static_cast<std::size_t>(std::clamp(i, 0L, len - 1))]; };
    std::vector<T> y, window;
    for (long j = -radius; j <= radius; ++j) window.push_back(at(j));
    std::sort(window.begin(), window.end(), before);
    for (long n = 0; n < len; ++n) {
        y.push_back(window[static_cast<std::size_t>(radius)]);
        window.erase(std::lower_bound(window.begin(), window.end(), at(n - radius), before));
        const T next = at(n + radius + 1);
        window.insert(std::lower_bound(window.begin(), window.end(), next, before), next);
    }
    return y;
}

template <class T>
void expectMedians(const Functions<T>& functions, const std::vector<T>& values, int mask) {
    SCOPED_TRACE(testing::Message() << values.size() << " samples, mask " << mask);
    const Guarded<T> src(values);
    Guarded<T> dst(values.size()), inPlace(values);
    const ZppStatus status = mask % 2 == 0 ? zppStatusEvenMedianMask : zppStatusOk;
    EXPECT_EQ(functions.filter(src.data(), dst, dst.len(), mask), status);
    EXPECT_EQ(functions.inPlace(inPlace, inPlace.len(), mask), status);
    EXPECT_TRUE(sameBits(medians(values, mask), dst.values()) && dst.intact());
    EXPECT_TRUE(sameBits(dst.values(), inPlace.values()) && inPlace.intact());
}

// Masks of each network, around the sizes of groups, and longer than the vector; all kinds of samples.
TEST_P(Median, IsTheMiddleOfEachWindow) {
    Random random;
    forBothTypes([&]<class T>(const Functions<T>& functions) {
        for (const Draw draw : kDraws)
            for (const int mask : {1, 2, 3, 4, 5, 7, 9, 10, 11, 15, 16, 17, 25, 31, 33, 63, 65, 101})
                for (const int len : {1, 2, 15, 64, 130, 700})
                    expectMedians(functions, drawn<T>(random, draw, static_cast<std::size_t>(len)), mask);
        for (const int len : {1, 3, 40})
            for (const int mask : {2 * len + 1, 2 * len + 9, INT_MAX - 1, INT_MAX})
                expectMedians(functions, drawn<T>(random, Draw::kSpecial, static_cast<std::size_t>(len)),
                              mask);
    });
}

// Several blocks of each way to filter, of which some have special values and others have not.
TEST_P(Median, GoesOnFromBlockToBlock) {
    Random random;
    forBothTypes([&]<class T>(const Functions<T>& functions) {
        for (const auto& [mask, len] : {std::pair{3, 2000},
                                        {9, 1400},
                                        {21, 1500},
                                        {127, 2500},
                                        {1023, 5000},
                                        {1025, 9000},
                                        {2601, 9000},
                                        {5001, 9001}}) {
            auto values = drawn<T>(random, Draw::kOrdinary, static_cast<std::size_t>(len));
            if (mask < 1000) expectMedians(functions, values, mask);
            const auto special = drawn<T>(random, Draw::kSpecial, 100);
            std::copy(special.begin(), special.end(), values.begin() + len / 2);
            expectMedians(functions, values, mask);
        }
    });
}

// What makes long runs of equal keys, and lists of which one ends at once.
TEST_P(Median, OfOrderedSamplesIsExact) {
    forBothTypes([&]<class T>(const Functions<T>& functions) {
        const std::vector<std::function<T(int)>> shapes = {
            [](int i) { return static_cast<T>(i); }, [](int i) { return static_cast<T>(-i); },
            [](int i) { return static_cast<T>(i % 2); }, [](int i) { return static_cast<T>(i / 1000 % 2); },
            [](int) { return std::numeric_limits<T>::lowest(); }};
        for (const auto& shape : shapes)
            for (const int mask : {7, 33, 2601}) {
                std::vector<T> values(4000);
                for (int i = 0; i < 4000; ++i) values[static_cast<std::size_t>(i)] = shape(i);
                expectMedians(functions, values, mask);
            }
    });
}

TEST_P(Median, ChecksInOrder) {
    forBothTypes([&]<class T>(const Functions<T>& functions) {
        Guarded<T> src(std::vector<T>(3000)), dst(3000);
        const struct {
            const T* src;
            T* dst;
            int len, mask;
            ZppStatus status;
        } kCases[] = {
            {nullptr, dst, 0, 0, zppStatusNullPointer}, {src, nullptr, 0, 0, zppStatusNullPointer},
            {src, dst, 0, 0, zppStatusSizeError},       {src, dst, -1, 3, zppStatusSizeError},
            {src, dst, 10, 0, zppStatusMaskSize},       {src, dst, 10, INT_MIN, zppStatusMaskSize},
        };
        for (const auto& c : kCases) EXPECT_EQ(functions.filter(c.src, c.dst, c.len, c.mask), c.status);
        EXPECT_EQ(functions.inPlace(nullptr, 0, 0), zppStatusNullPointer);
        EXPECT_EQ(functions.inPlace(dst, 0, 0), zppStatusSizeError);
        EXPECT_EQ(functions.inPlace(dst, 1, -3), zppStatusMaskSize);
        for (const int mask : {11, 12, 2601}) {
            const long before = liveBlocks();
            {
                const FailingHeap heap(0);
                EXPECT_EQ(functions.filter(src, dst, dst.len(), mask), zppStatusAllocationFailed);
            }
            const FailingHeap heap(0);
            EXPECT_EQ(functions.inPlace(dst, dst.len(), mask), zppStatusAllocationFailed);
            EXPECT_EQ(liveBlocks(), before);
        }
        EXPECT_TRUE(dst.untouched());
    });
}

}  // namespace
}  // namespace zpp::test
