#include "tests/data/convert_support.h"

namespace zpp::test {
namespace {

class ConvertInteger : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(ConvertInteger);

TEST_P(ConvertInteger, Widens) {
    ASSERT_EQ(packedValues<Int24>()[0], -8323073);
    ASSERT_EQ(packedValues<UInt24>()[0], 8454143);
    expectConverts<Zpp16s>("8s16s", zppsConvert_8s16s, everyValue<Zpp8s>());
    expectConverts<Zpp32s>("16s32s", zppsConvert_16s32s, everyValue<Zpp16s>());
    expectConverts<Zpp32s>("24s32s", zppsConvert_24s32s, packedValues<Int24>());
    expectConverts<Zpp32u>("24u32u", zppsConvert_24u32u, packedValues<UInt24>());
}

TEST_P(ConvertInteger, ScalesRoundsAndSaturates) {
    const auto ints = drawnEachWay<Zpp32s>(1000);
    const auto unsignedInts = drawnEachWay<Zpp32u>(1000);
    expectConverts<Zpp16s>("32s16s", zppsConvert_32s16s, ints);
    const auto limited = [](Exact x, int factor, int lowest) {
        return scaled(x, std::clamp(factor, lowest, 31));
    };
    expectScales<Zpp16s>(
        "32s16s", zppsConvert_32s16s_Sfs, [&](int) { return ints; },
        [=](Zpp32s x, int factor) { return rounded<Zpp16s>(limited(x, factor, -15)); });
    expectScales<Int24>(
        "32s24s", zppsConvert_32s24s_Sfs, [&](int) { return ints; },
        [=](Zpp32s x, int factor) {
            // -1 shifted out of the three bytes that are stored is 0, by definition.
            return x == -1 && factor <= -24 ? Int24(0) : rounded<Int24>(limited(x, factor, -31));
        });
    expectScales<UInt24>(
        "32u24u", zppsConvert_32u24u_Sfs, [&](int) { return unsignedInts; },
        [=](Zpp32u x, int factor) { return rounded<UInt24>(limited(x, factor, -31)); });
}

TEST_P(ConvertInteger, SwapsBytes) {
    const auto swapped = [](UInt24 v) { return UInt24(v.bytes[0] << 16 | v.bytes[1] << 8 | v.bytes[2]); };
    const auto values = packedValues<UInt24>();
    expectRow<UInt24>("SwapBytes", outOfPlace(zppsSwapBytes_24u), swapped, Lengths::kEvery, values);
    expectRow<UInt24>("SwapBytes_I", inPlace(zppsSwapBytes_24u_I), swapped, Lengths::kEvery, values);
}

}  // namespace
}  // namespace zpp::test
