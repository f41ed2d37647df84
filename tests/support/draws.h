// The data of table-driven tests: numbers of every type, drawn in several ways.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "tests/support/random.h"

namespace zpp::test {

inline constexpr double kInf = std::numeric_limits<double>::infinity();
inline constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

enum class Draw {
    kOrdinary,  // floating numbers in [-4, 4), integers of any magnitude
    kSpecial,   // half of them special: zeros, ones, infinities, NaN, subnormals
    kLimits,    // the ends of the range and their neighbours, of every width
    kLong,      // any exponent; for integers any bits
};
inline constexpr Draw kDraws[] = {Draw::kOrdinary, Draw::kSpecial, Draw::kLimits, Draw::kLong};

namespace detail {

template <class T>
T floating(Random& random, Draw draw) {
    using Limits = std::numeric_limits<T>;
    constexpr T kSpecial[] = {
        T{0}, T{1}, T{3}, Limits::infinity(), Limits::quiet_NaN(), Limits::min(), Limits::denorm_min()};
    const T sign = random.below(2) == 0 ? T{1} : T{-1}, ordinary = static_cast<T>(random.uniform(0, 4));
    if (draw == Draw::kSpecial && random.below(2) == 0)
        return sign * kSpecial[random.below(std::size(kSpecial))];
    if (draw == Draw::kLimits)  // the largest, or around the least normal number
        return sign * (random.below(2) == 0 ? Limits::max() / (ordinary + 1) : Limits::min() * ordinary);
    constexpr int lowest = Limits::min_exponent - Limits::digits;
    const auto span = static_cast<std::uint64_t>(Limits::max_exponent - 2 - lowest);
    return draw == Draw::kLong ? sign * std::ldexp(ordinary, lowest + static_cast<int>(random.below(span)))
                               : sign * ordinary;
}

template <class T>
T integer(Random& random, Draw draw) {
    constexpr int width = 8 * sizeof(T);
    const auto any = static_cast<T>(random.bits());
    const auto bit = static_cast<int>(random.below(width));
    if (draw == Draw::kSpecial && random.below(2) == 0) return static_cast<T>(random.below(3) - 1);
    if (draw == Draw::kLimits) {
        const std::uint64_t power = (std::uint64_t{1} << bit) + random.below(7) - 3;
        return static_cast<T>(random.below(2) == 0 ? power : -power);
    }
    return draw == Draw::kLong ? any : static_cast<T>(any >> bit);
}

}  // namespace detail

template <class T>
T drawn(Random& random, Draw draw) {
    if constexpr (requires(T x) { x.re; }) {
        const auto re = drawn<decltype(T::re)>(random, draw);
        return {re, drawn<decltype(T::im)>(random, draw)};
    } else if constexpr (std::is_floating_point_v<T>) {
        return detail::floating<T>(random, draw);
    } else {
        return detail::integer<T>(random, draw);
    }
}

template <class T>
std::vector<T> drawn(Random& random, Draw draw, std::size_t n) {
    std::vector<T> values;
    while (values.size() < n) values.push_back(drawn<T>(random, draw));
    return values;
}

// So many of each kind.
template <class T>
std::vector<T> drawnEachWay(std::size_t n) {
    Random random;
    std::vector<T> values;
    for (const Draw draw : kDraws)
        for (std::size_t i = 0; i < n; ++i) values.push_back(drawn<T>(random, draw));
    return values;
}

// Every value of a type of 8 or 16 bits, in order.
template <class T>
std::vector<T> everyValue() {
    std::vector<T> values;
    for (long x = std::numeric_limits<T>::min(); x <= std::numeric_limits<T>::max(); ++x)
        values.push_back(static_cast<T>(x));
    return values;
}

}  // namespace zpp::test
