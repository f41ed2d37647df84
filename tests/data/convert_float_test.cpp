#include "tests/data/convert_support.h"

namespace zpp::test {
namespace {

class ConvertFloat : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(ConvertFloat);

constexpr int kScaleFactors[] = {0,    1,    2,    5,    8,    15,   23,    24,    31,    64,      100,
                                 118,  125,  126,  127,  128,  148,  149,   150,   151,   179,     180,
                                 181,  200,  1000, 1022, 1023, 1043, 1074,  1075,  1104,  1105,    1106,
                                 2022, -1,   -8,   -20,  -31,  -64,  -96,   -97,   -98,   -126,    -127,
                                 -128, -129, -200, -991, -992, -993, -1000, -1023, -1024, INT_MAX, INT_MIN};

std::vector<Zpp32s> ints() {
    auto values = Random(2).patterns<Zpp32s>(2000);
    for (std::size_t i = 0; i < values.size(); ++i) values[i] >>= i % 32;
    // Halfway between singles, on either side of even, and next to that.
    for (const Zpp32s x : {0, 1, -1, 16777217, 16777219, -16777217, 33554434, 33554438, 0x7FFFFFBF,
                           0x7FFFFFC0, 0x7FFFFFC1, INT_MAX, INT_MIN})
        values.push_back(x);
    return values;
}

// The 64 bits of a long double hold every product of an integer and a power of two.
template <class D, class S>
auto scaledValues(const std::vector<S>& values, int factor) {
    return mapped(values, [=](S x) {
        return static_cast<D>(std::ldexp(static_cast<long double>(x), exponentOf(factor)));
    });
}

// expectConverts for a function that multiplies by 2^-factor.
template <class S, class D, class Source>
void expectScales(ZppStatus (*call)(const S*, D*, int), const std::vector<Source>& values, const char* name) {
    expectConverts(call, values, scaledValues<D>(values, 0), name);
}
template <class S, class D>
void expectScales(ZppStatus (*call)(const S*, D*, int, int), const std::vector<S>& values, const char* name) {
    for (const int factor : kScaleFactors)
        expectScaled(withFactor(call, factor), values, scaledValues<D>(values, factor), name, factor);
}

TEST_P(ConvertFloat, FromIntegers) {
    expectScales(zppsConvert_8s32f, everyValue<Zpp8s>(), "8s32f");
    expectScales(zppsConvert_8u32f, everyValue<Zpp8u>(), "8u32f");
    expectScales(zppsConvert_16s32f, everyValue<Zpp16s>(), "16s32f");
    expectScales(zppsConvert_16u32f, everyValue<Zpp16u>(), "16u32f");
    expectScales(zppsConvert_32s32f, ints(), "32s32f");
    expectScales(zppsConvert_32s64f, ints(), "32s64f");
    auto words = mapped(ints(), [](Zpp32s x) { return static_cast<Zpp16s>(x); });
    expectScales(zppsConvert_16s32f_Sfs, words, "16s32f_Sfs");
    expectScales(zppsConvert_16s64f_Sfs, words, "16s64f_Sfs");
    expectScales(zppsConvert_32s32f_Sfs, ints(), "32s32f_Sfs");
    expectScales(zppsConvert_32s64f_Sfs, ints(), "32s64f_Sfs");

    const auto packed = packedValues();
    const auto asSigned = [](Packed24 x) { return static_cast<Zpp32f>(x.asSigned()); };
    const auto asUnsigned = [](Packed24 x) { return static_cast<Zpp32f>(x.asUnsigned()); };
    expectConverts(zppsConvert_24s32f, packed, mapped(packed, asSigned), "24s32f");
    expectConverts(zppsConvert_24u32f, packed, mapped(packed, asUnsigned), "24u32f");
}

// The value of finite bits, or of infinity: with the ends of the exponent range in arithmetic of our own.
TEST_P(ConvertFloat, BetweenPrecisions) {
    auto singles = Random(3).patterns<std::uint32_t>(20000);
    for (const std::uint32_t bits : {0u, 1u, 0x7FFFFFu, 0x800000u, 0x7F7FFFFFu, 0x7F800000u, 0x7F800001u,
                                     0x7FC00000u, 0x7FBFFFFFu, 0x7FFFFFFFu})
        for (const std::uint32_t sign : {0u, 0x80000000u}) singles.push_back(bits | sign);
    const auto widened = mapped(singles, [](std::uint32_t bits) -> std::uint64_t {
        const std::uint64_t sign = std::uint64_t{bits >> 31} << 63, fraction = bits & 0x7FFFFF;
        const int exponent = static_cast<int>(bits >> 23 & 0xFF);
        if (exponent == 255)
            return sign | 0x7FF0000000000000 | fraction << 29 | (fraction != 0 ? 0x8000000000000 : 0);
        const double value = std::ldexp(static_cast<double>(exponent == 0 ? fraction : fraction + 0x800000),
                                        std::max(exponent, 1) - 150);
        return sign | std::bit_cast<std::uint64_t>(value);
    });
    const auto toDouble = [](const std::uint32_t* src, std::uint64_t* dst, int len) {
        return zppsConvert_32f64f(reinterpret_cast<const Zpp32f*>(src), reinterpret_cast<Zpp64f*>(dst), len);
    };
    expectConverts(toDouble, singles, widened, "32f64f");

    // Halfway cases: of a single, its upper neighbour, and what lies between.
    std::vector<std::uint64_t> doubles;
    std::vector<std::uint32_t> nearest;
    for (std::size_t i = 0; i < singles.size(); ++i) {
        const std::uint32_t magnitude = singles[i] & 0x7FFFFFFF;
        if (magnitude >= 0x7F800000) {
            doubles.push_back(widened[i] & ~0x8000000000001u);  // made signalling, where payload remains
            if (doubles.back() << 12 == 0) doubles.back() = widened[i];
            nearest.push_back(singles[i] | (magnitude > 0x7F800000 ? 0x400000 : 0));
            continue;
        }
        const double here = std::bit_cast<float>(magnitude);
        const double next = magnitude == 0x7F7FFFFF ? 0x1p128 : std::bit_cast<float>(magnitude + 1);
        const double middle = (here + next) / 2;
        const std::uint32_t sign = singles[i] & 0x80000000;
        const auto expect = [&](double x, std::uint32_t result) {
            doubles.push_back(std::bit_cast<std::uint64_t>(sign != 0 ? -x : x));
            nearest.push_back(sign | result);
        };
        expect(here, magnitude);
        expect(std::nextafter(middle, 0.0), magnitude);
        expect(middle, magnitude % 2 == 0 ? magnitude : magnitude + 1);
        expect(std::nextafter(middle, 0x1p200), magnitude + 1);
    }
    const auto toSingle = [](const std::uint64_t* src, std::uint32_t* dst, int len) {
        return zppsConvert_64f32f(reinterpret_cast<const Zpp64f*>(src), reinterpret_cast<Zpp32f*>(dst), len);
    };
    expectConverts(toSingle, doubles, nearest, "64f32f");
}

// Numbers that 2^-factor brings to the bounds, to halves and between, and beyond; special ones; any bits.
template <class S>
std::vector<S> numbers(int factor, long double lower, long double upper) {
    using Limits = std::numeric_limits<S>;
    std::vector<S> values = Random(4).patterns<S>(1500);
    for (const S x : {S{0}, Limits::infinity(), Limits::quiet_NaN(), Limits::signaling_NaN(), Limits::max(),
                      Limits::min(), Limits::denorm_min()}) {
        values.push_back(x);
        values.push_back(-x);
    }
    const auto put = [&](long double target) {
        const S x = static_cast<S>(std::ldexp(target, -exponentOf(factor)));
        for (const S near :
             {x, std::nextafter(x, -Limits::infinity()), std::nextafter(x, Limits::infinity())})
            values.push_back(near);
    };
    Random random(5);
    for (long double halves = -6; halves <= 6; ++halves)
        for (const long double centre : {lower, 0.0L, upper, 8388608.0L, -16777216.0L})
            put(centre + halves / 2);
    for (int i = 0; i < 1000; ++i)
        put(static_cast<long double>(std::rint(random.uniform(-1.1, 1.1) * std::ldexp(1.0, i % 33)) / 2));
    return values;
}

// The rule: x times a multiplier of its own precision, rounded and saturated.
template <class S>
long toInteger(S x, S multiplier, ZppRoundMode mode, long lower, long upper) {
    return rounded(static_cast<long double>(x) * static_cast<long double>(multiplier), mode, lower, upper);
}
template <class S>
S multiplierOf(int factor) {
    // In memory, for a C library may return it in an x87 register, beyond the range of S.
    const volatile S multiplier = std::ldexp(S{1}, exponentOf(factor));
    return multiplier;
}

template <class S, class D>
void expectToInteger(ZppStatus (*call)(const S*, D*, int, ZppRoundMode, int), const char* name) {
    const long lower = std::numeric_limits<D>::min(), upper = std::numeric_limits<D>::max();
    for (const int factor : kScaleFactors)
        for (const ZppRoundMode mode : {kNear, kZero, 7, INT_MIN}) {
            if (mode == 7 && factor != 0) continue;
            const auto values = numbers<S>(factor, lower, upper);
            const auto expected = mapped(values, [&](S x) {
                return static_cast<D>(toInteger(x, multiplierOf<S>(factor), mode, lower, upper));
            });
            const auto convert = [=](auto* src, auto* dst, int len) {
                return call(src, dst, len, mode, factor);
            };
            expectScaled(convert, values, expected, name + (", mode " + std::to_string(mode)), factor);
        }
}

TEST_P(ConvertFloat, ToIntegers) {
    expectToInteger(zppsConvert_32f8s_Sfs, "32f8s");
    expectToInteger(zppsConvert_32f8u_Sfs, "32f8u");
    expectToInteger(zppsConvert_32f16s_Sfs, "32f16s");
    expectToInteger(zppsConvert_32f16u_Sfs, "32f16u");
    expectToInteger(zppsConvert_32f32s_Sfs, "32f32s");
    expectToInteger(zppsConvert_64f32s_Sfs, "64f32s");
}

TEST_P(ConvertFloat, ToPacked) {
    for (const int factor : kScaleFactors) {
        const float multiplier = factor >= 127 ? 0 : multiplierOf<float>(std::max(factor, -127));
        const auto check = [=](auto call, long lower, long upper, const char* name) {
            const auto values = numbers<Zpp32f>(std::max(factor, -127), lower, upper);
            const auto rule = [=](Zpp32f x) {
                return Packed24::of(toInteger(x, multiplier, zppRoundNear, lower, upper));
            };
            expectScaled(withFactor(call, factor), values, mapped(values, rule), name, factor);
        };
        check(zppsConvert_32f24s_Sfs, -8388608, 8388607, "32f24s");
        check(zppsConvert_32f24u_Sfs, 0, 16777215, "32f24u");
    }
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
