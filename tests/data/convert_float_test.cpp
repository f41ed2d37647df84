#include "tests/data/convert_support.h"
#include "zpp/frame.h"

namespace zpp::test {
namespace {

class ConvertFloat : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(ConvertFloat);

TEST_P(ConvertFloat, FromIntegers) {
    expectConverts<float>("8s32f", zppsConvert_8s32f, everyValue<Zpp8s>());
    expectConverts<float>("8u32f", zppsConvert_8u32f, everyValue<Zpp8u>());
    expectConverts<float>("16s32f", zppsConvert_16s32f, everyValue<Zpp16s>());
    expectConverts<float>("16u32f", zppsConvert_16u32f, everyValue<Zpp16u>());
    expectConverts<float>("24s32f", zppsConvert_24s32f, packedValues<Int24>());
    expectConverts<float>("24u32f", zppsConvert_24u32f, packedValues<UInt24>());
    expectConverts<float>("32s32f", zppsConvert_32s32f, drawnEachWay<Zpp32s>(1000));
    expectConverts<double>("32s64f", zppsConvert_32s64f, drawnEachWay<Zpp32s>(1000));
}

// No multiplier may be subnormal: where the caller has subnormal operands read as zero, the products would
// be.
TEST_P(ConvertFloat, FromScaledIntegers) {
    const auto words = [](int) { return drawnEachWay<Zpp16s>(300); };
    const auto ints = [](int) { return drawnEachWay<Zpp32s>(300); };
    const auto single = [](Exact x, int factor) { return rounded<float>(scaled(x, factor)); };
    const auto toDouble = [](Exact x, int factor) { return rounded<double>(scaled(x, factor)); };
    for (const int denormalsAreZeros : {0, 1}) {
        zppSetDenormAreZeros(denormalsAreZeros);  // a processor without the setting has nothing to lose
        expectScales<float>("16s32f_Sfs", zppsConvert_16s32f_Sfs, words, single);
        expectScales<double>("16s64f_Sfs", zppsConvert_16s64f_Sfs, words, toDouble);
        expectScales<float>("32s32f_Sfs", zppsConvert_32s32f_Sfs, ints, single);
        expectScales<double>("32s64f_Sfs", zppsConvert_32s64f_Sfs, ints, toDouble);
    }
    zppSetDenormAreZeros(0);
}

// The oracle's way is the x87 unit: a load widens, a store rounds, and either makes a NaN quiet.
template <class D, class S>
Raw<D> precisionChanged(Raw<S> x) {
    return std::bit_cast<Raw<D>>(rounded<D>(static_cast<Exact>(std::bit_cast<S>(x))));
}

TEST_P(ConvertFloat, BetweenPrecisions) {
    auto singles = Random(3).patterns<Raw<float>>(20000);
    for (const Zpp32u bits :
         {0u, 1u, 0x7FFFFFu, 0x800000u, 0x7F7FFFFFu, 0x7F800000u, 0x7F800001u, 0x7FBFFFFFu})
        for (const Zpp32u sign : {0u, 0x80000000u}) singles.push_back(std::bit_cast<Raw<float>>(bits | sign));
    expectRow<Raw<double>>("32f64f", outOfPlace(zppsConvert_32f64f), precisionChanged<double, float>,
                           Lengths::kEvery, singles);

    // Of any exponent that singles have, and a little beyond, cut off at any bit: ties are among them.
    auto doubles = Random(4).patterns<Raw<double>>(1000);
    for (Random random(5); doubles.size() < 30000;) {
        const std::uint64_t sign = random.below(2) << 63, exponent = 1023 - 155 + random.below(290);
        const std::uint64_t tail = std::uint64_t{1} << random.below(52);
        const std::uint64_t fraction = (random.bits() >> 12 & ~(2 * tail - 1)) + tail + random.below(3) - 1;
        doubles.push_back(std::bit_cast<Raw<double>>(sign | exponent << 52 | fraction));
    }
    for (const std::uint64_t special :
         {0ull, 0x7FF0000000000000ull, 0x7FF0000020000000ull, 0x7FF4000000000001ull})
        doubles.push_back(std::bit_cast<Raw<double>>(special));
    expectRow<Raw<float>>("64f32f", outOfPlace(zppsConvert_64f32f), precisionChanged<float, double>,
                          Lengths::kEvery, doubles);
}

// Numbers that 2^-factor brings to the bounds, to halves and between, and beyond; and all sorts of others.
template <class S, class D>
std::vector<S> numbers(int factor) {
    using Limits = std::numeric_limits<D>;
    std::vector<S> values = drawnEachWay<S>(100);
    const auto put = [&](Exact target) {
        const S x = static_cast<S>(scaled(target, -std::clamp(factor, -5000, 5000)));
        for (const S near :
             {x, std::nextafter(x, static_cast<S>(-kInf)), std::nextafter(x, static_cast<S>(kInf))})
            values.push_back(near);
    };
    for (Exact halves = -6; halves <= 6; ++halves)
        for (const Exact centre : {static_cast<Exact>(Limits::min()), Exact{0},
                                   static_cast<Exact>(Limits::max()), Exact{8388608}, Exact{-16777216}})
            put(centre + halves / 2);
    Random random(5);
    for (int i = 0; i < 200; ++i)
        put(std::rint(static_cast<Exact>(random.uniform(-1.1, 1.1)) * std::ldexp(Exact{1}, i % 33)) / 2);
    return values;
}

// 2^-factor in the precision of S; in memory, for a C library may return it in an x87 register, beyond its
// range.
template <class S>
S multiplierOf(int factor) {
    const volatile S multiplier = std::ldexp(S{1}, -std::clamp(factor, -5000, 5000));
    return multiplier;
}

template <class S, class D>
void expectToInteger(const char* name, ZppStatus (*call)(const S*, D*, int, ZppRoundMode, int)) {
    for (const ZppRoundMode mode : kModes)
        expectScales<D>(
            name + (", mode " + std::to_string(mode)),
            [=](const S* src, D* dst, int len, int factor) { return call(src, dst, len, mode, factor); },
            numbers<S, D>,
            [=](S x, int factor) {
                return rounded<D>(static_cast<Exact>(x) * static_cast<Exact>(multiplierOf<S>(factor)), mode);
            });
}

TEST_P(ConvertFloat, ToIntegers) {
    expectToInteger("32f8s", zppsConvert_32f8s_Sfs);
    expectToInteger("32f8u", zppsConvert_32f8u_Sfs);
    expectToInteger("32f16s", zppsConvert_32f16s_Sfs);
    expectToInteger("32f16u", zppsConvert_32f16u_Sfs);
    expectToInteger("32f32s", zppsConvert_32f32s_Sfs);
    expectToInteger("64f32s", zppsConvert_64f32s_Sfs);
}

template <class D>
D toPacked(Zpp32f x, int factor) {
    const float multiplier = factor >= 127 ? 0 : multiplierOf<float>(std::max(factor, -127));
    return rounded<D>(static_cast<Exact>(x) * static_cast<Exact>(multiplier));
}

TEST_P(ConvertFloat, ToPacked) {
    expectScales<Int24>("32f24s", zppsConvert_32f24s_Sfs, numbers<Zpp32f, Int24>, toPacked<Int24>);
    expectScales<UInt24>("32f24u", zppsConvert_32f24u_Sfs, numbers<Zpp32f, UInt24>, toPacked<UInt24>);
}

// Results worked out by hand, against a slip that the rule above shares with the library.
TEST_P(ConvertFloat, KnownResults) {
    const struct {
        Zpp32f x;
        ZppRoundMode mode;
        int scaleFactor;
        Zpp16s word;
        Zpp32s integer;
    } cases[] = {
        {2.5F, 1, 0, 2, 2},
        {-3.5F, 1, 0, -4, -4},
        {2.9F, 0, 0, 2, 2},
        {0.49999997F, 1, 0, 0, 0},
        {5.0F, 1, 1, 2, 2},
        {5.0F, 1, -2, 20, 20},
        {2147483648.0F, 0, 0, 32767, INT_MAX},
        {std::numeric_limits<float>::quiet_NaN(), 1, 0, -32768, INT_MIN},
        {0.0F, 1, -128, -32768, INT_MIN},  // infinity times 0
        {0x1p127F, 1, 127, 1, 1},
    };
    for (const auto& c : cases) {
        Zpp16s word;
        Zpp32s integer;
        EXPECT_EQ(zppsConvert_32f16s_Sfs(&c.x, &word, 1, c.mode, c.scaleFactor), zppStatusOk);
        EXPECT_EQ(zppsConvert_32f32s_Sfs(&c.x, &integer, 1, c.mode, c.scaleFactor), zppStatusOk);
        EXPECT_EQ(word, c.word) << c.x << ", " << c.scaleFactor;
        EXPECT_EQ(integer, c.integer) << c.x << ", " << c.scaleFactor;
    }
}

}  // namespace
}  // namespace zpp::test
