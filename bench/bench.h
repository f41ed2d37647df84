// What the benchmarks share. A timed case is named "<job>/<who>/<size>", for instance "Add_64f/zpp/1024":
// bench/compare sets the cases that differ in <who> alone side by side.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "zpp.h"

namespace zpp::bench {

inline constexpr int kLargest = 1 << 20;  // of the sizes of every job
inline constexpr int kHuge = 1 << 23;     // of those that are timed beyond the last cache too

// Whether the case is to be timed in this process.
bool isWanted(const std::string& job, const std::string& who);

// What is timed of long vectors begins with them in the caches that hold them, whoever was there before.
template <class Timed>
void registerCase(const std::string& what, const char* who, int size, Timed timed) {
    const std::string name = what + "/" + who + "/" + std::to_string(size);
    auto* const entry = benchmark::RegisterBenchmark(name.c_str(), timed);
    if (size >= 1 << 17) entry->MinTime(0.01);
}

// Runs `body()`, which reads and writes `bytes` bytes in all, under the name of the case.
template <class Body>
void add(const std::string& what, const char* who, int size, size_t bytes, Body body) {
    if (!isWanted(what, who)) return;
    registerCase(what, who, size, [=](benchmark::State& state) {
        for (auto iteration : state) {
            (void)iteration;
            body();
            benchmark::ClobberMemory();
        }
        state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
    });
}

// Vectors of doubles of either sign and of magnitude 1 to 2, so that nothing becomes subnormal or zero on the
// way, the same ones for every case: 2 * kLargest complex elements and a little more. The first two are
// sources, the third one is written to.
inline constexpr int kVectors = 3;
Zpp64f* doubles(int which);
inline Zpp64f* source(int which) { return doubles(which); }
inline Zpp64f* destination() { return doubles(2); }
inline Zpp64fc* complexVector(Zpp64f* vector) { return reinterpret_cast<Zpp64fc*>(vector); }

// What there is to time: the jobs (jobs.h), and others.
void registerJobs();
void registerFilters();
void registerTransforms();

}  // namespace zpp::bench
