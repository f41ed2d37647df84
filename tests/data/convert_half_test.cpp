#include <algorithm>

#include "tests/data/convert_support.h"

namespace zpp::test {
namespace {

class ConvertHalf : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(ConvertHalf);

// The value of a half that is no NaN.
double valueOf(unsigned half) {
    const unsigned exponent = half >> 10 & 31, fraction = half & 1023;
    const double magnitude = exponent == 31  ? std::numeric_limits<double>::infinity()
                             : exponent == 0 ? std::ldexp(fraction, -24)
                                             : std::ldexp(1024 + fraction, static_cast<int>(exponent) - 25);
    return half >> 15 != 0 ? -magnitude : magnitude;
}
bool isNan(unsigned half) { return (half & 0x7FFF) > 0x7C00; }

TEST_P(ConvertHalf, ToSingle) {
    const auto halves = everyValue<Zpp16f>();
    const auto expected = mapped(halves, [](unsigned half) -> std::uint32_t {
        if (isNan(half)) return (half & 0x8000) << 16 | 0x7F800000 | (half & 1023) << 13;
        return std::bit_cast<std::uint32_t>(static_cast<float>(valueOf(half)));
    });
    const auto convert = [](const Zpp16f* src, std::uint32_t* dst, int len) {
        return zppsConvert_16f32f(src, reinterpret_cast<Zpp32f*>(dst), len);
    };
    expectConverts(convert, halves, expected, "16f32f");
}

TEST_P(ConvertHalf, ToIntegers) {
    const auto halves = everyValue<Zpp16f>();
    std::vector<int> factors = {60, 100, 127, 128, 150, 1000, INT_MAX, -60, -100, -127, -128, -1000, INT_MIN};
    for (int factor = -42; factor <= 42; ++factor) factors.push_back(factor);
    for (const int factor : factors)
        for (const ZppRoundMode mode : {kNear, kZero, 2}) {
            if (mode == 2 && factor != 1) continue;
            const auto expected = mapped(halves, [=](unsigned half) {
                const double scaled = isNan(half) ? NAN : std::ldexp(valueOf(half), exponentOf(factor));
                return static_cast<Zpp16s>(rounded(scaled, mode, -32768, 32767));
            });
            const auto convert = [=](const Zpp16f* src, Zpp16s* dst, int len) {
                return zppsConvert_16f16s_Sfs(src, dst, len, mode, factor);
            };
            expectScaled(convert, halves, expected, "16f16s, mode " + std::to_string(mode), factor);
        }
}

// The half of x by a search among all: the next below, or to nearest the closer one of it and the next above,
// in a tie the even one. What is beyond the largest becomes infinity, which stands where 65536 would.
unsigned halfOf(double x, ZppRoundMode mode) {
    static const std::vector<double> magnitudes = [] {
        std::vector<double> values;
        for (unsigned half = 0; half < 0x7C00; ++half) values.push_back(valueOf(half));
        values.push_back(65536);
        return values;
    }();
    const unsigned sign = std::signbit(x) ? 0x8000 : 0;
    const double magnitude = std::fabs(x);
    if (std::isnan(x)) return sign | 0x7DFF;
    if (magnitude >= 65536) return sign | 0x7C00;
    const auto next = std::upper_bound(magnitudes.begin(), magnitudes.end(), magnitude);
    const auto below = static_cast<unsigned>(next - magnitudes.begin() - 1);
    const double down = magnitude - *(next - 1), up = *next - magnitude;
    if (mode != zppRoundNear || down < up) return sign | below;
    if (up < down) return sign | (below + 1);
    if (below == 0) return sign | 1;  // the one tie that goes up, by definition: 2^-25
    return sign | (below + below % 2);
}

// Every half, the middle to its neighbour, the singles next to these, and a sweep over all bit patterns.
std::vector<Zpp32u> singles() {
    std::vector<Zpp32u> values;
    const auto put = [&](double x) {
        const Zpp32u bits = std::bit_cast<Zpp32u>(static_cast<float>(x));
        for (const Zpp32u near : {bits - 1, bits, bits + 1})
            for (const Zpp32u sign : {0u, 0x80000000u}) values.push_back(near ^ sign);
    };
    for (unsigned half = 0; half < 0x7C00; ++half) {
        const double here = valueOf(half), next = half == 0x7BFF ? 65536 : valueOf(half + 1);
        put(here);
        put((here + next) / 2);
    }
    for (std::uint64_t bits = 0; bits < 0x100000000; bits += 4099)
        values.push_back(static_cast<Zpp32u>(bits));
    for (const Zpp32u bits :
         {0x47800000u, 0x477FFFFFu, 0x7F7FFFFFu, 0x7F800000u, 0x7F800001u, 0x7FC00000u, 0x7FFFFFFFu})
        for (const Zpp32u sign : {0u, 0x80000000u}) values.push_back(bits ^ sign);
    return values;
}

TEST_P(ConvertHalf, FromSingle) {
    static const auto values = singles();
    const auto half = [](ZppRoundMode mode) {
        return [=](Zpp32u bits) { return static_cast<Zpp16f>(halfOf(std::bit_cast<float>(bits), mode)); };
    };
    static const auto nearest = mapped(values, half(zppRoundNear)),
                      truncated = mapped(values, half(zppRoundZero));
    for (const ZppRoundMode mode : {kNear, kZero, -1}) {
        const auto convert = [=](const Zpp32u* src, Zpp16f* dst, int len) {
            return zppsConvert_32f16f(reinterpret_cast<const Zpp32f*>(src), dst, len, mode);
        };
        expectConverts(convert, values, mode == zppRoundNear ? nearest : truncated, "32f16f");
    }
}

TEST_P(ConvertHalf, FromIntegers) {
    const auto values = everyValue<Zpp16s>();
    for (const ZppRoundMode mode : {kNear, kZero, 100}) {
        const auto convert = [=](const Zpp16s* src, Zpp16f* dst, int len) {
            return zppsConvert_16s16f(src, dst, len, mode);
        };
        const auto half = [=](Zpp16s x) { return static_cast<Zpp16f>(halfOf(x, mode)); };
        expectConverts(convert, values, mapped(values, half), "16s16f");
    }
}

}  // namespace
}  // namespace zpp::test
