// The one order of sums, as it is promised: an oracle of reductions.
#pragma once

#include <cstring>
#include <vector>

#include "tests/support/rounded.h"

namespace zpp::test {

// Of 32 running values double i goes into value i mod 32, and at the end the upper half into the lower one,
// until one number is left, or the two parts of a complex one.
template <class T>
T sumInOrder(const std::vector<T>& terms) {
    constexpr std::size_t parts = sizeof(T) / sizeof(double);
    std::vector<double> all(parts * terms.size()), values(32);
    std::memcpy(all.data(), terms.data(), all.size() * sizeof(double));
    for (std::size_t i = 0; i < all.size(); ++i) values[i % 32] = sum(values[i % 32], all[i]);
    for (std::size_t half = 16; half >= parts; half /= 2)
        for (std::size_t i = 0; i < half; ++i) values[i] = sum(values[i], values[i + half]);
    T result;
    std::memcpy(&result, values.data(), sizeof result);
    return result;
}

// The sum of a term of each element of some vectors.
template <class Term, class V, class... W>
auto sumInOrder(Term term, const V& elements, const W&... others) {
    std::vector<decltype(term(elements[0], others[0]...))> terms;
    for (std::size_t i = 0; i < elements.size(); ++i) terms.push_back(term(elements[i], others[i]...));
    return sumInOrder(terms);
}

// The sum of the parts of a complex sum, which is the last step for sums over parts.
inline double ofParts(double x) { return x; }
inline double ofParts(Zpp64fc x) { return sum(x.re, x.im); }

// Numbers as doubles.
template <class T>
auto widened(T x) {
    if constexpr (requires { x.re; })
        return Zpp64fc{static_cast<double>(x.re), static_cast<double>(x.im)};
    else
        return static_cast<double>(x);
}

}  // namespace zpp::test
