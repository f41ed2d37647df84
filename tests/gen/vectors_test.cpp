#include <cfenv>
#include <cfloat>

#include "tests/gen/oracle.h"
#include "tests/support/binding.h"
#include "tests/support/compare.h"
#include "tests/support/exact.h"
#include "tests/support/guarded.h"
#include "tests/support/heap.h"
#include "zpp/frame.h"
#include "zpp/gen.h"

namespace zpp::test {
namespace {

class Generators : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Generators);

// Of the longest vector arguments are above those that kernels serve.
TEST_P(Generators, JaehneIsTheSineOfItsFormula) {
    constexpr double magn = 1.75;
    constexpr int integerMagn = 2000000000;
    WorstError worst;
    for (const int len : {1, 2, 3, 7, 8, 9, 100, 1031, 800000}) {
        Guarded<Zpp64f> actual(static_cast<std::size_t>(len));
        Guarded<Zpp32s> integers(static_cast<std::size_t>(len));
        EXPECT_EQ(zppsVectorJaehne_64f(actual, len, magn), zppStatusOk);
        std::fesetround(FE_UPWARD);
        EXPECT_EQ(zppsVectorJaehne_32s(integers, len, integerMagn), zppStatusOk);
        std::fesetround(FE_TONEAREST);
        EXPECT_TRUE(actual.intact() && integers.intact());
        EXPECT_EQ(actual.data()[0], 0);
        for (int n = 1; n < len; n += len < 2000 ? 1 : 101) {
            const double argument = product(product(n, quotient(1.5707963267948966, len)), n);
            const Wide sine = sinq(argument);
            worst.add(argument, actual.data()[n], magn * sine);
            EXPECT_LE(std::fabs(static_cast<double>(integers.data()[n] - integerMagn * sine)), 0.500001) << n;
        }
    }
    EXPECT_LE(worst.ulps, 1.62)
        << worst.argument;  // .56 twice, as the product may have the smaller mantissa, and a half
}

TEST_P(Generators, JaehneTakesNoNegativeMagnitude) {
    Guarded<Zpp64f> dst(2);
    Zpp32s integer = 7;
    EXPECT_EQ(zppsVectorJaehne_64f(nullptr, 0, -1), zppStatusNullPointer);
    EXPECT_EQ(zppsVectorJaehne_64f(dst, 0, -1), zppStatusSizeError);
    EXPECT_EQ(zppsVectorJaehne_64f(dst, 2, -0x1p-1074), zppStatusNegativeMagnitude);
    EXPECT_EQ(zppsVectorJaehne_64f(dst, 2, std::nan("")), zppStatusNegativeMagnitude);
    EXPECT_TRUE(dst.untouched());
    EXPECT_EQ(zppsVectorJaehne_64f(dst, 1, HUGE_VAL), zppStatusOk);
    EXPECT_EQ(dst.data()[0], 0);
    EXPECT_EQ(zppsVectorJaehne_32s(&integer, 1, -1), zppStatusNegativeMagnitude);
    EXPECT_EQ(integer, 7);
    EXPECT_EQ(zppsVectorJaehne_32s(&integer, 1, 0), zppStatusOk);
    EXPECT_EQ(integer, 0);
}

TEST_P(Generators, RampIsProductAndSum) {
    const struct {
        float offset, slope;
    } rows[] = {{0.5F, 1},        {-0.5F, 1},       {-3.5F, 0.5F},           {3e9F, -1e7F},
                {-3e9F, 1e8F},    {0.1F, 0.3F},     {-0.0F, -0.0F},          {1, 1e-30F},
                {0.49999997F, 0}, {1e38F, FLT_MAX}, {HUGE_VALF, -HUGE_VALF}, {std::nanf(""), 1}};
    for (const auto& row : rows)
        for (const int len : {1, 2, 3, 4, 5, 8, 9, 33, 1031}) {
            Guarded<Zpp64f> actual(static_cast<std::size_t>(len));
            Guarded<Zpp32s> integers(static_cast<std::size_t>(len));
            EXPECT_EQ(zppsVectorRamp_64f(actual, len, row.offset, row.slope), zppStatusOk);
            EXPECT_EQ(zppsVectorRamp_32s(integers, len, row.offset, row.slope), zppStatusOk);
            EXPECT_TRUE(actual.intact() && integers.intact());
            for (int n = 0; n < len; ++n) {
                const double expected = sum(product(n, double{row.slope}), double{row.offset});
                const double adjusted = sum(expected, expected <= 0 ? -0.5 : 0.5);
                EXPECT_TRUE(same(expected, actual.data()[n])) << n << " " << row.offset << " " << row.slope;
                EXPECT_EQ(integers.data()[n], rounded<Zpp32s>(Exact{adjusted}, zppRoundZero))
                    << n << " " << expected;
            }
        }
}

TEST_P(Generators, StatesAreReleasedOnce) {
    EXPECT_EQ(zppsToneFree(nullptr), zppStatusNullPointer);
    EXPECT_EQ(zppsTriangleFree(nullptr), zppStatusNullPointer);
    Zpp32s other[] = {0x4C4D535B, 1}, own[] = {0x4C4D535A, 2};
    EXPECT_EQ(zppsToneFree(reinterpret_cast<ZppsToneState*>(other)), zppStatusContextMismatch);
    EXPECT_EQ(zppsTriangleFree(reinterpret_cast<ZppsTriangleState*>(other)), zppStatusContextMismatch);
    EXPECT_EQ(zppsToneFree(reinterpret_cast<ZppsToneState*>(own)), zppStatusOk);
    EXPECT_EQ(zppsTriangleFree(reinterpret_cast<ZppsTriangleState*>(own)), zppStatusOk);
    EXPECT_EQ(own[0], 0x4C4D535A);
    for (const bool isTone : {true, false}) {
        const long before = liveBlocks();
        Zpp32s* state = zppsMalloc_32s(16);
        state[0] = 0x4C4D535A, state[1] = 1;
        EXPECT_EQ(isTone ? zppsToneFree(reinterpret_cast<ZppsToneState*>(state))
                         : zppsTriangleFree(reinterpret_cast<ZppsTriangleState*>(state)),
                  zppStatusOk);
        EXPECT_EQ(liveBlocks(), before);
        EXPECT_EQ(lastReleasedIdentifier(), 0);
    }
}

}  // namespace
}  // namespace zpp::test
