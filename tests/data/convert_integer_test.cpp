#include "tests/data/convert_support.h"

namespace zpp::test {
namespace {

class ConvertInteger : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(ConvertInteger);

// Bounds and neighbours of every width, and any bits.
template <class T>
std::vector<T> words() {
    std::vector<T> values = Random(1).patterns<T>(4000);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = std::is_signed_v<T> ? values[i] >> i % 32 : static_cast<T>(values[i] >> i % 32);
    for (int bit = 0; bit < 32; ++bit)
        for (int step = -3; step <= 3; ++step)
            for (const int sign : {1, -1})
                values.push_back(static_cast<T>(sign * ((std::int64_t{1} << bit) + step)));
    return values;
}

TEST_P(ConvertInteger, Widens) {
    const auto bytes = everyValue<Zpp8s>();
    expectConverts(zppsConvert_8s16s, bytes, mapped(bytes, [](Zpp8s x) -> Zpp16s { return x; }), "8s16s");
    const auto halves = everyValue<Zpp16s>();
    expectConverts(zppsConvert_16s32s, halves, mapped(halves, [](Zpp16s x) -> Zpp32s { return x; }),
                   "16s32s");
    const auto packed = packedValues();
    ASSERT_EQ(packed[0].asSigned(), -8323073);
    ASSERT_EQ(packed[0].asUnsigned(), 8454143);
    const auto asSigned = [](Packed24 x) { return static_cast<Zpp32s>(x.asSigned()); };
    const auto asUnsigned = [](Packed24 x) { return static_cast<Zpp32u>(x.asUnsigned()); };
    expectConverts(zppsConvert_24s32s, packed, mapped(packed, asSigned), "24s32s");
    expectConverts(zppsConvert_24u32u, packed, mapped(packed, asUnsigned), "24u32u");
}

constexpr int kScaleFactors[] = {0,   1,   2,   3,   7,    8,   9,   15,    16,      23,     24,
                                 30,  31,  32,  33,  1000, -1,  -2,  -7,    -8,      -9,     -14,
                                 -15, -16, -23, -24, -30,  -31, -32, -1000, INT_MAX, INT_MIN};

// x * 2^-scaleFactor, exact in a double, rounded by the C library.
template <class S>
long scaled(S x, int scaleFactor, int lowest, long lower, long upper) {
    const int factor = std::min(std::max(scaleFactor, lowest), 31);
    return rounded(std::ldexp(static_cast<double>(x), -factor), zppRoundNear, lower, upper);
}

TEST_P(ConvertInteger, ScalesRoundsAndSaturates) {
    const auto ints = words<Zpp32s>();
    const auto unsignedInts = words<Zpp32u>();
    const auto plain =
        mapped(ints, [](Zpp32s x) { return static_cast<Zpp16s>(scaled(x, 0, 0, -32768, 32767)); });
    expectConverts(zppsConvert_32s16s, ints, plain, "32s16s");
    for (const int factor : kScaleFactors) {
        const auto to16s = [=](Zpp32s x) {
            return static_cast<Zpp16s>(scaled(x, factor, -15, -32768, 32767));
        };
        const auto to24s = [=](Zpp32s x) {
            // -1 shifted out of the three bytes that are stored is 0, by definition.
            if (x == -1 && factor <= -24) return Packed24::of(0);
            return Packed24::of(scaled(x, factor, -31, -8388608, 8388607));
        };
        const auto to24u = [=](Zpp32u x) { return Packed24::of(scaled(x, factor, -31, 0, 16777215)); };
        expectScaled(withFactor(zppsConvert_32s16s_Sfs, factor), ints, mapped(ints, to16s), "32s16s", factor);
        expectScaled(withFactor(zppsConvert_32s24s_Sfs, factor), ints, mapped(ints, to24s), "32s24s", factor);
        expectScaled(withFactor(zppsConvert_32u24u_Sfs, factor), unsignedInts, mapped(unsignedInts, to24u),
                     "32u24u", factor);
    }
}

TEST_P(ConvertInteger, SwapsBytes) {
    const auto values = packedValues();
    const auto swapped = mapped(values, [](Packed24 v) {
        return Packed24{{v.bytes[2], v.bytes[1], v.bytes[0]}};
    });
    expectConverts(zppsSwapBytes_24u, values, swapped, "SwapBytes");
    const auto inPlace = [](const Zpp8u* src, Zpp8u* dst, int len) {
        if (src != nullptr) std::memcpy(dst, src, 3 * static_cast<std::size_t>(len));
        return zppsSwapBytes_24u_I(dst, len);
    };
    expectConverts(inPlace, values, swapped, "SwapBytes_I");
}

}  // namespace
}  // namespace zpp::test
