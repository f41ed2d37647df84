// Comparisons of numbers and vectors.
#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "zpp/types.h"

namespace zpp::test {

// Lengths around every vector and unroll width: tail only, body only, both.
inline const std::vector<int>& awkwardLengths() {
    static const std::vector<int> lengths = {1,  2,  3,  4,  5,  6,  7,  8,  9,  11, 13, 15,  16,  17,  19,
                                             23, 31, 32, 33, 40, 47, 63, 64, 65, 71, 97, 127, 128, 129, 515};
    return lengths;
}

template <class T>
bool sameBits(const T& a, const T& b) {
    return std::memcmp(&a, &b, sizeof(T)) == 0;
}

// The same number to the bit, zeros by their sign, all NaNs being one; with `ulps`, that many representable
// numbers apart at most, and zeros alike.
template <class T>
bool same(const T& a, const T& b, long ulps = 0) {
    if (sameBits(a, b)) return true;
    if constexpr (requires { a.re; }) {
        return same(a.re, b.re, ulps) && same(a.im, b.im, ulps);
    } else if constexpr (std::is_floating_point_v<T>) {
        if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
        // Numbers of one sign are as far apart as their bits, read as integers.
        using Bits = std::conditional_t<sizeof(T) == 8, std::int64_t, std::int32_t>;
        const auto place = [](T x) {
            const auto bits = std::bit_cast<Bits>(std::fabs(x));
            return std::signbit(x) ? -bits : bits;
        };
        const auto distance = static_cast<long double>(place(a)) - static_cast<long double>(place(b));
        return ulps > 0 && std::fabs(distance) <= static_cast<long double>(ulps);
    } else {
        return false;
    }
}

// A number as failures show it: floating ones to the last bit.
template <class T>
std::string shown(const T& x) {
    if constexpr (requires { x.re; }) {
        return '(' + shown(x.re) + ", " + shown(x.im) + ')';
    } else if constexpr (std::is_floating_point_v<T>) {
        std::ostringstream out;
        out << std::hexfloat << x;
        return out.str();
    } else {
        return testing::PrintToString(x);
    }
}

// The same for vectors, by same() or another comparison; the message names the first element that is not.
template <class T, class Equal>
testing::AssertionResult eachSame(const std::vector<T>& expected, const std::vector<T>& actual, Equal equal) {
    if (expected.size() != actual.size()) return testing::AssertionFailure() << "sizes differ";
    for (std::size_t i = 0; i < expected.size(); ++i)
        if (!equal(expected[i], actual[i]))
            return testing::AssertionFailure() << "element " << i << " of " << expected.size() << " is "
                                               << shown(actual[i]) << ", expected " << shown(expected[i]);
    return testing::AssertionSuccess();
}
template <class T>
testing::AssertionResult sameBits(const std::vector<T>& expected, const std::vector<T>& actual) {
    return eachSame(expected, actual, [](const T& a, const T& b) { return sameBits(a, b); });
}
template <class T>
testing::AssertionResult same(const std::vector<T>& expected, const std::vector<T>& actual, long ulps = 0) {
    return eachSame(expected, actual, [=](const T& a, const T& b) { return same(a, b, ulps); });
}

}  // namespace zpp::test
