// What the benchmarks share. A timed case is named "<case>/<who>/<size>", for instance "Add_64f/zpp/1024":
// bench/compare sets the cases that differ in <who> alone side by side.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>

#include "zpp.h"

namespace zpp::bench {

// Of the sizes timed: the overhead of a call, the first-level cache, the memory.
inline constexpr int kSizes[] = {64, 1024, 1 << 20};
inline constexpr int kLargest = 1 << 20;

// Runs `body()`, which reads and writes `bytes` bytes in all, under the name of the case.
template <class Body>
void add(const std::string& what, const char* who, int size, size_t bytes, Body body) {
    const std::string name = what + "/" + who + "/" + std::to_string(size);
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        for (auto iteration : state) {
            (void)iteration;
            body();
            benchmark::ClobberMemory();
        }
        state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
    });
}

// Vectors of 2 * kLargest complex elements and a little more, the same ones for every case. Sources hold
// values of either sign and of magnitude 1 to 2, so that nothing becomes subnormal or zero on the way.
Zpp64f* source(int which);  // 0 or 1
Zpp64f* destination();

inline Zpp64fc* complexVector(Zpp64f* vector) { return reinterpret_cast<Zpp64fc*>(vector); }

}  // namespace zpp::bench
