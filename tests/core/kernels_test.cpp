#include "tests/core/kernels.h"

#include <climits>

#include "tests/support/binding.h"
#include "tests/support/exact.h"
#include "tests/support/table.h"

#ifdef __i386__
namespace zpp::x87 {
extern const test::CoreKernels kCoreKernels;
}
namespace zpp::sse {
extern const test::CoreKernels kCoreKernels;
}
#endif
namespace zpp::sse2 {
extern const test::CoreKernels kCoreKernels;
}
namespace zpp::avx2 {
extern const test::CoreKernels kCoreKernels;
}
namespace zpp::avx512 {
extern const test::CoreKernels kCoreKernels;
}

namespace zpp::test {
namespace {

class Core : public BoundTest {
  protected:
    const CoreKernels& kernels() const {
        switch (GetParam().isa) {
#ifdef __i386__
            case kX87Isa:
                return x87::kCoreKernels;
            case kSseIsa:
                return sse::kCoreKernels;
#endif
            case kAvx2Isa:
                return avx2::kCoreKernels;
            case kAvx512Isa:
                return avx512::kCoreKernels;
            default:
                return sse2::kCoreKernels;
        }
    }
};
ZPP_FOR_ALL_BINDINGS(Core);

TEST_P(Core, ScalesInLanesOfAnyWidth) {
    const auto longs = drawnEachWay<std::int64_t>(200);
    const auto words = drawnEachWay<Zpp16s>(200);
    std::vector<int> factors = {INT_MIN, INT_MIN + 1, INT_MAX};
    for (int factor = -70; factor <= 70; ++factor) factors.push_back(factor);
    for (const int factor : factors) {
        const Lengths lengths = factor % 16 == 0 ? Lengths::kEvery : Lengths::kWhole;
        const std::string what = "scaleFactor " + std::to_string(factor) + ',';
        expectRow<std::int64_t>(
            what, outOfPlace(kernels().scale64, factor),
            [=](Exact x) { return rounded<Zpp32s>(scaled(x, factor)); }, lengths, longs);
        const std::vector<Zpp16s> reversed(words.rbegin(), words.rend());
        expectRow<Zpp16s>(
            what, outOfPlace(kernels().addScaled, factor),
            [=](int a, int b) { return rounded<Zpp16s>(scaled(a + b, factor)); }, lengths, words, reversed);
    }
}

TEST_P(Core, TakesComplexNumbersApart) {
    const auto asDoubles = [](auto x) {
        return Zpp64fc{static_cast<double>(x.re), static_cast<double>(x.im)};
    };
    const auto asSingles = [](Zpp64fc x) {
        return Zpp32fc{static_cast<float>(x.re), static_cast<float>(x.im)};
    };
    expectRow<Zpp64fc>("32fc", outOfPlace(kernels().fromSingles), asDoubles, Lengths::kEvery,
                       drawnEachWay<Zpp32fc>(200));
    expectRow<Zpp64fc>("32sc", outOfPlace(kernels().fromInts), asDoubles, Lengths::kEvery,
                       drawnEachWay<Zpp32sc>(200));
    expectRow<Zpp64fc>("16sc", outOfPlace(kernels().fromWords), asDoubles, Lengths::kEvery,
                       drawnEachWay<Zpp16sc>(200));
    expectRow<Zpp32fc>("64fc", outOfPlace(kernels().toSingles), asSingles, Lengths::kEvery,
                       drawnEachWay<Zpp64fc>(200));
}

TEST_P(Core, KeepsTheOrderOfPartsTakenApart) {
    expectRow<Zpp32sc>(
        "32sc", outOfPlace(kernels().exchangeInts),
        [](Zpp32sc z, Zpp32s x) {
            return Zpp32sc{z.im, z.re ^ x};
        },
        Lengths::kEvery, drawnEachWay<Zpp32sc>(200), drawnEachWay<Zpp32s>(200));
    expectRow<Zpp64fc>(
        "64fc", outOfPlace(kernels().exchangeDoubles),
        [](Zpp64fc z, Zpp64f x) {
            return Zpp64fc{z.im, std::bit_cast<double>(std::bit_cast<std::uint64_t>(z.re) ^
                                                       std::bit_cast<std::uint64_t>(x))};
        },
        Lengths::kEvery, drawnEachWay<Zpp64fc>(200), drawnEachWay<Zpp64f>(200));
}

// The depth is bounded where every pivot is bad; equal elements take a pivot or two for each value.
TEST_P(Core, SortsByAnyPivots) {
    constexpr int kLen = 20000, kBad = 2 * 15 + 2;  // 2^15 is more
    const struct {
        Pivots pivots;
        unsigned values;
        int most;
    } rows[] = {{Pivots::kLeast, kLen, kBad},
                {Pivots::kGreatest, kLen, kBad},
                {Pivots::kLeast, 2, 4},
                {Pivots::kAsChosen, 1, 2},
                {Pivots::kAsChosen, 2, 4},
                {Pivots::kAsChosen, 10, 20},
                {Pivots::kAsChosen, 1u << 30, kLen / 4}};
    for (const auto& row : rows) {
        Random random;
        std::vector<Zpp32s> ints;
        for (int i = 0; i < kLen; ++i) ints.push_back(static_cast<Zpp32s>(random.below(row.values)));
        std::vector<double> reals(ints.begin(), ints.end());
        const int counts[] = {kernels().sortInts(ints.data(), kLen, row.pivots),
                              kernels().sortReals(reals.data(), kLen, row.pivots)};
        EXPECT_TRUE(std::is_sorted(ints.begin(), ints.end()));
        EXPECT_TRUE(std::is_sorted(reals.begin(), reals.end()));
        for (const int count : counts)
            EXPECT_LE(count, row.most) << row.values << " values, pivots " << static_cast<int>(row.pivots);
    }
}

}  // namespace
}  // namespace zpp::test
