// Functions of positive numbers, of which others are special arguments.
#pragma once

#include <vector>

#include "bench/jobs.h"

namespace zpp::bench {
namespace {

inline int lengthOf(int len, const auto*...) { return len; }
inline int lengthOf(const auto*, int len, auto...) { return len; }

// The magnitudes of the first numbers of a vector, made when they are first asked for.
template <class T>
const T* magnitudes(const T* numbers, int len) {
    static std::vector<T> all;
    for (size_t i = all.size(); i < static_cast<size_t>(len); ++i)
        all.push_back(numbers[i] > 0 ? numbers[i] : static_cast<T>(-(numbers[i] + 1)));
    return all.data();
}

template <auto kFunction, class R, class S, class... P>
R callWithMagnitudes(const S* numbers, P... more) {
    return kFunction(magnitudes(numbers, lengthOf(more...)), more...);
}
template <auto kFunction, class R, class S, class... P>
constexpr auto ofMagnitudes(R (*)(const S*, P...)) {
    return callWithMagnitudes<kFunction, R, S, P...>;
}
template <auto kFunction, int... kMore>
void timedOfPositive(benchmark::State& state, int len) {
    timed<ofMagnitudes<kFunction>(+kFunction), kMore...>(state, len);
}

}  // namespace
}  // namespace zpp::bench
