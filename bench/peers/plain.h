// Loops as a user writes them, from what they do to an element. They are compiled once for each compiler and
// set of flags that a user would choose, ZPP_WHO by name.
#pragma once

#include "bench/positive.h"

namespace zpp::bench {
namespace {

inline constexpr const char* kWho = ZPP_WHO;

// Exact, scaled by 2^-shift to nearest even, saturated.
template <int kShift>
constexpr Zpp32s scaled(long long x) {
    constexpr long long half = kShift == 0 ? 0 : (1LL << kShift >> 1) - 1;
    const long long y = kShift == 0 ? x : (x + half + (x >> kShift & 1)) >> kShift;
    return static_cast<Zpp32s>(y < -2147483647 - 1 ? -2147483647 - 1 : 2147483647 < y ? 2147483647 : y);
}

template <auto kOp, class R, class... S>
void mapLoop(const S* __restrict... src, R* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = kOp(src[i]...);
}
template <auto kOp, class R, class... S>
R reduceLoop(const S* __restrict... src, int len) {
    R sum{};
    for (int i = 0; i < len; ++i) sum = kOp(sum, src[i]...);
    return sum;
}

template <auto kOp, class R, class... S>
constexpr auto mapOf(R (*)(S...)) {
    return mapLoop<kOp, R, S...>;
}
template <auto kOp, class R, class First, class... S>
constexpr auto reduceOf(R (*)(First, S...)) {
    return reduceLoop<kOp, R, S...>;
}

// dst[i] = op(src[i]...)
template <auto kOp>
void map(benchmark::State& state, int len) {
    timed<mapOf<kOp>(+kOp)>(state, len);
}
// The same of positive numbers.
template <auto kOp>
void mapPositive(benchmark::State& state, int len) {
    timedOfPositive<mapOf<kOp>(+kOp)>(state, len);
}
// r = op(r, src[i]...) from r = 0 on
template <auto kOp>
void reduce(benchmark::State& state, int len) {
    timed<reduceOf<kOp>(+kOp)>(state, len);
}

}  // namespace
}  // namespace zpp::bench
