// Calls of generators with frequencies: the numbers that other jobs pass are none.
#pragma once

#include "bench/jobs.h"

namespace zpp::bench {
namespace {

template <class T, auto kTone>
void timedTone(benchmark::State& state, int len) {
    double phase = 0.5;
    for (auto iteration : state) {
        (void)iteration;
        kTone(vector<T>(kVectors - 1), len, 1.5, 0.01234, &phase);
        benchmark::ClobberMemory();
    }
}
template <class T, auto kTriangle>
void timedTriangle(benchmark::State& state, int len) {
    double phase = 0.5;
    for (auto iteration : state) {
        (void)iteration;
        kTriangle(vector<T>(kVectors - 1), len, 1.5, 0.01234, 0.75, &phase);
        benchmark::ClobberMemory();
    }
}

}  // namespace
}  // namespace zpp::bench
