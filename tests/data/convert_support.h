// What the tests of the conversions share.
#pragma once

#include <climits>

#include "tests/support/binding.h"
#include "tests/support/exact.h"
#include "tests/support/table.h"
#include "zpp/data.h"

namespace zpp::test {

// A packed 24-bit integer; the library takes vectors of them as bytes.
template <bool isSigned>
struct Packed24 {
    Zpp8u bytes[3];

    Packed24() = default;
    explicit Packed24(std::int64_t value) {
        for (int i = 0; i < 3; ++i) bytes[i] = static_cast<Zpp8u>(value >> 8 * i);
    }
    operator long() const {
        return bytes[0] + 256L * bytes[1] + 65536L * bytes[2] - (isSigned && bytes[2] >= 128 ? 1L << 24 : 0);
    }
};
using Int24 = Packed24<true>;
using UInt24 = Packed24<false>;

template <bool isSigned>
Zpp8u* passed(Packed24<isSigned>* p) {
    return reinterpret_cast<Zpp8u*>(p);
}

template <class T>
std::vector<T> packedValues() {
    std::vector<T> values = {T(0x80FFFF), T(0x7FFFFF), T(0x800000)};
    for (long x = 0; x < 0x1000000; x += 97) values.push_back(T(x));
    return values;
}

inline constexpr ZppRoundMode kModes[] = {zppRoundNear, zppRoundZero, 7};  // what is no mode is toward zero

// Where a scale factor changes between loops, or a multiplier leaves a range.
inline std::vector<int> scaleFactors() {
    std::vector<int> factors = {64,   100,  118,  125,  126,   127,   128,   148,     149,    150,  151,
                                179,  180,  181,  200,  1000,  1022,  1023,  1043,    1074,   1075, 1104,
                                1105, 1106, 2022, -64,  -96,   -97,   -98,   -126,    -127,   -128, -129,
                                -200, -991, -992, -993, -1000, -1023, -1024, INT_MAX, INT_MIN};
    for (int factor = -42; factor <= 42; ++factor) factors.push_back(factor);
    return factors;
}

// Checks f(src, dst, len) for the same values in another type.
template <class D, class F, class S>
void expectConverts(const char* name, F f, const std::vector<S>& values) {
    const auto value = [](S x) { return rounded<D>(static_cast<Exact>(x)); };
    expectRow<D>(name, outOfPlace(f), value, Lengths::kEvery, values);
}

// Checks f(src, dst, len, scaleFactor) for rule(x, scaleFactor), with values(scaleFactor).
template <class D, class F, class Values, class Rule>
void expectScales(const std::string& name, F f, Values values, Rule rule) {
    for (const int factor : scaleFactors()) {
        const auto all = values(factor);
        const bool chooses = factor == 0 || factor == 1 || factor == -1 || factor == 150;
        expectRow<D>(
            name + ", scaleFactor " + std::to_string(factor) + ',', outOfPlace(f, factor),
            [=](const auto& x) { return rule(x, factor); }, chooses ? Lengths::kEvery : Lengths::kWhole, all);
    }
}

}  // namespace zpp::test

template <bool isSigned>
struct std::numeric_limits<zpp::test::Packed24<isSigned>> {
    using Packed = zpp::test::Packed24<isSigned>;
    static Packed min() { return Packed(isSigned ? -0x800000 : 0); }
    static Packed max() { return Packed(isSigned ? 0x7FFFFF : 0xFFFFFF); }
};
