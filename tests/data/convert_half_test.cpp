#include "tests/data/convert_support.h"

namespace zpp::test {
namespace {

class ConvertHalf : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(ConvertHalf);

// The value of a half.
double valueOf(unsigned half) {
    const unsigned exponent = half >> 10 & 31, fraction = half & 1023;
    const double magnitude = exponent == 31  ? (fraction == 0 ? kInf : kNan)
                             : exponent == 0 ? std::ldexp(fraction, -24)
                                             : std::ldexp(1024 + fraction, static_cast<int>(exponent) - 25);
    return half >> 15 != 0 ? -magnitude : magnitude;
}

// The half of x: its magnitude in units of the last place, rounded; 2^-25 is the one tie that goes up, by
// definition.
Zpp16f halfOf(double x, ZppRoundMode mode) {
    const unsigned sign = std::signbit(x) ? 0x8000 : 0;
    const double magnitude = std::fabs(x);
    if (!(magnitude < 65536)) return static_cast<Zpp16f>(sign | (std::isnan(x) ? 0x7DFF : 0x7C00));
    const int exponent = std::max(std::ilogb(magnitude), -14);
    const double units = std::ldexp(magnitude, 10 - exponent);
    const bool up = units == 0.5 && mode == zppRoundNear;
    const auto whole = static_cast<unsigned>(up ? 1 : rounded<int>(units, mode));
    return static_cast<Zpp16f>(sign + (static_cast<unsigned>(exponent + 14) << 10) + whole);
}

TEST_P(ConvertHalf, ToSingle) {
    const auto single = [](unsigned half) {
        const bool nan = (half & 0x7FFF) > 0x7C00;
        return std::bit_cast<Raw<float>>(nan ? (half & 0x8000) << 16 | 0x7F800000 | (half & 1023) << 13
                                             : std::bit_cast<Zpp32u>(static_cast<float>(valueOf(half))));
    };
    auto halves = everyValue<Zpp16f>();
    for (int i = 0; i < 64; ++i) {  // a signalling NaN alone, at every place of a step
        halves.insert(halves.end(), 66, 0x3C00);
        halves.push_back(0x7C01);
    }
    expectRow<Raw<float>>("16f32f", outOfPlace(zppsConvert_16f32f), single, Lengths::kEvery, halves);
}

TEST_P(ConvertHalf, ToIntegers) {
    std::vector<Zpp16f> halves = {0, 1, 0x8000, 0x7C00, 0xFC00, 0x7C01, 0x7E00, 0xFFFF};
    for (unsigned half = 0; half < 0x10000; half += 5) halves.push_back(static_cast<Zpp16f>(half));
    for (const ZppRoundMode mode : kModes)
        expectScales<Zpp16s>(
            "16f16s, mode " + std::to_string(mode),
            [=](auto* src, auto* dst, int len, int factor) {
                return zppsConvert_16f16s_Sfs(src, dst, len, mode, factor);
            },
            [&](int) { return halves; },
            [=](Zpp16f x, int factor) { return rounded<Zpp16s>(scaled(valueOf(x), factor), mode); });
}

// Every half, the middle to its neighbour, the singles next to these, and a sweep over all bit patterns.
std::vector<Raw<float>> singles() {
    std::vector<Raw<float>> values;
    const auto put = [&](Zpp32u bits) {
        for (const Zpp32u near : {bits - 1, bits, bits + 1})
            for (const Zpp32u sign : {0u, 0x80000000u})
                values.push_back(std::bit_cast<Raw<float>>(near ^ sign));
    };
    for (unsigned half = 0; half < 0x7C00; ++half)
        for (const double x :
             {valueOf(half), (valueOf(half) + (half == 0x7BFF ? 65536 : valueOf(half + 1))) / 2})
            put(std::bit_cast<Zpp32u>(static_cast<float>(x)));
    for (std::uint64_t bits = 0; bits < 0x80000000; bits += 3 * 4099) put(static_cast<Zpp32u>(bits));
    for (const Zpp32u bits : {0x47800000u, 0x7F800000u, 0x7FC00000u}) put(bits);
    return values;
}

TEST_P(ConvertHalf, FromSingle) {
    static const auto values = singles();
    for (const ZppRoundMode mode : kModes)
        expectRow<Zpp16f>(
            "32f16f", outOfPlace(zppsConvert_32f16f, mode),
            [=](Raw<float> x) { return halfOf(std::bit_cast<float>(x), mode); }, Lengths::kEvery, values);
}

TEST_P(ConvertHalf, FromIntegers) {
    for (const ZppRoundMode mode : kModes)
        expectRow<Zpp16f>(
            "16s16f", outOfPlace(zppsConvert_16s16f, mode), [=](Zpp16s x) { return halfOf(x, mode); },
            Lengths::kEvery, everyValue<Zpp16s>());
}

// Results worked out by hand, against a slip that the oracle shares with the library.
TEST_P(ConvertHalf, KnownResults) {
    const struct {
        Zpp32f single;
        Zpp16f nearest, truncated;
    } rows[] = {
        {65519, 0x7BFF, 0x7BFF},      {65520, 0x7C00, 0x7BFF},  {-65536, 0xFC00, 0xFC00},
        {1, 0x3C00, 0x3C00},          {-0.0F, 0x8000, 0x8000},  {0x1p-25F, 1, 0},
        {0x1.8p-24F, 2, 1},           {0x1p-14F, 0x400, 0x400}, {1.5F, 0x3E00, 0x3E00},
        {0x1.ffep-15F, 0x400, 0x3FF},
    };
    for (const auto& row : rows)
        for (const ZppRoundMode mode : {zppRoundNear, zppRoundZero}) {
            Zpp16f half;
            EXPECT_EQ(zppsConvert_32f16f(&row.single, &half, 1, mode), zppStatusOk);
            EXPECT_EQ(half, mode == zppRoundNear ? row.nearest : row.truncated) << row.single;
        }
}

}  // namespace
}  // namespace zpp::test
